#pragma once

#include "document/mcommandtilechange.h"

class MBufferTile;

// Lays a tile painted by the flood fill, whole, on the layer's tile.
class MCommandQuickFillTile : public MCommandTileChange
{
public:
    MCommandQuickFillTile(MCanvas* canvas, int layerIndex, MTextureTile* tile, MBufferTile* fillItem,
                          QUndoCommand* parent = nullptr);
};
