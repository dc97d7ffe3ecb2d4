#pragma once

#include <QString>
#include <QUuid>

class MCanvas;
class MTextureLayer;
class QDataStream;

// Writes the document file and the layer file of undo. Every tile is stored
// raw, margins included, as the GPU holds it. Needs the canvas's context current.
class MCanvasWriter
{
public:
    enum Result
    {
        Success = 0,
        OpenFailed = 1,
        ShortWrite = 2,
        TransferFailed = 3
    };

    static constexpr int streamVersion = 16;
    static constexpr qint32 fileVersion = 100;
    static const QUuid canvasMagic;
    static const QUuid layerMagic;

    static int saveCanvasToFile(const QString& fileName, MCanvas* canvas);
    static int saveLayerToFile(const QString& fileName, MTextureLayer* layer);
    static int saveCanvasToStream(QDataStream& stream, MCanvas* canvas);
    static int saveLayerToStream(QDataStream& stream, MTextureLayer* layer);
};
