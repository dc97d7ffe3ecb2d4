#include "brush/mstroketorunner.h"

#include "app/mlogger.h"
#include "brush/mbrush.h"
#include "brush/mstamppainter.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "gpu/mframebuffer.h"
#include "gpu/mshaderprogramlist.h"
#include "gpu/mshareddata.h"
#include "gpu/mtexturebinder.h"
#include "gpu/mvertexbuffer.h"

#include <QLineF>
#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <QVector2D>

#include <cmath>

namespace {

// Stamps are dropped this far outside the page: it bounds the tiles a stylus
// leaving the page can create.
constexpr double canvasReach = 100.0;
// A wet brush picks colour once for this many stamps.
constexpr int colorSamplePeriod = 25;
// The floor of a step between stamps within one run: it ends the walk for any spacing.
constexpr double minimumStep = 0.1;

} // namespace

MStrokeToRunner::MStrokeToRunner(MSharedData* sharedData, int index, const MEvent& event, QObject* parent)
    : MRunner(sharedData, parent), m_index(index), m_event(event)
{
}

MEvent MStrokeToRunner::strokeEvent(const MEvent& from, const MEvent& to, double t)
{
    MEvent event = MEvent::interpolated(from, to, t);
    MBrush* brush = m_sharedData->brush();
    MBrush::SettingValues& values = *m_sharedData->values(m_index);
    brush->evaluate(m_sharedData->baseValues(), event, values);
    const double size = values[MEnum::bsRatio] * values[MEnum::bsRadius];
    switch (MStampPainter::truncated(values[MEnum::bsSpacingType])) {
    case MEnum::AutoSpacing:
        values[MEnum::bsSpacing] = brush->autoSpacing(size);
        break;
    case MEnum::RatioSpacing:
        values[MEnum::bsSpacing] *= size;
        break;
    default:
        break;
    }
    values[MEnum::bsAngle] = std::fmod(values[MEnum::bsAngle], 360.0);
    if (MStampPainter::truncated(values[MEnum::bsAngleType]) == MEnum::FollowDirectionAngle) {
        const QVector2D direction = QVector2D(float(event.directionX), float(event.directionY)).normalized();
        const double angle = QLineF(QPointF(), direction.toPointF()).angle();
        values[MEnum::bsAngle] += std::fmod(angle, 360.0);
    }
    // The offsets are added in pixels as they stand, whatever their unit says.
    event.positionX += values[MEnum::bsOffsetX];
    event.positionY += values[MEnum::bsOffsetY];
    return event;
}

QColor MStrokeToRunner::brushColor() const
{
    return MStampPainter::brushColor(*m_sharedData->values(m_index));
}

bool MStrokeToRunner::inCanvas(const QRectF& rect) const
{
    const QRectF reach =
        m_sharedData->canvas()->paintedRect().adjusted(-canvasReach, -canvasReach, canvasReach, canvasReach);
    return reach.intersects(rect);
}

QRectF MStrokeToRunner::addStamp(QVector<MVertex>& stamps, const QPointF& position, const QColor& color)
{
    const MBrush::SettingValues& values = *m_sharedData->values(m_index);
    const double radius = values[MEnum::bsRadius];
    const QRectF bounds = MStampPainter::stampBounds(position, radius);
    if (!inCanvas(bounds))
        return QRectF();
    MStampPainter::addStamp(stamps, position, radius, values[MEnum::bsRatio], values[MEnum::bsAngle], color);
    m_sharedData->setStampCount(m_sharedData->stampCount() + 1);
    return bounds;
}

void MStrokeToRunner::collectTiles(const QRectF& rect, MTextureLayer* layer, QSet<MTile*>& tiles)
{
    if (!rect.isValid() || !layer)
        return;
    QSet<MTile*> touched;
    layer->tilesInRect(rect, touched);
    for (MTile* tile : qAsConst(touched)) {
        if (auto* textureTile = dynamic_cast<MTextureTile*>(tile))
            textureTile->recordChange(rect);
    }
    tiles.unite(touched);
}

