#include "document/mtile.h"

#include "document/mtiledlayer.h"

MTile::MTile(MTiledLayer* layer) : m_layer(layer) {}

MTile::~MTile() = default;

bool MTile::isValid() const
{
    return m_isInitialized && !m_hasError;
}

QRect MTile::outerRect() const
{
    const int margin = tileMargin();
    return QRect(m_rect.topLeft() - QPoint(margin, margin), QSize(tileSize(), tileSize()));
}

int MTile::tileSize() const
{
    return m_layer->tileSize();
}

int MTile::tileMargin() const
{
    return m_layer->tileMargin();
}

int MTile::bytesPerPixel() const
{
    return m_layer->bytesPerPixel();
}
