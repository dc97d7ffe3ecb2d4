#pragma once

#include "document/mcommand.h"

// Changes the page rectangle of the document.
class MCommandSetPaintedRect : public MCommand
{
public:
    MCommandSetPaintedRect(MCanvas* canvas, const QRectF& oldRect, const QRectF& newRect,
                           QUndoCommand* parent = nullptr);

    void undo() override;
    void redo() override;
};
