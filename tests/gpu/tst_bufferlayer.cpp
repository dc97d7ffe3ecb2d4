#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"
#include "support/tilebytes.h"

#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "gpu/mbufferlayer.h"
#include "gpu/mbuffertile.h"
#include "gpu/mtexturetransfert.h"

#include <QSet>

#include <cstring>

namespace {

using namespace QuillmereTest;

constexpr int inner = 500;
constexpr int margin = 6;

bool upload(MTextureLayer* layer, const QPointF& at, const QByteArray& content)
{
    auto* tile = dynamic_cast<MTextureTile*>(layer->addTile(at));
    return tile && tile->isCreated() && tile->setData(static_cast<const void*>(content.constData()));
}

QByteArray bytesOf(const MBufferTile* tile)
{
    return tile && tile->buffer()
               ? QByteArray(reinterpret_cast<const char*>(tile->buffer()), int(tile->byteCount()))
               : QByteArray();
}

// The offset of a layer position in the raw buffer of the tile of cell (column, row).
int offsetIn(int column, int row, int x, int y)
{
    const int tx = x - column * inner + margin;
    const int ty = y - row * inner + margin;
    return (ty * 512 + tx) * 4;
}

void setPixel(QByteArray& bytes, int offset, const QByteArray& rgba)
{
    std::memcpy(bytes.data() + offset, rgba.constData(), 4);
}

const QByteArray red = QByteArray::fromHex("C81E14FF");
const QByteArray clear = QByteArray::fromHex("00000000");

} // namespace

class TestBufferLayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void readBackIsExact();
    void tilesComeOnceAndOnDemand();
    void scans();
    void writingBack();
    void keysAndBounds();
    void errors();

private:
    GLContext m_gl;
};

void TestBufferLayer::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    QVERIFY(MTextureTransfert::create(512, 6, 4));
    QCOMPARE(MTextureTransfert::create(256, 0, 4), MTextureTransfert::instance());
    QCOMPARE(MTextureTransfert::instance()->tileSize(), 512);
}

void TestBufferLayer::cleanupTestCase()
{
    if (MTextureTransfert::exists()) {
        MTextureTransfert::instance()->shutDown(m_gl.context());
        QVERIFY(!MTextureTransfert::instance()->isInitialized());
        MTextureTransfert::destroy();
    }
    QVERIFY(!MTextureTransfert::exists());
}

void TestBufferLayer::readBackIsExact()
{
    const QList<QPointF> places{QPointF(10, 10), QPointF(-600, -20), QPointF(1200, -700)};
    // Two canvases one after the other: the transfer must not depend on the
    // context it was first used in.
    for (int round = 0; round < 2; ++round) {
        MCanvas canvas;
        QVERIFY(canvas.makeCurrent());
        MTextureLayer* layer = canvas.at(0);
        for (int i = 0; i < places.size(); ++i)
            QVERIFY(upload(layer, places.at(i), pattern(quint32(10 * round + i))));
        // A tile that exists in the tree but has no texture reads as transparent.
        layer->addTile(QPointF(2600, 2600));

        MBufferLayer buffer(512, 6, 4);
        QVERIFY(buffer.fromTextureLayer(&canvas, layer));
        QCOMPARE(buffer.tileCount(), 4);
        QVERIFY(!buffer.hasTransferError());
        for (int i = 0; i < places.size(); ++i) {
            const MBufferTile* tile = buffer.tileAt(places.at(i));
            QVERIFY(tile);
            QCOMPARE(tile->rect(), layer->tileAt(places.at(i))->rect());
            QVERIFY2(bytesOf(tile) == pattern(quint32(10 * round + i)), qPrintable(QString::number(i)));
        }
        QCOMPARE(bytesOf(buffer.tileAt(QPointF(2600, 2600))), QByteArray(tileBytes, '\0'));
        QCOMPARE(buffer.boundingRect(), QRect(-1000, -1000, 4000, 4000));

        // The same bytes through a walk's on-demand read and through the texture id.
        MBufferLayer onDemand(512, 6, 4);
        MBufferTile* pulled = onDemand.addTile(QPointF(-600, -20), &canvas, layer);
        QCOMPARE(bytesOf(pulled), pattern(quint32(10 * round + 1)));
        MBufferTile direct(512, 6, 4);
        QVERIFY(direct.create());
        auto* source = dynamic_cast<MTextureTile*>(layer->tileAt(QPointF(1200, -700)));
        QVERIFY(MTextureTransfert::instance()->textureIdToBufferTile(canvas.context(), source->textureId(),
                                                                     &direct));
        QCOMPARE(bytesOf(&direct), pattern(quint32(10 * round + 2)));

        // pixel() reads the inner rectangle of the cell, in layer coordinates.
        uchar rgba[4];
        buffer.pixel(-600, -20, rgba);
        const QByteArray expected = pattern(quint32(10 * round + 1)).mid(offsetIn(-2, -1, -600, -20), 4);
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(rgba), 4), expected);
        buffer.pixel(5000, 5000, rgba);
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(rgba), 4), clear);
    }
}

