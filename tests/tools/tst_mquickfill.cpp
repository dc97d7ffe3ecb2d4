#include "support/glcontext.h"
#include "support/testenvironment.h"
#include "support/tilebytes.h"

#include "app/mutility.h"
#include "document/mcanvas.h"
#include "document/mcommandquickfilltile.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "gpu/mbufferlayer.h"
#include "gpu/mbuffertile.h"
#include "gpu/mtexturetransfert.h"
#include "tools/mquickfill.h"

#include <QPainter>
#include <QQueue>
#include <QRandomGenerator>
#include <QUndoStack>

#include <algorithm>
#include <cstring>
#include <functional>

namespace {

using namespace QuillmereTest;

constexpr int inner = 500;

int cellOf(int coordinate)
{
    return coordinate >= 0 ? coordinate / inner : -((-coordinate + inner - 1) / inner);
}

// A transparent picture in the byte order of the tiles.
QImage blank(const QSize& size)
{
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

// Sets premultiplied bytes as they stand, packed as qRgba(r, g, b, a).
void setBytes(QImage& image, int x, int y, QRgb bytes)
{
    uchar* p = image.scanLine(y) + x * 4;
    p[0] = uchar(qRed(bytes));
    p[1] = uchar(qGreen(bytes));
    p[2] = uchar(qBlue(bytes));
    p[3] = uchar(qAlpha(bytes));
}

// A picture whose pixels are given as raw bytes.
QImage generated(const QSize& size, const std::function<QRgb(int, int)>& bytes)
{
    QImage image = blank(size);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            setBytes(image, x, y, bytes(x, y));
    }
    return image;
}

const uchar* bytesAt(const QImage& image, int x, int y)
{
    return image.constScanLine(y) + x * 4;
}

QString bytesText(const uchar* p)
{
    return QStringLiteral("(%1, %2, %3, %4)").arg(p[0]).arg(p[1]).arg(p[2]).arg(p[3]);
}

QString pixelText(const QImage& image, int x, int y)
{
    return bytesText(bytesAt(image, x, y));
}

// Lays picture on the layer with its top left corner at origin, margins
// included, as the program keeps its tiles.
bool paintPicture(MTextureLayer* layer, const QImage& picture, const QPoint& origin)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    const QRect area(origin, image.size());
    QSet<MTile*> tiles;
    layer->tilesInRect(QRectF(area), tiles);
    for (MTile* tile : qAsConst(tiles)) {
        auto* textureTile = dynamic_cast<MTextureTile*>(tile);
        if (!textureTile || !textureTile->isCreated())
            return false;
        QByteArray bytes(tileBytes, '\0');
        const QRect outer = tile->outerRect();
        const QRect part = outer.intersected(area);
        for (int y = part.top(); y <= part.bottom(); ++y) {
            std::memcpy(bytes.data() + ((y - outer.top()) * 512 + part.left() - outer.left()) * 4,
                        bytesAt(image, part.left() - origin.x(), y - origin.y()), size_t(part.width()) * 4);
        }
        if (!textureTile->setData(static_cast<const void*>(bytes.constData())))
            return false;
    }
    return true;
}

// What the layer holds over area, read back from the GPU; transparent where
// it has no tile.
QImage layerImage(MTextureLayer* layer, const QRect& area)
{
    QImage image = blank(area.size());
    for (int row = cellOf(area.top()); row <= cellOf(area.bottom()); ++row) {
        for (int column = cellOf(area.left()); column <= cellOf(area.right()); ++column) {
            const QRect cell(column * inner, row * inner, inner, inner);
            MTile* tile = layer->tileAt(QRectF(cell).center());
            if (!tile)
                continue;
            const QByteArray bytes = readBack(tile);
            if (bytes.isEmpty())
                return QImage();
            const QRect part = cell.intersected(area);
            for (int y = part.top(); y <= part.bottom(); ++y) {
                std::memcpy(image.scanLine(y - area.top()) + (part.left() - area.left()) * 4,
                            bytes.constData() +
                                ((y - cell.top() + 6) * 512 + part.left() - cell.left() + 6) * 4,
                            size_t(part.width()) * 4);
            }
        }
    }
    return image;
}

