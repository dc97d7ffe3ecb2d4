#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"
#include "support/tilebytes.h"

#include "app/mlogger.h"
#include "app/msettings.h"
#include "app/mutility.h"
#include "document/mquadtree.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "document/mundolayer.h"

#include <QOpenGLTexture>
#include <QRandomGenerator>
#include <QtEndian>

#include <climits>
#include <cstring>

// Hash function for the reference sets of the tests.
static uint qHash(const QRect& rect, uint seed = 0)
{
    return ::qHash(qMakePair(qMakePair(rect.x(), rect.y()), qMakePair(rect.width(), rect.height())), seed);
}

namespace {

using namespace QuillmereTest;

constexpr int tileSize = 512;
constexpr int cellSize = 64;
// One block of the changed-cells shape: its rectangle, then 64 x 64 pixels.
constexpr int blockBytes = 16 + cellSize * cellSize * 4;

void putInt(QByteArray& bytes, int offset, qint32 value)
{
    qToBigEndian(value, bytes.data() + offset);
}

qint32 getInt(const QByteArray& bytes, int offset)
{
    return qFromBigEndian<qint32>(bytes.constData() + offset);
}

// The 64-pixel cell of a pixel of the tile.
int cellOf(int x, int y)
{
    return (y / cellSize) * (tileSize / cellSize) + x / cellSize;
}

// Compares buffer with expected where mask holds the pixel's cell and with
// otherwise everywhere else; returns the first pixel that differs as text.
QString compareByCells(const QByteArray& buffer, const QByteArray& expected, const QByteArray& otherwise,
                       const QSet<int>& cells)
{
    for (int y = 0; y < tileSize; ++y) {
        for (int x = 0; x < tileSize; ++x) {
            const int at = (y * tileSize + x) * 4;
            const QByteArray& want = cells.contains(cellOf(x, y)) ? expected : otherwise;
            if (std::memcmp(buffer.constData() + at, want.constData() + at, 4) != 0)
                return QStringLiteral("pixel (%1, %2) differs").arg(x).arg(y);
        }
    }
    return QString();
}

QSet<QRect> cellRects(const QSet<MTile*>& cells)
{
    QSet<QRect> rects;
    for (MTile* cell : cells)
        rects.insert(cell->rect());
    return rects;
}

} // namespace

class TestTextureTile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void newTileIsTransparentUntilTouched();
    void pixelsRoundTrip();
    void mipmapsFollowTheSetting();
    void recordChangeMarksCells();
    void wholeTileBackupRoundTrip();
    void changedCellsRestoreOverPresentContent();
    void damagedFilesAreRefused();
    void fuzzedFilesNeverCrash();
    void deletingLeavesFilesOnDisk();
    void withoutContextNothingCrashes();

private:
    MTextureTile* makeTile(MTextureLayer& layer, const QPointF& point = QPointF(250, 250));
    // A tile holding pattern a, with cells (1, 1) and (7, 2) saved as the
    // changed-cells file path; the blocks are in the order of the file.
    bool makeCellsFile(MTextureLayer& layer, QByteArray* a, QString* path, QVector<QRect>* blocks);

    QuillmereTest::GLContext m_context;
};

void TestTextureTile::initTestCase()
{
    MLogger::instance();
    QVERIFY2(m_context.create(), qPrintable(m_context.why()));
}

MTextureTile* TestTextureTile::makeTile(MTextureLayer& layer, const QPointF& point)
{
    auto* tile = dynamic_cast<MTextureTile*>(layer.addTile(point));
    if (!tile || !tile->isCreated())
        return nullptr;
    return tile;
}

