#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"
#include "support/tilebytes.h"

#include "app/msettings.h"
#include "app/mutility.h"
#include "document/mcanvas.h"
#include "document/mcanvasreader.h"
#include "document/mtexturetile.h"

#include <QSignalSpy>
#include <QUndoStack>

namespace {

using namespace QuillmereTest;

bool paint(MTextureLayer* layer, const QPointF& at, const QByteArray& content)
{
    auto* tile = dynamic_cast<MTextureTile*>(layer->addTile(at));
    return tile && tile->isCreated() && tile->setData(static_cast<const void*>(content.constData()));
}

// The layers' names, bottom first, the current one marked with "*" if asked.
QString layers(const MCanvas& canvas, bool markCurrent = true)
{
    QStringList names;
    for (int row = 0; row < canvas.count(); ++row)
        names << (markCurrent && row == canvas.currentRow() ? QStringLiteral("*") : QString()) +
                     canvas.at(row)->name();
    return names.join(QStringLiteral(", "));
}

// Each layer, bottom first, as "v" or "-" for visible and "l" or "-" for locked.
QString layerStates(const MCanvas& canvas)
{
    QStringList states;
    for (int row = 0; row < canvas.count(); ++row)
        states << QString(canvas.at(row)->visible() ? 'v' : '-') + (canvas.at(row)->locked() ? 'l' : '-');
    return states.join(' ');
}

QString lastStep(const MCanvas& canvas)
{
    return canvas.undoStack()->text(canvas.undoStack()->index() - 1);
}

} // namespace

class TestMCanvas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void newCanvas();
    void appendPrependAndUndo();
    void moveAndNavigate();
    void removeLayersAndUndo();
    void visibilityAndLocks();
    void layerPropertiesThroughUndo();
    void paintedRectAndPaperSize();
    void unregisteringAnUnknownId();
    void macroCounters();
    void selection();
    void saveAndLoad();
    void damagedDocuments();

private:
    QuillmereTest::GLContext m_gl;
};

void TestMCanvas::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestMCanvas::newCanvas()
{
    const int before = MCanvas::canvasCount();
    MCanvas canvas;
    QCOMPARE(MCanvas::canvasCount(), before + 1);
    QCOMPARE(layers(canvas), QStringLiteral("*Layer 1"));
    // The first layer cannot be undone.
    QVERIFY(!canvas.undoStack()->canUndo() && !canvas.isModified());
    QCOMPARE(canvas.fileName(), QStringLiteral("new document %1.qmd").arg(MCanvas::canvasCount()));
    QVERIFY(canvas.isNew() && canvas.clipStroke() && !canvas.hasSelection() && canvas.canPaint());
    QVERIFY(!canvas.autoExtent() && canvas.paintMargin() == 0.0);
    QCOMPARE(canvas.paperType(), MEnum::Colored);
    QCOMPARE(canvas.paperColor(), QColor(Qt::white));
    QVERIFY(canvas.selectionLayer() && canvas.strokeLayer() && canvas.strokeLayer() != canvas.at(0));

    // Odd sizes keep the page's origin at its centre, rounded towards it.
    MSettings* settings = MSettings::instance();
    settings->set_defaultWidth(301);
    settings->set_defaultHeight(7);
    settings->set_undoLimit(9);
    MCanvas odd;
    QCOMPARE(odd.paintedRect(), QRectF(-150, -3, 301, 7));
    QCOMPARE(odd.undoStack()->undoLimit(), 9);
    settings->set_defaultWidth(1000);
    settings->set_defaultHeight(1000);
    settings->set_undoLimit(32);
}

void TestMCanvas::appendPrependAndUndo()
{
    MCanvas canvas;
    QSignalSpy modified(&canvas, &MCanvas::modifiedChanged);
    canvas.appendLayer();
    QCOMPARE(layers(canvas), QStringLiteral("Layer 1, *Layer 2"));
    QVERIFY(canvas.isModified());
    QVERIFY(modified.count() > 0);
    canvas.prependLayer();
    QCOMPARE(layers(canvas), QStringLiteral("*Layer 3, Layer 1, Layer 2"));
    QCOMPARE(canvas.undoStack()->text(1), QStringLiteral("Prepend a layer"));
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Append a layer"));

    canvas.undo();
    QCOMPARE(layers(canvas), QStringLiteral("Layer 1, *Layer 2"));
    canvas.undo();
    QCOMPARE(layers(canvas), QStringLiteral("*Layer 1"));
    QVERIFY(!canvas.isModified());
    canvas.undo();
    QCOMPARE(canvas.count(), 1);
    canvas.redo();
    canvas.redo();
    QCOMPARE(layers(canvas, false), QStringLiteral("Layer 3, Layer 1, Layer 2"));
    canvas.redo();
    QCOMPARE(canvas.count(), 3);
}

