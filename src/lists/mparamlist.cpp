#include "lists/mparamlist.h"

#include "app/mlogger.h"
#include "app/mutility.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>

#include <algorithm>
#include <memory>

namespace {

const QString indexName = QStringLiteral("index.qmi");

QString withSlash(const QString& path)
{
    return path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

QStringList sortedKeys(const QHash<QString, MParamFile>& files)
{
    QStringList keys = files.keys();
    std::sort(keys.begin(), keys.end());
    return keys;
}

} // namespace

MParamList::MParamList(MEnum::Directory directory, const QString& extension, QObject* parent)
    : MTableModel(parent), m_directory(directory), m_extension(extension)
{
}

const MParamFile* MParamList::fileRecord(const QString& id) const
{
    const QString key = normalizedId(id);
    auto user = m_userFiles.constFind(key);
    if (user != m_userFiles.constEnd())
        return &user.value();
    auto system = m_systemFiles.constFind(key);
    return system != m_systemFiles.constEnd() ? &system.value() : nullptr;
}

QString MParamList::directoryPath(MEnum::PathType pathType) const
{
    return MUtility::directory(pathType, m_directory);
}

QString MParamList::indexFileName(MEnum::PathType pathType) const
{
    return withSlash(directoryPath(pathType)) + indexName;
}

QString MParamList::userFileName(const QObject* object) const
{
    return QStringLiteral("%1%2.%3").arg(withSlash(directoryPath(MEnum::UserPath)), itemId(object).toLower(),
                                         m_extension);
}

QString MParamList::systemFileName(const QObject* object) const
{
    return QStringLiteral("%1%2.%3").arg(withSlash(directoryPath(MEnum::SystemPath)),
                                         itemId(object).toLower(), m_extension);
}

bool MParamList::readItem(QObject*, const QString&)
{
    return false;
}

bool MParamList::writeItem(QObject*, const QString&)
{
    return false;
}

bool MParamList::saveItem(QObject* object)
{
    const QString id = itemId(object);
    if (id.isEmpty())
        return false;
    const QString fileName = userFileName(object);
    if (!writeItem(object, fileName)) {
        MLogger::systemError(QStringLiteral("MParamList::saveItem"),
                             QStringLiteral("Unable to write ") + fileName);
        return false;
    }
    m_userFiles.insert(id, MParamFile(MEnum::UserPath, fileName, id));
    return true;
}

bool MParamList::restoreToSystem(QObject* object)
{
    const QString fileName = systemFileName(object);
    if (itemId(object).isEmpty() || !QFileInfo(fileName).isFile() || !readItem(object, fileName)) {
        MLogger::systemError(QStringLiteral("MParamList::restoreToSystem"),
                             QStringLiteral("Unable to read ") + fileName);
        return false;
    }
    return saveItem(object);
}

bool MParamList::copyToSystem(QObject* object)
{
    const QString id = itemId(object);
    const QString fileName = systemFileName(object);
    if (id.isEmpty() || !writeItem(object, fileName)) {
        MLogger::systemError(QStringLiteral("MParamList::copyToSystem"),
                             QStringLiteral("Unable to write ") + fileName);
        return false;
    }
    m_systemFiles.insert(id, MParamFile(MEnum::SystemPath, fileName, id));
    return true;
}

bool MParamList::removeFromSystem(QObject* object)
{
    const QString id = itemId(object);
    QFile file(systemFileName(object));
    if (id.isEmpty() || !file.exists())
        return false;
    if (!saveItem(object))
        return false;
    if (!file.remove()) {
        MLogger::systemError(QStringLiteral("MParamList::removeFromSystem"),
                             file.errorString() + QStringLiteral(": ") + file.fileName());
        return false;
    }
    m_systemFiles.remove(id);
    return true;
}

bool MParamList::renameItem(QObject* object, const QString& description)
{
    const QString text = description.trimmed();
    if (indexOf(object) < 0 || text.isEmpty())
        return false;
    object->setProperty(descriptionProperty, text);
    const bool saved = saveItem(object);
    return writeIndex() && saved;
}

bool MParamList::isImportable(const QString& fileName) const
{
    return QFileInfo(fileName).isFile();
}

QObject* MParamList::importFile(const QString& fileName)
{
    std::unique_ptr<QObject> object(createItem());
    // The new item's own id stands in when the file's is missing or taken.
    const QString freshId = itemId(object.get());
    if (!isImportable(fileName) || !readItem(object.get(), fileName)) {
        MLogger::systemError(QStringLiteral("MParamList::importFile"),
                             QStringLiteral("Unable to import ") + fileName);
        return nullptr;
    }
    const QString id = itemId(object.get());
    if (id.isEmpty() || itemById(id) || m_userFiles.contains(id))
        object->setProperty(idPropertyName().constData(), freshId);
    if (!saveItem(object.get()))
        return nullptr;
    QObject* added = object.release();
    addItem(added);
    return added;
}

void MParamList::loadItems(const QStringList& order, const QHash<QString, MParamFile>& files,
                           const QString& source, const QString& what)
{
    beginResetModel();
    clearRaw();
    for (const QString& id : order) {
        const auto record = files.constFind(id);
        if (record == files.constEnd())
            continue;
        std::unique_ptr<QObject> object(createItem());
        object->setParent(nullptr);
        object->setProperty(idPropertyName().constData(), record->id);
        if (!readItem(object.get(), record->fileName)) {
            MLogger::systemError(source, QStringLiteral("Unable to load %1 %2").arg(what, record->fileName));
            continue;
        }
        if (itemId(object.get()) != record->id)
            object->setProperty(idPropertyName().constData(), record->id);
        appendRaw(object.release());
    }
    endResetModel();
}

int MParamList::addItem(QObject* object)
{
    const int row = MTableModel::addItem(object);
    if (row < 0)
        return row;
    const QString id = itemId(object);
    // An item saved before it joins the list has a user file from now on.
    const QString fileName = userFileName(object);
    if (!id.isEmpty() && !m_userFiles.contains(id) && QFileInfo(fileName).isFile())
        m_userFiles.insert(id, MParamFile(MEnum::UserPath, fileName, id));
    addToOrder(id);
    return indexOf(object);
}

bool MParamList::removeRow(int row)
{
    QObject* object = item(row);
    if (!object)
        return false;
    const QString id = itemId(object);
    m_order.removeAll(id);

    QStringList doomed;
    const auto user = m_userFiles.constFind(id);
    if (user != m_userFiles.constEnd())
        doomed.append(user.value().fileName);
    if (!id.isEmpty())
        doomed.append(userFileName(object));
    m_userFiles.remove(id);
    for (const QString& fileName : qAsConst(doomed)) {
        QFile file(fileName);
        if (file.exists() && !file.remove())
            MLogger::systemError(QStringLiteral("MParamList::removeRow"),
                                 file.errorString() + QStringLiteral(": ") + fileName);
    }

    // The order loses the id only after the row is gone, so that the current
    // row goes to the neighbour of the removed one.
    const bool removed = MTableModel::removeRow(row);
    sortByIndex();
    writeIndex();
    return removed;
}

bool MParamList::moveItem(int from, int to)
{
    if (!MTableModel::moveItem(from, to))
        return false;
    QStringList ids;
    const QList<QObject*> present = items();
    for (const QObject* object : present)
        ids.append(itemId(object));
    // Ids of the order without an item keep their place at the end.
    for (const QString& id : qAsConst(m_order)) {
        if (!ids.contains(id))
            ids.append(id);
    }
    return setOrder(ids);
}

bool MParamList::setOrder(const QStringList& ids)
{
    QStringList order;
    QSet<QString> seen;
    for (const QString& id : ids) {
        const QString key = normalizedId(id);
        if (key.isEmpty() || seen.contains(key))
            continue;
        seen.insert(key);
        order.append(key);
    }
    m_order = order;
    sortByIndex();
    return writeIndex();
}

void MParamList::reload()
{
    load();
}

QStringList MParamList::readIndex(MEnum::PathType pathType) const
{
    QFile file(indexFileName(pathType));
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly)) {
        MLogger::systemError(QStringLiteral("MParamList::readIndex"),
                             file.errorString() + QStringLiteral(": ") + file.fileName());
        return {};
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    QStringList ids;
    QSet<QString> seen;
    for (const QString& rawLine : lines) {
        QString line = rawLine.trimmed();
        const int comment = line.indexOf(QLatin1Char('#'));
        if (comment >= 0)
            line = line.left(comment).trimmed();
        // An id named twice would make two rows of one file.
        if (line.isEmpty() || seen.contains(line))
            continue;
        seen.insert(line);
        ids.append(line);
    }
    return ids;
}

