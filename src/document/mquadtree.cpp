#include "document/mquadtree.h"

#include "app/mlogger.h"
#include "document/mquadnode.h"
#include "document/mtile.h"
#include "document/mtiledlayer.h"

#include <QDebug>

#include <cmath>

namespace {

// A cell centre lies inside its leaf by the node test only when the inner
// size is at least 3 (the last pixel column of a node counts as outside).
constexpr int minInnerSize = 3;

QString pointText(const QPointF& point)
{
    return QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y());
}

} // namespace

MQuadTree::MQuadTree(MTiledLayer* layer) : m_layer(layer) {}

MQuadTree::~MQuadTree()
{
    // Nodes hold indices into the tiles, so they go first.
    m_root.reset();
    m_tiles.clear();
}

bool MQuadTree::checkGeometry(const QString& source) const
{
    if (m_layer->innerSize() >= minInnerSize)
        return true;
    MLogger::systemError(source, QStringLiteral("Invalid tile geometry: size %1, margin %2")
                                     .arg(m_layer->tileSize())
                                     .arg(m_layer->tileMargin()));
    return false;
}

bool MQuadTree::cellOf(const QPointF& point, int innerSize, QPoint* cell)
{
    if (innerSize <= 0 || !std::isfinite(point.x()) || !std::isfinite(point.y()) ||
        std::abs(point.x()) > maxCoordinate || std::abs(point.y()) > maxCoordinate)
        return false;
    *cell = QPoint(int(std::floor(point.x() / innerSize)), int(std::floor(point.y() / innerSize)));
    return true;
}

qint64 MQuadTree::cellKey(int column, int row, int offset)
{
    const qint64 a = qint64(column) + offset;
    const qint64 b = qint64(row) + offset;
    if (a < 0 || b < 0)
        return -1;
    const qint64 s = a + b;
    // (s + 1) * s / 2 stays below 2^63 up to here.
    if (s > qint64(3000000000))
        return -1;
    return (s + 1) * s / 2 + a;
}

QPointF MQuadTree::cellCentre(const QPoint& cell) const
{
    const int inner = m_layer->innerSize();
    return QPointF(cell.x() * double(inner) + inner * 0.5, cell.y() * double(inner) + inner * 0.5);
}

// Lookups go through the centre of the point's cell rather than the point
// itself: the node test leaves the last pixel row and column of every node
// outside, so testing a point there directly would miss its tile.
MTile* MQuadTree::tileAt(const QPointF& point) const
{
    QPoint cell;
    if (!m_root || m_layer->innerSize() < minInnerSize || !cellOf(point, m_layer->innerSize(), &cell))
        return nullptr;
    const MQuadNode* leaf = m_root->leafAt(cellCentre(cell));
    if (!leaf || leaf->tileIndex() < 0)
        return nullptr;
    return tile(leaf->tileIndex());
}

MTile* MQuadTree::addTile(const QPointF& point)
{
    static const QString source = QStringLiteral("MQuadTree::addTile");
    if (!checkGeometry(source))
        return nullptr;
    const int inner = m_layer->innerSize();
    QPoint cell;
    if (!cellOf(point, inner, &cell)) {
        MLogger::systemError(source, QStringLiteral("Point out of range: %1").arg(pointText(point)));
        return nullptr;
    }
    const QPointF centre = cellCentre(cell);
    if (m_root) {
        const MQuadNode* leaf = m_root->leafAt(centre);
        if (leaf && leaf->tileIndex() >= 0)
            return tile(leaf->tileIndex());
    }

    std::unique_ptr<MTile> created = m_layer->createTile();
    if (!created) {
        MLogger::systemError(source, QStringLiteral("Unable to create tile"));
        return nullptr;
    }
    MTile* result = created.get();
    const QRect rect(cell.x() * inner, cell.y() * inner, inner, inner);
    result->setRect(rect);
    m_owned.push_back(std::move(created));
    m_tiles.append(result);
    const int index = m_tiles.size() - 1;
    m_boundingRect = m_boundingRect.isEmpty() ? rect : m_boundingRect.united(rect);

    if (!m_root) {
        m_root = std::make_unique<MQuadNode>(QRect(rect.topLeft(), QSize(2 * inner, 2 * inner)));
        m_root->split();
        m_root->child(MQuadNode::TopLeft)->setTileIndex(index);
        return result;
    }

    growTowards(centre);
    MQuadNode* node = m_root.get();
    while (node && node->rect().width() > inner) {
        if (node->isLeaf())
            node->split();
        MQuadNode* next = nullptr;
        for (int i = 0; i < 4 && !next; ++i) {
            if (QRectF(node->child(i)->rect()).contains(centre))
                next = node->child(i);
        }
        node = next;
    }
    if (!node) {
        // Growth guarantees the centre is inside the root, so this is a broken tree.
        MLogger::systemError(source, QStringLiteral("No leaf for %1").arg(pointText(centre)));
        return result;
    }
    if (node->tileIndex() >= 0) {
        qDebug() << "Tile already created:" << tile(node->tileIndex())->rect() << result->rect();
        qDebug() << "Tested point:" << point;
    }
    node->setTileIndex(index);
    return result;
}

