#include "brush/mbrushpreview.h"

#include "app/mevent.h"
#include "brush/mstamppainter.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "gpu/mcontextkeeper.h"
#include "gpu/mshareddata.h"

#include <QLineF>
#include <QOpenGLContext>
#include <QPainter>
#include <QPainterPath>
#include <QSurface>
#include <QVector2D>

#include <cmath>

namespace {

constexpr int row = 0;
constexpr int eventCount = 40;
constexpr double margin = 5.0;
constexpr double pi = 3.14159265358979323846;

} // namespace

MBrushPreview::MBrushPreview(MCanvas* canvas, MStampPainter* painter)
    : m_canvas(canvas), m_data(canvas->sharedData()), m_painter(painter)
{
}

QImage MBrushPreview::render(const MBrush& source, const QSize& size, const QColor& strokeColor,
                             const QColor& borderColor)
{
    if (size.isEmpty())
        return QImage();
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);
    const double width = size.width();
    const double height = size.height();

    // What would keep a preview from showing the brush's own stamps goes.
    MBrush brush;
    brush.assign(source);
    brush.setCompositionMode(0);
    brush.setInheritAlphaCurrent(false);
    brush.setInheritAlphaUnder(false);
    brush.setEraser(false);
    brush.setColorAbsorbtionRate(0.0);
    brush.setColorFlowingRate(1.0);
    const double radius = qBound(1.0, brush.radius(), 10.0);
    brush.setRadius(radius);
    const double diameter = 2.0 * (radius + margin);

    MContextKeeper keeper;
    MCanvas canvas;
    if (!canvas.makeCurrent())
        return image;
    canvas.setPaperType(MEnum::Colored);
    canvas.setPaperColor(Qt::transparent);
    // The stroke's box is the image inset by the margin; the page holds it.
    const QRectF box(-width / 2.0 + margin, margin, width - 2 * margin, height - 2 * margin);
    canvas.setPaintedRect(box.adjusted(-margin, -margin, margin, margin));
    canvas.setCurrentRow(0);
    MSharedData* data = canvas.sharedData();
    data->initializeGL();
    if (!data->isValid() || !canvas.at(0))
        return image;

    MStampPainter painter(data);
    MBrushPreview preview(&canvas, &painter);
    MEvent event;
    double totalDistance = 0.0;
    for (int i = 0; i <= eventCount; ++i) {
        const double x = (width - diameter) * i / eventCount - (width - diameter) * 0.5;
        const double s = std::sin(2.0 * pi * i / eventCount);
        const double y = height * 0.5 + (height - diameter) * 0.5 * s;
        const QVector2D direction(float(x - event.positionX), float(y - event.positionY));
        const double distance = i == 0 ? 0.0 : double(direction.length());
        totalDistance += distance;
        event.type = i == 0 ? 0 : (i == eventCount ? 3 : 2);
        event.pressure = s * 0.2 + 0.8;
        event.directionX = i == 0 ? 0.0 : double(direction.x());
        event.directionY = i == 0 ? 0.0 : double(direction.y());
        event.positionX = x;
        event.positionY = y;
        event.timeToPrevious = 50.0;
        event.totalTime = i * 50.0;
        event.distanceToPrevious = distance;
        event.speed = distance / 50.0;
        event.totalDistance = totalDistance;
        if (i == 0)
            preview.startStroke(brush, event, strokeColor, borderColor);
        // A press leaves its dot as the start of a stroke does.
        preview.strokeTo(event);
    }
    preview.endStroke();

    QPainterPath clip;
    clip.addRect(box);
    const QImage picture =
        canvas.render(QStringLiteral("basic"), int(box.width()), int(box.height()), clip, false, false, {0});
    if (picture.isNull())
        return image;
    QPainter painterOnImage(&image);
    painterOnImage.setRenderHint(QPainter::Antialiasing);
    painterOnImage.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSizeF fitted =
        QSizeF(picture.size()).scaled(image.rect().adjusted(5, 5, -5, -5).size(), Qt::KeepAspectRatio);
    QRectF target(QPointF(), fitted);
    target.moveCenter(QRectF(image.rect()).center());
    painterOnImage.drawImage(target, picture);
    return image;
}