void TestBufferLayer::tilesComeOnceAndOnDemand()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    MTextureLayer* layer = canvas.at(0);
    QVERIFY(upload(layer, QPointF(700, 20), pattern(21)));

    MBufferLayer buffer(512, 6, 4);
    MBufferTile* first = buffer.addTile(QPointF(501, 3), &canvas, layer);
    QVERIFY(first);
    QCOMPARE(first->rect(), QRect(500, 0, 500, 500));
    // The texture changes; a second request in the same cell reads nothing again.
    QVERIFY(upload(layer, QPointF(700, 20), pattern(22)));
    QCOMPARE(buffer.addTile(QPointF(998.5, 499.9), &canvas, layer), first);
    QCOMPARE(buffer.addTile(0, 1, &canvas, layer), first);
    QCOMPARE(buffer.tileCount(), 1);
    QCOMPARE(bytesOf(first), pattern(21));

    // A cell that the layer doesn't have is made transparent and creates
    // nothing in the layer.
    MBufferTile* empty = buffer.addTile(-1, -1, &canvas, layer);
    QVERIFY(empty);
    QCOMPARE(empty->rect(), QRect(-500, -500, 500, 500));
    QCOMPARE(bytesOf(empty), QByteArray(tileBytes, '\0'));
    QCOMPARE(layer->tileCount(), 1);
    QCOMPARE(buffer.boundingRect(), QRect(-500, -500, 1500, 1000));

    // Without a canvas nothing is read.
    MBufferLayer bare(512, 6, 4);
    QCOMPARE(bytesOf(bare.addTile(QPointF(700, 20), nullptr, layer)), QByteArray(tileBytes, '\0'));

    buffer.clear();
    QCOMPARE(buffer.tileCount(), 0);
    QVERIFY(!buffer.tileAt(QPointF(700, 20)));
    QCOMPARE(bytesOf(buffer.addTile(QPointF(700, 20), &canvas, layer)), pattern(22));
}

