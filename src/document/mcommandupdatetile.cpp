#include "document/mcommandupdatetile.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mtexturetile.h"

MCommandUpdateTile::MCommandUpdateTile(MCanvas* canvas, int layerIndex, MTextureTile* destination,
                                       MTextureTile* source, double opacity, bool useStrokeProgram,
                                       bool replace, QUndoCommand* parent)
    : MCommand(canvas, parent), m_layerIndex(layerIndex)
{
    const QString where = QStringLiteral("MCommandUpdateTile::MCommandUpdateTile");
    makeCurrent(where);
    m_rect = QRectF(destination->rect());
    const QSet<MTile*> cells = source ? source->changedTiles() : QSet<MTile*>();
    // A failed backup keeps an id without a file: its undo reports and
    // leaves the tile as it is.
    const auto backup = [&]() {
        const QString previous = destination->backupId();
        if (destination->saveBackup(cells) && destination->backupId() != previous)
            return destination->backupId();
        MLogger::systemError(where, QStringLiteral("Unable to save tile backup"));
        return MLayer::newId();
    };
    m_undoId = backup();
    canvas->registerId(m_undoId);

    if (useStrokeProgram)
        canvas->mergeStrokeTile(destination, m_layerIndex);
    else
        canvas->blitTile(destination, source, opacity, replace);

    m_redoId = backup();
    canvas->registerId(m_redoId);
    if (source)
        source->clearChanges();
    setText(MCanvas::tr("Update tile"));
    push();
}

MCommandUpdateTile::~MCommandUpdateTile()
{
    m_canvas->unregisterId(m_undoId);
    m_canvas->unregisterId(m_redoId);
}

void MCommandUpdateTile::redo()
{
    // The constructor did the work; the push's redo has nothing left to do.
    if (m_firstRedo) {
        m_firstRedo = false;
        return;
    }
    setBuffer(m_redoId);
}

void MCommandUpdateTile::undo()
{
    setBuffer(m_undoId);
}

void MCommandUpdateTile::setBuffer(const QString& id)
{
    const QString where = QStringLiteral("MCommandUpdateTile::setBuffer");
    makeCurrent(where);
    MTextureLayer* layer = m_canvas->at(m_layerIndex);
    auto* tile = layer ? dynamic_cast<MTextureTile*>(layer->addTile(m_rect.center())) : nullptr;
    if (tile && tile->isCreated() && tile->restoreBackup(id)) {
        m_canvas->refresh();
        return;
    }
    MLogger::systemError(where, QStringLiteral("Unable to restore backup %1").arg(id));
}