void MBrushPreview::startStroke(const MBrush& brush, const MEvent& event, const QColor& strokeColor,
                                const QColor& borderColor)
{
    m_data->setCurrentLayerIndex(0);
    m_data->setBrush(brush);
    MBrush* own = m_data->brush();
    own->setBaseValue(MEnum::bsBrushColorHue, strokeColor.hsvHueF());
    own->setBaseValue(MEnum::bsBrushColorSaturation, strokeColor.hsvSaturationF());
    own->setBaseValue(MEnum::bsBrushColorValue, strokeColor.valueF());
    own->setBaseValue(MEnum::bsBorderColorHue, borderColor.hsvHueF());
    own->setBaseValue(MEnum::bsBorderColorSaturation, borderColor.hsvSaturationF());
    own->setBaseValue(MEnum::bsBorderColorValue, borderColor.valueF());
    m_data->setBrushColor(strokeColor);
    m_data->setBorderColor(borderColor);
    m_data->setPaintedRectAtStart(m_canvas->paintedRect());
    m_data->setColorTextureSize(own->radius());
    *m_data->lastEvent(row) = event;
    const MBrush::SettingValues base = own->baseValues();
    m_data->setBaseValues(base);
    *m_data->values(row) = base;
    m_canvas->strokeLayer()->setEraserMode(false);
    m_canvas->strokeLayer()->setOpacity(own->opacity());
    m_data->setStrokeRectangle(QRectF());
}

MEvent MBrushPreview::strokeEvent(const MEvent& from, const MEvent& to, double t)
{
    MEvent event = MEvent::interpolated(from, to, t);
    MBrush* brush = m_data->brush();
    MBrush::SettingValues& values = *m_data->values(row);
    brush->evaluate(m_data->baseValues(), event, values);
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
    event.positionX += values[MEnum::bsOffsetX];
    event.positionY += values[MEnum::bsOffsetY];
    return event;
}

void MBrushPreview::addStamp(const MEvent& event, QVector<MVertex>& stamps, QSet<MTile*>& tiles,
                             QRectF& runRect)
{
    const MBrush::SettingValues& values = *m_data->values(row);
    const double radius = values[MEnum::bsRadius];
    const QPointF position(event.positionX, event.positionY);
    const double reach = radius * 1.42;
    const QRectF bounds(position.x() - reach, position.y() - reach, 2 * reach, 2 * reach);
    if (!m_canvas->paintedRect().adjusted(-100, -100, 100, 100).intersects(bounds))
        return;
    MStampPainter::addStamp(stamps, position, radius, values[MEnum::bsRatio], values[MEnum::bsAngle],
                            MStampPainter::brushColor(values));
    m_data->setStampCount(m_data->stampCount() + 1);
    runRect = runRect.united(bounds);
    QSet<MTile*> touched;
    m_canvas->strokeLayer()->tilesInRect(bounds, touched);
    for (MTile* tile : qAsConst(touched))
        if (auto* textureTile = dynamic_cast<MTextureTile*>(tile))
            textureTile->recordChange(bounds);
    tiles.unite(touched);
}

void MBrushPreview::strokeTo(const MEvent& event)
{
    MEvent& last = *m_data->lastEvent(row);
    QVector<MVertex> stamps;
    QSet<MTile*> tiles;
    QRectF runRect;
    MEvent stampEvent;
    if (last.type == 0) {
        const QImage texture = m_data->brush()->texture();
        if (texture.isNull())
            m_data->unloadBrushTexture();
        else
            m_data->loadBrushTexture(texture);
        m_data->setStampCount(0);
        stampEvent = strokeEvent(last, last, 1.0);
        const MBrush::SettingValues& values = *m_data->values(row);
        if (values[MEnum::bsAccumulatorDistance] == 0.0 &&
            MStampPainter::truncated(values[MEnum::bsAngleType]) != MEnum::FollowDirectionAngle)
            addStamp(stampEvent, stamps, tiles, runRect);
    } else {
        const double distance =
            double(QVector2D(float(event.positionX - last.positionX), float(event.positionY - last.positionY))
                       .length());
        double step = (*m_data->values(row))[MEnum::bsSpacing];
        // Short moves add up until they reach the spacing.
        if (step >= distance)
            return;
        while (step < distance) {
            stampEvent = strokeEvent(last, event, step / distance);
            addStamp(stampEvent, stamps, tiles, runRect);
            step += qMax((*m_data->values(row))[MEnum::bsSpacing], 0.1);
        }
    }
    if (!stamps.isEmpty())
        m_painter->drawStamps(tiles, stamps, *m_data->values(row));
    for (MTile* tile : qAsConst(tiles)) {
        if (auto* textureTile = dynamic_cast<MTextureTile*>(tile)) {
            textureTile->updateMipmaps();
            textureTile->release();
        }
    }
    m_canvas->strokeLayer()->changedTiles().unite(tiles);
    last = stampEvent;
    m_data->setStrokeRectangle(m_data->strokeRectangle().united(runRect));
}

void MBrushPreview::endStroke()
{
    MTextureLayer* layer = m_canvas->at(0);
    MTextureLayer* strokeLayer = m_canvas->strokeLayer();
    for (MTile* tile : qAsConst(strokeLayer->changedTiles())) {
        auto* target = dynamic_cast<MTextureTile*>(layer->addTile(QRectF(tile->outerRect()).center()));
        if (target && target->isCreated())
            m_canvas->mergeStrokeTile(target, 0);
    }
    strokeLayer->changedTiles().clear();
}
