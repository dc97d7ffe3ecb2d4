#include "support/logwatch.h"
#include "support/testenvironment.h"

#include "app/mlogger.h"
#include "document/mquadnode.h"
#include "document/mquadtree.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "document/mtile.h"
#include "document/mundolayer.h"

#include <QRandomGenerator>

#include <cmath>
#include <limits>

// Hash functions for the reference containers of the tests.
static uint qHash(const QPoint& point, uint seed = 0)
{
    return ::qHash(qMakePair(point.x(), point.y()), seed);
}

static uint qHash(const QRect& rect, uint seed = 0)
{
    return ::qHash(qMakePair(qMakePair(rect.x(), rect.y()), qMakePair(rect.width(), rect.height())), seed);
}

namespace {

using QuillmereTest::LogWatch;

// The texture layer's geometry (512, margin 6, inner 500) with plain tiles, so
// that the tree can be driven without GPU memory.
class PlainLayer : public MTiledLayer
{
public:
    std::unique_ptr<MTile> createTile() override { return std::make_unique<MTile>(this); }
};

bool isPowerOfTwo(int value)
{
    return value > 0 && (value & (value - 1)) == 0;
}

// Checks the shape of the whole tree: square nodes of a power of two times the
// inner size, children exactly on the quadrants, leaves holding a tile exactly
// on the tile's rectangle, and every tile held by exactly one leaf. Returns
// what is wrong, or an empty string.
QString checkNode(const MQuadTree& tree, const MQuadNode* node, QVector<int>& seen)
{
    const int inner = tree.layer()->innerSize();
    const QRect r = node->rect();
    if (r.width() != r.height() || r.width() % inner != 0 || !isPowerOfTwo(r.width() / inner))
        return QStringLiteral("bad node size %1 x %2").arg(r.width()).arg(r.height());
    if (node->isLeaf()) {
        if (node->tileIndex() < 0)
            return QString();
        if (r.width() != inner)
            return QStringLiteral("tile in a leaf of width %1").arg(r.width());
        MTile* tile = tree.tile(node->tileIndex());
        if (!tile || tile->rect() != r)
            return QStringLiteral("leaf and tile rectangles differ");
        seen[node->tileIndex()] += 1;
        return QString();
    }
    if (node->tileIndex() >= 0)
        return QStringLiteral("inner node holds a tile");
    const int half = r.width() / 2;
    const QPoint offsets[4] = {{0, 0}, {half, 0}, {0, half}, {half, half}};
    for (int i = 0; i < 4; ++i) {
        const MQuadNode* child = node->child(i);
        if (!child)
            return QStringLiteral("missing child %1").arg(i);
        if (child->rect() != QRect(r.topLeft() + offsets[i], QSize(half, half)))
            return QStringLiteral("child %1 is not on its quadrant").arg(i);
        const QString why = checkNode(tree, child, seen);
        if (!why.isEmpty())
            return why;
    }
    return QString();
}

QString checkTree(const MQuadTree& tree)
{
    if (!tree.root())
        return tree.tileCount() == 0 ? QString() : QStringLiteral("tiles without a root");
    QVector<int> seen(tree.tileCount(), 0);
    const QString why = checkNode(tree, tree.root(), seen);
    if (!why.isEmpty())
        return why;
    for (int i = 0; i < seen.size(); ++i) {
        if (seen[i] != 1)
            return QStringLiteral("tile %1 is held by %2 leaves").arg(i).arg(seen[i]);
    }
    return QString();
}

int depth(const MQuadNode* node)
{
    if (!node || node->isLeaf())
        return node ? 1 : 0;
    int deepest = 0;
    for (int i = 0; i < 4; ++i)
        deepest = qMax(deepest, depth(node->child(i)));
    return deepest + 1;
}

QPointF cellCentre(int column, int row, int inner = 500)
{
    return QPointF(column * inner + inner / 2, row * inner + inner / 2);
}

} // namespace

class TestQuadTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void growthFollowsTheFourCases_data();
    void growthFollowsTheFourCases();
    void farJumpsKeepEveryTileReachable();
    void randomPaintingMatchesAGrid();
    void negativeCoordinatesAndCellBorders();
    void lookupNeverCreatesAndClearKeepsBounds();
    void badPointsAndGeometryAreRefused();
    void cellKeyIsTheCantorPairing();
    void layerKindsAndGeometry();
};

void TestQuadTree::initTestCase()
{
    MLogger::instance();
}

void TestQuadTree::growthFollowsTheFourCases_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QRect>("root");
    QTest::addColumn<int>("place");

    // The first tile's root is (0, 0, 1000, 1000); each row is one growth step.
    const auto row = [](const char* name, int column, int line, const QRect& root, MQuadNode::Child place) {
        QTest::newRow(name) << cellCentre(column, line) << root << int(place);
    };
    const QRect upLeft(-1000, -1000, 2000, 2000);
    const QRect upRight(0, -1000, 2000, 2000);
    row("up-left", -1, -1, upLeft, MQuadNode::BottomRight);
    row("left", -1, 0, upLeft, MQuadNode::BottomRight);
    row("up", 0, -1, upLeft, MQuadNode::BottomRight);
    row("up-right", 2, -1, upRight, MQuadNode::BottomLeft);
    row("right", 2, 0, upRight, MQuadNode::BottomLeft);
    row("down", 1, 2, QRect(0, 0, 2000, 2000), MQuadNode::TopLeft);
    row("down-right", 2, 2, QRect(0, 0, 2000, 2000), MQuadNode::TopLeft);
    row("down-left", -1, 2, QRect(-1000, 0, 2000, 2000), MQuadNode::TopRight);
}

void TestQuadTree::growthFollowsTheFourCases()
{
    QFETCH(QPointF, point);
    QFETCH(QRect, root);
    QFETCH(int, place);

    PlainLayer layer;
    MQuadTree& tree = *layer.tree();
    MTile* first = tree.addTile(QPointF(250, 250));
    QVERIFY(first);
    QCOMPARE(first->rect(), QRect(0, 0, 500, 500));
    MQuadNode* oldRoot = tree.root();
    QCOMPARE(oldRoot->rect(), QRect(0, 0, 1000, 1000));
    QCOMPARE(oldRoot->child(MQuadNode::TopLeft)->tileIndex(), 0);

    MTile* second = tree.addTile(point);
    QVERIFY(second && second != first);
    QCOMPARE(tree.root()->rect(), root);
    // The old root keeps its place and its object, one level down.
    QCOMPARE(tree.root()->child(place), oldRoot);
    QCOMPARE(oldRoot->rect(), QRect(0, 0, 1000, 1000));
    QCOMPARE(oldRoot->parent(), nullptr);
    QCOMPARE(tree.tileAt(QPointF(250, 250)), first);
    QCOMPARE(tree.tileAt(point), second);
    QCOMPARE(tree.boundingRect(), first->rect().united(second->rect()));
    const QString why = checkTree(tree);
    QVERIFY2(why.isEmpty(), qPrintable(why));
}

