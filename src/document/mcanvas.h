#pragma once

#include "app/menum.h"
#include "document/mtexturelayer.h"
#include "lists/mlistmodel.h"

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QImage>
#include <QPainterPath>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QVariant>

#include <memory>

class MBrush;
class MEvent;
class MPaintEngine;
class MQuickFill;
class MSharedData;
class MTextureTile;
class QOffscreenSurface;
class QOpenGLContext;
class QUndoStack;

// The document: a list of texture layers with row 0 at the bottom of the
// stack, the page (painted rectangle) and its paper, the selection, the undo
// history, and the GL context in which all its textures live. Canvas
// coordinates have their origin at the centre of the page.
class MCanvas : public MListModel<MTextureLayer>
{
    Q_OBJECT
    Q_PROPERTY(bool clipStroke READ clipStroke WRITE setClipStroke NOTIFY clipStrokeChanged)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY hasSelectionChanged)
    Q_PROPERTY(QRectF paintedRect READ paintedRect WRITE setPaintedRect NOTIFY paintedRectChanged)
    Q_PROPERTY(QString fileName READ fileName WRITE setFileName NOTIFY fileNameChanged)
    Q_PROPERTY(bool isNew READ isNew WRITE setIsNew NOTIFY isNewChanged)
    Q_PROPERTY(bool isReadOnly READ isReadOnly WRITE setIsReadOnly NOTIFY isReadOnlyChanged)
    Q_PROPERTY(bool isModified READ isModified NOTIFY modifiedChanged)

public:
    explicit MCanvas(QObject* parent = nullptr);
    ~MCanvas() override;

    bool clipStroke() const { return m_clipStroke; }
    bool hasSelection() const { return m_hasSelection; }
    bool isGlInitialized() const { return m_isGlInitialized; }
    QRectF paintedRect() const { return m_paintedRect; }
    MSharedData* sharedData() const { return m_sharedData; }
    MPaintEngine* paintEngine() const { return m_paintEngine; }
    MEnum::PaperType paperType() const { return m_paperType; }
    QColor paperColor() const { return m_paperColor; }
    QString paperName() const { return m_paperName; }
    QImage paperTile() const { return m_paperTile; }
    QPainterPath selectionPath() const { return m_selectionPath; }
    double paintMargin() const { return m_paintMargin; }
    bool autoExtent() const { return m_autoExtent; }
    MTextureLayer* strokeLayer() const { return m_strokeLayer.get(); }
    MTextureLayer* selectionLayer() const { return m_selectionLayer.get(); }
    QOpenGLContext* context() const { return m_context.get(); }
    QString fileName() const { return m_fileName; }
    bool isNew() const { return m_isNew; }
    bool isReadOnly() const { return m_isReadOnly; }
    QUndoStack* undoStack() const { return m_undoStack; }
    bool strokeInProgress() const { return m_strokeInProgress; }
    int lastError() const { return m_lastError; }
    // Derived from the undo stack: away from its clean state, which a new,
    // loaded or saved document starts at.
    bool isModified() const;

    // How many files each backup id is held by.
    int registeredCount(const QString& id) const { return m_registeredIds.value(id); }

    static int canvasCount() { return s_canvasCount; }
    static int macroBeginCount() { return s_macroBeginCount; }
    static int macroEndCount() { return s_macroEndCount; }

    // False without GL; true when the context is, or could be made, current.
    bool makeCurrent();
    // Once: the canvas's own context and surface, then one undoable-free layer.
    void initializeGL();
    void shutDown();
    // Frees every layer's textures, the stroke and selection layers' too, and
    // empties the list.
    void clearLayers();

    // A layer that isn't in the list yet.
    MTextureLayer* createLayer();
    // True when a stroke may paint on the current layer.
    bool canPaint() const;

    void registerId(const QString& id);
    void unregisterId(const QString& id);

    void beginMacro(const QString& text);
    void endMacro();

    // Strokes. index is the row of one of the parallel strokes that one input
    // drives (mirror images), 0 to 29. The dispatcher starts a stroke on a
    // press with brush, or the current brush of the list when it is null, and
    // the current colours; continues it on a move and ends it on a release.
    void stroke(const MEvent& event, int index = 0, const MBrush* brush = nullptr);
    // False when the current layer can't be painted on (layerIndex -1: the current row).
    bool startStroke(const MEvent& event, const MBrush& brush, const QColor& color, const QColor& secondColor,
                     int layerIndex = -1, int index = 0);
    void strokeTo(const MEvent& event, int index = 0);
    void endStroke(const MEvent& event, int index = 0);
    // The current brush along each subpath, as one undo step; clip is the
    // clip flag of the strokes, which is back to true afterwards.
    void strokePath(const QPainterPath& path, bool clip);
    void drawLine(const QPointF& from, const QPointF& to);

    // Tile writes of the undo commands, on the canvas's context. A stroke tile
    // goes through "stroke" with the stroke layer's opacity; a blit goes over
    // the tile, or replaces it; a null source clears.
    void mergeStrokeTile(MTextureTile* destination, int layerIndex);
    void blitTile(MTextureTile* destination, MTextureTile* source, double opacity, bool replace);
    // Within the selection when there is one.
    void fillTile(MTextureTile* tile, const QColor& color);

    // Draws into an image of width by height, fitting the clip path's bounds,
    // or the page when the path is empty. Without drawAllLayers only the
    // listed layers are drawn, or the current one when the list is empty.
    QImage render(const QString& program, int width, int height, const QPainterPath& clipPath, bool drawPaper,
                  bool drawAllLayers, const QList<int>& layers = QList<int>());
    // One layer at the page's size, without paper.
    QImage render(int layerIndex);
    // The whole picture at the page's size: paper and every layer.
    QImage render();

    // Lays image centred on point into a layer (-1: the current one), as one
    // undo step. A non-empty rect limits the tiles to that part of the image.
    bool pasteImage(const QPointF& point, const QImage& image, bool replaceClip,
                    const QString& title = QString(), int layerIndex = -1, const QRect& rect = QRect(),
                    bool overwrite = false);
    // A new layer holding the image.
    void appendImage(const QPointF& point, const QImage& image);
    // Lays the tiles that a flood fill painted on a layer (-1: the current
    // one), as one undo step titled title.
    bool pasteBuffer(MQuickFill* quickFill, int layerIndex, const QString& title);
    // The magic wand: the region around point on a layer becomes the
    // selection, or is added to it without clearSelection. The selection
    // path stays as it was.
    bool quickSelect(const QPointF& point, bool clearSelection, int threshold, int layerIndex = -1);
    // Opens any image as a new document of its size.
    bool loadImage(const QString& fileName);

    // Writes the document; on success it is no longer new and has no history.
    bool save(const QString& fileName);
    // Reads a document in place of this one; a failed read leaves an empty new document.
    bool load(const QString& fileName);

