// Strokes through the three runners into a real canvas, read back from the
// GPU: where stamps fall for each spacing, what a press alone leaves, tile
// seams, pressure on the radius, the selection, the eraser, wet paint, the
// page growing under a stroke, and undo and redo restoring exact bytes.

#include "support/glcontext.h"
#include "support/tilebytes.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"

#include "app/mevent.h"
#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mcurve.h"
#include "colour/mcolorlist.h"
#include "document/mcanvas.h"
#include "document/mtexturetile.h"
#include "gpu/mshareddata.h"

#include <QPainterPath>
#include <QTemporaryDir>
#include <QUndoStack>

namespace {

using QuillmereTest::Snapshot;
using QuillmereTest::snapshot;

const QRectF page(-500, -500, 1000, 1000);

MEvent sample(int type, double x, double y, double pressure = 1.0)
{
    MEvent event;
    event.type = type;
    event.positionX = x;
    event.positionY = y;
    event.pressure = pressure;
    return event;
}

// A hard, unsmoothed brush with constant spacing: stamps fall exactly where
// the walk puts them.
std::unique_ptr<MBrush> plainBrush(double radius = 10.0, double spacing = 7.0)
{
    auto brush = std::make_unique<MBrush>();
    brush->set_description(QStringLiteral("plain"));
    brush->setRadius(radius);
    brush->setBaseValue(MEnum::bsSpacingType, MEnum::ConstantSpacing);
    brush->setBaseValue(MEnum::bsSpacing, spacing);
    brush->setBaseValue(MEnum::bsHardness, 1.0);
    brush->setBaseValue(MEnum::bsAntialiasing, MEnum::NoAntialiasing);
    return brush;
}

bool allTransparent(const QByteArray& bytes)
{
    return bytes.count('\0') == bytes.size();
}

} // namespace

class TestStrokeRunners : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void pressAloneAndShortMoves();
    void stampsFollowTheSpacingType();
    void strokeFarOutsideMakesNothing();
    void seamsLeaveNoMark();
    void pressureThinsTheLine();
    void selectionAndEraser();
    void wetBrushCarriesTheLayersColour();
    void undoAndRedoRestoreExactBytes();
    void pathsLinesAndParallelStrokes();
    void autoExtentGrowsThePage();

private:
    // One stroke with brush through the canvas's dispatcher.
    void stroke(const MBrush& brush, const QVector<MEvent>& events, int index = 0);
    // Layer 0 from a render of the page.
    QImage layerImage();
    // Filling reaches only existing tiles: the page's four are made first.
    void fillPage(const QColor& color);
    static int alphaAt(const QImage& image, double x, double y);
    // The painted height of the column at x around y, in pixels.
    static int columnExtent(const QImage& image, double x);

    QuillmereTest::GLContext m_gl;
    QTemporaryDir m_systemData;
    std::unique_ptr<MCanvas> m_canvas;
};

void TestStrokeRunners::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    // An empty system library: the brush list holds its default brush.
    MUtility::setSystemDataRoot(m_systemData.path());
    QVERIFY(MBrushList::instance()->currentBrush());
}

void TestStrokeRunners::init()
{
    m_canvas = std::make_unique<MCanvas>();
    QVERIFY(m_canvas->makeCurrent());
    m_canvas->setPaintedRect(page);
    m_canvas->setCurrentRow(0);
    QVERIFY(m_canvas->canPaint());
    MColorList::instance()->setColor(Qt::black);
    MEvent::seedRandom(7);
}

void TestStrokeRunners::cleanup()
{
    m_canvas.reset();
}

void TestStrokeRunners::stroke(const MBrush& brush, const QVector<MEvent>& events, int index)
{
    for (const MEvent& event : events)
        m_canvas->stroke(event, index, &brush);
}

QImage TestStrokeRunners::layerImage()
{
    return m_canvas->render(0);
}

void TestStrokeRunners::fillPage(const QColor& color)
{
    for (const QPointF& corner : {page.topLeft(), page.topRight(), page.bottomLeft(), page.bottomRight()})
        m_canvas->at(0)->addTile(corner * 0.5);
    m_canvas->fill(color);
}

