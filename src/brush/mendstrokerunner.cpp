#include "brush/mendstrokerunner.h"

#include "app/mlogger.h"
#include "brush/mbrush.h"
#include "document/mcanvas.h"
#include "document/mcommandsetpaintedrect.h"
#include "document/mcommandupdatetile.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "gpu/mshareddata.h"

MEndStrokeRunner::MEndStrokeRunner(MSharedData* sharedData, int index, const MEvent& event, QObject* parent)
    : MRunner(sharedData, parent), m_index(index), m_event(event)
{
}

void MEndStrokeRunner::run()
{
    if (!isValid())
        return;
    MCanvas* canvas = m_sharedData->canvas();
    if (!canvas->makeCurrent()) {
        MLogger::systemError(QStringLiteral("MEndStrokeRunner::run"), QStringLiteral("Unable to make current context"));
        return;
    }
    MTextureLayer* layer = m_sharedData->currentLayer();
    if (!layer)
        return;
    const int layerIndex = m_sharedData->currentLayerIndex();
    MTextureLayer* strokeLayer = canvas->strokeLayer();
    canvas->beginMacro(
        tr("Brush stroke: %1, %2").arg(m_sharedData->brush()->description(), m_sharedData->brushColor().name()));
    for (MTile* tile : qAsConst(strokeLayer->changedTiles())) {
        auto* strokeTile = dynamic_cast<MTextureTile*>(tile);
        if (!strokeTile || !strokeTile->isCreated())
            continue;
        auto* layerTile = dynamic_cast<MTextureTile*>(layer->addTile(QRectF(strokeTile->outerRect()).center()));
        if (!layerTile || !layerTile->isCreated())
            continue;
        new MCommandUpdateTile(canvas, layerIndex, layerTile, strokeTile, m_sharedData->brush()->opacity(), true,
                               false);
        canvas->blitTile(strokeTile, nullptr, 1.0, true);
    }
    new MCommandSetPaintedRect(canvas, m_sharedData->paintedRectAtStart(), canvas->paintedRect());
    canvas->endMacro();
    Q_EMIT canvas->updateThumbnail(canvas, layerIndex);
    strokeLayer->changedTiles().clear();
    canvas->refresh();
    Q_EMIT finished(this);
}