void TestMCanvas::moveAndNavigate()
{
    MCanvas canvas;
    canvas.appendLayer();
    canvas.appendLayer();
    for (int row = 0; row < 3; ++row)
        canvas.at(row)->setName(QStringList({"bottom", "middle", "top"}).at(row));
    const int steps = canvas.undoStack()->count();

    // At the ends nothing moves and nothing is pushed.
    for (int row : {0, 7})
        canvas.moveUpLayer(row);
    for (int row : {2, -5})
        canvas.moveDownLayer(row);
    QCOMPARE(canvas.undoStack()->count(), steps);
    QCOMPARE(layers(canvas), QStringLiteral("bottom, middle, *top"));

    // "Up" lowers the row; the current row follows the moved layer.
    canvas.moveUpLayer(2);
    QCOMPARE(layers(canvas), QStringLiteral("bottom, *top, middle"));
    QCOMPARE(lastStep(canvas), QStringLiteral("Layer up"));
    canvas.moveDownLayer();
    QCOMPARE(layers(canvas), QStringLiteral("bottom, middle, *top"));
    canvas.undo();
    QCOMPARE(layers(canvas, false), QStringLiteral("bottom, top, middle"));
    canvas.undo();
    QCOMPARE(layers(canvas, false), QStringLiteral("bottom, middle, top"));
    canvas.redo();
    QCOMPARE(layers(canvas, false), QStringLiteral("bottom, top, middle"));

    // Next and previous wrap around.
    canvas.setCurrentRow(2);
    canvas.nextLayer();
    QCOMPARE(canvas.currentRow(), 0);
    canvas.previousLayer();
    QCOMPARE(canvas.currentRow(), 2);
    canvas.previousLayer();
    QCOMPARE(canvas.currentRow(), 1);
    QSignalSpy refreshes(&canvas, &MCanvas::refreshNow);
    canvas.nextLayer();
    QCOMPARE(refreshes.count(), 1);
}

void TestMCanvas::removeLayersAndUndo()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    const QByteArray content = pattern(11);
    QVERIFY(paint(canvas.at(0), QPointF(20, 20), content));
    canvas.at(0)->setName(QStringLiteral("painted"));
    canvas.at(0)->setColor(Qt::green);

    // Removing the only layer leaves an empty list; nothing can be painted.
    canvas.removeLayer();
    QCOMPARE(canvas.count(), 0);
    QCOMPARE(canvas.currentRow(), -1);
    QVERIFY(!canvas.canPaint());
    canvas.removeLayer();
    canvas.removeLayer(3);
    QCOMPARE(canvas.undoStack()->count(), 1);

    // Undo brings back a new layer holding what the file kept.
    canvas.undo();
    QCOMPARE(layers(canvas), QStringLiteral("*painted"));
    QVERIFY(canvas.canPaint());
    canvas.redo();
    QCOMPARE(canvas.count(), 0);
    canvas.undo();

    // Empty layers go from the top down in one step; painted ones stay.
    for (int i = 0; i < 3; ++i)
        canvas.appendLayer();
    QVERIFY(paint(canvas.at(2), QPointF(0, 0), pattern(12)));
    canvas.at(1)->setName(QStringLiteral("empty a"));
    canvas.at(3)->setName(QStringLiteral("empty b"));
    const int steps = canvas.undoStack()->count();
    canvas.removeEmptyLayers();
    QCOMPARE(canvas.undoStack()->count(), steps + 1);
    QCOMPARE(canvas.undoStack()->text(steps), QStringLiteral("Remove layers"));
    QCOMPARE(layers(canvas, false), QStringLiteral("painted, Layer 3"));
    canvas.removeEmptyLayers();
    QCOMPARE(canvas.undoStack()->count(), steps + 1);
    canvas.undo();
    const QString all = QStringLiteral("painted, empty a, Layer 3, empty b");
    QCOMPARE(layers(canvas, false), all);
    QCOMPARE(readBack(canvas.at(2)->tileAt(QPointF(0, 0))), pattern(12));

    // All layers in one macro; on an empty list, no macro at all.
    const int macros = MCanvas::macroBeginCount();
    canvas.removeLayers();
    QCOMPARE(canvas.count(), 0);
    QCOMPARE(MCanvas::macroBeginCount(), macros + 1);
    canvas.removeLayers();
    canvas.removeEmptyLayers();
    QCOMPARE(MCanvas::macroBeginCount(), macros + 1);
    canvas.undo();
    QCOMPARE(layers(canvas, false), all);
    QCOMPARE(readBack(canvas.at(0)->tileAt(QPointF(20, 20))), content);
}

