#pragma once

#include <QHash>
#include <QObject>
#include <QOpenGLFunctions>
#include <QRectF>

#include <memory>

class MCanvas;
class MFrameBuffer;
class MShaderProgramList;
class MTextureLayer;
class MVertexBuffer;
class QImage;
class QOpenGLTexture;
class QOpenGLVertexArrayObject;

// What one canvas keeps on the GPU between stylus samples: the stamp buffer,
// the frame buffer, the program list, the empty texture that stands in for
// every missing tile, the colour sample textures and the brush texture.
class MSharedData : public QObject, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    static constexpr int stampBufferCapacity = 60000;
    static constexpr int minimumColorTextureSize = 4;
    static constexpr int defaultMaximumColorTextureSize = 100;

    explicit MSharedData(MCanvas* canvas);
    ~MSharedData() override;

    MCanvas* canvas() const { return m_canvas; }
    bool isValid() const { return m_valid && !m_failed; }
    bool hasFailed() const { return m_failed; }
    MVertexBuffer* stampBuffer() const { return m_stampBuffer.get(); }
    MFrameBuffer* frameBuffer() const { return m_frameBuffer.get(); }
    MShaderProgramList* programList() const { return m_programList; }
    QOpenGLTexture* emptyTexture() const { return m_emptyTexture.get(); }
    QOpenGLTexture* brushTexture() const { return m_brushTexture.get(); }
    QOpenGLVertexArrayObject* vertexArray() const { return m_vertexArray.get(); }

    int colorTextureSize() const { return m_colorTextureSize; }
    int maximumColorTextureSize() const { return m_maximumColorTextureSize; }
    QOpenGLTexture* colorTexture(int size) const { return m_colorTextures.value(size); }
    QOpenGLTexture* colorFeedbackTexture(int size) const { return m_colorFeedbackTextures.value(size); }
    void swapColorTextures(int size);
    // The colour sample size of a brush: four times the half radius, truncated, in the made range.
    void setColorTextureSize(double brushRadius);

    int currentLayerIndex() const { return m_currentLayerIndex; }
    void setCurrentLayerIndex(int index) { m_currentLayerIndex = index; }
    MTextureLayer* currentLayer() const;
    // The layer under the current one; null for the bottom layer.
    MTextureLayer* underLayer() const;

    QRectF paintedRectAtStart() const { return m_paintedRectAtStart; }
    void setPaintedRectAtStart(const QRectF& rect) { m_paintedRectAtStart = rect; }
    QRectF strokeRectangle() const { return m_strokeRectangle; }
    void setStrokeRectangle(const QRectF& rect) { m_strokeRectangle = rect; }
    int stampCount() const { return m_stampCount; }
    void setStampCount(int count) { m_stampCount = count; }

    bool loadBrushTexture(const QImage& image);
    void unloadBrushTexture();

    // A mipmapped RGBA8 texture of the image; null when it can't be made.
    static QOpenGLTexture* createTexture(const QImage& image);
    // The 2 by 2 transparent texture that stands in for missing tiles;
    // failures are logged under source.
    static std::unique_ptr<QOpenGLTexture> createEmptyTexture(const QString& source);

public Q_SLOTS:
    // Idempotent; a failure is final until shutDown.
    void initializeGL();
    void shutDown();

private:
    bool createColorTextures();
    void destroyColorTextures();

    MCanvas* m_canvas;
    std::unique_ptr<MVertexBuffer> m_stampBuffer;
    int m_currentLayerIndex = -1;
    bool m_valid = false;
    bool m_failed = false;
    std::unique_ptr<MFrameBuffer> m_frameBuffer;
    QRectF m_paintedRectAtStart;
    QRectF m_strokeRectangle;
    MShaderProgramList* m_programList;
    std::unique_ptr<QOpenGLTexture> m_emptyTexture;
    std::unique_ptr<QOpenGLTexture> m_brushTexture;
    int m_colorTextureSize = 64;
    QHash<int, QOpenGLTexture*> m_colorTextures;
    QHash<int, QOpenGLTexture*> m_colorFeedbackTextures;
    int m_maximumColorTextureSize = defaultMaximumColorTextureSize;
    int m_stampCount = 0;
    std::unique_ptr<QOpenGLVertexArrayObject> m_vertexArray;
};
