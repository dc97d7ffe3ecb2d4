#include "document/mtexturetile.h"

#include "app/mlogger.h"
#include "app/msettings.h"
#include "app/mutility.h"
#include "document/mundolayer.h"
#include "gpu/mframebuffer.h"
#include "gpu/mopengl.h"

#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QImage>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLPixelTransferOptions>
#include <QOpenGLTexture>
#include <QUuid>

#include <cstring>
#include <new>

namespace {

QString newBackupId()
{
    return QUuid::createUuid().toString().toUpper();
}

} // namespace

MTextureTile::MTextureTile(MTiledLayer* layer) : MTile(layer), m_undoLayer(std::make_unique<MUndoLayer>()) {}

// The texture is deleted here too; with no current context Qt can only warn
// and the GL name is lost with its context.
MTextureTile::~MTextureTile() = default;

bool MTextureTile::isValid() const
{
    return MTile::isValid() && m_texture;
}

qint64 MTextureTile::bufferSize() const
{
    const int size = tileSize();
    if (size <= 0 || size > maxTileSize)
        return 0;
    return qint64(size) * size * pixelBytes;
}

QOpenGLFunctions* MTextureTile::functions(const QString& source) const
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        MLogger::systemError(source, QStringLiteral("No current OpenGL context"));
        return nullptr;
    }
    return context->functions();
}

void MTextureTile::initializeGL()
{
    static const QString source = QStringLiteral("MTextureTile::initializeGL");
    if (m_isInitialized || m_hasError)
        return;
    // Without a context nothing is tried, and the tile stays free to try again
    // later: a missing context is the caller's fault, not the tile's.
    if (!functions(source))
        return;

    const int size = tileSize();
    QImage image;
    if (bufferSize() > 0)
        image = QImage(size, size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        MLogger::systemError(source, QStringLiteral("Image memory allocation fail"));
        m_hasError = true;
        return;
    }
    image.fill(Qt::transparent);

    m_texture.reset(new (std::nothrow) QOpenGLTexture(QOpenGLTexture::Target2D));
    if (!m_texture) {
        MLogger::systemError(source, QStringLiteral("Unable to instanciate texture"));
        m_hasError = true;
        return;
    }
    if (!createStorage()) {
        MLogger::systemError(source, QStringLiteral("Unable to create texture"));
        m_hasError = true;
        return;
    }
    m_texture->setData(image, QOpenGLTexture::DontGenerateMipMaps);
    if (!m_texture->isStorageAllocated()) {
        MLogger::systemError(source, QStringLiteral("Unable to allocate texture storage"));
        m_hasError = true;
        return;
    }
    m_isInitialized = true;
}

bool MTextureTile::createStorage()
{
    if (m_texture->isCreated())
        m_texture->destroy();
    if (!m_texture->create())
        return false;
    const int size = tileSize();
    m_texture->setSize(size, size, 1);
    m_texture->setFormat(QOpenGLTexture::RGBA8_UNorm);
    m_texture->setMinMagFilters(QOpenGLTexture::Nearest, QOpenGLTexture::Nearest);
    return true;
}

bool MTextureTile::isCreated()
{
    initializeGL();
    if (!m_isInitialized || !m_texture)
        return false;
    if (!m_texture->isCreated()) {
        m_texture.reset();
        m_isInitialized = false;
        initializeGL();
    }
    return m_isInitialized && m_texture && m_texture->isCreated();
}

void MTextureTile::shutDown()
{
    if (!m_texture) {
        m_isInitialized = false;
        return;
    }
    if (!functions(QStringLiteral("MTextureTile::shutDown")))
        return;
    if (m_texture->isCreated())
        m_texture->destroy();
    m_texture.reset();
    m_isInitialized = false;
}

bool MTextureTile::bind()
{
    if (!isValid() || !functions(QStringLiteral("MTextureTile::bind")))
        return false;
    m_texture->bind();
    return true;
}

void MTextureTile::release()
{
    if (isValid() && functions(QStringLiteral("MTextureTile::release")))
        m_texture->release();
}

unsigned MTextureTile::textureId() const
{
    return isValid() ? m_texture->textureId() : 0;
}

