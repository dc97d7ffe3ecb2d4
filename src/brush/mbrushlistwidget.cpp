#include "brush/mbrushlistwidget.h"

#include "brush/dbrushsettings.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mbrushlistdelegate.h"
#include "lists/mlistpanel.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>

MBrushListWidget::MBrushListWidget(QWidget* parent)
    : MListWidget(parent), m_editSettings(new QAction(tr("Edit settings"), this)),
      m_resetSettings(new QAction(tr("Reset settings"), this))
{
    m_editSettings->setObjectName(QStringLiteral("actionEditSettings"));
    m_resetSettings->setObjectName(QStringLiteral("actionResetSettings"));
    connect(m_editSettings, &QAction::triggered, this, &MBrushListWidget::editSettings);
    connect(m_resetSettings, &QAction::triggered, this, &MBrushListWidget::resetSettings);
    setDelegate(new MBrushListDelegate(this));
    setCellSize(itemWidth, itemHeight);
    setSourceModel(MBrushList::instance());
}

void MBrushListWidget::setExtraActions(QAction* first, QAction* second)
{
    m_extra1 = first;
    m_extra2 = second;
}

QMenu* MBrushListWidget::createContextMenu(QWidget* parent) const
{
    auto* menu = new QMenu(parent);
    menu->addAction(m_editSettings);
    menu->addAction(m_resetSettings);
    if (m_extra1 || m_extra2)
        menu->addSeparator();
    if (m_extra1)
        menu->addAction(m_extra1);
    if (m_extra2)
        menu->addAction(m_extra2);
    return menu;
}

void MBrushListWidget::editSettings()
{
    MBrush* brush = MBrushList::instance()->currentBrush();
    if (!brush)
        return;
    DBrushSettings dialog(brush, this);
    dialog.exec();
    panel()->update();
}

void MBrushListWidget::resetSettings()
{
    if (MBrush* brush = MBrushList::instance()->currentBrush()) {
        brush->reload();
        panel()->update();
    }
}

void MBrushListWidget::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu* menu = createContextMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
    event->accept();
}
