#pragma once

#include <QString>

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

    static int loadCanvasFromFile(const QString& fileName, MCanvas* canvas);
    static int loadLayerFromFile(const QString& fileName, MTextureLayer* layer);
    static int loadCanvasFromStream(QDataStream& stream, MCanvas* canvas);
    static int loadLayerFromStream(QDataStream& stream, MTextureLayer* layer);
};
