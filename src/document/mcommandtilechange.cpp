#include "document/mcommandtilechange.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mtexturetile.h"

MCommandTileChange::MCommandTileChange(MCanvas* canvas, int layerIndex, MTextureTile* tile,
                                       const QString& className, QUndoCommand* parent)
    : MCommand(canvas, parent), m_layerIndex(layerIndex), m_rect(tile->rect()), m_className(className)
{
    makeCurrent(source(className.toLatin1().constData()));
}

MCommandTileChange::~MCommandTileChange()
{
    if (!m_undoId.isEmpty())
        m_canvas->unregisterId(m_undoId);
    if (!m_redoId.isEmpty())
        m_canvas->unregisterId(m_redoId);
}

QString MCommandTileChange::source(const char* function) const
{
    return QStringLiteral("%1::%2").arg(m_className, QLatin1String(function));
}

QString MCommandTileChange::backup(MTextureTile* tile, const QSet<MTile*>& cells)
{
    const QString previous = tile->backupId();
    QString id;
    if (tile->saveBackup(cells) && tile->backupId() != previous) {
        id = tile->backupId();
    } else {
        MLogger::systemError(source(m_className.toLatin1().constData()),
                             QStringLiteral("Unable to save tile backup"));
        id = MLayer::newId();
    }
    m_canvas->registerId(id);
    return id;
}

void MCommandTileChange::redo()
{
    if (m_firstRedo) {
        m_firstRedo = false;
        return;
    }
    setBuffer(m_redoId);
}

void MCommandTileChange::undo()
{
    setBuffer(m_undoId);
}

void MCommandTileChange::setBuffer(const QString& id)
{
    const QString where = source("setBuffer");
    makeCurrent(where);
    MTextureLayer* layer = m_canvas->at(m_layerIndex);
    auto* tile = layer ? dynamic_cast<MTextureTile*>(layer->addTile(m_rect.center())) : nullptr;
    if (tile && tile->isCreated() && tile->restoreBackup(id)) {
        m_canvas->refresh();
        return;
    }
    MLogger::systemError(where, QStringLiteral("Unable to restore backup %1").arg(id));
}
