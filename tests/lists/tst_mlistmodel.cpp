#include "support/testenvironment.h"

#include "lists/mlistmodel.h"

#include <QSignalSpy>

namespace {

// An item with notified properties, one of them sharing no signal.
class Item : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(int weight READ weight WRITE setWeight NOTIFY weightChanged)
    Q_PROPERTY(QString fixed READ fixed CONSTANT)

public:
    explicit Item(const QString& name, QObject* parent = nullptr) : QObject(parent), m_name(name) {}
    QString name() const { return m_name; }
    int weight() const { return m_weight; }
    QString fixed() const { return QStringLiteral("fixed"); }

    void setName(const QString& name)
    {
        if (name == m_name)
            return;
        m_name = name;
        Q_EMIT nameChanged(name);
    }
    void setWeight(int weight)
    {
        if (weight == m_weight)
            return;
        m_weight = weight;
        Q_EMIT weightChanged(weight);
    }

Q_SIGNALS:
    void nameChanged(const QString& name);
    void weightChanged(int weight);

private:
    QString m_name;
    int m_weight = 0;
};

QStringList names(const MListModel<Item>& list)
{
    QStringList result;
    for (Item* item : list.items())
        result.append(item->name());
    return result;
}

} // namespace

class TestMListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAndCurrentRow();
    void itemSignalsReachTheModel();
    void dataRolesAndFlags();
    void ownership();
};

void TestMListModel::rowsAndCurrentRow()
{
    MListModel<Item> list;
    QSignalSpy counts(&list, &MListModelBase::countChanged);
    QSignalSpy rows(&list, &MListModelBase::currentRowChanged);
    QCOMPARE(list.currentRow(), -1);
    QVERIFY(!list.current());

    list.append(new Item(QStringLiteral("a")));
    list.append(new Item(QStringLiteral("b")));
    list.insert(0, new Item(QStringLiteral("z")));
    list.insert(99, new Item(QStringLiteral("end")));
    QCOMPARE(names(list), QStringList({"z", "a", "b", "end"}));
    QCOMPARE(counts.count(), 4);
    QCOMPARE(counts.last().at(0).toInt(), 4);
    // Appending chooses no current row.
    QCOMPARE(list.currentRow(), -1);

    list.setCurrentRow(2);
    QCOMPARE(list.current()->name(), QStringLiteral("b"));
    list.setCurrentRow(4);
    list.setCurrentRow(-2);
    QCOMPARE(list.currentRow(), 2);
    list.setCurrentRow(2);
    QCOMPARE(rows.count(), 1);

    // The current row follows its item when a row is inserted before it.
    list.insert(0, new Item(QStringLiteral("first")));
    QCOMPARE(list.currentRow(), 3);
    QCOMPARE(list.current()->name(), QStringLiteral("b"));

    QVERIFY(list.move(3, 4));
    QCOMPARE(names(list), QStringList({"first", "z", "a", "end", "b"}));
    QVERIFY(list.move(4, 0));
    QCOMPARE(names(list), QStringList({"b", "first", "z", "a", "end"}));
    QVERIFY(!list.move(0, 5));
    QVERIFY(!list.move(-1, 0));
    QVERIFY(!list.move(2, 2));

    // Removing the last row while it is current moves the current row up.
    list.setCurrentRow(4);
    QVERIFY(list.removeAt(4));
    QCOMPARE(list.currentRow(), 3);
    QVERIFY(!list.removeAt(4));
    QCOMPARE(list.indexOf(list.at(2)), 2);
    QCOMPARE(list.indexOf(nullptr), -1);

    Item* taken = list.takeAt(0);
    QVERIFY(taken);
    QCOMPARE(list.count(), 3);
    QCOMPARE(list.indexOf(taken), -1);
    taken->setName(QStringLiteral("gone"));
    delete taken;

    list.clear();
    QCOMPARE(list.count(), 0);
    QCOMPARE(list.currentRow(), -1);
    QCOMPARE(rows.last().at(0).toInt(), -1);
    QCOMPARE(counts.last().at(0).toInt(), 0);
}

void TestMListModel::itemSignalsReachTheModel()
{
    MListModel<Item> list;
    auto* first = new Item(QStringLiteral("one"));
    auto* second = new Item(QStringLiteral("two"));
    list.append(first);
    list.append(second);
    QSignalSpy changes(&list, &MListModelBase::propertyChanged);
    QSignalSpy cells(&list, &QAbstractItemModel::dataChanged);

    second->setWeight(7);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toInt(), 1);
    QCOMPARE(changes.at(0).at(1).value<QObject*>(), second);
    QCOMPARE(changes.at(0).at(2).toByteArray(), QByteArray("weight"));
    QCOMPARE(changes.at(0).at(3).toInt(), 7);
    QCOMPARE(cells.count(), 1);
    QCOMPARE(cells.at(0).at(0).toModelIndex().row(), 1);
    QCOMPARE(cells.at(0).at(2).value<QVector<int>>(), QVector<int>{list.roleOf("weight")});

    // After a move the row reported is the new one.
    list.move(1, 0);
    first->setName(QStringLiteral("uno"));
    QCOMPARE(changes.last().at(0).toInt(), 1);
    QCOMPARE(changes.last().at(2).toByteArray(), QByteArray("name"));

    // An item out of the list no longer reaches it.
    Item* taken = list.takeAt(0);
    const int before = changes.count();
    taken->setWeight(99);
    QCOMPARE(changes.count(), before);
    delete taken;

    // Setting data through the model reaches the item and reports once per change.
    changes.clear();
    QVERIFY(list.setData(list.index(0), 12, list.roleOf("weight")));
    QCOMPARE(first->weight(), 12);
    QCOMPARE(changes.count(), 1);
}

void TestMListModel::dataRolesAndFlags()
{
    MListModel<Item> list;
    auto* item = new Item(QStringLiteral("shown"));
    item->setWeight(3);
    list.append(item);
    QCOMPARE(list.data(list.index(0), Qt::DisplayRole).toString(), QStringLiteral("shown"));
    QCOMPARE(list.data(list.index(0), list.roleOf("weight")).toInt(), 3);
    QCOMPARE(list.data(list.index(0), list.roleOf("fixed")).toString(), QStringLiteral("fixed"));
    QCOMPARE(list.roleOf("nothing"), -1);
    QVERIFY(!list.data(list.index(5), Qt::DisplayRole).isValid());
    QCOMPARE(list.roleNames().value(list.roleOf("weight")), QByteArray("weight"));
    QVERIFY(list.setData(list.index(0), QStringLiteral("renamed"), Qt::EditRole));
    QCOMPARE(item->name(), QStringLiteral("renamed"));
    QVERIFY(!list.setData(list.index(0), QStringLiteral("x"), list.roleOf("fixed")));

    QCOMPARE(int(list.flags(list.index(0))), 63);
    QCOMPARE(int(list.flags(QModelIndex())), 32);
}

void TestMListModel::ownership()
{
    QPointer<Item> watched;
    {
        MListModel<Item> list;
        auto* parent = new QObject;
        watched = new Item(QStringLiteral("owned"), parent);
        list.append(watched);
        // The list takes the item from its former parent.
        delete parent;
        QVERIFY(watched);
        QVERIFY(list.removeAt(0));
        QVERIFY(!watched);
        watched = new Item(QStringLiteral("again"));
        list.append(watched);
    }
    QVERIFY(!watched);
}

QUILLMERE_TEST_MAIN(TestMListModel)
#include "tst_mlistmodel.moc"
