#pragma once

#include "gpu/mvertex.h"

#include <QOpenGLBuffer>
#include <QRectF>

class QColor;

// A bounded array of vertices in GPU memory, filled one vertex at a time. A
// vertex beyond the capacity is dropped and append answers false.
class MVertexBuffer : public QOpenGLBuffer
{
public:
    explicit MVertexBuffer(int capacity);

    bool create();
    void clear() { m_count = 0; }
    bool append(const MVertex& vertex);
    bool appendTriangle(const MVertex& a, const MVertex& b, const MVertex& c);
    // Two triangles: bottom-left, top-left, bottom-right, top-left, top-right,
    // bottom-right. The corners of coordinates go in the chosen set.
    bool appendQuad(const QRectF& position, const QRectF& coordinates, const QColor& color,
                    int coordinateSet);
    // The same, filling sets 0 to setCount - 1 (at most 3) from the array.
    bool appendQuad(const QRectF& position, const QColor& color, const QRectF* coordinates, int setCount);

    int capacity() const { return m_capacity; }
    int count() const { return m_count; }

private:
    bool appendQuadSets(const QRectF& position, const QColor& color, const QRectF sets[3], int setMask);

    int m_capacity;
    int m_count = 0;
};
