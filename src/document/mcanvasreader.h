#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QVector>

class MCanvas;
class MTextureLayer;
class QDataStream;

// Reads what MCanvasWriter writes. A file is trusted for nothing: every count
// and size is checked before it is used, and a damaged file gives a code, never
// a crash. Needs the canvas's context current.
class MCanvasReader
{
public:
    enum Result
    {
        Success = 0,
        OpenFailed = 1,
        InvalidMagic = 2,
        ShortRead = 3,
        NoLayer = 4
    };

    // The only tile geometry a document may hold: the GPU's.
    static constexpr qint32 tileSize = 512;
    static constexpr qint32 tileMargin = 6;
    static constexpr qint32 bytesPerPixel = 4;
    static constexpr qint32 bufferSize = bytesPerPixel * tileSize * tileSize;
    // A paper image is a texture; a larger side is refused before it is decoded.
    static constexpr int maxPaperSide = 16384;

    // The fields of a layer record that come before its tiles, as stored.
    struct LayerHeader
    {
        QString name;
        double opacity = 1.0;
        bool locked = false;
        bool visible = true;
        QString shaderId;
        qint32 tileSize = 0;
        qint32 tileMargin = 0;
        qint32 bytesPerPixel = 0;
        qint32 tileCount = 0;
        qint32 bufferSize = 0;
    };

    // The document's fields before its layers, as stored.
    struct CanvasHeader
    {
        qint32 version = 0;
        QRectF paintedRect;
        qint32 paperType = 0;
        QColor paperColor;
        QString paperName;
        QImage paperTile;
        bool autoExtent = false;
        double paintMargin = 0.0;
        qint32 layerCount = 0;
        qint32 tileCount = 0;
    };

    // Everything but the pixels: what a reader learns without GL.
    struct LayerInfo
    {
        LayerHeader header;
        QVector<QRect> tiles;
    };
    struct CanvasInfo
    {
        CanvasHeader header;
        QVector<LayerInfo> layers;
    };

    static int loadCanvasFromFile(const QString& fileName, MCanvas* canvas);
    static int loadLayerFromFile(const QString& fileName, MTextureLayer* layer);
    static int loadCanvasFromStream(QDataStream& stream, MCanvas* canvas);
    static int loadLayerFromStream(QDataStream& stream, MTextureLayer* layer);

    // Walks a whole document with the same checks as loadCanvasFromFile,
    // skipping the tiles' pixels; needs no GL.
    static int readCanvasInfo(const QString& fileName, CanvasInfo* info);

private:
    // Read and check the fields up to the layers, or up to the tiles, and
    // report failures under source; the stream stands after them on success.
    static int readCanvasHeader(QDataStream& stream, CanvasHeader* header, const QString& source);
    static int readLayerHeader(QDataStream& stream, LayerHeader* header, const QString& source);
};
