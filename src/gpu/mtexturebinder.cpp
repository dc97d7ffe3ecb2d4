#include "gpu/mtexturebinder.h"

#include "gpu/mopengl.h"

#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>

MTextureBinder::MTextureBinder(QOpenGLFunctions* functions) : m_functions(functions) {}

MTextureBinder::~MTextureBinder() = default;

bool MTextureBinder::bindTexture(unsigned textureId, QOpenGLShaderProgram* program,
                                 const QByteArray& samplerName, int minFilter, int magFilter, int wrapS,
                                 int wrapT)
{
    if (!m_functions || !program || m_nextUnit >= MOpenGL::instance()->maxTextureImageUnits())
        return false;
    program->setUniformValue(samplerName.constData(), m_nextUnit);
    m_functions->glActiveTexture(GLenum(GL_TEXTURE0 + m_nextUnit));
    m_functions->glBindTexture(GL_TEXTURE_2D, textureId);
    m_functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minFilter);
    m_functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, magFilter);
    m_functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrapS);
    m_functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrapT);
    m_units.insert(m_nextUnit, textureId);
    ++m_nextUnit;
    return true;
}

void MTextureBinder::releaseTextures()
{
    if (!m_functions)
        return;
    for (auto it = m_units.cbegin(); it != m_units.cend(); ++it) {
        m_functions->glActiveTexture(GLenum(GL_TEXTURE0 + it.key()));
        m_functions->glBindTexture(GL_TEXTURE_2D, 0);
    }
    m_functions->glActiveTexture(GL_TEXTURE0);
    m_units.clear();
    m_nextUnit = firstUnit;
}
