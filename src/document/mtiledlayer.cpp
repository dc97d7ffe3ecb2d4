#include "document/mtiledlayer.h"

#include "document/mquadtree.h"
#include "document/mtile.h"

MTiledLayer::MTiledLayer(QObject* parent) : MLayer(parent), m_tree(std::make_unique<MQuadTree>(this)) {}

MTiledLayer::~MTiledLayer() = default;

MTile* MTiledLayer::addTile(const QPointF& point)
{
    return m_tree->addTile(point);
}

MTile* MTiledLayer::tileAt(const QPointF& point) const
{
    return m_tree->tileAt(point);
}

void MTiledLayer::tilesInRect(const QRectF& rect, QSet<MTile*>& out)
{
    m_tree->tilesInRect(rect, out);
}

int MTiledLayer::tileCount() const
{
    return m_tree->tileCount();
}

MTile* MTiledLayer::tile(int index) const
{
    return m_tree->tile(index);
}

void MTiledLayer::clear()
{
    m_tree->clear();
}

bool MTiledLayer::isEmpty() const
{
    return m_tree->tileCount() == 0;
}
