#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMetaMethod>
#include <QVariant>

// A one-column list of QObject items, owned by the list. Every notified
// property of an item reaches views as dataChanged and listeners as
// propertyChanged, without the list knowing the item's class. Each property
// name gets a role from Qt::UserRole + 1 on, in the order first seen; the
// display role shows "name".
// MListModel<T> adds typed access on top.
class MListModelBase : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit MListModelBase(QObject* parent = nullptr);
    ~MListModelBase() override;

    int currentRow() const { return m_currentRow; }
    int count() const { return m_objects.size(); }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QHash<int, QByteArray> roleNames() const override;

    QObject* objectAt(int row) const
    {
        return row >= 0 && row < m_objects.size() ? m_objects.at(row) : nullptr;
    }
    int indexOfObject(const QObject* object) const;
    // The role of a property name, -1 when no item seen so far has it.
    int roleOf(const QByteArray& propertyName) const;

public Q_SLOTS:
    // Rows outside the list, other than -1 for "none", are refused.
    void setCurrentRow(int row);
    void onItemPropertyChanged();

Q_SIGNALS:
    void currentRowChanged(int row);
    void countChanged(int rows);
    void propertyChanged(int row, QObject* object, const QByteArray& propertyName, const QVariant& value);

protected:
    // The list takes the object; a row out of range appends.
    void insertObject(int row, QObject* object);
    // Deletes the object of that row; the current row stays on the same
    // place, or the last row when that place is gone.
    bool removeObject(int row);
    // Gives the object of that row back to the caller without deleting it.
    QObject* takeObject(int row);
    bool moveObject(int from, int to);
    // Deletes every item; the current row becomes -1.
    void clearObjects();

private:
    void connectItem(QObject* object);
    void disconnectItem(QObject* object);
    void learnClass(const QMetaObject* metaObject);

    QList<QObject*> m_objects;
    int m_currentRow = -1;
    QMetaMethod m_propertyChangedSlot;
    QHash<int, QByteArray> m_roleNames;
    QHash<QByteArray, int> m_roleByName;
};
