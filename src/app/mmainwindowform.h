#pragma once

#include <QHash>
#include <QList>
#include <QString>

class QAction;
class QDockWidget;
class QMainWindow;
class QMenu;
class QToolBar;
class QWidget;

// The window's form: every action with its object name, text, shortcut and
// icon, the menus, the tool bars and the docks. It builds them on a main
// window and finds them by name; what they do is the window's business.
class MMainWindowForm
{
public:
    MMainWindowForm() = default;
    MMainWindowForm(const MMainWindowForm&) = delete;
    MMainWindowForm& operator=(const MMainWindowForm&) = delete;

    // Creates everything as children of the window, in the order of the
    // form, and places the docks and tool bars in their default layout.
    void setupUi(QMainWindow* window);
    // Docks and tool bars back where setupUi put them.
    void applyDefaultLayout(QMainWindow* window);

    QAction* action(const QString& objectName) const { return m_actions.value(objectName); }
    QMenu* menu(const QString& objectName) const { return m_menus.value(objectName); }
    QToolBar* toolBar(const QString& objectName) const { return m_toolBars.value(objectName); }
    QDockWidget* dock(const QString& objectName) const { return m_docks.value(objectName); }

    // In the order of the form.
    QList<QAction*> actions() const { return m_actionOrder; }
    QList<QToolBar*> toolBars() const { return m_toolBarOrder; }
    QList<QDockWidget*> docks() const { return m_dockOrder; }
    // The checkable actions that choose the current tool.
    QList<QAction*> toolActions() const { return m_toolActions; }

    // Replaces the dock's content; the dock takes ownership.
    void setDockContent(const QString& dockName, QWidget* content);

    // The icon of an action or dock, drawn for this program; null when none.
    static QString iconPath(const QString& objectName);

private:
    void createActions(QMainWindow* window);
    void createMenus(QMainWindow* window);
    void createToolBars(QMainWindow* window);
    void createDocks(QMainWindow* window);
    QMenu* addMenu(QWidget* parent, const char* objectName, const char* title,
                   const QList<const char*>& entries);

    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_menus;
    QHash<QString, QToolBar*> m_toolBars;
    QHash<QString, QDockWidget*> m_docks;
    QList<QAction*> m_actionOrder;
    QList<QToolBar*> m_toolBarOrder;
    QList<QDockWidget*> m_dockOrder;
    QList<QAction*> m_toolActions;
};