int TestStrokeRunners::alphaAt(const QImage& image, double x, double y)
{
    return qAlpha(image.pixel(int(x - page.left()), int(y - page.top())));
}

int TestStrokeRunners::columnExtent(const QImage& image, double x)
{
    int painted = 0;
    for (int y = 0; y < image.height(); ++y)
        painted += qAlpha(image.pixel(int(x - page.left()), y)) > 127 ? 1 : 0;
    return painted;
}

void TestStrokeRunners::pressAloneAndShortMoves()
{
    MSharedData* data = m_canvas->sharedData();
    const auto brush = plainBrush();
    stroke(*brush, {sample(0, 0, 0)});
    QCOMPARE(data->stampCount(), 1);
    QVERIFY(m_canvas->strokeInProgress());

    // Moves shorter than the spacing add up; a move exactly at the spacing
    // still draws nothing, the comparison being strict.
    stroke(*brush, {sample(2, 5, 0)});
    QCOMPARE(data->stampCount(), 1);
    QCOMPARE(data->lastEvent(0)->positionX, 0.0);
    stroke(*brush, {sample(2, 7, 0)});
    QCOMPARE(data->stampCount(), 1);
    stroke(*brush, {sample(2, 7.5, 0)});
    QCOMPARE(data->stampCount(), 2);
    QCOMPARE(data->lastEvent(0)->positionX, 7.0);
    stroke(*brush, {sample(3, 7.5, 0)});
    QVERIFY(!m_canvas->strokeInProgress());
    QVERIFY(m_canvas->strokeLayer()->changedTiles().isEmpty());

    QImage image = layerImage();
    QCOMPARE(alphaAt(image, 0, 0), 255);
    QCOMPARE(alphaAt(image, 7, 0), 255);
    QCOMPARE(alphaAt(image, -9, 0), 255);
    QCOMPARE(alphaAt(image, 18, 0), 0);
    QCOMPARE(alphaAt(image, 0, 12), 0);
    // Every stroke tile was emptied when it went onto the layer.
    QVERIFY(m_canvas->strokeLayer()->tileCount() > 0);
    for (const auto& entry : snapshot(m_canvas->strokeLayer()))
        QVERIFY(allTransparent(entry.second));

    // A brush whose angle follows the direction has none at the press.
    const auto following = plainBrush();
    following->setBaseValue(MEnum::bsAngleType, MEnum::FollowDirectionAngle);
    stroke(*following, {sample(0, 200, 200), sample(3, 200, 200)});
    QCOMPARE(data->stampCount(), 0);
    QCOMPARE(alphaAt(layerImage(), 200, 200), 0);
}

void TestStrokeRunners::stampsFollowTheSpacingType()
{
    MSharedData* data = m_canvas->sharedData();
    // Constant: 7, 14 ... 98 after the press's dot.
    stroke(*plainBrush(), {sample(0, -300, -300), sample(2, -200, -300)});
    QCOMPARE(data->stampCount(), 1 + 14);
    QCOMPARE(data->lastEvent(0)->positionX, -300 + 98.0);
    stroke(*plainBrush(), {sample(3, -200, -300)});

    // Ratio: a quarter of radius times ratio, 2.5 pixels, so 2.5 ... 97.5.
    const auto ratio = plainBrush();
    ratio->setBaseValue(MEnum::bsSpacingType, MEnum::RatioSpacing);
    ratio->setBaseValue(MEnum::bsSpacing, 0.25);
    stroke(*ratio, {sample(0, -300, 0), sample(2, -200, 0)});
    QCOMPARE(data->stampCount(), 1 + 39);
    QCOMPARE(data->lastEvent(0)->positionX, -300 + 97.5);
    stroke(*ratio, {sample(3, -200, 0)});

    // Auto: the brush's curve of spacing by size.
    const auto automatic = plainBrush(20.0);
    automatic->setBaseValue(MEnum::bsSpacingType, MEnum::AutoSpacing);
    const double spacing = automatic->autoSpacing(20.0);
    QVERIFY(spacing > 0.1 && spacing < 100.0);
    int expected = 0;
    for (double step = spacing; step < 100.0; step += spacing)
        ++expected;
    stroke(*automatic, {sample(0, -300, 300), sample(2, -200, 300)});
    QCOMPARE(data->stampCount(), 1 + expected);
    stroke(*automatic, {sample(3, -200, 300)});

    // Each line ends where its last stamp was laid.
    const QImage image = layerImage();
    QCOMPARE(alphaAt(image, -300 + 98 + 9, -300), 255);
    QCOMPARE(alphaAt(image, -300 + 98 + 11, -300), 0);
    QCOMPARE(alphaAt(image, -300 + 97.5 + 9, 0), 255);
    QCOMPARE(alphaAt(image, -300 + 97.5 + 11, 0), 0);
}

