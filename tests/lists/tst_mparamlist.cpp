#include "support/logwatch.h"
#include "support/testenvironment.h"

#include "app/mutility.h"
#include "lists/dsortlist.h"
#include "lists/mparamlist.h"

#include "lists/mlistpanel.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QListWidget>
#include <QPushButton>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

// An item whose generated setters emit only on a change, as the program's do.
class TestItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString id MEMBER m_id NOTIFY idChanged)
    Q_PROPERTY(QString group MEMBER m_group NOTIFY groupChanged)
    Q_PROPERTY(QString description MEMBER m_description NOTIFY descriptionChanged)

public:
    explicit TestItem(const QString& id = QString(), const QString& group = QString(),
                      const QString& description = QString())
        : m_id(id), m_group(group), m_description(description)
    {
    }

    // The test list's own file: one JSON object with group and description.
    bool read(const QString& fileName)
    {
        QFile file(fileName);
        if (!file.open(QIODevice::ReadOnly))
            return false;
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
        if (error.error != QJsonParseError::NoError || !document.isObject())
            return false;
        setProperty("group", document.object().value(QStringLiteral("group")).toString());
        setProperty("description", document.object().value(QStringLiteral("description")).toString());
        return true;
    }

    static QByteArray json(const QString& group, const QString& description)
    {
        return QJsonDocument(QJsonObject{{"group", group}, {"description", description}}).toJson();
    }

Q_SIGNALS:
    void idChanged(const QString& id);
    void groupChanged(const QString& group);
    void descriptionChanged(const QString& description);

private:
    QString m_id;
    QString m_group;
    QString m_description;
};

// A list as a concrete one makes it: item class, directory, extension, a
// loader for its own file format, and the load in the constructor. Its two
// directories are temporary ones.
class TestList : public MParamList
{
    Q_OBJECT

public:
    TestList(const QString& systemDir, const QString& userDir)
        : MParamList(MEnum::TextureDir, QStringLiteral("qtl")), m_systemDir(systemDir), m_userDir(userDir)
    {
        setItemClass(&TestItem::staticMetaObject);
        load();
    }

    QString directoryPath(MEnum::PathType pathType) const override
    {
        return pathType == MEnum::SystemPath ? m_systemDir : m_userDir;
    }
    QObject* createItem() override
    {
        return new TestItem(QStringLiteral("NEW-%1").arg(++m_created), QString(), QStringLiteral("new"));
    }
    bool readItem(QObject* object, const QString& fileName) override
    {
        return static_cast<TestItem*>(object)->read(fileName);
    }
    bool writeItem(QObject* object, const QString& fileName) override
    {
        QFile file(fileName);
        const QByteArray content =
            TestItem::json(object->property("group").toString(), object->property("description").toString());
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
    }

    int loads = 0;

protected:
    void loadFromFiles(const QStringList& order, const QHash<QString, MParamFile>& files) override
    {
        ++loads;
        beginResetModel();
        clearRaw();
        for (const QString& id : order) {
            const auto record = files.constFind(id);
            if (record == files.constEnd())
                continue;
            std::unique_ptr<QObject> item(createItem());
            auto* testItem = static_cast<TestItem*>(item.get());
            if (!testItem->read(record->fileName)) {
                MLogger::systemError(QStringLiteral("TestList::loadFromFiles"),
                                     QStringLiteral("Unable to load item ") + record->fileName);
                continue;
            }
            testItem->setProperty("id", record->id);
            appendRaw(item.release());
        }
        endResetModel();
        setCurrentRow(count() > 0 ? 0 : -1);
    }

private:
    QString m_systemDir;
    QString m_userDir;
    int m_created = 0;
};

// A list that keeps the program's own directories.
class BareList : public MParamList
{
public:
    BareList() : MParamList(MEnum::TextureDir, QStringLiteral("tex")) {}
    QObject* createItem() override { return new TestItem; }

protected:
    void loadFromFiles(const QStringList&, const QHash<QString, MParamFile>&) override {}
};

struct Folders
{
    QTemporaryDir root;
    Folders()
    {
        QDir().mkpath(system());
        QDir().mkpath(user());
    }
    QString system() const { return root.path() + QStringLiteral("/system/"); }
    QString user() const { return root.path() + QStringLiteral("/user/"); }
};

bool writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}

