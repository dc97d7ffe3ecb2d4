#pragma once

#include "brush/mbrush.h"
#include "gpu/mvertex.h"

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSet>
#include <QSize>
#include <QVector>

class MCanvas;
class MEvent;
class MSharedData;
class MStampPainter;
class MTile;

// The list thumbnail of a brush: one wavy stroke drawn on the GPU on a
// throw-away canvas and read back. It lays its stamps as a stroke does, with
// the same evaluation of settings, spacing and stamp geometry, and draws them
// through MStampPainter into the stroke layer, which then goes onto the
// canvas's one layer through the "stroke" program. Without history: nothing
// here is undoable.
class MBrushPreview
{
public:
    // The preview of brush as an image of size, Format_ARGB32_Premultiplied,
    // transparent where the stroke isn't. The brush itself is not touched. The
    // context current on entry is current again on return.
    static QImage render(const MBrush& brush, const QSize& size, const QColor& strokeColor,
                         const QColor& borderColor);

private:
    MBrushPreview(MCanvas* canvas, MStampPainter* painter);

    void startStroke(const MBrush& brush, const MEvent& event, const QColor& strokeColor,
                     const QColor& borderColor);
    void strokeTo(const MEvent& event);
    void endStroke();
    // The event of a stamp at t between from and to, with the settings of the
    // stroke evaluated for it.
    MEvent strokeEvent(const MEvent& from, const MEvent& to, double t);
    void addStamp(const MEvent& event, QVector<MVertex>& stamps, QSet<MTile*>& tiles, QRectF& runRect);

    MCanvas* m_canvas;
    MSharedData* m_data;
    MStampPainter* m_painter;
};
