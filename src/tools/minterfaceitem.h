#pragma once

#include <QAction>
#include <QIcon>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

class QDockWidget;
class QToolBar;

// What the user interface knows of one tool: its group, its texts and icon,
// the action that chooses it, and the tool bars and docks that follow it.
class MInterfaceItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int toolId READ toolId WRITE set_toolId NOTIFY toolIdChanged)
    Q_PROPERTY(int group READ group WRITE set_group NOTIFY groupChanged)
    Q_PROPERTY(bool active READ active WRITE set_active NOTIFY activeChanged)
    Q_PROPERTY(bool autoShow READ autoShow WRITE set_autoShow NOTIFY autoShowChanged)
    Q_PROPERTY(QString description READ description WRITE set_description NOTIFY descriptionChanged)
    Q_PROPERTY(QString toolHint READ toolHint WRITE set_toolHint NOTIFY toolHintChanged)
    Q_PROPERTY(QIcon icon READ icon WRITE set_icon NOTIFY iconChanged)
    Q_PROPERTY(QAction* toolAction READ toolAction WRITE set_toolAction NOTIFY toolActionChanged)

public:
    explicit MInterfaceItem(QObject* parent = nullptr);

    int toolId() const { return m_toolId; }
    int group() const { return m_group; }
    bool active() const { return m_active; }
    bool autoShow() const { return m_autoShow; }
    QString description() const { return m_description; }
    QString toolHint() const { return m_toolHint; }
    QIcon icon() const { return m_icon; }
    QAction* toolAction() const { return m_toolAction; }

    // Those that still exist: the window that owns them may be gone first.
    QList<QToolBar*> toolBars() const;
    QList<QDockWidget*> dockWidgets() const;
    void addToolBar(QToolBar* toolBar);
    void addDockWidget(QDockWidget* dockWidget);

public Q_SLOTS:
    void set_toolId(int value);
    void set_group(int value);
    void set_active(bool value);
    void set_autoShow(bool value);
    void set_description(const QString& value);
    void set_toolHint(const QString& value);
    void set_icon(const QIcon& value);
    void set_toolAction(QAction* value);

Q_SIGNALS:
    void toolIdChanged(int value);
    void groupChanged(int value);
    void activeChanged(bool value);
    void autoShowChanged(bool value);
    void descriptionChanged(const QString& value);
    void toolHintChanged(const QString& value);
    void iconChanged(const QIcon& value);
    void toolActionChanged(QAction* value);

private:
    int m_toolId = -1;
    int m_group = 0;
    bool m_active = false;
    bool m_autoShow = true;
    QString m_description;
    QString m_toolHint;
    QIcon m_icon;
    QPointer<QAction> m_toolAction;
    QList<QPointer<QToolBar>> m_toolBars;
    QList<QPointer<QDockWidget>> m_dockWidgets;
};
