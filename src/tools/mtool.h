#pragma once

#include "tools/mstrokestyle.h"

#include <QBrush>
#include <QColor>
#include <QCursor>
#include <QObject>
#include <QPen>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QTransform>
#include <QVariant>
#include <QVector>

class MCanvas;
class MEvent;
class MToolValues;
class MWidget;
class QIcon;
class QKeyEvent;
class QPainter;
class QToolBar;
class QWheelEvent;

// The abstract tool. A tool gets the events of the current view through
// MTools, keeps its control points and numbers in that view's MToolValues, and
// draws its decorations over the canvas. Every accessor tolerates a missing
// view: reads answer zero, null or empty, and setters do nothing.
class MTool : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int toolId READ toolId NOTIFY toolIdChanged)
    Q_PROPERTY(int pointId READ pointId WRITE set_pointId NOTIFY pointIdChanged)
    Q_PROPERTY(bool visible READ visible WRITE set_visible NOTIFY visibleChanged)
    Q_PROPERTY(bool locked READ locked WRITE set_locked NOTIFY lockedChanged)
    Q_PROPERTY(QCursor cursor READ cursor NOTIFY cursorChanged)
    Q_PROPERTY(MStrokeStyle* lineStyle READ lineStyle NOTIFY lineStyleChanged)
    Q_PROPERTY(bool applyOnDeactivate READ applyOnDeactivate WRITE set_applyOnDeactivate NOTIFY
                   applyOnDeactivateChanged)
    Q_PROPERTY(QPen defaultPen READ defaultPen WRITE set_defaultPen NOTIFY defaultPenChanged)
    Q_PROPERTY(QBrush defaultBrush READ defaultBrush WRITE set_defaultBrush NOTIFY defaultBrushChanged)
    Q_PROPERTY(int pointSize READ pointSize WRITE set_pointSize NOTIFY pointSizeChanged)

public:
    enum ToolId
    {
        BrushTool = 0,
        GridTool = 1,
        SymmetryTool = 2,
        MeshTool = 3,
        LineTool = 4,
        SelectionTool = 5,
        ImageTool = 6,
        ShapeTool = 7,
        TextTool = 8,
        PerspectiveTool = 9,
        FillTool = 10,
        FillSelectionTool = 11,
        GradientTool = 12,
        ComicStripTool = 13,
        PanTool = 14,
        RotateTool = 15,
        ZoomTool = 16,
        RullerTool = 17
    };
    Q_ENUM(ToolId)

    // Handles of a frame that the shape and image tools resize.
    enum Handle
    {
        NoHandle = 0,
        MoveHandle = 1,
        TopHandle = 2,
        BottomHandle = 3,
        LeftHandle = 4,
        RightHandle = 5,
        TopLeftHandle = 6,
        TopRightHandle = 7,
        BottomLeftHandle = 8,
        BottomRightHandle = 9,
        RotateHandle = 10
    };

    static constexpr double minimumFrameSize = 10.0;
    static constexpr double infiniteLineReach = 100000.0;

    explicit MTool(int toolId, QObject* parent = nullptr);
    ~MTool() override;

    int toolId() const { return m_toolId; }
    int pointId() const { return m_pointId; }
    bool visible() const { return m_visible; }
    bool locked() const { return m_locked; }
    QCursor cursor() const { return m_cursor; }
    MStrokeStyle* lineStyle() const { return m_lineStyle; }
    bool applyOnDeactivate() const { return m_applyOnDeactivate; }
    QPen defaultPen() const { return m_defaultPen; }
    QBrush defaultBrush() const { return m_defaultBrush; }
    int pointSize() const { return m_pointSize; }
    int pointIndex() const { return m_pointIndex; }

    // The current view, its canvas and its values; null while no document is open.
    MWidget* view() const;
    MCanvas* canvas() const;
    MToolValues* toolValues() const;

    // The tool's control points, under pointId in the view's values.
    int pointCount() const;
    QPointF point(int index) const;
    const QVector<QPointF>& pointList() const;
    QPolygonF polygon() const;
    int intValue(int id) const;
    double doubleValue(int id) const;
    QVariant value(int id) const;

    // The pointSize square centred on pos.
    QRectF pointRect(const QPointF& pos) const;

    // The line through p along the direction from q to p, reaching far out on
    // both sides, mapped by transform.
    static void drawInfiniteLine(QPainter* painter, const QPointF& p, const QPointF& q,
                                 const QTransform& transform);
    static void drawCenteredRect(QPainter* painter, const QPoint& pos, int size);
    static void drawCenteredIcon(QPainter* painter, const QPoint& pos, const QIcon& icon, int size);

    // The rectangle after dragging a handle by delta since the press; free
    // lets width and height change independently, otherwise the ratio of the
    // start rectangle stays and edges grow about the centre.
    static QRectF resizeRect(int handle, const QPointF& delta, const QRectF& rect, bool free);
    // The cursor over a handle; off any handle a cross while nothing is built.
    static QCursor handleCursor(int handle, const QCursor& rotationCursor, bool hasOutline);

    // Fills the tool's tool bar once, when the framework wires the window.
    virtual void setupToolBar(QToolBar* toolBar);

