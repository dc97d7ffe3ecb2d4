#pragma once

#include "document/mcommand.h"

// Adds a layer on top of the stack. Its redo is what makes the layer, so the
// push that runs it is the creation.
class MCommandAppendLayer : public MCommand
{
public:
    explicit MCommandAppendLayer(MCanvas* canvas, QUndoCommand* parent = nullptr);

    void undo() override;
    void redo() override;

private:
    int m_previousRow = -1;
};
