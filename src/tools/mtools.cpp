#include "tools/mtools.h"

#include "app/mevent.h"
#include "tools/mbrushtool.h"
#include "tools/mcomicstriptool.h"
#include "tools/mfillselectiontool.h"
#include "tools/mfilltool.h"
#include "tools/mgradienttool.h"
#include "tools/mgridtool.h"
#include "tools/mimagetool.h"
#include "tools/minterfaceitem.h"
#include "tools/mlinetool.h"
#include "tools/mpantool.h"
#include "tools/mperspectivetool.h"
#include "tools/mrotatetool.h"
#include "tools/mrullertool.h"
#include "tools/mselectiontool.h"
#include "tools/mshapetool.h"
#include "tools/msymmetrytool.h"
#include "tools/mtexttool.h"
#include "tools/mtool.h"
#include "tools/mzoomtool.h"

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>
#include <QIcon>
#include <QMainWindow>
#include <QMetaEnum>
#include <QPainter>
#include <QToolBar>

namespace {

// The dynamic property that ties an action to its tool.
const char* const toolIdProperty = "TBK_TOOLID";
// Marks a tool bar whose content a tool has built, so that it is built once.
const char* const builtProperty = "TBK_TOOLBAR_BUILT";

struct ToolEntry
{
    int toolId;
    int group;
    const char* description;
    const char* icon;
};

// In the order in which the interface items are made.
const ToolEntry toolTable[] = {
    {MTool::BrushTool, 0, QT_TRANSLATE_NOOP("MTools", "Brush tool"), ":/icons/tools/brush-tool.ico"},
    {MTool::SelectionTool, 0, QT_TRANSLATE_NOOP("MTools", "Selection tool"),
     ":/icons/tools/selection-tool.ico"},
    {MTool::LineTool, 0, QT_TRANSLATE_NOOP("MTools", "Line tool"), ":/icons/tools/line-tool.ico"},
    {MTool::FillTool, 0, QT_TRANSLATE_NOOP("MTools", "Fill tool"), ":/icons/tools/fill-tool.ico"},
    {MTool::FillSelectionTool, 0, QT_TRANSLATE_NOOP("MTools", "Fill selection tool"),
     ":/icons/tools/fillselection-tool.ico"},
    {MTool::ShapeTool, 0, QT_TRANSLATE_NOOP("MTools", "Shape tool"), ":/icons/tools/shape-tool.ico"},
    {MTool::TextTool, 0, QT_TRANSLATE_NOOP("MTools", "Text tool"), ":/icons/tools/text-tool.ico"},
    {MTool::ImageTool, 0, QT_TRANSLATE_NOOP("MTools", "Image tool"), ":/icons/tools/image-tool.ico"},
    {MTool::GradientTool, 0, QT_TRANSLATE_NOOP("MTools", "Gradient tool"), ":/icons/tools/gradient-tool.ico"},
    {MTool::PanTool, 0, QT_TRANSLATE_NOOP("MTools", "Pan tool"), ":/icons/tools/pan-tool.ico"},
    {MTool::RotateTool, 0, QT_TRANSLATE_NOOP("MTools", "Rotate tool"), ":/icons/tools/rotate-tool.ico"},
    {MTool::ZoomTool, 0, QT_TRANSLATE_NOOP("MTools", "Zoom tool"), ":/icons/tools/zoom-tool.ico"},
    {MTool::GridTool, 1, QT_TRANSLATE_NOOP("MTools", "Grid tool"), ":/icons/tools/grid-tool.ico"},
    {MTool::PerspectiveTool, 1, QT_TRANSLATE_NOOP("MTools", "Perspective tool"),
     ":/icons/tools/perspective-tool.ico"},
    {MTool::SymmetryTool, 1, QT_TRANSLATE_NOOP("MTools", "Symmetry tool"), ":/icons/tools/symmetry-tool.ico"},
    {MTool::ComicStripTool, 1, QT_TRANSLATE_NOOP("MTools", "Comic strip tool"),
     ":/icons/tools/comicstrip-tool.ico"},
    {MTool::RullerTool, 1, QT_TRANSLATE_NOOP("MTools", "Ruller tool"), ":/icons/tools/ruller-tool.ico"},
};

} // namespace

MTools::MTools()
{
    // Group 0 exclusive, as an action group is by default; group 1 free.
    m_actionGroups.append(new QActionGroup(this));
    auto* overlays = new QActionGroup(this);
    overlays->setExclusive(false);
    m_actionGroups.append(overlays);
}

MTools::~MTools()
{
    // Tools talk to this object while they go: they go first.
    m_mouseTool = nullptr;
    const QList<MTool*> tools = m_tools.values();
    m_tools.clear();
    qDeleteAll(tools);
    const QList<MInterfaceItem*> items = m_items.values();
    m_items.clear();
    qDeleteAll(items);
}