void TestTextureTile::newTileIsTransparentUntilTouched()
{
    MTextureLayer layer;
    auto* tile = dynamic_cast<MTextureTile*>(layer.addTile(QPointF(-1, 700)));
    QVERIFY(tile);

    // Nothing works on a tile whose texture doesn't exist yet.
    QByteArray bytes(tileBytes, 0);
    QVERIFY(!tile->isValid());
    QCOMPARE(tile->textureId(), 0u);
    QVERIFY(!tile->bind());
    QVERIFY(!tile->toBuffer(bytes.data()));
    QVERIFY(!tile->setData(bytes.constData()));
    QVERIFY(!tile->setData(QImage(8, 8, QImage::Format_ARGB32)));
    QVERIFY(!tile->updateMipmaps());

    QVERIFY(tile->isCreated());
    QVERIFY(tile->isInitialized() && !tile->hasError() && tile->isValid() && tile->textureId() != 0);
    QCOMPARE(tile->texture()->width(), tileSize);
    QCOMPARE(tile->texture()->format(), QOpenGLTexture::RGBA8_UNorm);
    QCOMPARE(tile->texture()->minificationFilter(), QOpenGLTexture::Nearest);
    QCOMPARE(tile->texture()->magnificationFilter(), QOpenGLTexture::Nearest);
    QCOMPARE(readBack(tile), QByteArray(tileBytes, 0));
    // A second touch keeps the texture.
    const unsigned id = tile->textureId();
    QVERIFY(tile->isCreated());
    QCOMPARE(tile->textureId(), id);

    // After shutDown the tile is still in the tree, and comes back empty.
    QVERIFY(tile->setData(pattern(1).constData()));
    tile->shutDown();
    QVERIFY(!tile->isInitialized());
    QCOMPARE(tile->texture(), nullptr);
    QCOMPARE(tile->textureId(), 0u);
    QCOMPARE(layer.tileAt(QPointF(-1, 700)), tile);
    QVERIFY(tile->isCreated());
    QCOMPARE(readBack(tile), QByteArray(tileBytes, 0));

    // A texture destroyed behind the tile's back is made again, transparent.
    QVERIFY(tile->setData(pattern(2).constData()));
    tile->texture()->destroy();
    QVERIFY(!tile->texture()->isCreated());
    QVERIFY(tile->isCreated());
    QVERIFY(tile->texture()->isCreated());
    QCOMPARE(readBack(tile), QByteArray(tileBytes, 0));
}

void TestTextureTile::pixelsRoundTrip()
{
    MTextureLayer layer;
    MTextureTile* tile = makeTile(layer);
    QVERIFY(tile);

    // Raw bytes, every byte value, exactly back.
    const QByteArray bytes = pattern(7);
    QVERIFY(tile->setData(bytes.constData()));
    QCOMPARE(readBack(tile), bytes);

    // An image is stored as premultiplied RGBA.
    QImage image(tileSize, tileSize, QImage::Format_ARGB32);
    for (int y = 0; y < tileSize; ++y) {
        for (int x = 0; x < tileSize; ++x)
            image.setPixel(x, y, qRgba(x & 255, y & 255, (x ^ y) & 255, (x + y) & 255));
    }
    QVERIFY(tile->setData(image));
    const QImage expected = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    QCOMPARE(readBack(tile), QByteArray(reinterpret_cast<const char*>(expected.constBits()), tileBytes));
    // And the raw path works on the texture that the image path made.
    QVERIFY(tile->setData(bytes.constData()));
    QCOMPARE(readBack(tile), bytes);

    // A wide image keeps its aspect ratio: the top half is painted, the rest transparent.
    QImage wide(256, 128, QImage::Format_ARGB32);
    wide.fill(QColor(255, 0, 0, 255));
    QVERIFY(tile->setData(wide));
    const QByteArray read = readBack(tile);
    QCOMPARE(read.size(), tileBytes);
    const char red[4] = {char(255), 0, 0, char(255)};
    QVERIFY(std::memcmp(read.constData() + (100 * tileSize + 300) * 4, red, 4) == 0);
    QCOMPARE(read.mid(256 * tileSize * 4), QByteArray(256 * tileSize * 4, 0));

    // The read restores the read framebuffer that was bound.
    auto* gl = m_context.gl();
    GLuint other = 0;
    gl->glGenFramebuffers(1, &other);
    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, other);
    QVERIFY(!readBack(tile).isEmpty());
    GLint bound = 0;
    gl->glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &bound);
    QCOMPARE(GLuint(bound), other);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, 0);
    gl->glDeleteFramebuffers(1, &other);

    // Errors left by others aren't taken for the tile's.
    gl->glBindTexture(GL_TEXTURE_2D, 0xFFFFFF);
    QVERIFY(tile->setData(bytes.constData()));
    QCOMPARE(readBack(tile), bytes);

    // Null buffers are refused with the house wording.
    LogWatch log;
    QVERIFY(!tile->setData(static_cast<const void*>(nullptr)));
    QVERIFY(!tile->toBuffer(nullptr));
    QVERIFY(!tile->setData(QImage()));
    QVERIFY(log.added().contains(
        QStringLiteral("MTextureTile::setData: System error: This function request a non null buffer")));
    QCOMPARE(readBack(tile), bytes);
}

