#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"
#include "support/tilebytes.h"

#include "app/mutility.h"
#include "document/mcanvasreader.h"
#include "document/mcanvaswriter.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "document/mundolayer.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QUuid>
#include <QtEndian>

namespace {

using namespace QuillmereTest;

using QuillmereTest::LogWatch;

// Sets a property twice to the same new value: the first call must emit the
// value once, the second nothing.
template <typename Setter, typename Value>
bool emitsOnceOnChange(MLayer& layer, const char* signal, Setter setter, const Value& value)
{
    QSignalSpy spy(&layer, signal);
    (layer.*setter)(value);
    (layer.*setter)(value);
    return spy.count() == 1 && spy.at(0).at(0).value<Value>() == value;
}

} // namespace

class TestMLayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void defaultsAndSettersEmitOnlyOnChange();
    void thumbnailRenewsImageGuid();
    void emptiness();
    void assignCopiesPropertiesButNotPixels();
    void layerFileRoundTrip();
    void damagedLayerFiles();

private:
    QuillmereTest::GLContext m_gl;
};

void TestMLayer::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestMLayer::defaultsAndSettersEmitOnlyOnChange()
{
    MTextureLayer layer;
    QCOMPARE(layer.mask(), int(MLayer::NoMask));
    QCOMPARE(layer.type(), MLayer::OpenGLLayer);
    QCOMPARE(layer.name(), QStringLiteral("Layer"));
    QCOMPARE(layer.opacity(), 1.0);
    QVERIFY(!layer.locked());
    QVERIFY(layer.visible());
    QCOMPARE(layer.color(), QColor(Qt::red));
    QVERIFY(layer.thumbnail().isNull());
    QVERIFY(!layer.eraserMode());
    QCOMPARE(layer.tileSize(), 512);
    QCOMPARE(layer.tileMargin(), 6);
    QCOMPARE(layer.bytesPerPixel(), 4);

    QVERIFY(emitsOnceOnChange(layer, SIGNAL(maskChanged(int)), &MLayer::set_mask, int(MLayer::AlphaMask)));
    QVERIFY(emitsOnceOnChange(layer, SIGNAL(nameChanged(QString)), &MLayer::setName, QStringLiteral("Ink")));
    QVERIFY(emitsOnceOnChange(layer, SIGNAL(opacityChanged(double)), &MLayer::setOpacity, 0.25));
    QVERIFY(emitsOnceOnChange(layer, SIGNAL(lockedChanged(bool)), &MLayer::setLocked, true));
    QVERIFY(emitsOnceOnChange(layer, SIGNAL(visibleChanged(bool)), &MLayer::setVisible, false));
    QVERIFY(emitsOnceOnChange(layer, SIGNAL(colorChanged(QColor)), &MLayer::setColor, QColor(Qt::blue)));
    QVERIFY(emitsOnceOnChange(layer, SIGNAL(imageGuidChanged(QString)), &MLayer::setImageGuid,
                              QStringLiteral("{X}")));
    QVERIFY(emitsOnceOnChange(layer, SIGNAL(eraserModeChanged(bool)), &MLayer::setEraserMode, true));

    // The properties are reachable by name, as the layer list and the undo of
    // property changes use them.
    QVERIFY(layer.setProperty("opacity", 0.5));
    QCOMPARE(layer.opacity(), 0.5);
    QCOMPARE(layer.property("type").toInt(), int(MLayer::OpenGLLayer));

    MUndoLayer undoLayer;
    QCOMPARE(undoLayer.type(), MLayer::UndoLayer);
    QCOMPARE(undoLayer.tileSize(), 64);
    QCOMPARE(undoLayer.tileMargin(), 0);
    QCOMPARE(undoLayer.bytesPerPixel(), 4);
}

