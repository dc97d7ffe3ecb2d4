// The brush tool on a real window and view, driven by mouse events as a
// person's hand would: strokes read back from the layer, mirrored images,
// the straight line of two clicks, the cursor's size, the wheel on the
// radius, and a recorded stroke replayed by quillmere-cli to the same pixels.

#include "support/clirun.h"
#include "support/glcontext.h"
#include "support/testenvironment.h"
#include "support/toolwindow.h"

#include "app/mevent.h"
#include "app/mmainwindowform.h"
#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mbrushstream.h"
#include "brush/mstrokefile.h"
#include "colour/mcolorlist.h"
#include "document/mcanvas.h"
#include "gpu/mtransform.h"
#include "gpu/mwidget.h"
#include "tools/mbrushtool.h"
#include "tools/msymmetrytool.h"
#include "tools/mtools.h"

#include <QFile>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QUndoStack>

#include <cmath>
#include <memory>

namespace {

// The view maps a canvas point p to p + (600, 400).
const QPointF viewOrigin(600, 400);
const QRectF page(-400, -300, 800, 600);

QPointF toWidget(const QPointF& canvasPoint)
{
    return canvasPoint + viewOrigin;
}

void sendMouse(QWidget* widget, QEvent::Type type, const QPointF& canvasPoint, Qt::MouseButton button,
               Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const QPointF position = toWidget(canvasPoint);
    QMouseEvent event(type, position, position, widget->mapToGlobal(position.toPoint()), button, buttons,
                      modifiers, Qt::MouseEventNotSynthesized);
    QApplication::sendEvent(widget, &event);
}

// A press, moves every 4 pixels along the segments, a release.
void drag(QWidget* widget, const QVector<QPointF>& corners)
{
    sendMouse(widget, QEvent::MouseButtonPress, corners.first(), Qt::LeftButton, Qt::LeftButton);
    for (int i = 1; i < corners.size(); ++i) {
        const QLineF segment(corners.at(i - 1), corners.at(i));
        const int steps = qMax(1, int(segment.length() / 4.0));
        for (int k = 1; k <= steps; ++k)
            sendMouse(widget, QEvent::MouseMove, segment.pointAt(double(k) / steps), Qt::NoButton, Qt::LeftButton);
    }
    sendMouse(widget, QEvent::MouseButtonRelease, corners.last(), Qt::LeftButton, Qt::NoButton);
}

} // namespace

class TestMBrushTool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void mouseStrokePaintsTheLayer();
    void symmetricImagesAreMirrored();
    void straightLineOfTwoClicks();
    void otherButtonsAndShiftStartNoStroke();
    void cursorShowsTheBrushSize();
    void wheelAndNearestPoint();
    void recordedStrokeReplaysToTheSamePixels();

private:
    QImage layer() { return m_view->canvas()->render(0); }
    int alphaAt(const QImage& image, double x, double y) const
    {
        return qAlpha(image.pixel(int(x - page.left()), int(y - page.top())));
    }
    int paintedCount(const QImage& image) const;
    MBrushTool* brushTool() const
    {
        return qobject_cast<MBrushTool*>(MTools::instance()->tool(MTool::BrushTool));
    }

    QuillmereTest::GLContext m_context;
    QTemporaryDir m_systemData;
    QTemporaryDir m_dir;
    QString m_recording;
    std::unique_ptr<QMainWindow> m_window;
    MMainWindowForm m_form;
    MWidget* m_view = nullptr;
};