void TestTextureTile::mipmapsFollowTheSetting()
{
    auto* gl = m_context.gl();
    MTextureLayer layer;
    MTextureTile* tile = makeTile(layer);
    QVERIFY(tile);
    QImage image(tileSize, tileSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(0, 128, 255, 255));
    QVERIFY(MSettings::instance()->generateMipmaps());
    QVERIFY(tile->setData(image));
    QVERIFY(tile->texture()->mipLevels() > 1);

    // Level 1 was made from level 0.
    QByteArray level1(256 * 256 * 4, 0);
    gl->glBindTexture(GL_TEXTURE_2D, tile->textureId());
    gl->glGetTexImage(GL_TEXTURE_2D, 1, GL_RGBA, GL_UNSIGNED_BYTE, level1.data());
    gl->glBindTexture(GL_TEXTURE_2D, 0);
    QCOMPARE(level1.mid((77 * 256 + 140) * 4, 4), QByteArray::fromHex("0080FFFF"));
    QVERIFY(tile->updateMipmaps());

    MSettings::instance()->set_generateMipmaps(false);
    const bool made = tile->updateMipmaps();
    MSettings::instance()->set_generateMipmaps(true);
    QVERIFY(!made);
}

void TestTextureTile::recordChangeMarksCells()
{
    MTextureLayer layer;
    // Cell (1, -1): inner rectangle at (500, -500), outer at (494, -506).
    auto* tile = dynamic_cast<MTextureTile*>(layer.addTile(QPointF(600, -100)));
    QVERIFY(tile);
    const QPoint origin = tile->outerRect().topLeft();
    QCOMPARE(origin, QPoint(494, -506));

    tile->recordChange(QRectF(600, -100, 0, 0));
    tile->recordChange(QRectF(600, -100, 25, 0));
    tile->recordChange(QRectF(0, 0, 40, 40)); // outside the tile
    QVERIFY(tile->changedTiles().isEmpty());
    QCOMPARE(tile->undoLayer()->tileCount(), 0);

    // Exactly the first cell, in tile-local coordinates.
    tile->recordChange(QRectF(origin, QSizeF(64, 64)));
    QCOMPARE(cellRects(tile->changedTiles()), QSet<QRect>{QRect(0, 0, 64, 64)});
    // A rectangle across a cell border marks both, fractional edges rounded out.
    tile->recordChange(QRectF(origin + QPointF(60.5, 130), QSizeF(5, 2)));
    QCOMPARE(cellRects(tile->changedTiles()),
             (QSet<QRect>{QRect(0, 0, 64, 64), QRect(0, 128, 64, 64), QRect(64, 128, 64, 64)}));
    // Parts beyond the tile are cut off at its outer rectangle.
    tile->recordChange(QRectF(origin + QPointF(500, 500), QSizeF(400, 400)));
    QCOMPARE(tile->changedTiles().size(), 4);
    QVERIFY(cellRects(tile->changedTiles()).contains(QRect(448, 448, 64, 64)));
    QCOMPARE(tile->undoLayer()->tileCount(), 4);

    tile->clearChanges();
    QVERIFY(tile->changedTiles().isEmpty());
    QVERIFY(tile->undoLayer()->isEmpty());

    // The whole tile and more: all 64 cells, no more.
    tile->recordChange(QRectF(-1e4, -1e4, 2e4, 2e4));
    QCOMPARE(tile->changedTiles().size(), 64);
    QCOMPARE(tile->undoLayer()->tree()->boundingRect(), QRect(0, 0, tileSize, tileSize));
}

