#pragma once

#include "document/mtile.h"

#include <QSet>
#include <QString>

#include <memory>

class MUndoLayer;
class QImage;
class QOpenGLFunctions;
class QOpenGLTexture;

// A tile whose pixels live in a GL_RGBA8 texture of premultiplied alpha. The
// texture is made on first touch (isCreated), so a tree can hold many tiles
// that cost no GPU memory yet. Every GL operation needs a current context that
// shares with the one the texture was made in; without one it reports and
// fails.
class MTextureTile : public MTile
{
public:
    // The GPU format is fixed, so a pixel is always 4 bytes here whatever the
    // layer's own field says.
    static constexpr int pixelBytes = 4;
    // A larger tile is refused before any buffer is allocated for it.
    static constexpr int maxTileSize = 16384;

    explicit MTextureTile(MTiledLayer* layer);
    ~MTextureTile() override;

    bool isValid() const override;

    QOpenGLTexture* texture() const { return m_texture.get(); }
    // The id of the .data file holding the tile's last saved content.
    QString backupId() const { return m_backupId; }
    // 64-pixel cells, in texture coordinates, that record what changed.
    MUndoLayer* undoLayer() const { return m_undoLayer.get(); }
    // The cells of undoLayer touched since the last backup.
    const QSet<MTile*>& changedTiles() const { return m_changedTiles; }
    // The byte size of a raw buffer of the whole tile; 0 for an unusable tile size.
    qint64 bufferSize() const;

    // Makes the transparent texture once; a failure is final (hasError).
    void initializeGL();
    // Makes sure the texture exists, making it again if it was destroyed.
    bool isCreated();
    // Frees the texture; a later initializeGL brings back an empty one.
    void shutDown();

    bool bind();
    void release();
    unsigned textureId() const;

    // Replaces the whole content from an image, scaled to the tile when its size differs.
    bool setData(const QImage& image);
    // Replaces the whole content from bufferSize() bytes of RGBA.
    bool setData(const void* buffer);
    // Reads the whole texture into bufferSize() bytes of RGBA.
    bool toBuffer(void* buffer);
    bool updateMipmaps();

    // Notes that rect, in layer coordinates, changed.
    void recordChange(const QRectF& rect);
    void clearChanges();

    // Writes the tile to path: the cells of changedTiles only, or the whole
    // tile when there are none.
    bool saveBuffer(const QString& path, const QSet<MTile*>& changedTiles);
    // Reads a file written by saveBuffer into a whole-tile buffer; cells that
    // the file doesn't hold keep the texture's present content. Null on any
    // failure.
    std::unique_ptr<uchar[]> loadBuffer(const QString& path);
    // Writes buffer as a whole tile to a new file; the id goes to backupId.
    bool backup(const void* buffer);
    // Writes the present content to a new file; the id goes to backupId.
    bool saveBackup(const QSet<MTile*>& changedTiles);
    bool restoreBackup(const QString& id);

private:
    QOpenGLFunctions* functions(const QString& source) const;
    bool createStorage();
    std::unique_ptr<uchar[]> allocateBuffer(const QString& source) const;
    int maxBlockCount() const;

    std::unique_ptr<QOpenGLTexture> m_texture;
    QString m_backupId;
    std::unique_ptr<MUndoLayer> m_undoLayer;
    QSet<MTile*> m_changedTiles;
};
