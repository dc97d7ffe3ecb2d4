#include "effects/mvalues.h"

#include <QColor>
#include <QOpenGLShaderProgram>

void MValues::setValue(const QByteArray& name, const QVariant& value)
{
    const auto found = m_values.find(name);
    if (found != m_values.end()) {
        if (found.value() == value)
            return;
        found.value() = value;
    } else {
        m_values.insert(name, value);
    }
    Q_EMIT valueChanged(name, value);
}

void MValues::applyUniforms(QOpenGLShaderProgram* program) const
{
    if (!program)
        return;
    for (auto it = m_values.constBegin(); it != m_values.constEnd(); ++it) {
        const char* name = it.key().constData();
        const QVariant& value = it.value();
        switch (int(value.type())) {
        case QVariant::Bool:
            program->setUniformValue(name, GLint(value.toBool() ? 1 : 0));
            break;
        case QVariant::Int:
            program->setUniformValue(name, GLint(value.toInt()));
            break;
        case QVariant::Color:
            program->setUniformValue(name, value.value<QColor>());
            break;
        default:
            program->setUniformValue(name, value.toFloat());
            break;
        }
    }
}
