#include "lists/mtablemodel.h"

#include "effects/mfield.h"

#include <QCoreApplication>
#include <QMetaProperty>
#include <QMimeData>
#include <QSet>

MTableModel::MTableModel(QObject* parent) : QAbstractTableModel(parent)
{
    m_propertyChangedSlot = metaObject()->method(metaObject()->indexOfSlot("onItemPropertyChanged()"));
}

MTableModel::~MTableModel()
{
    // Items die with the model; their signals must not reach a half-destroyed model.
    const QList<QObject*> objects = m_items;
    m_items.clear();
    for (QObject* object : objects) {
        detach(object);
        delete object;
    }
}

void MTableModel::setItemClass(const QMetaObject* metaObject)
{
    if (!metaObject)
        return;
    beginResetModel();
    m_itemClass = metaObject;
    m_columns.clear();
    m_columnsByName.clear();
    m_roleNames.clear();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        auto field = std::make_unique<MField>();
        field->name = property.name();
        field->type = int(property.type());
        field->id = i;
        field->label = QCoreApplication::translate("Property", property.name());
        m_columnsByName.insert(field->name, field.get());
        m_roleNames.insert(PropertyRole + i, field->name);
        m_columns.push_back(std::move(field));
    }
    endResetModel();
}

int MTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_items.size();
}

int MTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant MTableModel::data(const QModelIndex& index, int role) const
{
    QObject* object = index.isValid() ? item(index.row()) : nullptr;
    if (!object)
        return QVariant();
    if (role >= PropertyRole) {
        const QByteArray name = m_roleNames.value(role);
        return name.isEmpty() ? QVariant() : object->property(name.constData());
    }
    const MField* field = column(index.column());
    if (!field)
        return QVariant();
    const QVariant value = object->property(field->name.constData());
    if (role == Qt::EditRole)
        return value;
    return field->format(value, role);
}

bool MTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    QObject* object = index.isValid() ? item(index.row()) : nullptr;
    if (!object)
        return false;
    QByteArray name;
    if (role >= PropertyRole) {
        name = m_roleNames.value(role);
    } else if (role == Qt::EditRole || role == Qt::DisplayRole) {
        const MField* field = column(index.column());
        if (field)
            name = field->name;
    }
    if (name.isEmpty() || !object->setProperty(name.constData(), value))
        return false;
    const QModelIndex cell = this->index(index.row(), qMax(0, columnOf(name)));
    Q_EMIT dataChanged(cell, cell);
    return true;
}

QVariant MTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    const MField* field = column(section);
    return field ? QVariant(field->label) : QVariant();
}

Qt::ItemFlags MTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    Qt::ItemFlags result = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled;
    if (m_itemClass && index.column() < m_itemClass->propertyCount() &&
        m_itemClass->property(index.column()).isWritable())
        result |= Qt::ItemIsEditable;
    return result;
}

Qt::DropActions MTableModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

namespace {

// The row a drag of this kind of list carries, -1 when it carries none.
int draggedRow(const QMimeData* data, const QString& mimeType, int rows)
{
    if (!data || !data->hasFormat(mimeType))
        return -1;
    bool ok = false;
    const int row = data->data(mimeType).toInt(&ok);
    return ok && row >= 0 && row < rows ? row : -1;
}

} // namespace

bool MTableModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                  const QModelIndex&) const
{
    return action == Qt::MoveAction && draggedRow(data, m_mimeType, m_items.size()) >= 0;
}

bool MTableModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int,
                               const QModelIndex& parent)
{
    if (!canDropMimeData(data, action, row, 0, parent))
        return false;
    int target = row >= 0 ? row : parent.isValid() ? parent.row() : m_items.size();
    return moveItem(draggedRow(data, m_mimeType, m_items.size()), target);
}