void MStrokeToRunner::drawStampBuffer(const QSet<MTile*>& tiles, const QVector<MVertex>& stamps,
                                      const QPointF& offset)
{
    if (stamps.isEmpty() || tiles.isEmpty())
        return;
    MStampPainter painter(m_sharedData);
    painter.drawStamps(tiles, stamps, *m_sharedData->values(m_index), offset);
}

void MStrokeToRunner::getColorSample(const QPointF& position, bool clear)
{
    const QString source = QStringLiteral("MStrokeToRunner::getColorSample");
    if (!m_sharedData->isValid()) {
        MLogger::systemError(source, QStringLiteral("Shared data are not valid"));
        return;
    }
    const int size = m_sharedData->colorTextureSize();
    QOpenGLTexture* sample = m_sharedData->colorTexture(size);
    QOpenGLTexture* target = m_sharedData->colorFeedbackTexture(size);
    if (!sample || !target) {
        MLogger::systemError(source, QStringLiteral("Invalid color textures"));
        return;
    }
    MTextureLayer* layer = m_sharedData->currentLayer();
    if (!layer) {
        MLogger::systemError(source, QStringLiteral("No valid current layer"));
        return;
    }
    const double side = sample->width();
    const QRectF area(position.x() - side / 2.0, position.y() - side / 2.0, side, side);
    QSet<MTile*> tiles;
    layer->tilesInRect(area, tiles);

    QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
    MFrameBuffer* frameBuffer = m_sharedData->frameBuffer();
    MVertexBuffer* buffer = m_sharedData->stampBuffer();
    MShaderProgramList* programs = m_sharedData->programList();
    const QColor color = brushColor();
    const MBrush::SettingValues& values = *m_sharedData->values(m_index);
    QMatrix4x4 projection;
    projection.ortho(0.f, float(side), 0.f, float(side), -1.f, 1.f);
    // When the area spans several tiles each pass writes the whole sample and
    // the last one stands, read clamped at its tile's edge.
    for (MTile* tile : qAsConst(tiles)) {
        auto* layerTile = dynamic_cast<MTextureTile*>(tile);
        if (!layerTile || !layerTile->isCreated())
            continue;
        if (!frameBuffer->attachTexture(target->textureId(), 0)) {
            frameBuffer->release();
            continue;
        }
        frameBuffer->bind();
        gl->glBlendEquation(GL_FUNC_ADD);
        gl->glBlendFunc(GL_ONE, GL_ZERO);
        gl->glViewport(0, 0, int(side), int(side));
        gl->glClearColor(0.f, 0.f, 0.f, 0.f);
        gl->glClear(GL_COLOR_BUFFER_BIT);

        const QRectF outer(layerTile->outerRect());
        const QRectF mapped((area.left() - outer.left()) / outer.width(),
                            (area.top() - outer.top()) / outer.height(), area.width() / outer.width(),
                            area.height() / outer.height());
        buffer->bind();
        buffer->clear();
        const QRectF sets[2] = {QRectF(0.0, 0.0, 1.0, 1.0), mapped};
        buffer->appendQuad(QRectF(0.0, 0.0, side, side), color, sets, 2);

        QOpenGLShaderProgram* program =
            programs->bindWithAttributes(QStringLiteral("colorfeedback"), m_sharedData->vertexArray());
        if (!program) {
            MLogger::systemError(source, QStringLiteral("No valid shader program for color feedback"));
            buffer->release();
            frameBuffer->detachTexture(0);
            frameBuffer->release();
            break;
        }
        program->setUniformValue("mvp", projection);
        program->setUniformValue("f_clear", clear);
        program->setUniformValue("f_colorAbsorbtionRate", float(values[MEnum::bsColorAbsorbtionRate]));
        program->setUniformValue("f_colorFlowingRate", float(values[MEnum::bsColorFlowingRate]));
        MTextureBinder binder(gl);
        binder.bindTexture(layerTile->textureId(), program, "f_currentLayerTexture", GL_NEAREST, GL_NEAREST,
                           GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE);
        binder.bindTexture(sample->textureId(), program, "f_colorTexture", GL_NEAREST, GL_NEAREST,
                           GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE);
        gl->glDrawArrays(GL_TRIANGLES, 0, buffer->count());
        programs->releaseAttributes(program, m_sharedData->vertexArray());
        program->release();
        buffer->release();
        binder.releaseTextures();
        frameBuffer->detachTexture(0);
        frameBuffer->release();
        layerTile->release();
    }
    target->bind();
    target->generateMipMaps();
    target->release();
    m_sharedData->swapColorTextures(size);
    QOpenGLFramebufferObject::bindDefault();
    gl->glFlush();
}

