#include "tools/mbrushtool.h"

#include "app/mevent.h"
#include "app/mmousefunctions.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mbrushsettinginfolist.h"
#include "colour/mcolorlist.h"
#include "document/mcanvas.h"
#include "effects/mfield.h"
#include "gpu/mtransform.h"
#include "gpu/mwidget.h"
#include "tools/mfillselectiontool.h"
#include "tools/mperspectivetool.h"
#include "tools/mrullertool.h"
#include "tools/msymmetrytool.h"
#include "tools/mtools.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineF>
#include <QPainter>
#include <QPixmap>
#include <QToolBar>
#include <QVector2D>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr int crossCursorSize = 17;
// At or under this the cursor is a cross: a ring would be lost under the pointer.
constexpr double crossCursorLimit = 5.0;
// The smallest ring drawn, and the size above which it gets a centre mark.
constexpr double minimumRingSize = 15.0;
constexpr double centreMarkLimit = 30.0;
constexpr int centreMarkLength = 5;

QCursor buildCrossCursor()
{
    QPixmap pixmap(crossCursorSize, crossCursorSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setPen(QPen(Qt::black, 1));
    painter.drawLine(0, 8, 4, 8);
    painter.drawLine(12, 8, 16, 8);
    painter.drawLine(8, 0, 8, 4);
    painter.drawLine(8, 12, 8, 16);
    painter.setPen(QPen(Qt::white, 1));
    painter.drawLine(1, 9, 5, 9);
    painter.drawLine(13, 9, 17, 9);
    painter.drawLine(9, 1, 9, 5);
    painter.drawLine(9, 13, 9, 17);
    painter.end();
    return QCursor(pixmap);
}

QCursor buildRingCursor(double size)
{
    const double s = qMax(size, minimumRingSize);
    const int side = int(s);
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setBrush(Qt::transparent);
    const QPointF centre(s / 2.0, s / 2.0);
    painter.setPen(QPen(Qt::black, 1));
    painter.drawEllipse(centre, s / 2.0 - 1.0, s / 2.0 - 1.0);
    painter.setPen(QPen(Qt::white, 1));
    painter.drawEllipse(centre, s / 2.0 - 2.0, s / 2.0 - 2.0);
    if (s > centreMarkLimit) {
        const auto cross = [&](const QPointF& c) {
            painter.drawLine(c, c + QPointF(0, -centreMarkLength));
            painter.drawLine(c, c + QPointF(0, centreMarkLength));
            painter.drawLine(c, c + QPointF(-centreMarkLength, 0));
            painter.drawLine(c, c + QPointF(centreMarkLength, 0));
        };
        painter.setPen(QPen(Qt::white, 1));
        cross(centre + QPointF(1, 1));
        painter.setPen(QPen(Qt::black, 1));
        cross(centre);
    }
    painter.end();
    return QCursor(pixmap, int(s / 2.0), int(s / 2.0));
}

} // namespace

MBrushTool::MBrushTool(QObject* parent) : MTool(BrushTool, parent)
{
    init();
    updateCursor(QPointF(0, 0), 1.0);
}

void MBrushTool::init()
{
    m_cursorDiameter = -1;
    set_drawOnPath(false);
    m_crossCursor = QCursor(Qt::ArrowCursor);
    m_crossCursorBuilt = false;
    m_state = Idle;
}

void MBrushTool::set_drawOnPath(bool value)
{
    if (value == m_drawOnPath)
        return;
    m_drawOnPath = value;
    Q_EMIT drawOnPathChanged(value);
}

void MBrushTool::setupToolBar(QToolBar* toolBar)
{
    if (!toolBar)
        return;
    toolBar->addWidget(new QLabel(tr("Follow path"), toolBar));
    auto* follow = new QCheckBox(toolBar);
    follow->setObjectName(QStringLiteral("followPathCheckBox"));
    follow->setChecked(m_drawOnPath);
    connect(follow, &QCheckBox::toggled, this, &MBrushTool::set_drawOnPath);
    connect(this, &MBrushTool::drawOnPathChanged, follow, &QCheckBox::setChecked);
    toolBar->addWidget(follow);
}

double MBrushTool::accumulatorDistance()
{
    return MBrushList::instance()->baseValueOfCurrent(MEnum::bsAccumulatorDistance);
}

QPointF MBrushTool::snap(const QPointF& position) const
{
    MWidget* widget = view();
    return widget ? widget->snap(position) : position;
}