void TestTextureTile::wholeTileBackupRoundTrip()
{
    MTextureLayer layer;
    MTextureTile* tile = makeTile(layer);
    QVERIFY(tile);
    const QByteArray a = pattern(11);
    QVERIFY(tile->setData(a.constData()));

    QVERIFY(tile->saveBackup({}));
    const QString id = tile->backupId();
    QVERIFY(id.startsWith(QLatin1Char('{')) && id.endsWith(QLatin1Char('}')));
    QCOMPARE(id, id.toUpper());
    const QString path = MUtility::tileFilePath(id);
    QVERIFY(path.endsWith(id.toLower() + QStringLiteral(".data")));
    // A count of -1, then the whole tile.
    QCOMPARE(readFile(path), QByteArray("\xff\xff\xff\xff", 4) + a);

    QVERIFY(tile->setData(pattern(12).constData()));
    QVERIFY(tile->restoreBackup(id));
    QCOMPARE(readBack(tile), a);
    QCOMPARE(tile->backupId(), id);

    // From a buffer in memory.
    LogWatch log;
    QVERIFY(!tile->backup(nullptr));
    QVERIFY(
        log.added().contains(QStringLiteral("MTextureTile::backup: System error: Cannot save null buffer")));
    const QByteArray b = pattern(13);
    QVERIFY(tile->backup(b.constData()));
    QVERIFY(tile->backupId() != id);
    QCOMPARE(readFile(MUtility::tileFilePath(tile->backupId())), QByteArray("\xff\xff\xff\xff", 4) + b);
    const QString bId = tile->backupId();
    QVERIFY(tile->restoreBackup(bId));
    QCOMPARE(readBack(tile), b);

    // A missing file leaves the tile and its id as they are.
    LogWatch missing;
    QVERIFY(!tile->restoreBackup(QStringLiteral("{00000000-0000-0000-0000-000000000000}")));
    QVERIFY(missing.added().contains(
        QStringLiteral("MTextureTile::loadBuffer: System error: Cannot open file: ")));
    QCOMPARE(tile->backupId(), bId);
    QCOMPARE(readBack(tile), b);

    // A file that can't be written is reported.
    LogWatch unwritable;
    QVERIFY(!tile->saveBuffer(QStringLiteral("/nonexistent-dir/x.data"), {}));
    QVERIFY(unwritable.added().contains(
        QStringLiteral("MTextureTile::saveBuffer: System error: Cannot save file: /nonexistent-dir/x.data")));
}

bool TestTextureTile::makeCellsFile(MTextureLayer& layer, QByteArray* a, QString* path,
                                    QVector<QRect>* blocks)
{
    MTextureTile* tile = makeTile(layer);
    if (!tile)
        return false;
    *a = pattern(21);
    if (!tile->setData(a->constData()))
        return false;
    const QPoint origin = tile->outerRect().topLeft();
    tile->recordChange(QRectF(origin + QPointF(70, 70), QSizeF(10, 10)));
    tile->recordChange(QRectF(origin + QPointF(450, 130), QSizeF(20, 20)));
    if (tile->changedTiles().size() != 2 || !tile->saveBackup(tile->changedTiles()))
        return false;
    *path = MUtility::tileFilePath(tile->backupId());
    const QByteArray file = readFile(*path);
    if (file.size() != 4 + 2 * blockBytes)
        return false;
    blocks->clear();
    for (int i = 0; i < 2; ++i) {
        const int at = 4 + i * blockBytes;
        blocks->append(QRect(QPoint(getInt(file, at), getInt(file, at + 4)),
                             QPoint(getInt(file, at + 8), getInt(file, at + 12))));
    }
    return true;
}

