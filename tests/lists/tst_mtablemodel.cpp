#include "support/testenvironment.h"

#include "effects/mfield.h"
#include "lists/mtablemodel.h"

#include <QColor>
#include <QIcon>
#include <QMimeData>
#include <QPointer>
#include <QSignalSpy>

namespace {

// An item with an id, notified properties of several types, two properties
// that share one signal, and one that never changes. The members' generated
// setters emit only on a change, as the program's items do.
class Item : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString id MEMBER m_id NOTIFY idChanged)
    Q_PROPERTY(QString description MEMBER m_description NOTIFY descriptionChanged)
    Q_PROPERTY(double ratio MEMBER m_ratio NOTIFY ratioChanged)
    Q_PROPERTY(QColor colour MEMBER m_colour NOTIFY colourChanged)
    Q_PROPERTY(int width MEMBER m_width NOTIFY sizeChanged)
    Q_PROPERTY(int height MEMBER m_height NOTIFY sizeChanged)
    Q_PROPERTY(QString kind READ kind CONSTANT)

public:
    explicit Item(const QString& id = QString()) : m_id(id) {}
    QString kind() const { return QStringLiteral("plain"); }

Q_SIGNALS:
    void idChanged(const QString& id);
    void descriptionChanged(const QString& description);
    void ratioChanged(double ratio);
    void colourChanged(const QColor& colour);
    void sizeChanged();

private:
    QString m_id;
    QString m_description;
    double m_ratio = 0.5;
    QColor m_colour = Qt::red;
    int m_width = 1;
    int m_height = 1;
};

// An item of a subclass, whose extra property has no column in a table of Item.
class WiderItem : public Item
{
    Q_OBJECT
    Q_PROPERTY(int depth MEMBER m_depth NOTIFY depthChanged)

public:
    using Item::Item;

Q_SIGNALS:
    void depthChanged(int depth);

private:
    int m_depth = 0;
};

// Records the hooks and signals in the sequence they come.
class RecordingModel : public MTableModel
{
public:
    RecordingModel()
    {
        setItemClass(&Item::staticMetaObject);
        connect(this, &MTableModel::currentRowChanged, this,
                [this](int row) { events.append(QStringLiteral("current %1").arg(row)); });
        connect(this, &MTableModel::countChanged, this,
                [this](int rows) { events.append(QStringLiteral("count %1").arg(rows)); });
    }

    using MTableModel::clearRaw;
    using MTableModel::reorderItems;

    QStringList events;

protected:
    void itemAdded(QObject* object) override
    {
        events.append(QStringLiteral("added ") + object->property("id").toString());
    }
    void itemRemoved(QObject* object) override
    {
        // The item still exists and still has its row's id when the hook runs.
        events.append(QStringLiteral("removed ") + object->property("id").toString() +
                      (itemById(object->property("id").toString()) ? QStringLiteral(" indexed") : QString()));
    }
};

// The model's property changes as "row property value".
QStringList reported(const QSignalSpy& spy)
{
    QStringList lines;
    for (const QList<QVariant>& change : spy)
        lines << QStringLiteral("%1 %2 %3")
                     .arg(change.at(0).toInt())
                     .arg(change.at(2).toString(), change.at(3).toString());
    return lines;
}

QStringList ids(const MTableModel& model)
{
    QStringList result;
    for (int row = 0; row < model.count(); ++row)
        result.append(model.item(row)->property("id").toString());
    return result;
}

} // namespace

class TestMTableModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void columnsFromItemClass();
    void dataThroughFields();
    void addInsertRemoveAndCurrentRow();
    void idsAndIndex();
    void itemSignalsReachTheModel();
    void reorderKeepsPersistentIndexes();
    void rawLoadingAndOwnership();
    void dragData();
};

void TestMTableModel::initTestCase()
{
    qRegisterMetaType<QList<QPersistentModelIndex>>();
    qRegisterMetaType<QAbstractItemModel::LayoutChangeHint>();
}

