#pragma once

#include <QOpenGLContext>
#include <QSurface>

// Makes the context that was current on entry current again on every way out
// of a scope, or none when none was: work that needs contexts of its own
// hands the caller's back as it found it.
class MContextKeeper
{
public:
    MContextKeeper()
        : m_context(QOpenGLContext::currentContext()), m_surface(m_context ? m_context->surface() : nullptr)
    {
    }
    ~MContextKeeper()
    {
        if (m_context && m_surface)
            m_context->makeCurrent(m_surface);
        else if (QOpenGLContext* current = QOpenGLContext::currentContext())
            current->doneCurrent();
    }
    MContextKeeper(const MContextKeeper&) = delete;
    MContextKeeper& operator=(const MContextKeeper&) = delete;

private:
    QOpenGLContext* m_context;
    QSurface* m_surface;
};
