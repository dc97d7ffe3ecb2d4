#include "gpu/mbuffertile.h"

#include "app/mlogger.h"
#include "document/mtexturetile.h"

#include <new>

MBufferTile::MBufferTile(int tileSize, int margin, int bytesPerPixel)
    : m_rect(0, 0, tileSize - 2 * margin, tileSize - 2 * margin), m_tileSize(tileSize), m_margin(margin),
      m_bytesPerPixel(bytesPerPixel)
{
}

MBufferTile::~MBufferTile() = default;

qint64 MBufferTile::byteCount() const
{
    // The same bound as for textures keeps a wild size from asking for gigabytes.
    if (m_tileSize <= 0 || m_tileSize > MTextureTile::maxTileSize || m_bytesPerPixel <= 0 ||
        m_bytesPerPixel > 16)
        return 0;
    return qint64(m_tileSize) * m_tileSize * m_bytesPerPixel;
}

bool MBufferTile::create()
{
    if (m_created)
        return true;
    const qint64 count = byteCount();
    if (count > 0)
        m_buffer.reset(new (std::nothrow) uchar[size_t(count)]());
    if (!m_buffer) {
        MLogger::systemError(QStringLiteral("MBufferTile::create"),
                             QStringLiteral("Unable to create buffer"));
        return false;
    }
    m_created = true;
    return true;
}