void TestTextureTile::changedCellsRestoreOverPresentContent()
{
    MTextureLayer layer;
    QByteArray a;
    QString path;
    QVector<QRect> blocks;
    QVERIFY(makeCellsFile(layer, &a, &path, &blocks));
    auto* tile = static_cast<MTextureTile*>(layer.tile(0));
    QCOMPARE(QSet<QRect>(blocks.cbegin(), blocks.cend()),
             (QSet<QRect>{QRect(64, 64, 64, 64), QRect(448, 128, 64, 64)}));
    const QByteArray file = readFile(path);
    QCOMPARE(getInt(file, 0), 2);
    // Each block holds its cell's rows, packed.
    const QRect first = blocks.first();
    for (int row = 0; row < cellSize; ++row) {
        const int from = ((first.top() + row) * tileSize + first.left()) * 4;
        QCOMPARE(file.mid(4 + 16 + row * cellSize * 4, cellSize * 4), a.mid(from, cellSize * 4));
    }

    // Paint something else, restore: the two cells come back, the rest stays.
    const QByteArray b = pattern(22);
    QVERIFY(tile->setData(b.constData()));
    QVERIFY(tile->restoreBackup(tile->backupId()));
    const QSet<int> cells{cellOf(64, 64), cellOf(448, 128)};
    QString why = compareByCells(readBack(tile), a, b, cells);
    QVERIFY2(why.isEmpty(), qPrintable(why));

    // A file that ends at a block boundary keeps the blocks before it, silently.
    QVERIFY(writeFile(path, file.left(4 + blockBytes)));
    QVERIFY(tile->setData(b.constData()));
    LogWatch log;
    QVERIFY(tile->restoreBackup(tile->backupId()));
    QVERIFY2(log.added().isEmpty(), qPrintable(log.added()));
    why = compareByCells(readBack(tile), a, b, {cellOf(first.left(), first.top())});
    QVERIFY2(why.isEmpty(), qPrintable(why));
}