void MQuadTree::growTowards(const QPointF& point)
{
    while (!QRectF(m_root->rect()).contains(point)) {
        const QRect r = m_root->rect();
        const int w = r.width();
        int place;
        QPoint topLeft;
        if (point.y() <= r.bottom() && point.x() <= r.right()) {
            place = MQuadNode::BottomRight;
            topLeft = QPoint(r.left() - w, r.top() - w);
        } else if (point.y() <= r.bottom() && point.x() >= r.right()) {
            place = MQuadNode::BottomLeft;
            topLeft = QPoint(r.left(), r.top() - w);
        } else if (point.y() >= r.bottom() && point.x() >= r.left()) {
            place = MQuadNode::TopLeft;
            topLeft = r.topLeft();
        } else {
            place = MQuadNode::TopRight;
            topLeft = QPoint(r.left() - w, r.top());
        }
        auto grown = std::make_unique<MQuadNode>(QRect(topLeft, QSize(2 * w, 2 * w)));
        grown->setChild(place, std::move(m_root));
        grown->split();
        m_root = std::move(grown);
    }
}

void MQuadTree::tilesInRect(const QRectF& rect, QSet<MTile*>& out)
{
    static const QString source = QStringLiteral("MQuadTree::tilesInRect");
    if (!checkGeometry(source))
        return;
    const QRectF r = rect.normalized();
    const double inner = m_layer->innerSize();
    // QRectF::right() is left + width, so a rectangle that ends on a cell
    // border stays out of the next cell.
    const double firstColumn = std::floor(r.left() / inner);
    const double lastColumn = std::floor((r.right() - 1.0) / inner);
    const double firstRow = std::floor(r.top() / inner);
    const double lastRow = std::floor((r.bottom() - 1.0) / inner);
    const double limit = maxCoordinate / inner;
    for (double value : {firstColumn, lastColumn, firstRow, lastRow}) {
        if (!std::isfinite(value) || std::abs(value) > limit) {
            MLogger::systemError(source, QStringLiteral("Rectangle out of range: %1, %2 %3 x %4")
                                             .arg(r.x())
                                             .arg(r.y())
                                             .arg(r.width())
                                             .arg(r.height()));
            return;
        }
    }
    if (lastColumn < firstColumn || lastRow < firstRow)
        return;
    const qint64 cells =
        (qint64(lastColumn) - qint64(firstColumn) + 1) * (qint64(lastRow) - qint64(firstRow) + 1);
    if (cells > maxCellsInRect) {
        MLogger::systemError(source, QStringLiteral("Rectangle too large: %1 cells").arg(cells));
        return;
    }
    for (int row = int(firstRow); row <= int(lastRow); ++row) {
        for (int column = int(firstColumn); column <= int(lastColumn); ++column) {
            const QPointF centre(int(column * inner + inner * 0.5), int(row * inner + inner * 0.5));
            if (MTile* found = addTile(centre))
                out.insert(found);
        }
    }
}

void MQuadTree::clear()
{
    m_root.reset();
    m_tiles.clear();
    m_owned.clear();
}
