#include "gpu/mwidget.h"

#include "app/mgeometry.h"
#include "app/mlogger.h"
#include "app/mmousefunctions.h"
#include "app/msettings.h"
#include "app/mtablet.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "document/mcanvas.h"
#include "gpu/mpaintengine.h"
#include "gpu/mpaintparams.h"
#include "gpu/mshareddata.h"
#include "gpu/mtransform.h"
#include "gpu/mvertexbuffer.h"
#include "tools/mcontrol.h"
#include "tools/mtool.h"
#include "tools/mtools.h"
#include "tools/mtoolvalues.h"

#include <QApplication>
#include <QCursor>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLVertexArrayObject>
#include <QPainter>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QSurfaceFormat>
#include <QTabletEvent>
#include <QWheelEvent>

#include <cmath>

namespace {

bool fuzzyEqual(double a, double b)
{
    return a == b || qFuzzyCompare(a, b);
}

} // namespace

MWidget::MWidget(QWidget* parent) : QOpenGLWidget(parent), m_filterMode(GL_NEAREST)
{
    QSurfaceFormat surfaceFormat = format();
    surfaceFormat.setSamples(4);
    setFormat(surfaceFormat);
    setUpdateBehavior(QOpenGLWidget::PartialUpdate);
    setAutoFillBackground(false);
    setAcceptDrops(true);
    // Hover moves reach the tools and the cursor; keys need the focus.
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    installEventFilter(MTablet::instance());

    m_transform = new MTransform(this);
    m_canvas = new MCanvas(this);
    m_toolValues = new MToolValues(this);
    m_updateTimer.start();
    m_eventTimer.start();

    connect(m_transform, &MTransform::update, this, &MWidget::onTransformUpdate);
    connect(m_transform, &MTransform::scaleChanged, this, &MWidget::scaleChanged);
    connect(m_canvas, &MCanvas::refreshNow, this, QOverload<>::of(&QWidget::update));
    connect(m_canvas, QOverload<bool, const QRectF&>::of(&MCanvas::refresh), this, &MWidget::refresh);
    connect(m_canvas, &MCanvas::paintedRectChanged, this, &MWidget::onPaintedRectChanged);
    connect(MSettings::instance(), &MSettings::showGridChanged, this, QOverload<>::of(&QWidget::update));
    connect(MTools::instance(), &MTools::showText, this, &MWidget::setText);
}

QVector<MControl*> MWidget::controls() const
{
    QVector<MControl*> result;
    for (const QPointer<MControl>& control : m_controls) {
        if (control)
            result.append(control);
    }
    return result;
}

void MWidget::addControl(MControl* control)
{
    if (!control || controls().contains(control))
        return;
    if (!control->parent())
        control->setParent(this);
    m_controls.append(control);
}

MWidget::~MWidget()
{
    if (m_viewAnimation)
        m_viewAnimation->stop();
    if (m_textAnimation)
        m_textAnimation->stop();
    shutDown();
}

QPointF MWidget::translation() const
{
    return m_transform->translation();
}

double MWidget::scale() const
{
    return m_transform->scale();
}

double MWidget::rotation() const
{
    return m_transform->rotation();
}

bool MWidget::isSmooth() const
{
    const MSettings* settings = MSettings::instance();
    return settings->smoothPixels() && settings->smoothMaxScale() > m_transform->scale();
}

QPointF MWidget::snap(const QPointF& position) const
{
    const MTool* grid = drivesTools() ? MTools::instance()->tool(MTool::GridTool) : nullptr;
    const int size = m_toolValues->value(MToolValues::GridSize).toInt();
    if (!grid || !grid->visible() || !m_toolValues->value(MToolValues::GridShowGrid).toBool() || size <= 0)
        return position;
    return QPointF(std::floor(position.x() / size + 0.5) * size, std::floor(position.y() / size + 0.5) * size);
}