// The first pixel where two pictures of the same size differ, as text.
QString difference(const QImage& actual, const QImage& expected, const QPoint& origin)
{
    if (actual.size() != expected.size())
        return QStringLiteral("sizes differ");
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            const uchar* a = bytesAt(actual, x, y);
            const uchar* e = bytesAt(expected, x, y);
            if (std::memcmp(a, e, 4) != 0)
                return QStringLiteral("at (%1, %2): %3, expected %4")
                    .arg(x + origin.x())
                    .arg(y + origin.y())
                    .arg(bytesText(a), bytesText(e));
        }
    }
    return QString();
}

// The plain reference: a breadth-first walk over the 4-connected pixels
// within threshold of the seed, inside the picture.
QVector<bool> referenceRegion(const QImage& picture, const QPoint& seed, int threshold)
{
    QVector<bool> region(picture.width() * picture.height(), false);
    const uchar* color = bytesAt(picture, seed.x(), seed.y());
    const auto within = [threshold](uchar a, uchar b) { return qAbs(int(a) - int(b)) <= threshold; };
    QQueue<QPoint> queue;
    queue.enqueue(seed);
    region[seed.y() * picture.width() + seed.x()] = true;
    while (!queue.isEmpty()) {
        const QPoint p = queue.dequeue();
        for (const QPoint& step : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
            const QPoint q = p + step;
            if (q.x() < 0 || q.y() < 0 || q.x() >= picture.width() || q.y() >= picture.height())
                continue;
            const int index = q.y() * picture.width() + q.x();
            const uchar* bytes = bytesAt(picture, q.x(), q.y());
            if (!region[index] && std::equal(bytes, bytes + 4, color, within)) {
                region[index] = true;
                queue.enqueue(q);
            }
        }
    }
    return region;
}

// A canvas whose page is bounds, with picture laid over the page on its
// only layer, and a fill on it.
struct Scene
{
    explicit Scene(const QRect& rect) : bounds(rect)
    {
        canvas.setPaintedRect(QRectF(rect));
        fill.setCanvas(&canvas);
    }
    bool paint(const QImage& image)
    {
        picture = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        return canvas.makeCurrent() && paintPicture(canvas.at(0), picture, bounds.topLeft());
    }
    QImage read(const QRect& area) { return layerImage(canvas.at(0), area); }
    // Fills the current layer and reads the page back; null when the fill fails.
    QImage fillPage(const QPoint& seed, const QColor& color, int threshold)
    {
        fill.set_threshold(quint8(threshold));
        return fill.fill(seed, color, -1) ? read(bounds) : QImage();
    }

    MCanvas canvas;
    MQuickFill fill;
    QRect bounds;
    QImage picture;
};

