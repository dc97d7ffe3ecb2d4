#pragma once

#include <QColor>
#include <QElapsedTimer>
#include <QMatrix4x4>
#include <QObject>
#include <QOpenGLFunctions>
#include <QRectF>
#include <QVector>

#include <memory>

class MCanvas;
class MPaintParams;
class MShader;
class MShaderProgramList;
class MTextureLayer;
class MTextureTile;
class MVertexBuffer;
class QOpenGLShaderProgram;
class QOpenGLTexture;
class QOpenGLVertexArrayObject;

// Turns a canvas into pixels on whatever target is bound: paper, then each
// visible layer tile by tile through the program its effect names. It also
// writes into tiles (blit, merge, effect, fill), going through its work
// texture wherever a tile would read itself. One engine belongs to a canvas.
class MPaintEngine : public QObject, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    explicit MPaintEngine(MCanvas* canvas);
    ~MPaintEngine() override;

    bool isInitialized() const { return m_initialized; }
    // Needs a current context; true once everything is made.
    bool initializeGL();
    void shutDown();

    // A view redraw: paper, layers and, with selectionEnabled and no selection
    // path, the outline of the painted selection mask; with tiling, the same
    // four more times beside the page (right, left, down, up).
    void drawView(MPaintParams* params, bool selectionEnabled, bool tiling);
    void drawPaper(MPaintParams* params);
    void drawLayers(MPaintParams* params);
    void drawLayer(MPaintParams* params);
    // One rectangle in widget coordinates, for overlays.
    void drawWidgetRectangle(MPaintParams* params, const QRectF& rect, const QColor& color, double opacity);
    // The texture of the layer's tile at point, or the empty texture. Never
    // makes a tile.
    unsigned tileTexture(MTextureLayer* layer, const QPointF& point);
    void createShaderTextures(MShader* shader);
    void clearShaderTextures();
    void viewMatrix(MPaintParams* params, QMatrix4x4& result);
    QOpenGLTexture* workTexture() const { return m_workTexture.get(); }
    QOpenGLTexture* emptyTexture() const { return m_emptyTexture.get(); }

    // Tile operations. The factors are those of glBlendFunc.
    void blitTexture(MTextureTile* target, unsigned sourceTextureId, int sourceFactor, int destinationFactor,
                     MShaderProgramList* programs, const QString& programName, double opacity,
                     QOpenGLVertexArrayObject* vao);
    // A null source clears the target with GL_ONE, GL_ZERO.
    void blitTile(MTextureTile* target, MTextureTile* source, int sourceFactor, int destinationFactor,
                  MShaderProgramList* programs, const QString& programName, double opacity,
                  QOpenGLVertexArrayObject* vao);
    void drawTileOnTexture(MTextureTile* tile, int layerIndex, QOpenGLTexture* output, int sourceFactor,
                           int destinationFactor, MShaderProgramList* programs, const QString& programName,
                           double opacity, double strokeOpacity, QOpenGLVertexArrayObject* vao);
    // Renders the tile through a program into the work texture, then copies
    // the result back onto the tile.
    void drawTile(MTextureTile* tile, int layerIndex, int sourceFactor, int destinationFactor,
                  MShaderProgramList* programs, const QString& programName, double opacity,
                  double strokeOpacity, QOpenGLVertexArrayObject* vao);
    void fillTile(MTextureTile* target, MTextureTile* selectionTile, const QColor& color,
                  MShaderProgramList* programs, const QString& programName, bool clipToSelection,
                  QOpenGLVertexArrayObject* vao);

public Q_SLOTS:
    void createPaperTexture();
    void resetPaper();

private:
    bool makeCanvasCurrent(const QString& source);
    bool createTransparentPaperTexture();
    bool createWorkTexture();
    void drawFullPass(MPaintParams* params, bool selectionEnabled);
    void drawPaperTexture(MPaintParams* params, QOpenGLTexture* texture);
    void drawTransparentPaper(MPaintParams* params);
    void drawQuad(MPaintParams* params, const QString& programName, const QMatrix4x4& matrix,
                  QOpenGLTexture* texture, bool smooth);
    // The selection tile at the target's place when a selection is in use,
    // else the empty texture.
    unsigned selectionTexture(const QPointF& centre, bool* active);
    // Sets up a framebuffer pass of the target texture's size; false when the
    // texture can't be attached.
    bool beginTilePass(unsigned outputTextureId, const QSize& size, int sourceFactor, int destinationFactor,
                       QMatrix4x4* matrix);
    void endTilePass();
    void setEffectValues(QOpenGLShaderProgram* program, MShader* shader, MTextureLayer* layer);
    double globalTime();

    MCanvas* m_canvas;
    bool m_initialized = false;
    std::unique_ptr<MVertexBuffer> m_vertexBuffer;
    QVector<QOpenGLTexture*> m_shaderTextures;
    std::unique_ptr<QOpenGLTexture> m_emptyTexture;
    std::unique_ptr<QOpenGLTexture> m_paperTexture;
    std::unique_ptr<QOpenGLTexture> m_transparentPaperTexture;
    std::unique_ptr<QOpenGLTexture> m_workTexture;
    bool m_paperTextureValid = false;
    QElapsedTimer m_clock;
    double m_globalTime = 0.0;
};
