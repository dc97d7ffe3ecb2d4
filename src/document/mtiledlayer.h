#pragma once

#include "document/mlayer.h"

#include <QPointF>
#include <QRectF>
#include <QSet>

#include <memory>

class MQuadTree;
class MTile;

// A layer whose pixels live in square tiles held by a quadtree and made on
// demand. The geometry is read by every tile through its layer; it must be set
// before the first tile exists.
class MTiledLayer : public MLayer
{
    Q_OBJECT

public:
    explicit MTiledLayer(QObject* parent = nullptr);
    ~MTiledLayer() override;

    MQuadTree* tree() const { return m_tree.get(); }

    int tileSize() const { return m_tileSize; }
    int tileMargin() const { return m_tileMargin; }
    int bytesPerPixel() const { return m_bytesPerPixel; }
    // The edge of the part of a tile that belongs to it alone.
    int innerSize() const { return m_tileSize - 2 * m_tileMargin; }
    void setTileSize(int size) { m_tileSize = size; }
    void setTileMargin(int margin) { m_tileMargin = margin; }
    void setBytesPerPixel(int bytes) { m_bytesPerPixel = bytes; }

    MTile* addTile(const QPointF& point);
    MTile* tileAt(const QPointF& point) const;
    void tilesInRect(const QRectF& rect, QSet<MTile*>& out);
    int tileCount() const;
    MTile* tile(int index) const;

    void clear() override;
    bool isEmpty() const override;

    // The tile object of this kind of layer; the tree takes it.
    virtual std::unique_ptr<MTile> createTile() = 0;

private:
    std::unique_ptr<MQuadTree> m_tree;
    int m_tileSize = 512;
    int m_tileMargin = 6;
    int m_bytesPerPixel = 4;
};