// Fills at seed (layer coordinates) with a fresh fill and compares the layer
// with the reference fill, over the page and a band around it; empty when
// all agrees.
QString checkFill(Scene& scene, const QPoint& seed, int threshold, const QColor& color)
{
    const QPoint origin = scene.bounds.topLeft();
    const QVector<bool> region = referenceRegion(scene.picture, seed - origin, threshold);
    // The picture with the region in the fill's colour; the bounds and the
    // cells of the region.
    QImage expectedPage = scene.picture.copy();
    QRect box;
    QSet<QPair<int, int>> cells;
    for (int i = 0; i < region.size(); ++i) {
        const int x = i % expectedPage.width();
        const int y = i / expectedPage.width();
        if (region[i]) {
            setBytes(expectedPage, x, y, qPremultiply(color.rgba()));
            box |= QRect(x, y, 1, 1);
            cells.insert({cellOf(x + origin.x()), cellOf(y + origin.y())});
        }
    }
    const QRect around = scene.bounds.adjusted(-12, -12, 12, 12);
    QImage expected = blank(around.size());
    QPainter(&expected).drawImage(QPoint(12, 12), expectedPage);

    MQuickFill fill;
    fill.setCanvas(&scene.canvas);
    fill.set_threshold(quint8(threshold));
    const int before = scene.canvas.undoStack()->count();
    if (!fill.fill(seed, color, 0))
        return QStringLiteral("the fill answered false");
    const QRectF filled = fill.filledRect();
    if (filled != QRectF(box.translated(origin)))
        return QString::asprintf("filled rectangle %g, %g %gx%g", filled.x(), filled.y(), filled.width(),
                                 filled.height());
    const QUndoStack* stack = scene.canvas.undoStack();
    if (stack->count() != before + 1 || stack->text(before) != QStringLiteral("Fill"))
        return QStringLiteral("not one undo step \"Fill\"");
    if (stack->command(before)->childCount() != cells.size())
        return QString::asprintf("%d tile commands for %d cells", stack->command(before)->childCount(),
                                 cells.size());
    return difference(scene.read(around), expected, around.topLeft());
}

// Walls of one colour on a transparent page.
QImage walls(const QSize& size, const std::function<void(QPainter&)>& draw)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    draw(painter);
    return image;
}

// A wide ring over four cells, on ringPage.
const QRect ringPage(-560, -100, 1100, 200);
QImage wideRing()
{
    return walls(ringPage.size(), [](QPainter& painter) {
        painter.setPen(QPen(QColor(30, 60, 200), 6));
        painter.drawEllipse(QPoint(560, 100), 300, 80);
    });
}

// Spans records are counted down to a failure.
class StarvedQuickFill : public MQuickFill
{
public:
    explicit StarvedQuickFill(int allowed) : m_allowed(allowed) {}

protected:
    Span* allocateSpan() override { return m_allowed-- > 0 ? MQuickFill::allocateSpan() : nullptr; }

private:
    int m_allowed;
};

} // namespace

class TestMQuickFill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void closedShapes();
    void randomShapes();
    void threshold();
    void nothingToFill();
    void seedAlpha();
    void patterns();
    void wholePageAtFullThreshold();
    void undoRedoAndFiles();
    void outOfMemory();
    void selection();

private:
    GLContext m_gl;
};

void TestMQuickFill::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    QVERIFY(MTextureTransfert::create(512, 6, 4));
}

void TestMQuickFill::cleanupTestCase()
{
    MTextureTransfert::instance()->shutDown(m_gl.context());
    MTextureTransfert::destroy();
}

void TestMQuickFill::closedShapes()
{
    // The page crosses three vertical seams and one horizontal one.
    const QRect page(-560, -140, 1160, 300);
    const QColor wall(30, 60, 200);
    const auto check = [&](const char* name, const QImage& picture, const QPoint& seed, int threshold) {
        Scene scene(page);
        const QString error =
            scene.paint(picture) ? checkFill(scene, seed, threshold, QColor(250, 200, 20)) : "not painted";
        return error.isEmpty() ? error
                               : QString::asprintf("%s, seed %d, %d: ", name, seed.x(), seed.y()) + error;
    };
    // A ring over the seams: its inside, and the rest of the page.
    const QImage ring = walls(page.size(), [&](QPainter& painter) {
        painter.setPen(QPen(wall, 12));
        painter.drawEllipse(QPoint(560, 140), 120, 110);
    });
    for (const QPoint& seed : {QPoint(0, 0), QPoint(-500, -130), QPoint(0, -110)})
        QCOMPARE(check("ring", ring, seed, 10), QString());
    // A comb with its teeth down: from the tip of one tooth the fill goes up
    // into the bar and must come back down into the other teeth.
    const QImage comb = walls(page.size(), [&](QPainter& painter) {
        painter.fillRect(QRect(0, 0, page.width(), page.height()), wall);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(QRect(700, 20, 380, 30), Qt::transparent);
        for (int tooth = 0; tooth < 6; ++tooth)
            painter.fillRect(QRect(705 + tooth * 62, 50, 25, 200 - tooth * 20), Qt::transparent);
    });
    QCOMPARE(check("comb", comb, QPoint(-560 + 705 + 2 * 62 + 10, -140 + 200), 0), QString());
    // A serpentine of vertical walls with gaps at alternate ends, across the
    // seam at x = -500: the fill turns back on itself at every wall.
    const QImage serpentine = walls(page.size(), [&](QPainter& painter) {
        for (int i = 0; i < 14; ++i)
            painter.fillRect(QRect(10 + i * 9, i % 2 ? 0 : 8, 3, 292), wall);
        painter.fillRect(QRect(136, 0, 3, 300), wall);
    });
    QCOMPARE(check("serpentine", serpentine, QPoint(-560 + 14, -140 + 150), 0), QString());
}