void TestStrokeRunners::strokeFarOutsideMakesNothing()
{
    MSharedData* data = m_canvas->sharedData();
    stroke(*plainBrush(), {sample(0, 2000, 0), sample(2, 2100, 0)});
    QCOMPARE(data->stampCount(), 0);
    QCOMPARE(m_canvas->strokeLayer()->tileCount(), 0);
    // The walk went on all the same.
    QCOMPARE(data->lastEvent(0)->positionX, 2098.0);
    stroke(*plainBrush(), {sample(3, 2100, 0)});
    QVERIFY(m_canvas->at(0)->isEmpty());

    // Within 100 pixels of the page a stamp is still made.
    stroke(*plainBrush(), {sample(0, 580, 0), sample(3, 580, 0)});
    QCOMPARE(data->stampCount(), 1);
}

void TestStrokeRunners::seamsLeaveNoMark()
{
    // A soft line crossing the tile seam at x = 0, with stamps a pixel apart
    // so that it is even along its length.
    const auto soft = plainBrush(12.0, 1.0);
    soft->setBaseValue(MEnum::bsHardness, 0.3);
    soft->setBaseValue(MEnum::bsOpacity, 0.5);
    stroke(*soft, {sample(0, -120, 100), sample(2, 120, 100), sample(3, 120, 100)});
    const QImage image = layerImage();
    for (double dy = -12; dy <= 12; dy += 1) {
        const int reference = alphaAt(image, -60, 100 + dy);
        for (double x = -8; x <= 8; x += 1) {
            const int alpha = alphaAt(image, x, 100 + dy);
            QVERIFY2(std::abs(alpha - reference) <= 2,
                     qPrintable(QStringLiteral("%1,%2: %3 against %4").arg(x).arg(100 + dy).arg(alpha).arg(reference)));
        }
    }
    QVERIFY(alphaAt(image, 0, 100) > 100);
}

void TestStrokeRunners::pressureThinsTheLine()
{
    const auto brush = plainBrush(30.0, 2.0);
    // The radius times the pressure.
    QVERIFY(brush->curve(MEnum::bsRadius, MEnum::biPressure));
    stroke(*brush, {sample(0, -200, -200, 1.0), sample(2, 200, -200, 1.0), sample(3, 200, -200, 1.0)});
    stroke(*brush, {sample(0, -200, 200, 0.25), sample(2, 200, 200, 0.25), sample(3, 200, 200, 0.25)});
    const QImage image = layerImage();
    int thick = 0;
    int thin = 0;
    for (int y = 0; y < image.height(); ++y) {
        const bool painted = qAlpha(image.pixel(500, y)) > 127;
        if (painted && y < 500)
            ++thick;
        else if (painted)
            ++thin;
    }
    QVERIFY2(std::abs(thick - 60) <= 2, qPrintable(QString::number(thick)));
    QVERIFY2(std::abs(thin - 15) <= 2, qPrintable(QString::number(thin)));
}