void TestMBrushTool::initTestCase()
{
    QVERIFY2(m_context.create(), qPrintable(m_context.why()));
    m_recording = m_dir.filePath(QStringLiteral("recorded.json"));
    qputenv("QUILLMERE_RECORD", m_recording.toLocal8Bit());
    MUtility::setSystemDataRoot(m_systemData.path());
    // The list's default brush made hard and plain, so that pixels are exact.
    MBrush* brush = MBrushList::instance()->currentBrush();
    QVERIFY(brush);
    brush->setRadius(6);
    brush->setBaseValue(MEnum::bsHardness, 1.0);
    brush->setBaseValue(MEnum::bsAntialiasing, MEnum::NoAntialiasing);
    brush->setBaseValue(MEnum::bsSpacingType, MEnum::ConstantSpacing);
    brush->setBaseValue(MEnum::bsSpacing, 1.0);

    m_window = std::make_unique<QMainWindow>();
    const QString why = QuillmereTest::openToolWindow(m_window.get(), &m_form, &m_view, QSize(1300, 900));
    QVERIFY2(why.isEmpty(), qPrintable(why));
    MTools* tools = MTools::instance();
    QCOMPARE(tools->currentToolId(), int(MTool::BrushTool));
    QVERIFY(brushTool());
    QVERIFY(m_view->width() > 1000 && m_view->height() > 700);
}

void TestMBrushTool::cleanupTestCase()
{
    m_window.reset();
}

void TestMBrushTool::init()
{
    MCanvas* canvas = m_view->canvas();
    canvas->removeLayers();
    canvas->appendLayer();
    canvas->setCurrentRow(0);
    canvas->setPaintedRect(page);
    canvas->undoStack()->clear();
    QVERIFY(canvas->canPaint());
    MTransform* transform = m_view->transform();
    transform->reset();
    transform->setTranslation(viewOrigin);
    MTools::instance()->activate(MTool::SymmetryTool, false);
    MTools::instance()->activate(MTool::BrushTool, true);
    MColorList::instance()->setColor(Qt::black);
    QFile::remove(m_recording);
}

int TestMBrushTool::paintedCount(const QImage& image) const
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    return count;
}

void TestMBrushTool::mouseStrokePaintsTheLayer()
{
    MCanvas* canvas = m_view->canvas();
    drag(m_view, {QPointF(-300, -100), QPointF(0, -100), QPointF(0, 100), QPointF(200, 100)});
    QCOMPARE(brushTool()->state(), int(MBrushTool::Idle));
    QVERIFY(!canvas->strokeInProgress());
    QImage image = layer();
    // Solid along the path, which ends up to a sample short of the last one;
    // nothing away from it.
    for (double x = -295; x <= -5; x += 5)
        QVERIFY2(alphaAt(image, x, -100) == 255, qPrintable(QString::number(x)));
    for (double y = -95; y <= 95; y += 5)
        QVERIFY2(alphaAt(image, 0, y) == 255, qPrintable(QString::number(y)));
    for (double x = 5; x <= 180; x += 5)
        QVERIFY2(alphaAt(image, x, 100) == 255, qPrintable(QString::number(x)));
    QCOMPARE(alphaAt(image, -150, 0), 0);
    QCOMPARE(alphaAt(image, -150, -90), 0);
    QCOMPARE(alphaAt(image, 100, 110), 0);
    // A line 13 pixels wide: the area is about its length times its width.
    const int area = paintedCount(image);
    QVERIFY2(area > 13 * 640 && area < 13 * 720, qPrintable(QString::number(area)));

    QCOMPARE(canvas->undoStack()->count(), 1);
    QVERIFY(canvas->undoStack()->text(0).startsWith(QStringLiteral("Brush stroke: ")));
    canvas->undo();
    QCOMPARE(paintedCount(layer()), 0);
    canvas->redo();
    QVERIFY(layer() == image);
}

