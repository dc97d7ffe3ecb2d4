#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"
#include "support/tilebytes.h"

#include "app/msettings.h"
#include "app/mutility.h"
#include "document/mcanvas.h"
#include "document/mcanvasreader.h"
#include "document/mtexturetile.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QUndoStack>
#include <QtEndian>

namespace {

using namespace QuillmereTest;

using QuillmereTest::LogWatch;

bool paint(MTextureLayer* layer, const QPointF& at, const QByteArray& content)
{
    auto* tile = dynamic_cast<MTextureTile*>(layer->addTile(at));
    return tile && tile->isCreated() && tile->setData(static_cast<const void*>(content.constData()));
}

QStringList layerNames(const MCanvas& canvas)
{
    QStringList names;
    for (int row = 0; row < canvas.count(); ++row)
        names.append(canvas.at(row)->name());
    return names;
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
    void idCounting();
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
    QVERIFY(canvas.isGlInitialized());
    QVERIFY(canvas.makeCurrent());
    QCOMPARE(canvas.count(), 1);
    QCOMPARE(canvas.currentRow(), 0);
    QCOMPARE(canvas.at(0)->name(), QStringLiteral("Layer 1"));
    // The first layer cannot be undone.
    QVERIFY(!canvas.undoStack()->canUndo());
    QVERIFY(!canvas.isModified());
    QCOMPARE(canvas.undoStack()->undoLimit(), 32);
    QCOMPARE(canvas.fileName(), QStringLiteral("new document %1.qmd").arg(MCanvas::canvasCount()));
    QVERIFY(canvas.isNew());
    QVERIFY(canvas.clipStroke());
    QVERIFY(!canvas.hasSelection());
    QCOMPARE(canvas.paintedRect(), QRectF(-500, -500, 1000, 1000));
    QVERIFY(!canvas.autoExtent());
    QCOMPARE(canvas.paintMargin(), 0.0);
    QCOMPARE(canvas.paperType(), MEnum::Colored);
    QCOMPARE(canvas.paperColor(), QColor(Qt::white));
    QVERIFY(canvas.canPaint());
    QVERIFY(canvas.strokeLayer() && canvas.selectionLayer());
    QVERIFY(canvas.strokeLayer() != canvas.at(0));

    // Odd sizes keep the page's origin at its centre, rounded towards it.
    MSettings::instance()->set_defaultWidth(301);
    MSettings::instance()->set_defaultHeight(7);
    MSettings::instance()->set_undoLimit(9);
    MCanvas odd;
    QCOMPARE(odd.paintedRect(), QRectF(-150, -3, 301, 7));
    QCOMPARE(odd.undoStack()->undoLimit(), 9);
    MSettings::instance()->set_defaultWidth(1000);
    MSettings::instance()->set_defaultHeight(1000);
    MSettings::instance()->set_undoLimit(32);
}

void TestMCanvas::appendPrependAndUndo()
{
    MCanvas canvas;
    QSignalSpy modified(&canvas, &MCanvas::modifiedChanged);
    canvas.appendLayer();
    QCOMPARE(layerNames(canvas), QStringList({"Layer 1", "Layer 2"}));
    QCOMPARE(canvas.currentRow(), 1);
    QVERIFY(canvas.isModified());
    QVERIFY(modified.count() > 0);
    canvas.prependLayer();
    QCOMPARE(layerNames(canvas), QStringList({"Layer 3", "Layer 1", "Layer 2"}));
    QCOMPARE(canvas.currentRow(), 0);
    QCOMPARE(canvas.undoStack()->text(1), QStringLiteral("Prepend a layer"));
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Append a layer"));

    canvas.undo();
    QCOMPARE(layerNames(canvas), QStringList({"Layer 1", "Layer 2"}));
    QCOMPARE(canvas.currentRow(), 1);
    canvas.undo();
    QCOMPARE(layerNames(canvas), QStringList({"Layer 1"}));
    QCOMPARE(canvas.currentRow(), 0);
    QVERIFY(!canvas.isModified());
    canvas.undo();
    QCOMPARE(canvas.count(), 1);
    canvas.redo();
    canvas.redo();
    QCOMPARE(layerNames(canvas), QStringList({"Layer 3", "Layer 1", "Layer 2"}));
    canvas.redo();
    QCOMPARE(canvas.count(), 3);
}

void TestMCanvas::moveAndNavigate()
{
    MCanvas canvas;
    canvas.appendLayer();
    canvas.appendLayer();
    canvas.at(0)->setName(QStringLiteral("bottom"));
    canvas.at(1)->setName(QStringLiteral("middle"));
    canvas.at(2)->setName(QStringLiteral("top"));
    const int steps = canvas.undoStack()->count();

    // At the ends nothing moves and nothing is pushed.
    canvas.moveUpLayer(0);
    canvas.moveDownLayer(2);
    canvas.moveUpLayer(7);
    canvas.moveDownLayer(-5);
    QCOMPARE(canvas.undoStack()->count(), steps);
    QCOMPARE(layerNames(canvas), QStringList({"bottom", "middle", "top"}));

    // "Up" lowers the row; the current row follows the moved layer.
    canvas.moveUpLayer(2);
    QCOMPARE(layerNames(canvas), QStringList({"bottom", "top", "middle"}));
    QCOMPARE(canvas.currentRow(), 1);
    QCOMPARE(canvas.undoStack()->text(canvas.undoStack()->count() - 1), QStringLiteral("Layer up"));
    canvas.moveDownLayer();
    QCOMPARE(layerNames(canvas), QStringList({"bottom", "middle", "top"}));
    QCOMPARE(canvas.currentRow(), 2);
    canvas.undo();
    QCOMPARE(layerNames(canvas), QStringList({"bottom", "top", "middle"}));
    canvas.undo();
    QCOMPARE(layerNames(canvas), QStringList({"bottom", "middle", "top"}));
    canvas.redo();
    QCOMPARE(layerNames(canvas), QStringList({"bottom", "top", "middle"}));

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
    QCOMPARE(canvas.count(), 1);
    QCOMPARE(canvas.at(0)->name(), QStringLiteral("painted"));
    QCOMPARE(canvas.at(0)->color(), QColor(Qt::red));
    QCOMPARE(readBack(canvas.at(0)->tileAt(QPointF(20, 20))), content);
    QVERIFY(canvas.canPaint());
    canvas.redo();
    QCOMPARE(canvas.count(), 0);
    canvas.undo();

    // Empty layers go from the top down in one step; painted ones stay.
    canvas.appendLayer();
    canvas.appendLayer();
    canvas.appendLayer();
    QVERIFY(paint(canvas.at(2), QPointF(0, 0), pattern(12)));
    canvas.at(1)->setName(QStringLiteral("empty a"));
    canvas.at(3)->setName(QStringLiteral("empty b"));
    const int steps = canvas.undoStack()->count();
    canvas.removeEmptyLayers();
    QCOMPARE(canvas.undoStack()->count(), steps + 1);
    QCOMPARE(canvas.undoStack()->text(steps), QStringLiteral("Remove layers"));
    QCOMPARE(canvas.count(), 2);
    QCOMPARE(canvas.at(0)->name(), QStringLiteral("painted"));
    canvas.removeEmptyLayers();
    QCOMPARE(canvas.undoStack()->count(), steps + 1);
    canvas.undo();
    QCOMPARE(layerNames(canvas), QStringList({"painted", "empty a", "Layer 3", "empty b"}));
    QCOMPARE(readBack(canvas.at(2)->tileAt(QPointF(0, 0))), pattern(12));

    const int macros = MCanvas::macroBeginCount();
    canvas.removeLayers();
    QCOMPARE(canvas.count(), 0);
    QCOMPARE(MCanvas::macroBeginCount(), macros + 1);
    // On an empty list it opens no macro.
    canvas.removeLayers();
    QCOMPARE(MCanvas::macroBeginCount(), macros + 1);
    canvas.removeEmptyLayers();
    QCOMPARE(MCanvas::macroBeginCount(), macros + 1);
    canvas.undo();
    QCOMPARE(layerNames(canvas), QStringList({"painted", "empty a", "Layer 3", "empty b"}));
    QCOMPARE(readBack(canvas.at(0)->tileAt(QPointF(20, 20))), content);
}

void TestMCanvas::visibilityAndLocks()
{
    MCanvas canvas;
    canvas.appendLayer();
    canvas.appendLayer();
    QSignalSpy refreshes(&canvas, &MCanvas::refreshNow);
    canvas.showLayer(1);
    QVERIFY(!canvas.at(1)->visible());
    canvas.showLayer(1);
    QVERIFY(canvas.at(1)->visible());
    canvas.lockLayer();
    QVERIFY(canvas.at(2)->locked());
    QVERIFY(!canvas.canPaint());
    canvas.lockLayer();
    QVERIFY(canvas.canPaint());
    QCOMPARE(refreshes.count(), 4);

    refreshes.clear();
    canvas.hideAllLayers();
    QCOMPARE(refreshes.count(), 1);
    QVERIFY(!canvas.at(0)->visible() && !canvas.at(1)->visible() && !canvas.at(2)->visible());
    QVERIFY(!canvas.canPaint());
    canvas.showAllLayers();
    QVERIFY(canvas.at(0)->visible() && canvas.at(1)->visible() && canvas.at(2)->visible());
    canvas.at(1)->setVisible(false);
    canvas.hideAllLayersExcept(1);
    QVERIFY(!canvas.at(0)->visible() && !canvas.at(1)->visible() && !canvas.at(2)->visible());
    canvas.showAllLayers();
    canvas.hideAllLayersExcept(2);
    QVERIFY(!canvas.at(0)->visible() && !canvas.at(1)->visible() && canvas.at(2)->visible());
    canvas.lockAllLayers();
    QVERIFY(canvas.at(0)->locked() && canvas.at(1)->locked() && canvas.at(2)->locked());
    canvas.unlockAllLayers();
    QVERIFY(!canvas.at(0)->locked() && !canvas.at(1)->locked() && !canvas.at(2)->locked());
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

    canvas.updatePaintedRect(QRectF(0.5, 0.25, 10.2, 3.5));
    QCOMPARE(canvas.paintedRect(), QRectF(0, 0, 11, 4));
    QCOMPARE(canvas.undoStack()->text(canvas.undoStack()->index() - 1),
             QStringLiteral("Resize painted rectangle: 11, 4"));
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
    QVERIFY(
        paper.save(MUtility::directory(MEnum::UserPath, MEnum::PaperDir) + QStringLiteral("test-paper.png")));
    // Names that leave the paper directory are refused, even when the file exists.
    QVERIFY(
        paper.save(MUtility::directory(MEnum::UserPath, MEnum::PaperDir) + QStringLiteral("../outside.png")));
    canvas.setPaperName(QStringLiteral("../outside.png"));
    QCOMPARE(canvas.paperName(), QStringLiteral("paper-01.jpg"));
    canvas.setPaperName(QStringLiteral(" test-paper.png "));
    QCOMPARE(canvas.paperName(), QStringLiteral("test-paper.png"));
    QCOMPARE(canvas.paperTile().format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(canvas.paperTile().pixelColor(3, 3), QColor(Qt::darkYellow));
}

void TestMCanvas::idCounting()
{
    MCanvas canvas;
    const QString id = MLayer::newId();
    const QString path = MUtility::tileFilePath(id);
    QVERIFY(writeFile(path, "x"));
    canvas.registerId(id);
    canvas.registerId(id);
    QCOMPARE(canvas.registeredCount(id), 2);
    canvas.unregisterId(id);
    QVERIFY(QFile::exists(path));
    canvas.unregisterId(id);
    QVERIFY(!QFile::exists(path));
    QCOMPARE(canvas.registeredCount(id), 0);

    const QString other = MLayer::newId();
    QVERIFY(writeFile(MUtility::tileFilePath(other), "y"));
    LogWatch log;
    canvas.unregisterId(other);
    QVERIFY(QFile::exists(MUtility::tileFilePath(other)));
    QVERIFY(log.added().contains(
        QStringLiteral(
            "MCanvas::unregisterId: System error: Unregister of a non previously registered id: %1")
            .arg(other)));

    // A removed layer's file lives as long as its command.
    canvas.removeLayer(0);
    QCOMPARE(QDir(MUtility::tempDir()).entryList({QStringLiteral("*.data")}).size(), 2);
    canvas.undoStack()->clear();
    QCOMPARE(QDir(MUtility::tempDir()).entryList({QStringLiteral("*.data")}).size(), 1);
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

void TestMCanvas::saveAndLoad()
{
    const QString path = QDir::temp().filePath(QStringLiteral("two layers.qmd"));
    const QByteArray first = pattern(21);
    const QByteArray second = pattern(22);
    QImage paper(16, 16, QImage::Format_ARGB32_Premultiplied);
    paper.fill(QColor(10, 20, 30));
    {
        MCanvas canvas;
        QVERIFY(canvas.makeCurrent());
        canvas.appendLayer();
        QVERIFY(paint(canvas.at(0), QPointF(-700, 0), first));
        QVERIFY(paint(canvas.at(1), QPointF(5, 5), second));
        canvas.at(1)->setName(QStringLiteral("top"));
        canvas.at(1)->setOpacity(0.5);
        canvas.at(0)->setVisible(false);
        canvas.setPaintedRect(QRectF(-10, -20, 30, 40));
        canvas.setPaperType(MEnum::Paper);
        canvas.setPaperColor(QColor(1, 2, 3));
        canvas.setPaperTile(paper);
        canvas.setAutoExtent(true);
        canvas.setPaintMargin(7.5);
        QVERIFY(canvas.save(path));
        QCOMPARE(canvas.lastError(), 0);
        QVERIFY(!canvas.isNew());
        QCOMPARE(canvas.fileName(), QFileInfo(path).absoluteFilePath());
        QVERIFY(!canvas.undoStack()->canUndo());
    }
    const QByteArray file = readFile(path);
    QCOMPARE(file.left(16), QByteArray::fromHex("CEC50B25E8654A4F9E63120098E6C0FD"));
    QCOMPARE(file.mid(16, 4), QByteArray::fromHex("00000064"));
    QCOMPARE(file.mid(20, 32),
             QByteArray::fromHex("C024000000000000C03400000000000040 3E000000000000 4044000000000000")
                 .replace(" ", ""));

    MCanvas loaded;
    QVERIFY(loaded.load(path));
    QCOMPARE(loaded.count(), 2);
    QCOMPARE(loaded.currentRow(), 1);
    QCOMPARE(loaded.paintedRect(), QRectF(-10, -20, 30, 40));
    QCOMPARE(loaded.paperType(), MEnum::Paper);
    QCOMPARE(loaded.paperColor(), QColor(1, 2, 3));
    QCOMPARE(loaded.paperTile().pixelColor(0, 0), QColor(10, 20, 30));
    QVERIFY(loaded.autoExtent());
    QCOMPARE(loaded.paintMargin(), 7.5);
    QCOMPARE(loaded.at(1)->name(), QStringLiteral("top"));
    QCOMPARE(loaded.at(1)->opacity(), 0.5);
    QVERIFY(!loaded.at(0)->visible());
    QVERIFY(!loaded.undoStack()->canUndo());
    QVERIFY(!loaded.isNew());
    QVERIFY(loaded.makeCurrent());
    QCOMPARE(readBack(loaded.at(0)->tileAt(QPointF(-700, 0))), first);
    QCOMPARE(readBack(loaded.at(1)->tileAt(QPointF(5, 5))), second);

    // Saved again, the document is the same file byte for byte.
    const QString again = QDir::temp().filePath(QStringLiteral("again.qmd"));
    QVERIFY(loaded.save(again));
    QCOMPARE(readFile(again), file);

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

    // A paper type of 2 announces a name and an image that the file doesn't
    // have: the reader runs off the end and says so.
    QByteArray paperless = good;
    qToBigEndian(qint32(2), paperless.data() + 52);
    QVERIFY(writeFile(damaged, paperless));
    QVERIFY(!canvas.load(damaged));
    QCOMPARE(canvas.count(), 0);

    for (int length : {17, 30, 52, 60, 70, 100, int(good.size()) - 1}) {
        QVERIFY(writeFile(damaged, good.left(length)));
        QVERIFY(!canvas.load(damaged));
        QVERIFY2(canvas.lastError() == 3,
                 qPrintable(QStringLiteral("length %1 gave %2").arg(length).arg(canvas.lastError())));
        QCOMPARE(canvas.count(), 0);
    }

    // A layer count far above what the file holds stops at the first short read.
    QByteArray manyLayers = good;
    const int layerCountAt = 20 + 32 + 4 + 11 + 1 + 8;
    QCOMPARE(qFromBigEndian<qint32>(manyLayers.constData() + layerCountAt), 1);
    qToBigEndian(qint32(0x7fffffff), manyLayers.data() + layerCountAt);
    QVERIFY(writeFile(damaged, manyLayers));
    QVERIFY(!canvas.load(damaged));
    QCOMPARE(canvas.lastError(), 3);
    QCOMPARE(canvas.count(), 0);

    QVERIFY(canvas.load(path));
    QCOMPARE(canvas.count(), 1);
}

QUILLMERE_TEST_MAIN(TestMCanvas)
#include "tst_mcanvas.moc"
