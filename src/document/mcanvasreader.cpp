#include "document/mcanvasreader.h"

#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mcanvaswriter.h"
#include "document/mcommandappendlayer.h"
#include "document/mquadtree.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"

#include <QDataStream>
#include <QFile>
#include <QUuid>

#include <functional>
#include <memory>
#include <new>

namespace {

int loadFromFile(const QString& fileName, const QUuid& magic, const QString& source,
                 const QString& formatMessage, const std::function<int(QDataStream&)>& body)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        MLogger::systemError(source, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
        return MCanvasReader::OpenFailed;
    }
    QDataStream stream(&file);
    stream.setVersion(MCanvasWriter::streamVersion);
    QUuid read;
    stream >> read;
    if (read.toString().toUpper() != magic.toString().toUpper()) {
        MLogger::systemError(source, formatMessage);
        return MCanvasReader::InvalidMagic;
    }
    qint32 version = 0;
    stream >> version;
    if (stream.status() != QDataStream::Ok)
        return MCanvasReader::ShortRead;
    return body(stream);
}

} // namespace

int MCanvasReader::loadCanvasFromFile(const QString& fileName, MCanvas* canvas)
{
    return loadFromFile(fileName, MCanvasWriter::canvasMagic,
                        QStringLiteral("MCanvasReader::loadCanvasFromFile"),
                        QStringLiteral("Invalid canvas file format"),
                        [canvas](QDataStream& stream) { return loadCanvasFromStream(stream, canvas); });
}

int MCanvasReader::loadLayerFromFile(const QString& fileName, MTextureLayer* layer)
{
    return loadFromFile(fileName, MCanvasWriter::layerMagic,
                        QStringLiteral("MCanvasReader::loadLayerFromFile"),
                        QStringLiteral("Invalid layer file format"),
                        [layer](QDataStream& stream) { return loadLayerFromStream(stream, layer); });
}

int MCanvasReader::loadCanvasFromStream(QDataStream& stream, MCanvas* canvas)
{
    const QString source = QStringLiteral("MCanvasReader::loadCanvasFromStream");
    if (!canvas->makeCurrent())
        MLogger::systemError(source, QStringLiteral("Unable to make current context"));
    canvas->clearLayers();

    QRectF paintedRect;
    stream >> paintedRect;
    canvas->setPaintedRect(paintedRect);
    qint32 paperType = 0;
    QColor paperColor;
    stream >> paperType >> paperColor;
    canvas->setPaperType(MEnum::PaperType(paperType));
    canvas->setPaperColor(paperColor);
    if (paperType == MEnum::Paper) {
        QString paperName;
        QImage paperTile;
        stream >> paperName;
        canvas->setPaperName(paperName);
        stream >> paperTile;
        // The document's own paper wins over the user's paper directory.
        canvas->setPaperTile(paperTile);
    }
    bool autoExtent = false;
    double paintMargin = 0.0;
    stream >> autoExtent >> paintMargin;
    canvas->setAutoExtent(autoExtent);
    canvas->setPaintMargin(paintMargin);

    qint32 layerCount = 0;
    qint32 tileCount = 0;
    stream >> layerCount >> tileCount;
    if (stream.status() != QDataStream::Ok || layerCount < 0) {
        MLogger::systemError(source, QStringLiteral("Invalid canvas header"));
        return ShortRead;
    }

    // No layer is made ahead from the count: a damaged count ends at the first short read.
    for (qint32 i = 0; i < layerCount; ++i) {
        new MCommandAppendLayer(canvas);
        MTextureLayer* layer = canvas->at(canvas->count() - 1);
        if (!layer) {
            canvas->clearLayers();
            return NoLayer;
        }
        const int result = loadLayerFromStream(stream, layer);
        if (result != Success) {
            canvas->clearLayers();
            return result;
        }
        Q_EMIT canvas->updateThumbnail(canvas, canvas->currentRow());
    }
    return Success;
}

int MCanvasReader::loadLayerFromStream(QDataStream& stream, MTextureLayer* layer)
{
    const QString source = QStringLiteral("MCanvasReader::loadLayerFromStream");
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
    stream >> name >> opacity >> locked >> visible >> shaderId >> tileSize >> tileMargin >> bytesPerPixel >>
        tileCount >> bufferSize;
    if (stream.status() != QDataStream::Ok) {
        MLogger::systemError(source, QStringLiteral("Error during readRawData"));
        return ShortRead;
    }
    // Tiles are textures of four bytes a pixel; any other geometry would make
    // the buffer and the texture disagree.
    const bool geometryValid = tileSize > 0 && tileSize <= MTextureTile::maxTileSize && tileMargin >= 0 &&
                               2 * tileMargin < tileSize && bytesPerPixel == MTextureTile::pixelBytes &&
                               bufferSize == qint64(bytesPerPixel) * tileSize * tileSize && tileCount >= 0;
    if (!geometryValid) {
        MLogger::systemError(
            source,
            QStringLiteral("Invalid layer geometry: size %1, margin %2, bytes %3, buffer %4, tiles %5")
                .arg(tileSize)
                .arg(tileMargin)
                .arg(bytesPerPixel)
                .arg(bufferSize)
                .arg(tileCount));
        return ShortRead;
    }

    layer->setName(name);
    layer->setOpacity(opacity);
    layer->setLocked(locked);
    layer->setVisible(visible);
    layer->set_shaderId(shaderId);
    // The grid of existing tiles is laid out by the old geometry.
    if (layer->tileCount() > 0 && (layer->tileSize() != tileSize || layer->tileMargin() != tileMargin))
        layer->clear();
    layer->setTileSize(tileSize);
    layer->setTileMargin(tileMargin);
    layer->setBytesPerPixel(bytesPerPixel);

    if (tileCount == 0)
        return Success;
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[size_t(bufferSize)]);
    if (!buffer) {
        MLogger::systemError(source, QStringLiteral("Buffer memory allocation fail"));
        return ShortRead;
    }
    for (qint32 i = 0; i < tileCount; ++i) {
        QRect rect;
        stream >> rect;
        if (stream.status() != QDataStream::Ok ||
            stream.readRawData(buffer.get(), bufferSize) != bufferSize) {
            MLogger::systemError(source, QStringLiteral("Error during readRawData"));
            return ShortRead;
        }
        auto* tile = dynamic_cast<MTextureTile*>(layer->addTile(QRectF(rect).center()));
        if (!tile || !tile->isCreated() || !tile->setData(static_cast<const void*>(buffer.get()))) {
            MLogger::systemError(
                source, QStringLiteral("Unable to restore tile at %1, %2").arg(rect.x()).arg(rect.y()));
            return ShortRead;
        }
    }
    return Success;
}
