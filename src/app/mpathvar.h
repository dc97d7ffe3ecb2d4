#pragma once

#include <QObject>

// A variable that file names in effects may use, such as "$ImagesPath$".
class MPathVar : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString variable READ variable CONSTANT)
    Q_PROPERTY(QString description READ description CONSTANT)

public:
    MPathVar(const QString& variable, const QString& description, const QString& replacement,
             QObject* parent = nullptr);

    QString variable() const { return m_variable; }
    QString description() const { return m_description; }
    QString replacement() const { return m_replacement; }

private:
    QString m_variable;
    QString m_description;
    QString m_replacement;
};