void TestMTableModel::columnsFromItemClass()
{
    MTableModel model;
    QCOMPARE(model.columnCount(), 0);
    model.setItemClass(&Item::staticMetaObject);
    const QMetaObject& meta = Item::staticMetaObject;
    QCOMPARE(model.columnCount(), meta.propertyCount());
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const MField* field = model.column(i);
        QVERIFY(field);
        QCOMPARE(field->name, QByteArray(meta.property(i).name()));
        QCOMPARE(field->id, i);
        QCOMPARE(field->type, int(meta.property(i).type()));
        QCOMPARE(field->label, QString::fromLatin1(meta.property(i).name()));
        QCOMPARE(model.roleNames().value(MTableModel::PropertyRole + i), field->name);
        QCOMPARE(model.headerData(i, Qt::Horizontal).toString(), field->label);
        QVERIFY(!model.headerData(i, Qt::Vertical).isValid());
    }
    QCOMPARE(model.column(model.columnOf("colour"))->name, QByteArray("colour"));
    QCOMPARE(model.columnByName("ratio"), model.column(model.columnOf("ratio")));
    QCOMPARE(model.columnOf("nothing"), -1);
    QVERIFY(!model.column(meta.propertyCount()) && !model.column(-1));
    // The standard roles stay beside the property roles.
    QCOMPARE(model.roleNames().value(Qt::DisplayRole), QByteArray("display"));

    // A new class replaces every column.
    model.setItemClass(&QObject::staticMetaObject);
    QCOMPARE(model.columnCount(), 1);
    QCOMPARE(model.column(0)->name, QByteArray("objectName"));
    QCOMPARE(model.columnOf("ratio"), -1);
    QVERIFY(!model.roleNames().contains(MTableModel::PropertyRole + 2));
}

void TestMTableModel::dataThroughFields()
{
    MTableModel model;
    model.setItemClass(&Item::staticMetaObject);
    auto* item = new Item(QStringLiteral("a1"));
    item->setProperty("description", QStringLiteral("Soft pencil"));
    item->setProperty("ratio", 0.25);
    item->setProperty("colour", QColor(10, 20, 30, 40));
    model.addItem(item);

    const QModelIndex ratio = model.index(0, model.columnOf("ratio"));
    const QModelIndex colour = model.index(0, model.columnOf("colour"));
    const QModelIndex description = model.index(0, model.columnOf("description"));
    QCOMPARE(model.data(ratio).toString(), QStringLiteral("0.25"));
    QCOMPARE(model.data(colour).toString(), QStringLiteral("#280a141e"));
    QCOMPARE(model.data(description).toString(), QStringLiteral("Soft pencil"));
    // Editing gets the raw value; the colour cell decorates itself with a swatch.
    QCOMPARE(model.data(ratio, Qt::EditRole).toDouble(), 0.25);
    item->setProperty("colour", QColor(10, 20, 30));
    const QImage image = model.data(colour, Qt::DecorationRole).value<QIcon>().pixmap(16, 16).toImage();
    QCOMPARE(image.pixelColor(8, 8), QColor(10, 20, 30));
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::darkGray));
    QVERIFY(!model.data(ratio, Qt::DecorationRole).isValid());
    // No role below the property roles but those of the field has data: sorts
    // by role 14 keep the table's order.
    QVERIFY(!model.data(description, 14).isValid());
    QVERIFY(!model.data(description, Qt::ToolTipRole).isValid());
    // The property roles read any property raw, whatever the cell's column.
    const int ratioRole = MTableModel::PropertyRole + Item::staticMetaObject.indexOfProperty("ratio");
    QCOMPARE(model.data(description, ratioRole).toDouble(), 0.25);
    QVERIFY(!model.data(model.index(1, 0)).isValid());
    QVERIFY(!model.data(QModelIndex()).isValid());

    QSignalSpy cells(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setData(description, QStringLiteral("Hard pencil")));
    QCOMPARE(item->property("description").toString(), QStringLiteral("Hard pencil"));
    QVERIFY(!cells.isEmpty());
    QCOMPARE(cells.last().at(0).toModelIndex(), description);
    QVERIFY(model.setData(description, 0.75, ratioRole));
    QCOMPARE(item->property("ratio").toDouble(), 0.75);
    QCOMPARE(cells.last().at(0).toModelIndex(), ratio);
    // A constant property can't be written, nor can a row that isn't there.
    const QModelIndex kind = model.index(0, model.columnOf("kind"));
    QVERIFY(!model.setData(kind, QStringLiteral("other")));
    QCOMPARE(item->kind(), QStringLiteral("plain"));
    QVERIFY(!model.setData(model.index(3, 0), 1));

    QVERIFY(model.flags(description).testFlag(Qt::ItemIsEditable));
    QVERIFY(!model.flags(kind).testFlag(Qt::ItemIsEditable));
    QVERIFY(model.flags(kind).testFlag(Qt::ItemIsDragEnabled) &&
            model.flags(kind).testFlag(Qt::ItemIsSelectable));
    QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags(Qt::ItemIsDropEnabled));
}

