#include "document/mundolayer.h"

#include "document/mtile.h"

MUndoLayer::MUndoLayer(QObject* parent) : MTiledLayer(parent)
{
    setType(UndoLayer);
    setTileSize(64);
    setTileMargin(0);
}

MUndoLayer::~MUndoLayer()
{
    clear();
}

std::unique_ptr<MTile> MUndoLayer::createTile()
{
    return std::make_unique<MTile>(this);
}