QPolygonF MBrushTool::selectionPolygon() const
{
    MCanvas* target = canvas();
    return target ? target->selectionPath().toFillPolygon(QTransform()) : QPolygonF();
}

void MBrushTool::constrainEnd()
{
    MTools* tools = MTools::instance();
    auto* ruler = qobject_cast<MRullerTool*>(tools->tool(RullerTool));
    auto* perspective = qobject_cast<MPerspectiveTool*>(tools->tool(PerspectiveTool));
    if (ruler && ruler->visible())
        m_endPoint = ruler->constrain(QLineF(m_startPoint, m_endPoint));
    else if (perspective && perspective->visible())
        m_endPoint = perspective->constrain(QLineF(m_startPoint, m_endPoint));
}

bool MBrushTool::placeOnPathOrRuler(MEvent* event)
{
    const QPolygonF outline = m_drawOnPath ? selectionPolygon() : QPolygonF();
    if (!outline.isEmpty()) {
        const QPointF nearest = nearestOnPolygon(outline, QPointF(event->positionX, event->positionY));
        event->positionX = nearest.x();
        event->positionY = nearest.y();
        return true;
    }
    auto* ruler = qobject_cast<MRullerTool*>(MTools::instance()->tool(RullerTool));
    if (ruler && ruler->visible()) {
        m_endPoint = QPointF(event->positionX, event->positionY);
        constrainEnd();
        event->positionX = m_endPoint.x();
        event->positionY = m_endPoint.y();
    }
    return false;
}

void MBrushTool::stroke(MEvent* event)
{
    MCanvas* target = canvas();
    if (!target)
        return;
    auto* symmetry = qobject_cast<MSymmetryTool*>(MTools::instance()->tool(SymmetryTool));
    const QPointF position(event->positionX, event->positionY);
    const QPolygonF points = symmetry ? symmetry->symmetryPoints(position) : QPolygonF({position});
    if (points.size() > 1 && event->type == 0 && !m_symmetryMacro) {
        const MBrush* brush = MBrushList::instance()->currentBrush();
        target->beginMacro(tr("Symmetry brush stroke: %1, %2")
                               .arg(brush ? brush->description() : QString(),
                                    MColorList::instance()->foregroundColor().name()));
        m_symmetryMacro = true;
    }
    for (int i = 0; i < points.size() && i <= 29; ++i) {
        MEvent image = *event;
        image.positionX = points.at(i).x();
        image.positionY = points.at(i).y();
        target->stroke(image, i);
    }
    // Closed by the release even when the symmetry went off during the stroke.
    if (m_symmetryMacro && event->type == 3) {
        target->endMacro();
        m_symmetryMacro = false;
    }
}

bool MBrushTool::mousePressEvent(MEvent* event)
{
    const QPointF position(event->positionX, event->positionY);
    const bool left = event->button == Qt::LeftButton;
    if (m_state == Idle && left && event->modifiers.testFlag(Qt::ControlModifier)) {
        m_startPoint = m_endPoint = snap(position);
        m_state = WaitingForSecondClick;
        return true;
    }
    if (!left)
        return true;
    if (m_state == WaitingForSecondClick) {
        m_endPoint = snap(position);
        constrainEnd();
        QPainterPath path;
        path.moveTo(m_startPoint);
        path.lineTo(m_endPoint);
        if (MCanvas* target = canvas())
            target->strokePath(path, true);
        m_state = Idle;
        return true;
    }
    if (event->modifiers.testFlag(Qt::ShiftModifier)) {
        if (auto* wand = qobject_cast<MFillSelectionTool*>(MTools::instance()->tool(FillSelectionTool)))
            wand->selectAt(event);
        return true;
    }
    if (m_state != Idle && m_state != Stroking)
        return true;
    if (m_state == Idle)
        m_startPoint = snap(position);
    m_state = Stroking;
    // A stroke along the selection's outline isn't cut by it.
    if (MCanvas* target = canvas())
        target->setClipStroke(!(m_drawOnPath && !selectionPolygon().isEmpty()));
    placeOnPathOrRuler(event);
    stroke(event);
    return true;
}

void MBrushTool::mouseMoveEvent(MEvent* event)
{
    if (event->button != Qt::LeftButton)
        return;
    if (m_state == Stroking) {
        placeOnPathOrRuler(event);
        stroke(event);
    } else if (m_state == WaitingForSecondClick) {
        m_endPoint = snap(QPointF(event->positionX, event->positionY));
        constrainEnd();
        refresh();
    }
}