void TestMBrushTool::symmetricImagesAreMirrored()
{
    MTools* tools = MTools::instance();
    tools->activate(MTool::SymmetryTool, true);
    auto* symmetry = qobject_cast<MSymmetryTool*>(tools->tool(MTool::SymmetryTool));
    QVERIFY(symmetry && symmetry->visible());
    // The default axis is vertical through the origin: x goes to -x.
    drag(m_view, {QPointF(-300, -200), QPointF(-60, -20), QPointF(-200, 150)});
    MCanvas* canvas = m_view->canvas();
    QCOMPARE(canvas->undoStack()->count(), 1);
    QVERIFY(canvas->undoStack()->text(0).startsWith(QStringLiteral("Symmetry brush stroke: ")));
    const QImage image = layer();
    int painted = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width() / 2; ++x) {
            const int left = qAlpha(image.pixel(x, y));
            const int right = qAlpha(image.pixel(image.width() - 1 - x, y));
            painted += left > 0 ? 1 : 0;
            QVERIFY2(left == right, qPrintable(QStringLiteral("%1,%2: %3 %4").arg(x).arg(y).arg(left).arg(right)));
        }
    QVERIFY(painted > 1000);
    canvas->undo();
    QCOMPARE(paintedCount(layer()), 0);

    // Four images with the number 2: a mirror and a half turn.
    symmetry->setSymmetryNumber(2);
    drag(m_view, {QPointF(-250, -200), QPointF(-100, -200)});
    const QImage four = layer();
    for (const QPointF& p : {QPointF(-170, -200), QPointF(170, -200), QPointF(170, 200), QPointF(-170, 200)})
        QVERIFY2(alphaAt(four, p.x(), p.y()) == 255, qPrintable(QStringLiteral("%1,%2").arg(p.x()).arg(p.y())));
    QCOMPARE(canvas->undoStack()->count(), 1);
    symmetry->setSymmetryNumber(1);

    // Symmetry switched off during a stroke: the release still closes its step.
    sendMouse(m_view, QEvent::MouseButtonPress, QPointF(-250, 100), Qt::LeftButton, Qt::LeftButton);
    sendMouse(m_view, QEvent::MouseMove, QPointF(-200, 100), Qt::NoButton, Qt::LeftButton);
    tools->activate(MTool::SymmetryTool, false);
    sendMouse(m_view, QEvent::MouseMove, QPointF(-150, 100), Qt::NoButton, Qt::LeftButton);
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(-150, 100), Qt::LeftButton, Qt::NoButton);
    QCOMPARE(MCanvas::macroBeginCount(), MCanvas::macroEndCount());
    QCOMPARE(canvas->undoStack()->count(), 2);
    QVERIFY(canvas->undoStack()->text(1).startsWith(QStringLiteral("Symmetry brush stroke: ")));
}

void TestMBrushTool::straightLineOfTwoClicks()
{
    MBrushTool* tool = brushTool();
    sendMouse(m_view, QEvent::MouseButtonPress, QPointF(-200, 50), Qt::LeftButton, Qt::LeftButton,
              Qt::ControlModifier);
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(-200, 50), Qt::LeftButton, Qt::NoButton,
              Qt::ControlModifier);
    QCOMPARE(tool->state(), int(MBrushTool::WaitingForSecondClick));
    QCOMPARE(tool->startPoint(), QPointF(-200, 50));
    QCOMPARE(paintedCount(layer()), 0);
    // Escape gives the line up; with nothing pending it isn't the tool's.
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QVERIFY(tool->keyPressEvent(&escape));
    QCOMPARE(tool->state(), int(MBrushTool::Idle));
    QVERIFY(!tool->keyPressEvent(&escape));

    sendMouse(m_view, QEvent::MouseButtonPress, QPointF(-200, 50), Qt::LeftButton, Qt::LeftButton,
              Qt::ControlModifier);
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(-200, 50), Qt::LeftButton, Qt::NoButton);
    sendMouse(m_view, QEvent::MouseButtonPress, QPointF(200, -50), Qt::LeftButton, Qt::LeftButton);
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(200, -50), Qt::LeftButton, Qt::NoButton);
    QCOMPARE(tool->state(), int(MBrushTool::Idle));
    const QImage image = layer();
    for (double t = 0.0; t <= 1.0; t += 0.05) {
        const QPointF p = QLineF(QPointF(-200, 50), QPointF(200, -50)).pointAt(t);
        QVERIFY2(alphaAt(image, p.x(), p.y()) == 255, qPrintable(QString::number(t)));
    }
    QCOMPARE(alphaAt(image, 0, 30), 0);
    MCanvas* canvas = m_view->canvas();
    QCOMPARE(canvas->undoStack()->count(), 1);
    QCOMPARE(canvas->undoStack()->text(0), QStringLiteral("Brush stroke"));
}

