#pragma once

#include <QObject>
#include <QRectF>
#include <QSizeF>

// Placing of boxes against a rectangle.
class MGeometry
{
    Q_GADGET

public:
    // Twenty-seven anchors: the nine places of a box inside a rectangle,
    // against its sides and corners or at its centre; the same nine with the
    // box centred on the side, the corner or the centre ("Edge"); and the same
    // nine with the box just outside ("Outside"). At the centre the three
    // kinds coincide.
    enum Position
    {
        TopLeft = 0,
        TopCenter,
        TopRight,
        CenterLeft,
        CenterCenter,
        CenterRight,
        BottomLeft,
        BottomCenter,
        BottomRight,
        TopLeftEdge,
        TopCenterEdge,
        TopRightEdge,
        CenterLeftEdge,
        CenterCenterEdge,
        CenterRightEdge,
        BottomLeftEdge,
        BottomCenterEdge,
        BottomRightEdge,
        TopLeftOutside,
        TopCenterOutside,
        TopRightOutside,
        CenterLeftOutside,
        CenterCenterOutside,
        CenterRightOutside,
        BottomLeftOutside,
        BottomCenterOutside,
        BottomRightOutside,
        PositionCount
    };
    Q_ENUM(Position)

    // The box of that size placed at position against rect. An unknown
    // position places it as CenterCenter.
    static QRectF place(const QSizeF& size, const QRectF& rect, Position position);
};