void TestMQuickFill::randomShapes()
{
    // Colours close enough for a threshold to join them, and one far off.
    const QList<QColor> colours{QColor(200, 30, 30), QColor(205, 36, 30), QColor(30, 200, 30),
                                QColor(20, 20, 20)};
    const QList<int> thresholds{0, 6, 12, 80};
    const QRect page(-70, -50, 140, 100);
    Scene scene(page);
    QRandomGenerator random(20240611);
    for (int round = 0; round < 100; ++round) {
        const QImage picture = walls(page.size(), [&](QPainter& painter) {
            const int shapes = random.bounded(4, 40);
            for (int i = 0; i < shapes; ++i) {
                const QColor colour = colours.at(random.bounded(colours.size()));
                const QRect rect(random.bounded(-20, 140), random.bounded(-20, 100), random.bounded(3, 60),
                                 random.bounded(3, 50));
                switch (random.bounded(3)) {
                case 0:
                    painter.fillRect(rect, colour);
                    break;
                case 1:
                    painter.setPen(Qt::NoPen);
                    painter.setBrush(colour);
                    painter.drawEllipse(rect);
                    break;
                default:
                    painter.setPen(QPen(colour, random.bounded(1, 5)));
                    painter.drawLine(rect.topLeft(), rect.bottomRight());
                    break;
                }
            }
        });
        const QPoint seed(random.bounded(page.left(), page.right() + 1),
                          random.bounded(page.top(), page.bottom() + 1));
        const int threshold = thresholds.at(random.bounded(thresholds.size()));
        // The picture replaces the four tiles under the page whole.
        QVERIFY(scene.paint(picture));
        scene.canvas.undoStack()->clear();
        const QString error = checkFill(scene, seed, threshold, QColor(0, 0, 255));
        QVERIFY2(error.isEmpty(), qPrintable(QString::asprintf("round %d, seed %d, %d, threshold %d: ", round,
                                                               seed.x(), seed.y(), threshold) +
                                             error));
    }
}

void TestMQuickFill::threshold()
{
    const QRect page(-40, -20, 80, 40);
    const QImage picture = generated(page.size(), [](int x, int) {
        return x < 40 ? qRgba(100, 100, 100, 255) : qRgba(110, 100, 100, 255);
    });
    for (int threshold : {9, 10}) {
        Scene scene(page);
        QVERIFY(scene.paint(picture));
        const QImage after = scene.fillPage(QPoint(-30, 0), QColor(0, 0, 0), threshold);
        QVERIFY(!after.isNull());
        QCOMPARE(pixelText(after, 39, 10), QStringLiteral("(0, 0, 0, 255)"));
        QCOMPARE(pixelText(after, 40, 10),
                 threshold == 10 ? QStringLiteral("(0, 0, 0, 255)") : QStringLiteral("(110, 100, 100, 255)"));
        QCOMPARE(scene.fill.filledRect(), QRectF(-40, -20, threshold == 10 ? 80 : 40, 40));
    }
}

