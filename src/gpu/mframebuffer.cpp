#include "gpu/mframebuffer.h"

#include "app/mlogger.h"

#include <QDebug>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace {

QOpenGLFunctions* currentFunctions()
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    return context ? context->functions() : nullptr;
}

} // namespace

MFrameBuffer::MFrameBuffer(QObject* parent) : QObject(parent) {}

// The name can only be deleted with a context current; a framebuffer that
// outlives its context leaks its name rather than touching a dead one.
MFrameBuffer::~MFrameBuffer()
{
    if (m_name && QOpenGLContext::currentContext())
        destroy();
}

bool MFrameBuffer::attachTexture(unsigned textureId, int attachment)
{
    QOpenGLFunctions* gl = currentFunctions();
    if (!gl)
        return false;
    if (m_name == 0) {
        gl->glGenFramebuffers(1, &m_name);
        if (m_name == 0) {
            qDebug() << "error glGenFrameBuffer";
            return false;
        }
    }
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_name);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0 + attachment, GL_TEXTURE_2D, textureId,
                               0);
    const GLenum status = gl->glCheckFramebufferStatus(GL_FRAMEBUFFER);
    if (status == GL_FRAMEBUFFER_COMPLETE)
        return true;
    debugStatus(status);
    return false;
}

bool MFrameBuffer::detachTexture(int attachment)
{
    QOpenGLFunctions* gl = currentFunctions();
    if (!gl || m_name == 0)
        return false;
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_name);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0 + attachment, GL_TEXTURE_2D, 0, 0);
    return true;
}

void MFrameBuffer::bind()
{
    QOpenGLFunctions* gl = currentFunctions();
    if (gl && m_name)
        gl->glBindFramebuffer(GL_FRAMEBUFFER, m_name);
}

void MFrameBuffer::release()
{
    if (QOpenGLFunctions* gl = currentFunctions())
        gl->glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

void MFrameBuffer::destroy()
{
    QOpenGLFunctions* gl = currentFunctions();
    if (gl && m_name)
        gl->glDeleteFramebuffers(1, &m_name);
    m_name = 0;
}

QString MFrameBuffer::statusName(unsigned status)
{
    switch (status) {
    case GL_FRAMEBUFFER_COMPLETE:
        return QString();
    case 0x8219: // GL_FRAMEBUFFER_UNDEFINED
        return QStringLiteral("GL_FRAMEBUFFER_UNDEFINED");
    case GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT:
        return QStringLiteral("GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT");
    case GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT:
        return QStringLiteral("GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT");
    case 0x8CDB: // GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER
        return QStringLiteral("GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER");
    case 0x8CDC: // GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER
        return QStringLiteral("GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER");
    case GL_FRAMEBUFFER_UNSUPPORTED:
        return QStringLiteral("GL_FRAMEBUFFER_UNSUPPORTED");
    case 0x8D56: // GL_FRAMEBUFFER_INCOMPLETE_MULTISAMPLE
        return QStringLiteral("GL_FRAMEBUFFER_INCOMPLETE_MULTISAMPLE");
    case 0x8DA8: // GL_FRAMEBUFFER_INCOMPLETE_LAYER_TARGETS
        return QStringLiteral("GL_FRAMEBUFFER_INCOMPLETE_LAYER_TARGETS");
    default:
        return QStringLiteral("?");
    }
}

void MFrameBuffer::debugStatus(unsigned status)
{
    const QString name = statusName(status);
    if (!name.isEmpty())
        MLogger::systemError(QStringLiteral("MFrameBuffer::debugStatus"), name);
}
