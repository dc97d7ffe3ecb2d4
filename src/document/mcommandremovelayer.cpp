#include "document/mcommandremovelayer.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"

MCommandRemoveLayer::MCommandRemoveLayer(MCanvas* canvas, int layerIndex, QUndoCommand* parent)
    : MCommand(canvas, parent), m_layerIndex(layerIndex)
{
    const QString source = QStringLiteral("MCommandRemoveLayer::MCommandRemoveLayer");
    makeCurrent(source);
    if (MTextureLayer* layer = canvas->at(layerIndex)) {
        // Without a file the id still names the step; undo then reports and
        // brings back an empty layer.
        const bool saved = layer->saveBackup();
        if (!saved)
            MLogger::systemError(source, QStringLiteral("Unable to save layer %1").arg(layerIndex));
        m_layerId = saved ? layer->backupId() : MLayer::newId();
        canvas->registerId(m_layerId);
    }
    setText(MCanvas::tr("Remove layer"));
    push();
}

MCommandRemoveLayer::~MCommandRemoveLayer()
{
    if (!m_layerId.isEmpty())
        m_canvas->unregisterId(m_layerId);
}

void MCommandRemoveLayer::redo()
{
    deleteLayer(m_layerIndex, QStringLiteral("MCommandRemoveLayer::redo"));
}

void MCommandRemoveLayer::undo()
{
    const QString source = QStringLiteral("MCommandRemoveLayer::undo");
    makeCurrent(source);
    MTextureLayer* layer = m_canvas->createLayer();
    if (!layer->restoreBackup(m_layerId))
        MLogger::systemError(source, QStringLiteral("Unable to restore backup %1").arg(m_layerId));
    m_canvas->insert(m_layerIndex, layer);
    m_canvas->setCurrentRow(m_layerIndex);
    m_canvas->refresh();
}
