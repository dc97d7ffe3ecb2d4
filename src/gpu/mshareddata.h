#pragma once

#include "app/mevent.h"
#include "brush/mbrush.h"

#include <QColor>
#include <QHash>
#include <QObject>
#include <QOpenGLFunctions>
#include <QRectF>
#include <QStringList>
#include <QVector>

#include <array>
#include <memory>

class MCanvas;
class MFrameBuffer;
class MShader;
class MShaderProgramList;
class MTextureLayer;
class MVertexBuffer;
class QImage;
class QOpenGLTexture;
class QOpenGLVertexArrayObject;

// What one canvas keeps between stylus samples: on the GPU the stamp buffer,
// the frame buffer, the program list, the empty texture that stands in for
// every missing tile, the colour sample textures, the brush texture and the
// images of a brush engine; beside them the private copy of the stroke's
// brush and, for each parallel stroke, its setting values and last event.
class MSharedData : public QObject, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    static constexpr int stampBufferCapacity = 60000;
    static constexpr int minimumColorTextureSize = 4;
    static constexpr int defaultMaximumColorTextureSize = 100;
    // The most strokes one sample drives at once (mirror images).
    static constexpr int maximumStrokeCount = 30;

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
    // The images a brush engine declares, made once for each canvas: true when
    // every one of them is there. Null or image-less engines need nothing.
    bool loadEngineTextures(MShader* engine);
    // The texture of the engine's image declared at index; null when none.
    QOpenGLTexture* engineTexture(const QString& engineId, int index) const;

    // The stroke's own copy of the brush: edits of the brush during a stroke
    // don't reach it.
    MBrush* brush() const { return m_brush; }
    void setBrush(const MBrush& brush);
    // The brush's settings as read at stroke start.
    const MBrush::SettingValues& baseValues() const { return m_baseValues; }
    void setBaseValues(const MBrush::SettingValues& values) { m_baseValues = values; }
    // The settings after dynamics, and the last stamped event, of parallel
    // stroke index; null outside 0 to maximumStrokeCount - 1.
    MBrush::SettingValues* values(int index);
    const MBrush::SettingValues* values(int index) const;
    MEvent* lastEvent(int index);
    QColor brushColor() const { return m_brushColor; }
    void setBrushColor(const QColor& color) { m_brushColor = color; }
    QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor& color) { m_borderColor = color; }

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
    void destroyEngineTextures();

    MCanvas* m_canvas;
    std::unique_ptr<MVertexBuffer> m_stampBuffer;
    // A child of this object.
    MBrush* m_brush;
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
    MBrush::SettingValues m_baseValues{};
    std::array<MBrush::SettingValues, maximumStrokeCount> m_values{};
    std::array<MEvent, maximumStrokeCount> m_lastEvents;
    QColor m_brushColor;
    QColor m_borderColor;
    std::unique_ptr<QOpenGLVertexArrayObject> m_vertexArray;
    struct EngineTextures
    {
        // What they were made from: a changed declaration makes them anew.
        QStringList fileNames;
        // In the order of the declarations; null where an image failed.
        QVector<QOpenGLTexture*> textures;
    };
    // By engine id.
    QHash<QString, EngineTextures> m_engineTextures;
};
