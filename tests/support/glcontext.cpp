#include "glcontext.h"

#include "gpu/mopengl.h"

namespace QuillmereTest {

bool GLContext::create()
{
    // The driver probe runs first, as at start-up: drawing code reads its limits.
    if (!MOpenGL::instance()->initialize()) {
        m_why = QStringLiteral("the OpenGL driver probe failed");
        return false;
    }
    m_context.reset(MOpenGL::createSharedContext(QOpenGLContext::globalShareContext()));
    if (!m_context) {
        m_why = QStringLiteral("no shared OpenGL context could be created");
        return false;
    }
    const QSurfaceFormat format = m_context->format();
    if (format.version() < qMakePair(3, 3) || format.profile() != QSurfaceFormat::CoreProfile) {
        m_why = QStringLiteral("the context is OpenGL %1.%2, not 3.3 core")
                    .arg(format.majorVersion())
                    .arg(format.minorVersion());
        return false;
    }
    m_surface.reset(MOpenGL::createSurface(m_context.get()));
    if (!m_surface) {
        m_why = QStringLiteral("no offscreen surface could be created");
        return false;
    }
    if (!makeCurrent())
        return false;
    m_gl = m_context->versionFunctions<QOpenGLFunctions_3_3_Core>();
    if (!m_gl || !m_gl->initializeOpenGLFunctions()) {
        m_why = QStringLiteral("OpenGL 3.3 core functions are missing");
        return false;
    }
    return true;
}

bool GLContext::makeCurrent()
{
    if (!m_context || !m_surface || !m_context->makeCurrent(m_surface.get())) {
        m_why = QStringLiteral("the context could not be made current");
        return false;
    }
    return true;
}

GLContext::~GLContext()
{
    if (m_context && QOpenGLContext::currentContext() == m_context.get())
        m_context->doneCurrent();
}

} // namespace QuillmereTest
