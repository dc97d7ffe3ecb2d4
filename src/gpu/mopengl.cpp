#include "gpu/mopengl.h"

#include "app/mlogger.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <memory>

MOpenGL::MOpenGL() = default;

bool MOpenGL::initialize()
{
    if (m_initialized)
        return true;

    QOpenGLContext* share = QOpenGLContext::globalShareContext();
    if (!share)
        return false;
    {
        std::unique_ptr<QOffscreenSurface> shareSurface(createSurface(share));
        if (!shareSurface || !share->makeCurrent(shareSurface.get()))
            return false;
        share->doneCurrent();
    }

    std::unique_ptr<QOpenGLContext> context(createSharedContext(share));
    if (!context)
        return false;
    std::unique_ptr<QOffscreenSurface> surface(createSurface(context.get()));
    if (!surface)
        return false;
    if (!context->makeCurrent(surface.get()))
        return false;

    QOpenGLFunctions* gl = context->functions();
    gl->initializeOpenGLFunctions();
    gl->glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, &m_maxTextureImageUnits);
    gl->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &m_maxTextureSize);
    m_initialized = true;

    context->doneCurrent();
    surface->destroy();
    return true;
}

QOpenGLContext* MOpenGL::createSharedContext(QOpenGLContext* share)
{
    const QSurfaceFormat format = share ? share->format() : QSurfaceFormat::defaultFormat();
    auto* context = new QOpenGLContext;
    context->setShareContext(share);
    context->setFormat(format);
    if (!context->create()) {
        MLogger::systemError(QStringLiteral("MOpenGL::createSharedContext"),
                             QStringLiteral("Unable to create shared context."));
        delete context;
        return nullptr;
    }
    return context;
}

QOffscreenSurface* MOpenGL::createSurface(QOpenGLContext* context)
{
    auto* surface = new QOffscreenSurface;
    surface->setFormat(context ? context->format() : QSurfaceFormat::defaultFormat());
    surface->create();
    if (!surface->isValid()) {
        MLogger::systemError(QStringLiteral("MOpenGL::createSurface"),
                             QStringLiteral("Unable to create offscreen surface."));
        delete surface;
        return nullptr;
    }
    return surface;
}

void MOpenGL::clearErrors()
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context)
        return;
    QOpenGLFunctions* gl = context->functions();
    // A lost context can report errors forever; a bound keeps this loop finite.
    for (int i = 0; i < 64 && gl->glGetError() != GL_NO_ERROR; ++i) {
    }
}