// Unreadable is told apart from empty.
QByteArray readFile(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

void writeItem(const QString& dir, const QString& id, const QString& group, const QString& description)
{
    QVERIFY(writeFile(dir + id.toLower() + QStringLiteral(".qtl"), TestItem::json(group, description)));
}

// System items a to e: with group and description, description only, group
// only, neither. The user overrides b.
void writeStandardFiles(const Folders& folders)
{
    const char* const items[][3] = {{"a", "pens", "a pen"},
                                    {"b", "pens", "b pen"},
                                    {"c", "", "c plain"},
                                    {"d", "inks", ""},
                                    {"e", "", ""}};
    for (const auto& item : items)
        writeItem(folders.system(), QString::fromLatin1(item[0]), QString::fromLatin1(item[1]),
                  QString::fromLatin1(item[2]));
    writeItem(folders.user(), QStringLiteral("b"), QStringLiteral("mine"), QStringLiteral("user b"));
}

QStringList ids(const MTableModel& list)
{
    QStringList result;
    for (int row = 0; row < list.count(); ++row)
        result.append(list.item(row)->property("id").toString());
    return result;
}

QString userIndex(const Folders& folders)
{
    return folders.user() + QStringLiteral("index.qmi");
}

} // namespace

class TestMParamList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void defaultDirectories();
    void userFileOverridesSystemFile();
    void removalKeepsSystemFiles();
    void addingJoinsTheOrder();
    void indexLines();
    void indexFallbacks();
    void unreadableIndex();
    void foreignAndCorruptFiles();
    void setOrderSortsAndWrites();
    void sortStopsAtUnknownId();
    void nameComparers();
    void sortDialog();
    void indexMutations();
    void itemOperations();
    void dragAndDrop();
};

void TestMParamList::initTestCase()
{
    qRegisterMetaType<QList<QPersistentModelIndex>>();
    qRegisterMetaType<QAbstractItemModel::LayoutChangeHint>();
}

void TestMParamList::defaultDirectories()
{
    BareList list;
    QCOMPARE(list.directory(), MEnum::TextureDir);
    QCOMPARE(list.extension(), QStringLiteral("tex"));
    const QString user = MUtility::directory(MEnum::UserPath, MEnum::TextureDir);
    QCOMPARE(list.directoryPath(MEnum::UserPath), user);
    QVERIFY(user.startsWith(QuillmereTest::temporaryHome()));
    QCOMPARE(list.directoryPath(MEnum::SystemPath),
             MUtility::directory(MEnum::SystemPath, MEnum::TextureDir));
    QCOMPARE(list.indexFileName(MEnum::UserPath), user + QStringLiteral("index.qmi"));
    TestItem item(QStringLiteral(" AbC-9 "));
    QCOMPARE(list.userFileName(&item), user + QStringLiteral("abc-9.tex"));
    QCOMPARE(list.idPropertyName(), QByteArray("id"));
}

void TestMParamList::userFileOverridesSystemFile()
{
    Folders folders;
    writeStandardFiles(folders);
    QuillmereTest::LogWatch log;
    TestList list(folders.system(), folders.user());

    QVERIFY(log.added().contains(QStringLiteral("Users: 1, system: 5.")));
    QCOMPARE(list.loads, 1);
    // No index anywhere: the user's ids, then the system's, and the index is written.
    QCOMPARE(list.order(), QStringList({"B", "A", "C", "D", "E"}));
    QCOMPARE(ids(list), QStringList({"B", "A", "C", "D", "E"}));
    QCOMPARE(list.itemById(QStringLiteral("b"))->property("description").toString(),
             QStringLiteral("user b"));
    QCOMPARE(readFile(userIndex(folders)), QByteArray("B # mine/user b\n"
                                                      "A # pens/a pen\n"
                                                      "C # c plain\n"
                                                      "D # inks/\n"
                                                      "E # \n"));
    QVERIFY(!QFile::exists(folders.system() + QStringLiteral("index.qmi")));

    // Both records of B are kept; the user's is the one found.
    QCOMPARE(list.fileRecord(QStringLiteral(" b "))->fileName, folders.user() + QStringLiteral("b.qtl"));
    QCOMPARE(list.fileRecord(QStringLiteral("b"))->id, QStringLiteral("B"));
    QCOMPARE(list.fileRecord(QStringLiteral("a"))->pathType, MEnum::SystemPath);
    QVERIFY(!list.fileRecord(QStringLiteral("zzz")));
    QCOMPARE(list.systemFiles().value(QStringLiteral("B")).fileName,
             folders.system() + QStringLiteral("b.qtl"));
    QVERIFY(!log.added().contains(QStringLiteral("System error")));
}

