#include "document/mcommandappendlayer.h"

#include "document/mcanvas.h"

MCommandAppendLayer::MCommandAppendLayer(MCanvas* canvas, QUndoCommand* parent) : MCommand(canvas, parent)
{
    setText(MCanvas::tr("Append a layer"));
    push();
}

void MCommandAppendLayer::redo()
{
    m_previousRow = m_canvas->currentRow();
    insertNewLayer(m_canvas->count(), QStringLiteral("MCommandAppendLayer::redo"));
}

void MCommandAppendLayer::undo()
{
    deleteLayer(m_canvas->count() - 1, QStringLiteral("MCommandAppendLayer::undo"));
    m_canvas->setCurrentRow(m_previousRow);
}
