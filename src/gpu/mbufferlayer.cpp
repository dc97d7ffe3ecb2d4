#include "gpu/mbufferlayer.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "gpu/mbuffertile.h"
#include "gpu/mtexturetransfert.h"

#include <QtMath>

#include <new>

namespace {

// The geometry of every buffer tile: that of the texture tiles, which the
// transfer reads whole.
constexpr int bufferTileSize = 512;
constexpr int bufferTileMargin = 6;
constexpr int bufferTileBytes = 4;

// Past this sum of shifted cell coordinates the pairing leaves 32 bits.
constexpr qint64 maxPairingSum = 92680;

const uchar transparent[4] = {0, 0, 0, 0};

bool transfer(MCanvas* canvas, MTextureTile* source, MBufferTile* tile, const QString& from)
{
    MTextureTransfert* transfert = MTextureTransfert::instance();
    if (!transfert) {
        MLogger::systemError(from, QStringLiteral("Texture transfert is not initialized"));
        return false;
    }
    // The canvas's own surface keeps its context current for the read.
    canvas->makeCurrent();
    return transfert->textureTileToBufferTile(canvas->context(), source, tile);
}

} // namespace

MBufferLayer::MBufferLayer(unsigned tileSize, unsigned margin, unsigned bytesPerPixel, QObject* parent)
    : QObject(parent), m_tileSize(tileSize), m_margin(margin), m_bytesPerPixel(bytesPerPixel)
{
}

MBufferLayer::~MBufferLayer() = default;

bool MBufferLayer::cellKey(int column, int row, unsigned* key) const
{
    const qint64 a = qint64(column) + m_keyOffset;
    const qint64 b = qint64(row) + m_keyOffset;
    if (a < 0 || b < 0 || a + b > maxPairingSum)
        return false;
    const qint64 s = a + b;
    *key = unsigned((s + 1) * s / 2 + a);
    return true;
}

int MBufferLayer::cellOf(int coordinate) const
{
    const int inner = innerSize();
    if (inner <= 0)
        return 0;
    const int cell = coordinate / inner;
    return (coordinate % inner != 0 && coordinate < 0) ? cell - 1 : cell;
}

MBufferTile* MBufferLayer::find(int column, int row) const
{
    unsigned key = 0;
    if (!cellKey(column, row, &key))
        return nullptr;
    const auto it = m_tiles.find(key);
    return it == m_tiles.end() ? nullptr : it->second.get();
}

MBufferTile* MBufferLayer::tileAt(const QPointF& point) const
{
    const int inner = innerSize();
    if (inner <= 0)
        return nullptr;
    return find(qFloor(point.x() / inner), qFloor(point.y() / inner));
}

MBufferTile* MBufferLayer::fetch(int column, int row, MCanvas* canvas, MTextureLayer* layer)
{
    unsigned key = 0;
    if (!cellKey(column, row, &key))
        return nullptr;
    const auto it = m_tiles.find(key);
    if (it != m_tiles.end())
        return it->second.get();

    const int inner = innerSize();
    std::unique_ptr<MBufferTile> tile(new (std::nothrow)
                                          MBufferTile(bufferTileSize, bufferTileMargin, bufferTileBytes));
    if (!tile || !tile->create())
        return nullptr;
    // A grid other than the tiles' own would put pixels outside the buffer.
    if (tile->rect().width() != inner)
        return nullptr;
    tile->setRect(QRect(column * inner, row * inner, inner, inner));
    if (canvas && layer) {
        auto* source = dynamic_cast<MTextureTile*>(layer->tileAt(QRectF(tile->rect()).center()));
        // A tile without a texture has never been painted: it stays transparent.
        if (source && source->isValid() &&
            !transfer(canvas, source, tile.get(), QStringLiteral("MBufferLayer::addTile")))
            m_transferError = true;
    }
    m_boundingRect = m_boundingRect.isEmpty() ? tile->rect() : m_boundingRect.united(tile->rect());
    MBufferTile* result = tile.get();
    m_tiles.emplace(key, std::move(tile));
    return result;
}

MBufferTile* MBufferLayer::addTile(const QPointF& point, MCanvas* canvas, MTextureLayer* layer)
{
    const int inner = innerSize();
    if (inner <= 0)
        return nullptr;
    return fetch(qFloor(point.x() / inner), qFloor(point.y() / inner), canvas, layer);
}

MBufferTile* MBufferLayer::addTile(int row, int column, MCanvas* canvas, MTextureLayer* layer)
{
    const int inner = innerSize();
    return addTile(QPointF(column * inner + inner / 2, row * inner + inner / 2), canvas, layer);
}

MBufferTile* MBufferLayer::tileOfPixel(int x, int y, MCanvas* canvas, MTextureLayer* layer)
{
    if (innerSize() <= 0)
        return nullptr;
    return fetch(cellOf(x), cellOf(y), canvas, layer);
}