void TestMParamList::removalKeepsSystemFiles()
{
    Folders folders;
    writeStandardFiles(folders);
    TestList list(folders.system(), folders.user());

    // The overriding user file goes; the system file stays, and so does the id's absence.
    QVERIFY(list.removeRow(0));
    QVERIFY(!QFile::exists(folders.user() + QStringLiteral("b.qtl")));
    QVERIFY(QFile::exists(folders.system() + QStringLiteral("b.qtl")));
    QCOMPARE(ids(list), QStringList({"A", "C", "D", "E"}));
    QCOMPARE(readFile(userIndex(folders)), QByteArray("A # pens/a pen\nC # c plain\nD # inks/\nE # \n"));
    QVERIFY(!list.userFiles().contains(QStringLiteral("B")));

    // A system-only item: no file is touched.
    QVERIFY(list.removeRow(1));
    QCOMPARE(QDir(folders.system()).entryList(QDir::Files).size(), 5);

    list.reload();
    QCOMPARE(ids(list), QStringList({"A", "D", "E"}));
    QVERIFY(list.userFiles().isEmpty());
    TestList restarted(folders.system(), folders.user());
    QCOMPARE(ids(restarted), QStringList({"A", "D", "E"}));

    // With the last id gone the index is empty, and the next start rebuilds it from the files.
    while (restarted.count() > 0)
        QVERIFY(restarted.removeRow(0));
    QCOMPARE(readFile(userIndex(folders)), QByteArray());
    restarted.reload();
    QCOMPARE(ids(restarted), QStringList({"A", "B", "C", "D", "E"}));
    QCOMPARE(restarted.itemById(QStringLiteral("B"))->property("description").toString(),
             QStringLiteral("b pen"));
}

void TestMParamList::addingJoinsTheOrder()
{
    Folders folders;
    writeStandardFiles(folders);
    TestList list(folders.system(), folders.user());

    // A new item saved first, as the editors do, then added.
    auto* saved = new TestItem(QStringLiteral("New-1"), QStringLiteral("fresh"), QStringLiteral("new one"));
    QCOMPARE(list.userFileName(saved), folders.user() + QStringLiteral("new-1.qtl"));
    QVERIFY(writeFile(list.userFileName(saved),
                      TestItem::json(QStringLiteral("fresh"), QStringLiteral("new one"))));
    QCOMPARE(list.addItem(saved), 5);
    QCOMPARE(list.fileRecord(QStringLiteral("new-1"))->pathType, MEnum::UserPath);
    QVERIFY(readFile(userIndex(folders)).endsWith("E # \nNEW-1 # fresh/new one\n"));

    // A new id goes to the end of the order, and the item to its place by it:
    // before the items the order leaves out. The current row follows it.
    QVERIFY(list.setOrder({"A", "C"}));
    QCOMPARE(ids(list), QStringList({"A", "C", "B", "D", "E", "New-1"}));
    auto* unsaved = new TestItem(QStringLiteral("unsaved"), QString(), QStringLiteral("nowhere"));
    QCOMPARE(list.addItem(unsaved), 2);
    QCOMPARE(list.currentRow(), 2);
    QCOMPARE(ids(list), QStringList({"A", "C", "unsaved", "B", "D", "E", "New-1"}));
    QVERIFY(!list.fileRecord(QStringLiteral("UNSAVED")));
    QCOMPARE(list.order(), QStringList({"A", "C", "UNSAVED"}));
    QCOMPARE(readFile(userIndex(folders)), QByteArray("A # pens/a pen\nC # c plain\nUNSAVED # nowhere\n"));

    // Removing the saved one deletes its file, whatever its case on disk.
    QVERIFY(list.removeRow(list.indexOf(saved)));
    QVERIFY(!QFile::exists(folders.user() + QStringLiteral("new-1.qtl")));
    QVERIFY(list.removeRow(list.indexOf(unsaved)));
    QCOMPARE(list.order(), QStringList({"A", "C"}));
}

