#include "document/mcanvasreader.h"

#include "app/menum.h"
#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mcanvaswriter.h"
#include "document/mcommandappendlayer.h"
#include "document/mquadtree.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QImageReader>
#include <QUuid>
#include <QtEndian>

#include <cmath>
#include <functional>
#include <memory>
#include <new>

namespace {

// The smallest layer record: two empty strings, a double, two bools and five qint32.
constexpr qint64 minLayerRecordSize = 4 + 8 + 1 + 1 + 4 + 5 * 4;
// Deflate never packs more than 1032 bytes into one.
constexpr qint64 maxDeflateRatio = 1032;

QString statusText(const QDataStream& stream)
{
    return stream.status() == QDataStream::ReadCorruptData ? QStringLiteral("Corrupt data")
                                                           : QStringLiteral("Unexpected end of file");
}

// What is left to read, or -1 where the device can't tell.
qint64 bytesLeft(const QDataStream& stream)
{
    const QIODevice* device = stream.device();
    if (!device || device->isSequential())
        return -1;
    return device->size() - device->pos();
}

// A count of records, each at least recordSize bytes, that the rest of the stream can hold.
bool countFits(const QDataStream& stream, qint32 count, qint64 recordSize)
{
    if (count < 0)
        return false;
    const qint64 left = bytesLeft(stream);
    return left < 0 || qint64(count) <= left / recordSize;
}

// Reads up to size bytes in pieces, so that nothing is allocated ahead of
// bytes that are really there.
bool readExactly(QIODevice* device, qint64 size, QByteArray* into)
{
    constexpr qint64 piece = 1 << 20;
    while (size > 0) {
        const QByteArray bytes = device->read(qMin(size, piece));
        if (bytes.isEmpty())
            return false;
        into->append(bytes);
        size -= bytes.size();
    }
    return true;
}

// The standard stream form of an image is a marker, then PNG. The PNG is
// walked chunk by chunk before Qt decodes it, so that no image is allocated
// at a size that a texture couldn't take, or that its compressed data
// couldn't fill even at deflate's best ratio.
int readPaperImage(QDataStream& stream, QImage* image, QString* why)
{
    *image = QImage();
    qint32 marker = 0;
    stream >> marker;
    if (stream.status() != QDataStream::Ok) {
        *why = statusText(stream);
        return MCanvasReader::ShortRead;
    }
    if (marker == 0)
        return MCanvasReader::Success;

    QIODevice* device = stream.device();
    QByteArray png;
    if (!readExactly(device, 8, &png) || png != QByteArray("\x89PNG\r\n\x1a\n", 8)) {
        *why = QStringLiteral("Invalid paper image");
        return MCanvasReader::ShortRead;
    }
    quint32 width = 0;
    quint32 height = 0;
    int depth = 0;
    int colorType = -1;
    qint64 compressed = 0;
    for (bool first = true;; first = false) {
        const int at = png.size();
        if (!readExactly(device, 8, &png)) {
            *why = QStringLiteral("Unexpected end of file in the paper image");
            return MCanvasReader::ShortRead;
        }
        const auto* chunk = reinterpret_cast<const uchar*>(png.constData() + at);
        const quint32 length = qFromBigEndian<quint32>(chunk);
        const QByteArray type = png.mid(at + 4, 4);
        const qint64 left = bytesLeft(stream);
        if (length > 0x7fffffffu || (left >= 0 && qint64(length) + 4 > left) || first != (type == "IHDR") ||
            (first && length != 13)) {
            *why = QStringLiteral("Invalid paper image");
            return MCanvasReader::ShortRead;
        }
        if (!readExactly(device, qint64(length) + 4, &png)) {
            *why = QStringLiteral("Unexpected end of file in the paper image");
            return MCanvasReader::ShortRead;
        }
        const auto* data = reinterpret_cast<const uchar*>(png.constData() + at + 8);
        if (first) {
            width = qFromBigEndian<quint32>(data);
            height = qFromBigEndian<quint32>(data + 4);
            depth = data[8];
            colorType = data[9];
        } else if (type == "IDAT") {
            compressed += length;
        } else if (type == "IEND") {
            break;
        }
    }

    int channels = 0;
    switch (colorType) {
    case 0:
    case 3:
        channels = 1;
        break;
    case 2:
        channels = 3;
        break;
    case 4:
        channels = 2;
        break;
    case 6:
        channels = 4;
        break;
    default:
        break;
    }
    const bool depthValid = depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
    if (width < 1 || height < 1 || width > quint32(MCanvasReader::maxPaperSide) ||
        height > quint32(MCanvasReader::maxPaperSide) || channels == 0 || !depthValid) {
        *why = QStringLiteral("Invalid paper image: %1 x %2, %3 bits, colour type %4")
                   .arg(width)
                   .arg(height)
                   .arg(depth)
                   .arg(colorType);
        return MCanvasReader::ShortRead;
    }
    // The filtered scan lines that the compressed data inflates to.
    const qint64 rawSize = ((qint64(width) * channels * depth + 7) / 8 + 1) * qint64(height);
    if (compressed < rawSize / maxDeflateRatio) {
        *why = QStringLiteral("Paper image of %1 x %2 from %3 compressed bytes")
                   .arg(width)
                   .arg(height)
                   .arg(compressed);
        return MCanvasReader::ShortRead;
    }

    QBuffer buffer(&png);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "png");
    reader.setAutoDetectImageFormat(false);
    if (!reader.read(image) || image->size() != QSize(int(width), int(height))) {
        *image = QImage();
        *why = QStringLiteral("Unreadable paper image: %1").arg(reader.errorString());
        return MCanvasReader::ShortRead;
    }
    return MCanvasReader::Success;
}

