#include "app/mgeometry.h"

namespace {

// Where a box of length size starts along one axis of [start, start + length]:
// side -1 is the low side, 0 the middle, 1 the high side; kind 0 inside, 1
// centred on the side, 2 outside.
double placeAlong(double start, double length, double size, int side, int kind)
{
    const double low = start;
    const double high = start + length;
    if (side == 0)
        return start + (length - size) / 2.0;
    if (side < 0) {
        if (kind == 0)
            return low;
        return kind == 1 ? low - size / 2.0 : low - size;
    }
    if (kind == 0)
        return high - size;
    return kind == 1 ? high - size / 2.0 : high;
}

} // namespace

QRectF MGeometry::place(const QSizeF& size, const QRectF& rect, Position position)
{
    int index = int(position);
    if (index < 0 || index >= PositionCount)
        index = CenterCenter;
    const int kind = index / 9;
    const int anchor = index % 9;
    const int vertical = anchor / 3 - 1;
    const int horizontal = anchor % 3 - 1;
    const double x = placeAlong(rect.x(), rect.width(), size.width(), horizontal, kind);
    const double y = placeAlong(rect.y(), rect.height(), size.height(), vertical, kind);
    return QRectF(QPointF(x, y), size);
}