void TestMLayer::thumbnailRenewsImageGuid()
{
    MTextureLayer layer;
    const QString first = layer.imageGuid();
    QVERIFY(!QUuid(first).isNull());
    QCOMPARE(first, first.toUpper());
    QVERIFY(first.startsWith(QLatin1Char('{')) && first.endsWith(QLatin1Char('}')));
    QVERIFY(MTextureLayer().imageGuid() != first);

    QImage image(8, 8, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::green);
    QSignalSpy thumbnails(&layer, &MLayer::thumbnailChanged);
    QSignalSpy guids(&layer, &MLayer::imageGuidChanged);
    layer.setThumbnail(image);
    const QString second = layer.imageGuid();
    QVERIFY(second != first);
    layer.setThumbnail(image);
    QVERIFY(layer.imageGuid() != second);
    QCOMPARE(thumbnails.count(), 2);
    QCOMPARE(guids.count(), 2);
    QCOMPARE(layer.thumbnail(), image);
}

void TestMLayer::emptiness()
{
    MLayer plain;
    QVERIFY(!plain.isEmpty());

    MTextureLayer layer;
    QVERIFY(layer.isEmpty());
    // A tile exists as soon as it is asked for, even with nothing drawn in it.
    QVERIFY(layer.addTile(QPointF(10, 10)));
    QVERIFY(!layer.isEmpty());
    QVERIFY(layer.addTile(QPointF(-900, 2000)));
    QCOMPARE(layer.tileCount(), 2);
    layer.clear();
    QVERIFY(layer.isEmpty());
    QCOMPARE(layer.tileCount(), 0);
}

void TestMLayer::assignCopiesPropertiesButNotPixels()
{
    MTextureLayer source;
    source.set_mask(MLayer::OneMinusAlphaMask);
    source.setName(QStringLiteral("Source"));
    source.setOpacity(0.3);
    source.setLocked(true);
    source.setVisible(false);
    source.setColor(Qt::cyan);
    source.setEraserMode(true);
    source.set_isShaderActive(false);
    source.setThumbnail(QImage(4, 4, QImage::Format_ARGB32_Premultiplied));
    source.addTile(QPointF(0, 0));

    MTextureLayer target;
    const QString targetGuid = target.imageGuid();
    target.assign(source);
    QCOMPARE(target.mask(), int(MLayer::OneMinusAlphaMask));
    QCOMPARE(target.name(), QStringLiteral("Source"));
    QCOMPARE(target.opacity(), 0.3);
    QVERIFY(target.locked());
    QVERIFY(!target.visible());
    QCOMPARE(target.color(), QColor(Qt::cyan));
    QVERIFY(target.eraserMode());
    QVERIFY(!target.isShaderActive());
    QVERIFY(target.thumbnail().isNull());
    QCOMPARE(target.imageGuid(), targetGuid);
    QVERIFY(target.isEmpty());

    // The kind travels too.
    MUndoLayer undoLayer;
    target.assign(undoLayer);
    QCOMPARE(target.type(), MLayer::UndoLayer);
}

