#include "document/mcanvasfill.h"

#include "document/mquadtree.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"

#include <QImage>
#include <QPainter>
#include <QSet>

bool MCanvasFill::clipPath(const QPainterPath& path, const QColor& color, MTextureLayer* layer,
                           bool antialiasing)
{
    if (!layer)
        return false;
    layer->clear();
    if (path.isEmpty())
        return true;
    // One pixel more on each side keeps the antialiased border.
    const QRectF bounds = path.boundingRect().adjusted(-1.0, -1.0, 1.0, 1.0);
    QSet<MTile*> tiles;
    layer->tilesInRect(bounds, tiles);
    bool ok = true;
    for (MTile* tile : qAsConst(tiles)) {
        auto* textureTile = dynamic_cast<MTextureTile*>(tile);
        if (!textureTile || !textureTile->isCreated()) {
            ok = false;
            continue;
        }
        const QRect outer = tile->outerRect();
        QImage image(outer.size(), QImage::Format_ARGB32_Premultiplied);
        if (image.isNull()) {
            ok = false;
            continue;
        }
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, antialiasing);
        painter.translate(-outer.topLeft());
        painter.fillPath(path, color);
        painter.end();
        ok = textureTile->setData(image) && ok;
    }
    return ok;
}