void MStrokeToRunner::run()
{
    MEvent* lastEvent = m_sharedData ? m_sharedData->lastEvent(m_index) : nullptr;
    if (!lastEvent || !isValid())
        return;
    MCanvas* canvas = m_sharedData->canvas();
    if (!canvas->makeCurrent()) {
        MLogger::systemError(QStringLiteral("MStrokeToRunner::run"),
                             QStringLiteral("Unable to make current context"));
        return;
    }
    const MEvent last = *lastEvent;
    MBrush::SettingValues& values = *m_sharedData->values(m_index);
    const bool absorbing = values[MEnum::bsColorAbsorbtionRate] != 0.0;
    MTextureLayer* strokeLayer = canvas->strokeLayer();
    MEvent stampEvent;
    QSet<MTile*> runTiles;
    QSet<MTile*> batchTiles;
    QRectF runRect;
    QVector<MVertex> stamps;

    const auto stampAt = [&](const MEvent& event) {
        const QPointF position(event.positionX, event.positionY);
        const QRectF bounds = addStamp(stamps, position, brushColor());
        runRect = runRect.united(bounds);
        collectTiles(bounds, strokeLayer, batchTiles);
        return position;
    };

    if (last.type == 0) {
        MBrush* brush = m_sharedData->brush();
        if (brush->texture().isNull())
            m_sharedData->unloadBrushTexture();
        else
            m_sharedData->loadBrushTexture(brush->texture());
        m_sharedData->setStampCount(0);
        stampEvent = strokeEvent(last, last, 1.0);
        // A brush whose angle follows a direction that doesn't exist yet, or
        // one that accumulates distance first, leaves no dot at the press.
        if (values[MEnum::bsAccumulatorDistance] == 0.0 &&
            MStampPainter::truncated(values[MEnum::bsAngleType]) != MEnum::FollowDirectionAngle) {
            const QPointF position = stampAt(stampEvent);
            if (absorbing)
                getColorSample(position, true);
        }
    } else {
        const double distance = double(
            QVector2D(float(m_event.positionX - last.positionX), float(m_event.positionY - last.positionY))
                .length());
        double step = values[MEnum::bsSpacing];
        // Short moves add up until they reach the spacing: the last stamp stays.
        if (step >= distance)
            return;
        while (step < distance) {
            stampEvent = strokeEvent(last, m_event, step / distance);
            const QPointF position = stampAt(stampEvent);
            // The stamps before a pick are flushed so that it sees them.
            if (absorbing && m_sharedData->stampCount() % colorSamplePeriod == 0) {
                getColorSample(position, false);
                drawStampBuffer(batchTiles, stamps, QPointF());
                runTiles.unite(batchTiles);
                batchTiles.clear();
                stamps.clear();
            }
            step += qMax(values[MEnum::bsSpacing], minimumStep);
        }
    }
    runTiles.unite(batchTiles);
    drawStampBuffer(batchTiles, stamps, QPointF());
    for (MTile* tile : qAsConst(runTiles)) {
        if (auto* textureTile = dynamic_cast<MTextureTile*>(tile)) {
            textureTile->updateMipmaps();
            textureTile->release();
        }
    }
    strokeLayer->changedTiles().unite(runTiles);
    *lastEvent = stampEvent;
    m_sharedData->setStrokeRectangle(m_sharedData->strokeRectangle().united(runRect));
    if (canvas->autoExtent() && !canvas->hasSelection()) {
        const double margin = canvas->paintMargin();
        const QRectF grown = canvas->paintedRect().united(
            m_sharedData->strokeRectangle().adjusted(-margin, -margin, margin, margin));
        canvas->setPaintedRect(QRectF(grown.toAlignedRect()));
    }
    Q_EMIT canvas->refresh(true, runRect);
    Q_EMIT finished(this);
}
