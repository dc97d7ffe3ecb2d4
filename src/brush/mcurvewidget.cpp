#include "brush/mcurvewidget.h"

#include "brush/mcurve.h"

#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace {

// Grid cells across each side of the square.
constexpr int gridCells = 4;

} // namespace

MCurveWidget::MCurveWidget(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(120, 120);
}

void MCurveWidget::setCurve(MCurve* curve)
{
    m_curve = curve;
    m_selected = -1;
    m_mouseDown = false;
    update();
}

QPointF MCurveWidget::toWidget(QPointF point) const
{
    return QPointF((width() - 2.0 * margin) * point.x() + margin,
                   (1.0 - point.y()) * (height() - 2.0 * margin) + margin);
}

QPointF MCurveWidget::fromWidget(QPointF position) const
{
    const double boxWidth = width() - 2.0 * margin;
    const double boxHeight = height() - 2.0 * margin;
    const double x = qBound(margin, position.x(), qMax(margin, width() - margin));
    const double y = qBound(margin, position.y(), qMax(margin, height() - margin));
    return QPointF(boxWidth > 0.0 ? (x - margin) / boxWidth : 0.0,
                   boxHeight > 0.0 ? 1.0 - (y - margin) / boxHeight : 0.0);
}

void MCurveWidget::changed()
{
    m_modified = true;
    Q_EMIT curveChanged(m_curve);
    update();
}

void MCurveWidget::addPoint()
{
    if (!m_curve || m_curve->pointCount() >= maxEditedPoints)
        return;
    const QPointF centre(0.5, 0.5);
    QPointF point = centre;
    if (m_curve->pointCount() == 1)
        point = (m_curve->pointAt(0) + centre) / 2.0;
    else if (m_curve->pointCount() > 1)
        point = (m_curve->pointAt(0) + m_curve->pointAt(1)) / 2.0;
    m_curve->addPoint(point);
    changed();
}

void MCurveWidget::removePoint()
{
    if (!m_curve || m_selected < 0)
        return;
    const int before = m_curve->pointCount();
    m_curve->removePoint(m_selected);
    m_selected = -1;
    if (m_curve->pointCount() != before)
        changed();
    else
        update();
}

void MCurveWidget::setInitType(int initType)
{
    if (!m_curve)
        return;
    m_curve->setInitType(initType);
    m_selected = -1;
    changed();
}

void MCurveWidget::mousePressEvent(QMouseEvent* event)
{
    m_selected = -1;
    m_dragged = false;
    if (m_curve) {
        for (int i = 0; i < m_curve->pointCount(); ++i) {
            if (QLineF(toWidget(m_curve->pointAt(i)), event->localPos()).length() < 2.0 * pointRadius) {
                m_selected = i;
                break;
            }
        }
    }
    m_mouseDown = true;
    if (isVisible())
        grabMouse();
    update();
}

void MCurveWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_mouseDown || !m_curve || m_selected < 0 || m_selected >= m_curve->pointCount())
        return;
    // Unsorted while dragging, so that the point stays the selected one.
    m_curve->movePoint(m_selected, fromWidget(event->localPos()), false);
    m_dragged = true;
    m_modified = true;
    Q_EMIT pointMoved(m_selected);
    Q_EMIT curveChanged(m_curve);
    update();
}

void MCurveWidget::mouseReleaseEvent(QMouseEvent*)
{
    if (m_curve && m_mouseDown) {
        // The selection follows its point into the sorted order.
        const QPointF selected = m_curve->pointAt(m_selected);
        m_curve->sort();
        if (m_selected >= 0)
            m_selected = m_curve->points().indexOf(selected);
        if (m_dragged)
            Q_EMIT curveChanged(m_curve);
    }
    m_mouseDown = false;
    m_dragged = false;
    releaseMouse();
    update();
}

void MCurveWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), Qt::white);

    QPen gridPen(Qt::darkGray);
    gridPen.setWidthF(0.5);
    painter.setPen(gridPen);
    painter.setBrush(Qt::NoBrush);
    const QRectF box(QPointF(margin, margin), QPointF(width() - margin, height() - margin));
    painter.drawRect(box);
    for (int i = 1; i < gridCells; ++i) {
        const double f = double(i) / gridCells;
        painter.drawLine(toWidget(QPointF(f, 0.0)), toWidget(QPointF(f, 1.0)));
        painter.drawLine(toWidget(QPointF(0.0, f)), toWidget(QPointF(1.0, f)));
    }
    if (!m_curve || box.width() <= 0.0)
        return;

    // The curve through value(), one sample per pixel column, shown in the unit square.
    const double xRange = m_curve->xMax() - m_curve->xMin();
    const double yRange = m_curve->yMax() - m_curve->yMin();
    QPainterPath path;
    const int columns = qMax(1, int(box.width()));
    for (int column = 0; column <= columns; ++column) {
        const double t = double(column) / columns;
        const double y = m_curve->value(m_curve->xMin() + t * xRange);
        const double unitY = yRange != 0.0 ? (y - m_curve->yMin()) / yRange : 0.0;
        const QPointF p = toWidget(QPointF(t, unitY));
        if (column == 0)
            path.moveTo(p);
        else
            path.lineTo(p);
    }
    painter.setPen(QPen(Qt::black, 1.0));
    painter.drawPath(path);

    for (int i = 0; i < m_curve->pointCount(); ++i) {
        painter.setBrush(i == m_selected ? QBrush(Qt::black) : QBrush(Qt::NoBrush));
        painter.drawEllipse(toWidget(m_curve->pointAt(i)), pointRadius, pointRadius);
    }
}
