#include "panels/mshaderwidget.h"

#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "lists/mlistwidget.h"
#include "panels/mshaderfiltermodel.h"
#include "panels/mshaderlistdelegate.h"

#include <QAction>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QVBoxLayout>

#include <algorithm>

MShaderWidget::MShaderWidget(QWidget* parent)
    : QWidget(parent), m_model(new MShaderFilterModel(MShaderList::instance(), this)),
      m_list(new MListWidget(this)), m_filterCombo(new QComboBox(this)), m_searchEdit(new QLineEdit(this))
{
    m_filterCombo->setObjectName(QStringLiteral("filterCombo"));
    m_filterCombo->addItem(tr("All"), int(MShaderFilterModel::AllShaders));
    m_filterCombo->addItem(tr("Effects"), int(MShaderFilterModel::EffectsOnly));
    m_filterCombo->addItem(tr("Brush engines"), int(MShaderFilterModel::EnginesOnly));
    connect(m_filterCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { m_model->setFilter(m_filterCombo->itemData(index).toInt()); });

    m_searchEdit->setObjectName(QStringLiteral("searchEdit"));
    m_searchEdit->setPlaceholderText(tr("Search"));
    m_searchEdit->setClearButtonEnabled(true);
    connect(m_searchEdit, &QLineEdit::textChanged, m_model, &MShaderFilterModel::setSearchText);

    m_list->setDelegate(new MShaderListDelegate(m_list));
    m_list->setCellSize(itemWidth, itemHeight);
    m_list->setSourceModel(m_model);
    connect(m_list, &MListWidget::doubleClick, this, &MShaderWidget::onDoubleClick);

    auto* filters = new QHBoxLayout;
    filters->setContentsMargins(0, 0, 0, 0);
    filters->addWidget(m_filterCombo);
    filters->addWidget(m_searchEdit, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addLayout(filters);
    layout->addWidget(m_list, 1);
}

MShader* MShaderWidget::currentShader() const
{
    return m_model->shaderAt(m_model->currentRow());
}

void MShaderWidget::setContextActions(const QList<QAction*>& actions)
{
    m_actions.clear();
    for (QAction* action : actions)
        m_actions << action;
}

QMenu* MShaderWidget::createContextMenu(QWidget* parent) const
{
    auto* menu = new QMenu(parent);
    for (const QPointer<QAction>& action : m_actions)
        if (action)
            menu->addAction(action);
    return menu;
}

void MShaderWidget::contextMenuEvent(QContextMenuEvent* event)
{
    const bool anyAction = std::any_of(m_actions.cbegin(), m_actions.cend(),
                                       [](const QPointer<QAction>& action) { return !action.isNull(); });
    if (!anyAction)
        return;
    QMenu* menu = createContextMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
    event->accept();
}

void MShaderWidget::onDoubleClick()
{
    const MShader* shader = currentShader();
    if (!shader)
        return;
    if (shader->type() == MShader::BrushShader)
        Q_EMIT engineActivated(shader->id());
    else
        Q_EMIT effectActivated(shader->id());
}