bool MTableModel::moveItem(int from, int to)
{
    if (from < 0 || from >= m_items.size() || to < 0 || to > m_items.size())
        return false;
    if (to == from || to == from + 1)
        return true;
    QList<QObject*> moved = m_items;
    QObject* object = moved.takeAt(from);
    moved.insert(to > from ? to - 1 : to, object);
    return reorderItems(moved);
}

QHash<int, QByteArray> MTableModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractTableModel::roleNames();
    for (auto it = m_roleNames.cbegin(); it != m_roleNames.cend(); ++it)
        names.insert(it.key(), it.value());
    return names;
}

QStringList MTableModel::mimeTypes() const
{
    return {m_mimeType};
}

QMimeData* MTableModel::mimeData(const QModelIndexList& indexes) const
{
    // A drag carries the row only: it moves an item within its own kind of list.
    int row = -1;
    for (const QModelIndex& index : indexes) {
        if (index.isValid()) {
            row = index.row();
            break;
        }
    }
    if (row < 0)
        return nullptr;
    auto* mime = new QMimeData;
    mime->setData(m_mimeType, QByteArray::number(row));
    return mime;
}

QObject* MTableModel::item(int row) const
{
    return row >= 0 && row < m_items.size() ? m_items.at(row) : nullptr;
}

QObject* MTableModel::itemById(const QString& id) const
{
    return m_index.value(normalizedId(id));
}

int MTableModel::indexOf(const QObject* object) const
{
    for (int row = 0; row < m_items.size(); ++row) {
        if (m_items.at(row) == object)
            return row;
    }
    return -1;
}

int MTableModel::columnOf(const QByteArray& propertyName) const
{
    const MField* field = m_columnsByName.value(propertyName);
    if (!field)
        return -1;
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].get() == field)
            return int(i);
    }
    return -1;
}

MField* MTableModel::column(int column) const
{
    return column >= 0 && size_t(column) < m_columns.size() ? m_columns[size_t(column)].get() : nullptr;
}

QVector<MField*> MTableModel::columns() const
{
    QVector<MField*> result;
    result.reserve(int(m_columns.size()));
    for (const auto& field : m_columns)
        result.append(field.get());
    return result;
}

int MTableModel::addItem(QObject* object)
{
    return insertItem(m_items.size(), object);
}

int MTableModel::insertItem(int row, QObject* object)
{
    if (!object || m_items.contains(object))
        return -1;
    if (!m_itemClass)
        setItemClass(object->metaObject());
    row = qBound(0, row, m_items.size());
    beginInsertRows(QModelIndex(), row, row);
    m_items.insert(row, object);
    attach(object);
    endInsertRows();
    m_previousRow = m_currentRow;
    m_currentRow = row;
    Q_EMIT currentRowChanged(row);
    itemAdded(object);
    Q_EMIT countChanged(m_items.size());
    return row;
}

bool MTableModel::removeRow(int row)
{
    if (row < 0 || row >= m_items.size())
        return false;
    beginRemoveRows(QModelIndex(), row, row);
    std::unique_ptr<QObject> object(m_items.takeAt(row));
    detach(object.get());
    itemRemoved(object.get());
    object.reset();
    endRemoveRows();
    m_previousRow = m_currentRow;
    m_currentRow = m_items.isEmpty() ? -1 : qMin(row, m_items.size() - 1);
    // Even when the number stays, the row now holds another item.
    Q_EMIT currentRowChanged(m_currentRow);
    Q_EMIT countChanged(m_items.size());
    return true;
}

void MTableModel::clear()
{
    const int before = m_items.size();
    beginResetModel();
    clearRaw();
    endResetModel();
    if (before != 0)
        Q_EMIT countChanged(0);
}

void MTableModel::appendRaw(QObject* object)
{
    if (!object || m_items.contains(object))
        return;
    if (!m_itemClass)
        setItemClass(object->metaObject());
    m_items.append(object);
    attach(object);
}

