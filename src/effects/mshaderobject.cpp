#include "effects/mshaderobject.h"

#include "effects/mfield.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mvalues.h"

MShaderObject::MShaderObject(QObject* parent) : QObject(parent), m_shaderValues(new MValues(this)) {}

void MShaderObject::set_shaderId(const QString& id)
{
    const QString old = m_shaderId;
    if (MShaderList::instance()->shaderById(id)) {
        m_shaderId = id;
        if (id != old)
            applyDefaults(id);
        else
            merge(id);
        set_isShaderActive(true);
    } else {
        m_shaderId.clear();
        m_shaderValues->clear();
    }
    if (m_shaderId != old)
        Q_EMIT shaderIdChanged(m_shaderId);
}

void MShaderObject::setShaderIdAsRead(const QString& id)
{
    if (id.isEmpty() || MShaderList::instance()->shaderById(id)) {
        set_shaderId(id);
        return;
    }
    m_shaderValues->clear();
    if (id == m_shaderId)
        return;
    m_shaderId = id;
    Q_EMIT shaderIdChanged(m_shaderId);
}

void MShaderObject::set_isShaderActive(bool active)
{
    if (active == m_isShaderActive)
        return;
    m_isShaderActive = active;
    Q_EMIT isShaderActiveChanged(active);
}

void MShaderObject::applyDefaults(const QString& id)
{
    fillValues(id, false);
}

void MShaderObject::merge(const QString& id)
{
    fillValues(id, true);
}

void MShaderObject::fillValues(const QString& id, bool keepExisting)
{
    MValues old;
    old.copyFrom(*m_shaderValues);
    m_shaderValues->clear();
    MShader* shader = MShaderList::instance()->shaderById(id);
    if (shader && shader->parseParams()) {
        for (int i = 0; i < shader->paramCount(); ++i) {
            const MField* field = shader->param(i);
            const bool kept = keepExisting && old.contains(field->name);
            m_shaderValues->setValue(field->name, kept ? old.value(field->name) : field->defaultValue);
        }
    }
    Q_EMIT shaderValuesChanged(m_shaderValues);
}

void MShaderObject::copyFrom(const MShaderObject& other)
{
    const bool idChanged = m_shaderId != other.m_shaderId;
    m_shaderId = other.m_shaderId;
    set_isShaderActive(other.m_isShaderActive);
    m_shaderValues->copyFrom(*other.m_shaderValues);
    if (idChanged)
        Q_EMIT shaderIdChanged(m_shaderId);
    Q_EMIT shaderValuesChanged(m_shaderValues);
}