void TestQuadTree::farJumpsKeepEveryTileReachable()
{
    PlainLayer layer;
    MQuadTree& tree = *layer.tree();
    // Corner to far corner, and back, then near the middle again.
    const QPointF points[] = {{10, 10},        {1.0e6, 1.0e6}, {-1.0e6, -1.0e6},    {-1.0e6, 1.0e6},
                              {1.0e6, -1.0e6}, {-3e7, 12},     {499, 499},          {-1.0e6 + 3, -1.0e6 + 3},
                              {2.5e7, -2.5e7}, {-0.5, -0.5},   {1.0e6 + 500, 1.0e6}};
    QVector<MTile*> made;
    QRect bounds;
    for (const QPointF& point : points) {
        MTile* tile = tree.addTile(point);
        QVERIFY(tile);
        if (!made.contains(tile))
            made.append(tile);
        bounds = bounds.isEmpty() ? tile->rect() : bounds.united(tile->rect());
        QVERIFY(tile->rect().contains(QPoint(int(std::floor(point.x())), int(std::floor(point.y())))));
        QCOMPARE(tree.boundingRect(), bounds);
        QCOMPARE(tree.tileCount(), made.size());
        for (MTile* old : qAsConst(made)) {
            const QRect r = old->rect();
            QCOMPARE(tree.tileAt(QPointF(r.center())), old);
            // The corners of a cell, the last pixel row and column included.
            QCOMPARE(tree.tileAt(QPointF(r.topLeft())), old);
            QCOMPARE(tree.tileAt(QPointF(r.right() + 0.5, r.bottom() + 0.5)), old);
            QCOMPARE(tree.addTile(QPointF(r.left(), r.bottom())), old);
        }
        const QString why = checkTree(tree);
        QVERIFY2(why.isEmpty(), qPrintable(why));
    }
    QCOMPARE(tree.tileCount(), 9); // three points fall in cells made before them

    // One jump of a thousand cells costs nine doublings of the root, not a thousand.
    PlainLayer line;
    line.addTile(cellCentre(0, 0));
    line.addTile(cellCentre(1000, 0));
    QCOMPARE(line.tree()->root()->rect(), QRect(0, -511000, 512000, 512000));
    QCOMPARE(depth(line.tree()->root()), 11);
    const QString why = checkTree(*line.tree());
    QVERIFY2(why.isEmpty(), qPrintable(why));
}

void TestQuadTree::randomPaintingMatchesAGrid()
{
    QRandomGenerator random(20240611);
    PlainLayer layer;
    MQuadTree& tree = *layer.tree();
    QHash<QPoint, MTile*> reference;
    for (int i = 0; i < 3000; ++i) {
        // Mostly strokes near the middle, with jumps far out now and then.
        const double spread = (i % 97 == 0) ? 2.0e6 : 30000.0;
        const QPointF point((random.generateDouble() - 0.5) * spread,
                            (random.generateDouble() - 0.5) * spread);
        const QPoint cell(int(std::floor(point.x() / 500)), int(std::floor(point.y() / 500)));
        MTile* tile = tree.addTile(point);
        QVERIFY(tile);
        if (reference.contains(cell))
            QCOMPARE(tile, reference.value(cell));
        else
            reference.insert(cell, tile);
        QCOMPARE(tile->rect(), QRect(cell * 500, QSize(500, 500)));
    }
    QCOMPARE(tree.tileCount(), reference.size());
    for (auto it = reference.cbegin(); it != reference.cend(); ++it) {
        const QPointF inside(it.key().x() * 500 + random.bounded(500.0),
                             it.key().y() * 500 + random.bounded(500.0));
        QCOMPARE(tree.tileAt(inside), it.value());
    }
    // Cells never painted stay empty, and asking doesn't make them.
    for (int i = 0; i < 500; ++i) {
        const QPoint cell(random.bounded(-200, 200), random.bounded(-200, 200));
        QCOMPARE(tree.tileAt(cellCentre(cell.x(), cell.y())), reference.value(cell, nullptr));
    }
    QCOMPARE(tree.tileCount(), reference.size());
    const QString why = checkTree(tree);
    QVERIFY2(why.isEmpty(), qPrintable(why));
}

