#pragma once

#include "document/mcommand.h"

// Adds a layer at the bottom of the stack.
class MCommandPrependLayer : public MCommand
{
public:
    explicit MCommandPrependLayer(MCanvas* canvas, QUndoCommand* parent = nullptr);

    void undo() override;
    void redo() override;

private:
    int m_previousRow = -1;
};
