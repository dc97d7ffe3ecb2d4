#pragma once

#include "document/mcommand.h"

// Moves a layer one row down the list, which is up in the panel. Undo and
// redo are the same swap.
class MCommandLayerUp : public MCommand
{
public:
    MCommandLayerUp(MCanvas* canvas, int layerIndex, QUndoCommand* parent = nullptr);

    void undo() override;
    void redo() override;

private:
    int m_layerIndex;
};