void TestMLayer::layerFileRoundTrip()
{
    MTextureLayer layer;
    layer.setName(QStringLiteral("Wash \u00e9t\u00e9"));
    layer.setOpacity(0.625);
    layer.setLocked(true);
    layer.setVisible(false);
    layer.setColor(Qt::yellow);
    const QList<QPointF> places = {QPointF(0, 0), QPointF(-1, -1), QPointF(1600, -2400)};
    QList<QByteArray> contents;
    for (int i = 0; i < places.size(); ++i) {
        auto* tile = dynamic_cast<MTextureTile*>(layer.addTile(places.at(i)));
        QVERIFY(tile && tile->isCreated());
        contents.append(pattern(quint32(i + 7)));
        QVERIFY(tile->setData(static_cast<const void*>(contents.last().constData())));
    }
    // A tile that was asked for but never drawn is written as transparent.
    QVERIFY(layer.addTile(QPointF(600, 0)));
    contents.append(QByteArray(tileBytes, '\0'));

    QVERIFY(layer.saveBackup());
    const QString id = layer.backupId();
    QVERIFY(!QUuid(id).isNull());
    const QByteArray file = readFile(MUtility::tileFilePath(id));
    QVERIFY(MUtility::tileFilePath(id).endsWith(id.toLower() + QStringLiteral(".data")));
    // Magic, version 100, then the record; each tile costs its buffer plus 16 bytes.
    QCOMPARE(file.left(16), QByteArray::fromHex("FF014CB928554DC199C997B20357BF83"));
    QCOMPARE(file.mid(16, 4).toHex(), QByteArray("00000064"));
    QVERIFY(file.endsWith(contents.last()));
    const qint64 headerBytes = file.size() - 4 * (16 + qint64(tileBytes));
    QDataStream header(file.mid(20, int(headerBytes - 20)));
    header.setVersion(16);
    QString name;
    double opacity;
    bool locked, visible;
    QString shaderId;
    qint32 tileSize, margin, bytesPerPixel, tileCount, bufferSize;
    header >> name >> opacity >> locked >> visible >> shaderId >> tileSize >> margin >> bytesPerPixel >>
        tileCount >> bufferSize;
    QCOMPARE(header.status(), QDataStream::Ok);
    QVERIFY(header.atEnd());
    QCOMPARE(name, layer.name());
    QCOMPARE(opacity, 0.625);
    QVERIFY(locked && !visible);
    QCOMPARE(tileSize, 512);
    QCOMPARE(margin, 6);
    QCOMPARE(bytesPerPixel, 4);
    QCOMPARE(tileCount, 4);
    QCOMPARE(bufferSize, tileBytes);

    MTextureLayer restored;
    QVERIFY(restored.restoreBackup(id));
    QCOMPARE(restored.backupId(), id);
    QCOMPARE(restored.name(), layer.name());
    QCOMPARE(restored.opacity(), 0.625);
    QVERIFY(restored.locked());
    QVERIFY(!restored.visible());
    // Only what the file holds comes back.
    QCOMPARE(restored.color(), QColor(Qt::red));
    QCOMPARE(restored.tileCount(), 4);
    for (int i = 0; i < places.size(); ++i) {
        MTile* tile = restored.tileAt(places.at(i));
        QVERIFY(tile);
        QCOMPARE(tile->rect(), layer.tileAt(places.at(i))->rect());
        QVERIFY2(readBack(tile) == contents.at(i), qPrintable(QStringLiteral("tile %1").arg(i)));
    }
    QCOMPARE(readBack(restored.tileAt(QPointF(600, 0))), contents.last());

    // Writing the restored layer gives the very same bytes.
    const QString again = QDir::temp().filePath(QStringLiteral("again.data"));
    QCOMPARE(MCanvasWriter::saveLayerToFile(again, &restored), int(MCanvasWriter::Success));
    QCOMPARE(readFile(again), file);

    // An empty layer still writes a file, and reads back without tiles.
    MTextureLayer empty;
    QVERIFY(empty.saveBackup());
    MTextureLayer emptyBack;
    QVERIFY(emptyBack.restoreBackup(empty.backupId()));
    QVERIFY(emptyBack.isEmpty());
    restored.clear();
    layer.clear();
}