bool MTextureTile::setData(const QImage& image)
{
    static const QString source = QStringLiteral("MTextureTile::setData");
    if (!isValid() || !functions(source))
        return false;
    if (image.isNull()) {
        MLogger::systemError(source, QStringLiteral("Null image"));
        return false;
    }
    const int size = tileSize();
    QImage converted = image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    if (converted.size() != QSize(size, size)) {
        converted = converted.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                        .convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    }
    // The upload reads size * size packed pixels, so an image that kept its
    // aspect ratio (and so is smaller on one side) or that has padded rows is
    // copied into a transparent tile-sized image first.
    if (converted.size() != QSize(size, size) || converted.bytesPerLine() != size * pixelBytes) {
        QImage packed(size, size, QImage::Format_RGBA8888_Premultiplied);
        if (packed.isNull()) {
            MLogger::systemError(source, QStringLiteral("Image memory allocation fail"));
            return false;
        }
        packed.fill(Qt::transparent);
        const int rows = qMin(size, converted.height());
        const size_t rowBytes = size_t(qMin(size, converted.width())) * pixelBytes;
        for (int y = 0; y < rows; ++y)
            std::memcpy(packed.scanLine(y), converted.constScanLine(y), rowBytes);
        converted = packed;
    }

    if (!createStorage()) {
        MLogger::systemError(source, QStringLiteral("Unable to create texture"));
        return false;
    }
    m_texture->setFormat(QOpenGLTexture::RGBA8_UNorm);
    m_texture->setSize(size, size);
    m_texture->setMipLevels(m_texture->maximumMipLevels());
    m_texture->allocateStorage();
    QOpenGLPixelTransferOptions options;
    options.setAlignment(1);
    m_texture->setData(0, QOpenGLTexture::RGBA, QOpenGLTexture::UInt8, converted.constBits(), &options);
    updateMipmaps();
    return true;
}

bool MTextureTile::setData(const void* buffer)
{
    static const QString source = QStringLiteral("MTextureTile::setData");
    if (!buffer) {
        MLogger::systemError(source, QStringLiteral("This function request a non null buffer"));
        return false;
    }
    QOpenGLFunctions* gl = functions(source);
    if (!isValid() || !gl)
        return false;
    const int size = tileSize();
    // Errors left by earlier calls would otherwise be taken for ours.
    MOpenGL::clearErrors();
    // With an unpack buffer bound the pointer would be read as an offset into it.
    gl->glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    m_texture->bind();
    gl->glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, size, size, GL_RGBA, GL_UNSIGNED_BYTE, buffer);
    const GLenum error = gl->glGetError();
    m_texture->release();
    if (error != GL_NO_ERROR) {
        MLogger::systemError(source, QStringLiteral("Error during texture set data: 0x%1").arg(error, 0, 16));
        return false;
    }
    updateMipmaps();
    return true;
}

bool MTextureTile::toBuffer(void* buffer)
{
    static const QString source = QStringLiteral("MTextureTile::toBuffer");
    if (!buffer) {
        MLogger::systemError(source, QStringLiteral("This function request a non null buffer"));
        return false;
    }
    QOpenGLFunctions* gl = functions(source);
    if (!isValid() || !gl)
        return false;
    const int size = tileSize();

    GLint savedRead = 0;
    gl->glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &savedRead);
    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    gl->glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    MOpenGL::clearErrors();

    MFrameBuffer framebuffer;
    bool ok = framebuffer.attachTexture(m_texture->textureId(), 0);
    GLenum error = GL_NO_ERROR;
    if (ok) {
        gl->glReadPixels(0, 0, size, size, GL_RGBA, GL_UNSIGNED_BYTE, buffer);
        error = gl->glGetError();
        ok = error == GL_NO_ERROR;
    }
    if (!ok) {
        MLogger::systemError(source, QStringLiteral("Error during texture pixel read"));
        qDebug() << "GL error" << Qt::hex << error;
    }
    gl->glFinish();
    framebuffer.release();
    framebuffer.destroy();
    if (savedRead != 0)
        gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(savedRead));
    return ok;
}

bool MTextureTile::updateMipmaps()
{
    if (!isValid() || !MSettings::instance()->generateMipmaps())
        return false;
    QOpenGLFunctions* gl = functions(QStringLiteral("MTextureTile::updateMipmaps"));
    if (!gl)
        return false;
    gl->glActiveTexture(GL_TEXTURE0);
    m_texture->bind();
    m_texture->generateMipMaps();
    gl->glFinish();
    m_texture->release();
    return true;
}