QString MWidget::stateText() const
{
    QStringList parts;
    const MTextureLayer* layer = m_canvas->current();
    if (layer && !layer->visible())
        parts.append(tr("the current layer is hidden"));
    else if (m_canvas->rowCount() == 0)
        parts.append(tr("the canvas is empty"));
    else if (!m_canvas->canPaint())
        parts.append(tr("the current layer is locked"));
    if (m_canvas->hasSelection())
        parts.append(tr("selection is active"));
    const MBrush* brush = MBrushList::exists() ? MBrushList::instance()->currentBrush() : nullptr;
    if (brush && brush->eraser())
        parts.append(tr("brush is in eraser mode"));
    return parts.join(QStringLiteral(" - "));
}

// ---------------------------------------------------------------------------
// GL set-up and shut-down

void MWidget::initializeGL()
{
    const QString source = QStringLiteral("MWidget::initializeGL");
    m_vertexBuffer = std::make_unique<MVertexBuffer>(30);
    if (!m_vertexBuffer->create())
        MLogger::systemError(source, QStringLiteral("Can't create vertex buffer"));
    m_canvas->initializeGL();
    // The canvas works in its own context: take ours back for the vertex array.
    makeCurrent();
    m_glReady = true;
    m_vertexArray = std::make_unique<QOpenGLVertexArrayObject>();
    if (!m_vertexArray->create())
        MLogger::systemError(source, QStringLiteral("Can't create vertex array"));
}

void MWidget::shutDown()
{
    if (!m_glReady)
        return;
    makeCurrent();
    if (m_vertexBuffer)
        m_vertexBuffer->destroy();
    m_vertexBuffer.reset();
    if (QOpenGLContext* current = QOpenGLContext::currentContext())
        current->functions()->glFinish();
    m_canvas->shutDown();
    makeCurrent();
    if (m_vertexArray)
        m_vertexArray->destroy();
    m_vertexArray.reset();
    doneCurrent();
    m_glReady = false;
}

// ---------------------------------------------------------------------------
// Painting

void MWidget::paintGL()
{
    if (!m_glReady)
        return;
    if (m_firstPaint && isVisible()) {
        m_firstPaint = false;
        setScale(0.5);
        animateView(true, 1.0);
    }
    makeCurrent();
    QPainter painter(this);
    painter.beginNativePainting();
    paintGlHalf();
    painter.endNativePainting();
    paintOverlay(&painter);
    painter.end();
}

void MWidget::paintGlHalf()
{
    QOpenGLFunctions* gl = context()->functions();
    const QColor background = MSettings::instance()->widgetBackgroundColor();
    gl->glClearColor(float(background.redF()), float(background.greenF()), float(background.blueF()), 1.0f);
    gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    gl->glDisable(GL_DEPTH_TEST);
    gl->glDisable(GL_CULL_FACE);

    MPaintParams params;
    params.context = context();
    params.canvas = m_canvas;
    params.clipRect = m_canvas->paintedRect();
    params.clipToRect = true;
    params.programList = m_canvas->sharedData()->programList();
    params.vertexArray = m_vertexArray.get();
    params.smoothPixels = isSmooth();
    params.viewRect = QRectF(rect());
    params.transform = m_transform;
    params.timeLineMode = m_timeLineMode;
    params.showPreviousFrame = m_showPreviousFrame;
    params.firstLayerAsBackground = m_firstLayerAsBackground;
    m_canvas->paintEngine()->drawView(&params, m_canvas->hasSelection(), MSettings::instance()->showTiling());
    // The engine may have gone to the canvas's context for a texture.
    if (QOpenGLContext::currentContext() != context())
        makeCurrent();
    if (!m_canvas->strokeInProgress()) {
        for (MControl* control : controls()) {
            if (control->visible())
                control->render();
        }
        if (QOpenGLContext::currentContext() != context())
            makeCurrent();
    }
}

void MWidget::paintOverlay(QPainter* painter)
{
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setOpacity(1.0);
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (!isSmooth())
        drawPixelGrid(painter);
    if (drivesTools())
        MTools::instance()->dispatchPaint(painter);
    if (!m_canvas->strokeInProgress()) {
        for (MControl* control : controls()) {
            if (!control->visible())
                continue;
            painter->save();
            control->paint(painter);
            painter->restore();
        }
    }
    drawText(painter, stateText(), MGeometry::TopCenter, 0.5);
    drawText(painter, m_text, MGeometry::BottomCenter, m_textOpacity);
}