// ---------------------------------------------------------------------------
// Registry

void MTools::set_widget(MWidget* value)
{
    if (value == m_widget)
        return;
    m_widget = value;
    Q_EMIT widgetChanged(value);
    refresh();
}

int MTools::group(int toolId) const
{
    const MInterfaceItem* found = m_items.value(toolId);
    return found ? found->group() : -1;
}

bool MTools::isOverlay(int toolId) const
{
    const int found = group(toolId);
    return found != 0 && found != -1;
}

bool MTools::addTool(MTool* tool, int group, const QString& description, const QString& iconPath)
{
    if (!tool || m_tools.contains(tool->toolId()))
        return false;
    const int id = tool->toolId();
    tool->setParent(this);
    m_tools.insert(id, tool);
    auto* created = new MInterfaceItem(this);
    created->set_toolId(id);
    created->set_group(group);
    created->set_description(description);
    if (!iconPath.isEmpty())
        created->set_icon(QIcon(iconPath));
    m_items.insert(id, created);
    return true;
}

bool MTools::removeTool(int toolId)
{
    MTool* found = m_tools.take(toolId);
    if (!found)
        return false;
    if (m_mouseTool == found)
        m_mouseTool = nullptr;
    if (MInterfaceItem* removed = m_items.take(toolId)) {
        if (QAction* action = removed->toolAction()) {
            action->disconnect(this);
            if (action->actionGroup())
                action->actionGroup()->removeAction(action);
        }
        delete removed;
    }
    if (m_currentToolId == toolId)
        m_currentToolId = -1;
    delete found;
    return true;
}

void MTools::bindAction(int toolId, QAction* action)
{
    MInterfaceItem* target = m_items.value(toolId);
    if (!target || !action)
        return;
    if (QAction* previous = target->toolAction(); previous && previous != action)
        disconnect(previous, &QAction::toggled, this, &MTools::onActionToggled);
    action->setProperty(toolIdProperty, toolId);
    action->setCheckable(true);
    // The window leaves actions without a handler of their own disabled; this
    // is the handler of a tool's action.
    action->setEnabled(true);
    if (QActionGroup* actions = m_actionGroups.value(target->group()))
        actions->addAction(action);
    connect(action, &QAction::toggled, this, &MTools::onActionToggled, Qt::UniqueConnection);
    target->set_toolAction(action);
}

void MTools::createTools()
{
    // The tools are made in this order; their items in that of the table.
    MTool* made[] = {new MBrushTool,      new MLineTool, new MSelectionTool,     new MImageTool,
                     new MShapeTool,      new MTextTool, new MGridTool,          new MPerspectiveTool,
                     new MSymmetryTool,   new MFillTool, new MFillSelectionTool, new MGradientTool,
                     new MComicStripTool, new MPanTool,  new MRotateTool,        new MZoomTool,
                     new MRullerTool};
    QMap<int, MTool*> byId;
    for (MTool* each : made)
        byId.insert(each->toolId(), each);
    for (const ToolEntry& entry : toolTable) {
        MTool* each = byId.take(entry.toolId);
        addTool(each, entry.group, tr(entry.description), QString::fromLatin1(entry.icon));
    }
    // Every tool has a row in the table; nothing is left over.
    qDeleteAll(byId);
}

void MTools::init(QMainWindow* parent)
{
    if (m_tools.isEmpty())
        createTools();
    // A window of its own for a later call: what the last one showed is off.
    for (MInterfaceItem* each : qAsConst(m_items)) {
        if (!each->active())
            continue;
        each->set_active(false);
        if (MTool* found = m_tools.value(each->toolId()))
            found->activate(false);
    }
    m_currentToolId = -1;
    if (parent)
        wireItems(parent);
    activate(MTool::BrushTool, true);
}

void MTools::wireItems(QMainWindow* parent)
{
    const QMetaObject& meta = MTool::staticMetaObject;
    const QMetaEnum keys = meta.enumerator(meta.indexOfEnumerator("ToolId"));
    for (int i = 0; i < keys.keyCount(); ++i) {
        const int id = keys.value(i);
        MInterfaceItem* target = m_items.value(id);
        MTool* found = m_tools.value(id);
        if (!target || !found)
            continue;
        const QString key = QString::fromLatin1(keys.key(i));
        QString lowerKey = key;
        lowerKey[0] = lowerKey.at(0).toLower();

        if (auto* action = parent->findChild<QAction*>(QStringLiteral("action") + key))
            bindAction(id, action);
        if (auto* toolBar = parent->findChild<QToolBar*>(lowerKey + QStringLiteral("Bar"))) {
            target->addToolBar(toolBar);
            if (!toolBar->property(builtProperty).toBool()) {
                toolBar->setProperty(builtProperty, true);
                found->setupToolBar(toolBar);
            }
        }
        const QList<QDockWidget*> docks =
            parent->findChildren<QDockWidget*>(lowerKey + QStringLiteral("DockWidget"));
        for (QDockWidget* dock : docks)
            target->addDockWidget(dock);
    }
}

