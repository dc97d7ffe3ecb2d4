#pragma once

#include <QPointF>
#include <QPointer>
#include <QWidget>

class MCurve;

// Draws a curve on the unit square and lets the user drag, add and remove its
// control points. The widget doesn't own the curve.
class MCurveWidget : public QWidget
{
    Q_OBJECT

public:
    static constexpr double margin = 8.0;
    static constexpr double pointRadius = 5.0;
    // The widget adds points only while the curve has fewer than this.
    static constexpr int maxEditedPoints = 6;

    explicit MCurveWidget(QWidget* parent = nullptr);

    MCurve* curve() const { return m_curve; }
    // Shows another curve, or none; selects nothing.
    void setCurve(MCurve* curve);
    int selectedIndex() const { return m_selected; }
    bool isModified() const { return m_modified; }
    void setModified(bool modified) { m_modified = modified; }

    // From the unit square to widget pixels and back; the way back clamps into
    // the margin box and gives 0 when the box is empty.
    QPointF toWidget(QPointF point) const;
    QPointF fromWidget(QPointF position) const;

    QSize sizeHint() const override { return QSize(240, 240); }

public Q_SLOTS:
    void addPoint();
    void removePoint();
    void setInitType(int initType);

Q_SIGNALS:
    void curveChanged(MCurve* curve);
    void pointMoved(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void changed();

    QPointer<MCurve> m_curve;
    int m_selected = -1;
    bool m_mouseDown = false;
    bool m_modified = false;
    // Whether the point under the mouse moved since the press.
    bool m_dragged = false;
};
