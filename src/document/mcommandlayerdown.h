#pragma once

#include "document/mcommand.h"

// Moves a layer one row up the list, which is down in the panel. Undo and
// redo are the same swap.
class MCommandLayerDown : public MCommand
{
public:
    MCommandLayerDown(MCanvas* canvas, int layerIndex, QUndoCommand* parent = nullptr);

    void undo() override;
    void redo() override;

private:
    int m_layerIndex;
};