void TestQuadTree::negativeCoordinatesAndCellBorders()
{
    PlainLayer layer;
    MQuadTree& tree = *layer.tree();

    // x = -1 is in column -1, whose inner rectangle starts at -500.
    MTile* minusOne = tree.addTile(QPointF(-1, -1));
    QCOMPARE(minusOne->rect(), QRect(-500, -500, 500, 500));
    QCOMPARE(minusOne->outerRect(), QRect(-506, -506, 512, 512));
    QCOMPARE(tree.addTile(QPointF(-1, -1)), minusOne);
    QCOMPARE(tree.addTile(QPointF(-500, -0.001)), minusOne);
    QCOMPARE(tree.tileAt(QPointF(-0.25, -499.75)), minusOne);
    QCOMPARE(tree.tileCount(), 1);
    QCOMPARE(tree.addTile(QPointF(-500.5, -1))->rect(), QRect(-1000, -500, 500, 500));
    QCOMPARE(tree.addTile(QPointF(0, 0))->rect(), QRect(0, 0, 500, 500));
    QCOMPARE(tree.addTile(QPointF(499.5, 0))->rect(), QRect(0, 0, 500, 500));
    QCOMPARE(tree.tileCount(), 3);

    // A rectangle that ends on a cell border doesn't reach into the next cell.
    PlainLayer fresh;
    QSet<MTile*> out;
    fresh.tilesInRect(QRectF(0, 0, 500, 500), out);
    QCOMPARE(out.size(), 1);
    QCOMPARE(fresh.tileCount(), 1);
    // The next cell counts only once the rectangle covers a whole pixel of it.
    out.clear();
    fresh.tilesInRect(QRectF(0, 0, 500.5, 500), out);
    QCOMPARE(out.size(), 1);
    fresh.tilesInRect(QRectF(0, 0, 501, 500), out);
    QCOMPARE(out.size(), 2);
    QCOMPARE(fresh.tileCount(), 2);
    // Starting half a pixel left of the origin reaches column -1.
    out.clear();
    fresh.tilesInRect(QRectF(-0.5, 10, 2, 1), out);
    QCOMPARE(out.size(), 2);
    QVERIFY(out.contains(fresh.tileAt(QPointF(-1, 10))));
    QVERIFY(out.contains(fresh.tileAt(QPointF(0, 10))));
    // Negative sizes are normalised.
    out.clear();
    fresh.tilesInRect(QRectF(1000, 1000, -1000, -1000), out);
    QCOMPARE(out.size(), 4);
    QCOMPARE(fresh.tileCount(), 5);
    for (MTile* tile : qAsConst(out))
        QVERIFY(QRect(0, 0, 1000, 1000).contains(tile->rect()));
    // Existing tiles come back as they are.
    QSet<MTile*> again;
    fresh.tilesInRect(QRectF(0, 0, 1000, 1000), again);
    QCOMPARE(again, out);
    QCOMPARE(fresh.tileCount(), 5);

    // The same rules on the 64-pixel grid of an undo layer.
    MUndoLayer cells;
    QSet<MTile*> touched;
    cells.tilesInRect(QRectF(0, 0, 128, 64), touched);
    QCOMPARE(touched.size(), 2);
    QSet<QRect> rects;
    for (MTile* tile : qAsConst(touched))
        rects.insert(tile->rect());
    QCOMPARE(rects, (QSet<QRect>{QRect(0, 0, 64, 64), QRect(64, 0, 64, 64)}));
    cells.tilesInRect(QRectF(-64, -64, 64, 64), touched);
    QCOMPARE(cells.tileCount(), 3);
    QCOMPARE(cells.tileAt(QPointF(-1, -1))->rect(), QRect(-64, -64, 64, 64));
}

