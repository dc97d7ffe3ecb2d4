#include "document/mcommandsetpaintedrect.h"

#include "document/mcanvas.h"

MCommandSetPaintedRect::MCommandSetPaintedRect(MCanvas* canvas, const QRectF& oldRect, const QRectF& newRect,
                                               QUndoCommand* parent)
    : MCommand(canvas, parent)
{
    m_oldRect = oldRect;
    m_newRect = newRect;
    setText(MCanvas::tr("Resize painted rectangle: %1, %2").arg(newRect.width()).arg(newRect.height()));
    push();
}

void MCommandSetPaintedRect::redo()
{
    m_canvas->setPaintedRect(m_newRect);
}

void MCommandSetPaintedRect::undo()
{
    m_canvas->setPaintedRect(m_oldRect);
}
