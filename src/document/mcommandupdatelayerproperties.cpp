#include "document/mcommandupdatelayerproperties.h"

#include "document/mcanvas.h"
#include "document/mtexturelayer.h"

MCommandUpdateLayerProperties::MCommandUpdateLayerProperties(MCanvas* canvas, int layerIndex,
                                                             const QHash<QByteArray, QVariant>& oldValues,
                                                             const QHash<QByteArray, QVariant>& newValues,
                                                             QUndoCommand* parent)
    : MCommand(canvas, parent), m_layerIndex(layerIndex), m_oldValues(oldValues), m_newValues(newValues)
{
    setText(MCanvas::tr("Layer property change"));
    push();
}

void MCommandUpdateLayerProperties::redo()
{
    apply(true);
}

void MCommandUpdateLayerProperties::undo()
{
    apply(false);
}

void MCommandUpdateLayerProperties::apply(bool useNew)
{
    MTextureLayer* layer = m_canvas->at(m_layerIndex);
    if (!layer)
        return;
    for (auto it = m_oldValues.cbegin(); it != m_oldValues.cend(); ++it)
        layer->setProperty(it.key().constData(), useNew ? m_newValues.value(it.key()) : it.value());
    m_canvas->refresh();
}
