#include "document/mcommandlayerdown.h"

#include "document/mcanvas.h"

MCommandLayerDown::MCommandLayerDown(MCanvas* canvas, int layerIndex, QUndoCommand* parent)
    : MCommand(canvas, parent), m_layerIndex(layerIndex)
{
    setText(MCanvas::tr("Layer down"));
    push();
}

void MCommandLayerDown::redo()
{
    swapLayers(m_layerIndex, m_layerIndex + 1);
}

void MCommandLayerDown::undo()
{
    swapLayers(m_layerIndex + 1, m_layerIndex);
}