void TestMParamList::indexLines()
{
    Folders folders;
    writeStandardFiles(folders);
    QVERIFY(writeFile(userIndex(folders), "\n"
                                          "   \n"
                                          "# only a comment\n"
                                          "b # a lower-case id\n"
                                          "A # pens/a pen\n"
                                          "C#no space\n"
                                          "\t D \t\n"
                                          "A\n"
                                          "ZZZ # no such file\r\n"
                                          "E # crlf\r\n"
                                          "  # \n"));
    QuillmereTest::LogWatch log;
    TestList list(folders.system(), folders.user());
    QCOMPARE(list.readIndex(MEnum::UserPath), QStringList({"b", "A", "C", "D", "ZZZ", "E"}));
    QCOMPARE(list.order(), list.readIndex(MEnum::UserPath));
    // Ids in the index are upper-case: "b" names nothing, and B stays out though its files exist.
    QCOMPARE(ids(list), QStringList({"A", "C", "D", "E"}));
    QVERIFY(list.userFiles().contains(QStringLiteral("B")));
    QVERIFY(!log.added().contains(QStringLiteral("System error")));
    // A file of the user's index is left as it was when nothing asks for a new order.
    QVERIFY(readFile(userIndex(folders)).startsWith("\n   \n# only a comment\n"));
}

void TestMParamList::indexFallbacks()
{
    Folders folders;
    writeStandardFiles(folders);
    // An index of comments only is no index: the system's order is taken.
    QVERIFY(writeFile(userIndex(folders), "# a\n   # b/c\n\n"));
    QVERIFY(writeFile(folders.system() + QStringLiteral("index.qmi"), "C # plain\nA\n"));
    {
        TestList list(folders.system(), folders.user());
        QCOMPARE(ids(list), QStringList({"C", "A"}));
        // Nothing is rebuilt, so nothing is written.
        QCOMPARE(readFile(userIndex(folders)), QByteArray("# a\n   # b/c\n\n"));
    }
    // An empty system index too: the order comes from the files.
    QVERIFY(writeFile(folders.system() + QStringLiteral("index.qmi"), ""));
    TestList list(folders.system(), folders.user());
    QCOMPARE(ids(list), QStringList({"B", "A", "C", "D", "E"}));
    QVERIFY(readFile(userIndex(folders)).startsWith("B # mine/user b\n"));
    // The system directory is never written.
    QCOMPARE(readFile(folders.system() + QStringLiteral("index.qmi")), QByteArray());
}

void TestMParamList::unreadableIndex()
{
    Folders folders;
    writeStandardFiles(folders);
    QVERIFY(QDir().mkpath(userIndex(folders)));
    QVERIFY(writeFile(folders.system() + QStringLiteral("index.qmi"), "C # plain\nA\n"));
    QuillmereTest::LogWatch log;
    TestList list(folders.system(), folders.user());
    QVERIFY(log.added().contains(QStringLiteral("MParamList::readIndex: System error: ")));
    QCOMPARE(ids(list), QStringList({"C", "A"}));

    QuillmereTest::LogWatch writeLog;
    QVERIFY(!list.writeIndex());
    QVERIFY(writeLog.added().contains(QStringLiteral("MParamList::writeIndex: System error: ")));
    QVERIFY(!list.setOrder({"A", "C"}));
    // The order holds in memory though it couldn't be saved.
    QCOMPARE(ids(list), QStringList({"A", "C"}));
    QVERIFY(QFileInfo(userIndex(folders)).isDir());
}

void TestMParamList::foreignAndCorruptFiles()
{
    Folders folders;
    writeItem(folders.user(), QStringLiteral("good"), QStringLiteral("g"), QStringLiteral("fine"));
    QVERIFY(writeFile(folders.user() + QStringLiteral("bad.qtl"), "{\"group\": \"g\", \"descr"));
    QVERIFY(writeFile(folders.user() + QStringLiteral("empty.qtl"), ""));
    QVERIFY(writeFile(folders.user() + QStringLiteral("array.qtl"), "[1, 2, 3]"));
    QVERIFY(writeFile(folders.user() + QStringLiteral("notes.txt"), TestItem::json("g", "text")));
    QVERIFY(writeFile(folders.user() + QStringLiteral("other.qmb"), TestItem::json("g", "brush")));
    QVERIFY(writeFile(folders.user() + QStringLiteral("qtl"), TestItem::json("g", "no dot")));
    QVERIFY(QDir().mkpath(folders.user() + QStringLiteral("folder.qtl")));
    writeItem(folders.system(), QStringLiteral("also"), QStringLiteral("g"), QStringLiteral("system"));
    QVERIFY(writeFile(folders.system() + QStringLiteral("binary.qtl"), QByteArray("\0\xff\xfe{", 4)));

    QuillmereTest::LogWatch log;
    TestList list(folders.system(), folders.user());
    QCOMPARE(QSet<QString>(list.userFiles().keyBegin(), list.userFiles().keyEnd()),
             QSet<QString>({"ARRAY", "BAD", "EMPTY", "GOOD"}));
    QCOMPARE(QSet<QString>(list.systemFiles().keyBegin(), list.systemFiles().keyEnd()),
             QSet<QString>({"ALSO", "BINARY"}));
    QCOMPARE(list.order(), QStringList({"ARRAY", "BAD", "EMPTY", "GOOD", "ALSO", "BINARY"}));
    QCOMPARE(ids(list), QStringList({"GOOD", "ALSO"}));
    const QString added = log.added();
    for (const QString& name : {folders.user() + "array.qtl", folders.user() + "bad.qtl",
                                folders.user() + "empty.qtl", folders.system() + "binary.qtl"})
        QVERIFY2(added.contains(
                     QStringLiteral("TestList::loadFromFiles: System error: Unable to load item ") + name),
                 qPrintable(added));
    QVERIFY(added.contains(QStringLiteral("Users: 4, system: 2.")));
    // Only loaded items reach the index.
    QCOMPARE(readFile(userIndex(folders)), QByteArray("GOOD # g/fine\nALSO # g/system\n"));
}

