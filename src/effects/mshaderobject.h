#pragma once

#include "effects/mvalues.h"

#include <QObject>
#include <QString>

// Anything that can carry an effect (a brush, a layer): the effect's id, the
// current values of its parameters, and whether it is on.
class MShaderObject : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString shaderId READ shaderId WRITE set_shaderId NOTIFY shaderIdChanged)
    Q_PROPERTY(MValues* shaderValues READ shaderValues NOTIFY shaderValuesChanged)
    Q_PROPERTY(bool isShaderActive READ isShaderActive WRITE set_isShaderActive NOTIFY isShaderActiveChanged)

public:
    explicit MShaderObject(QObject* parent = nullptr);

    QString shaderId() const { return m_shaderId; }
    MValues* shaderValues() const { return m_shaderValues; }
    bool isShaderActive() const { return m_isShaderActive; }

    // Values become the defaults of the effect's parameters.
    void applyDefaults(const QString& id);
    // The same, but a value whose parameter still exists keeps its value.
    void merge(const QString& id);
    void copyFrom(const MShaderObject& other);
    // Takes an id as a file names it, known or not. An id that no effect has
    // stays, without values, so that saving keeps it; until an effect of
    // that id exists the object draws as if it had none.
    void setShaderIdAsRead(const QString& id);

public Q_SLOTS:
    // A known effect is taken (a new one with its defaults, the same one with
    // merged values) and switched on; an unknown id takes the effect away.
    void set_shaderId(const QString& id);
    void set_isShaderActive(bool active);

Q_SIGNALS:
    void shaderIdChanged(const QString& id);
    void shaderValuesChanged(MValues* values);
    void isShaderActiveChanged(bool active);

private:
    void fillValues(const QString& id, bool keepExisting);

    QString m_shaderId;
    MValues* m_shaderValues;
    bool m_isShaderActive = true;
};