void TestMTableModel::addInsertRemoveAndCurrentRow()
{
    RecordingModel model;
    QCOMPARE(model.currentRow(), -1);
    QCOMPARE(model.addItem(nullptr), -1);
    QVERIFY(model.events.isEmpty());

    QCOMPARE(model.addItem(new Item(QStringLiteral("a"))), 0);
    QCOMPARE(model.addItem(new Item(QStringLiteral("b"))), 1);
    QCOMPARE(model.events,
             QStringList({"current 0", "added a", "count 1", "current 1", "added b", "count 2"}));
    QCOMPARE(model.previousRow(), 0);

    model.events.clear();
    QCOMPARE(model.insertItem(-5, new Item(QStringLiteral("first"))), 0);
    QCOMPARE(model.insertItem(99, new Item(QStringLiteral("last"))), 3);
    QCOMPARE(model.insertItem(2, new Item(QStringLiteral("middle"))), 2);
    QCOMPARE(ids(model), QStringList({"first", "a", "middle", "b", "last"}));
    QCOMPARE(model.currentRow(), 2);
    QCOMPARE(model.previousRow(), 3);
    QCOMPARE(model.events.last(), QStringLiteral("count 5"));
    // An item already in the table is not added twice.
    QCOMPARE(model.addItem(model.item(0)), -1);
    QCOMPARE(model.count(), 5);

    // Current row: refused outside the table, silent when unchanged.
    model.events.clear();
    for (int row : {5, -2, 2})
        model.setCurrentRow(row);
    QVERIFY(model.events.isEmpty());
    model.setCurrentRow(-1);
    QCOMPARE(model.events, QStringList({"current -1"}));
    QVERIFY(!model.currentItem());

    // Removal: the hook sees the item before it goes, the current row becomes
    // the removed row or the last one.
    model.setCurrentRow(0);
    model.events.clear();
    QPointer<QObject> removed = model.item(1);
    QVERIFY(model.removeRow(1));
    QVERIFY(removed.isNull());
    QCOMPARE(model.events, QStringList({"removed a", "current 1", "count 4"}));
    QCOMPARE(ids(model), QStringList({"first", "middle", "b", "last"}));
    QVERIFY(!model.itemById(QStringLiteral("a")));
    QVERIFY(model.removeRow(3));
    QCOMPARE(model.currentRow(), 2);
    QVERIFY(!model.removeRow(3));
    QVERIFY(!model.removeRow(-1));
    QVERIFY(model.removeRow(0) && model.removeRow(0));
    QCOMPARE(model.currentRow(), 0);
    QVERIFY(model.removeRow(0));
    QCOMPARE(model.currentRow(), -1);
    QCOMPARE(model.events.last(), QStringLiteral("count 0"));

    // Clearing deletes every item and keeps the current row number.
    model.addItem(new Item(QStringLiteral("x")));
    model.addItem(new Item(QStringLiteral("y")));
    QPointer<QObject> cleared = model.item(0);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    model.events.clear();
    model.clear();
    QCOMPARE(resets.count(), 1);
    QVERIFY(cleared.isNull());
    QCOMPARE(model.currentRow(), 1);
    QCOMPARE(model.events, QStringList({"count 0"}));
    QVERIFY(!model.itemById(QStringLiteral("x")));
}

