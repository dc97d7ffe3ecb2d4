#pragma once

#include "app/msingleton.h"
#include "gpu/mwidget.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QString>

class MEvent;
class MInterfaceItem;
class MTool;
class QAction;
class QActionGroup;
class QDockWidget;
class QKeyEvent;
class QMainWindow;
class QPainter;
class QWheelEvent;

// The registry of the tools and the dispatcher of the view's events. Tools of
// group 0 exclude one another, and one of them is the current tool; tools of
// group 1 are overlays that can be on beside any other and see presses and
// keys first.
class MTools : public QObject, public MSingleton<MTools>
{
    Q_OBJECT
    Q_PROPERTY(int currentToolId READ currentToolId NOTIFY currentToolIdChanged)
    Q_PROPERTY(MWidget* widget READ widget WRITE set_widget NOTIFY widgetChanged)

public:
    MTools();
    ~MTools() override;

    int currentToolId() const { return m_currentToolId; }
    MWidget* widget() const { return m_widget; }

    // Creates the tools on the first call, then the interface items wired by
    // name to the window's actions, tool bars and docks, fills the tool bars
    // and makes the brush tool current. A later call, for a new window,
    // keeps the tools and wires them to that window.
    void init(QMainWindow* parent);

    MTool* tool(int toolId) const { return m_tools.value(toolId); }
    MTool* currentTool() const { return m_tools.value(m_currentToolId); }
    MInterfaceItem* item(int toolId) const { return m_items.value(toolId); }
    // Ascending ids: the order in which overlays are offered an event.
    QList<int> toolIds() const { return m_tools.keys(); }
    // The group of the tool's item; -1 for a tool without one.
    int group(int toolId) const;
    // The tool that took the last press.
    MTool* mouseTool() const { return m_mouseTool; }
    QActionGroup* actionGroup(int group) const { return m_actionGroups.value(group); }

    // Takes the tool and makes its interface item. False, and the tool is
    // left to the caller, when its id is taken.
    bool addTool(MTool* tool, int group, const QString& description, const QString& iconPath);
    // Deletes the tool of that id and its item.
    bool removeTool(int toolId);
    // Makes the action choose the tool: it joins the tool's group and its
    // toggling activates the tool.
    void bindAction(int toolId, QAction* action);

    // The class name of the tool, without its "M", in lower case: the name of
    // its help page.
    QString toolName(int toolId) const;
    // Hides every tool bar and dock of every tool.
    void hideInterface();

    // The view's events, in the order told by the view.
    void dispatchPress(MEvent* event);
    void dispatchHoverMove(MEvent* event);
    void dispatchMove(MEvent* event);
    void dispatchRelease(MEvent* event);
    void dispatchDoubleClick(MEvent* event);
    void dispatchWheel(QWheelEvent* event);
    // True when a tool used the key.
    bool dispatchKey(QKeyEvent* event);
    void dispatchPaint(QPainter* painter);

    // Whether a press was seen since the last release that reached a tool.
    static bool pressSeen() { return s_pressSeen; }

public Q_SLOTS:
    void set_widget(MWidget* value);
    // Repaints the view.
    void refresh();
    void activate(int toolId, bool value);
    // Puts the cursor of the tool that wants the position on the view; false
    // without a view or without a visible tool.
    bool updateCursor(const QPointF& localPos, double scale);

Q_SIGNALS:
    void currentToolIdChanged(int value);
    void widgetChanged(MWidget* value);
    void showPanel(QDockWidget* dockWidget);
    void showText(const QString& text);
    void toolChanged(MTool* tool);

private Q_SLOTS:
    void onActionToggled(bool value);

private:
    void createTools();
    void wireItems(QMainWindow* parent);
    bool isOverlay(int toolId) const;

    int m_currentToolId = -1;
    QPointer<MWidget> m_widget;
    QMap<int, MTool*> m_tools;
    MTool* m_mouseTool = nullptr;
    QMap<int, MInterfaceItem*> m_items;
    QList<QActionGroup*> m_actionGroups;
    static inline bool s_pressSeen = false;
};
