#pragma once

#include "tools/mtool.h"

#include <QCursor>
#include <QPainterPath>
#include <QPointF>
#include <QPolygonF>

// Turns the view's events into strokes of the current brush on the canvas,
// each repeated at the images of the symmetry tool as one undo step. Ctrl and
// a click start a straight line that a second click ends; with "Follow path"
// strokes run along the selection's outline; the ruler holds them to its line.
class MBrushTool : public MTool
{
    Q_OBJECT
    Q_PROPERTY(bool drawOnPath READ drawOnPath WRITE set_drawOnPath NOTIFY drawOnPathChanged)

public:
    enum State
    {
        Idle = 0,
        WaitingForSecondClick = 1,
        Stroking = 3
    };

    // The largest cursor drawn; a larger brush shows as this.
    static constexpr int maximumCursorSize = 400;

    explicit MBrushTool(QObject* parent = nullptr);

    bool drawOnPath() const { return m_drawOnPath; }
    int state() const { return m_state; }
    int cursorDiameter() const { return m_cursorDiameter; }
    QPointF startPoint() const { return m_startPoint; }
    QPointF endPoint() const { return m_endPoint; }

    // "Follow path".
    void setupToolBar(QToolBar* toolBar) override;

    // The point of polygon nearest to p: the foot on an edge, or a vertex
    // when strictly nearer; p itself for an empty polygon.
    static QPointF nearestOnPolygon(const QPolygonF& polygon, const QPointF& p);
    // The base radius of the current brush times 0.8 for a negative delta,
    // 1.2 otherwise, within the setting's range.
    void adjustRadius(int delta);

public Q_SLOTS:
    virtual void init();
    void set_drawOnPath(bool value);

    double accumulatorDistance() override;
    void paint(QPainter* painter) override;
    bool mousePressEvent(MEvent* event) override;
    void mouseMoveEvent(MEvent* event) override;
    void mouseReleaseEvent(MEvent* event) override;
    void hoverMoveEvent(MEvent* event) override;
    bool keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool updateCursor(const QPointF& localPos, double scale) override;

Q_SIGNALS:
    void drawOnPathChanged(bool value);

private:
    // The event's position moved onto the selection's outline while
    // following it, or onto the ruler's line; true when following the path.
    bool placeOnPathOrRuler(MEvent* event);
    // The end of the straight line held by the ruler, or else by the perspective lines.
    void constrainEnd();
    // The event at every image of the symmetry, one stroke index each.
    void stroke(MEvent* event);
    QPointF snap(const QPointF& position) const;
    QPolygonF selectionPolygon() const;

    bool m_drawOnPath = false;
    int m_state = Idle;
    int m_cursorDiameter = -1;
    QCursor m_crossCursor = QCursor(Qt::ArrowCursor);
    bool m_crossCursorBuilt = false;
    // The undo macro of a mirrored stroke is open.
    bool m_symmetryMacro = false;
    QPointF m_startPoint;
    QPointF m_endPoint;
};
