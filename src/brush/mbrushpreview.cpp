#include "brush/mbrushpreview.h"

#include "app/mevent.h"
#include "brush/mstartstrokerunner.h"
#include "brush/mstroketorunner.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "gpu/mcontextkeeper.h"
#include "gpu/mshareddata.h"

#include <QOpenGLContext>
#include <QPainter>
#include <QPainterPath>
#include <QSurface>
#include <QVector2D>

#include <cmath>

namespace {

constexpr int eventCount = 40;
constexpr double margin = 5.0;
constexpr double pi = 3.14159265358979323846;

} // namespace

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
            MStartStrokeRunner(data, 0, 0, event, brush, strokeColor, borderColor).run();
        // A press leaves its dot as the start of a stroke does.
        MStrokeToRunner(data, 0, event).run();
    }
    mergeStroke(&canvas);

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

void MBrushPreview::mergeStroke(MCanvas* canvas)
{
    MTextureLayer* layer = canvas->at(0);
    MTextureLayer* strokeLayer = canvas->strokeLayer();
    for (MTile* tile : qAsConst(strokeLayer->changedTiles())) {
        auto* target = dynamic_cast<MTextureTile*>(layer->addTile(QRectF(tile->outerRect()).center()));
        if (target && target->isCreated())
            canvas->mergeStrokeTile(target, 0);
    }
    strokeLayer->changedTiles().clear();
}
