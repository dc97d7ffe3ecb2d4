#pragma once

#include <QObject>
#include <QPointF>
#include <QRect>

#include <memory>
#include <unordered_map>

class MBufferTile;
class MCanvas;
class MTextureLayer;

// A host-memory copy of a texture layer, on the same grid, that the pixel
// walks of the flood fill read and write. Tiles come from the layer on
// demand: a scan that reaches a cell pulls that cell's texture back, and a
// cell the layer doesn't have reads as transparent.
//
// Tiles are keyed by the Cantor pairing of their cell, shifted by keyOffset:
// cells left of or above -keyOffset have no key, and no tile.
class MBufferLayer : public QObject
{
    Q_OBJECT

public:
    MBufferLayer(unsigned tileSize, unsigned margin, unsigned bytesPerPixel, QObject* parent = nullptr);
    ~MBufferLayer() override;

    unsigned tileSize() const { return m_tileSize; }
    unsigned margin() const { return m_margin; }
    unsigned bytesPerPixel() const { return m_bytesPerPixel; }
    void setTileSize(unsigned tileSize) { m_tileSize = tileSize; }
    void setMargin(unsigned margin) { m_margin = margin; }
    void setBytesPerPixel(unsigned bytesPerPixel) { m_bytesPerPixel = bytesPerPixel; }
    int keyOffset() const { return m_keyOffset; }
    int innerSize() const { return int(m_tileSize) - 2 * int(m_margin); }
    // The union of the inner rectangles of the tiles made since the last clear.
    QRect boundingRect() const { return m_boundingRect; }
    int tileCount() const { return int(m_tiles.size()); }
    // Set when a texture could not be read back since the last clear: the
    // tile stays transparent, and its content is not to be trusted.
    bool hasTransferError() const { return m_transferError; }

    // The key of a cell; false for a cell outside the range of keys.
    bool cellKey(int column, int row, unsigned* key) const;

    // The tile of the cell of point, or null; never reads anything.
    MBufferTile* tileAt(const QPointF& point) const;
    // The tile of the cell of point. A new one is read back from the tile of
    // layer at the same place, when canvas and layer are given and the layer
    // has one; otherwise it stays transparent. Null when memory runs out or
    // the cell has no key.
    MBufferTile* addTile(const QPointF& point, MCanvas* canvas, MTextureLayer* layer);
    MBufferTile* addTile(int row, int column, MCanvas* canvas, MTextureLayer* layer);
    // addTile for the cell of a pixel.
    MBufferTile* tileOfPixel(int x, int y, MCanvas* canvas, MTextureLayer* layer);
    template <typename Function> void forEachTile(Function function) const
    {
        for (const auto& entry : m_tiles)
            function(entry.second.get());
    }

    void clear();
    // Reads every tile of layer.
    bool fromTextureLayer(MCanvas* canvas, MTextureLayer* layer);
    // Writes every tile into layer: into the tile at the same place, made
    // when createTiles is set, and skipped when it isn't and there is none.
    bool toTextureLayer(MCanvas* canvas, MTextureLayer* layer, bool createTiles);

    // Each of the four bytes within tolerance, inclusive.
    static bool colorMatches(const uchar* a, const uchar* b, int tolerance);
    // The 4 bytes at a pixel; zeroes where there is no tile yet.
    void pixel(int x, int y, uchar* rgba) const;

    // Walks from x towards limit while the pixels match color: the first x
    // that doesn't, or one step past limit. A walk that starts beyond limit
    // answers x at once.
    int scanLeft(int x, int y, int limit, const uchar* color, int tolerance, MCanvas* canvas,
                 MTextureLayer* layer);
    int scanRight(int x, int y, int limit, const uchar* color, int tolerance, MCanvas* canvas,
                  MTextureLayer* layer);
    // Walks right while the pixels don't match: the first x that does, or limit + 1.
    int scanUntilMatch(int x, int y, int limit, const uchar* color, int tolerance, MCanvas* canvas,
                       MTextureLayer* layer);

private:
    MBufferTile* fetch(int column, int row, MCanvas* canvas, MTextureLayer* layer);
    MBufferTile* find(int column, int row) const;
    int cellOf(int coordinate) const;
    // Walks right until a pixel's match equals stopOnMatch.
    int scanForward(int x, int y, int limit, const uchar* color, int tolerance, MCanvas* canvas,
                    MTextureLayer* layer, bool stopOnMatch);

    unsigned m_tileSize;
    unsigned m_margin;
    unsigned m_bytesPerPixel;
    int m_keyOffset = 1000;
    QRect m_boundingRect;
    std::unordered_map<unsigned, std::unique_ptr<MBufferTile>> m_tiles;
    bool m_transferError = false;
};
