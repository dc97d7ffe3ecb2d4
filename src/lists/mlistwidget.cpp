#include "lists/mlistwidget.h"

#include "lists/mlistpanel.h"
#include "lists/mlistpaneldelegate.h"
#include "lists/mtablemodel.h"

#include <QHBoxLayout>
#include <QScrollBar>

MListWidget::MListWidget(QWidget* parent)
    : QWidget(parent), m_panel(new MListPanel(this)), m_scrollBar(new QScrollBar(Qt::Vertical, this)),
      m_delegate(new MListPanelDelegate(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addWidget(m_panel, 1);
    layout->addWidget(m_scrollBar);

    m_panel->setDelegate(m_delegate);
    m_scrollBar->setRange(0, 500);
    m_scrollBar->setPageStep(int(m_panel->cellHeight() * 10.0));
    m_scrollBar->setSingleStep(int(m_panel->pitch()));

    connect(m_scrollBar, &QScrollBar::valueChanged, m_panel, &MListPanel::setFirstY);
    connect(m_panel, &MListPanel::firstYChanged, this, &MListWidget::onPanelFirstYChanged);
    connect(m_panel, &MListPanel::click, this, &MListWidget::click);
    connect(m_panel, &MListPanel::doubleClick, this, &MListWidget::doubleClick);
}

void MListWidget::setDelegate(MListPanelDelegate* delegate)
{
    if (!delegate || delegate == m_delegate)
        return;
    MListPanelDelegate* former = m_delegate;
    delegate->setParent(this);
    m_delegate = delegate;
    m_panel->setDelegate(delegate);
    if (former && former->parent() == this)
        former->deleteLater();
}

qreal MListWidget::cellWidth() const
{
    return m_panel->cellWidth();
}

qreal MListWidget::cellHeight() const
{
    return m_panel->cellHeight();
}

qreal MListWidget::gap() const
{
    return m_panel->gap();
}

void MListWidget::setCellSize(qreal width, qreal height)
{
    m_panel->setCellSize(width, height);
    m_scrollBar->setPageStep(int(height * 10.0));
    m_scrollBar->setSingleStep(int(m_panel->pitch()));
    resetScrollBar();
}

void MListWidget::setGap(qreal gap)
{
    m_panel->setGap(gap);
    m_scrollBar->setSingleStep(int(m_panel->pitch()));
    resetScrollBar();
}

void MListWidget::setSourceModel(MTableModel* model)
{
    if (model == m_model)
        return;
    if (m_model)
        disconnect(m_model, nullptr, this, nullptr);
    m_model = model;
    m_panel->setModel(model);
    if (model) {
        connect(model, &MTableModel::currentRowChanged, this, &MListWidget::onModelCurrentRowChanged);
        connect(model, &MTableModel::countChanged, this, &MListWidget::onModelCountChanged);
        // Any change of the items' look or sequence shows at once.
        auto repaint = [this] { m_panel->update(); };
        connect(model, &QAbstractItemModel::dataChanged, this, repaint);
        connect(model, &QAbstractItemModel::layoutChanged, this, repaint);
        connect(model, &QAbstractItemModel::modelReset, this,
                [this] { onModelCountChanged(m_panel->rowCount()); });
    }
    resetScrollBar();
    m_panel->update();
    Q_EMIT sourceModelChanged(model);
}

void MListWidget::onModelCurrentRowChanged(int row)
{
    m_panel->ensureRowVisible(row);
    m_panel->update();
}

void MListWidget::onModelCountChanged(int rows)
{
    Q_UNUSED(rows)
    resetScrollBar();
    m_panel->update();
}

void MListWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    resetScrollBar();
}

void MListWidget::onPanelFirstYChanged(int firstY)
{
    // The panel may reach past the bar's range before the model reports its
    // new count: a new item is made current before the count follows.
    if (firstY > m_scrollBar->maximum())
        m_scrollBar->setRange(0, m_panel->maximumFirstY());
    m_scrollBar->setValue(firstY);
}

void MListWidget::resetScrollBar()
{
    m_panel->setFirstY(m_panel->firstY());
    m_scrollBar->setRange(0, m_panel->maximumFirstY());
    m_scrollBar->setValue(m_panel->firstY());
}