void TestTextureTile::damagedFilesAreRefused()
{
    MTextureLayer layer;
    QByteArray a;
    QString path;
    QVector<QRect> blocks;
    QVERIFY(makeCellsFile(layer, &a, &path, &blocks));
    auto* tile = static_cast<MTextureTile*>(layer.tile(0));
    const QByteArray good = readFile(path);
    const QByteArray present = pattern(31);
    QVERIFY(tile->setData(present.constData()));
    const QString source = QStringLiteral("MTextureTile::loadBuffer: System error: ");

    // Loads a damaged copy; checks that the refusal, when expected, names why.
    auto load = [&](const QByteArray& bytes, const QString& reason) -> QString {
        if (!writeFile(path, bytes))
            return QStringLiteral("cannot write the file");
        LogWatch log;
        const std::unique_ptr<uchar[]> buffer = tile->loadBuffer(path);
        const QString added = log.added();
        if (reason.isEmpty()) {
            if (!buffer)
                return QStringLiteral("refused: ") + added;
            if (!added.isEmpty())
                return QStringLiteral("accepted with a report: ") + added;
            return QString();
        }
        if (buffer)
            return QStringLiteral("accepted, expected: ") + reason;
        if (!added.contains(source + reason))
            return QStringLiteral("log lacks \"%1\": %2").arg(reason, added);
        return QString();
    };
    QString why;

    // Cut at every interesting length: inside the count, inside a rectangle,
    // inside the pixels, and on the block boundaries.
    QVector<int> lengths{0, 1, 3, 4, 5, 8, 19, 20, 21, 4 + 16 + 4096, blockBytes + 3, blockBytes + 4};
    for (int n = 4; n < good.size(); n += 997)
        lengths.append(n);
    for (int n = 4 + blockBytes; n < 4 + blockBytes + 16; ++n)
        lengths.append(n);
    lengths.append(good.size() - 1);
    lengths.append(good.size());
    for (int length : qAsConst(lengths)) {
        QString reason;
        if (length < 4) {
            reason = QStringLiteral("Cannot read block count");
        } else {
            const int within = (length - 4) % blockBytes;
            if (length - 4 < 2 * blockBytes && within > 0)
                reason =
                    within < 16
                        ? QStringLiteral("Block %1 is cut in its rectangle").arg((length - 4) / blockBytes)
                        : QStringLiteral("Buffer length error. read: ");
        }
        why = load(good.left(length), reason);
        QVERIFY2(why.isEmpty(), qPrintable(QStringLiteral("length %1: %2").arg(length).arg(why)));
    }

    // Absurd counts are refused before anything is read or allocated; counts
    // within the bound read what is there; a whole-tile count over a
    // changed-cells body is too short.
    const QString shortRead = QStringLiteral("Buffer length error. read: %1, should read: %2");
    for (qint32 count : {qint32(INT_MIN), -2, 0, 65, 1 << 20, qint32(INT_MAX), 1, 2, 64, -1}) {
        QByteArray bytes = good;
        putInt(bytes, 0, count);
        QString reason = QStringLiteral("Invalid block count %1").arg(count);
        if (count == -1)
            reason = shortRead.arg(2 * blockBytes).arg(tileBytes);
        else if (count > 0 && count <= 64)
            reason.clear();
        why = load(bytes, reason);
        QVERIFY2(why.isEmpty(), qPrintable(QStringLiteral("count %1: %2").arg(count).arg(why)));
    }

    // Rectangles that are empty, inverted, or reach outside the tile, in
    // either block.
    struct Rect
    {
        qint32 left, top, right, bottom;
    };
    const Rect bad[] = {{-1, 0, 62, 63},
                        {0, -64, 63, -1},
                        {448, 448, 512, 511},
                        {448, 448, 511, 512},
                        {64, 64, 63, 127},
                        {64, 64, 127, 63},
                        {127, 64, 64, 127},
                        {INT_MIN, INT_MIN, INT_MAX, INT_MAX},
                        {INT_MAX, 0, INT_MIN, 63},
                        {0, 0, INT_MAX, 63},
                        {INT_MAX, INT_MAX, INT_MAX, INT_MAX},
                        {100000, 100000, 100063, 100063}};
    for (int block = 0; block < 2; ++block) {
        for (const Rect& r : bad) {
            QByteArray bytes = good;
            const int at = 4 + block * blockBytes;
            putInt(bytes, at, r.left);
            putInt(bytes, at + 4, r.top);
            putInt(bytes, at + 8, r.right);
            putInt(bytes, at + 12, r.bottom);
            const QString rect =
                QStringLiteral("Invalid block %1 rectangle (%2, %3, %4, %5)")
                    .arg(QString::number(block), QString::number(r.left), QString::number(r.top),
                         QString::number(r.right), QString::number(r.bottom));
            why = load(bytes, rect);
            QVERIFY2(why.isEmpty(), qPrintable(rect + QStringLiteral(": ") + why));
        }
    }
    // A larger rectangle that is inside the tile but whose bytes run past the end.
    {
        QByteArray bytes = good;
        putInt(bytes, 4 + 8, 511);
        putInt(bytes, 4 + 12, 511);
        why = load(bytes, QStringLiteral("Buffer length error. read: "));
        QVERIFY2(why.isEmpty(), qPrintable(why));
    }

    // A refused file restores nothing, and the present content stays.
    QVERIFY(writeFile(path, good.left(30)));
    QVERIFY(!tile->restoreBackup(tile->backupId()));
    QCOMPARE(readBack(tile), present);
    // A directory isn't a file.
    LogWatch log;
    QVERIFY(!tile->loadBuffer(MUtility::tempDir()));
    QVERIFY(log.added().contains(source + QStringLiteral("Cannot open file: ")));
}

