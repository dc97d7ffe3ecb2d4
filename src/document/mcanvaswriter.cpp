#include "document/mcanvaswriter.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"

#include <QDataStream>
#include <QFile>
#include <QSaveFile>

#include <memory>
#include <new>

const QUuid MCanvasWriter::canvasMagic(QStringLiteral("{CEC50B25-E865-4A4F-9E63-120098E6C0FD}"));
const QUuid MCanvasWriter::layerMagic(QStringLiteral("{FF014CB9-2855-4DC1-99C9-97B20357BF83}"));

namespace {

void setUpStream(QDataStream& stream, const QUuid& magic)
{
    stream.setVersion(MCanvasWriter::streamVersion);
    stream << magic << MCanvasWriter::fileVersion;
}

} // namespace

int MCanvasWriter::saveCanvasToFile(const QString& fileName, MCanvas* canvas)
{
    // The document goes to a temporary file beside the old one, which is only
    // replaced once every byte is out: a failed save never costs the user the
    // previous version.
    const QString source = QStringLiteral("MCanvasWriter::saveCanvasToFile");
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        MLogger::systemError(source,
                             QStringLiteral("Unable to open %1: %2").arg(fileName, file.errorString()));
        return OpenFailed;
    }
    QDataStream stream(&file);
    setUpStream(stream, canvasMagic);
    const int result = stream.status() == QDataStream::Ok ? saveCanvasToStream(stream, canvas) : ShortWrite;
    if (result != Success) {
        if (file.error() != QFileDevice::NoError)
            MLogger::systemError(source,
                                 QStringLiteral("Unable to write %1: %2").arg(fileName, file.errorString()));
        file.cancelWriting();
        return result;
    }
    if (stream.status() != QDataStream::Ok || !file.commit()) {
        MLogger::systemError(source,
                             QStringLiteral("Unable to write %1: %2").arg(fileName, file.errorString()));
        return ShortWrite;
    }
    return Success;
}

int MCanvasWriter::saveLayerToFile(const QString& fileName, MTextureLayer* layer)
{
    // A layer file is a fresh temporary of undo: nothing to keep, so it is
    // written in place.
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        MLogger::systemError(QStringLiteral("MCanvasWriter::saveLayerToFile"),
                             QStringLiteral("%1: %2").arg(fileName, file.errorString()));
        return OpenFailed;
    }
    QDataStream stream(&file);
    setUpStream(stream, layerMagic);
    if (stream.status() != QDataStream::Ok)
        return ShortWrite;
    const int result = saveLayerToStream(stream, layer);
    if (result != Success)
        return result;
    if (!file.flush() || stream.status() != QDataStream::Ok) {
        MLogger::systemError(QStringLiteral("MCanvasWriter::saveLayerToFile"),
                             QStringLiteral("%1: %2").arg(fileName, file.errorString()));
        return ShortWrite;
    }
    return Success;
}

int MCanvasWriter::saveCanvasToStream(QDataStream& stream, MCanvas* canvas)
{
    stream << canvas->paintedRect() << qint32(canvas->paperType()) << canvas->paperColor();
    if (canvas->paperType() == MEnum::Paper)
        stream << canvas->paperName() << canvas->paperTile();
    stream << canvas->autoExtent() << canvas->paintMargin();

    const int layerCount = canvas->count();
    qint32 tileCount = 0;
    for (int row = 0; row < layerCount; ++row)
        tileCount += canvas->at(row)->tileCount();
    stream << qint32(layerCount) << tileCount;
    if (stream.status() != QDataStream::Ok)
        return ShortWrite;

    for (int row = 0; row < layerCount; ++row) {
        const int result = saveLayerToStream(stream, canvas->at(row));
        if (result != Success)
            return result;
    }
    return Success;
}

int MCanvasWriter::saveLayerToStream(QDataStream& stream, MTextureLayer* layer)
{
    const QString source = QStringLiteral("MCanvasWriter::saveLayerToStream");
    const qint32 tileSize = layer->tileSize();
    const qint32 bufferSize = layer->bytesPerPixel() * tileSize * tileSize;
    const int tileCount = layer->tileCount();
    stream << layer->name() << layer->opacity() << layer->locked() << layer->visible() << layer->shaderId()
           << tileSize << qint32(layer->tileMargin()) << qint32(layer->bytesPerPixel()) << qint32(tileCount)
           << bufferSize;
    if (stream.status() != QDataStream::Ok)
        return ShortWrite;

    // One buffer serves every tile of the layer.
    std::unique_ptr<char[]> buffer;
    if (tileCount > 0) {
        buffer.reset(new (std::nothrow) char[size_t(bufferSize)]);
        if (!buffer) {
            MLogger::systemError(source, QStringLiteral("Buffer memory allocation fail"));
            return TransferFailed;
        }
    }
    for (int i = 0; i < tileCount; ++i) {
        auto* tile = dynamic_cast<MTextureTile*>(layer->tile(i));
        // A tile that was never drawn has no texture yet; it is written transparent.
        if (!tile || tile->bufferSize() != bufferSize || !tile->isCreated() ||
            !tile->toBuffer(buffer.get())) {
            MLogger::systemError(source, QStringLiteral("Error during texture transfert to memory"));
            return TransferFailed;
        }
        stream << tile->rect();
        if (stream.writeRawData(buffer.get(), bufferSize) != bufferSize) {
            MLogger::systemError(source, QStringLiteral("Error during writeRawData"));
            return ShortWrite;
        }
    }
    return Success;
}
