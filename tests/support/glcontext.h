#pragma once

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions_3_3_Core>

#include <memory>

namespace QuillmereTest {

// A context shared with the global share context, current on its own offscreen
// surface, as the program makes them. Tests that need GL fail when it can't be had.
class GLContext
{
public:
    // Makes the context and makes it current; on failure, why() says what failed.
    bool create();
    bool makeCurrent();
    QString why() const { return m_why; }
    QOpenGLContext* context() const { return m_context.get(); }
    QOpenGLFunctions_3_3_Core* gl() const { return m_gl; }
    ~GLContext();

private:
    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<QOffscreenSurface> m_surface;
    QOpenGLFunctions_3_3_Core* m_gl = nullptr;
    QString m_why;
};

} // namespace QuillmereTest
