#include "gpu/mtexturetransfert.h"

#include "app/mlogger.h"
#include "document/mtexturetile.h"
#include "gpu/mbuffertile.h"
#include "gpu/mframebuffer.h"
#include "gpu/mopengl.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLFunctions_3_3_Core>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

const QString noContext = QStringLiteral("Need a current context");

// Framebuffer bindings of the caller, put back after a read.
class FramebufferBindings
{
public:
    explicit FramebufferBindings(QOpenGLFunctions* gl) : m_gl(gl)
    {
        m_gl->glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &m_read);
        m_gl->glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &m_draw);
    }
    ~FramebufferBindings()
    {
        m_gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(m_read));
        m_gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GLuint(m_draw));
    }
    FramebufferBindings(const FramebufferBindings&) = delete;
    FramebufferBindings& operator=(const FramebufferBindings&) = delete;

private:
    QOpenGLFunctions* m_gl;
    GLint m_read = 0;
    GLint m_draw = 0;
};

// Makes a context current for a scope. One that is current already stays so;
// another is made current on a surface of its own, and released with it. A
// failure is logged for source.
class CurrentContext
{
public:
    CurrentContext(QOpenGLContext* context, const QString& source) : m_context(context)
    {
        if (!context) {
            MLogger::systemError(source, noContext);
            return;
        }
        if (QOpenGLContext::currentContext() == context) {
            m_current = true;
            return;
        }
        m_surface.reset(MOpenGL::createSurface(context));
        m_current = m_surface && context->makeCurrent(m_surface.get());
        if (!m_current)
            MLogger::systemError(source, QStringLiteral("Unable to make current context"));
    }
    ~CurrentContext()
    {
        if (m_surface && m_current)
            m_context->doneCurrent();
    }
    CurrentContext(const CurrentContext&) = delete;
    CurrentContext& operator=(const CurrentContext&) = delete;
    bool isCurrent() const { return m_current; }

private:
    QOpenGLContext* m_context;
    std::unique_ptr<QOffscreenSurface> m_surface;
    bool m_current = false;
};

} // namespace

MTextureTransfert::MTextureTransfert(int tileSize, int margin, int bytesPerPixel)
    : m_tileSize(tileSize), m_margin(margin), m_bytesPerPixel(bytesPerPixel)
{
}

// Without shutDown() the GL names are left to their share group.
MTextureTransfert::~MTextureTransfert() = default;

MTextureTransfert* MTextureTransfert::create(int tileSize, int margin, int bytesPerPixel)
{
    if (!exists())
        registerInstance(new MTextureTransfert(tileSize, margin, bytesPerPixel));
    return instance();
}

bool MTextureTransfert::initializeGL(QOpenGLContext* context)
{
    if (m_initialized)
        return true;
    const QString source = QStringLiteral("MTextureTransfert::initializeGL");
    CurrentContext current(context, source);
    if (!current.isCurrent())
        return false;
    QOpenGLFunctions* gl = context->functions();
    m_frameBuffer = std::make_unique<MFrameBuffer>();
    gl->glGenBuffers(bufferCount, m_bufferNames);
    const GLsizeiptr size = GLsizeiptr(m_tileSize) * m_tileSize * m_bytesPerPixel;
    for (unsigned name : m_bufferNames) {
        gl->glBindBuffer(GL_PIXEL_PACK_BUFFER, name);
        gl->glBufferData(GL_PIXEL_PACK_BUFFER, size, nullptr, GL_STREAM_READ);
    }
    gl->glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    m_initialized = true;
    return true;
}

void MTextureTransfert::shutDown(QOpenGLContext* context)
{
    const QString source = QStringLiteral("MTextureTransfert::shutDown");
    CurrentContext current(context, source);
    if (!current.isCurrent())
        return;
    QOpenGLFunctions* gl = context->functions();
    if (m_frameBuffer) {
        m_frameBuffer->detachTexture(0);
        m_frameBuffer->release();
        m_frameBuffer->destroy();
        m_frameBuffer.reset();
    }
    gl->glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    if (m_initialized)
        gl->glDeleteBuffers(bufferCount, m_bufferNames);
    std::fill(std::begin(m_bufferNames), std::end(m_bufferNames), 0u);
    m_initialized = false;
}

bool MTextureTransfert::textureIdToBufferTile(QOpenGLContext* context, unsigned textureId, MBufferTile* tile)
{
    const QString source = QStringLiteral("MTextureTransfert::textureIdToBufferTile");
    if (!tile || !tile->isCreated()) {
        MLogger::systemError(source, QStringLiteral("Invalid buffer"));
        return false;
    }
    if (tile->tileSize() != m_tileSize || tile->bytesPerPixel() != m_bytesPerPixel) {
        MLogger::systemError(source, QStringLiteral("Wrong buffer format"));
        return false;
    }
    CurrentContext current(context, source);
    if (!current.isCurrent())
        return false;
    if (!initializeGL(context)) {
        MLogger::systemError(source, QStringLiteral("Error during initialisation"));
        return false;
    }
    if (!m_initialized) {
        MLogger::systemError(source, QStringLiteral("Texture transfert is not initialized"));
        return false;
    }

    QOpenGLFunctions* gl = context->functions();
    FramebufferBindings bindings(gl);
    MOpenGL::clearErrors();
    // The name is made in this context and deleted after the read, whatever
    // context made the transfer's other objects.
    auto done = [this]() {
        m_frameBuffer->detachTexture(0);
        m_frameBuffer->destroy();
    };
    if (!m_frameBuffer->attachTexture(textureId, 0)) {
        MLogger::systemError(source, QStringLiteral("Unable to attach texture %1").arg(textureId));
        done();
        return false;
    }
    const size_t byteCount = size_t(m_tileSize) * size_t(m_tileSize) * size_t(m_bytesPerPixel);
    auto* core = context->versionFunctions<QOpenGLFunctions_3_3_Core>();
    if (core && core->initializeOpenGLFunctions()) {
        core->glBindBuffer(GL_PIXEL_PACK_BUFFER, m_bufferNames[m_currentBufferIndex]);
        core->glReadPixels(0, 0, m_tileSize, m_tileSize, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
        const void* mapped = core->glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY);
        if (!mapped) {
            MLogger::systemError(source, QStringLiteral("Unable to map pixel buffer"));
            core->glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
            done();
            return false;
        }
        std::memcpy(tile->buffer(), mapped, byteCount);
        core->glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
        core->glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
        done();
        return true;
    }
    gl->glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    gl->glReadPixels(0, 0, m_tileSize, m_tileSize, GL_RGBA, GL_UNSIGNED_BYTE, tile->buffer());
    done();
    return true;
}

bool MTextureTransfert::textureTileToBufferTile(QOpenGLContext* context, MTextureTile* source,
                                                MBufferTile* tile)
{
    if (!source) {
        MLogger::systemError(QStringLiteral("MTextureTransfert::textureTileToBufferTile"),
                             QStringLiteral("Need a texture tile"));
        return false;
    }
    return textureIdToBufferTile(context, source->textureId(), tile);
}