void MBufferLayer::clear()
{
    m_tiles.clear();
    m_transferError = false;
}

bool MBufferLayer::fromTextureLayer(MCanvas* canvas, MTextureLayer* layer)
{
    if (!canvas || !layer)
        return false;
    const QString source = QStringLiteral("MBufferLayer::fromTextureLayer");
    if (!canvas->makeCurrent()) {
        MLogger::systemError(source, QStringLiteral("Unable to make current context"));
        return false;
    }
    for (int i = 0; i < layer->tileCount(); ++i) {
        auto* textureTile = dynamic_cast<MTextureTile*>(layer->tile(i));
        if (!textureTile)
            continue;
        MBufferTile* tile = addTile(QRectF(textureTile->rect()).center(), nullptr, nullptr);
        if (!tile || !tile->create())
            return false;
        if (textureTile->isValid() && !transfer(canvas, textureTile, tile, source))
            return false;
    }
    return true;
}

bool MBufferLayer::toTextureLayer(MCanvas* canvas, MTextureLayer* layer, bool createTiles)
{
    if (!canvas || !layer)
        return false;
    if (!canvas->makeCurrent()) {
        MLogger::systemError(QStringLiteral("MBufferLayer::toTextureLayer"),
                             QStringLiteral("Unable to make current context"));
        return false;
    }
    for (const auto& entry : m_tiles) {
        MBufferTile* tile = entry.second.get();
        const QPointF centre = QRectF(tile->rect()).center();
        auto* target =
            dynamic_cast<MTextureTile*>(createTiles ? layer->addTile(centre) : layer->tileAt(centre));
        if (!target)
            continue;
        if (!target->isCreated() || !target->setData(static_cast<const void*>(tile->buffer())))
            return false;
    }
    return true;
}

bool MBufferLayer::colorMatches(const uchar* a, const uchar* b, int tolerance)
{
    return qAbs(int(a[0]) - int(b[0])) <= tolerance && qAbs(int(a[1]) - int(b[1])) <= tolerance &&
           qAbs(int(a[2]) - int(b[2])) <= tolerance && qAbs(int(a[3]) - int(b[3])) <= tolerance;
}

void MBufferLayer::pixel(int x, int y, uchar* rgba) const
{
    const MBufferTile* tile = innerSize() > 0 ? find(cellOf(x), cellOf(y)) : nullptr;
    const uchar* source = tile ? tile->pixelAt(x, y) : nullptr;
    for (int i = 0; i < 4; ++i)
        rgba[i] = source ? source[i] : 0;
}

// The walks go a tile at a time: one look-up per tile, then straight along
// the row in memory.
int MBufferLayer::scanLeft(int x, int y, int limit, const uchar* color, int tolerance, MCanvas* canvas,
                           MTextureLayer* layer)
{
    const int inner = innerSize();
    while (x >= limit) {
        MBufferTile* tile = tileOfPixel(x, y, canvas, layer);
        const int stop = inner > 0 ? qMax(limit, cellOf(x) * inner) : limit;
        if (!tile) {
            if (!colorMatches(transparent, color, tolerance))
                return x;
            x = stop - 1;
            continue;
        }
        const int step = tile->bytesPerPixel();
        for (const uchar* p = tile->pixelAt(x, y); x >= stop; --x, p -= step) {
            if (!colorMatches(p, color, tolerance))
                return x;
        }
    }
    return x;
}

int MBufferLayer::scanRight(int x, int y, int limit, const uchar* color, int tolerance, MCanvas* canvas,
                            MTextureLayer* layer)
{
    return scanForward(x, y, limit, color, tolerance, canvas, layer, false);
}

int MBufferLayer::scanUntilMatch(int x, int y, int limit, const uchar* color, int tolerance, MCanvas* canvas,
                                 MTextureLayer* layer)
{
    return scanForward(x, y, limit, color, tolerance, canvas, layer, true);
}

int MBufferLayer::scanForward(int x, int y, int limit, const uchar* color, int tolerance, MCanvas* canvas,
                              MTextureLayer* layer, bool stopOnMatch)
{
    const int inner = innerSize();
    while (x <= limit) {
        MBufferTile* tile = tileOfPixel(x, y, canvas, layer);
        const int stop = inner > 0 ? qMin(limit, cellOf(x) * inner + inner - 1) : limit;
        if (!tile) {
            if (colorMatches(transparent, color, tolerance) == stopOnMatch)
                return x;
            x = stop + 1;
            continue;
        }
        const int step = tile->bytesPerPixel();
        for (const uchar* p = tile->pixelAt(x, y); x <= stop; ++x, p += step) {
            if (colorMatches(p, color, tolerance) == stopOnMatch)
                return x;
        }
    }
    return x;
}