void MTableModel::setCurrentRow(int row)
{
    if (row < -1 || row >= m_items.size() || row == m_currentRow)
        return;
    m_previousRow = m_currentRow;
    m_currentRow = row;
    Q_EMIT currentRowChanged(row);
}

void MTableModel::onItemPropertyChanged()
{
    QObject* object = sender();
    const int row = indexOf(object);
    if (row < 0)
        return;
    const int signalIndex = senderSignalIndex();
    const QMetaObject* metaObject = object->metaObject();
    // Several properties may share one notify signal.
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (!property.hasNotifySignal() || property.notifySignalIndex() != signalIndex)
            continue;
        const QByteArray name(property.name());
        if (name == m_idProperty) {
            for (auto it = m_index.begin(); it != m_index.end();) {
                it = it.value() == object ? m_index.erase(it) : std::next(it);
            }
            const QString id = idOf(object);
            if (!id.isEmpty())
                m_index.insert(id, object);
        }
        const int columnIndex = columnOf(name);
        if (columnIndex < 0)
            continue;
        const QModelIndex cell = index(row, columnIndex);
        Q_EMIT dataChanged(cell, cell);
        Q_EMIT propertyChanged(row, object, name, property.read(object));
    }
}

void MTableModel::itemAdded(QObject* object)
{
    Q_UNUSED(object)
}

void MTableModel::itemRemoved(QObject* object)
{
    Q_UNUSED(object)
}

void MTableModel::clearRaw()
{
    const QList<QObject*> objects = m_items;
    m_items.clear();
    m_index.clear();
    for (QObject* object : objects) {
        detach(object);
        std::unique_ptr<QObject> owned(object);
    }
}

bool MTableModel::reorderItems(const QList<QObject*>& items)
{
    if (items.size() != m_items.size())
        return false;
    const QSet<QObject*> before(m_items.cbegin(), m_items.cend());
    const QSet<QObject*> after(items.cbegin(), items.cend());
    if (before != after || after.size() != items.size())
        return false;

    QObject* current = item(m_currentRow);
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList oldIndexes = persistentIndexList();
    QList<QObject*> indexedItems;
    indexedItems.reserve(oldIndexes.size());
    for (const QModelIndex& index : oldIndexes)
        indexedItems.append(item(index.row()));
    m_items = items;
    QModelIndexList newIndexes;
    newIndexes.reserve(oldIndexes.size());
    for (int i = 0; i < oldIndexes.size(); ++i)
        newIndexes.append(index(indexOf(indexedItems.at(i)), oldIndexes.at(i).column()));
    changePersistentIndexList(oldIndexes, newIndexes);
    Q_EMIT layoutChanged();

    const int row = indexOf(current);
    if (current && row != m_currentRow) {
        m_previousRow = m_currentRow;
        m_currentRow = row;
        Q_EMIT currentRowChanged(row);
    }
    return true;
}

QString MTableModel::idOf(const QObject* object) const
{
    return normalizedId(object->property(m_idProperty.constData()).toString());
}

void MTableModel::attach(QObject* object)
{
    object->setParent(this);
    const QString id = idOf(object);
    if (!id.isEmpty())
        m_index.insert(id, object);
    const QMetaObject* metaObject = object->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (property.hasNotifySignal())
            connect(object, property.notifySignal(), this, m_propertyChangedSlot, Qt::UniqueConnection);
    }
}

void MTableModel::detach(QObject* object)
{
    for (auto it = m_index.begin(); it != m_index.end();) {
        it = it.value() == object ? m_index.erase(it) : std::next(it);
    }
    // A newer item of the same id keeps its place in the index.
    for (QObject* other : qAsConst(m_items)) {
        const QString id = idOf(other);
        if (other != object && !id.isEmpty() && !m_index.contains(id))
            m_index.insert(id, other);
    }
    const QMetaObject* metaObject = object->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (property.hasNotifySignal())
            disconnect(object, property.notifySignal(), this, m_propertyChangedSlot);
    }
}