void TestMParamList::setOrderSortsAndWrites()
{
    Folders folders;
    writeStandardFiles(folders);
    TestList list(folders.system(), folders.user());
    QCOMPARE(ids(list), QStringList({"B", "A", "C", "D", "E"}));
    list.setCurrentRow(2);
    const QPersistentModelIndex cell(list.index(2, list.columnOf("description")));
    QSignalSpy layouts(&list, &QAbstractItemModel::layoutChanged);
    QSignalSpy resets(&list, &QAbstractItemModel::modelReset);

    QVERIFY(list.setOrder({"e", " c ", "E", "", "a"}));
    QCOMPARE(list.order(), QStringList({"E", "C", "A"}));
    // Items the order leaves out follow, in the sequence they had.
    QCOMPARE(ids(list), QStringList({"E", "C", "A", "B", "D"}));
    QCOMPARE(layouts.count(), 1);
    QCOMPARE(resets.count(), 0);
    QCOMPARE(cell.row(), 1);
    QCOMPARE(cell.data().toString(), QStringLiteral("c plain"));
    QCOMPARE(list.currentRow(), 1);
    QCOMPARE(readFile(userIndex(folders)), QByteArray("E # \nC # c plain\nA # pens/a pen\n"));

    // An edited item: the cell changes at once, the index line at the next write.
    QSignalSpy cells(&list, &QAbstractItemModel::dataChanged);
    QSignalSpy changes(&list, &MTableModel::propertyChanged);
    QObject* c = list.itemById(QStringLiteral("C"));
    c->setProperty("group", QStringLiteral("  renamed "));
    c->setProperty("description", QStringLiteral("c été ✓"));
    QCOMPARE(cells.count(), 2);
    QCOMPARE(cells.last().at(0).toModelIndex(), list.index(1, list.columnOf("description")));
    QCOMPARE(changes.last().at(2).toByteArray(), QByteArray("description"));
    QCOMPARE(changes.last().at(3).toString(), QStringLiteral("c été ✓"));
    QVERIFY(list.writeIndex());
    QCOMPARE(readFile(userIndex(folders)),
             QByteArray("E # \nC # renamed/c \xc3\xa9t\xc3\xa9 \xe2\x9c\x93\nA # pens/a pen\n"));

    // At the next start the items out of the order are gone.
    TestList restarted(folders.system(), folders.user());
    QCOMPARE(ids(restarted), QStringList({"E", "C", "A"}));
    QCOMPARE(restarted.itemById(QStringLiteral("c"))->property("description").toString(),
             QStringLiteral("c plain"));
}

void TestMParamList::sortStopsAtUnknownId()
{
    Folders folders;
    writeStandardFiles(folders);
    TestList list(folders.system(), folders.user());
    QSignalSpy layouts(&list, &QAbstractItemModel::layoutChanged);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral(
                                         "^MParamList::sortByIndex::.*mparamlist\\.cpp error object id not "
                                         "found in list ZZZ$")));
    QVERIFY(list.setOrder({"C", "ZZZ", "A"}));
    QCOMPARE(ids(list), QStringList({"B", "A", "C", "D", "E"}));
    QCOMPARE(layouts.count(), 0);
    QCOMPARE(list.order(), QStringList({"C", "ZZZ", "A"}));
    // The index names only ids that have an item.
    QCOMPARE(readFile(userIndex(folders)), QByteArray("C # c plain\nA # pens/a pen\n"));
}