void TestMTableModel::idsAndIndex()
{
    MTableModel model;
    auto* lower = new Item(QStringLiteral("abc-1"));
    auto* upper = new Item(QStringLiteral(" DEF-2 "));
    // Without an item class, the first item's class gives the columns.
    model.addItem(lower);
    QCOMPARE(model.columnCount(), Item::staticMetaObject.propertyCount());
    model.addItem(upper);
    model.addItem(new Item(QString()));

    QCOMPARE(model.itemById(QStringLiteral("ABC-1")), lower);
    QCOMPARE(model.itemById(QStringLiteral("  abc-1\t")), lower);
    QCOMPARE(model.itemById(QStringLiteral("def-2")), upper);
    QVERIFY(!model.itemById(QString()));
    QVERIFY(!model.itemById(QStringLiteral("ghi")));
    QCOMPARE(model.indexOf(upper), 1);
    QCOMPARE(model.indexOf(nullptr), -1);
    Item stranger;
    QCOMPARE(model.indexOf(&stranger), -1);
    QVERIFY(!model.item(3) && !model.item(-1));

    // An id that changes moves in the index.
    lower->setProperty("id", QStringLiteral("renamed"));
    QVERIFY(!model.itemById(QStringLiteral("abc-1")));
    QCOMPARE(model.itemById(QStringLiteral("RENAMED")), lower);

    // Two items of one id: the newer one is found; when it goes, the older one again.
    auto* twin = new Item(QStringLiteral("def-2"));
    model.addItem(twin);
    QCOMPARE(model.itemById(QStringLiteral("DEF-2")), twin);
    QVERIFY(model.removeRow(model.indexOf(twin)));
    QCOMPARE(model.itemById(QStringLiteral("DEF-2")), upper);
    QVERIFY(model.removeRow(model.indexOf(upper)));
    QVERIFY(!model.itemById(QStringLiteral("DEF-2")));
}

void TestMTableModel::itemSignalsReachTheModel()
{
    MTableModel model;
    model.setItemClass(&Item::staticMetaObject);
    auto* first = new Item(QStringLiteral("one"));
    auto* second = new WiderItem(QStringLiteral("two"));
    model.addItem(first);
    model.addItem(second);
    QSignalSpy changes(&model, &MTableModel::propertyChanged);
    QSignalSpy cells(&model, &QAbstractItemModel::dataChanged);

    second->setProperty("ratio", 0.125);
    QCOMPARE(reported(changes), QStringList{"1 ratio 0.125"});
    QCOMPARE(changes.at(0).at(1).value<QObject*>(), second);
    QCOMPARE(cells.count(), 1);
    QCOMPARE(cells.at(0).at(0).toModelIndex(), model.index(1, model.columnOf("ratio")));
    QCOMPARE(cells.at(0).at(1).toModelIndex(), model.index(1, model.columnOf("ratio")));

    // One signal for two properties reports both cells.
    changes.clear();
    cells.clear();
    first->setProperty("width", 40);
    QCOMPARE(reported(changes), QStringList({"0 width 40", "0 height 1"}));
    QCOMPARE(cells.at(1).at(0).toModelIndex(), model.index(0, model.columnOf("height")));

    // A property without a column stays silent; so does an unchanged value.
    changes.clear();
    cells.clear();
    second->setProperty("depth", 3);
    second->setProperty("ratio", 0.125);
    QCOMPARE(changes.count() + cells.count(), 0);

    // An item out of the table no longer reaches it, and nothing is left connected.
    QPointer<QObject> gone = model.item(0);
    QVERIFY(model.removeRow(0));
    QVERIFY(gone.isNull());
    second->setProperty("colour", QColor(Qt::blue));
    QCOMPARE(reported(changes), QStringList{"0 colour #0000ff"});
}