void MBrushTool::mouseReleaseEvent(MEvent* event)
{
    if (m_state != Stroking || event->button != Qt::LeftButton)
        return;
    placeOnPathOrRuler(event);
    stroke(event);
    m_state = Idle;
}

void MBrushTool::hoverMoveEvent(MEvent* event)
{
    if (m_state == WaitingForSecondClick && event->button == Qt::LeftButton) {
        m_endPoint = snap(QPointF(event->positionX, event->positionY));
        constrainEnd();
    }
    Q_EMIT toolChanged(this);
}

bool MBrushTool::keyPressEvent(QKeyEvent* event)
{
    if (m_state == WaitingForSecondClick && event->key() == Qt::Key_Escape) {
        m_state = Idle;
        refresh();
        return true;
    }
    return false;
}

void MBrushTool::wheelEvent(QWheelEvent* event)
{
    const int function =
        MMouseFunctions::instance()->function(toolId(), MMouseFunctions::noButton, event->modifiers());
    if (function != MMouseFunctions::BrushRadius)
        return;
    const QPoint angle = event->angleDelta();
    adjustRadius(angle.y() != 0 ? angle.y() : angle.x());
}

void MBrushTool::adjustRadius(int delta)
{
    MBrush* brush = MBrushList::instance()->currentBrush();
    if (!brush)
        return;
    double radius = brush->baseValue(MEnum::bsRadius) * (delta < 0 ? 0.8 : 1.2);
    const MField& field = MBrushSettingInfoList::instance()->field(MEnum::bsRadius);
    radius = qMin(radius, field.maximum());
    radius = qMax(radius, field.minimum());
    brush->setBaseValue(MEnum::bsRadius, radius);
    showText(tr("Brush radius: %1 px.").arg(QString::asprintf("%3.2f", radius)));
}

void MBrushTool::paint(QPainter* painter)
{
    MWidget* widget = view();
    if (!visible() || !widget || m_state != WaitingForSecondClick || !widget->underMouse())
        return;
    painter->resetTransform();
    painter->setRenderHint(QPainter::Antialiasing);
    QPen pen(Qt::black, 1.0, Qt::DashLine);
    pen.setCosmetic(true);
    painter->setPen(pen);
    MTransform* transform = widget->transform();
    painter->drawLine(transform->mapToWidget(m_startPoint), transform->mapToWidget(m_endPoint));
}

bool MBrushTool::updateCursor(const QPointF& localPos, double scale)
{
    Q_UNUSED(localPos)
    const double radius = MBrushList::instance()->baseValueOfCurrent(MEnum::bsRadius);
    const double diameter = (2.0 * radius + 1.0) * scale;
    if (int(diameter) == m_cursorDiameter)
        return true;
    m_cursorDiameter = int(diameter);
    const double size = qBound(1.0, diameter, double(maximumCursorSize));
    if (size <= crossCursorLimit) {
        if (!m_crossCursorBuilt) {
            m_crossCursor = buildCrossCursor();
            m_crossCursorBuilt = true;
        }
        setCursor(m_crossCursor);
    } else {
        setCursor(buildRingCursor(size));
    }
    return true;
}

QPointF MBrushTool::nearestOnPolygon(const QPolygonF& polygon, const QPointF& p)
{
    QPointF answer = p;
    double best = 9999999.0;
    QVector<QPointF> feet;
    for (int i = 0; i + 1 < polygon.size(); ++i) {
        const QLineF edge(polygon.at(i), polygon.at(i + 1));
        if (edge.length() == 0.0)
            continue;
        QLineF normal = edge.normalVector();
        normal.translate(p - normal.p1());
        QPointF foot;
        if (normal.intersects(edge, &foot) == QLineF::NoIntersection)
            continue;
        const QVector2D along(edge.p2() - edge.p1());
        const double t = double(QVector2D::dotProduct(QVector2D(foot - edge.p1()), along)) /
                         double(along.lengthSquared());
        if (t >= 0.0 && t <= 1.0)
            feet.append(foot);
    }
    const auto consider = [&](const QPointF& candidate) {
        const double distance = QLineF(p, candidate).length();
        if (distance < best) {
            best = distance;
            answer = candidate;
        }
    };
    for (const QPointF& foot : qAsConst(feet))
        consider(foot);
    for (const QPointF& vertex : polygon)
        consider(vertex);
    return answer;
}