void TestStrokeRunners::selectionAndEraser()
{
    QPainterPath selection;
    selection.addRect(QRectF(-400, -400, 200, 200));
    m_canvas->setClipPath(selection);
    QVERIFY(m_canvas->hasSelection());
    // Wholly outside: the layer stays transparent.
    stroke(*plainBrush(), {sample(0, -100, 300), sample(2, 300, 300), sample(3, 300, 300)});
    for (const auto& entry : snapshot(m_canvas->at(0)))
        QVERIFY(allTransparent(entry.second));
    // Across the edge: painted inside only.
    stroke(*plainBrush(), {sample(0, -350, -300), sample(2, -100, -300), sample(3, -100, -300)});
    QImage image = layerImage();
    QCOMPARE(alphaAt(image, -250, -300), 255);
    QCOMPARE(alphaAt(image, -150, -300), 0);
    // Unclipped, as along the selection's own outline: it paints outside too,
    // and the stroke layer is emptied outside the selection as well.
    m_canvas->setClipStroke(false);
    stroke(*plainBrush(), {sample(0, -350, -250), sample(2, -100, -250), sample(3, -100, -250)});
    m_canvas->setClipStroke(true);
    QCOMPARE(alphaAt(layerImage(), -150, -250), 255);
    for (const auto& entry : snapshot(m_canvas->strokeLayer()))
        QVERIFY(allTransparent(entry.second));
    m_canvas->resetClipPath();
    QVERIFY(!m_canvas->hasSelection());

    // The eraser, by the brush or by the stylus's eraser end, clears.
    fillPage(Qt::red);
    const auto eraser = plainBrush();
    eraser->setEraser(true);
    stroke(*eraser, {sample(0, -200, 0), sample(2, 200, 0), sample(3, 200, 0)});
    MEvent tip = sample(0, -200, 200);
    tip.pointerType = 3;
    QVector<MEvent> stylus{tip, sample(2, 200, 200), sample(3, 200, 200)};
    for (MEvent& event : stylus)
        event.pointerType = 3;
    stroke(*plainBrush(), stylus);
    image = layerImage();
    QCOMPARE(alphaAt(image, 0, 0), 0);
    QCOMPARE(alphaAt(image, 0, 200), 0);
    QCOMPARE(alphaAt(image, 0, 100), 255);
    QCOMPARE(QColor(image.pixel(500, 600)), QColor(Qt::red));
}

void TestStrokeRunners::wetBrushCarriesTheLayersColour()
{
    fillPage(Qt::red);
    QuillmereTest::LogWatch log;
    const auto wet = plainBrush(10.0, 2.0);
    wet->setBaseValue(MEnum::bsColorAbsorbtionRate, 1.0);
    wet->setBaseValue(MEnum::bsColorFlowingRate, 0.0);
    // More than 25 stamps, so the colour is picked up during the stroke; away
    // from tile seams, where the sample would read a tile's margin.
    MColorList::instance()->setColor(Qt::blue);
    stroke(*wet, {sample(0, -200, -250), sample(2, 200, -250), sample(3, 200, -250)});
    QVERIFY2(!log.added().contains(QStringLiteral("System error")), qPrintable(log.added()));
    const QColor painted(layerImage().pixel(500 + 150, 250));
    QVERIFY2(painted.red() > 200 && painted.blue() < 60, qPrintable(painted.name()));

    // A dry brush paints its own colour over the same red.
    stroke(*plainBrush(), {sample(0, -200, 100), sample(2, 200, 100), sample(3, 200, 100)});
    QCOMPARE(QColor(layerImage().pixel(500 + 150, 600)), QColor(Qt::blue));
    // The stroke's colour joined the history.
    QCOMPARE(MColorList::instance()->color(0), QColor(Qt::blue));
}

