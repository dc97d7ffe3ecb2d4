#include "document/mcanvaswriter.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"

#include <QDataStream>
#include <QFile>

#include <functional>
#include <memory>
#include <new>

const QUuid MCanvasWriter::canvasMagic(QStringLiteral("{CEC50B25-E865-4A4F-9E63-120098E6C0FD}"));
const QUuid MCanvasWriter::layerMagic(QStringLiteral("{FF014CB9-2855-4DC1-99C9-97B20357BF83}"));

namespace {

int saveToFile(const QString& fileName, const QUuid& magic, const std::function<int(QDataStream&)>& body)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        MLogger::systemError(QStringLiteral("MCanvasWriter::saveToFile"),
                             QStringLiteral("%1: %2").arg(fileName, file.errorString()));
        return MCanvasWriter::OpenFailed;
    }
    QDataStream stream(&file);
    stream.setVersion(MCanvasWriter::streamVersion);
    stream << magic << MCanvasWriter::fileVersion;
    if (stream.status() != QDataStream::Ok)
        return MCanvasWriter::ShortWrite;
    return body(stream);
}

} // namespace

int MCanvasWriter::saveCanvasToFile(const QString& fileName, MCanvas* canvas)
{
    return saveToFile(fileName, canvasMagic,
                      [canvas](QDataStream& stream) { return saveCanvasToStream(stream, canvas); });
}

int MCanvasWriter::saveLayerToFile(const QString& fileName, MTextureLayer* layer)
{
    return saveToFile(fileName, layerMagic,
                      [layer](QDataStream& stream) { return saveLayerToStream(stream, layer); });
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