void TestQuadTree::lookupNeverCreatesAndClearKeepsBounds()
{
    PlainLayer layer;
    QVERIFY(layer.isEmpty());
    QCOMPARE(layer.tileAt(QPointF(0, 0)), nullptr);
    QVERIFY(layer.tree()->boundingRect().isEmpty());

    MTile* a = layer.addTile(QPointF(100, 100));
    MTile* b = layer.addTile(QPointF(-700, 1200));
    MTile* c = layer.addTile(QPointF(5000, -5000));
    QVERIFY(!layer.isEmpty());
    QCOMPARE(layer.tileAt(QPointF(600, 100)), nullptr);
    QCOMPARE(layer.tileAt(QPointF(-1e5, 1e5)), nullptr);
    QCOMPARE(layer.tileCount(), 3);
    // Order of creation.
    QVERIFY(layer.tile(0) == a && layer.tile(1) == b && layer.tile(2) == c);
    QVERIFY(!layer.tile(-1) && !layer.tile(3));
    QCOMPARE(layer.tree()->tiles(), (QVector<MTile*>{a, b, c}));

    // The node test: left and top inclusive, and the last pixel row and
    // column (right() and bottom() of QRect) already outside.
    MQuadNode node(QRect(0, 0, 1000, 1000));
    QVERIFY(node.contains(QPointF(0, 0)) && node.contains(QPointF(998.9, 998.9)));
    for (const QPointF& outside :
         {QPointF(999, 500), QPointF(500, 999), QPointF(-0.1, 500), QPointF(500, -0.1)})
        QVERIFY2(!node.contains(outside),
                 qPrintable(QStringLiteral("%1, %2").arg(outside.x()).arg(outside.y())));
    QCOMPARE(node.leafAt(QPointF(10, 10)), &node);
    node.split();
    QCOMPARE(node.leafAt(QPointF(750, 250)), node.child(MQuadNode::TopRight));
    QCOMPARE(node.leafAt(QPointF(250, 750)), node.child(MQuadNode::BottomLeft));
    QCOMPARE(node.child(MQuadNode::BottomRight)->parent(), &node);
    // Between two children, on the first one's last column: no leaf.
    QCOMPARE(node.leafAt(QPointF(499.5, 10)), nullptr);
    QCOMPARE(node.leafAt(QPointF(1000, 10)), nullptr);

    const QRect bounds(-1000, -5000, 6500, 6500);
    QCOMPARE(layer.tree()->boundingRect(), bounds);
    layer.clear();
    QVERIFY(layer.isEmpty());
    QCOMPARE(layer.tree()->root(), nullptr);
    QCOMPARE(layer.tileAt(QPointF(100, 100)), nullptr);
    QCOMPARE(layer.tree()->boundingRect(), bounds);

    // The tree starts again from the next tile; the bounds only grow.
    MTile* d = layer.addTile(QPointF(-3000, -3000));
    QCOMPARE(layer.tree()->root()->rect(), QRect(-3000, -3000, 1000, 1000));
    QCOMPARE(layer.tile(0), d);
    QCOMPARE(layer.tileCount(), 1);
    QCOMPARE(layer.tree()->boundingRect(), QRect(-3000, -5000, 8500, 6500));
}

void TestQuadTree::badPointsAndGeometryAreRefused()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    PlainLayer layer;
    layer.addTile(QPointF(0, 0));

    for (const QPointF& point :
         {QPointF(nan, 0), QPointF(0, inf), QPointF(-inf, 0), QPointF(1e12, 0), QPointF(0, -3e8)}) {
        LogWatch log;
        QCOMPARE(layer.addTile(point), nullptr);
        QVERIFY2(log.added().contains(QStringLiteral("MQuadTree::addTile: System error: Point out of range")),
                 qPrintable(log.added()));
        QCOMPARE(layer.tileAt(point), nullptr);
    }
    QCOMPARE(layer.tileCount(), 1);
    // The farthest point allowed still fits the tree.
    MTile* far = layer.addTile(QPointF(MQuadTree::maxCoordinate, -MQuadTree::maxCoordinate));
    QVERIFY(far);
    QCOMPARE(layer.tileAt(QPointF(MQuadTree::maxCoordinate, -MQuadTree::maxCoordinate)), far);
    QCOMPARE(layer.tileAt(QPointF(0, 0)), layer.tile(0));
    const QString why = checkTree(*layer.tree());
    QVERIFY2(why.isEmpty(), qPrintable(why));

    QSet<MTile*> out;
    {
        LogWatch log;
        layer.tilesInRect(QRectF(0, 0, 1e7, 1e7), out);
        QVERIFY(log.added().contains(QStringLiteral("Rectangle too large")));
    }
    layer.tilesInRect(QRectF(nan, 0, 10, 10), out);
    layer.tilesInRect(QRectF(0, 0, inf, 10), out);
    QVERIFY(out.isEmpty());
    QCOMPARE(layer.tileCount(), 2);

    // A geometry whose cells are too small for the node test makes no tiles.
    PlainLayer tiny;
    tiny.setTileSize(6);
    tiny.setTileMargin(2);
    LogWatch log;
    QCOMPARE(tiny.addTile(QPointF(0, 0)), nullptr);
    tiny.tilesInRect(QRectF(0, 0, 10, 10), out);
    QVERIFY(out.isEmpty());
    QCOMPARE(tiny.tileCount(), 0);
    QVERIFY(log.added().contains(QStringLiteral("Invalid tile geometry: size 6, margin 2")));
}

