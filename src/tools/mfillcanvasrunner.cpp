#include "tools/mfillcanvasrunner.h"

#include "document/mcanvas.h"
#include "document/mcommandfilltile.h"
#include "document/mtexturetile.h"
#include "gpu/mshareddata.h"

MFillCanvasRunner::MFillCanvasRunner(MSharedData* sharedData, int layerIndex, const QColor& color,
                                     QObject* parent)
    : MRunner(sharedData, parent), m_layerIndex(layerIndex), m_color(color)
{
}

void MFillCanvasRunner::run()
{
    if (!isValid())
        return;
    MCanvas* canvas = m_sharedData->canvas();
    MTextureLayer* layer = canvas->at(m_layerIndex);
    if (!layer || layer->isEmpty())
        return;
    // The step keeps this name whatever the colour.
    canvas->beginMacro(tr("Clear"));
    for (int i = 0; i < layer->tileCount(); ++i) {
        if (auto* tile = dynamic_cast<MTextureTile*>(layer->tile(i)))
            new MCommandFillTile(canvas, m_layerIndex, tile, m_color);
    }
    Q_EMIT canvas->updateThumbnail(canvas, m_layerIndex);
    canvas->endMacro();
    canvas->refresh();
    Q_EMIT finished(this);
}
