#include "document/mcommandfilltile.h"

#include "document/mcanvas.h"
#include "document/mtexturetile.h"

MCommandFillTile::MCommandFillTile(MCanvas* canvas, int layerIndex, MTextureTile* tile, const QColor& color,
                                   QUndoCommand* parent)
    : MCommandTileChange(canvas, layerIndex, tile, QStringLiteral("MCommandFillTile"), parent)
{
    m_undoId = backup(tile, {});
    canvas->fillTile(tile, color);
    m_redoId = backup(tile, {});
    setText(MCanvas::tr("Fill tile with color"));
    push();
}
