#pragma once

#include "document/mtexturetile.h"
#include "document/mtiledlayer.h"

#include <QByteArray>
#include <QFile>
#include <QRandomGenerator>
#include <QRect>
#include <QString>

#include <map>
#include <utility>

namespace QuillmereTest {

// The raw size of a whole 512-pixel RGBA tile.
constexpr int tileBytes = 512 * 512 * 4;

// Bytes that differ from pixel to pixel and from seed to seed.
inline QByteArray pattern(quint32 seed)
{
    QByteArray bytes(tileBytes, Qt::Uninitialized);
    QRandomGenerator random(seed);
    random.fillRange(reinterpret_cast<quint32*>(bytes.data()), tileBytes / 4);
    return bytes;
}

// A tile's texture read back; empty when it can't be.
inline QByteArray readBack(MTile* tile)
{
    auto* textureTile = dynamic_cast<MTextureTile*>(tile);
    QByteArray bytes(tileBytes, char(0xAB));
    if (!textureTile || !textureTile->toBuffer(bytes.data()))
        return QByteArray();
    return bytes;
}

struct RectLess
{
    bool operator()(const QRect& a, const QRect& b) const
    {
        return std::make_pair(a.y(), a.x()) < std::make_pair(b.y(), b.x());
    }
};
// Every tile of a layer read back from the GPU, by its rectangle, in row order.
using Snapshot = std::map<QRect, QByteArray, RectLess>;

inline Snapshot snapshot(MTiledLayer* layer)
{
    Snapshot result;
    for (int i = 0; layer && i < layer->tileCount(); ++i) {
        MTile* tile = layer->tile(i);
        result[tile ? tile->rect() : QRect()] = readBack(tile);
    }
    return result;
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace QuillmereTest
