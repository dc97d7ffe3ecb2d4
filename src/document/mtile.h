#pragma once

#include <QRect>

class MTiledLayer;

// One square of a tiled layer. The base tile holds only its place; its
// geometry (size, margin, bytes per pixel) is read through its layer.
class MTile
{
public:
    explicit MTile(MTiledLayer* layer);
    virtual ~MTile();
    MTile(const MTile&) = delete;
    MTile& operator=(const MTile&) = delete;

    virtual bool isValid() const;

    MTiledLayer* layer() const { return m_layer; }
    // The inner rectangle, in layer coordinates.
    QRect rect() const { return m_rect; }
    void setRect(const QRect& rect) { m_rect = rect; }
    // The inner rectangle grown by the margin on all sides: what the texture covers.
    QRect outerRect() const;

    int tileSize() const;
    int tileMargin() const;
    int bytesPerPixel() const;

    bool isInitialized() const { return m_isInitialized; }
    bool hasError() const { return m_hasError; }

protected:
    MTiledLayer* m_layer;
    QRect m_rect;
    bool m_isInitialized = false;
    bool m_hasError = false;
};
