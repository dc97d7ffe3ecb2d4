#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"

#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mbrushstream.h"

#include <QTemporaryDir>

namespace {

QString folder(MEnum::PathType pathType)
{
    return MUtility::directory(pathType, MEnum::BrushDir);
}

QByteArray readFile(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

// A brush file with a known radius and a thumbnail of its own, so that
// nothing needs rendering to write it.
void writeBrush(MEnum::PathType pathType, const QString& id, const QString& description, double radius)
{
    MBrush brush;
    brush.set_id(id);
    brush.set_group(QStringLiteral("tests"));
    brush.set_description(description);
    brush.setRadius(radius);
    QImage thumbnail(150, 60, QImage::Format_ARGB32_Premultiplied);
    thumbnail.fill(Qt::red);
    brush.setPreview(thumbnail);
    MBrushStream stream(&brush);
    QVERIFY(stream.save(folder(pathType) + id.toLower() + QStringLiteral(".qmb")));
}

MBrushList* freshList()
{
    MBrushList::destroy();
    return MBrushList::instance();
}

} // namespace

// The brush list over temporary system and user directories.
class TestMBrushList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void loadingAndOverride();
    void neverEmpty();
    void brushOperations();

private:
    QTemporaryDir m_systemRoot;
    QuillmereTest::GLContext m_gl;
};

void TestMBrushList::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    QVERIFY(m_systemRoot.isValid());
    MUtility::setSystemDataRoot(m_systemRoot.path());
}

void TestMBrushList::init()
{
    MBrushList::destroy();
    QVERIFY(MUtility::clearDirectory(folder(MEnum::SystemPath), false, true));
    QVERIFY(MUtility::clearDirectory(folder(MEnum::UserPath), false, true));
}

void TestMBrushList::loadingAndOverride()
{
    writeBrush(MEnum::SystemPath, QStringLiteral("PEN"), QStringLiteral("pen"), 3.0);
    writeBrush(MEnum::SystemPath, QStringLiteral("INK"), QStringLiteral("ink"), 7.0);
    writeBrush(MEnum::UserPath, QStringLiteral("PEN"), QStringLiteral("my pen"), 12.0);
    QuillmereTest::LogWatch log;
    MBrushList* list = freshList();

    QCOMPARE(list->count(), 2);
    QCOMPARE(list->currentRow(), 0);
    QCOMPARE(list->brushAt(0)->id(), QStringLiteral("PEN"));
    QCOMPARE(list->brushAt(0)->description(), QStringLiteral("my pen"));
    QCOMPARE(list->baseValueOfCurrent(MEnum::bsRadius), 12.0);
    QCOMPARE(list->brushById(QStringLiteral("ink"))->radius(), 7.0);
    QVERIFY(!list->brushAt(2));
    QCOMPARE(list->indexOfDescription(QStringLiteral("INK")), 1);
    QVERIFY(log.added().contains(QStringLiteral("Brushes loaded: 2 brushes")));

    // The model shows the brush's properties as columns.
    const int column = list->columnOf("description");
    QVERIFY(column >= 0);
    QCOMPARE(list->data(list->index(1, column), MTableModel::PropertyRole + column).toString(),
             QStringLiteral("ink"));
}

void TestMBrushList::neverEmpty()
{
    // No file at all, then only a damaged one: one default brush either way.
    MBrushList* list = freshList();
    QCOMPARE(list->count(), 1);
    QCOMPARE(list->currentRow(), 0);
    QCOMPARE(list->currentBrush()->radius(), MBrush().radius());

    QFile broken(folder(MEnum::SystemPath) + QStringLiteral("broken.qmb"));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("{\"id\": \"BROKEN\", \"radius\": {\"value\": 4");
    broken.close();
    QFile::remove(folder(MEnum::UserPath) + QStringLiteral("index.qmi"));
    QuillmereTest::LogWatch log;
    list = freshList();
    QCOMPARE(list->count(), 1);
    QVERIFY(!list->brushById(QStringLiteral("BROKEN")));
    QVERIFY(log.added().contains(
        QStringLiteral("MBrushList::loadFromFiles: System error: Unable to load brush ") +
        broken.fileName()));
}

void TestMBrushList::brushOperations()
{
    writeBrush(MEnum::SystemPath, QStringLiteral("PEN"), QStringLiteral("pen"), 3.0);
    MBrushList* list = freshList();
    MBrush* pen = list->brushById(QStringLiteral("PEN"));
    QVERIFY(m_gl.makeCurrent());

    // A duplicate has its own id and file, and reads back with the source's settings.
    MBrush* copy = list->duplicateBrush(pen, QStringLiteral("mine"), QStringLiteral("pen copy"));
    QVERIFY(copy && copy->id() != pen->id());
    QCOMPARE(list->currentBrush(), copy);
    MBrush reread;
    QVERIFY(reread.load(copy->userFileName()));
    QCOMPARE(reread.radius(), 3.0);
    QCOMPARE(reread.description(), QStringLiteral("pen copy"));
    MBrush* added = list->addBrush(QStringLiteral("mine"), QStringLiteral("blank"));
    QVERIFY(added && QFile::exists(added->userFileName()));
    QVERIFY(!added->exists());
    QVERIFY(pen->exists());

    // reload drops unsaved edits; resetToSystem brings the shipped brush back over a saved edit.
    pen->setRadius(40.0);
    QVERIFY(pen->reload());
    QCOMPARE(pen->radius(), 3.0);
    pen->setRadius(25.0);
    QVERIFY(pen->save());
    MBrush saved;
    QVERIFY(saved.load(pen->userFileName()));
    QCOMPARE(saved.radius(), 25.0);
    QVERIFY(list->restoreToSystem(pen));
    QCOMPARE(pen->radius(), 3.0);
    QVERIFY(saved.load(pen->userFileName()));
    QCOMPARE(saved.radius(), 3.0);
    pen->setRadius(9.0);
    QVERIFY(pen->resetToSystem());
    QCOMPARE(pen->radius(), 3.0);

    // Removal deletes the user file and keeps the system one; the index follows.
    const QString systemFile = pen->systemFileName();
    const QString userFile = pen->userFileName();
    QVERIFY(list->removeByDescription(QStringLiteral("PEN")));
    QVERIFY(!QFile::exists(userFile));
    QVERIFY(QFile::exists(systemFile));
    const QByteArray index = readFile(folder(MEnum::UserPath) + QStringLiteral("index.qmi"));
    QVERIFY(!index.contains("PEN #"));
    QVERIFY(index.contains("# mine/pen copy"));

    // Import of a brush file from elsewhere: appended and saved as the user's.
    QTemporaryDir outside;
    const QString fileName = outside.path() + QStringLiteral("/gift.qmb");
    QVERIFY(QFile::copy(systemFile, fileName));
    auto* gift = qobject_cast<MBrush*>(list->importFile(fileName));
    QVERIFY(gift);
    QCOMPARE(gift->id(), QStringLiteral("PEN"));
    QCOMPARE(gift->radius(), 3.0);
    QVERIFY(QFile::exists(gift->userFileName()));
    QVERIFY(qobject_cast<MBrush*>(list->importFile(fileName))->id() != QStringLiteral("PEN"));
    QCOMPARE(freshList()->count(), 4);
}

QUILLMERE_TEST_MAIN(TestMBrushList)

#include "tst_mbrushlist.moc"