public Q_SLOTS:
    void setClipStroke(bool clipStroke);

    // Layer list. An index of -1 means the current layer.
    void appendLayer();
    void prependLayer();
    void removeLayer(int layerIndex = -1);
    void removeLayers();
    void removeEmptyLayers();
    void showLayer(int layerIndex = -1);
    void lockLayer(int layerIndex = -1);
    void showAllLayers();
    void hideAllLayers();
    void hideAllLayersExcept(int except);
    void lockAllLayers();
    void unlockAllLayers();
    // "Up" in the panel is a lower row.
    void moveUpLayer(int layerIndex = -1);
    void moveDownLayer(int layerIndex = -1);
    void nextLayer();
    void previousLayer();
    // Only the pixels are copied: the copy has default properties.
    void duplicateLayer(int layerIndex = -1);
    void mergeLayers(int under, int over);
    void mergeLayerWithUpper(int layerIndex = -1);
    void mergeLayerWithLower(int layerIndex = -1);
    // Makes the current layer's effect part of its pixels.
    void applyEffect();
    void copyToClipboard(bool useSelection);
    // The current layer's tiles made transparent, or filled with color.
    void erase();
    void fill(const QColor& color);
    void updateLayerThumbnail(int layerIndex = -1);
    // Runs the layer properties dialog over the layer.
    void editLayer(int layerIndex = -1);
    void setLayerProperties(int layerIndex, const QHash<QByteArray, QVariant>& oldValues,
                            const QHash<QByteArray, QVariant>& newValues);

    // Paper and page.
    void setPaperSize(const QSize& size, bool clip = false);
    void setPaperName(const QString& name);
    void setPaperType(MEnum::PaperType type);
    void setPaperTile(const QImage& image);
    void setPaperColor(const QColor& color);
    void setPaintMargin(double margin);
    void setAutoExtent(bool autoExtent);

    // Selection.
    void setClipPath(const QPainterPath& path);
    void resetSelectionPath();
    void resetClipPath();
    void invertClipPath();
    void cropToSelection();

    void setPaintedRect(const QRectF& rect);
    // Undoable: the page becomes rect, aligned to whole pixels.
    void updatePaintedRect(const QRectF& rect);

    void setFileName(const QString& fileName);
    void setIsNew(bool isNew);
    void setIsReadOnly(bool isReadOnly);
    void undo();
    void redo();
    // A new document from the settings: one layer, no history.
    void clear();
    void refresh();

Q_SIGNALS:
    void clipStrokeChanged(bool clipStroke);
    void hasSelectionChanged(bool hasSelection);
    void refreshNow();
    void refresh(bool useTimer, const QRectF& canvasRect);
    void paintedRectChanged(const QRectF& rect);
    void thumbnailSizeChanged(int size);
    void fileNameChanged(const QString& fileName);
    void isNewChanged(bool isNew);
    void isReadOnlyChanged(bool isReadOnly);
    void modifiedChanged();
    void selectionChanged();
    void updateThumbnail(MCanvas* canvas, int layerIndex);
    void layerListReset();

private:
    void connectSignals();
    void disconnectSignals();
    bool loadPaper(const QString& name);
    void setHasSelection(bool hasSelection);
    int resolveRow(int layerIndex) const { return layerIndex < 0 ? currentRow() : layerIndex; }
    void setAllLayers(const char* property, bool value);

    bool m_clipStroke = true;
    bool m_hasSelection = false;
    bool m_isGlInitialized = false;
    QRectF m_paintedRect;
    MEnum::PaperType m_paperType = MEnum::Colored;
    QColor m_paperColor = Qt::white;
    QString m_paperName;
    QImage m_paperTile;
    QPainterPath m_selectionPath;
    double m_paintMargin = 0.0;
    bool m_autoExtent = false;
    std::unique_ptr<MTextureLayer> m_strokeLayer;
    std::unique_ptr<MTextureLayer> m_selectionLayer;
    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<QOffscreenSurface> m_surface;
    QHash<QString, int> m_registeredIds;
    QString m_fileName;
    bool m_isNew = true;
    bool m_isReadOnly = false;
    QUndoStack* m_undoStack = nullptr;
    MSharedData* m_sharedData = nullptr;
    MPaintEngine* m_paintEngine = nullptr;
    bool m_strokeInProgress = false;
    int m_lastError = 0;

    static inline int s_canvasCount = 0;
    static inline int s_macroBeginCount = 0;
    static inline int s_macroEndCount = 0;
};