void MWidget::drawPixelGrid(QPainter* painter)
{
    const QRectF page = m_canvas->paintedRect();
    const QRectF onScreen = m_transform->mapRectToWidget(page).intersected(QRectF(rect()));
    if (onScreen.isEmpty())
        return;
    // Under a rotation the mapped-back box overhangs the page; no line is
    // drawn outside it.
    const QRectF area = m_transform->mapRectToCanvas(onScreen).intersected(page);
    if (area.isEmpty())
        return;
    painter->save();
    painter->setTransform(m_transform->matrix());
    QPen pen(QColor(200, 200, 200));
    pen.setWidth(1);
    pen.setCosmetic(true);
    painter->setPen(pen);
    painter->setRenderHint(QPainter::Antialiasing, false);
    for (double x = std::ceil(area.left()); x <= area.right(); x += 1.0)
        painter->drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    for (double y = std::ceil(area.top()); y <= area.bottom(); y += 1.0)
        painter->drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    painter->restore();
}

void MWidget::drawText(QPainter* painter, const QString& text, int position, double opacity)
{
    if (opacity <= 0.0 || text.isEmpty())
        return;
    QFont font(QStringLiteral("Lucida"));
    font.setPixelSize(textPixelSize);
    const QFontMetrics metrics(font);
    const QSizeF box(metrics.horizontalAdvance(text) + 2 * textMargin, textPixelSize + 2 * textMargin);
    const QRectF placed = MGeometry::place(box, QRectF(rect()), MGeometry::Position(position));
    const auto withAlpha = [opacity](QColor color) {
        color.setAlphaF(qBound(0.0, opacity, 1.0));
        return color;
    };
    painter->save();
    painter->resetTransform();
    painter->setFont(font);
    painter->setBrush(withAlpha(Qt::black));
    painter->setPen(withAlpha(Qt::darkGray));
    painter->drawRect(placed);
    painter->setPen(withAlpha(Qt::white));
    painter->drawText(placed, Qt::AlignCenter, text);
    painter->restore();
}

void MWidget::refresh(bool useTimer, const QRectF& canvasRect)
{
    if (useTimer && double(m_updateTimer.elapsed()) < 1000.0 / maximumRefreshRate)
        return;
    if (!canvasRect.isEmpty())
        QWidget::update(m_transform->mapRectToWidget(canvasRect).toAlignedRect());
    else
        update();
    m_updateTimer.restart();
}

// ---------------------------------------------------------------------------
// View transform

QPointF MWidget::paintedRectCentre() const
{
    return m_canvas->paintedRect().center();
}

void MWidget::onTransformUpdate()
{
    const QPointF translation = m_transform->translation();
    const double rotation = m_transform->rotation();
    if (translation != m_lastTranslation) {
        m_lastTranslation = translation;
        Q_EMIT translationChanged(translation);
    }
    if (!fuzzyEqual(rotation, m_lastRotation)) {
        m_lastRotation = rotation;
        Q_EMIT rotationChanged(rotation);
    }
    update();
}

void MWidget::setTranslation(const QPointF& translation)
{
    m_transform->setTranslation(translation);
}

void MWidget::setScale(double scale)
{
    const double before = m_transform->scale();
    const QPointF widgetCentre = QRectF(rect()).center();
    {
        const QSignalBlocker blocker(m_transform);
        m_transform->reset();
        const QPointF canvasCentre = m_transform->mapToWidget(paintedRectCentre());
        m_transform->setTranslation(widgetCentre - canvasCentre);
        m_transform->zoom(scale, widgetCentre);
    }
    onTransformUpdate();
    if (!fuzzyEqual(before, m_transform->scale()))
        Q_EMIT scaleChanged(m_transform->scale());
    update();
}

void MWidget::setRotation(double rotation)
{
    m_transform->setRotationCentre(paintedRectCentre());
    m_transform->setRotation(rotation);
}

