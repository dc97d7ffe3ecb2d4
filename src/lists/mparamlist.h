#pragma once

#include "app/menum.h"
#include "lists/mparamfile.h"
#include "lists/mtablemodel.h"

#include <QHash>
#include <QString>
#include <QStringList>

// A table whose items are files: one file per item, in a system directory
// (shipped, never written) and a user directory (the user's own and edited
// items, which override a system file of the same id). The user directory's
// index.qmi keeps the order in which items are shown; an item whose id is not
// in the order is not loaded.
//
// A concrete list names its item class, directory and extension, implements
// createItem() and loadFromFiles() for its own file format, and calls load()
// from its constructor after setItemClass().
class MParamList : public MTableModel
{
    Q_OBJECT

public:
    static constexpr const char* groupProperty = "group";
    static constexpr const char* descriptionProperty = "description";

    MParamList(MEnum::Directory directory, const QString& extension, QObject* parent = nullptr);

    MEnum::Directory directory() const { return m_directory; }
    QString extension() const { return m_extension; }
    QStringList order() const { return m_order; }
    const QHash<QString, MParamFile>& userFiles() const { return m_userFiles; }
    const QHash<QString, MParamFile>& systemFiles() const { return m_systemFiles; }
    // The file of an id, the user's before the system's; null when neither has it.
    const MParamFile* fileRecord(const QString& id) const;

    // The folder of the list's files for that path type, ending with "/".
    virtual QString directoryPath(MEnum::PathType pathType) const;
    QString indexFileName(MEnum::PathType pathType) const;
    // Where the item is saved: the user directory, the lower-cased id and the extension.
    QString userFileName(const QObject* object) const;
    // The same in the system directory.
    QString systemFileName(const QObject* object) const;

    // Appends the item as the table does, then adds its id to the order.
    int addItem(QObject* object) override;
    // Drops the id from the order and deletes the user file of the item; a
    // system file is never touched.
    bool removeRow(int row) override;
    // Moves as the table does, then makes the new sequence the order.
    bool moveItem(int from, int to) override;

    // A new item of the list's class, not yet in the list.
    virtual QObject* createItem() = 0;
    // One item's file in the list's format; false when the list has no file
    // format or the file can't be read or written.
    virtual bool readItem(QObject* object, const QString& fileName);
    virtual bool writeItem(QObject* object, const QString& fileName);

    // Operations on items of the list, each false (or null) and logged when a
    // file can't be read or written.
    // Writes the item's user file.
    bool saveItem(QObject* object);
    // Reads the system file into the item and writes it at once as the user's.
    bool restoreToSystem(QObject* object);
    // Writes the item into the system directory, where the shipped items are.
    bool copyToSystem(QObject* object);
    // Deletes the item's system file. The item is first written as the
    // user's, so that it stays in the list.
    bool removeFromSystem(QObject* object);
    // Gives the item a new description, saves it and rewrites the index.
    bool renameItem(QObject* object, const QString& description);
    // Reads a file from anywhere into a new item, saves it as the user's and
    // appends it. An id that is already taken is replaced by a new one, so an
    // import never overwrites an item.
    QObject* importFile(const QString& fileName);
    // Whether a file from elsewhere is one of the list's kind, before it is
    // read as one; true unless the list knows better.
    virtual bool isImportable(const QString& fileName) const;

    // Adopts a new order (trimmed, upper-cased, each id once), sorts the items
    // by it and writes the index.
    bool setOrder(const QStringList& ids);
    // Reads the directories, the index and the files again.
    void reload();

    // The ids of an index file, in its order, each once.
    QStringList readIndex(MEnum::PathType pathType) const;
    // Writes the order to the user index; false, logged, when that fails.
    bool writeIndex() const;

    // Comparers for sorts by name.
    static bool lessByDescription(const QObject* first, const QObject* second);
    static bool lessByGroupAndDescription(const QObject* first, const QObject* second);

protected:
    // Fills the model from the files: order holds the ids to show, files the
    // record of every id found, the user's where both exist.
    virtual void loadFromFiles(const QStringList& order, const QHash<QString, MParamFile>& files) = 0;
    // The loader the lists share, within a model reset: an item per id of the
    // order that has a file, read through readItem; a file that can't be read
    // is logged from source as "Unable to load <what> <file>" and dropped. The
    // file's name gives the item's id, whatever the file says, so that order,
    // index and files agree.
    void loadItems(const QStringList& order, const QHash<QString, MParamFile>& files, const QString& source,
                   const QString& what);
    // Scans both directories, settles the order and calls loadFromFiles.
    void load();
    void scanDirectory(MEnum::PathType pathType, QHash<QString, MParamFile>& files, bool clearFirst,
                       bool allowDoubles) const;
    // Puts the items in the sequence of the order; items the order doesn't
    // name follow in their present sequence. An id of the order without item
    // stops the sort and leaves the model as it was.
    bool sortByIndex();
    // Appends a new id to the order, sorts and writes the index.
    void addToOrder(const QString& id);

private:
    QString itemId(const QObject* object) const;

    MEnum::Directory m_directory;
    QString m_extension;
    QStringList m_order;
    QHash<QString, MParamFile> m_userFiles;
    QHash<QString, MParamFile> m_systemFiles;
};
