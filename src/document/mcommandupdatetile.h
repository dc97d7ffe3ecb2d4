#pragma once

#include "document/mcommand.h"

#include <QString>

class MTextureTile;

// Lays a source tile on a layer's tile: a stroke through the "stroke"
// program, or a plain blit that goes over or replaces. The tile's content
// before and after is kept in two files, limited to the cells the source
// touched, and undo and redo read them back.
class MCommandUpdateTile : public MCommand
{
public:
    MCommandUpdateTile(MCanvas* canvas, int layerIndex, MTextureTile* destination, MTextureTile* source,
                       double opacity, bool useStrokeProgram, bool replace, QUndoCommand* parent = nullptr);
    ~MCommandUpdateTile() override;

    void undo() override;
    void redo() override;

    QString undoId() const { return m_undoId; }
    QString redoId() const { return m_redoId; }

private:
    void setBuffer(const QString& id);

    int m_layerIndex;
    QRectF m_rect;
    QString m_undoId;
    QString m_redoId;
};
