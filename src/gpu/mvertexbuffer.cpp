#include "gpu/mvertexbuffer.h"

#include <QColor>

#include <algorithm>

namespace {

enum Corner
{
    BottomLeft,
    TopLeft,
    BottomRight,
    TopRight
};
constexpr Corner quadOrder[6] = {BottomLeft, TopLeft, BottomRight, TopLeft, TopRight, BottomRight};

QPointF corner(const QRectF& rect, Corner which)
{
    switch (which) {
    case BottomLeft:
        return rect.bottomLeft();
    case TopLeft:
        return rect.topLeft();
    case BottomRight:
        return rect.bottomRight();
    case TopRight:
        return rect.topRight();
    }
    return QPointF();
}

} // namespace

MVertexBuffer::MVertexBuffer(int capacity) : QOpenGLBuffer(QOpenGLBuffer::VertexBuffer), m_capacity(capacity)
{
}

bool MVertexBuffer::create()
{
    if (!QOpenGLBuffer::create())
        return false;
    setUsagePattern(QOpenGLBuffer::DynamicDraw);
    if (!bind())
        return false;
    allocate(m_capacity * MVertex::stride);
    QOpenGLBuffer::release();
    return true;
}

bool MVertexBuffer::append(const MVertex& vertex)
{
    if (m_count >= m_capacity)
        return false;
    write(m_count * MVertex::stride, &vertex, MVertex::stride);
    ++m_count;
    return true;
}

bool MVertexBuffer::appendTriangle(const MVertex& a, const MVertex& b, const MVertex& c)
{
    const bool first = append(a);
    const bool second = append(b);
    const bool third = append(c);
    return first && second && third;
}

bool MVertexBuffer::appendQuad(const QRectF& position, const QRectF& coordinates, const QColor& color,
                               int coordinateSet)
{
    if (coordinateSet < 0 || coordinateSet > 2)
        return false;
    QRectF sets[3];
    sets[coordinateSet] = coordinates;
    return appendQuadSets(position, color, sets, 1 << coordinateSet);
}

bool MVertexBuffer::appendQuad(const QRectF& position, const QColor& color, const QRectF* coordinates,
                               int setCount)
{
    setCount = coordinates ? std::clamp(setCount, 0, 3) : 0;
    QRectF sets[3];
    for (int set = 0; set < setCount; ++set)
        sets[set] = coordinates[set];
    return appendQuadSets(position, color, sets, (1 << setCount) - 1);
}

bool MVertexBuffer::appendQuadSets(const QRectF& position, const QColor& color, const QRectF sets[3],
                                   int setMask)
{
    bool ok = true;
    for (Corner which : quadOrder) {
        MVertex vertex;
        const QPointF p = corner(position, which);
        vertex.position[0] = float(p.x());
        vertex.position[1] = float(p.y());
        vertex.setColor(float(color.redF()), float(color.greenF()), float(color.blueF()),
                        float(color.alphaF()));
        for (int set = 0; set < 3; ++set) {
            if (!(setMask & (1 << set)))
                continue;
            const QPointF t = corner(sets[set], which);
            vertex.textureCoordinates[set][0] = float(t.x());
            vertex.textureCoordinates[set][1] = float(t.y());
        }
        ok = append(vertex) && ok;
    }
    return ok;
}
