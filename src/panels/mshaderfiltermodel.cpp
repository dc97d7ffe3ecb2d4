#include "panels/mshaderfiltermodel.h"

#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "panels/mshaderref.h"

MShaderFilterModel::MShaderFilterModel(MShaderList* source, QObject* parent)
    : MTableModel(parent), m_source(source)
{
    setItemClass(&MShaderRef::staticMetaObject);
    connect(this, &MTableModel::currentRowChanged, this, &MShaderFilterModel::onCurrentRowChanged);
    if (source) {
        connect(source, &MTableModel::currentRowChanged, this,
                &MShaderFilterModel::onSourceCurrentRowChanged);
        connect(source, &QAbstractItemModel::modelReset, this, &MShaderFilterModel::rebuild);
        connect(source, &QAbstractItemModel::rowsInserted, this, &MShaderFilterModel::rebuild);
        connect(source, &QAbstractItemModel::rowsRemoved, this, &MShaderFilterModel::rebuild);
        connect(source, &QAbstractItemModel::layoutChanged, this, &MShaderFilterModel::rebuild);
        // A renamed effect may now pass the search, or fail it.
        connect(source, &QAbstractItemModel::dataChanged, this, &MShaderFilterModel::rebuild);
    }
    rebuild();
}

MShader* MShaderFilterModel::shaderAt(int row) const
{
    const auto* ref = qobject_cast<const MShaderRef*>(item(row));
    return ref ? ref->shader() : nullptr;
}

int MShaderFilterModel::rowOf(const MShader* shader) const
{
    if (!shader)
        return -1;
    for (int row = 0; row < count(); ++row)
        if (shaderAt(row) == shader)
            return row;
    return -1;
}

void MShaderFilterModel::setFilter(int filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    rebuild();
}

void MShaderFilterModel::setSearchText(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed == m_searchText)
        return;
    m_searchText = trimmed;
    rebuild();
}

bool MShaderFilterModel::accepts(const MShader* shader) const
{
    if (!shader)
        return false;
    if (m_filter == EffectsOnly && shader->type() == MShader::BrushShader)
        return false;
    if (m_filter == EnginesOnly && shader->type() != MShader::BrushShader)
        return false;
    return m_searchText.isEmpty() || shader->description().contains(m_searchText, Qt::CaseInsensitive) ||
           shader->group().contains(m_searchText, Qt::CaseInsensitive);
}

void MShaderFilterModel::rebuild()
{
    m_syncing = true;
    beginResetModel();
    clearRaw();
    if (m_source) {
        for (int row = 0; row < m_source->count(); ++row) {
            MShader* shader = m_source->shaderAt(row);
            if (accepts(shader))
                appendRaw(new MShaderRef(shader, this));
        }
    }
    endResetModel();
    setCurrentRow(m_source ? rowOf(m_source->currentShader()) : -1);
    m_syncing = false;
    Q_EMIT countChanged(count());
}

void MShaderFilterModel::onCurrentRowChanged(int row)
{
    if (m_syncing || !m_source)
        return;
    MShader* shader = shaderAt(row);
    if (!shader)
        return;
    m_syncing = true;
    m_source->setCurrentRow(m_source->indexOf(shader));
    m_syncing = false;
}

void MShaderFilterModel::onSourceCurrentRowChanged(int row)
{
    if (m_syncing || !m_source)
        return;
    m_syncing = true;
    setCurrentRow(rowOf(m_source->shaderAt(row)));
    m_syncing = false;
}