bool MParamList::writeIndex() const
{
    QByteArray content;
    for (const QString& rawId : m_order) {
        const QString id = rawId.trimmed();
        const QObject* object = itemById(id);
        if (!object)
            continue;
        const QString group = object->property(groupProperty).toString().trimmed();
        const QString description = object->property(descriptionProperty).toString().trimmed();
        QString line = id + QStringLiteral(" # ");
        if (!group.isEmpty())
            line += group + QLatin1Char('/');
        if (!description.isEmpty())
            line += description;
        content += line.toUtf8() + '\n';
    }
    QSaveFile file(indexFileName(MEnum::UserPath));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit()) {
        MLogger::systemError(QStringLiteral("MParamList::writeIndex"),
                             file.errorString() + QStringLiteral(": ") + file.fileName());
        return false;
    }
    return true;
}

bool MParamList::lessByDescription(const QObject* first, const QObject* second)
{
    return first->property(descriptionProperty).toString() < second->property(descriptionProperty).toString();
}

bool MParamList::lessByGroupAndDescription(const QObject* first, const QObject* second)
{
    const int byGroup = QString::compare(first->property(groupProperty).toString(),
                                         second->property(groupProperty).toString());
    if (byGroup != 0)
        return byGroup < 0;
    return lessByDescription(first, second);
}