void TestMQuickFill::nothingToFill()
{
    const QRect page(-50, -50, 100, 100);
    Scene scene(page);
    QImage picture = blank(page.size());
    picture.fill(QColor(10, 120, 30));
    QVERIFY(scene.paint(picture));
    const QImage before = scene.read(page);
    QUndoStack* stack = scene.canvas.undoStack();
    const int steps = stack->count();

    MQuickFill fill;
    QVERIFY(!fill.fill(QPoint(0, 0), Qt::red));
    fill.setCanvas(&scene.canvas);
    // The seed's own colour.
    QVERIFY(!fill.fill(QPoint(0, 0), QColor(10, 120, 30), 0));
    // Outside the page.
    QVERIFY(!fill.fill(QPoint(50, 0), Qt::red, 0));
    QVERIFY(!fill.fill(QPoint(-51, -20), Qt::red, 0));
    QVERIFY(fill.filledRect().isEmpty());
    QCOMPARE(stack->count(), steps);
    QCOMPARE(difference(scene.read(page), before, page.topLeft()), QString());

    // A transparent seed and a transparent colour.
    Scene empty(page);
    QVERIFY(!empty.fill.fill(QPoint(0, 0), Qt::transparent, 0));
    QCOMPARE(empty.canvas.undoStack()->count(), 0);
    QCOMPARE(empty.canvas.at(0)->tileCount(), 0);

    // An index with no layer means the current layer.
    scene.canvas.appendLayer();
    scene.canvas.setCurrentRow(0);
    QVERIFY(fill.fill(QPoint(0, 0), Qt::red, 5));
    QCOMPARE(pixelText(scene.read(page), 50, 50), QStringLiteral("(255, 0, 0, 255)"));
    QCOMPARE(scene.canvas.at(1)->tileCount(), 0);

    // No layer at all.
    scene.canvas.removeLayer(1);
    scene.canvas.removeLayer(0);
    QCOMPARE(scene.canvas.count(), 0);
    QVERIFY(!fill.fill(QPoint(0, 0), Qt::blue, -1));
    QVERIFY(!scene.canvas.quickSelect(QPointF(0, 0), true, 10, -1));
}

