#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QVariant>

class QOpenGLShaderProgram;

// Parameter values by name. They reach a shader program as uniforms of the
// same names; a name the program doesn't declare is harmless.
class MValues : public QObject
{
    Q_OBJECT

public:
    explicit MValues(QObject* parent = nullptr) : QObject(parent) {}

    // Stores a new key, or replaces a value that differs; emits only then.
    void setValue(const QByteArray& name, const QVariant& value);
    QVariant value(const QByteArray& name) const { return m_values.value(name); }
    bool contains(const QByteArray& name) const { return m_values.contains(name); }
    QList<QByteArray> names() const { return m_values.keys(); }
    int count() const { return m_values.size(); }
    const QHash<QByteArray, QVariant>& values() const { return m_values; }
    void clear() { m_values.clear(); }
    void copyFrom(const MValues& other) { m_values = other.m_values; }

    // Sets every value as the uniform of its name on a bound program: booleans
    // and integers as int, colours as vec4, anything else as float.
    void applyUniforms(QOpenGLShaderProgram* program) const;

Q_SIGNALS:
    void valueChanged(const QByteArray& name, const QVariant& value);

private:
    QHash<QByteArray, QVariant> m_values;
};
