#pragma once

#include "app/msingleton.h"

#include <QObject>

class QOffscreenSurface;
class QOpenGLContext;

// The process-wide probe of the graphics driver, and the one maker of contexts:
// every context shares with the global share context and pairs with an
// offscreen surface of its own.
class MOpenGL : public QObject, public MSingleton<MOpenGL>
{
    Q_OBJECT

public:
    MOpenGL();

    // Tests the driver once; false means the program can't run.
    bool initialize();
    bool isInitialized() const { return m_initialized; }

    static QOpenGLContext* createSharedContext(QOpenGLContext* share);
    static QOffscreenSurface* createSurface(QOpenGLContext* context);
    static void clearErrors();

    int maxTextureImageUnits() const { return m_maxTextureImageUnits; }
    int maxTextureSize() const { return m_maxTextureSize; }

private:
    bool m_initialized = false;
    int m_maxTextureImageUnits = 0;
    int m_maxTextureSize = 0;
};
