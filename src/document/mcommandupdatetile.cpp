#include "document/mcommandupdatetile.h"

#include "document/mcanvas.h"
#include "document/mtexturetile.h"

MCommandUpdateTile::MCommandUpdateTile(MCanvas* canvas, int layerIndex, MTextureTile* destination,
                                       MTextureTile* source, double opacity, bool useStrokeProgram,
                                       bool replace, QUndoCommand* parent)
    : MCommandTileChange(canvas, layerIndex, destination, QStringLiteral("MCommandUpdateTile"), parent)
{
    const QSet<MTile*> cells = source ? source->changedTiles() : QSet<MTile*>();
    m_undoId = backup(destination, cells);
    if (useStrokeProgram)
        canvas->mergeStrokeTile(destination, layerIndex);
    else
        canvas->blitTile(destination, source, opacity, replace);
    m_redoId = backup(destination, cells);
    if (source)
        source->clearChanges();
    setText(MCanvas::tr("Update tile"));
    push();
}