void MTextureTile::recordChange(const QRectF& rect)
{
    const QRect outer = outerRect();
    QRect changed = rect.intersected(QRectF(outer)).toAlignedRect();
    if (changed.isEmpty())
        return;
    changed.translate(-outer.topLeft());
    m_undoLayer->tilesInRect(QRectF(changed), m_changedTiles);
}

void MTextureTile::clearChanges()
{
    m_changedTiles.clear();
    m_undoLayer->clear();
}

std::unique_ptr<uchar[]> MTextureTile::allocateBuffer(const QString& source) const
{
    const qint64 size = bufferSize();
    if (size <= 0) {
        MLogger::systemError(source, QStringLiteral("Invalid tile size: %1").arg(tileSize()));
        return nullptr;
    }
    std::unique_ptr<uchar[]> buffer(new (std::nothrow) uchar[size_t(size)]);
    if (!buffer)
        MLogger::systemError(source, QStringLiteral("Buffer memory allocation fail"));
    return buffer;
}

bool MTextureTile::saveBuffer(const QString& path, const QSet<MTile*>& changedTiles)
{
    static const QString source = QStringLiteral("MTextureTile::saveBuffer");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        MLogger::systemError(source, QStringLiteral("Cannot save file: %1").arg(path));
        return false;
    }
    std::unique_ptr<uchar[]> buffer = allocateBuffer(source);
    if (!buffer || !toBuffer(buffer.get())) {
        MLogger::systemError(source, QStringLiteral("Cannot create buffer from texture: %1").arg(path));
        // An empty file would later read as a damaged one rather than a missing one.
        file.remove();
        return false;
    }

    const int size = tileSize();
    const qint64 bytes = bufferSize();
    // Cells are clipped to the tile, so that a cell of a foreign grid can't
    // make the copy read outside the buffer.
    const QRect tileRect(0, 0, size, size);
    QVector<QRect> blocks;
    for (const MTile* cell : changedTiles) {
        if (!cell)
            continue;
        const QRect outer = cell->outerRect();
        if (outer.x() >= size || outer.y() >= size)
            continue;
        const QRect block = outer.intersected(tileRect);
        if (!block.isEmpty())
            blocks.append(block);
    }

    QDataStream out(&file);
    bool ok = true;
    if (blocks.isEmpty()) {
        // With no cell to write the whole tile goes out, so a backup is never empty.
        out << qint32(-1);
        ok = out.writeRawData(reinterpret_cast<const char*>(buffer.get()), int(bytes)) == bytes;
    } else {
        out << qint32(blocks.size());
        for (const QRect& block : blocks) {
            out << block;
            const int rowBytes = block.width() * pixelBytes;
            for (int y = block.top(); y <= block.bottom(); ++y) {
                const uchar* row = buffer.get() + (qint64(y) * size + block.left()) * pixelBytes;
                if (out.writeRawData(reinterpret_cast<const char*>(row), rowBytes) != rowBytes)
                    ok = false;
            }
        }
    }
    if (out.status() != QDataStream::Ok || !file.flush())
        ok = false;
    if (!ok)
        MLogger::systemError(source, QStringLiteral("Short write to file: %1").arg(path));
    return ok;
}

// At most one block per 64-pixel cell of the undo grid: that is all the
// writer ever produces, since it writes each changed cell once, clipped to
// the tile. The bound comes from the tile's own geometry, not from the file.
int MTextureTile::maxBlockCount() const
{
    const int cell = qMax(1, m_undoLayer->innerSize());
    const int perSide = (tileSize() + cell - 1) / cell;
    return perSide * perSide;
}

