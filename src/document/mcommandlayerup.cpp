#include "document/mcommandlayerup.h"

#include "document/mcanvas.h"

MCommandLayerUp::MCommandLayerUp(MCanvas* canvas, int layerIndex, QUndoCommand* parent)
    : MCommand(canvas, parent), m_layerIndex(layerIndex)
{
    setText(MCanvas::tr("Layer up"));
    push();
}

void MCommandLayerUp::redo()
{
    swapLayers(m_layerIndex, m_layerIndex - 1);
}

void MCommandLayerUp::undo()
{
    // The same swap, seen from the row the layer now holds.
    swapLayers(m_layerIndex - 1, m_layerIndex);
}
