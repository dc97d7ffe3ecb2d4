#pragma once

#include "document/mcommandtilechange.h"

#include <QColor>

// Fills a whole tile with one colour through "fill", within the selection
// when there is one.
class MCommandFillTile : public MCommandTileChange
{
public:
    MCommandFillTile(MCanvas* canvas, int layerIndex, MTextureTile* tile, const QColor& color,
                     QUndoCommand* parent = nullptr);
};
