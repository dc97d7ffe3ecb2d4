#include "panels/mshaderref.h"

#include "effects/mshader.h"

MShaderRef::MShaderRef(MShader* shader, QObject* parent) : QObject(parent), m_shader(shader) {}

QString MShaderRef::id() const
{
    return m_shader ? m_shader->id() : QString();
}

QString MShaderRef::group() const
{
    return m_shader ? m_shader->group() : QString();
}

QString MShaderRef::description() const
{
    return m_shader ? m_shader->description() : QString();
}

int MShaderRef::type() const
{
    return m_shader ? m_shader->type() : int(MShader::EffectShader);
}

QImage MShaderRef::preview() const
{
    return m_shader ? m_shader->preview() : QImage();
}