void TestTextureTile::fuzzedFilesNeverCrash()
{
    MTextureLayer layer;
    QByteArray a;
    QString path;
    QVector<QRect> blocks;
    QVERIFY(makeCellsFile(layer, &a, &path, &blocks));
    auto* tile = static_cast<MTextureTile*>(layer.tile(0));
    const QByteArray good = readFile(path);
    QRandomGenerator random(77);
    int refused = 0;
    for (int i = 0; i < 400; ++i) {
        QByteArray bytes = good;
        // Overwrite a few bytes of the count or of a rectangle, sometimes cut.
        const int changes = random.bounded(1, 5);
        for (int c = 0; c < changes; ++c) {
            const int headers[] = {0, 4, 4 + blockBytes};
            const int at = headers[random.bounded(3)] + random.bounded(16);
            bytes[at] = char(random.bounded(256));
        }
        if (random.bounded(3) == 0)
            bytes.truncate(random.bounded(bytes.size()));
        QVERIFY(writeFile(path, bytes));
        LogWatch log;
        const std::unique_ptr<uchar[]> buffer = tile->loadBuffer(path);
        if (!buffer) {
            ++refused;
            // Every refusal says so.
            QVERIFY2(log.added().contains(QStringLiteral("MTextureTile::loadBuffer: System error: ")),
                     qPrintable(QStringLiteral("iteration %1").arg(i)));
        }
    }
    QVERIFY(refused > 0);
    qDebug() << refused << "of 400 damaged files refused";
}

void TestTextureTile::deletingLeavesFilesOnDisk()
{
    QStringList paths;
    {
        auto layer = std::make_unique<MTextureLayer>();
        for (const QPointF& point : {QPointF(0, 0), QPointF(-600, 0), QPointF(0, 2000)}) {
            MTextureTile* tile = makeTile(*layer, point);
            QVERIFY(tile);
            tile->recordChange(QRectF(point, QSizeF(10, 10)));
            QVERIFY(tile->saveBackup(tile->changedTiles()));
            paths.append(MUtility::tileFilePath(tile->backupId()));
        }
        layer->clear();
        QVERIFY(layer->isEmpty());
        MTextureTile* again = makeTile(*layer);
        QVERIFY(again && again->saveBackup({}));
        paths.append(MUtility::tileFilePath(again->backupId()));
    }
    for (const QString& path : qAsConst(paths))
        QVERIFY2(QFile::exists(path), qPrintable(path));
}

void TestTextureTile::withoutContextNothingCrashes()
{
    MTextureLayer layer;
    MTextureTile* made = makeTile(layer);
    QVERIFY(made);
    const QByteArray bytes = pattern(41);
    QVERIFY(made->setData(bytes.constData()));
    auto* fresh = dynamic_cast<MTextureTile*>(layer.addTile(QPointF(2000, 0)));
    QVERIFY(fresh);

    m_context.context()->doneCurrent();
    QCOMPARE(QOpenGLContext::currentContext(), nullptr);
    LogWatch log;
    QVERIFY(!fresh->isCreated());
    QVERIFY(!fresh->hasError());
    QByteArray buffer(tileBytes, 0);
    QVERIFY(!made->toBuffer(buffer.data()));
    QVERIFY(!made->setData(bytes.constData()));
    QVERIFY(!made->setData(QImage(4, 4, QImage::Format_ARGB32)));
    QVERIFY(!made->updateMipmaps());
    QVERIFY(!made->bind());
    QVERIFY(!made->saveBackup({}));
    made->shutDown();
    layer.shutDown();
    QVERIFY(made->isValid());
    QVERIFY(log.added().contains(
        QStringLiteral("MTextureTile::toBuffer: System error: No current OpenGL context")));
    QVERIFY(log.added().contains(
        QStringLiteral("MTextureTile::initializeGL: System error: No current OpenGL context")));

    // With the context back, both tiles work: nothing was marked as failed or lost.
    QVERIFY(m_context.makeCurrent());
    QVERIFY(fresh->isCreated());
    QCOMPARE(readBack(fresh), QByteArray(tileBytes, 0));
    QCOMPARE(readBack(made), bytes);
}

QUILLMERE_TEST_MAIN(TestTextureTile)
#include "tst_mtexturetile.moc"