void TestMQuickFill::seedAlpha()
{
    const QRect page(-30, -30, 60, 60);
    // A transparent seed: a ring of opaque wall with a faint inner rim (alpha
    // 8, within the threshold) that keeps its colour under the fill.
    const QImage ringed = generated(page.size(), [](int x, int y) {
        const int d = qMax(qAbs(x - 30), qAbs(y - 30));
        return d >= 20 && d < 23 ? qRgba(0, 90, 0, 255) : d == 19 ? qRgba(8, 0, 0, 8) : 0u;
    });
    for (const QColor& colour : {QColor(0, 0, 200, 255), QColor(0, 0, 200, 128)}) {
        Scene scene(page);
        QVERIFY(scene.paint(ringed));
        const QImage after = scene.fillPage(QPoint(0, 0), colour, 10);
        QVERIFY(!after.isNull());
        const int blue = colour.alpha() == 255 ? 200 : 100;
        QCOMPARE(pixelText(after, 30, 30), QStringLiteral("(0, 0, %1, %2)").arg(blue).arg(colour.alpha()));
        const uchar* rim = bytesAt(after, 30, 11);
        QVERIFY2(rim[0] == 8 && rim[1] == 0 && qAbs(int(rim[2]) - qRound(blue * 247 / 255.0)) <= 1 &&
                     rim[3] == 255,
                 qPrintable(bytesText(rim)));
        QCOMPARE(pixelText(after, 30, 10), QStringLiteral("(0, 90, 0, 255)"));
        QCOMPARE(pixelText(after, 2, 2), QStringLiteral("(0, 0, 0, 0)"));
    }

    // An opaque seed: the region takes the fill's colour without its alpha,
    // and a soft edge (alpha 250) keeps its alpha.
    Scene opaque(page);
    QVERIFY(opaque.paint(generated(page.size(), [](int x, int) {
        return x < 30 ? qRgba(50, 50, 50, 255) : x == 30 ? qRgba(49, 49, 49, 250) : 0u;
    })));
    QImage after = opaque.fillPage(QPoint(-20, 0), QColor(200, 100, 0, 128), 10);
    QVERIFY(!after.isNull());
    // 200 and 100 at alpha 128 are 100 and 50 premultiplied; back to 199 and 99.
    QCOMPARE(pixelText(after, 0, 0), QStringLiteral("(199, 99, 0, 255)"));
    const uchar* edge = bytesAt(after, 30, 40);
    QVERIFY2(qAbs(int(edge[0]) - 195) <= 1 && qAbs(int(edge[1]) - 97) <= 1 && edge[2] == 0 && edge[3] == 250,
             qPrintable(bytesText(edge)));
    QCOMPARE(pixelText(after, 31, 40), QStringLiteral("(0, 0, 0, 0)"));

    // Any other seed alpha: the region is replaced outright, alpha included.
    Scene translucent(page);
    QVERIFY(translucent.paint(generated(
        page.size(), [](int x, int) { return x < 40 ? qRgba(100, 80, 60, x < 20 ? 200 : 196) : 0u; })));
    after = translucent.fillPage(QPoint(-25, 5), QColor(10, 20, 30, 90), 4);
    QVERIFY(!after.isNull());
    QCOMPARE(pixelText(after, 0, 0), QStringLiteral("(3, 7, 10, 90)"));
    QCOMPARE(pixelText(after, 39, 59), QStringLiteral("(3, 7, 10, 90)"));
    QCOMPARE(pixelText(after, 40, 59), QStringLiteral("(0, 0, 0, 0)"));
}

void TestMQuickFill::patterns()
{
    const QRect page(-70, -40, 140, 80);
    // Three by two, one pixel transparent and one half transparent.
    QImage pattern(3, 2, QImage::Format_ARGB32_Premultiplied);
    const QRgb texels[] = {qRgba(255, 0, 0, 255), qRgba(0, 255, 0, 255), qRgba(0, 0, 0, 0),
                           qRgba(0, 0, 255, 255), qRgba(64, 32, 0, 128), qRgba(255, 255, 255, 255)};
    for (int i = 0; i < 6; ++i)
        pattern.setPixel(i % 3, i / 3, texels[i]);
    // An opaque frame around a transparent inside.
    const auto inside = [](int x, int y) { return x >= 4 && y >= 4 && x < 136 && y < 76; };
    const QRgb frame = qRgba(90, 90, 90, 255);
    const QImage picture = generated(page.size(), [&](int x, int y) { return inside(x, y) ? 0u : frame; });
    for (bool usePatternColor : {true, false}) {
        Scene scene(page);
        QVERIFY(scene.paint(picture));
        scene.fill.setPattern(pattern);
        scene.fill.setUsePatternColor(usePatternColor);
        QVERIFY(scene.fill.hasPattern());
        // Far from the corner: the pattern still starts at the page's corner.
        QVERIFY(scene.fill.fill(QPoint(31, 17), QColor(0, 0, 255), 0));
        const QImage expected = generated(page.size(), [&](int x, int y) {
            const QRgb p = pattern.pixel(x % 3, y % 2);
            if (!inside(x, y))
                return frame;
            return usePatternColor ? p : qRgba(0, 0, 255 * qAlpha(p) / 255, qAlpha(p));
        });
        QCOMPARE(difference(scene.read(page), expected, page.topLeft()), QString());
    }
    MQuickFill fill;
    fill.setPattern(pattern);
    fill.setPattern(QImage());
    QVERIFY(!fill.hasPattern());
}

