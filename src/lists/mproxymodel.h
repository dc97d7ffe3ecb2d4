#pragma once

#include <QByteArray>
#include <QPointF>
#include <QPointer>
#include <QSortFilterProxyModel>
#include <QVector>

class MTableModel;
class QLineEdit;
class QTableView;

// Sits between an MTableModel, the QTableView that shows some of its columns
// and a search box that filters its rows; keeps the view's current row and the
// model's in step, and reports clicks by rows and columns of the table.
class MProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    // The sort role while no text filters: no role has data there, so the
    // rows keep the table's order.
    static constexpr int unsortedRole = 14;

    explicit MProxyModel(QObject* parent = nullptr);

    MTableModel* tableModel() const { return m_model; }
    QVector<QByteArray> columns() const { return m_columns; }
    QByteArray sortColumn() const { return m_sortColumn; }

    QTableView* view() const { return m_view; }
    // Shows this proxy in the view and follows its clicks, menus and current row.
    void setView(QTableView* view);
    QLineEdit* searchBox() const { return m_searchBox; }
    // Filters by the box's text as it changes and on return.
    void setSearchBox(QLineEdit* box);

public Q_SLOTS:
    void setModel(MTableModel* model);
    // Only these properties show as columns; an empty list shows all.
    void setColumns(const QVector<QByteArray>& columns);
    void setSortColumn(const QByteArray& propertyName);
    void resetSort();
    void applyFilter();
    // From the view: report the current cell as a double click.
    void doubleClick();
    // From the view, at a point of its viewport.
    void contextMenuRequested(const QPointF& point);
    // From the view: its current row becomes the model's.
    void setCurrentIndex();
    // Makes a row of the table current, in the model and in the view.
    void setCurrentRow(int row);
    // From the model: its current row becomes the view's.
    void onCurrentRowChanged();

Q_SIGNALS:
    // Rows and columns are those of the table model; -1 where no cell is.
    void doubleClick(int row, int column);
    void contextMenuRequested(const QPointF& point, int row, int column);

protected:
    bool filterAcceptsColumn(int sourceColumn, const QModelIndex& sourceParent) const override;

private:
    QModelIndex sourceCell(const QModelIndex& proxyIndex) const;

    QPointer<MTableModel> m_model;
    QPointer<QTableView> m_view;
    QPointer<QLineEdit> m_searchBox;
    QVector<QByteArray> m_columns;
    QByteArray m_sortColumn;
};
