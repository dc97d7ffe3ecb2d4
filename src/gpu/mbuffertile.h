#pragma once

#include <QRect>

#include <memory>

// A tile's pixels in host memory, for the algorithms that walk pixels one by
// one. The geometry is that of a texture tile: rows and columns are counted in
// the texture, margin included, so the inner rectangle starts at (margin,
// margin).
class MBufferTile
{
public:
    MBufferTile(int tileSize, int margin, int bytesPerPixel);
    virtual ~MBufferTile();
    MBufferTile(const MBufferTile&) = delete;
    MBufferTile& operator=(const MBufferTile&) = delete;

    // Allocates the zeroed buffer once; true when it exists.
    bool create();
    bool isCreated() const { return m_created; }

    uchar* buffer() const { return m_buffer.get(); }
    // tileSize squared times bytesPerPixel; 0 for a geometry that can't be allocated.
    qint64 byteCount() const;

    // The inner rectangle, in layer coordinates.
    QRect rect() const { return m_rect; }
    void setRect(const QRect& rect) { m_rect = rect; }
    int tileSize() const { return m_tileSize; }
    int margin() const { return m_margin; }
    int bytesPerPixel() const { return m_bytesPerPixel; }

    // The pixel at a layer position that the texture covers; null before create().
    uchar* pixelAt(int x, int y) const
    {
        if (!m_buffer)
            return nullptr;
        const int column = x - m_rect.left() + m_margin;
        const int row = y - m_rect.top() + m_margin;
        return m_buffer.get() + (qint64(row) * m_tileSize + column) * m_bytesPerPixel;
    }

private:
    std::unique_ptr<uchar[]> m_buffer;
    QRect m_rect;
    int m_tileSize;
    int m_margin;
    int m_bytesPerPixel;
    bool m_created = false;
};