void TestMCanvas::visibilityAndLocks()
{
    MCanvas canvas;
    canvas.appendLayer();
    canvas.appendLayer();
    QSignalSpy refreshes(&canvas, &MCanvas::refreshNow);
    canvas.showLayer(1);
    QCOMPARE(layerStates(canvas), QStringLiteral("v- -- v-"));
    canvas.showLayer(1);
    canvas.lockLayer();
    QCOMPARE(layerStates(canvas), QStringLiteral("v- v- vl"));
    QVERIFY(!canvas.canPaint());
    canvas.lockLayer();
    QVERIFY(canvas.canPaint());
    QCOMPARE(refreshes.count(), 4);

    refreshes.clear();
    canvas.hideAllLayers();
    QCOMPARE(refreshes.count(), 1);
    QCOMPARE(layerStates(canvas), QStringLiteral("-- -- --"));
    QVERIFY(!canvas.canPaint());
    canvas.showAllLayers();
    QCOMPARE(layerStates(canvas), QStringLiteral("v- v- v-"));
    canvas.at(1)->setVisible(false);
    canvas.hideAllLayersExcept(1);
    QCOMPARE(layerStates(canvas), QStringLiteral("-- -- --"));
    canvas.showAllLayers();
    canvas.hideAllLayersExcept(2);
    QCOMPARE(layerStates(canvas), QStringLiteral("-- -- v-"));
    canvas.lockAllLayers();
    QCOMPARE(layerStates(canvas), QStringLiteral("-l -l vl"));
    canvas.unlockAllLayers();
    QCOMPARE(layerStates(canvas), QStringLiteral("-- -- v-"));
    // None of this is undoable.
    QCOMPARE(canvas.undoStack()->count(), 2);
}

void TestMCanvas::layerPropertiesThroughUndo()
{
    MCanvas canvas;
    QSignalSpy changes(&canvas, &MListModelBase::propertyChanged);
    const QHash<QByteArray, QVariant> oldValues{{"opacity", 1.0}, {"name", QStringLiteral("Layer 1")}};
    const QHash<QByteArray, QVariant> newValues{{"opacity", 0.4}, {"name", QStringLiteral("Glaze")}};
    canvas.setLayerProperties(0, oldValues, newValues);
    QCOMPARE(canvas.at(0)->opacity(), 0.4);
    QCOMPARE(canvas.at(0)->name(), QStringLiteral("Glaze"));
    QCOMPARE(changes.count(), 2);
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Layer property change"));
    canvas.undo();
    QCOMPARE(canvas.at(0)->opacity(), 1.0);
    QCOMPARE(canvas.at(0)->name(), QStringLiteral("Layer 1"));
    canvas.setLayerProperties(5, oldValues, newValues);
    QCOMPARE(canvas.undoStack()->count(), 1);
}

