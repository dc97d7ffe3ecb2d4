#pragma once

#include "brush/mbrush.h"

#include <QColor>
#include <QImage>
#include <QSize>

class MCanvas;

// The list thumbnail of a brush: one wavy stroke drawn on the GPU on a
// throw-away canvas and read back. The stroke goes through the same runners as
// a painted one into the stroke layer, which then goes onto the canvas's one
// layer through the "stroke" program. Without history: nothing here is undoable.
class MBrushPreview
{
public:
    // The preview of brush as an image of size, Format_ARGB32_Premultiplied,
    // transparent where the stroke isn't. The brush itself is not touched. The
    // context current on entry is current again on return.
    static QImage render(const MBrush& brush, const QSize& size, const QColor& strokeColor,
                         const QColor& borderColor);

private:
    // The stroke layer's tiles laid on layer 0, without undo.
    static void mergeStroke(MCanvas* canvas);
};