QString MTools::toolName(int toolId) const
{
    const MTool* found = m_tools.value(toolId);
    if (!found)
        return QString();
    return QString::fromLatin1(found->metaObject()->className()).mid(1).trimmed().toLower();
}

void MTools::hideInterface()
{
    for (const MInterfaceItem* each : qAsConst(m_items)) {
        for (QToolBar* toolBar : each->toolBars())
            toolBar->hide();
        for (QDockWidget* dock : each->dockWidgets())
            dock->hide();
    }
}

// ---------------------------------------------------------------------------
// Activation

void MTools::activate(int toolId, bool value)
{
    MInterfaceItem* target = m_items.value(toolId);
    MTool* found = m_tools.value(toolId);
    if (!target || !found || target->active() == value)
        return;
    target->set_active(value);
    // Written straight: currentToolIdChanged is the setter's alone.
    if (value && target->group() == 0)
        m_currentToolId = toolId;
    found->activate(value);
    if (value)
        Q_EMIT toolChanged(found);
    // Through the exclusive group this unchecks the previous tool of group 0,
    // whose toggled(false) comes back here and deactivates it.
    if (QAction* action = target->toolAction())
        action->setChecked(value);
    for (QToolBar* toolBar : target->toolBars()) {
        toolBar->setVisible(value);
        toolBar->adjustSize();
    }
    for (QDockWidget* dock : target->dockWidgets()) {
        if (target->autoShow() && dock->isHidden() && value) {
            dock->show();
            Q_EMIT showPanel(dock);
        }
    }
}

void MTools::onActionToggled(bool value)
{
    const QAction* action = qobject_cast<QAction*>(sender());
    if (!action)
        return;
    bool ok = false;
    const int id = action->property(toolIdProperty).toInt(&ok);
    if (ok)
        activate(id, value);
}

void MTools::refresh()
{
    if (m_widget)
        m_widget->update();
}

// ---------------------------------------------------------------------------
// Dispatch

void MTools::dispatchPress(MEvent* event)
{
    s_pressSeen = true;
    for (MTool* each : qAsConst(m_tools)) {
        if (isOverlay(each->toolId()) && each->visible() && each->mousePressEvent(event)) {
            m_mouseTool = each;
            return;
        }
    }
    m_mouseTool = currentTool();
    if (m_mouseTool)
        m_mouseTool->mousePressEvent(event);
}

void MTools::dispatchHoverMove(MEvent* event)
{
    if (MTool* current = currentTool())
        current->hoverMoveEvent(event);
}

void MTools::dispatchMove(MEvent* event)
{
    if (m_mouseTool)
        m_mouseTool->mouseMoveEvent(event);
}

void MTools::dispatchRelease(MEvent* event)
{
    // A release without its press is dropped.
    if (!s_pressSeen)
        return;
    s_pressSeen = false;
    if (m_mouseTool)
        m_mouseTool->mouseReleaseEvent(event);
}

void MTools::dispatchDoubleClick(MEvent* event)
{
    if (MTool* current = currentTool())
        current->mouseDoubleClickEvent(event);
}

void MTools::dispatchWheel(QWheelEvent* event)
{
    if (MTool* current = currentTool())
        current->wheelEvent(event);
}

bool MTools::dispatchKey(QKeyEvent* event)
{
    for (MTool* each : qAsConst(m_tools)) {
        if (isOverlay(each->toolId()) && each->visible() && each->keyPressEvent(event))
            return true;
    }
    MTool* current = currentTool();
    return current && current->keyPressEvent(event);
}

void MTools::dispatchPaint(QPainter* painter)
{
    if (!painter)
        return;
    // Each tool tests its own visibility; none leaves its painter state to the next.
    for (MTool* each : qAsConst(m_tools)) {
        painter->save();
        each->paint(painter);
        painter->restore();
    }
}

bool MTools::updateCursor(const QPointF& localPos, double scale)
{
    if (!m_widget)
        return false;
    for (MTool* each : qAsConst(m_tools)) {
        if (isOverlay(each->toolId()) && each->visible() && each->updateCursor(localPos, scale)) {
            m_widget->setCursor(each->cursor());
            return true;
        }
    }
    for (MTool* each : qAsConst(m_tools)) {
        if (group(each->toolId()) == 0 && each->visible()) {
            each->updateCursor(localPos, scale);
            m_widget->setCursor(each->cursor());
            return true;
        }
    }
    return false;
}