void TestQuadTree::cellKeyIsTheCantorPairing()
{
    // The first diagonals, in order.
    const QPoint diagonals[] = {{0, 0}, {0, 1}, {1, 0}, {0, 2}, {1, 1}, {2, 0}};
    for (int key = 0; key < 6; ++key)
        QCOMPARE(MQuadTree::cellKey(diagonals[key].x(), diagonals[key].y(), 0), qint64(key));
    QCOMPARE(MQuadTree::cellKey(-1000, -1000, 1000), qint64(0));
    QCOMPARE(MQuadTree::cellKey(-1001, 0, 1000), qint64(-1));
    QCOMPARE(MQuadTree::cellKey(0, -1001, 1000), qint64(-1));
    QCOMPARE(MQuadTree::cellKey(std::numeric_limits<int>::max(), std::numeric_limits<int>::max(),
                                std::numeric_limits<int>::max()),
             qint64(-1));
    // Distinct over a block of cells on both sides of the origin.
    QSet<qint64> keys;
    for (int row = -60; row < 60; ++row) {
        for (int column = -60; column < 60; ++column) {
            const qint64 key = MQuadTree::cellKey(column, row, 1000);
            QVERIFY(key >= 0);
            keys.insert(key);
        }
    }
    QCOMPARE(keys.size(), 120 * 120);
}

void TestQuadTree::layerKindsAndGeometry()
{
    MLayer plain;
    QCOMPARE(plain.type(), MLayer::BufferLayer);
    QVERIFY(!plain.isEmpty());
    QCOMPARE(plain.property("type").value<MLayer::Type>(), MLayer::BufferLayer);

    // Cells of 64 without a margin.
    MUndoLayer undo;
    QCOMPARE(undo.type(), MLayer::UndoLayer);
    MTile* cell = undo.addTile(QPointF(70, 10));
    QVERIFY(cell && !dynamic_cast<MTextureTile*>(cell));
    QCOMPARE(cell->rect(), QRect(64, 0, 64, 64));
    QCOMPARE(cell->outerRect(), cell->rect());
    QVERIFY(!cell->isValid());

    MTextureLayer texture;
    QCOMPARE(texture.type(), MLayer::OpenGLLayer);
    QCOMPARE(texture.innerSize(), 500);
    QVERIFY(texture.isEmpty());
    auto* tile = dynamic_cast<MTextureTile*>(texture.addTile(QPointF(10, 10)));
    QVERIFY(tile);
    QVERIFY(!texture.isEmpty());
    // Tiles are made in bulk and cost no texture until touched.
    QVERIFY(!tile->isInitialized());
    QCOMPARE(tile->texture(), nullptr);
    QCOMPARE(tile->textureId(), 0u);
    QCOMPARE(tile->undoLayer()->type(), MLayer::UndoLayer);
    QCOMPARE(tile->bufferSize(), qint64(512 * 512 * 4));
}

QUILLMERE_TEST_MAIN(TestQuadTree)
#include "tst_mquadtree.moc"