void TestMParamList::nameComparers()
{
    TestItem first(QStringLiteral("1"), QStringLiteral("pens"), QStringLiteral("zeta"));
    TestItem second(QStringLiteral("2"), QStringLiteral("inks"), QStringLiteral("alpha"));
    TestItem third(QStringLiteral("3"), QStringLiteral("pens"), QStringLiteral("Beta"));
    TestItem fourth(QStringLiteral("4"), QStringLiteral("inks"), QStringLiteral("omega"));
    QList<const QObject*> items = {&first, &second, &third, &fourth};
    std::sort(items.begin(), items.end(), MParamList::lessByDescription);
    QCOMPARE(items, QList<const QObject*>({&third, &second, &fourth, &first}));
    std::sort(items.begin(), items.end(), MParamList::lessByGroupAndDescription);
    QCOMPARE(items, QList<const QObject*>({&second, &fourth, &third, &first}));
    QVERIFY(!MParamList::lessByDescription(&first, &first));
    QVERIFY(!MParamList::lessByGroupAndDescription(&first, &first));
}

void TestMParamList::sortDialog()
{
    Folders folders;
    writeStandardFiles(folders);
    TestList list(folders.system(), folders.user());
    list.addItem(new TestItem(QStringLiteral("loose"), QString(), QStringLiteral("unsaved")));

    QuillmereTest::LogWatch log;
    DSortList dialog(&list);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Sort brush list"));
    QVERIFY(log.added().contains(
        QStringLiteral("DSortList::DSortList: system error, invalid index ident: LOOSE.")));
    QListWidget* shown = dialog.orderList();
    QListWidget* hidden = dialog.hiddenList();
    QCOMPARE(hidden->count(), 0);
    QStringList texts;
    for (int row = 0; row < shown->count(); ++row)
        texts.append(shown->item(row)->text());
    QCOMPARE(texts, QStringList({"mine-user b (user)", "pens-a pen (system)", "-c plain (system)",
                                 "inks- (system)", "- (system)"}));

    QHash<QString, QPushButton*> buttons;
    for (QPushButton* button : dialog.findChildren<QPushButton*>())
        buttons.insert(button->text(), button);
    for (const char* text : {">>", "<<", "Move up", "Move down", "Move at top", "Move at bottom", "Ok"})
        QVERIFY2(buttons.contains(QString::fromLatin1(text)), text);

    // Each button, then the order and the current row; the ends don't move.
    QCOMPARE(shown->currentRow(), 0);
    const QVector<QPair<const char*, QString>> moves = {{"Move up", "BACDE 0"},
                                                        {"Move down", "ABCDE 1"},
                                                        {"Move at bottom", "ACDEB 4"},
                                                        {"Move down", "ACDEB 4"},
                                                        {"Move at top", "BACDE 0"}};
    for (const auto& move : moves) {
        buttons[move.first]->click();
        QCOMPARE(dialog.order().join(QString()) + QStringLiteral(" %1").arg(shown->currentRow()),
                 move.second);
    }

    // Out of the order and back: the item returns at the end.
    shown->setCurrentRow(1);
    buttons["<<"]->click();
    QCOMPARE(dialog.order(), QStringList({"B", "C", "D", "E"}));
    QCOMPARE(hidden->count(), 1);
    QCOMPARE(hidden->item(0)->text(), QStringLiteral("pens-a pen (system)"));
    buttons[">>"]->click();
    QCOMPARE(dialog.order(), QStringList({"B", "C", "D", "E", "A"}));
    QCOMPARE(hidden->count(), 0);
    buttons[">>"]->click();
    QCOMPARE(dialog.order(), QStringList({"B", "C", "D", "E", "A"}));

    for (int row : {3, 2, 1}) {
        shown->setCurrentRow(row);
        buttons["<<"]->click();
    }
    QCOMPARE(dialog.order(), QStringList({"B", "A"}));
    QCOMPARE(hidden->count(), 3);

    buttons["Ok"]->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(readFile(userIndex(folders)), QByteArray("B # mine/user b\nA # pens/a pen\n"));

    // One row can't move.
    TestList restarted(folders.system(), folders.user());
    DSortList single(&restarted);
    single.orderList()->setCurrentRow(0);
    single.hideSelected();
    QCOMPARE(single.order(), QStringList({"A"}));
    single.moveDown();
    single.moveAtBottom();
    single.moveUp();
    QCOMPARE(single.order(), QStringList({"A"}));
    QCOMPARE(single.orderList()->currentRow(), 0);
}

