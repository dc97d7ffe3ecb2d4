#include "tools/mtool.h"

#include "app/mevent.h"
#include "app/msettings.h"
#include "document/mcanvas.h"
#include "gpu/mtransform.h"
#include "gpu/mwidget.h"
#include "tools/mstrokestyle.h"
#include "tools/mtools.h"
#include "tools/mtoolvalues.h"

#include <QIcon>
#include <QLineF>
#include <QMessageBox>
#include <QPainter>

#include <cmath>

MTool::MTool(int toolId, QObject* parent) : QObject(parent), m_toolId(toolId)
{
    m_lineStyle = new MStrokeStyle(this);
    m_lineStyle->set_strokeColor(QColor(QStringLiteral("#FF6666")));
    m_lineStyle->set_strokeStyle(MStrokeStyle::DashLine);

    MSettings* settings = MSettings::instance();
    m_pointSize = settings->pointSize();
    connect(settings, &MSettings::pointSizeChanged, this, &MTool::set_pointSize);
    connect(this, &MTool::toolChanged, MTools::instance(), &MTools::refresh);
}

MTool::~MTool() = default;

// ---------------------------------------------------------------------------
// Properties

void MTool::set_pointId(int value)
{
    if (value == m_pointId)
        return;
    m_pointId = value;
    Q_EMIT pointIdChanged(value);
}

void MTool::set_visible(bool value)
{
    if (value == m_visible)
        return;
    m_visible = value;
    Q_EMIT visibleChanged(value);
}

void MTool::set_locked(bool value)
{
    if (value == m_locked)
        return;
    m_locked = value;
    Q_EMIT lockedChanged(value);
    // A locked tool hides its points.
    Q_EMIT toolChanged(this);
}

void MTool::set_applyOnDeactivate(bool value)
{
    if (value == m_applyOnDeactivate)
        return;
    m_applyOnDeactivate = value;
    Q_EMIT applyOnDeactivateChanged(value);
}

void MTool::set_defaultPen(const QPen& value)
{
    if (value == m_defaultPen)
        return;
    m_defaultPen = value;
    Q_EMIT defaultPenChanged(value);
}

void MTool::set_defaultBrush(const QBrush& value)
{
    if (value == m_defaultBrush)
        return;
    m_defaultBrush = value;
    Q_EMIT defaultBrushChanged(value);
}

void MTool::set_pointSize(int value)
{
    if (value == m_pointSize)
        return;
    m_pointSize = value;
    Q_EMIT pointSizeChanged(value);
}

void MTool::setCursor(const QCursor& value)
{
    const bool same =
        value.shape() == m_cursor.shape() &&
        (value.shape() != Qt::BitmapCursor || (value.pixmap().cacheKey() == m_cursor.pixmap().cacheKey() &&
                                               value.hotSpot() == m_cursor.hotSpot()));
    m_cursor = value;
    if (!same)
        Q_EMIT cursorChanged(value);
}

// ---------------------------------------------------------------------------
// Accessors

MWidget* MTool::view() const
{
    return MTools::exists() ? MTools::instance()->widget() : nullptr;
}

MCanvas* MTool::canvas() const
{
    const MWidget* widget = view();
    return widget ? widget->canvas() : nullptr;
}

MToolValues* MTool::toolValues() const
{
    const MWidget* widget = view();
    return widget ? widget->toolValues() : nullptr;
}

int MTool::pointCount() const
{
    return pointList().size();
}

QPointF MTool::point(int index) const
{
    return pointList().value(index);
}

const QVector<QPointF>& MTool::pointList() const
{
    const MToolValues* values = toolValues();
    return values ? values->points(m_pointId) : m_points;
}

QPolygonF MTool::polygon() const
{
    return QPolygonF(pointList());
}

int MTool::intValue(int id) const
{
    const MToolValues* values = toolValues();
    return values ? values->intValue(id) : 0;
}

double MTool::doubleValue(int id) const
{
    const MToolValues* values = toolValues();
    return values ? values->doubleValue(id) : 0.0;
}

QVariant MTool::value(int id) const
{
    const MToolValues* values = toolValues();
    return values ? values->value(id) : QVariant();
}

QRectF MTool::pointRect(const QPointF& pos) const
{
    const double half = m_pointSize / 2.0;
    return QRectF(pos.x() - half, pos.y() - half, m_pointSize, m_pointSize);
}

// ---------------------------------------------------------------------------
// Drawing helpers

void MTool::drawInfiniteLine(QPainter* painter, const QPointF& p, const QPointF& q,
                             const QTransform& transform)
{
    if (!painter)
        return;
    const QPointF direction = p - q;
    const double length = std::hypot(direction.x(), direction.y());
    // Two equal points give no direction, so no line.
    if (length == 0.0)
        return;
    const QPointF reach = direction / length * infiniteLineReach;
    painter->drawLine(transform.map(QLineF(p - reach, p + reach)));
}