void TestMCanvas::paintedRectAndPaperSize()
{
    MCanvas canvas;
    QSignalSpy rects(&canvas, &MCanvas::paintedRectChanged);
    QSignalSpy refreshes(&canvas, &MCanvas::refreshNow);
    // Differences within the relative tolerance of doubles change nothing.
    canvas.setPaintedRect(QRectF(-500 * (1 + 1e-14), -500, 1000, 1000 * (1 - 1e-14)));
    QCOMPARE(rects.count(), 0);
    QCOMPARE(refreshes.count(), 0);
    canvas.setPaintedRect(QRectF(-500, -500, 1000.5, 1000));
    QCOMPARE(rects.count(), 1);
    QCOMPARE(refreshes.count(), 1);
    canvas.setPaintedRect(QRectF(0, 0, 10, 10));
    canvas.setPaintedRect(QRectF(0, 0, 10, 10));
    QCOMPARE(rects.count(), 2);

    // A zero width becomes one pixel; the centre stays.
    canvas.setPaintedRect(QRectF(-500, -500, 1000, 1000));
    canvas.setPaperSize(QSize(0, 600));
    QCOMPARE(canvas.paintedRect(), QRectF(0, -300, 1, 600));
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Set canvas size: 0, 600"));
    canvas.undo();
    QCOMPARE(canvas.paintedRect(), QRectF(-500, -500, 1000, 1000));
    canvas.redo();
    QCOMPARE(canvas.paintedRect().width(), 1.0);

    // An empty rectangle is no update.
    const int steps = canvas.undoStack()->count();
    canvas.updatePaintedRect(QRectF());
    QCOMPARE(canvas.undoStack()->count(), steps);

    refreshes.clear();
    canvas.setPaintMargin(0.0);
    QCOMPARE(refreshes.count(), 0);
    canvas.setPaintMargin(12.0);
    QCOMPARE(refreshes.count(), 1);
    canvas.setAutoExtent(true);
    QCOMPARE(refreshes.count(), 2);

    // A paper name with no file changes nothing.
    canvas.setPaperName(QStringLiteral("no such paper.jpg"));
    QCOMPARE(canvas.paperName(), QStringLiteral("paper-01.jpg"));
    QImage paper(32, 32, QImage::Format_RGB32);
    paper.fill(Qt::darkYellow);
    const QString papers = MUtility::directory(MEnum::UserPath, MEnum::PaperDir);
    QVERIFY(paper.save(papers + QStringLiteral("test-paper.png")));
    // Names that leave the paper directory are refused, even when the file exists.
    QVERIFY(paper.save(papers + QStringLiteral("../outside.png")));
    canvas.setPaperName(QStringLiteral("../outside.png"));
    QCOMPARE(canvas.paperName(), QStringLiteral("paper-01.jpg"));
    canvas.setPaperName(QStringLiteral(" test-paper.png "));
    QCOMPARE(canvas.paperName(), QStringLiteral("test-paper.png"));
    QCOMPARE(canvas.paperTile().format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(canvas.paperTile().pixelColor(3, 3), QColor(Qt::darkYellow));
}

// Counting and the file's end at the last release: see the undo backup test.
void TestMCanvas::unregisteringAnUnknownId()
{
    MCanvas canvas;
    const QString id = MLayer::newId();
    QVERIFY(writeFile(MUtility::tileFilePath(id), "y"));
    LogWatch log;
    canvas.unregisterId(id);
    QVERIFY(QFile::exists(MUtility::tileFilePath(id)));
    QVERIFY(log.added().contains(
        QStringLiteral(
            "MCanvas::unregisterId: System error: Unregister of a non previously registered id: %1")
            .arg(id)));
    QCOMPARE(canvas.registeredCount(id), 0);
}

void TestMCanvas::macroCounters()
{
    const int begins = MCanvas::macroBeginCount();
    const int ends = MCanvas::macroEndCount();
    {
        MCanvas canvas;
        canvas.beginMacro(QStringLiteral("pair"));
        canvas.appendLayer();
        canvas.endMacro();
        QCOMPARE(MCanvas::macroBeginCount(), begins + 1);
        QCOMPARE(MCanvas::macroEndCount(), ends + 1);
        QCOMPARE(canvas.undoStack()->count(), 1);
        QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("pair"));
    }
    {
        MCanvas canvas;
        canvas.beginMacro(QStringLiteral("left open"));
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral(
                                             "^stroke start <> end ! MCanvas::~MCanvas \\d+ \\d+$")));
    }
    // Counters are process-wide; put them level again for the other tests.
    MCanvas canvas;
    canvas.undoStack()->beginMacro(QStringLiteral("level"));
    canvas.endMacro();
    QCOMPARE(MCanvas::macroBeginCount() - MCanvas::macroEndCount(), begins - ends);
}