void TestMTableModel::reorderKeepsPersistentIndexes()
{
    RecordingModel model;
    for (const char* id : {"a", "b", "c", "d"})
        model.addItem(new Item(QString::fromLatin1(id)));
    model.setCurrentRow(1);
    QObject* b = model.item(1);
    const QPersistentModelIndex cell(model.index(1, model.columnOf("ratio")));
    QSignalSpy before(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy after(&model, &QAbstractItemModel::layoutChanged);
    QSignalSpy changes(&model, &MTableModel::propertyChanged);

    QList<QObject*> order = model.items();
    std::reverse(order.begin(), order.end());
    QVERIFY(model.reorderItems(order));
    QCOMPARE(ids(model), QStringList({"d", "c", "b", "a"}));
    QCOMPARE(before.count(), 1);
    QCOMPARE(after.count(), 1);
    QCOMPARE(cell.row(), 2);
    QCOMPARE(cell.column(), model.columnOf("ratio"));
    QCOMPARE(model.currentItem(), b);
    // Item signals report the new row.
    b->setProperty("description", QStringLiteral("moved"));
    QCOMPARE(changes.last().at(0).toInt(), 2);

    // Anything but a permutation of the same items is refused untouched.
    QVERIFY(!model.reorderItems({order.at(0), order.at(0), order.at(1), order.at(2)}));
    QVERIFY(!model.reorderItems(order.mid(1)));
    Item stranger;
    QVERIFY(!model.reorderItems({order.at(0), order.at(1), order.at(2), &stranger}));
    QCOMPARE(ids(model), QStringList({"d", "c", "b", "a"}));
    QCOMPARE(after.count(), 1);
}

void TestMTableModel::rawLoadingAndOwnership()
{
    QPointer<Item> watched;
    {
        RecordingModel model;
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        auto* parent = new QObject;
        watched = new Item(QStringLiteral("raw"));
        watched->setParent(parent);
        model.appendRaw(watched);
        model.appendRaw(new Item(QStringLiteral("raw2")));
        model.appendRaw(nullptr);
        // No selection, no hook, no model signal; but the id and the signals are live.
        QCOMPARE(model.count(), 2);
        QCOMPARE(model.currentRow(), -1);
        QVERIFY(model.events.isEmpty());
        QCOMPARE(inserted.count(), 0);
        QCOMPARE(model.itemById(QStringLiteral("RAW")), watched.data());
        QSignalSpy changes(&model, &MTableModel::propertyChanged);
        watched->setProperty("ratio", 0.9);
        QCOMPARE(changes.count(), 1);
        // The table owns its items: the former parent's end doesn't take them.
        delete parent;
        QVERIFY(watched);
        QCOMPARE(watched->parent(), &model);

        QPointer<QObject> second = model.item(1);
        model.clearRaw();
        QCOMPARE(model.count(), 0);
        QVERIFY(watched.isNull() && second.isNull());
        QVERIFY(!model.itemById(QStringLiteral("raw")));
        watched = new Item(QStringLiteral("kept"));
        model.addItem(watched);
    }
    // The table's end takes its items with it.
    QVERIFY(watched.isNull());
}

void TestMTableModel::dragData()
{
    MTableModel model;
    for (const char* id : {"a", "b", "c"})
        model.addItem(new Item(QString::fromLatin1(id)));
    QCOMPARE(model.mimeTypes(), QStringList({"application/vnd.tarnbeck"}));
    model.setMimeType(QStringLiteral("application/vnd.tarnbeck.shader"));
    QCOMPARE(model.mimeTypes(), QStringList({"application/vnd.tarnbeck.shader"}));
    std::unique_ptr<QMimeData> mime(model.mimeData({model.index(2, 1), model.index(0, 1)}));
    QVERIFY(mime);
    QCOMPARE(mime->formats(), QStringList({"application/vnd.tarnbeck.shader"}));
    QCOMPARE(mime->data(QStringLiteral("application/vnd.tarnbeck.shader")), QByteArray("2"));
    QVERIFY(!model.mimeData({}));
}

QUILLMERE_TEST_MAIN(TestMTableModel)
#include "tst_mtablemodel.moc"
