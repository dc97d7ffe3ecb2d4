#include "tools/minterfaceitem.h"

#include <QAction>
#include <QDockWidget>
#include <QToolBar>

MInterfaceItem::MInterfaceItem(QObject* parent) : QObject(parent) {}

QList<QToolBar*> MInterfaceItem::toolBars() const
{
    QList<QToolBar*> result;
    for (const QPointer<QToolBar>& toolBar : m_toolBars) {
        if (toolBar)
            result.append(toolBar);
    }
    return result;
}

QList<QDockWidget*> MInterfaceItem::dockWidgets() const
{
    QList<QDockWidget*> result;
    for (const QPointer<QDockWidget>& dock : m_dockWidgets) {
        if (dock)
            result.append(dock);
    }
    return result;
}

void MInterfaceItem::addToolBar(QToolBar* toolBar)
{
    if (toolBar && !toolBars().contains(toolBar))
        m_toolBars.append(toolBar);
}

void MInterfaceItem::addDockWidget(QDockWidget* dockWidget)
{
    if (dockWidget && !dockWidgets().contains(dockWidget))
        m_dockWidgets.append(dockWidget);
}

void MInterfaceItem::set_toolId(int value)
{
    if (value == m_toolId)
        return;
    m_toolId = value;
    Q_EMIT toolIdChanged(value);
}

void MInterfaceItem::set_group(int value)
{
    if (value == m_group)
        return;
    m_group = value;
    Q_EMIT groupChanged(value);
}

void MInterfaceItem::set_active(bool value)
{
    if (value == m_active)
        return;
    m_active = value;
    Q_EMIT activeChanged(value);
}

void MInterfaceItem::set_autoShow(bool value)
{
    if (value == m_autoShow)
        return;
    m_autoShow = value;
    Q_EMIT autoShowChanged(value);
}

void MInterfaceItem::set_description(const QString& value)
{
    if (value == m_description)
        return;
    m_description = value;
    Q_EMIT descriptionChanged(value);
}

void MInterfaceItem::set_toolHint(const QString& value)
{
    if (value == m_toolHint)
        return;
    m_toolHint = value;
    Q_EMIT toolHintChanged(value);
}

void MInterfaceItem::set_icon(const QIcon& value)
{
    // QIcon has no equality: the same cache key is the same icon.
    if (value.cacheKey() == m_icon.cacheKey())
        return;
    m_icon = value;
    Q_EMIT iconChanged(value);
}

void MInterfaceItem::set_toolAction(QAction* value)
{
    if (value == m_toolAction)
        return;
    m_toolAction = value;
    Q_EMIT toolActionChanged(value);
}