void TestMCanvas::selection()
{
    MCanvas canvas;
    QSignalSpy has(&canvas, &MCanvas::hasSelectionChanged);
    QSignalSpy selections(&canvas, &MCanvas::selectionChanged);
    QPainterPath square;
    square.addRect(QRectF(-100, -100, 200, 200));
    canvas.setClipPath(square);
    QVERIFY(canvas.hasSelection());
    QCOMPARE(has.count(), 1);
    QCOMPARE(selections.count(), 1);

    // The mask is black inside, transparent outside, in canvas coordinates.
    QVERIFY(canvas.makeCurrent());
    MTile* tile = canvas.selectionLayer()->tileAt(QPointF(0, 0));
    QVERIFY(tile);
    const QByteArray mask = readBack(tile);
    auto alphaAt = [&](int x, int y) {
        const QPoint local = QPoint(x, y) - tile->outerRect().topLeft();
        return quint8(mask.at((local.y() * 512 + local.x()) * 4 + 3));
    };
    QCOMPARE(tile->outerRect(), QRect(-6, -6, 512, 512));
    QCOMPARE(alphaAt(0, 0), quint8(255));
    QCOMPARE(alphaAt(99, 50), quint8(255));
    // The margin carries the content of the neighbouring cells.
    QCOMPARE(alphaAt(-5, -5), quint8(255));
    QCOMPARE(alphaAt(101, 50), quint8(0));
    QCOMPARE(alphaAt(50, 120), quint8(0));
    QCOMPARE(alphaAt(400, 400), quint8(0));
    // Colour black, premultiplied.
    QCOMPARE(mask.mid((6 * 512 + 6) * 4, 4), QByteArray::fromHex("000000FF"));
    QVERIFY(canvas.selectionLayer()->tileCount() >= 4);

    canvas.invertClipPath();
    QVERIFY(canvas.hasSelection());
    QVERIFY(canvas.selectionPath().contains(QPointF(300, 300)));
    QVERIFY(!canvas.selectionPath().contains(QPointF(0, 0)));

    canvas.cropToSelection();
    QCOMPARE(canvas.paintedRect(), QRectF(-500, -500, 1000, 1000));
    canvas.setClipPath(square);
    canvas.cropToSelection();
    QCOMPARE(canvas.paintedRect(), QRectF(-100, -100, 200, 200));

    canvas.resetSelectionPath();
    QVERIFY(canvas.selectionPath().isEmpty());
    QVERIFY(canvas.selectionLayer()->tileCount() > 0);
    canvas.resetClipPath();
    QVERIFY(!canvas.hasSelection());
    QCOMPARE(canvas.selectionLayer()->tileCount(), 0);
}

// Every field of the file is checked in the document file test; here, what the
// canvas does around saving and loading.
void TestMCanvas::saveAndLoad()
{
    const QString path = QDir::temp().filePath(QStringLiteral("two layers.qmd"));
    {
        MCanvas canvas;
        QVERIFY(canvas.makeCurrent());
        canvas.appendLayer();
        QVERIFY(paint(canvas.at(0), QPointF(-700, 0), pattern(21)));
        QVERIFY(paint(canvas.at(1), QPointF(5, 5), pattern(22)));
        QVERIFY(canvas.save(path));
        QCOMPARE(canvas.lastError(), 0);
        QVERIFY(!canvas.isNew());
        QCOMPARE(canvas.fileName(), QFileInfo(path).absoluteFilePath());
        QVERIFY(!canvas.undoStack()->canUndo());
    }
    MCanvas loaded;
    QVERIFY(loaded.load(path));
    QVERIFY(!loaded.undoStack()->canUndo());
    QVERIFY(!loaded.isNew());
    // Saved again, the document is the same file byte for byte: the pixels
    // went to the textures and came back.
    const QString again = QDir::temp().filePath(QStringLiteral("again.qmd"));
    QVERIFY(loaded.save(again));
    QCOMPARE(readFile(again), readFile(path));

    // A document without layers reads back empty.
    loaded.removeLayers();
    QVERIFY(loaded.save(again));
    MCanvas empty;
    QVERIFY(empty.load(again));
    QCOMPARE(empty.count(), 0);
    QCOMPARE(empty.currentRow(), -1);
}

void TestMCanvas::damagedDocuments()
{
    const QString path = QDir::temp().filePath(QStringLiteral("good.qmd"));
    {
        MCanvas canvas;
        QVERIFY(canvas.makeCurrent());
        QVERIFY(paint(canvas.at(0), QPointF(0, 0), pattern(5)));
        QVERIFY(canvas.save(path));
    }
    const QByteArray good = readFile(path);
    const QString damaged = QDir::temp().filePath(QStringLiteral("damaged.qmd"));

    MCanvas canvas;
    canvas.appendLayer();
    QByteArray wrongMagic = good;
    wrongMagic[0] = 'X';
    QVERIFY(writeFile(damaged, wrongMagic));
    LogWatch log;
    QVERIFY(!canvas.load(damaged));
    QCOMPARE(canvas.lastError(), 2);
    QVERIFY(log.added().contains(
        QStringLiteral("MCanvasReader::loadCanvasFromFile: System error: Invalid canvas file format")));
    // The layers went before the magic was read; the document is a new one.
    QCOMPARE(canvas.count(), 0);
    QVERIFY(canvas.isNew());
    QVERIFY(canvas.fileName().isEmpty());

    QVERIFY(!canvas.load(QDir::temp().filePath(QStringLiteral("missing.qmd"))));
    QCOMPARE(canvas.lastError(), 1);

    QVERIFY(canvas.load(path));
    QCOMPARE(canvas.count(), 1);
}

QUILLMERE_TEST_MAIN(TestMCanvas)
#include "tst_mcanvas.moc"