std::unique_ptr<uchar[]> MTextureTile::loadBuffer(const QString& path)
{
    static const QString source = QStringLiteral("MTextureTile::loadBuffer");
    QFile file(path);
    if (!file.exists() || !file.open(QIODevice::ReadOnly)) {
        MLogger::systemError(source, QStringLiteral("Cannot open file: %1").arg(path));
        return nullptr;
    }
    QDataStream in(&file);
    qint32 count = 0;
    in >> count;
    if (in.status() != QDataStream::Ok) {
        MLogger::systemError(source, QStringLiteral("Cannot read block count in file: %1").arg(path));
        return nullptr;
    }
    if (count != -1 && (count <= 0 || count > maxBlockCount())) {
        MLogger::systemError(source,
                             QStringLiteral("Invalid block count %1 in file: %2").arg(count).arg(path));
        return nullptr;
    }
    // Sized by the tile's own geometry, whatever the file says.
    std::unique_ptr<uchar[]> buffer = allocateBuffer(source);
    if (!buffer)
        return nullptr;
    const int size = tileSize();
    const qint64 bytes = bufferSize();

    if (count == -1) {
        const int read = in.readRawData(reinterpret_cast<char*>(buffer.get()), int(bytes));
        if (read != bytes) {
            MLogger::systemError(source, QStringLiteral("Buffer length error. read: %1, should read: %2")
                                             .arg(qMax(read, 0))
                                             .arg(bytes));
            return nullptr;
        }
        return buffer;
    }

    if (!toBuffer(buffer.get())) {
        MLogger::systemError(source, QStringLiteral("Cannot create buffer from texture: %1").arg(path));
        return nullptr;
    }
    // A file that stops at a block boundary before count blocks keeps the
    // blocks read so far, silently: only the whole-tile shape checks its
    // length. A block cut in its rectangle or its pixels, though, proves the
    // file damaged, and the whole load is refused: the rows already copied
    // land in a buffer that is then dropped, so no partial block ever reaches
    // the texture.
    for (qint32 i = 0; i < count && !in.atEnd(); ++i) {
        qint32 left = 0, top = 0, right = 0, bottom = 0;
        in >> left >> top >> right >> bottom;
        if (in.status() != QDataStream::Ok) {
            MLogger::systemError(
                source, QStringLiteral("Block %1 is cut in its rectangle in file: %2").arg(i).arg(path));
            return nullptr;
        }
        // QRect's right and bottom are inclusive; both ends must lie in the tile.
        if (left < 0 || top < 0 || right >= size || bottom >= size || right < left || bottom < top) {
            MLogger::systemError(source,
                                 QStringLiteral("Invalid block %1 rectangle (%2, %3, %4, %5) in file: %6")
                                     .arg(i)
                                     .arg(left)
                                     .arg(top)
                                     .arg(right)
                                     .arg(bottom)
                                     .arg(path));
            return nullptr;
        }
        const int rowBytes = (right - left + 1) * pixelBytes;
        const int blockBytes = rowBytes * (bottom - top + 1);
        int blockRead = 0;
        for (int y = top; y <= bottom; ++y) {
            uchar* row = buffer.get() + (qint64(y) * size + left) * pixelBytes;
            const int read = in.readRawData(reinterpret_cast<char*>(row), rowBytes);
            blockRead += qMax(read, 0);
            if (read != rowBytes) {
                MLogger::systemError(source, QStringLiteral("Buffer length error. read: %1, should read: %2")
                                                 .arg(blockRead)
                                                 .arg(blockBytes));
                return nullptr;
            }
        }
    }
    return buffer;
}

bool MTextureTile::saveBackup(const QSet<MTile*>& changedTiles)
{
    const QString id = newBackupId();
    if (!saveBuffer(MUtility::tileFilePath(id), changedTiles))
        return false;
    m_backupId = id;
    return true;
}

bool MTextureTile::backup(const void* buffer)
{
    static const QString source = QStringLiteral("MTextureTile::backup");
    if (!buffer) {
        MLogger::systemError(source, QStringLiteral("Cannot save null buffer"));
        return false;
    }
    const qint64 bytes = bufferSize();
    if (bytes <= 0) {
        MLogger::systemError(source, QStringLiteral("Invalid tile size: %1").arg(tileSize()));
        return false;
    }
    const QString id = newBackupId();
    const QString path = MUtility::tileFilePath(id);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        MLogger::systemError(source, QStringLiteral("Cannot save file: %1").arg(path));
        return false;
    }
    QDataStream out(&file);
    out << qint32(-1);
    const bool ok = out.writeRawData(static_cast<const char*>(buffer), int(bytes)) == bytes &&
                    out.status() == QDataStream::Ok && file.flush();
    if (!ok) {
        MLogger::systemError(source, QStringLiteral("Cannot save file: %1").arg(path));
        return false;
    }
    m_backupId = id;
    return true;
}

bool MTextureTile::restoreBackup(const QString& id)
{
    const std::unique_ptr<uchar[]> buffer = loadBuffer(MUtility::tileFilePath(id));
    if (!buffer || !setData(static_cast<const void*>(buffer.get())))
        return false;
    m_backupId = id;
    return true;
}
