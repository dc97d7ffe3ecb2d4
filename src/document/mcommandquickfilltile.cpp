#include "document/mcommandquickfilltile.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mtexturetile.h"
#include "gpu/mbuffertile.h"

MCommandQuickFillTile::MCommandQuickFillTile(MCanvas* canvas, int layerIndex, MTextureTile* tile,
                                             MBufferTile* fillItem, QUndoCommand* parent)
    : MCommandTileChange(canvas, layerIndex, tile, QStringLiteral("MCommandQuickFillTile"), parent)
{
    m_undoId = backup(tile, {});
    const void* buffer = fillItem ? fillItem->buffer() : nullptr;
    tile->setData(buffer);
    // The content after the fill is in memory already: it goes to the file
    // as it is, without reading the texture back.
    const QString previous = tile->backupId();
    if (buffer && tile->backup(buffer) && tile->backupId() != previous) {
        m_redoId = tile->backupId();
    } else {
        MLogger::systemError(source("MCommandQuickFillTile"), QStringLiteral("Unable to save tile backup"));
        m_redoId = MLayer::newId();
    }
    m_canvas->registerId(m_redoId);
    setText(MCanvas::tr("Fill tile"));
    push();
}
