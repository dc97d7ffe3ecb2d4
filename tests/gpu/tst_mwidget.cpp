// The view: the transform's mapping and zoom rules, the placing of boxes, and
// the real widget in a shown window, driven by events and read back from its
// framebuffer.

#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "app/mgeometry.h"
#include "app/msettings.h"
#include "app/mtablet.h"
#include "document/mcanvas.h"
#include "gpu/mtransform.h"
#include "gpu/mwidget.h"

#include <QPainterPath>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTabletEvent>

#include <cmath>
#include <memory>

namespace {

constexpr int viewWidth = 640;
constexpr int viewHeight = 480;

bool near(const QPointF& a, const QPointF& b, double tolerance = 1e-6)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

QString text(const QPointF& p)
{
    return QStringLiteral("(%1, %2)").arg(p.x(), 0, 'g', 12).arg(p.y(), 0, 'g', 12);
}

bool sameColor(QRgb pixel, const QColor& expected, int tolerance = 2)
{
    return std::abs(qRed(pixel) - expected.red()) <= tolerance &&
           std::abs(qGreen(pixel) - expected.green()) <= tolerance &&
           std::abs(qBlue(pixel) - expected.blue()) <= tolerance;
}

QString text(QRgb pixel)
{
    return QStringLiteral("rgb(%1, %2, %3)").arg(qRed(pixel)).arg(qGreen(pixel)).arg(qBlue(pixel));
}

// Empty when the pixel at p is within tolerance of the colour, else what it is.
QString offColour(const QImage& image, const QPoint& p, const QColor& expected, int tolerance = 2)
{
    const QRgb pixel = image.pixel(p);
    return sameColor(pixel, expected, tolerance)
               ? QString()
               : QString::asprintf("(%d, %d): ", p.x(), p.y()) + text(pixel);
}

// The canvas-to-widget mapping written out: rotation about the centre, then
// scale with flips, then translation.
QPointF expectedMap(const QPointF& p, const QPointF& centre, double degrees, double scale, bool flipX,
                    bool flipY, const QPointF& translation)
{
    const double a = degrees * M_PI / 180.0;
    const QPointF d = p - centre;
    const QPointF rotated(centre.x() + d.x() * std::cos(a) - d.y() * std::sin(a),
                          centre.y() + d.x() * std::sin(a) + d.y() * std::cos(a));
    return QPointF(rotated.x() * scale * (flipX ? -1 : 1), rotated.y() * scale * (flipY ? -1 : 1)) +
           translation;
}

void sendWheel(QWidget* widget, const QPointF& position, int delta, Qt::KeyboardModifiers modifiers = {})
{
    QWheelEvent event(position, widget->mapToGlobal(position.toPoint()), QPoint(), QPoint(0, delta),
                      Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

void sendMouse(QWidget* widget, QEvent::Type type, const QPointF& position, Qt::MouseButton button,
               Qt::MouseButtons buttons, Qt::MouseEventSource source = Qt::MouseEventNotSynthesized)
{
    QMouseEvent event(type, position, position, widget->mapToGlobal(position.toPoint()), button, buttons,
                      Qt::NoModifier, source);
    QApplication::sendEvent(widget, &event);
}

// Presses at the first point, moves through the others and releases at the last.
void drag(QWidget* widget, Qt::MouseButton button, std::initializer_list<QPointF> path)
{
    sendMouse(widget, QEvent::MouseButtonPress, *path.begin(), button, button);
    for (auto point = path.begin() + 1; point != path.end(); ++point)
        sendMouse(widget, QEvent::MouseMove, *point, Qt::NoButton, button);
    sendMouse(widget, QEvent::MouseButtonRelease, *(path.end() - 1), button, Qt::NoButton);
}

// How many pixels of the row are within tolerance of the colour.
int countInRow(const QImage& image, int y, const QColor& color, int tolerance = 12)
{
    int count = 0;
    for (int x = 0; x < image.width(); ++x) {
        if (sameColor(image.pixel(x, y), color, tolerance))
            ++count;
    }
    return count;
}

} // namespace

class TestMWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void transformMapping();
    void transformZoomAnchor();
    void transformZoomLimits();
    void geometryPlacing();

    void initTestCase();
    void init();
    void cleanupTestCase();
    void openingViewAndDrawing();
    void wheelZoomOutRecentresSmallCanvas();
    void wheelZoomKeepsAnchor();
    void wheelRotatesAndPans();
    void keysPan();
    void draggingPans();
    void stateLine();
    void transientText();
    void eventsFromMouseAndStylus();
    void pixelGridAndTiling();
    void deleteClearsTheLayer();
    void movesToAnotherWindow();
    void shutDownReleasesGl();

private:
    QImage grab();
    QColor background() const { return MSettings::instance()->widgetBackgroundColor(); }

    QuillmereTest::GLContext m_context;
    std::unique_ptr<MWidget> m_view;
};

// ---------------------------------------------------------------------------
// MTransform and MGeometry

void TestMWidget::transformMapping()
{
    const QPointF centre(50, -20);
    const QPointF translation(310.5, 122.25);
    const QPointF points[] = {{0, 0}, {50, -20}, {-400, 300}, {12.5, 999}, {-0.25, -0.75}};
    for (int flips = 0; flips < 4; ++flips) {
        const bool flipX = flips & 1;
        const bool flipY = flips & 2;
        MTransform transform;
        transform.setRotationCentre(centre);
        transform.setRotation(30);
        if (flipX)
            transform.flipHorizontal();
        if (flipY)
            transform.flipVertical();
        transform.zoom(2.5, QPointF(77, 33));
        transform.setTranslation(translation);
        for (const QPointF& p : points) {
            const QPointF expected = expectedMap(p, centre, 30, 2.5, flipX, flipY, translation);
            const QPointF mapped = transform.mapToWidget(p);
            QVERIFY2(near(mapped, expected, 1e-9), qPrintable(text(mapped) + " != " + text(expected)));
            QVERIFY2(near(transform.mapToCanvas(mapped), p, 1e-9),
                     qPrintable(text(transform.mapToCanvas(mapped))));
            const QPointF byMatrix = transform.matrix4x4().map(p);
            QVERIFY2(near(byMatrix, expected, 1e-3), qPrintable(text(byMatrix)));
        }
        // A rectangle maps to the bounds of its mapped corners, and back to
        // the bounds of those corners mapped back.
        const QRectF rect(-30, 10, 120, 45);
        const QPolygonF corners = QPolygonF(rect).mid(0, 4);
        QPolygonF mappedCorners;
        for (const QPointF& corner : corners)
            mappedCorners << expectedMap(corner, centre, 30, 2.5, flipX, flipY, translation);
        const QRectF bounds = mappedCorners.boundingRect();
        const QRectF mappedRect = transform.mapRectToWidget(rect);
        QVERIFY(near(mappedRect.topLeft(), bounds.topLeft(), 1e-9));
        QVERIFY(near(mappedRect.bottomRight(), bounds.bottomRight(), 1e-9));
        QVERIFY(transform.mapRectToCanvas(mappedRect).contains(rect.adjusted(0.001, 0.001, -0.001, -0.001)));
    }

    // NaN leaves the rotation; reset brings everything back.
    MTransform transform;
    QSignalSpy update(&transform, &MTransform::update);
    transform.setRotation(45);
    transform.setRotation(std::nan(""));
    QCOMPARE(transform.rotation(), 45.0);
    QCOMPARE(update.size(), 1);
    transform.flipVertical();
    transform.translate(QPointF(3, 4));
    transform.reset();
    QVERIFY(transform.matrix().isIdentity());
    QVERIFY(!transform.isFlippedVertically());
    QCOMPARE(transform.mapToWidget(QPointF(7, 8)), QPointF(7, 8));
}

void TestMWidget::transformZoomAnchor()
{
    MTransform transform;
    transform.setRotationCentre(QPointF(10, 10));
    transform.setRotation(15);
    transform.setTranslation(QPointF(100, 50));
    transform.flipHorizontal();
    QSignalSpy scaled(&transform, &MTransform::scaleChanged);

    const QPointF anchors[] = {{300, 200}, {0, 0}, {-50, 640}};
    double scale = 1.0;
    for (const QPointF& anchor : anchors) {
        const QPointF under = transform.mapToCanvas(anchor);
        const QPointF elsewhere = transform.mapToCanvas(anchor + QPointF(40, -25));
        scale *= 1.7;
        transform.zoom(scale, anchor);
        QCOMPARE(transform.scale(), scale);
        QVERIFY2(near(transform.mapToWidget(under), anchor, 1e-9),
                 qPrintable(text(transform.mapToWidget(under))));
        // Any other point moves away from the anchor by the ratio of scales.
        const QPointF offset = transform.mapToWidget(elsewhere) - anchor;
        QVERIFY(near(offset, QPointF(40, -25) * 1.7, 1e-9));
    }
    QCOMPARE(scaled.size(), 3);
    QCOMPARE(scaled.last().at(0).toDouble(), scale);

    // The same scale again is nothing: no move, no signal.
    const QTransform before = transform.matrix();
    transform.zoom(scale, QPointF(1, 2));
    QCOMPARE(transform.matrix(), before);
    QCOMPARE(scaled.size(), 3);
}

void TestMWidget::transformZoomLimits()
{
    MTransform transform;
    transform.setTranslation(QPointF(20, 30));
    const QPointF anchor(200, 150);
    const QPointF under = transform.mapToCanvas(anchor);
    transform.zoom(100, anchor);
    QCOMPARE(transform.scale(), 40.0);
    QVERIFY(near(transform.mapToWidget(under), anchor, 1e-9));

    // Beyond the limit at another point: nothing on screen moves.
    const QTransform atLimit = transform.matrix();
    transform.zoom(48, QPointF(500, 20));
    QCOMPARE(transform.matrix(), atLimit);
    QVERIFY(near(transform.mapToWidget(under), anchor, 1e-9));

    transform.zoom(0.001, anchor);
    QCOMPARE(transform.scale(), 0.01);
    QVERIFY(near(transform.mapToWidget(under), anchor, 1e-9));
    const QTransform atBottom = transform.matrix();
    transform.zoom(0.008, QPointF(-300, 90));
    QCOMPARE(transform.matrix(), atBottom);
}

void TestMWidget::geometryPlacing()
{
    const QSizeF box(100, 40);
    const QRectF area(10, 20, 400, 300);
    const struct
    {
        MGeometry::Position position;
        QPointF topLeft;
    } cases[] = {
        {MGeometry::TopLeft, {10, 20}},
        {MGeometry::TopCenter, {160, 20}},
        {MGeometry::TopRight, {310, 20}},
        {MGeometry::CenterLeft, {10, 150}},
        {MGeometry::CenterCenter, {160, 150}},
        {MGeometry::BottomCenter, {160, 280}},
        {MGeometry::BottomRight, {310, 280}},
        {MGeometry::TopCenterEdge, {160, 0}},
        {MGeometry::BottomLeftEdge, {-40, 300}},
        {MGeometry::CenterRightEdge, {360, 150}},
        {MGeometry::CenterCenterEdge, {160, 150}},
        {MGeometry::TopLeftOutside, {-90, -20}},
        {MGeometry::BottomCenterOutside, {160, 320}},
        {MGeometry::CenterRightOutside, {410, 150}},
        {MGeometry::Position(99), {160, 150}},
    };
    for (const auto& c : cases) {
        const QRectF placed = MGeometry::place(box, area, c.position);
        QVERIFY2(placed.topLeft() == c.topLeft && placed.size() == box,
                 qPrintable(QStringLiteral("%1: %2").arg(int(c.position)).arg(text(placed.topLeft()))));
    }
}

// ---------------------------------------------------------------------------
// The widget

void TestMWidget::initTestCase()
{
    // The driver test of the start-up, which the texture binder's limits come from.
    QVERIFY2(m_context.create(), qPrintable(m_context.why()));
    m_view = std::make_unique<MWidget>();
    m_view->resize(viewWidth, viewHeight);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QTRY_VERIFY2(m_view->isGlReady(), "the view's GL never came up");
    QVERIFY(m_view->canvas()->isGlInitialized());
}

void TestMWidget::init()
{
    if (!m_view)
        return;
    MSettings::instance()->set_showTiling(false);
    MSettings::instance()->set_smoothPixels(true);
    MTablet::instance()->set_proximityDevice(0);
}

void TestMWidget::cleanupTestCase()
{
    m_view.reset();
}

QImage TestMWidget::grab()
{
    QImage image = m_view->grabFramebuffer();
    return image.convertToFormat(QImage::Format_RGB32);
}

void TestMWidget::openingViewAndDrawing()
{
    // The first paint starts at half scale and animates to the fitted page,
    // turning once: 1000 by 1000 in 640 by 480 less 30 on each side.
    const double fitted = (viewHeight - 60) / 1000.0;
    QTRY_VERIFY_WITH_TIMEOUT(m_view->scale() == fitted && m_view->rotation() == 0.0, 5000);
    QVERIFY(
        near(m_view->transform()->mapToWidget(QPointF(0, 0)), QPointF(viewWidth / 2.0, viewHeight / 2.0)));

    const QImage image = grab();
    QCOMPARE(image.size(), QSize(viewWidth, viewHeight));
    const QColor paper = m_view->canvas()->paperColor();
    // The page on screen: 420 by 420 around the centre.
    for (const QPoint& p : {QPoint(320, 240), QPoint(113, 240), QPoint(320, 33)})
        QCOMPARE(offColour(image, p, paper), QString());
    for (const QPoint& p : {QPoint(106, 240), QPoint(2, 2), QPoint(320, 27)})
        QCOMPARE(offColour(image, p, background()), QString());

    // Another background colour is what the view clears to.
    MSettings::instance()->set_widgetBackgroundColor(QColor(30, 90, 150));
    const QImage recoloured = grab();
    MSettings::instance()->set_widgetBackgroundColor(QColor(Qt::darkGray));
    QCOMPARE(offColour(recoloured, QPoint(2, 2), QColor(30, 90, 150)), QString());
    QCOMPARE(offColour(recoloured, QPoint(320, 240), paper), QString());
}

void TestMWidget::wheelZoomOutRecentresSmallCanvas()
{
    MCanvas* canvas = m_view->canvas();
    canvas->setPaperSize(QSize(200, 100));
    QCOMPARE(canvas->paintedRect(), QRectF(-100, -50, 200, 100));
    m_view->setScale(1.0);
    m_view->setTranslation(m_view->translation() + QPointF(70, -40));
    QVERIFY(!near(m_view->transform()->mapToWidget(QPointF(0, 0)), QPointF(320, 240)));

    QSignalSpy scaled(m_view.get(), &MWidget::scaleChanged);
    sendWheel(m_view.get(), QPointF(500, 400), -120);
    QCOMPARE(m_view->scale(), 0.8);
    QCOMPARE(scaled.size(), 1);
    // Recentred rather than zoomed at the pointer.
    QVERIFY2(near(m_view->transform()->mapToWidget(QPointF(0, 0)), QPointF(320, 240)),
             qPrintable(text(m_view->transform()->mapToWidget(QPointF(0, 0)))));
    // Zooming in while the result still fits recentres too.
    sendWheel(m_view.get(), QPointF(10, 10), 120);
    QVERIFY(std::abs(m_view->scale() - 0.96) < 1e-12);
    QVERIFY(near(m_view->transform()->mapToWidget(QPointF(0, 0)), QPointF(320, 240)));
    const QImage image = grab();
    QVERIFY(sameColor(image.pixel(320, 240), canvas->paperColor()));
    QVERIFY(sameColor(image.pixel(320 + 100, 240), background()));

    canvas->setPaperSize(QSize(1000, 1000));
}

void TestMWidget::wheelZoomKeepsAnchor()
{
    m_view->setScale(1.0);
    MTransform* transform = m_view->transform();
    for (const QPointF& pointer : {QPointF(150, 100), QPointF(600.5, 31.25)}) {
        for (int delta : {120, -120}) {
            const double before = m_view->scale();
            const QPointF under = transform->mapToCanvas(pointer);
            sendWheel(m_view.get(), pointer, delta);
            QVERIFY(std::abs(m_view->scale() - before * (delta > 0 ? 1.2 : 0.8)) < 1e-12);
            QVERIFY2(near(transform->mapToWidget(under), pointer, 1e-6),
                     qPrintable(text(transform->mapToWidget(under))));
        }
    }
}

void TestMWidget::wheelRotatesAndPans()
{
    m_view->setScale(1.0);
    QSignalSpy rotated(m_view.get(), &MWidget::rotationChanged);
    for (const QPointF& step : {QPointF(120, -10), QPointF(120, -20), QPointF(-120, -10)}) {
        sendWheel(m_view.get(), QPointF(100, 100), int(step.x()), Qt::ControlModifier);
        QCOMPARE(m_view->rotation(), step.y());
    }
    QCOMPARE(rotated.size(), 3);
    // About the page's centre, which stays put.
    QVERIFY(near(m_view->transform()->mapToWidget(QPointF(0, 0)), QPointF(320, 240), 1e-9));
    m_view->setRotation(355.5);
    sendWheel(m_view.get(), QPointF(100, 100), -120, Qt::ControlModifier);
    QCOMPARE(m_view->rotation(), 5.0);
    m_view->setRotation(0);

    const QPointF start = m_view->translation();
    sendWheel(m_view.get(), QPointF(100, 100), 120, Qt::ShiftModifier);
    QCOMPARE(m_view->translation(), start + QPointF(0, 30));
    sendWheel(m_view.get(), QPointF(100, 100), -120, Qt::ShiftModifier);
    sendWheel(m_view.get(), QPointF(100, 100), -120, Qt::ShiftModifier);
    QCOMPARE(m_view->translation(), start + QPointF(0, -30));
    sendWheel(m_view.get(), QPointF(100, 100), 120, Qt::ShiftModifier | Qt::ControlModifier);
    QCOMPARE(m_view->translation(), start + QPointF(30, -30));

    // Alt alone belongs to the tools: the view doesn't move and doesn't take it.
    const QTransform before = m_view->transform()->matrix();
    QWheelEvent alt(QPointF(100, 100), QPointF(100, 100), QPoint(), QPoint(0, 120), Qt::NoButton,
                    Qt::AltModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_view.get(), &alt);
    QVERIFY(!alt.isAccepted());
    QCOMPARE(m_view->transform()->matrix(), before);
}

void TestMWidget::keysPan()
{
    m_view->setScale(1.0);
    QSignalSpy moved(m_view.get(), &MWidget::translationChanged);
    const struct
    {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        QPointF delta;
    } cases[] = {
        {Qt::Key_Left, Qt::NoModifier, {10, 0}},    {Qt::Key_Left, Qt::ControlModifier, {200, 0}},
        {Qt::Key_Right, Qt::NoModifier, {-10, 0}},  {Qt::Key_Right, Qt::ControlModifier, {-200, 0}},
        {Qt::Key_Up, Qt::NoModifier, {0, 10}},      {Qt::Key_Down, Qt::NoModifier, {0, -10}},
        {Qt::Key_PageUp, Qt::NoModifier, {0, 200}}, {Qt::Key_PageDown, Qt::NoModifier, {0, -200}},
    };
    for (const auto& c : cases) {
        const QPointF before = m_view->translation();
        QTest::keyClick(m_view.get(), c.key, c.modifiers);
        QVERIFY2(m_view->translation() == before + c.delta,
                 qPrintable(
                     QStringLiteral("key %1: %2").arg(int(c.key)).arg(text(m_view->translation() - before))));
    }
    QCOMPARE(moved.size(), 8);
    QCOMPARE(moved.last().at(0).toPointF(), m_view->translation());
}

void TestMWidget::draggingPans()
{
    m_view->setScale(1.0);
    const QPointF start = m_view->translation();

    // A left drag without Space is no pan.
    drag(m_view.get(), Qt::LeftButton, {QPointF(100, 100), QPointF(150, 130)});
    QCOMPARE(m_view->translation(), start);

    // Space held: the left button drags by whole pixels, and sub-pixel moves add up.
    QTest::keyPress(m_view.get(), Qt::Key_Space);
    QVERIFY(m_view->panMode());
    sendMouse(m_view.get(), QEvent::MouseButtonPress, QPointF(100, 100), Qt::LeftButton, Qt::LeftButton);
    sendMouse(m_view.get(), QEvent::MouseMove, QPointF(100.3, 100), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(m_view->translation(), start);
    sendMouse(m_view.get(), QEvent::MouseMove, QPointF(100.6, 100), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(m_view->translation(), start + QPointF(1, 0));
    sendMouse(m_view.get(), QEvent::MouseMove, QPointF(110.6, 95.6), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(m_view->translation(), start + QPointF(11, -4));
    sendMouse(m_view.get(), QEvent::MouseButtonRelease, QPointF(110.6, 95.6), Qt::LeftButton, Qt::NoButton);
    QTest::keyRelease(m_view.get(), Qt::Key_Space);
    QVERIFY(!m_view->panMode());

    // The right button drags for any tool.
    const QPointF second = m_view->translation();
    drag(m_view.get(), Qt::RightButton, {QPointF(200, 200), QPointF(180, 230)});
    QCOMPARE(m_view->translation(), second + QPointF(-20, 30));
    // Released: further moves don't pan.
    sendMouse(m_view.get(), QEvent::MouseMove, QPointF(100, 100), Qt::NoButton, Qt::NoButton);
    QCOMPARE(m_view->translation(), second + QPointF(-20, 30));
}

void TestMWidget::stateLine()
{
    m_view->setScale((viewHeight - 60) / 1000.0);
    MCanvas* canvas = m_view->canvas();
    MTextureLayer* layer = canvas->current();
    QVERIFY(layer);
    QCOMPARE(m_view->stateText(), QString());
    // Row 5 lies in the top box's margin, above the page.
    const int row = 5;
    QCOMPARE(countInRow(grab(), row, background(), 2), viewWidth);

    layer->setVisible(false);
    QCOMPARE(m_view->stateText(), QStringLiteral("the current layer is hidden"));
    m_view->updateCursor(QPointF(320, 240));
    QCOMPARE(m_view->cursor().shape(), Qt::BitmapCursor);
    QVERIFY(!m_view->cursor().pixmap().isNull());
    QCOMPARE(m_view->cursor().hotSpot(),
             QPoint(m_view->cursor().pixmap().width() / 2, m_view->cursor().pixmap().height() / 2));
    // The box: black at half opacity over the background, centred at the top.
    const QImage shown = grab();
    const QColor dimmed(background().red() / 2, background().green() / 2, background().blue() / 2);
    const int boxPixels = countInRow(shown, row, dimmed, 3);
    QVERIFY2(boxPixels > 100 && boxPixels < viewWidth, qPrintable(QString::number(boxPixels)));
    QVERIFY(sameColor(shown.pixel(320, row), dimmed, 3));
    QVERIFY(sameColor(shown.pixel(2, row), background()));
    QVERIFY(sameColor(shown.pixel(viewWidth - 3, row), background()));
    // A hidden layer paints no content: the page is still there.
    QVERIFY(sameColor(shown.pixel(320, 240), canvas->paperColor()));

    // Hidden and locked: only the first text.
    layer->setLocked(true);
    QCOMPARE(m_view->stateText(), QStringLiteral("the current layer is hidden"));
    layer->setVisible(true);
    QCOMPARE(m_view->stateText(), QStringLiteral("the current layer is locked"));
    m_view->updateCursor(QPointF(320, 240));
    QCOMPARE(m_view->cursor().shape(), Qt::BitmapCursor);
    layer->setLocked(false);
    QCOMPARE(m_view->stateText(), QString());
    m_view->updateCursor(QPointF(320, 240));
    QCOMPARE(m_view->cursor().shape(), Qt::ArrowCursor);

    // A selection joins with " - ".
    QPainterPath path;
    path.addRect(-50, -50, 100, 100);
    canvas->setClipPath(path);
    QCOMPARE(m_view->stateText(), QStringLiteral("selection is active"));
    layer->setVisible(false);
    QCOMPARE(m_view->stateText(), QStringLiteral("the current layer is hidden - selection is active"));
    layer->setVisible(true);
    canvas->resetClipPath();
    QCOMPARE(m_view->stateText(), QString());
    QCOMPARE(countInRow(grab(), row, background(), 2), viewWidth);
}

void TestMWidget::transientText()
{
    m_view->setScale((viewHeight - 60) / 1000.0);
    const int row = viewHeight - 5;
    m_view->setTextOpacity(0.0);
    QCOMPARE(countInRow(grab(), row, background(), 2), viewWidth);

    MSettings::instance()->set_textDuration(5);
    m_view->setText(QStringLiteral("a transient text"));
    QCOMPARE(m_view->text(), QStringLiteral("a transient text"));
    QTRY_VERIFY(m_view->textOpacity() > 0.9);
    const QImage shown = grab();
    // The box at the bottom centre, black over the background at nearly full opacity.
    QVERIFY2(qRed(shown.pixel(320, row)) < 20, qPrintable(text(shown.pixel(320, row))));
    QVERIFY(sameColor(shown.pixel(2, row), background()));
    const int dark = countInRow(shown, row, Qt::black, 19);
    QVERIFY2(dark > 100 && dark < viewWidth - 100, qPrintable(QString::number(dark)));

    // The text fades to nothing over the duration.
    MSettings::instance()->set_textDuration(1);
    m_view->setText(QStringLiteral("short"));
    QTRY_VERIFY_WITH_TIMEOUT(m_view->textOpacity() == 0.0, 5000);
    QCOMPARE(countInRow(grab(), row, background(), 2), viewWidth);

    // An empty text starts the animation and draws nothing.
    MSettings::instance()->set_textDuration(5);
    m_view->setText(QString());
    QTRY_VERIFY(m_view->textOpacity() > 0.5);
    QCOMPARE(countInRow(grab(), row, background(), 2), viewWidth);

    // A new page size is told in whole pixels.
    m_view->canvas()->setPaperSize(QSize(300, 200));
    QCOMPARE(m_view->text(), QStringLiteral("300 - 200"));
    m_view->onPaintedRectChanged(QRectF(0, 0, 120.6, 80.4));
    QCOMPARE(m_view->text(), QStringLiteral("121 - 80"));
    m_view->canvas()->setPaperSize(QSize(1000, 1000));
    m_view->setTextOpacity(0.0);
}

void TestMWidget::eventsFromMouseAndStylus()
{
    m_view->setScale(2.0);
    MTransform* transform = m_view->transform();
    const MEvent& event = m_view->currentEvent();

    const QPointF pressAt(200, 150);
    sendMouse(m_view.get(), QEvent::MouseButtonPress, pressAt, Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(event.type, 0);
    QVERIFY(near(QPointF(event.positionX, event.positionY), transform->mapToCanvas(pressAt)));
    QCOMPARE(event.widgetPosition, pressAt);
    QCOMPARE(event.pressure, 1.0);
    QCOMPARE(event.device, 1);
    QCOMPARE(event.buttons, 1);
    QCOMPARE(event.button, 1);
    QCOMPARE(event.speed, 2.0);
    QCOMPARE(event.totalDistance, 0.0);

    // 0.3 widget pixels are 0.15 canvas pixels: too short, dropped.
    sendMouse(m_view.get(), QEvent::MouseMove, pressAt + QPointF(0.3, 0), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(event.type, 0);
    // The next move is measured from the press: 6 by 8 widget pixels, 5 canvas pixels.
    sendMouse(m_view.get(), QEvent::MouseMove, pressAt + QPointF(6, 8), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(event.type, 2);
    QVERIFY(std::abs(event.distanceToPrevious - 5.0) < 1e-9);
    QVERIFY(std::abs(event.totalDistance - 5.0) < 1e-9);
    QVERIFY(std::abs(event.directionX - 0.6) < 1e-9);
    QVERIFY(std::abs(event.directionY - 0.8) < 1e-9);
    QVERIFY(event.timeToPrevious >= 0.0);
    QVERIFY(event.totalTime >= event.timeToPrevious);
    // Later distances go through the adaptive filter: a step from 5 to 10
    // pixels comes out between the two, and the total adds what came out.
    sendMouse(m_view.get(), QEvent::MouseMove, pressAt + QPointF(6, 28), Qt::NoButton, Qt::LeftButton);
    QVERIFY2(event.distanceToPrevious > 5.0 && event.distanceToPrevious < 10.0,
             qPrintable(QString::number(event.distanceToPrevious)));
    QVERIFY(std::abs(event.totalDistance - (5.0 + event.distanceToPrevious)) < 1e-9);
    // The direction of a drag goes through its low-pass: 0.8 towards 1 by 0.15.
    QVERIFY(std::abs(event.directionY - 0.83) < 1e-9);
    const double lastDistance = event.distanceToPrevious;
    sendMouse(m_view.get(), QEvent::MouseButtonRelease, pressAt + QPointF(6, 28), Qt::LeftButton,
              Qt::NoButton);
    QCOMPARE(event.type, 3);
    QVERIFY(event.distanceToPrevious >= 0.0 && event.distanceToPrevious < lastDistance);
    QCOMPARE(event.buttons, 0);

    sendMouse(m_view.get(), QEvent::MouseMove, QPointF(300, 200), Qt::NoButton, Qt::NoButton);
    QCOMPARE(event.type, 1);

    // A mouse event made from a stylus sample carries the stylus's state.
    MTablet* tablet = MTablet::instance();
    tablet->set_proximityDevice(int(QTabletEvent::Pen));
    tablet->set_pointerType(int(QTabletEvent::Pen));
    tablet->set_pressure(0.3);
    tablet->set_xTilt(20);
    tablet->set_tangentialPressure(0.1);
    sendMouse(m_view.get(), QEvent::MouseButtonPress, pressAt, Qt::LeftButton, Qt::LeftButton,
              Qt::MouseEventSynthesizedByQt);
    QCOMPARE(event.device, 2);
    QCOMPARE(event.pointerType, int(QTabletEvent::Pen));
    QCOMPARE(event.pressure, 0.3);
    QCOMPARE(event.xTilt, 20.0);
    QCOMPARE(event.tangentialPressure, 0.1);
    // A real mouse event between stylus samples keeps full pressure.
    sendMouse(m_view.get(), QEvent::MouseMove, pressAt + QPointF(10, 0), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(event.type, 2);
    QCOMPARE(event.pressure, 1.0);
    QCOMPARE(event.device, 1);
    sendMouse(m_view.get(), QEvent::MouseButtonRelease, pressAt + QPointF(10, 0), Qt::LeftButton,
              Qt::NoButton, Qt::MouseEventSynthesizedByQt);
    QCOMPARE(event.pressure, 0.3);
    // No stylus in proximity: a synthesized event is a mouse event.
    tablet->set_proximityDevice(0);
    sendMouse(m_view.get(), QEvent::MouseButtonPress, pressAt, Qt::LeftButton, Qt::LeftButton,
              Qt::MouseEventSynthesizedByQt);
    QCOMPARE(event.pressure, 1.0);
    sendMouse(m_view.get(), QEvent::MouseButtonRelease, pressAt, Qt::LeftButton, Qt::NoButton);
}

void TestMWidget::pixelGridAndTiling()
{
    // Beyond smoothMaxScale the pixels show as a grid of light lines.
    m_view->setScale(10.0);
    QVERIFY(!m_view->isSmooth());
    const QColor grid(200, 200, 200);
    const int row = 243; // between two horizontal lines
    const QImage magnified = grab();
    const int lines = countInRow(magnified, row, grid, 12);
    QVERIFY2(lines >= 55 && lines <= 75, qPrintable(QString::number(lines)));
    QCOMPARE(lines + countInRow(magnified, row, m_view->canvas()->paperColor(), 2), viewWidth);
    // The vertical line of canvas x = 1 lies 10 pixels right of x = 0.
    int first = -1;
    for (int x = 321; x < 340 && first < 0; ++x) {
        if (sameColor(magnified.pixel(x, row), grid, 12))
            first = x;
    }
    QVERIFY2(first >= 329 && first <= 331, qPrintable(QString::number(first)));

    m_view->setScale(1.0);
    QVERIFY(m_view->isSmooth());
    QCOMPARE(countInRow(grab(), row, grid, 12), 0);
    // Without smoothing at all, every scale shows the grid.
    MSettings::instance()->set_smoothPixels(false);
    m_view->setScale(4.0);
    QVERIFY(!m_view->isSmooth());
    QVERIFY(countInRow(grab(), row, grid, 12) > 100);
    MSettings::instance()->set_smoothPixels(true);

    // The tiling display repeats the page beside it.
    MCanvas* canvas = m_view->canvas();
    canvas->setPaperSize(QSize(200, 100));
    m_view->setScale(1.0);
    const QImage single = grab();
    QVERIFY(sameColor(single.pixel(320 + 200, 240), background()));
    QVERIFY(sameColor(single.pixel(320, 240 - 100), background()));
    MSettings::instance()->set_showTiling(true);
    const QImage tiled = grab();
    for (const QPoint& p : {QPoint(520, 240), QPoint(120, 240), QPoint(320, 340), QPoint(320, 140)})
        QCOMPARE(offColour(tiled, p, canvas->paperColor()), QString());
    // Only the four neighbours, not the diagonals.
    QVERIFY(sameColor(tiled.pixel(520, 340), background()));
    MSettings::instance()->set_showTiling(false);
    canvas->setPaperSize(QSize(1000, 1000));
}

void TestMWidget::deleteClearsTheLayer()
{
    m_view->setScale(0.4);
    MCanvas* canvas = m_view->canvas();
    QImage red(120, 120, QImage::Format_ARGB32_Premultiplied);
    red.fill(QColor(200, 30, 40));
    QVERIFY(canvas->pasteImage(QPointF(0, 0), red, false));
    QCOMPARE(offColour(grab(), QPoint(320, 240), QColor(200, 30, 40)), QString());
    // Delete with a modifier is not the view's.
    QTest::keyClick(m_view.get(), Qt::Key_Delete, Qt::ShiftModifier);
    QVERIFY(sameColor(grab().pixel(320, 240), QColor(200, 30, 40)));
    QTest::keyClick(m_view.get(), Qt::Key_Delete);
    QCOMPARE(offColour(grab(), QPoint(320, 240), canvas->paperColor()), QString());
}

void TestMWidget::movesToAnotherWindow()
{
    m_view->setScale(0.4);
    QImage blue(100, 100, QImage::Format_ARGB32_Premultiplied);
    blue.fill(QColor(20, 40, 220));
    QVERIFY(m_view->canvas()->pasteImage(QPointF(0, 0), blue, false));
    QVERIFY(sameColor(grab().pixel(320, 240), QColor(20, 40, 220)));

    // Under another window the view still draws the canvas's textures.
    QWidget window;
    window.resize(viewWidth, viewHeight);
    m_view->setParent(&window);
    // Whatever fails below, the window mustn't delete the view.
    auto unparent = qScopeGuard([this] { m_view->setParent(nullptr); });
    m_view->setGeometry(0, 0, viewWidth, viewHeight);
    m_view->show();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY(m_view->isGlReady());
    QImage image = grab();
    QCOMPARE(offColour(image, QPoint(320, 240), QColor(20, 40, 220)), QString());
    QVERIFY(sameColor(image.pixel(2, 2), background()));

    unparent.dismiss();
    m_view->setParent(nullptr);
    m_view->resize(viewWidth, viewHeight);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QTRY_VERIFY(m_view->isGlReady());
    image = grab();
    QCOMPARE(offColour(image, QPoint(320, 240), QColor(20, 40, 220)), QString());
    QTest::keyClick(m_view.get(), Qt::Key_Delete);
}

void TestMWidget::shutDownReleasesGl()
{
    QVERIFY(m_view->isGlReady());
    m_view->shutDown();
    QVERIFY(!m_view->isGlReady());
    QVERIFY(!m_view->canvas()->isGlInitialized());
    // A second shut-down and the destruction after it are harmless.
    m_view->shutDown();
    m_view.reset();
}

QUILLMERE_TEST_MAIN(TestMWidget)
#include "tst_mwidget.moc"