void MParamList::load()
{
    scanDirectory(MEnum::UserPath, m_userFiles, true, false);
    scanDirectory(MEnum::SystemPath, m_systemFiles, true, false);
    MLogger::instance()->write(
        QStringLiteral("users: %1, system: %2").arg(m_userFiles.size()).arg(m_systemFiles.size()));

    // A user's file overrides the system's of the same id.
    QHash<QString, MParamFile> merged = m_userFiles;
    for (auto it = m_systemFiles.cbegin(); it != m_systemFiles.cend(); ++it) {
        if (!merged.contains(it.key()))
            merged.insert(it.key(), it.value());
    }

    m_order = readIndex(MEnum::UserPath);
    if (m_order.isEmpty())
        m_order = readIndex(MEnum::SystemPath);
    bool rebuilt = false;
    if (m_order.isEmpty()) {
        m_order = sortedKeys(m_userFiles);
        for (const QString& id : sortedKeys(m_systemFiles)) {
            if (!m_userFiles.contains(id))
                m_order.append(id);
        }
        rebuilt = true;
    }

    loadFromFiles(m_order, merged);
    // Written once the items exist: the index names only ids that have one.
    if (rebuilt)
        writeIndex();
}

void MParamList::scanDirectory(MEnum::PathType pathType, QHash<QString, MParamFile>& files, bool clearFirst,
                               bool allowDoubles) const
{
    if (clearFirst)
        files.clear();
    const QDir dir(directoryPath(pathType));
    const QFileInfoList entries =
        dir.entryInfoList({QStringLiteral("*.%1").arg(m_extension)}, QDir::Files, QDir::Name);
    for (const QFileInfo& entry : entries) {
        const QString id = normalizedId(entry.completeBaseName());
        if (id.isEmpty() || (files.contains(id) && !allowDoubles))
            continue;
        files.insert(id, MParamFile(pathType, entry.absoluteFilePath(), id));
    }
}

bool MParamList::sortByIndex()
{
    QList<QObject*> sorted;
    sorted.reserve(count());
    QSet<QObject*> placed;
    for (const QString& id : qAsConst(m_order)) {
        QObject* object = itemById(id);
        if (!object) {
            qDebug().noquote() << QStringLiteral("%1::%2").arg(QStringLiteral("MParamList::sortByIndex"),
                                                               QStringLiteral(__FILE__))
                               << "error object id not found in list" << id;
            return false;
        }
        if (placed.contains(object))
            continue;
        placed.insert(object);
        sorted.append(object);
    }
    const QList<QObject*> present = items();
    for (QObject* object : present) {
        if (!placed.contains(object))
            sorted.append(object);
    }
    return reorderItems(sorted);
}

void MParamList::addToOrder(const QString& id)
{
    const QString key = normalizedId(id);
    if (key.isEmpty() || m_order.contains(key))
        return;
    m_order.append(key);
    sortByIndex();
    writeIndex();
}

QString MParamList::itemId(const QObject* object) const
{
    return object ? normalizedId(object->property(idPropertyName().constData()).toString()) : QString();
}
