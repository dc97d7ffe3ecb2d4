#include "lists/mlistmodelbase.h"

#include <QMetaProperty>

MListModelBase::MListModelBase(QObject* parent) : QAbstractListModel(parent)
{
    const int slotIndex = metaObject()->indexOfSlot("onItemPropertyChanged()");
    m_propertyChangedSlot = metaObject()->method(slotIndex);
}

MListModelBase::~MListModelBase()
{
    // Items die with the list; their signals must not reach a half-destroyed model.
    for (QObject* object : qAsConst(m_objects)) {
        disconnectItem(object);
        delete object;
    }
}

int MListModelBase::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_objects.size();
}

QVariant MListModelBase::data(const QModelIndex& index, int role) const
{
    QObject* object = index.isValid() ? objectAt(index.row()) : nullptr;
    if (!object)
        return QVariant();
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return object->property("name");
    const QByteArray name = m_roleNames.value(role);
    return name.isEmpty() ? QVariant() : object->property(name.constData());
}

bool MListModelBase::setData(const QModelIndex& index, const QVariant& value, int role)
{
    QObject* object = index.isValid() ? objectAt(index.row()) : nullptr;
    if (!object)
        return false;
    const QByteArray name =
        (role == Qt::DisplayRole || role == Qt::EditRole) ? QByteArray("name") : m_roleNames.value(role);
    if (name.isEmpty() || !object->setProperty(name.constData(), value))
        return false;
    Q_EMIT dataChanged(index, index, {role});
    return true;
}

Qt::ItemFlags MListModelBase::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::ItemIsEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled |
           Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
}

QHash<int, QByteArray> MListModelBase::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    for (auto it = m_roleNames.cbegin(); it != m_roleNames.cend(); ++it)
        names.insert(it.key(), it.value());
    return names;
}

int MListModelBase::indexOfObject(const QObject* object) const
{
    for (int row = 0; row < m_objects.size(); ++row) {
        if (m_objects.at(row) == object)
            return row;
    }
    return -1;
}

int MListModelBase::roleOf(const QByteArray& propertyName) const
{
    return m_roleByName.value(propertyName, -1);
}

void MListModelBase::setCurrentRow(int row)
{
    if (row < -1 || row >= m_objects.size() || row == m_currentRow)
        return;
    m_currentRow = row;
    Q_EMIT currentRowChanged(row);
}

void MListModelBase::onItemPropertyChanged()
{
    QObject* object = sender();
    const int row = indexOfObject(object);
    if (row < 0)
        return;
    const int signalIndex = senderSignalIndex();
    const QMetaObject* metaObject = object->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (!property.hasNotifySignal() || property.notifySignalIndex() != signalIndex)
            continue;
        const QByteArray name(property.name());
        const QModelIndex cell = index(row);
        const int role = roleOf(name);
        Q_EMIT dataChanged(cell, cell, role < 0 ? QVector<int>() : QVector<int>{role});
        Q_EMIT propertyChanged(row, object, name, property.read(object));
    }
}

void MListModelBase::insertObject(int row, QObject* object)
{
    if (!object)
        return;
    if (row < 0 || row > m_objects.size())
        row = m_objects.size();
    learnClass(object->metaObject());
    beginInsertRows(QModelIndex(), row, row);
    object->setParent(nullptr);
    m_objects.insert(row, object);
    connectItem(object);
    endInsertRows();
    if (m_currentRow >= row) {
        // The current item moved down one place with the insertion.
        ++m_currentRow;
        Q_EMIT currentRowChanged(m_currentRow);
    }
    Q_EMIT countChanged(m_objects.size());
}

QObject* MListModelBase::takeObject(int row)
{
    if (row < 0 || row >= m_objects.size())
        return nullptr;
    beginRemoveRows(QModelIndex(), row, row);
    QObject* object = m_objects.takeAt(row);
    disconnectItem(object);
    endRemoveRows();
    const int last = m_objects.size() - 1;
    if (m_currentRow > last) {
        m_currentRow = last;
        Q_EMIT currentRowChanged(m_currentRow);
    }
    Q_EMIT countChanged(m_objects.size());
    return object;
}

bool MListModelBase::removeObject(int row)
{
    QObject* object = takeObject(row);
    delete object;
    return object != nullptr;
}

bool MListModelBase::moveObject(int from, int to)
{
    const int size = m_objects.size();
    if (from < 0 || from >= size || to < 0 || to >= size || from == to)
        return false;
    // Qt's destination row counts the moved row as already gone when moving down.
    beginMoveRows(QModelIndex(), from, from, QModelIndex(), to > from ? to + 1 : to);
    m_objects.move(from, to);
    endMoveRows();
    return true;
}

void MListModelBase::clearObjects()
{
    beginResetModel();
    const QList<QObject*> objects = m_objects;
    m_objects.clear();
    for (QObject* object : objects) {
        disconnectItem(object);
        delete object;
    }
    endResetModel();
    const bool hadCurrent = m_currentRow != -1;
    m_currentRow = -1;
    if (hadCurrent)
        Q_EMIT currentRowChanged(-1);
    if (!objects.isEmpty())
        Q_EMIT countChanged(0);
}

void MListModelBase::connectItem(QObject* object)
{
    const QMetaObject* metaObject = object->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (property.hasNotifySignal())
            connect(object, property.notifySignal(), this, m_propertyChangedSlot, Qt::UniqueConnection);
    }
}

void MListModelBase::disconnectItem(QObject* object)
{
    const QMetaObject* metaObject = object->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (property.hasNotifySignal())
            disconnect(object, property.notifySignal(), this, m_propertyChangedSlot);
    }
}

void MListModelBase::learnClass(const QMetaObject* metaObject)
{
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QByteArray name(metaObject->property(i).name());
        if (m_roleByName.contains(name))
            continue;
        const int role = Qt::UserRole + 1 + m_roleByName.size();
        m_roleByName.insert(name, role);
        m_roleNames.insert(role, name);
    }
}
