#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSet>
#include <QVector>

#include <memory>
#include <vector>

class MQuadNode;
class MTile;
class MTiledLayer;

// The sparse grid of a tiled layer. Cells have the layer's inner size and tile
// the signed plane; the tree doubles towards any point that falls outside it,
// so creation and lookup cost the logarithm of the painted extent.
class MQuadTree
{
public:
    // Points farther than this from the origin are refused, so that no cell or
    // node rectangle, however far the tree grows, overflows an int.
    static constexpr double maxCoordinate = 268435456.0; // 2^28
    // The most cells one tilesInRect call may create.
    static constexpr qint64 maxCellsInRect = qint64(1) << 20;

    explicit MQuadTree(MTiledLayer* layer);
    ~MQuadTree();
    MQuadTree(const MQuadTree&) = delete;
    MQuadTree& operator=(const MQuadTree&) = delete;

    MTiledLayer* layer() const { return m_layer; }
    MQuadNode* root() const { return m_root.get(); }
    QRect boundingRect() const { return m_boundingRect; }

    // The tile of the cell of point, made when missing. Null only for a point
    // out of range or a layer geometry that can't hold a grid.
    MTile* addTile(const QPointF& point);
    // The tile of the cell of point, or null; never creates.
    MTile* tileAt(const QPointF& point) const;
    // Adds every tile whose cell touches rect, making the missing ones.
    void tilesInRect(const QRectF& rect, QSet<MTile*>& out);

    int tileCount() const { return m_tiles.size(); }
    MTile* tile(int index) const
    {
        return index >= 0 && index < m_tiles.size() ? m_tiles.at(index) : nullptr;
    }
    // All tiles in order of creation.
    const QVector<MTile*>& tiles() const { return m_tiles; }

    // Deletes every node and tile; the bounding rectangle is kept.
    void clear();

    // The cell (column, row) of point on a grid of the given inner size; false
    // for a point that isn't finite or is out of range.
    static bool cellOf(const QPointF& point, int innerSize, QPoint* cell);
    // A unique key for a cell: the Cantor pairing of the cell's coordinates,
    // shifted by offset so that both are non-negative. -1 when the shifted
    // coordinates are negative or the key wouldn't fit.
    static qint64 cellKey(int column, int row, int offset);

private:
    bool checkGeometry(const QString& source) const;
    QPointF cellCentre(const QPoint& cell) const;
    void growTowards(const QPointF& point);

    MTiledLayer* m_layer;
    std::unique_ptr<MQuadNode> m_root;
    // m_tiles is the order of creation that nodes index into; m_owned holds
    // the same tiles and deletes them.
    QVector<MTile*> m_tiles;
    std::vector<std::unique_ptr<MTile>> m_owned;
    QRect m_boundingRect;
};