void TestMBrushTool::otherButtonsAndShiftStartNoStroke()
{
    sendMouse(m_view, QEvent::MouseButtonPress, QPointF(0, 0), Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    sendMouse(m_view, QEvent::MouseMove, QPointF(50, 0), Qt::NoButton, Qt::LeftButton, Qt::ShiftModifier);
    sendMouse(m_view, QEvent::MouseButtonRelease, QPointF(50, 0), Qt::LeftButton, Qt::NoButton, Qt::ShiftModifier);
    QCOMPARE(brushTool()->state(), int(MBrushTool::Idle));
    QCOMPARE(paintedCount(layer()), 0);

    // A hidden layer refuses the stroke, and the view says why.
    MCanvas* canvas = m_view->canvas();
    canvas->showLayer(0);
    QVERIFY(!canvas->at(0)->visible());
    drag(m_view, {QPointF(-100, 0), QPointF(100, 0)});
    QCOMPARE(canvas->undoStack()->count(), 0);
    QVERIFY(m_view->stateText().contains(QStringLiteral("the current layer is hidden")));
    canvas->showLayer(0);

    // Eraser mode is the brush's: the view tells it, the stroke clears.
    drag(m_view, {QPointF(-100, 0), QPointF(100, 0)});
    QVERIFY(alphaAt(layer(), 0, 0) == 255);
    MBrush* brush = MBrushList::instance()->currentBrush();
    brush->setEraser(true);
    QVERIFY(m_view->stateText().contains(QStringLiteral("brush is in eraser mode")));
    drag(m_view, {QPointF(0, -100), QPointF(0, 100)});
    brush->setEraser(false);
    const QImage image = layer();
    QCOMPARE(alphaAt(image, 0, 0), 0);
    QCOMPARE(alphaAt(image, -50, 0), 255);
}

void TestMBrushTool::cursorShowsTheBrushSize()
{
    MBrushTool tool;
    MBrush* brush = MBrushList::instance()->currentBrush();
    const double radius = brush->radius();
    // (2 r + 1) * scale, held to 400.
    brush->setRadius(400);
    QVERIFY(tool.updateCursor(QPointF(), 1.0));
    QCOMPARE(tool.cursor().pixmap().size(), QSize(400, 400));
    QCOMPARE(tool.cursor().hotSpot(), QPoint(200, 200));
    // Exactly 5: the cross; a little more: a ring of the smallest size.
    brush->setRadius(2);
    tool.updateCursor(QPointF(), 1.0);
    QCOMPARE(tool.cursor().pixmap().size(), QSize(17, 17));
    // The same integer diameter builds nothing new, so a fresh tool shows 5.1.
    brush->setRadius(2.05);
    tool.updateCursor(QPointF(), 1.0);
    QCOMPARE(tool.cursor().pixmap().size(), QSize(17, 17));
    MBrushTool fresh;
    QCOMPARE(fresh.cursorDiameter(), 5);
    QCOMPARE(fresh.cursor().pixmap().size(), QSize(15, 15));
    // A ring of 30 has no centre mark, one of 31 has.
    brush->setRadius(14.5);
    tool.updateCursor(QPointF(), 1.0);
    QImage ring = tool.cursor().pixmap().toImage();
    QCOMPARE(ring.size(), QSize(30, 30));
    QCOMPARE(qAlpha(ring.pixel(15, 12)), 0);
    brush->setRadius(15);
    tool.updateCursor(QPointF(), 1.0);
    ring = tool.cursor().pixmap().toImage();
    QCOMPARE(ring.size(), QSize(31, 31));
    QVERIFY(qAlpha(ring.pixel(15, 12)) > 0);
    // The view's scale counts.
    brush->setRadius(10);
    tool.updateCursor(QPointF(), 2.0);
    QCOMPARE(tool.cursor().pixmap().size(), QSize(42, 42));
    brush->setRadius(radius);
}

void TestMBrushTool::wheelAndNearestPoint()
{
    MBrush* brush = MBrushList::instance()->currentBrush();
    const double radius = brush->radius();
    MBrushTool* tool = brushTool();
    tool->adjustRadius(120);
    QCOMPARE(brush->radius(), radius * 1.2);
    tool->adjustRadius(-120);
    QVERIFY(std::abs(brush->radius() - radius * 1.2 * 0.8) < 1e-9);
    brush->setRadius(900);
    tool->adjustRadius(1);
    QCOMPARE(brush->radius(), 1000.0);
    brush->setRadius(0.11);
    tool->adjustRadius(-1);
    QCOMPARE(brush->radius(), 0.1);
    brush->setRadius(radius);

    // The foot on an edge; a vertex only when strictly nearer; the point
    // itself for no polygon.
    const QPolygonF square({QPointF(0, 0), QPointF(100, 0), QPointF(100, 100), QPointF(0, 100), QPointF(0, 0)});
    QCOMPARE(MBrushTool::nearestOnPolygon(square, QPointF(30, 10)), QPointF(30, 0));
    QCOMPARE(MBrushTool::nearestOnPolygon(square, QPointF(130, 40)), QPointF(100, 40));
    QCOMPARE(MBrushTool::nearestOnPolygon(square, QPointF(120, -30)), QPointF(100, 0));
    QCOMPARE(MBrushTool::nearestOnPolygon(square, QPointF(90, 95)), QPointF(90, 100));
    QCOMPARE(MBrushTool::nearestOnPolygon(QPolygonF(), QPointF(3, 4)), QPointF(3, 4));

    // Following the path: a stroke inside the selection lands on its outline,
    // uncut by it.
    MCanvas* canvas = m_view->canvas();
    QPainterPath selection;
    selection.addRect(QRectF(-200, -200, 400, 400));
    canvas->setClipPath(selection);
    tool->set_drawOnPath(true);
    drag(m_view, {QPointF(-150, -180), QPointF(150, -180)});
    tool->set_drawOnPath(false);
    canvas->resetClipPath();
    const QImage image = layer();
    QCOMPARE(alphaAt(image, 0, -200), 255);
    QCOMPARE(alphaAt(image, 0, -204), 255);
    QCOMPARE(alphaAt(image, 0, -180), 0);
}

void TestMBrushTool::recordedStrokeReplaysToTheSamePixels()
{
    MCanvas* canvas = m_view->canvas();
    const QString before = m_dir.filePath(QStringLiteral("before.qmd"));
    QVERIFY(canvas->save(before));
    QCOMPARE(paintedCount(layer()), 0);
    drag(m_view, {QPointF(-250, 0), QPointF(-50, -150), QPointF(150, 120), QPointF(250, -80)});
    drag(m_view, {QPointF(-250, 200), QPointF(250, 200)});
    const QImage painted = layer();
    QVERIFY(paintedCount(painted) > 5000);

    QVector<MStrokeFile::Stroke> strokes;
    QString error;
    QVERIFY2(MStrokeFile::read(m_recording, strokes, &error), qPrintable(error));
    QCOMPARE(strokes.size(), 2);
    QVERIFY(strokes.at(0).size() > 100);
    QCOMPARE(QPointF(strokes.at(0).first().x, strokes.at(0).first().y), QPointF(-250, 0));
    QCOMPARE(QPointF(strokes.at(1).last().x, strokes.at(1).last().y), QPointF(250, 200));

    const QString brushFile = m_dir.filePath(QStringLiteral("brush.qmb"));
    QVERIFY(MBrushStream(MBrushList::instance()->currentBrush()).save(brushFile));
    const QString after = m_dir.filePath(QStringLiteral("after.qmd"));
    const QuillmereTest::Run run = QuillmereTest::runCli({QStringLiteral("paint"), before, after,
                                                          QStringLiteral("--brush"), brushFile,
                                                          QStringLiteral("--events"), m_recording});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    MCanvas replayed;
    QVERIFY(replayed.makeCurrent());
    QVERIFY(replayed.load(after));
    const QImage image = replayed.render(0);
    QCOMPARE(image.size(), painted.size());
    int differing = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            differing += image.pixel(x, y) != painted.pixel(x, y) ? 1 : 0;
    QCOMPARE(differing, 0);
}

QUILLMERE_TEST_MAIN(TestMBrushTool)
#include "tst_mbrushtool.moc"
