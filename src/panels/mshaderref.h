#pragma once

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>

class MShader;

// A stand-in for an effect of the effect list inside a filtered list: it
// reads every property from the effect, which stays where it is.
class MShaderRef : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString id READ id CONSTANT)
    Q_PROPERTY(QString group READ group CONSTANT)
    Q_PROPERTY(QString description READ description CONSTANT)
    Q_PROPERTY(int type READ type CONSTANT)
    Q_PROPERTY(QImage preview READ preview CONSTANT)

public:
    explicit MShaderRef(MShader* shader, QObject* parent = nullptr);

    // Null once the effect is gone.
    MShader* shader() const { return m_shader; }
    QString id() const;
    QString group() const;
    QString description() const;
    int type() const;
    QImage preview() const;

private:
    QPointer<MShader> m_shader;
};