void TestMQuickFill::wholePageAtFullThreshold()
{
    // The page covers parts of four cells; only one of them has a tile.
    const QRect page(-300, -200, 600, 400);
    Scene scene(page);
    QImage picture = blank(QSize(100, 100));
    picture.fill(QColor(20, 40, 60));
    QVERIFY(scene.canvas.makeCurrent());
    QVERIFY(paintPicture(scene.canvas.at(0), picture, QPoint(50, 50)));
    QCOMPARE(scene.canvas.at(0)->tileCount(), 1);

    scene.fill.set_threshold(255);
    QVERIFY(scene.fill.fill(QPoint(-250, -150), QColor(200, 0, 100), 0));
    QCOMPARE(scene.fill.filledRect(), QRectF(page));
    QCOMPARE(scene.canvas.at(0)->tileCount(), 4);
    const QRect around = page.adjusted(-5, -5, 5, 5);
    // The transparent seed leaves opaque pixels as they are.
    QImage expected = blank(around.size());
    QPainter painter(&expected);
    painter.fillRect(QRect(5, 5, 600, 400), QColor(200, 0, 100));
    painter.fillRect(QRect(355, 255, 100, 100), QColor(20, 40, 60));
    painter.end();
    QCOMPARE(difference(scene.read(around), expected, around.topLeft()), QString());
}

void TestMQuickFill::undoRedoAndFiles()
{
    Scene scene(ringPage);
    QVERIFY(scene.paint(wideRing()));
    MTextureLayer* layer = scene.canvas.at(0);
    const QRect around = ringPage.adjusted(-20, -20, 20, 20);
    const QImage before = scene.read(around);

    QVERIFY(scene.fill.fill(QPoint(-550, -90), QColor(240, 10, 10, 200), 0));
    const QImage after = scene.read(around);
    QVERIFY(!difference(after, before, around.topLeft()).isEmpty());

    QUndoStack* stack = scene.canvas.undoStack();
    QCOMPARE(stack->count(), 1);
    const QUndoCommand* step = stack->command(0);
    QCOMPARE(step->text(), QStringLiteral("Fill"));
    QVERIFY(step->childCount() >= 4);
    QStringList ids;
    for (int i = 0; i < step->childCount(); ++i) {
        const auto* command = dynamic_cast<const MCommandQuickFillTile*>(step->child(i));
        QVERIFY(command);
        QCOMPARE(command->text(), QStringLiteral("Fill tile"));
        ids << command->undoId() << command->redoId();
    }
    for (const QString& id : qAsConst(ids)) {
        QVERIFY2(QFile::exists(MUtility::tileFilePath(id)), qPrintable(id));
        QCOMPARE(scene.canvas.registeredCount(id), 1);
    }
    QCOMPARE(QSet<QString>(ids.begin(), ids.end()).size(), ids.size());
    // The redo file holds the painted tile whole, as the texture has it.
    const auto* first = dynamic_cast<const MCommandQuickFillTile*>(step->child(0));
    const QByteArray file = readFile(MUtility::tileFilePath(first->redoId()));
    QCOMPARE(file.size(), 4 + tileBytes);
    QCOMPARE(file.left(4), QByteArray::fromHex("FFFFFFFF"));
    const MBufferTile* painted = scene.fill.paintedTiles().at(0);
    QCOMPARE(file.mid(4), readBack(layer->tileAt(QRectF(painted->rect()).center())));

    for (int round = 0; round < 2; ++round) {
        scene.canvas.undo();
        QCOMPARE(difference(scene.read(around), before, around.topLeft()), QString());
        scene.canvas.redo();
        QCOMPARE(difference(scene.read(around), after, around.topLeft()), QString());
    }

    stack->clear();
    for (const QString& id : qAsConst(ids)) {
        QVERIFY2(!QFile::exists(MUtility::tileFilePath(id)), qPrintable(id));
        QCOMPARE(scene.canvas.registeredCount(id), 0);
    }
}

