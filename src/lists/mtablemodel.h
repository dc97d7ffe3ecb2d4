#pragma once

#include <QAbstractTableModel>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMetaMethod>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>
#include <vector>

class MField;

// A table of QObject items, owned by the model, whose columns are the
// properties of the item class: column i shows property i through its MField,
// and role 256 + i reads or writes that property raw. Every notified property
// of an item reaches views as dataChanged and listeners as propertyChanged.
class MTableModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum
    {
        PropertyRole = 256
    };

    explicit MTableModel(QObject* parent = nullptr);
    ~MTableModel() override;

    // Makes one column per property of the class; existing columns are dropped.
    void setItemClass(const QMetaObject* metaObject);
    const QMetaObject* itemClass() const { return m_itemClass; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QHash<int, QByteArray> roleNames() const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDropActions() const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    // A row dragged from this list lands before row (or parent's row; at the
    // end when both are -1).
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

    int currentRow() const { return m_currentRow; }
    // The current row before the last change of it.
    int previousRow() const { return m_previousRow; }
    int count() const { return m_items.size(); }

    QObject* item(int row) const;
    QObject* currentItem() const { return item(m_currentRow); }
    // The item of that id, compared trimmed and upper-cased; null when none.
    QObject* itemById(const QString& id) const;
    int indexOf(const QObject* object) const;
    QList<QObject*> items() const { return m_items; }

    // The column of a property, -1 when the item class has no such property.
    int columnOf(const QByteArray& propertyName) const;
    MField* column(int column) const;
    MField* columnByName(const QByteArray& propertyName) const { return m_columnsByName.value(propertyName); }
    QVector<MField*> columns() const;

    QString mimeType() const { return m_mimeType; }
    void setMimeType(const QString& mimeType) { m_mimeType = mimeType; }
    QByteArray idPropertyName() const { return m_idProperty; }
    void setIdPropertyName(const QByteArray& name) { m_idProperty = name; }

    // Appends the item, which the model takes, and makes it current. Returns its row, -1 for null.
    virtual int addItem(QObject* object);
    // The same at a row clamped to the list.
    int insertItem(int row, QObject* object);
    // Deletes the item of that row; false for a bad row.
    virtual bool removeRow(int row);
    // Moves the item of row from so that it stands before the item now at row
    // to (at the end for the row count); the current item stays current.
    virtual bool moveItem(int from, int to);
    // Deletes every item; the current row stays as it was.
    void clear();
    // Appends without selection or model signal, for loaders inside a model reset.
    virtual void appendRaw(QObject* object);

    // The upper-cased, trimmed form in which ids are compared.
    static QString normalizedId(const QString& id) { return id.trimmed().toUpper(); }

public Q_SLOTS:
    // Rows outside the list, other than -1 for "none", are refused.
    void setCurrentRow(int row);
    void onItemPropertyChanged();

Q_SIGNALS:
    void currentRowChanged(int row);
    void countChanged(int rows);
    void propertyChanged(int row, QObject* object, const QByteArray& propertyName, const QVariant& value);

protected:
    virtual void itemAdded(QObject* object);
    virtual void itemRemoved(QObject* object);
    // Deletes every item without model signal, for loaders inside a model reset.
    void clearRaw();
    // Puts the same items in a new sequence within a layout change; persistent
    // indexes and the current row follow their items. False, and nothing
    // changes, when the list is not a permutation of the items.
    bool reorderItems(const QList<QObject*>& items);

private:
    QString idOf(const QObject* object) const;
    void attach(QObject* object);
    void detach(QObject* object);

    QList<QObject*> m_items;
    QHash<int, QByteArray> m_roleNames;
    std::vector<std::unique_ptr<MField>> m_columns;
    QHash<QByteArray, MField*> m_columnsByName;
    QMetaMethod m_propertyChangedSlot;
    int m_currentRow = -1;
    int m_previousRow = -1;
    QString m_mimeType = QStringLiteral("application/vnd.tarnbeck");
    const QMetaObject* m_itemClass = nullptr;
    QByteArray m_idProperty = "id";
    QHash<QString, QObject*> m_index;
};
