#pragma once

#include <QAction>
#include <QObject>
#include <QPointer>
#include <QString>

// One row of the action list: a named action of the main window with the text
// and the shortcut the user sees.
class MAction : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString description READ description WRITE set_description NOTIFY descriptionChanged)
    Q_PROPERTY(QString shortCut READ shortCut WRITE set_shortCut NOTIFY shortCutChanged)
    Q_PROPERTY(QAction* action READ action WRITE set_action NOTIFY actionChanged)

public:
    explicit MAction(QObject* parent = nullptr);

    QString description() const { return m_description; }
    QString shortCut() const { return m_shortCut; }
    QAction* action() const { return m_action; }

public Q_SLOTS:
    void set_description(const QString& value);
    void set_shortCut(const QString& value);
    void set_action(QAction* value);

Q_SIGNALS:
    void descriptionChanged(const QString& value);
    void shortCutChanged(const QString& value);
    void actionChanged(QAction* value);

private:
    QString m_description;
    QString m_shortCut;
    QPointer<QAction> m_action;
};