int loadFromFile(const QString& fileName, const QUuid& magic, const QString& source,
                 const QString& formatMessage, const std::function<int(QDataStream&, qint32)>& body)
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
    if (stream.status() != QDataStream::Ok) {
        MLogger::systemError(source, statusText(stream));
        return MCanvasReader::ShortRead;
    }
    // The version is not checked: every file so far is 100.
    return body(stream, version);
}

} // namespace

int MCanvasReader::loadCanvasFromFile(const QString& fileName, MCanvas* canvas)
{
    return loadFromFile(
        fileName, MCanvasWriter::canvasMagic, QStringLiteral("MCanvasReader::loadCanvasFromFile"),
        QStringLiteral("Invalid canvas file format"),
        [canvas](QDataStream& stream, qint32) { return loadCanvasFromStream(stream, canvas); });
}

int MCanvasReader::loadLayerFromFile(const QString& fileName, MTextureLayer* layer)
{
    return loadFromFile(fileName, MCanvasWriter::layerMagic,
                        QStringLiteral("MCanvasReader::loadLayerFromFile"),
                        QStringLiteral("Invalid layer file format"),
                        [layer](QDataStream& stream, qint32) { return loadLayerFromStream(stream, layer); });
}

int MCanvasReader::readCanvasHeader(QDataStream& stream, CanvasHeader* header, const QString& source)
{
    auto fail = [&source](const QString& why) {
        MLogger::systemError(source, why);
        return ShortRead;
    };
    stream >> header->paintedRect >> header->paperType;
    if (stream.status() != QDataStream::Ok)
        return fail(statusText(stream));
    // A colour's first byte is its model, which Qt takes as it comes: one
    // out of the enumeration is refused before it becomes a QColor.
    const QByteArray colorModel = stream.device()->peek(1);
    if (colorModel.isEmpty())
        return fail(QStringLiteral("Unexpected end of file"));
    if (qint8(colorModel.at(0)) < qint8(QColor::Invalid) ||
        qint8(colorModel.at(0)) > qint8(QColor::ExtendedRgb))
        return fail(QStringLiteral("Invalid paper color"));
    stream >> header->paperColor;
    if (stream.status() != QDataStream::Ok)
        return fail(statusText(stream));
    const QRectF& rect = header->paintedRect;
    const double limit = MQuadTree::maxCoordinate;
    if (!std::isfinite(rect.x()) || !std::isfinite(rect.y()) || !std::isfinite(rect.width()) ||
        !std::isfinite(rect.height()) || std::abs(rect.x()) > limit || std::abs(rect.y()) > limit ||
        rect.width() < 0 || rect.height() < 0 || rect.width() > 2 * limit || rect.height() > 2 * limit)
        return fail(QStringLiteral("Invalid painted rectangle"));
    if (header->paperType != MEnum::Transparent && header->paperType != MEnum::Colored &&
        header->paperType != MEnum::Paper)
        return fail(QStringLiteral("Invalid paper type %1").arg(header->paperType));

    header->paperName.clear();
    header->paperTile = QImage();
    if (header->paperType == MEnum::Paper) {
        stream >> header->paperName;
        if (stream.status() != QDataStream::Ok)
            return fail(statusText(stream));
        QString why;
        if (readPaperImage(stream, &header->paperTile, &why) != Success)
            return fail(why);
    }
    stream >> header->autoExtent >> header->paintMargin >> header->layerCount >> header->tileCount;
    if (stream.status() != QDataStream::Ok)
        return fail(statusText(stream));
    if (!std::isfinite(header->paintMargin))
        return fail(QStringLiteral("Invalid paint margin"));
    // Each layer takes some bytes, so a count that the rest of the file can't
    // hold is refused before a layer is made. The total of tiles is not used.
    if (!countFits(stream, header->layerCount, minLayerRecordSize))
        return fail(QStringLiteral("Invalid layer count %1").arg(header->layerCount));
    return Success;
}