void TestBufferLayer::scans()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    MTextureLayer* layer = canvas.at(0);
    // Row 50 of cell (0, 0): red from 100 to 199 and from 480 to the seam;
    // of cell (1, 0): red from the seam to 520. The margins of cell (0, 0)
    // say red where cell (1, 0) is transparent: only the cell's own pixels count.
    QByteArray left(tileBytes, '\0');
    for (int x = 100; x < 200; ++x)
        setPixel(left, offsetIn(0, 0, x, 50), red);
    for (int x = 480; x < 506; ++x)
        setPixel(left, offsetIn(0, 0, x, 50), red);
    for (int x = 500; x < 506; ++x)
        setPixel(left, offsetIn(0, 0, x, 51), red);
    QByteArray right(tileBytes, '\0');
    for (int x = 500; x <= 520; ++x)
        setPixel(right, offsetIn(1, 0, x, 50), red);
    QVERIFY(upload(layer, QPointF(250, 250), left));
    QVERIFY(upload(layer, QPointF(750, 250), right));
    const auto* r = reinterpret_cast<const uchar*>(red.constData());
    const auto* t = reinterpret_cast<const uchar*>(clear.constData());

    MBufferLayer buffer(512, 6, 4);
    QCOMPARE(buffer.scanLeft(150, 50, -2000, r, 0, &canvas, layer), 99);
    QCOMPARE(buffer.scanRight(150, 50, 2000, r, 0, &canvas, layer), 200);
    // The limit ends the walk one step beyond it.
    QCOMPARE(buffer.scanLeft(150, 50, 120, r, 0, &canvas, layer), 119);
    QCOMPARE(buffer.scanRight(150, 50, 180, r, 0, &canvas, layer), 181);
    // A limit already passed answers the start.
    QCOMPARE(buffer.scanLeft(150, 50, 160, r, 0, &canvas, layer), 150);
    QCOMPARE(buffer.scanRight(150, 50, 140, r, 0, &canvas, layer), 150);
    QCOMPARE(buffer.scanLeft(90, 50, -2000, r, 0, &canvas, layer), 90);
    // Across the seam, pulling the second tile.
    QCOMPARE(buffer.tileCount(), 1);
    QCOMPARE(buffer.scanRight(490, 50, 2000, r, 0, &canvas, layer), 521);
    QCOMPARE(buffer.scanLeft(510, 50, -2000, r, 0, &canvas, layer), 479);
    QCOMPARE(buffer.tileCount(), 2);
    QCOMPARE(buffer.scanUntilMatch(0, 50, 499, r, 0, &canvas, layer), 100);
    QCOMPARE(buffer.scanUntilMatch(200, 50, 470, r, 0, &canvas, layer), 471);
    QCOMPARE(buffer.scanUntilMatch(200, 50, 2000, r, 0, &canvas, layer), 480);
    // Row 51 is red only in cell (0, 0)'s margin over cell (1, 0).
    QCOMPARE(buffer.scanUntilMatch(480, 51, 1000, r, 0, &canvas, layer), 1001);

    // Cells the layer doesn't have are transparent, and a walk goes through them.
    QCOMPARE(buffer.scanRight(600, 50, 2400, t, 0, &canvas, layer), 2401);
    QCOMPARE(buffer.scanLeft(-10, 300, -1700, t, 0, &canvas, layer), -1701);
    QCOMPARE(buffer.scanLeft(300, 50, -1700, t, 0, &canvas, layer), 199);
    QCOMPARE(buffer.scanUntilMatch(-1200, -900, 0, r, 0, &canvas, layer), 1);
    QCOMPARE(layer->tileCount(), 2);

    // The tolerance is inclusive, on each of the four bytes.
    const uchar seed[4] = {100, 100, 100, 200};
    for (int channel = 0; channel < 4; ++channel) {
        uchar other[4] = {100, 100, 100, 200};
        other[channel] = uchar(seed[channel] + (channel % 2 ? 10 : -10));
        QVERIFY(MBufferLayer::colorMatches(seed, other, 10));
        QVERIFY(!MBufferLayer::colorMatches(seed, other, 9));
    }
    const uchar black[4] = {0, 0, 0, 0};
    const uchar white[4] = {255, 255, 255, 255};
    QVERIFY(MBufferLayer::colorMatches(black, white, 255));
    QVERIFY(!MBufferLayer::colorMatches(black, white, 254));
    // Tolerance in scans, on a red that differs by 8 in blue.
    const uchar near[4] = {200, 30, 28, 255};
    QCOMPARE(buffer.scanRight(150, 50, 2000, near, 8, &canvas, layer), 200);
    QCOMPARE(buffer.scanRight(150, 50, 2000, near, 7, &canvas, layer), 150);
}

void TestBufferLayer::writingBack()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    MTextureLayer* layer = canvas.at(0);
    QVERIFY(upload(layer, QPointF(-250, 250), pattern(31)));

    MBufferLayer buffer(512, 6, 4);
    MBufferTile* existing = buffer.addTile(QPointF(-250, 250), &canvas, layer);
    MBufferTile* missing = buffer.addTile(QPointF(250, 250), &canvas, layer);
    QVERIFY(existing && missing);
    const QByteArray first = pattern(32);
    const QByteArray second = pattern(33);
    std::memcpy(existing->buffer(), first.constData(), tileBytes);
    std::memcpy(missing->buffer(), second.constData(), tileBytes);

    QVERIFY(buffer.toTextureLayer(&canvas, layer, false));
    QCOMPARE(layer->tileCount(), 1);
    QVERIFY(!layer->tileAt(QPointF(250, 250)));
    QCOMPARE(readBack(layer->tileAt(QPointF(-250, 250))), first);

    QVERIFY(buffer.toTextureLayer(&canvas, layer, true));
    QCOMPARE(layer->tileCount(), 2);
    QCOMPARE(readBack(layer->tileAt(QPointF(250, 250))), second);
    QCOMPARE(readBack(layer->tileAt(QPointF(-250, 250))), first);

    QVERIFY(!buffer.toTextureLayer(nullptr, layer, true));
    QVERIFY(!buffer.toTextureLayer(&canvas, nullptr, true));
    QVERIFY(!buffer.fromTextureLayer(nullptr, layer));
    QVERIFY(!buffer.fromTextureLayer(&canvas, nullptr));
}