public Q_SLOTS:
    void set_pointId(int value);
    void set_visible(bool value);
    void set_locked(bool value);
    void set_applyOnDeactivate(bool value);
    void set_defaultPen(const QPen& value);
    void set_defaultBrush(const QBrush& value);
    void set_pointSize(int value);

    virtual double accumulatorDistance();
    virtual void drawPoints(QPainter* painter, bool mapToWidget);
    virtual void drawPoint(QPainter* painter, const QPointF& pos, const QPen& pen, const QBrush& brush,
                           bool mapToWidget);
    virtual void drawPoint(QPainter* painter, const QPointF& pos, bool mapToWidget);
    virtual void paint(QPainter* painter);
    // True when the tool took the press.
    virtual bool mousePressEvent(MEvent* event);
    virtual void mouseMoveEvent(MEvent* event);
    virtual void mouseReleaseEvent(MEvent* event);
    virtual void hoverMoveEvent(MEvent* event);
    // True when the tool used the key.
    virtual bool keyPressEvent(QKeyEvent* event);
    virtual void wheelEvent(QWheelEvent* event);
    virtual void mouseDoubleClickEvent(MEvent* event);
    // True when a view exists and its current layer can be drawn on; otherwise
    // tells the user why, when asked to.
    virtual bool canDraw(bool showMessage);
    // The lowest index of a control point whose square holds the position;
    // -1 when none, or while the tool is locked or hidden.
    virtual int pointIndexAt(MEvent* event);
    virtual int pointIndexAt(const QPointF& widgetPosition);
    virtual void setPoint(int index, const QPointF& canvasPosition);
    virtual void setPoint(const QPointF& canvasPosition);
    virtual void activate(bool value);
    // True when the tool chose a cursor for the position.
    virtual bool updateCursor(const QPointF& localPos, double scale);
    virtual void setValue(int id, const QVariant& val);
    virtual void addPoint(const QPointF& canvasPosition);
    virtual void removePoint();
    virtual void removePoint(int index);
    virtual void setPoints(const QVector<QPointF>& points);
    virtual void clearPoints();
    virtual void setColor(const QColor& color, Qt::KeyboardModifiers modifiers);
    virtual void showText(const QString& text);
    virtual void refresh();

Q_SIGNALS:
    void toolIdChanged(int value);
    void pointIdChanged(int value);
    void visibleChanged(bool value);
    void lockedChanged(bool value);
    void cursorChanged(const QCursor& value);
    void lineStyleChanged(MStrokeStyle* value);
    void applyOnDeactivateChanged(bool value);
    void defaultPenChanged(const QPen& value);
    void defaultBrushChanged(const QBrush& value);
    void pointSizeChanged(int value);
    void toolChanged(MTool* tool);

protected:
    void setCursor(const QCursor& value);
    // The message of canDraw; a test replaces it to keep modal boxes away.
    virtual void showCantDrawMessage();

    // The press handling of the tools whose points are dragged one at a time:
    // false while locked, hidden or without a view; otherwise pointIndex
    // becomes the hit point and the answer is whether one was hit.
    bool catchPoint(MEvent* event);
    // Moves every point by the distance from point 0 to the position. False,
    // and nothing moves, when point 0 is already there.
    bool moveFigure(const QPointF& canvasPosition);

    int m_pointIndex = -1;
    // The list of the accessors while no view exists.
    const QVector<QPointF> m_points;

private:
    int m_toolId;
    int m_pointId = -1;
    bool m_visible = false;
    bool m_locked = false;
    QCursor m_cursor = QCursor(Qt::ArrowCursor);
    MStrokeStyle* m_lineStyle = nullptr;
    bool m_applyOnDeactivate = true;
    QPen m_defaultPen = QPen(Qt::black, 1);
    QBrush m_defaultBrush = QBrush(QColor(0x33, 0x99, 0xFF), Qt::SolidPattern);
    int m_pointSize = 12;
};