int MCanvasReader::readLayerHeader(QDataStream& stream, LayerHeader* header, const QString& source)
{
    stream >> header->name >> header->opacity >> header->locked >> header->visible >> header->shaderId >>
        header->tileSize >> header->tileMargin >> header->bytesPerPixel >> header->tileCount >>
        header->bufferSize;
    if (stream.status() != QDataStream::Ok) {
        MLogger::systemError(source, statusText(stream));
        return ShortRead;
    }
    if (!std::isfinite(header->opacity)) {
        MLogger::systemError(source, QStringLiteral("Invalid layer opacity"));
        return ShortRead;
    }
    // Tiles are GPU textures of one geometry; any other would make the
    // buffer, the texture and the tile grid disagree.
    if (header->tileSize != tileSize || header->tileMargin != tileMargin ||
        header->bytesPerPixel != bytesPerPixel || header->bufferSize != bufferSize) {
        MLogger::systemError(source,
                             QStringLiteral("Invalid layer geometry: size %1, margin %2, bytes %3, buffer %4")
                                 .arg(header->tileSize)
                                 .arg(header->tileMargin)
                                 .arg(header->bytesPerPixel)
                                 .arg(header->bufferSize));
        return ShortRead;
    }
    // A count beyond the file ends at the first short read: every tile is
    // read into the one buffer before anything is made of it.
    if (header->tileCount < 0) {
        MLogger::systemError(source, QStringLiteral("Invalid tile count %1").arg(header->tileCount));
        return ShortRead;
    }
    return Success;
}

int MCanvasReader::loadCanvasFromStream(QDataStream& stream, MCanvas* canvas)
{
    const QString source = QStringLiteral("MCanvasReader::loadCanvasFromStream");
    if (!canvas->makeCurrent())
        MLogger::systemError(source, QStringLiteral("Unable to make current context"));
    canvas->clearLayers();

    CanvasHeader header;
    const int headerResult = readCanvasHeader(stream, &header, source);
    if (headerResult != Success)
        return headerResult;
    canvas->setPaintedRect(header.paintedRect);
    canvas->setPaperType(MEnum::PaperType(header.paperType));
    canvas->setPaperColor(header.paperColor);
    if (header.paperType == MEnum::Paper) {
        canvas->setPaperName(header.paperName);
        // The document's own paper wins over the user's paper directory.
        canvas->setPaperTile(header.paperTile);
    }
    canvas->setAutoExtent(header.autoExtent);
    canvas->setPaintMargin(header.paintMargin);

    for (qint32 i = 0; i < header.layerCount; ++i) {
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
    LayerHeader header;
    const int headerResult = readLayerHeader(stream, &header, source);
    if (headerResult != Success)
        return headerResult;

    layer->setName(header.name);
    layer->setOpacity(header.opacity);
    layer->setLocked(header.locked);
    layer->setVisible(header.visible);
    layer->set_shaderId(header.shaderId);
    // The grid of existing tiles is laid out by the old geometry.
    if (layer->tileCount() > 0 &&
        (layer->tileSize() != header.tileSize || layer->tileMargin() != header.tileMargin))
        layer->clear();
    layer->setTileSize(header.tileSize);
    layer->setTileMargin(header.tileMargin);
    layer->setBytesPerPixel(header.bytesPerPixel);

    if (header.tileCount == 0)
        return Success;
    // One buffer, of the one checked size, serves every tile.
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[size_t(bufferSize)]);
    if (!buffer) {
        MLogger::systemError(source, QStringLiteral("Buffer memory allocation fail"));
        return ShortRead;
    }
    for (qint32 i = 0; i < header.tileCount; ++i) {
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

int MCanvasReader::readCanvasInfo(const QString& fileName, CanvasInfo* info)
{
    const QString source = QStringLiteral("MCanvasReader::readCanvasInfo");
    *info = CanvasInfo();
    return loadFromFile(
        fileName, MCanvasWriter::canvasMagic, source, QStringLiteral("Invalid canvas file format"),
        [info, &source](QDataStream& stream, qint32 version) {
            const int headerResult = readCanvasHeader(stream, &info->header, source);
            info->header.version = version;
            if (headerResult != Success)
                return headerResult;
            for (qint32 i = 0; i < info->header.layerCount; ++i) {
                LayerInfo layer;
                const int result = readLayerHeader(stream, &layer.header, source);
                if (result != Success)
                    return result;
                for (qint32 t = 0; t < layer.header.tileCount; ++t) {
                    QRect rect;
                    stream >> rect;
                    if (stream.status() != QDataStream::Ok || stream.skipRawData(bufferSize) != bufferSize) {
                        MLogger::systemError(source, QStringLiteral("Error during readRawData"));
                        return int(ShortRead);
                    }
                    layer.tiles.append(rect);
                }
                info->layers.append(layer);
            }
            return int(Success);
        });
}
