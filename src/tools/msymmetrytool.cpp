#include "tools/msymmetrytool.h"

#include "app/mevent.h"
#include "gpu/mtransform.h"
#include "gpu/mwidget.h"
#include "tools/mtools.h"
#include "tools/mtoolvalues.h"

#include <QAction>
#include <QIcon>
#include <QLabel>
#include <QLineF>
#include <QPainter>
#include <QSpinBox>
#include <QToolBar>
#include <QTransform>

#include <cmath>

namespace {

// The turn of p about c by degrees, clockwise on screen.
QPointF rotated(const QPointF& p, const QPointF& c, double degrees)
{
    QTransform turn;
    turn.translate(c.x(), c.y());
    turn.rotate(degrees);
    turn.translate(-c.x(), -c.y());
    return turn.map(p);
}

bool samePosition(const QPointF& a, const QPointF& b)
{
    return std::abs(a.x() - b.x()) <= 1e-12 && std::abs(a.y() - b.y()) <= 1e-12;
}

} // namespace

MSymmetryTool::MSymmetryTool(QObject* parent) : MTool(SymmetryTool, parent)
{
    set_pointId(MToolValues::SymmetryPoints);
    clearPoints();
    addPoint(QPointF(0, 0));
    addPoint(QPointF(0, -200));
}

int MSymmetryTool::symmetryNumber() const
{
    return intValue(MToolValues::SymmetryNumber);
}

QPolygonF MSymmetryTool::symmetryPoints(const QPointF& pos)
{
    QPolygonF result;
    result.append(pos);
    if (!visible())
        return result;
    const QPointF c = point(0);
    const QPointF a = point(1);
    const QLineF axis(c, a);
    // The foot of the perpendicular from pos; parallel lines, and so an axis
    // of no length, leave it at the origin.
    QLineF normal = axis.normalVector();
    normal.translate(pos - normal.p1());
    QPointF foot(0, 0);
    normal.intersects(axis, &foot);
    const QPointF mirror = 2 * foot - pos;

    const int n = symmetryNumber();
    if (n == 1) {
        result.append(mirror);
    } else if (n == 2) {
        result.append(mirror);
        result.append(pos + (c - pos) * 2);
        result.append(mirror + (c - mirror) * 2);
    } else if (n > 2) {
        const double step = 360.0 / n;
        for (int i = 1; i < n; ++i)
            result.append(rotated(pos, c, i * step));
    }
    return result;
}

void MSymmetryTool::setSymmetryNumber(int value)
{
    if (!toolValues() || value == symmetryNumber())
        return;
    setValue(MToolValues::SymmetryNumber, QVariant(value));
    Q_EMIT symmetryNumberChanged(value);
}

bool MSymmetryTool::mousePressEvent(MEvent* event)
{
    return catchPoint(event);
}

void MSymmetryTool::mouseMoveEvent(MEvent* event)
{
    if (!view() || !event)
        return;
    const QPointF position(event->positionX, event->positionY);
    if (m_pointIndex == 0) {
        if (moveFigure(position))
            refresh();
    } else if (m_pointIndex == 1) {
        if (samePosition(position, point(1)))
            return;
        setPoint(1, position);
        refresh();
    }
}

bool MSymmetryTool::updateCursor(const QPointF& localPos, double scale)
{
    Q_UNUSED(scale)
    if (!locked() && pointIndexAt(localPos) >= 0) {
        setCursor(QCursor(Qt::SizeAllCursor));
        return true;
    }
    setCursor(QCursor(Qt::ArrowCursor));
    return false;
}

void MSymmetryTool::paint(QPainter* painter)
{
    MWidget* widget = view();
    if (!painter || !visible() || !widget)
        return;
    painter->resetTransform();
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setPen(lineStyle()->pen());
    const MTransform* transform = widget->transform();
    const QPointF c = transform->mapToWidget(point(0));
    const QPointF a = transform->mapToWidget(point(1));
    const int n = symmetryNumber();
    if (n != 1) {
        // One spoke per image; no number below 1 has any.
        if (n >= 1) {
            const double step = 360.0 / n;
            for (int i = 0; i < n; ++i)
                painter->drawLine(c, rotated(a, c, i * step));
        }
    } else {
        painter->drawLine(c, 2 * c - a);
        painter->drawLine(c, a);
    }
    if (!locked())
        drawPoints(painter, true);
}

void MSymmetryTool::setupToolBar(QToolBar* toolBar)
{
    if (!toolBar)
        return;
    toolBar->addWidget(new QLabel(tr("Sym. number"), toolBar));
    auto* number = new QSpinBox(toolBar);
    number->setObjectName(QStringLiteral("symmetryNumberSpinBox"));
    number->setRange(1, 30);
    number->setValue(qBound(1, symmetryNumber(), 30));
    connect(number, QOverload<int>::of(&QSpinBox::valueChanged), this, &MSymmetryTool::setSymmetryNumber);
    connect(this, &MSymmetryTool::symmetryNumberChanged, number, &QSpinBox::setValue);
    // Another document brings its own number.
    connect(MTools::instance(), &MTools::widgetChanged, number, [this, number]() {
        if (toolValues())
            number->setValue(symmetryNumber());
    });
    toolBar->addWidget(number);

    QAction* lock = toolBar->addAction(QIcon(QStringLiteral(":/icons/lock-on.ico")), tr("Lock"));
    lock->setToolTip(tr("Lock control points"));
    lock->setCheckable(true);
    lock->setChecked(locked());
    connect(lock, &QAction::toggled, this, &MTool::set_locked);
    connect(this, &MTool::lockedChanged, lock, &QAction::setChecked);
}