void TestBufferLayer::keysAndBounds()
{
    MBufferLayer buffer(512, 6, 4);
    QCOMPARE(buffer.keyOffset(), 1000);
    unsigned key = 1;
    QVERIFY(buffer.cellKey(-1000, -1000, &key));
    QCOMPARE(key, 0u);
    QVERIFY(buffer.cellKey(0, 0, &key));
    QCOMPARE(key, 2002000u);
    QVERIFY(!buffer.cellKey(-1001, 0, &key));
    QVERIFY(!buffer.cellKey(0, -1001, &key));
    QVERIFY(!buffer.cellKey(90000, 90000, &key));

    // Every cell of a wide square around the origin has a key of its own.
    QSet<unsigned> keys;
    for (int row = -40; row <= 40; ++row) {
        for (int column = -40; column <= 40; ++column) {
            QVERIFY(buffer.cellKey(column, row, &key));
            keys.insert(key);
        }
    }
    QCOMPARE(keys.size(), 81 * 81);

    // Cells without a key get no tile and read transparent.
    QVERIFY(buffer.addTile(QPointF(-499999, -499999), nullptr, nullptr));
    QVERIFY(!buffer.addTile(QPointF(-500001, 0), nullptr, nullptr));
    const uchar t[4] = {0, 0, 0, 0};
    QCOMPARE(buffer.scanLeft(-500001, 0, -500100, t, 0, nullptr, nullptr), -500101);
}

void TestBufferLayer::errors()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    MTextureLayer* layer = canvas.at(0);
    QVERIFY(upload(layer, QPointF(10, 10), pattern(41)));
    auto* source = dynamic_cast<MTextureTile*>(layer->tileAt(QPointF(10, 10)));
    MTextureTransfert* transfert = MTextureTransfert::instance();
    const QString from = QStringLiteral("MTextureTransfert::textureIdToBufferTile: System error: ");

    LogWatch log;
    MBufferTile small(256, 6, 4);
    QVERIFY(small.create());
    QVERIFY(!transfert->textureIdToBufferTile(canvas.context(), source->textureId(), &small));
    QVERIFY(log.added().contains(from + QStringLiteral("Wrong buffer format")));
    QCOMPARE(bytesOf(&small).left(16), QByteArray(16, '\0'));
    MBufferTile wide(512, 6, 8);
    QVERIFY(wide.create());
    QVERIFY(!transfert->textureIdToBufferTile(canvas.context(), source->textureId(), &wide));
    QCOMPARE(log.added().count(QStringLiteral("Wrong buffer format")), 2);

    MBufferTile tile(512, 6, 4);
    QVERIFY(!transfert->textureIdToBufferTile(canvas.context(), source->textureId(), nullptr));
    QVERIFY(log.added().contains(from + QStringLiteral("Invalid buffer")));
    QVERIFY(!transfert->textureIdToBufferTile(canvas.context(), source->textureId(), &tile));
    QCOMPARE(log.added().count(QStringLiteral("Invalid buffer")), 2);
    QVERIFY(tile.create());
    QVERIFY(!transfert->textureIdToBufferTile(nullptr, source->textureId(), &tile));
    QVERIFY(log.added().contains(from + QStringLiteral("Need a current context")));
    QVERIFY(!transfert->textureTileToBufferTile(canvas.context(), nullptr, &tile));
    QVERIFY(log.added().contains(
        QStringLiteral("MTextureTransfert::textureTileToBufferTile: System error: Need a texture tile")));
    transfert->shutDown(nullptr);
    QVERIFY(log.added().contains(
        QStringLiteral("MTextureTransfert::shutDown: System error: Need a current context")));
    QVERIFY(transfert->isInitialized());
    transfert->shutDown(canvas.context());
    QVERIFY(!transfert->isInitialized());
    QVERIFY(!transfert->initializeGL(nullptr));
    QVERIFY(log.added().contains(
        QStringLiteral("MTextureTransfert::initializeGL: System error: Need a current context")));
    // After the failures, and after a shut-down, the transfer sets itself up again.
    QVERIFY(canvas.makeCurrent());
    QVERIFY(transfert->textureTileToBufferTile(canvas.context(), source, &tile));
    QCOMPARE(bytesOf(&tile), pattern(41));
    QVERIFY(transfert->isInitialized());
    QCOMPARE(transfert->currentBufferIndex(), 0);

    MBufferTile huge(20000, 6, 4);
    QVERIFY(!huge.create());
    QVERIFY(!huge.isCreated());
    QVERIFY(
        log.added().contains(QStringLiteral("MBufferTile::create: System error: Unable to create buffer")));
    MBufferTile negative(-4, 6, 4);
    QVERIFY(!negative.create());
    QVERIFY(!negative.buffer());

    // A tile made by hand has the inner rectangle of cell (0, 0) until placed.
    QCOMPARE(MBufferTile(512, 6, 4).rect(), QRect(0, 0, 500, 500));
}

QUILLMERE_TEST_MAIN(TestBufferLayer)
#include "tst_bufferlayer.moc"