void MTool::drawCenteredRect(QPainter* painter, const QPoint& pos, int size)
{
    if (painter)
        painter->drawRect(QRect(pos.x() - size / 2, pos.y() - size / 2, size, size));
}

void MTool::drawCenteredIcon(QPainter* painter, const QPoint& pos, const QIcon& icon, int size)
{
    if (painter)
        icon.paint(painter, QRect(pos.x() - size / 2, pos.y() - size / 2, size, size));
}

QRectF MTool::resizeRect(int handle, const QPointF& delta, const QRectF& rect, bool free)
{
    const double w = rect.width();
    const double h = rect.height();
    const double dx = delta.x();
    const double dy = delta.y();
    // A flat start rectangle has no ratio to keep: it resizes as a square.
    const double ratio = (w != 0.0 && h != 0.0) ? h / w : 1.0;
    const auto atLeast = [](double value) { return qMax(value, minimumFrameSize); };
    const auto aboutCentre = [&rect](double width, double height) {
        QRectF result(0, 0, width, height);
        result.moveCenter(rect.center());
        return result;
    };

    QRectF result = rect;
    switch (handle) {
    case BottomRightHandle: {
        const double width = atLeast(w + dx);
        const double height = free ? atLeast(h + dy) : width * ratio;
        return QRectF(rect.topLeft(), QSizeF(width, height));
    }
    case BottomLeftHandle: {
        const double width = atLeast(w - dx);
        const double height = free ? atLeast(h + dy) : width * ratio;
        return QRectF(rect.right() - width, rect.top(), width, height);
    }
    case TopRightHandle: {
        const double width = atLeast(w + dx);
        const double height = free ? atLeast(h - dy) : width * ratio;
        return QRectF(rect.left(), rect.bottom() - height, width, height);
    }
    case TopLeftHandle: {
        const double width = atLeast(w - dx);
        const double height = free ? atLeast(h - dy) : width * ratio;
        return QRectF(rect.right() - width, rect.bottom() - height, width, height);
    }
    case RightHandle:
        if (free) {
            result.setRight(rect.left() + atLeast(w + dx));
            return result;
        } else {
            const double width = atLeast(w + 2 * dx);
            return aboutCentre(width, width * ratio);
        }
    case LeftHandle:
        if (free) {
            result.setLeft(rect.right() - atLeast(w - dx));
            return result;
        } else {
            const double width = atLeast(w - 2 * dx);
            return aboutCentre(width, width * ratio);
        }
    case BottomHandle:
        if (free) {
            result.setBottom(rect.top() + atLeast(h + dy));
            return result;
        } else {
            const double height = atLeast(h + 2 * dy);
            return aboutCentre(height / ratio, height);
        }
    case TopHandle:
        if (free) {
            result.setTop(rect.bottom() - atLeast(h - dy));
            return result;
        } else {
            const double height = atLeast(h - 2 * dy);
            return aboutCentre(height / ratio, height);
        }
    default:
        return rect;
    }
}

QCursor MTool::handleCursor(int handle, const QCursor& rotationCursor, bool hasOutline)
{
    switch (handle) {
    case MoveHandle:
        return QCursor(Qt::SizeAllCursor);
    case TopHandle:
    case BottomHandle:
        return QCursor(Qt::SizeVerCursor);
    case LeftHandle:
    case RightHandle:
        return QCursor(Qt::SizeHorCursor);
    case TopLeftHandle:
    case BottomRightHandle:
        return QCursor(Qt::SizeFDiagCursor);
    case TopRightHandle:
    case BottomLeftHandle:
        return QCursor(Qt::SizeBDiagCursor);
    case RotateHandle:
        return rotationCursor;
    default:
        return QCursor(hasOutline ? Qt::ArrowCursor : Qt::CrossCursor);
    }
}

void MTool::setupToolBar(QToolBar* toolBar)
{
    Q_UNUSED(toolBar)
}

// ---------------------------------------------------------------------------
// Virtual operations

double MTool::accumulatorDistance()
{
    return 0.0;
}

void MTool::drawPoints(QPainter* painter, bool mapToWidget)
{
    if (!m_visible || !view())
        return;
    // A copy: drawing must not see the list change under it.
    const QVector<QPointF> points = pointList();
    for (const QPointF& each : points)
        drawPoint(painter, each, m_defaultPen, m_defaultBrush, mapToWidget);
}

void MTool::drawPoint(QPainter* painter, const QPointF& pos, const QPen& pen, const QBrush& brush,
                      bool mapToWidget)
{
    MWidget* widget = view();
    if (!widget || !painter)
        return;
    const QPointF centre = mapToWidget ? widget->transform()->mapToWidget(pos) : pos;
    painter->save();
    painter->resetTransform();
    painter->setClipRect(widget->rect());
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setPen(pen);
    painter->setBrush(brush);
    painter->drawEllipse(pointRect(centre));
    painter->restore();
}