void TestMQuickFill::outOfMemory()
{
    const QImage ring = wideRing();
    // With enough records the same fill goes through.
    for (int allowed : {0, 1, 40, 100000}) {
        Scene scene(ringPage);
        QVERIFY(scene.paint(ring));
        const QImage before = scene.read(ringPage);
        StarvedQuickFill fill(allowed);
        fill.setCanvas(&scene.canvas);
        QCOMPARE(fill.fill(QPoint(-550, -90), Qt::red, 0), allowed == 100000);
        if (allowed < 100000) {
            QCOMPARE(scene.canvas.undoStack()->count(), 0);
            QCOMPARE(difference(scene.read(ringPage), before, ringPage.topLeft()), QString());
        }
    }
}

void TestMQuickFill::selection()
{
    const QRect page(-300, -120, 600, 240);
    Scene scene(page);
    QVERIFY(scene.paint(walls(page.size(), [](QPainter& painter) {
        painter.setPen(QPen(QColor(255, 255, 255), 8));
        painter.drawEllipse(QPoint(300, 120), 150, 90);
    })));
    MCanvas& canvas = scene.canvas;
    QSignalSpy changes(&canvas, &MCanvas::selectionChanged);
    const QPoint outside(-290, -110);
    const QVector<bool> insideRegion = referenceRegion(scene.picture, -page.topLeft(), 10);
    const QVector<bool> outsideRegion = referenceRegion(scene.picture, outside - page.topLeft(), 10);
    // The mask over the regions, in one opaque colour; empty when the selection layer holds it.
    const auto selected = [&](QRgb mark, const QVector<bool>& region, const QVector<bool>& more) {
        QImage expected = blank(page.size());
        for (int i = 0; i < region.size(); ++i) {
            if (region[i] || more.value(i))
                setBytes(expected, i % page.width(), i / page.width(), mark);
        }
        return difference(layerImage(canvas.selectionLayer(), page), expected, page.topLeft());
    };
    // The wand marks with the seed's complement, opaque.
    const QRgb white = qRgba(255, 255, 255, 255);

    QVERIFY(canvas.quickSelect(QPointF(0.3, -0.2), true, 10, 0));
    QVERIFY(canvas.hasSelection());
    QCOMPARE(changes.count(), 1);
    QCOMPARE(selected(white, insideRegion, {}), QString());

    // Ctrl adds to the selection.
    QVERIFY(canvas.quickSelect(QPointF(outside), false, 10, 0));
    QCOMPARE(changes.count(), 2);
    QCOMPARE(selected(white, insideRegion, outsideRegion), QString());
    // Selecting what is selected already still counts as a selection.
    QVERIFY(canvas.quickSelect(QPointF(outside), false, 10, 0));
    QCOMPARE(changes.count(), 3);
    QCOMPARE(selected(white, insideRegion, outsideRegion), QString());

    // Without it the selection is replaced.
    QVERIFY(canvas.quickSelect(QPointF(outside), true, 10, 0));
    QCOMPARE(selected(white, outsideRegion, {}), QString());

    // An opaque white seed is marked in black. The path and the history stay as they were.
    QVERIFY(canvas.quickSelect(QPointF(150, 0), true, 10, 0));
    const QVector<bool> wallRegion = referenceRegion(scene.picture, QPoint(450, 120), 10);
    const QRgb black = qRgba(0, 0, 0, 255);
    QCOMPARE(selected(black, wallRegion, {}), QString());
    QVERIFY(canvas.selectionPath().isEmpty());
    QCOMPARE(canvas.undoStack()->count(), 0);

    // A click outside the page selects nothing and leaves the selection.
    QVERIFY(!canvas.quickSelect(QPointF(400, 0), true, 10, 0));
    QCOMPARE(changes.count(), 5);
    QCOMPARE(selected(black, wallRegion, {}), QString());
}

QUILLMERE_TEST_MAIN(TestMQuickFill)
#include "tst_mquickfill.moc"