void TestMParamList::indexMutations()
{
    Folders folders;
    writeStandardFiles(folders);
    const QByteArray seed = "B # mine/user b\nA # pens/a pen\nC # c plain\nD # inks/\nE # \n";
    const QList<QByteArray> pieces = {"A",     "B",    "C",  "d",    "E",  "ZZZ",         "#",
                                      "# x/y", " ",    "\t", "\r",   "\n", "\n",          "\0",
                                      "\xff",  "\xc3", "/",  "A # ", "é",  "\xe2\x80\xa8"};
    const QSet<QString> known = {"A", "B", "C", "D", "E"};
    TestList list(folders.system(), folders.user());
    QRandomGenerator random(20240611);
    for (int round = 0; round < 400; ++round) {
        QByteArray content = seed;
        const int edits = 1 + random.bounded(8);
        for (int edit = 0; edit < edits; ++edit) {
            const int at = content.isEmpty() ? 0 : random.bounded(content.size() + 1);
            switch (random.bounded(4)) {
            case 0:
                content.insert(at, pieces.at(random.bounded(pieces.size())));
                break;
            case 1:
                if (at < content.size())
                    content[at] = char(random.bounded(256));
                break;
            case 2:
                content.remove(at, random.bounded(6));
                break;
            default:
                content.truncate(at);
                break;
            }
        }
        QVERIFY(writeFile(userIndex(folders), content));
        list.reload();

        const QStringList order = list.order();
        QCOMPARE(QSet<QString>(order.cbegin(), order.cend()).size(), order.size());
        for (const QString& id : order) {
            QVERIFY(!id.isEmpty());
            QCOMPARE(id, id.trimmed());
            QVERIFY(!id.contains(QLatin1Char('#')) && !id.contains(QLatin1Char('\n')));
        }
        // Every item comes from a file and from the order, once, in the order's sequence.
        const QStringList shown = ids(list);
        QCOMPARE(QSet<QString>(shown.cbegin(), shown.cend()).size(), shown.size());
        int last = -1;
        for (const QString& id : shown) {
            QVERIFY2(known.contains(id), qPrintable(id));
            const int place = order.indexOf(id);
            QVERIFY2(place > last, content.toPercentEncoding().constData());
            last = place;
        }
        // The ids of the order that name a file are exactly the items.
        for (const QString& id : order)
            QCOMPARE(shown.contains(id), known.contains(id));
    }
}

QUILLMERE_TEST_MAIN(TestMParamList)
#include "tst_mparamlist.moc"

void TestMParamList::itemOperations()
{
    Folders folders;
    writeStandardFiles(folders);
    TestList list(folders.system(), folders.user());
    QObject* a = list.itemById(QStringLiteral("A"));

    // Rename writes the user file and the index line.
    QVERIFY(list.renameItem(a, QStringLiteral("  renamed  ")));
    QCOMPARE(readFile(folders.user() + QStringLiteral("a.qtl")),
             TestItem::json(QStringLiteral("pens"), QStringLiteral("renamed")));
    QVERIFY(readFile(userIndex(folders)).contains("A # pens/renamed\n"));
    QVERIFY(!list.renameItem(a, QStringLiteral("   ")));

    // Restore reads the system file back over the edit and writes it as the user's.
    QVERIFY(list.restoreToSystem(a));
    QCOMPARE(a->property("description").toString(), QStringLiteral("a pen"));
    QCOMPARE(readFile(folders.user() + QStringLiteral("a.qtl")),
             readFile(folders.system() + QStringLiteral("a.qtl")));
    TestItem stray(QStringLiteral("NOPE"));
    QVERIFY(!list.restoreToSystem(&stray));

    // Copy to and removal from the system directory; removal keeps the item as the user's.
    QObject* c = list.itemById(QStringLiteral("C"));
    c->setProperty("description", QStringLiteral("edited c"));
    QVERIFY(list.copyToSystem(c));
    QCOMPARE(readFile(folders.system() + QStringLiteral("c.qtl")),
             TestItem::json(QString(), QStringLiteral("edited c")));
    QVERIFY(list.removeFromSystem(c));
    QVERIFY(!QFile::exists(folders.system() + QStringLiteral("c.qtl")));
    QCOMPARE(readFile(folders.user() + QStringLiteral("c.qtl")),
             TestItem::json(QString(), QStringLiteral("edited c")));
    QCOMPARE(list.fileRecord(QStringLiteral("C"))->pathType, MEnum::UserPath);
    QVERIFY(!list.removeFromSystem(c));

    // Import: a free id is kept, a taken one replaced; a bad file adds nothing.
    QTemporaryDir outside;
    const QString free = outside.path() + QStringLiteral("/zed.qtl");
    QVERIFY(writeFile(free, TestItem::json(QStringLiteral("g"), QStringLiteral("from outside"))));
    QObject* imported = list.importFile(free);
    QVERIFY(imported);
    const QString importedId = imported->property("id").toString();
    QVERIFY(importedId.startsWith(QStringLiteral("NEW-")));
    QCOMPARE(list.currentItem(), imported);
    QCOMPARE(readFile(list.userFileName(imported)),
             TestItem::json(QStringLiteral("g"), QStringLiteral("from outside")));
    QVERIFY(list.order().contains(importedId));
    QObject* again = list.importFile(free);
    QVERIFY(again && again->property("id").toString() != importedId);
    const int rows = list.count();
    QVERIFY(writeFile(free, "not json"));
    QuillmereTest::LogWatch log;
    QVERIFY(!list.importFile(free));
    QCOMPARE(list.count(), rows);
    QVERIFY(log.added().contains(QStringLiteral("MParamList::importFile: System error: Unable to import ") +
                                 free));
}

