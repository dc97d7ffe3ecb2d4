#pragma once

#include "document/mcommand.h"

#include <QSet>
#include <QString>

class MTextureTile;
class MTile;

// What the tile commands share: the tile is found again by its place, and its
// content before and after the change waits in two backup files, which undo
// and redo read back. The change itself happens in the constructor, so the
// redo that the push runs does nothing.
class MCommandTileChange : public MCommand
{
public:
    ~MCommandTileChange() override;

    void undo() override;
    void redo() override;

    QString undoId() const { return m_undoId; }
    QString redoId() const { return m_redoId; }

protected:
    MCommandTileChange(MCanvas* canvas, int layerIndex, MTextureTile* tile, const QString& className,
                       QUndoCommand* parent);
    // Saves the tile (only the given cells, or the whole tile for an empty
    // set) and registers the file. A failed save still gives an id, without
    // a file: its restore reports and leaves the tile as it is.
    QString backup(MTextureTile* tile, const QSet<MTile*>& cells);
    QString source(const char* function) const;

    int m_layerIndex;
    QRectF m_rect;
    QString m_undoId;
    QString m_redoId;

private:
    void setBuffer(const QString& id);

    QString m_className;
};