void MWidget::animateView(bool fit, double scale)
{
    double target = scale;
    if (fit) {
        const QRectF available = QRectF(rect()).adjusted(30, 30, -30, -30);
        const QSizeF page = m_canvas->paintedRect().size();
        if (available.isEmpty() || page.isEmpty())
            return;
        target = qMin(available.width() / page.width(), available.height() / page.height());
    }
    if (m_viewAnimation)
        m_viewAnimation->stop();
    auto* group = new QParallelAnimationGroup(this);
    auto* scaling = new QPropertyAnimation(this, "scale", group);
    scaling->setDuration(animationDuration);
    scaling->setStartValue(m_transform->scale());
    scaling->setEndValue(target);
    scaling->setEasingCurve(target > m_transform->scale() ? QEasingCurve::OutBack : QEasingCurve::Linear);
    auto* turning = new QPropertyAnimation(this, "rotation", group);
    turning->setDuration(animationDuration);
    turning->setStartValue(360.0);
    turning->setEndValue(0.0);
    m_viewAnimation = group;
    group->start(QAbstractAnimation::DeleteWhenStopped);
}

void MWidget::resetCanvas()
{
    animateView(false, 1.0);
}

void MWidget::fitToView()
{
    animateView(true, 1.0);
}

void MWidget::adjustToWidth()
{
    const double available = width() - 60.0;
    const double page = m_canvas->paintedRect().width();
    if (available < 1.0 || page == 0.0)
        return;
    animateView(false, available / page);
}

void MWidget::adjustToHeight()
{
    const double available = height() - 60.0;
    const double page = m_canvas->paintedRect().height();
    if (available < 1.0 || page == 0.0)
        return;
    animateView(false, available / page);
}

// ---------------------------------------------------------------------------
// Plain properties

void MWidget::setAlphaFilter(double alpha)
{
    if (fuzzyEqual(alpha, m_alphaFilter))
        return;
    m_alphaFilter = alpha;
    // The position input filters of the stroke smoothing take alpha as their
    // coefficient once they exist.
    Q_EMIT alphaFilterChanged(alpha);
}

void MWidget::setFilterMode(GLuint mode)
{
    if (mode == m_filterMode)
        return;
    m_filterMode = mode;
    Q_EMIT filterModeChanged(mode);
}