void TestMParamList::dragAndDrop()
{
    Folders folders;
    writeStandardFiles(folders);
    TestList list(folders.system(), folders.user());
    QCOMPARE(ids(list), QStringList({"B", "A", "C", "D", "E"}));
    list.setCurrentRow(1);

    // A row carried by the list's own mime type moves; the order and index follow.
    std::unique_ptr<QMimeData> drag(list.mimeData({list.index(1, 0)}));
    QVERIFY(drag && drag->hasFormat(QStringLiteral("application/vnd.tarnbeck")));
    QVERIFY(list.dropMimeData(drag.get(), Qt::MoveAction, 4, 0, QModelIndex()));
    QCOMPARE(ids(list), QStringList({"B", "C", "D", "A", "E"}));
    QCOMPARE(list.currentRow(), 3);
    QCOMPARE(list.order(), ids(list));
    QVERIFY(
        readFile(userIndex(folders)).startsWith("B # mine/user b\nC # c plain\nD # inks/\nA # pens/a pen\n"));
    std::unique_ptr<QMimeData> last(list.mimeData({list.index(0, 0)}));
    QVERIFY(list.dropMimeData(last.get(), Qt::MoveAction, -1, 0, QModelIndex()));
    QCOMPARE(ids(list), QStringList({"C", "D", "A", "E", "B"}));

    // Foreign or damaged drags are refused and change nothing.
    QMimeData foreign;
    foreign.setData(QStringLiteral("application/vnd.tarnbeck.shader"), "0");
    QVERIFY(!list.dropMimeData(&foreign, Qt::MoveAction, 2, 0, QModelIndex()));
    QMimeData outOfRange;
    outOfRange.setData(list.mimeType(), "99");
    QVERIFY(!list.canDropMimeData(&outOfRange, Qt::MoveAction, 0, 0, QModelIndex()));
    QCOMPARE(ids(list), QStringList({"C", "D", "A", "E", "B"}));

    // The panel: drop positions, and files of the list's kind dropped from outside are imported.
    MListPanel panel;
    panel.setModel(&list);
    panel.setCellSize(100, 25);
    panel.resize(100, 400);
    QCOMPARE(panel.dropRowAt(0), 0);
    QCOMPARE(panel.dropRowAt(20), 1);
    QCOMPARE(panel.dropRowAt(390), list.count());
    QTemporaryDir outside;
    const QString file = outside.path() + QStringLiteral("/dropped.qtl");
    QVERIFY(writeFile(file, TestItem::json(QStringLiteral("g"), QStringLiteral("dropped"))));
    QVERIFY(writeFile(outside.path() + QStringLiteral("/other.txt"), "x"));
    QMimeData files;
    files.setUrls(
        {QUrl::fromLocalFile(file), QUrl::fromLocalFile(outside.path() + QStringLiteral("/other.txt"))});
    QCOMPARE(panel.importableFiles(&files), QStringList({file}));
    QVERIFY(panel.dropData(&files, 10));
    QCOMPARE(list.count(), 6);
    QCOMPARE(list.currentItem()->property("description").toString(), QStringLiteral("dropped"));
    std::unique_ptr<QMimeData> row(list.mimeData({list.index(5, 0)}));
    QVERIFY(panel.dropData(row.get(), 0));
    QCOMPARE(list.item(0), list.currentItem());
}
