#pragma once

#include "app/msingleton.h"

#include <QObject>

#include <memory>

class MBufferTile;
class MFrameBuffer;
class MTextureTile;
class QOpenGLContext;

// Reads tile textures back into host memory through pixel buffer objects. It
// is made once at start-up for the tile geometry of texture layers, and takes
// only buffers of that geometry.
//
// The pixel buffers belong to the share group, so any context of the program
// may use them. Framebuffers are not shared: the one the transfer reads
// through gets its GL name afresh in the caller's context for each read.
class MTextureTransfert : public QObject, public MSingleton<MTextureTransfert>
{
    Q_OBJECT

public:
    static constexpr int bufferCount = 4;

    ~MTextureTransfert() override;

    // Makes and registers the one object; an existing one is returned as it is.
    static MTextureTransfert* create(int tileSize, int margin, int bytesPerPixel);

    bool isInitialized() const { return m_initialized; }
    int tileSize() const { return m_tileSize; }
    int margin() const { return m_margin; }
    int bytesPerPixel() const { return m_bytesPerPixel; }
    int currentBufferIndex() const { return m_currentBufferIndex; }

    // Once: the pixel buffers, made in context.
    bool initializeGL(QOpenGLContext* context);
    // Frees the pixel buffers; context must share with the one they were made in.
    void shutDown(QOpenGLContext* context);

    // The whole texture into the tile's buffer, as RGBA rows in texture order.
    bool textureIdToBufferTile(QOpenGLContext* context, unsigned textureId, MBufferTile* tile);
    bool textureTileToBufferTile(QOpenGLContext* context, MTextureTile* source, MBufferTile* tile);

private:
    MTextureTransfert(int tileSize, int margin, int bytesPerPixel);

    bool m_initialized = false;
    int m_tileSize;
    int m_margin;
    int m_bytesPerPixel;
    int m_currentBufferIndex = 0;
    unsigned m_bufferNames[bufferCount] = {};
    std::unique_ptr<MFrameBuffer> m_frameBuffer;
};