void MWidget::setText(const QString& text)
{
    m_text = text;
    if (m_textAnimation)
        m_textAnimation->stop();
    auto* animation = new QPropertyAnimation(this, "textOpacity", this);
    animation->setDuration(MSettings::instance()->textDuration() * 1000);
    animation->setStartValue(1.0);
    animation->setEndValue(0.0);
    animation->setEasingCurve(QEasingCurve::InQuint);
    m_textAnimation = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void MWidget::setTextOpacity(double opacity)
{
    if (fuzzyEqual(opacity, m_textOpacity))
        return;
    m_textOpacity = opacity;
    Q_EMIT textOpacityChanged(opacity);
    update();
}

void MWidget::setReadOnly(bool readOnly)
{
    if (readOnly == m_readOnly)
        return;
    m_readOnly = readOnly;
    Q_EMIT readOnlyChanged(readOnly);
}

void MWidget::setInteractive(bool interactive)
{
    if (interactive == m_interactive)
        return;
    m_interactive = interactive;
    Q_EMIT interactiveChanged(interactive);
}

void MWidget::setFirstLayerAsBackground(bool value)
{
    if (value == m_firstLayerAsBackground)
        return;
    m_firstLayerAsBackground = value;
    Q_EMIT firstLayerAsBackgroundChanged(value);
    update();
}

void MWidget::setTimeLineMode(bool value)
{
    if (value == m_timeLineMode)
        return;
    m_timeLineMode = value;
    Q_EMIT timeLineModeChanged(value);
    update();
}

void MWidget::setShowPreviousFrame(bool value)
{
    if (value == m_showPreviousFrame)
        return;
    m_showPreviousFrame = value;
    Q_EMIT showPreviousFrameChanged(value);
    update();
}

void MWidget::onPaintedRectChanged(const QRectF& rect)
{
    setText(QStringLiteral("%1 - %2").arg(rect.width(), 0, 'f', 0).arg(rect.height(), 0, 'f', 0));
}

void MWidget::animationValueChanged(const QVariant& value)
{
    MTextureLayer* layer = m_canvas->current();
    if (!layer || layer->shaderId().isEmpty() || m_animatedParameter.isEmpty())
        return;
    layer->shaderValues()->setValue(m_animatedParameter, value);
    update();
}

// ---------------------------------------------------------------------------
// Cursor

void MWidget::updateCursor(const QPointF& localPos)
{
    // A control under the pointer claims it.
    for (MControl* control : controls()) {
        if (!control->visible() || !control->enabled())
            continue;
        const QRectF area = control->boundingRect();
        if (!area.isNull() && m_transform->mapRectToWidget(area).contains(localPos)) {
            setCursor(Qt::ArrowCursor);
            return;
        }
    }
    const MTextureLayer* layer = m_canvas->current();
    if (layer && (!layer->visible() || layer->locked())) {
        if (m_forbiddenCursor.isNull())
            m_forbiddenCursor = QPixmap(QStringLiteral(":/icons/forbidden-cursor.ico"));
        setCursor(QCursor(m_forbiddenCursor, m_forbiddenCursor.width() / 2, m_forbiddenCursor.height() / 2));
        return;
    }
    if (drivesTools() && MTools::instance()->updateCursor(localPos, m_transform->scale()))
        return;
    setCursor(Qt::ArrowCursor);
}

void MWidget::updateCursor()
{
    updateCursor(QPointF(mapFromGlobal(QCursor::pos())));
}

// ---------------------------------------------------------------------------
// Input

int MWidget::currentToolId() const
{
    // Before the tools are made only the functions shared by every tool apply.
    const MTools* tools = MTools::exists() ? MTools::instance() : nullptr;
    return tools && tools->currentTool() ? tools->currentToolId() : MMouseFunctions::anyTool;
}

bool MWidget::drivesTools() const
{
    return MTools::exists() && MTools::instance()->widget() == this;
}

double MWidget::toolAccumulatorDistance() const
{
    MTool* tool = drivesTools() ? MTools::instance()->currentTool() : nullptr;
    return tool ? tool->accumulatorDistance() : 0.0;
}

void MWidget::offerToTools(MEvent* event)
{
    if (!event)
        return;
    // A tool with an accumulator distance sees its press at the first move
    // that is kept: the press waits, and the next event stands in for it.
    bool releaseAfter = false;
    if (event->type == 0 && toolAccumulatorDistance() != 0.0) {
        m_pressHeld = true;
        return;
    }
    if (m_pressHeld) {
        m_pressHeld = false;
        // A click without a kept move still ends what its press began.
        if (event->type == 3)
            releaseAfter = true;
        event->type = 0;
    }

    for (MControl* control : controls()) {
        if (!control->handleEvent(event))
            continue;
        const QRectF area = control->boundingRect();
        if (area.isEmpty())
            update();
        else
            QWidget::update(m_transform->mapRectToWidget(area).toAlignedRect());
        return;
    }

    if (!drivesTools())
        return;
    MTools* tools = MTools::instance();
    switch (event->type) {
    case 0:
        tools->dispatchPress(event);
        break;
    case 1:
        tools->dispatchHoverMove(event);
        break;
    case 2:
        tools->dispatchMove(event);
        break;
    case 3:
        tools->dispatchRelease(event);
        break;
    case 5:
        tools->dispatchDoubleClick(event);
        break;
    default:
        break;
    }
    if (releaseAfter) {
        event->type = 3;
        tools->dispatchRelease(event);
    }
}

bool MWidget::isPanButton(int button, Qt::KeyboardModifiers modifiers) const
{
    return MMouseFunctions::instance()->function(currentToolId(), button, modifiers) ==
           MMouseFunctions::CanvasDrag;
}

bool MWidget::buildEvent(QMouseEvent* event, QList<MEvent>& events)
{
    events.clear();
    MEvent e;
    e.buttons = int(event->buttons());
    e.button = m_pressedButton;
    e.device = 1;
    e.widgetPosition = event->localPos();
    const QPointF position = m_transform->mapToCanvas(event->localPos());
    e.positionX = position.x();
    e.positionY = position.y();
    e.modifiers = event->modifiers();
    // A mouse event made by Qt from a tablet event carries the stylus's state,
    // which MTablet kept; a real mouse paints at full pressure.
    const MTablet* tablet = MTablet::instance();
    if (event->source() != Qt::MouseEventNotSynthesized &&
        tablet->proximityDevice() != int(QTabletEvent::UnknownPointer)) {
        e.device = 2;
        e.pointerType = tablet->pointerType();
        e.pressure = tablet->pressure();
        e.tangentialPressure = tablet->tangentialPressure();
        e.xTilt = tablet->xTilt();
        e.yTilt = tablet->yTilt();
    }
    const double ms = double(m_eventTimer.nsecsElapsed()) / 1e6;

    switch (event->type()) {
    case QEvent::MouseButtonPress:
        m_pressed = true;
        events = m_smoother.press(e);
        m_eventTimer.start();
        m_strokeTimer.start();
        record(e, true);
        break;
    case QEvent::MouseButtonRelease:
        events = m_smoother.release(e, ms);
        if (m_pressed)
            record(e, false);
        m_pressed = false;
        break;
    case QEvent::MouseButtonDblClick:
        e.type = 5;
        events.append(e);
        break;
    case QEvent::MouseMove:
        if (m_pressed) {
            record(e, false);
            // A short move is dropped whole: the last position stays, so that
            // the distance builds up over the following moves.
            if (!m_smoother.move(e, ms, toolAccumulatorDistance(), events))
                return false;
        } else {
            if (!m_smoother.hover(e, ms, toolAccumulatorDistance()))
                return false;
            events.append(e);
        }
        m_eventTimer.restart();
        break;
    default:
        return false;
    }
    m_currentEvent = e;
    return true;
}

void MWidget::record(const MEvent& event, bool first)
{
    static const QString fileName = qEnvironmentVariable("QUILLMERE_RECORD");
    if (fileName.isEmpty())
        return;
    if (first)
        m_recordedStroke.clear();
    MStrokeFile::Sample sample;
    sample.x = event.positionX;
    sample.y = event.positionY;
    sample.pressure = event.pressure;
    sample.time = first ? 0.0 : double(m_strokeTimer.nsecsElapsed()) / 1e6;
    sample.xTilt = event.xTilt;
    sample.yTilt = event.yTilt;
    m_recordedStroke.append(sample);
    if (event.type != 3 || first)
        return;
    QString error;
    if (!MStrokeFile::append(fileName, m_recordedStroke, &error))
        MLogger::systemError(QStringLiteral("MWidget::record"), error);
    m_recordedStroke.clear();
}

void MWidget::dispatch(QList<MEvent>& events)
{
    for (MEvent& event : events)
        offerToTools(&event);
}

void MWidget::mousePressEvent(QMouseEvent* event)
{
    const int button = int(event->button());
    m_lastMousePosition = event->localPos();
    m_pressPosition = event->localPos();
    m_pressedButton = button;
    if (isPanButton(button, event->modifiers()) || (m_panMode && event->button() == Qt::LeftButton)) {
        m_panning = true;
        setCursor(Qt::ClosedHandCursor);
        return;
    }
    QList<MEvent> events;
    if (buildEvent(event, events))
        dispatch(events);
    update();
}

void MWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (m_panning) {
        const QPointF delta = event->localPos() - m_lastMousePosition;
        const QPointF step(std::round(delta.x()), std::round(delta.y()));
        if (!step.isNull()) {
            m_transform->translate(step);
            m_lastMousePosition = event->localPos();
        }
        return;
    }
    m_lastMousePosition = event->localPos();
    QList<MEvent> events;
    if (!buildEvent(event, events))
        return;
    dispatch(events);
    if (!m_pressed)
        updateCursor(event->localPos());
}

void MWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_panning) {
        if (int(event->button()) == m_pressedButton) {
            m_panning = false;
            m_pressedButton = 0;
            updateCursor(event->localPos());
        }
        return;
    }
    QList<MEvent> events;
    if (buildEvent(event, events))
        dispatch(events);
    m_pressedButton = 0;
    update();
}

void MWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (m_panning)
        return;
    QList<MEvent> events;
    if (buildEvent(event, events))
        dispatch(events);
}

void MWidget::wheelEvent(QWheelEvent* event)
{
    const QPoint angle = event->angleDelta();
    // Alt turns the wheel sideways on some systems.
    const int delta = angle.y() != 0 ? angle.y() : angle.x();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    if (!controls().isEmpty()) {
        MEvent turn;
        turn.type = 4;
        turn.modifiers = modifiers;
        turn.widgetPosition = event->position();
        const QPointF position = m_transform->mapToCanvas(event->position());
        turn.positionX = position.x();
        turn.positionY = position.y();
        turn.directionY = delta > 0 ? 1.0 : (delta < 0 ? -1.0 : 0.0);
        for (MControl* control : controls()) {
            if (control->wheel(&turn)) {
                event->accept();
                update();
                return;
            }
        }
    }
    const int function =
        MMouseFunctions::instance()->function(currentToolId(), MMouseFunctions::noButton, modifiers);
    if (function == MMouseFunctions::NoFunction || modifiers == Qt::AltModifier) {
        if (drivesTools() && MTools::instance()->currentTool()) {
            MTools::instance()->dispatchWheel(event);
            event->accept();
            return;
        }
        event->ignore();
        return;
    }
    switch (function) {
    case MMouseFunctions::CanvasRotate: {
        m_transform->setRotationCentre(paintedRectCentre());
        const double turned = m_transform->rotation() + (delta > 0 ? -10.0 : 10.0);
        m_transform->setRotation(double(int(turned) % 360));
        break;
    }
    case MMouseFunctions::CanvasScale: {
        const double target = m_transform->scale() * (delta > 0 ? 1.2 : 0.8);
        const QSizeF page = m_canvas->paintedRect().size() * target;
        if (page.width() <= width() && page.height() <= height())
            setScale(target);
        else
            m_transform->zoom(target, event->position());
        break;
    }
    case MMouseFunctions::CanvasTranslateVertical:
        m_transform->translate(QPointF(0.0, delta > 0 ? wheelPanStep : -wheelPanStep));
        break;
    case MMouseFunctions::CanvasTranslateHorizontal:
        m_transform->translate(QPointF(delta > 0 ? wheelPanStep : -wheelPanStep, 0.0));
        break;
    default:
        break;
    }
    event->accept();
    update();
}

