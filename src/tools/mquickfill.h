#pragma once

#include <QColor>
#include <QImage>
#include <QObject>
#include <QPoint>
#include <QRectF>
#include <QSet>
#include <QVector>

class MBufferLayer;
class MBufferTile;
class MCanvas;
class MTextureLayer;

// The scan-line flood fill. It runs on the CPU, on tiles of the layer read
// back on demand into a buffer layer, and hands the painted tiles to the
// canvas as one undo step. The same scan marks a mask for the magic wand.
//
// A pixel belongs to the region when each of its four bytes (premultiplied)
// is within threshold of the seed's, inclusively; the region is 4-connected
// and bounded by the canvas's rectangle.
class MQuickFill : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint8 threshold READ threshold WRITE set_threshold NOTIFY thresholdChanged)
    Q_PROPERTY(bool clearSelection READ clearSelection WRITE set_clearSelection NOTIFY clearSelectionChanged)

public:
    // Results of scan().
    enum ScanResult
    {
        Done = 0,
        NothingToDo = -1,
        OutOfMemory = -2
    };
    // A fill that takes longer stops where it is and keeps what it painted.
    static constexpr qint64 timeLimit = 20000;

    explicit MQuickFill(QObject* parent = nullptr);
    ~MQuickFill() override;

    quint8 threshold() const { return m_threshold; }
    bool clearSelection() const { return m_clearSelection; }

    MCanvas* canvas() const { return m_canvas; }
    void setCanvas(MCanvas* canvas) { m_canvas = canvas; }
    // The copy of the layer the last run worked on; null before the first run.
    MBufferLayer* buffer() const { return m_buffer; }
    // The bounds of what the last run painted; empty when it painted nothing.
    QRectF filledRect() const { return m_filledRect; }
    // The buffer tiles the last run painted, in the order it reached them.
    const QVector<MBufferTile*>& paintedTiles() const { return m_paintedTiles; }

    // A null image fills with the colour alone. The pattern repeats from the
    // canvas's top left corner.
    void setPattern(const QImage& image);
    bool hasPattern() const { return m_hasPattern; }
    QImage patternImage() const { return m_patternImage; }
    // With a pattern: its own colours, or the fill colour through its alpha.
    void setUsePatternColor(bool usePatternColor) { m_usePatternColor = usePatternColor; }
    bool usePatternColor() const { return m_usePatternColor; }

    // Paints the region around point on a layer (-1: the current one), as
    // one undo step "Fill". False when nothing was painted.
    bool fill(const QPoint& point, const QColor& color, int layerIndex = -1);
    // Makes the region around point, on a layer, the selection, or adds it
    // to the selection without clearSelection. True when it did.
    bool select(const QPoint& point, int layerIndex = -1);

public Q_SLOTS:
    void set_threshold(quint8 threshold);
    void set_clearSelection(bool clearSelection);

Q_SIGNALS:
    void thresholdChanged(quint8 threshold);
    void clearSelectionChanged(bool clearSelection);

protected:
    // A run of one row still to be looked at from the row y + dy, or one
    // already done (visited).
    struct Span
    {
        int x1;
        int x2;
        int y;
        int dy;
        Span* next;
        Span* previous;
    };
    // A zeroed record, or null when memory runs out.
    virtual Span* allocateSpan();

private:
    MTextureLayer* prepare(int* layerIndex);
    int scan(const QPoint& point, const QColor& color, MCanvas* canvas, MTextureLayer* layer,
             MBufferLayer* mask);
    Span* takeRecord();
    void pushLine(int x1, int x2, int y, int dy);
    void popLine(int* x1, int* x2, int* y, int* dy);
    void leakBack(int px1, int px2, int s, int e, int y, int dy);
    bool isVisited(int a, int b, int y) const;
    void unlinkPending(Span* span);
    void recycle(Span* span);
    void freeLists();
    void paintSpan(int x1, int x2, int y);
    void paintPixel(uchar* pixel, int x, int y) const;
    void widenPainted(int x1, int x2, int y);

    int scanLeft(int x, int y, int limit);
    int scanRight(int x, int y, int limit);
    int scanUntilMatch(int x, int y, int limit);

    quint8 m_threshold = 10;
    bool m_clearSelection = true;

    MCanvas* m_canvas = nullptr;
    MBufferLayer* m_buffer = nullptr;
    QRectF m_filledRect;

    QImage m_patternImage;
    bool m_hasPattern = false;
    int m_patternWidth = 0;
    int m_patternHeight = 0;
    bool m_usePatternColor = false;

    uchar m_seedColor[4] = {};
    uchar m_fillColor[4] = {};

    int m_paintedLeft = 0;
    int m_paintedRight = 0;
    int m_paintedTop = 0;
    int m_paintedBottom = 0;
    int m_visitedLeft = 0;
    int m_visitedRight = 0;
    int m_visitedTop = 0;
    int m_visitedBottom = 0;

    Span* m_visited = nullptr;
    Span* m_pending = nullptr;
    Span* m_freeList = nullptr;
    bool m_useVisited = true;
    bool m_outOfMemory = false;
    int m_lastY = -1;

    // What one run works on.
    MTextureLayer* m_layer = nullptr;
    MBufferLayer* m_mask = nullptr;
    int m_boundsLeft = 0;
    int m_boundsTop = 0;
    QVector<MBufferTile*> m_paintedTiles;
    QSet<MBufferTile*> m_paintedSet;
};
