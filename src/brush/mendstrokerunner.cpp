#include "brush/mendstrokerunner.h"

#include "app/mlogger.h"
#include "brush/mbrush.h"
#include "document/mcanvas.h"
#include "document/mcommandsetpaintedrect.h"
#include "document/mcommandupdatetile.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "gpu/mframebuffer.h"
#include "gpu/mshareddata.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

MEndStrokeRunner::MEndStrokeRunner(MSharedData* sharedData, int index, const MEvent& event, QObject* parent)
    : MRunner(sharedData, parent), m_index(index), m_event(event)
{
}

void MEndStrokeRunner::clear(MTextureTile* tile)
{
    // Not through a blit: that would keep to the selection, and leave the
    // stroke's paint outside it for the next stroke to lay again.
    MFrameBuffer* frameBuffer = m_sharedData->frameBuffer();
    if (frameBuffer->attachTexture(tile->textureId(), 0)) {
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        frameBuffer->bind();
        gl->glViewport(0, 0, tile->tileSize(), tile->tileSize());
        gl->glClearColor(0.f, 0.f, 0.f, 0.f);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        frameBuffer->detachTexture(0);
    }
    frameBuffer->release();
    tile->updateMipmaps();
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
        clear(strokeTile);
    }
    new MCommandSetPaintedRect(canvas, m_sharedData->paintedRectAtStart(), canvas->paintedRect());
    canvas->endMacro();
    Q_EMIT canvas->updateThumbnail(canvas, layerIndex);
    strokeLayer->changedTiles().clear();
    canvas->refresh();
    Q_EMIT finished(this);
}
