#include "document/mcommandprependlayer.h"

#include "document/mcanvas.h"

MCommandPrependLayer::MCommandPrependLayer(MCanvas* canvas, QUndoCommand* parent) : MCommand(canvas, parent)
{
    setText(MCanvas::tr("Prepend a layer"));
    push();
}

void MCommandPrependLayer::redo()
{
    m_previousRow = m_canvas->currentRow();
    insertNewLayer(0, QStringLiteral("MCommandPrependLayer::redo"));
}

void MCommandPrependLayer::undo()
{
    deleteLayer(0, QStringLiteral("MCommandPrependLayer::undo"));
    m_canvas->setCurrentRow(m_previousRow);
}
