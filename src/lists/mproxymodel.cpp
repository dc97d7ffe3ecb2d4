#include "lists/mproxymodel.h"

#include "effects/mfield.h"
#include "lists/mtablemodel.h"

#include <QItemSelectionModel>
#include <QLineEdit>
#include <QRegExp>
#include <QTableView>

MProxyModel::MProxyModel(QObject* parent) : QSortFilterProxyModel(parent)
{
    setFilterKeyColumn(-1);
    setSortRole(unsortedRole);
}

void MProxyModel::setView(QTableView* view)
{
    if (m_view)
        disconnect(m_view, nullptr, this, nullptr);
    m_view = view;
    if (!view)
        return;
    view->setModel(this);
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QAbstractItemView::doubleClicked, this, qOverload<>(&MProxyModel::doubleClick));
    connect(view, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& point) { contextMenuRequested(QPointF(point)); });
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &MProxyModel::setCurrentIndex);
    onCurrentRowChanged();
}

void MProxyModel::setSearchBox(QLineEdit* box)
{
    if (m_searchBox)
        disconnect(m_searchBox, nullptr, this, nullptr);
    m_searchBox = box;
    if (!box)
        return;
    connect(box, &QLineEdit::textChanged, this, &MProxyModel::applyFilter);
    connect(box, &QLineEdit::returnPressed, this, &MProxyModel::applyFilter);
}

void MProxyModel::setModel(MTableModel* model)
{
    if (m_model)
        disconnect(m_model, nullptr, this, nullptr);
    m_model = model;
    setSourceModel(model);
    if (model)
        connect(model, &MTableModel::currentRowChanged, this, &MProxyModel::onCurrentRowChanged);
    if (m_view && m_view->selectionModel()) {
        // The view makes a new selection model for a new source: follow it.
        disconnect(m_view->selectionModel(), nullptr, this, nullptr);
        connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
                &MProxyModel::setCurrentIndex);
    }
    onCurrentRowChanged();
}

void MProxyModel::setColumns(const QVector<QByteArray>& columns)
{
    m_columns = columns;
    invalidateFilter();
}

void MProxyModel::setSortColumn(const QByteArray& propertyName)
{
    m_sortColumn = propertyName;
    const int sourceColumn = m_model ? m_model->columnOf(propertyName) : -1;
    if (sourceColumn < 0 || !filterAcceptsColumn(sourceColumn, QModelIndex()))
        return;
    // sort() counts the proxy's columns: those shown before this one.
    int column = 0;
    for (int i = 0; i < sourceColumn; ++i) {
        if (filterAcceptsColumn(i, QModelIndex()))
            ++column;
    }
    setSortRole(Qt::DisplayRole);
    sort(column, Qt::AscendingOrder);
}

void MProxyModel::resetSort()
{
    m_sortColumn.clear();
    setSortRole(unsortedRole);
    sort(-1);
}

void MProxyModel::applyFilter()
{
    const QString text = m_searchBox ? m_searchBox->text().trimmed() : QString();
    setFilterKeyColumn(-1);
    if (text.isEmpty()) {
        setFilterRegExp(QRegExp(QStringLiteral("*"), Qt::CaseInsensitive, QRegExp::Wildcard));
        setSortRole(unsortedRole);
        invalidate();
        return;
    }
    setFilterRegExp(
        QRegExp(QStringLiteral("*") + text + QStringLiteral("*"), Qt::CaseInsensitive, QRegExp::Wildcard));
    setSortRole(Qt::DisplayRole);
}

void MProxyModel::doubleClick()
{
    const QModelIndex cell = m_view ? sourceCell(m_view->currentIndex()) : QModelIndex();
    Q_EMIT doubleClick(cell.isValid() ? cell.row() : -1, cell.isValid() ? cell.column() : -1);
}

void MProxyModel::contextMenuRequested(const QPointF& point)
{
    const QModelIndex cell = m_view ? sourceCell(m_view->indexAt(point.toPoint())) : QModelIndex();
    Q_EMIT contextMenuRequested(point, cell.isValid() ? cell.row() : -1, cell.isValid() ? cell.column() : -1);
}

void MProxyModel::setCurrentIndex()
{
    if (!m_view || !m_model)
        return;
    const QModelIndex cell = sourceCell(m_view->currentIndex());
    if (cell.isValid())
        m_model->setCurrentRow(cell.row());
}

void MProxyModel::setCurrentRow(int row)
{
    if (!m_model)
        return;
    m_model->setCurrentRow(row);
    onCurrentRowChanged();
}

void MProxyModel::onCurrentRowChanged()
{
    if (!m_view || !m_model || m_view->model() != this)
        return;
    const int row = m_model->currentRow();
    if (row < 0)
        return;
    // The first shown column of the row; nothing when the filter hides the row.
    QModelIndex shown;
    for (int column = 0; column < m_model->columnCount() && !shown.isValid(); ++column)
        shown = mapFromSource(m_model->index(row, column));
    if (shown.isValid() && shown.row() != m_view->currentIndex().row())
        m_view->setCurrentIndex(shown);
}

bool MProxyModel::filterAcceptsColumn(int sourceColumn, const QModelIndex& sourceParent) const
{
    Q_UNUSED(sourceParent)
    if (m_columns.isEmpty() || !m_model)
        return true;
    const MField* field = m_model->column(sourceColumn);
    return field && m_columns.contains(field->name);
}

QModelIndex MProxyModel::sourceCell(const QModelIndex& proxyIndex) const
{
    return proxyIndex.isValid() && proxyIndex.model() == this ? mapToSource(proxyIndex) : QModelIndex();
}