void MTool::drawPoint(QPainter* painter, const QPointF& pos, bool mapToWidget)
{
    drawPoint(painter, pos, m_defaultPen, m_defaultBrush, mapToWidget);
}

void MTool::paint(QPainter* painter)
{
    Q_UNUSED(painter)
}

bool MTool::mousePressEvent(MEvent* event)
{
    Q_UNUSED(event)
    return false;
}

void MTool::mouseMoveEvent(MEvent* event)
{
    Q_UNUSED(event)
}

void MTool::mouseReleaseEvent(MEvent* event)
{
    Q_UNUSED(event)
}

void MTool::hoverMoveEvent(MEvent* event)
{
    Q_UNUSED(event)
}

bool MTool::keyPressEvent(QKeyEvent* event)
{
    Q_UNUSED(event)
    return false;
}

void MTool::wheelEvent(QWheelEvent* event)
{
    Q_UNUSED(event)
}

void MTool::mouseDoubleClickEvent(MEvent* event)
{
    Q_UNUSED(event)
}

bool MTool::canDraw(bool showMessage)
{
    const MCanvas* document = canvas();
    if (document && document->canPaint())
        return true;
    if (showMessage)
        showCantDrawMessage();
    return false;
}

void MTool::showCantDrawMessage()
{
    QMessageBox::critical(view(), tr("Layer"), tr("Can't draw: layer is locked or canvas is empty"),
                          QMessageBox::Ok);
}

int MTool::pointIndexAt(MEvent* event)
{
    return event ? pointIndexAt(event->widgetPosition) : -1;
}

int MTool::pointIndexAt(const QPointF& widgetPosition)
{
    MWidget* widget = view();
    if (m_locked || !m_visible || !widget)
        return -1;
    const QVector<QPointF>& points = pointList();
    const MTransform* transform = widget->transform();
    for (int i = 0; i < points.size(); ++i) {
        if (pointRect(transform->mapToWidget(points.at(i))).contains(widgetPosition))
            return i;
    }
    return -1;
}

void MTool::setPoint(int index, const QPointF& canvasPosition)
{
    MToolValues* values = toolValues();
    if (values && values->setPoint(m_pointId, index, canvasPosition))
        Q_EMIT toolChanged(this);
}

void MTool::setPoint(const QPointF& canvasPosition)
{
    setPoint(0, canvasPosition);
}

void MTool::activate(bool value)
{
    set_visible(value);
    Q_EMIT toolChanged(this);
}

bool MTool::updateCursor(const QPointF& localPos, double scale)
{
    Q_UNUSED(localPos)
    Q_UNUSED(scale)
    return true;
}

void MTool::setValue(int id, const QVariant& val)
{
    MToolValues* values = toolValues();
    if (!values)
        return;
    values->setValue(id, val);
    Q_EMIT toolChanged(this);
}

void MTool::addPoint(const QPointF& canvasPosition)
{
    MToolValues* values = toolValues();
    if (values && values->addPoint(m_pointId, canvasPosition))
        Q_EMIT toolChanged(this);
}

void MTool::removePoint()
{
    MToolValues* values = toolValues();
    if (values && values->removePoint(m_pointId))
        Q_EMIT toolChanged(this);
}

void MTool::removePoint(int index)
{
    MToolValues* values = toolValues();
    if (values && values->removePoint(m_pointId, index))
        Q_EMIT toolChanged(this);
}

void MTool::setPoints(const QVector<QPointF>& points)
{
    MToolValues* values = toolValues();
    if (values && values->setPoints(m_pointId, points))
        Q_EMIT toolChanged(this);
}

void MTool::clearPoints()
{
    MToolValues* values = toolValues();
    if (values && values->clearPoint(m_pointId))
        Q_EMIT toolChanged(this);
}

void MTool::setColor(const QColor& color, Qt::KeyboardModifiers modifiers)
{
    Q_UNUSED(color)
    Q_UNUSED(modifiers)
}

void MTool::showText(const QString& text)
{
    if (MSettings::instance()->showInstructions())
        Q_EMIT MTools::instance()->showText(text);
}

void MTool::refresh()
{
    if (MWidget* widget = view())
        widget->update();
}

// ---------------------------------------------------------------------------
// Shared by the tools whose points are dragged one at a time

bool MTool::catchPoint(MEvent* event)
{
    if (m_locked || !m_visible || !view())
        return false;
    m_pointIndex = pointIndexAt(event);
    return m_pointIndex >= 0;
}

bool MTool::moveFigure(const QPointF& canvasPosition)
{
    const QPointF origin = point(0);
    const QPointF delta = canvasPosition - origin;
    if (std::abs(delta.x()) <= 1e-12 && std::abs(delta.y()) <= 1e-12)
        return false;
    const int count = pointCount();
    for (int i = 0; i < count; ++i)
        setPoint(i, point(i) + delta);
    return true;
}
