#pragma once

#include "document/mcommandtilechange.h"

// Lays a source tile on a layer's tile: a stroke through the "stroke"
// program, or a plain blit that goes over or replaces. The backups hold only
// the cells the source touched.
class MCommandUpdateTile : public MCommandTileChange
{
public:
    MCommandUpdateTile(MCanvas* canvas, int layerIndex, MTextureTile* destination, MTextureTile* source,
                       double opacity, bool useStrokeProgram, bool replace, QUndoCommand* parent = nullptr);
};
