#pragma once

#include <QColor>
#include <QPainterPath>

class MTextureLayer;

// Lays a rasterised path on a layer.
class MCanvasFill
{
public:
    // Replaces the whole content of layer by path filled with color, without
    // undo: this is how the selection becomes its mask layer. An empty path
    // leaves the layer empty. Needs a current context.
    static bool clipPath(const QPainterPath& path, const QColor& color, MTextureLayer* layer,
                         bool antialiasing);
};