void TestMLayer::damagedLayerFiles()
{
    MTextureLayer layer;
    auto* tile = dynamic_cast<MTextureTile*>(layer.addTile(QPointF(0, 0)));
    QVERIFY(tile && tile->isCreated());
    const QByteArray content = pattern(3);
    QVERIFY(tile->setData(static_cast<const void*>(content.constData())));
    const QString path = QDir::temp().filePath(QStringLiteral("good.data"));
    QCOMPARE(MCanvasWriter::saveLayerToFile(path, &layer), 0);
    const QByteArray good = readFile(path);
    layer.clear();
    const QString damaged = QDir::temp().filePath(QStringLiteral("damaged.data"));

    {
        LogWatch log;
        MTextureLayer target;
        QCOMPARE(
            MCanvasReader::loadLayerFromFile(QDir::temp().filePath(QStringLiteral("none.data")), &target), 1);
        QByteArray wrongMagic = good;
        wrongMagic[3] = char(wrongMagic[3] ^ 0x01);
        QVERIFY(writeFile(damaged, wrongMagic));
        QCOMPARE(MCanvasReader::loadLayerFromFile(damaged, &target), 2);
        QVERIFY(log.added().contains(
            QStringLiteral("MCanvasReader::loadLayerFromFile: System error: Invalid layer file format")));
        // The version is not checked.
        QByteArray otherVersion = good;
        otherVersion[19] = char(99);
        QVERIFY(writeFile(damaged, otherVersion));
        QCOMPARE(MCanvasReader::loadLayerFromFile(damaged, &target), 0);
        QCOMPARE(readBack(target.tileAt(QPointF(0, 0))), content);
        target.clear();
    }

    // Every truncation fails cleanly with a short read, except the one at the
    // very end of the file.
    for (int length :
         {0, 10, 16, 19, 20, 27, 40, 60, 80, int(good.size()) - tileBytes - 1, int(good.size()) - 1}) {
        MTextureLayer target;
        QVERIFY(writeFile(damaged, good.left(length)));
        const int result = MCanvasReader::loadLayerFromFile(damaged, &target);
        QVERIFY2(result == 2 || result == 3,
                 qPrintable(QStringLiteral("length %1 gave %2").arg(length).arg(result)));
        target.clear();
    }

    // The header fields that size the buffer and the grid are rejected when
    // they disagree; nothing is allocated from them. The record's ints sit
    // after the name, opacity, flags and an empty effect id.
    const int nameBytes = 4 + 2 * int(QStringLiteral("Layer").size());
    const int intsAt = 20 + nameBytes + 8 + 1 + 1 + 4;
    struct Mutation
    {
        int field;
        qint32 value;
    };
    const QList<Mutation> mutations = {{0, 0}, {0, -512}, {0, 1 << 30}, {1, -1},         {1, 256},
                                       {2, 3}, {2, 8},    {3, -5},      {4, 0x7fffffff}, {4, 1000}};
    for (const Mutation& mutation : mutations) {
        QByteArray bytes = good;
        qToBigEndian(mutation.value, bytes.data() + intsAt + 4 * mutation.field);
        QVERIFY(writeFile(damaged, bytes));
        MTextureLayer target;
        LogWatch log;
        QCOMPARE(MCanvasReader::loadLayerFromFile(damaged, &target), 3);
        QVERIFY2(log.added().contains(QStringLiteral("MCanvasReader::loadLayerFromStream: System error:")),
                 qPrintable(QStringLiteral("field %1 = %2").arg(mutation.field).arg(mutation.value)));
        target.clear();
    }

    // A tile placed out of any reachable cell is refused, not made.
    {
        QByteArray far = good;
        const int rectAt = intsAt + 5 * 4;
        qToBigEndian(qint32(0x7ffffff0), far.data() + rectAt);
        qToBigEndian(qint32(0x7ffffff0), far.data() + rectAt + 8);
        QVERIFY(writeFile(damaged, far));
        MTextureLayer target;
        QCOMPARE(MCanvasReader::loadLayerFromFile(damaged, &target), 3);
        QCOMPARE(target.tileCount(), 0);
    }

    // Random byte flips anywhere in the header never crash and never give a
    // layer with more tiles than the file holds.
    QRandomGenerator random(42);
    for (int round = 0; round < 200; ++round) {
        QByteArray bytes = good;
        const int flips = 1 + random.bounded(4);
        for (int i = 0; i < flips; ++i) {
            const int at = random.bounded(intsAt + 40);
            bytes[at] = char(random.bounded(256));
        }
        QVERIFY(writeFile(damaged, bytes));
        MTextureLayer target;
        const int result = MCanvasReader::loadLayerFromFile(damaged, &target);
        QVERIFY(result >= 0 && result <= 3);
        QVERIFY(target.tileCount() <= 1);
        target.clear();
    }
}

QUILLMERE_TEST_MAIN(TestMLayer)
#include "tst_mlayer.moc"