void MWidget::keyPressEvent(QKeyEvent* event)
{
    const bool control = event->modifiers() & Qt::ControlModifier;
    switch (event->key()) {
    case Qt::Key_Space:
        if (!event->isAutoRepeat()) {
            m_panMode = true;
            setCursor(Qt::OpenHandCursor);
        }
        return;
    case Qt::Key_F12:
        window()->showNormal();
        return;
    case Qt::Key_Delete:
        if (event->modifiers() == Qt::NoModifier) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
            m_canvas->erase();
            QApplication::restoreOverrideCursor();
            return;
        }
        break;
    case Qt::Key_Left:
        m_transform->translate(QPointF(control ? keyPageStep : keyStep, 0));
        return;
    case Qt::Key_Right:
        m_transform->translate(QPointF(control ? -keyPageStep : -keyStep, 0));
        return;
    case Qt::Key_Up:
        m_transform->translate(QPointF(0, keyStep));
        return;
    case Qt::Key_Down:
        m_transform->translate(QPointF(0, -keyStep));
        return;
    case Qt::Key_PageUp:
        m_transform->translate(QPointF(0, keyPageStep));
        return;
    case Qt::Key_PageDown:
        m_transform->translate(QPointF(0, -keyPageStep));
        return;
    default:
        break;
    }
    if (drivesTools() && MTools::instance()->dispatchKey(event)) {
        event->accept();
        return;
    }
    QOpenGLWidget::keyPressEvent(event);
}

void MWidget::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        m_panMode = false;
        updateCursor();
        return;
    }
    QOpenGLWidget::keyReleaseEvent(event);
}