void TestStrokeRunners::undoAndRedoRestoreExactBytes()
{
    // Some paint first, so that the stroke lands over content on one tile
    // and on fresh tiles elsewhere.
    stroke(*plainBrush(20.0), {sample(0, -300, -300), sample(2, -100, -300), sample(3, -100, -300)});
    const Snapshot before = snapshot(m_canvas->at(0));
    const int steps = m_canvas->undoStack()->count();
    MColorList::instance()->setColor(QColor(10, 120, 240));
    const auto brush = plainBrush(15.0, 3.0);
    brush->set_description(QStringLiteral("ink"));
    stroke(*brush, {sample(0, -250, -320), sample(2, 300, 300, 0.5), sample(3, 300, 300)});
    const Snapshot after = snapshot(m_canvas->at(0));
    QVERIFY(after != before);
    QCOMPARE(m_canvas->undoStack()->count(), steps + 1);
    QCOMPARE(m_canvas->undoStack()->text(steps), QStringLiteral("Brush stroke: ink, #0a78f0"));
    QCOMPARE(MCanvas::macroBeginCount(), MCanvas::macroEndCount());

    m_canvas->undo();
    const Snapshot undone = snapshot(m_canvas->at(0));
    for (const auto& entry : undone) {
        const auto old = before.find(entry.first);
        if (old == before.end())
            QVERIFY(allTransparent(entry.second));
        else
            QVERIFY(entry.second == old->second);
    }
    m_canvas->redo();
    QVERIFY(snapshot(m_canvas->at(0)) == after);
}

void TestStrokeRunners::pathsLinesAndParallelStrokes()
{
    const int steps = m_canvas->undoStack()->count();
    QPainterPath path;
    path.moveTo(-300, -300);
    path.lineTo(300, -300);
    path.moveTo(-300, 300);
    path.lineTo(300, 300);
    m_canvas->setClipStroke(false);
    m_canvas->strokePath(path, false);
    QVERIFY(m_canvas->clipStroke());
    QCOMPARE(m_canvas->undoStack()->count(), steps + 1);
    QCOMPARE(m_canvas->undoStack()->text(steps), QStringLiteral("Brush stroke"));
    QImage image = layerImage();
    // The current brush of the list, default radius 30, along both subpaths.
    QVERIFY(alphaAt(image, 0, -300) > 0);
    QVERIFY(alphaAt(image, 0, 300) > 0);
    QCOMPARE(alphaAt(image, 0, 0), 0);

    m_canvas->drawLine(QPointF(-300, 0), QPointF(300, 0));
    QCOMPARE(m_canvas->undoStack()->text(steps + 1), QStringLiteral("Draw line"));
    QVERIFY(alphaAt(layerImage(), 0, 0) > 0);
    QCOMPARE(MCanvas::macroBeginCount(), MCanvas::macroEndCount());

    // Rows 0 and 29 run side by side; a row outside the table does nothing.
    MSharedData* data = m_canvas->sharedData();
    const auto brush = plainBrush();
    m_canvas->beginMacro(QStringLiteral("pair"));
    for (int index : {0, 29, 30}) {
        const double y = 150 + index;
        stroke(*brush, {sample(0, -200, y)}, index);
    }
    for (int index : {0, 29, 30}) {
        const double y = 150 + index;
        stroke(*brush, {sample(2, 200, y), sample(3, 200, y)}, index);
    }
    m_canvas->endMacro();
    QVERIFY(data->lastEvent(30) == nullptr);
    image = layerImage();
    QCOMPARE(alphaAt(image, 100, 150), 255);
    QCOMPARE(alphaAt(image, 100, 179), 255);
    QCOMPARE(alphaAt(image, 100, 195), 0);
}

void TestStrokeRunners::autoExtentGrowsThePage()
{
    m_canvas->setAutoExtent(true);
    m_canvas->setPaintMargin(10);
    stroke(*plainBrush(), {sample(0, 0, 0), sample(2, 560, 0), sample(3, 560, 0)});
    const QRectF grown = m_canvas->paintedRect();
    QVERIFY2(grown.right() >= 560 + 10 && grown.right() <= 560 + 10 * 1.42 + 11,
             qPrintable(QString::number(grown.right())));
    QCOMPARE(grown.left(), page.left());
    QCOMPARE(grown, QRectF(grown.toAlignedRect()));
    m_canvas->undo();
    QCOMPARE(m_canvas->paintedRect(), page);
    m_canvas->redo();
    QCOMPARE(m_canvas->paintedRect(), grown);
}

QUILLMERE_TEST_MAIN(TestStrokeRunners)
#include "tst_strokerunners.moc"
