#include "support/glcontext.h"
#include "support/tilebytes.h"
#include "support/testenvironment.h"

#include "app/mutility.h"
#include "document/mcanvas.h"
#include "document/mcommand.h"
#include "document/mcommandremovelayer.h"
#include "document/mcommandupdatetile.h"
#include "document/mtexturetile.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QUndoStack>

#include <map>

namespace {

using QuillmereTest::Snapshot;
using QuillmereTest::snapshot;

constexpr int tileBytes = 512 * 512 * 4;

// Opaque random pixels: valid premultiplied content that blending keeps exact.
QByteArray pattern(quint32 seed)
{
    QByteArray bytes(tileBytes, Qt::Uninitialized);
    QRandomGenerator random(seed);
    auto* words = reinterpret_cast<quint32*>(bytes.data());
    for (int i = 0; i < tileBytes / 4; ++i)
        words[i] = random.generate() | 0xff000000u;
    return bytes;
}

bool paint(MTextureLayer* layer, const QPointF& at, const QByteArray& content)
{
    auto* tile = dynamic_cast<MTextureTile*>(layer->addTile(at));
    return tile && tile->isCreated() && tile->setData(static_cast<const void*>(content.constData()));
}

QList<Snapshot> snapshotAll(MCanvas& canvas)
{
    QList<Snapshot> result;
    for (int row = 0; row < canvas.count(); ++row)
        result.append(snapshot(canvas.at(row)));
    return result;
}

bool fileExists(const QString& id)
{
    return QFile::exists(MUtility::tileFilePath(id));
}

// The backup ids of every tile command under the step at index of the stack.
QStringList tileIds(const QUndoStack* stack, int index)
{
    QStringList ids;
    const QUndoCommand* step = stack->command(index);
    QList<const QUndoCommand*> commands{step};
    for (int i = 0; step && i < step->childCount(); ++i)
        commands.append(step->child(i));
    for (const QUndoCommand* command : commands) {
        if (const auto* update = dynamic_cast<const MCommandUpdateTile*>(command))
            ids << update->undoId() << update->redoId();
    }
    return ids;
}

// A step that only holds a backup id, as a second owner of a file would.
class HoldIdCommand : public MCommand
{
public:
    HoldIdCommand(MCanvas* canvas, const QString& id) : MCommand(canvas), m_id(id)
    {
        canvas->registerId(id);
        setText(QStringLiteral("Hold %1").arg(id));
        push();
    }
    ~HoldIdCommand() override { m_canvas->unregisterId(m_id); }
    void undo() override {}
    void redo() override {}

private:
    QString m_id;
};

QImage pasteImage(const QSize& size, const QColor& color)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QPainter painter(&image);
    painter.fillRect(QRect(QPoint(5, 5), size / 3), QColor(20, 200, 90));
    return image;
}

} // namespace

class TestUndoBackups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void layerPropertyChange();
    void tileUpdateThroughPaste();
    void layerRemoval();
    void paintedRectChange();
    void sharedIdOutlivesItsFirstHolder();
    void undoLimitDropsTheOldestFiles();

private:
    QuillmereTest::GLContext m_gl;
};

void TestUndoBackups::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestUndoBackups::layerPropertyChange()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    canvas.appendLayer();
    QVERIFY(paint(canvas.at(0), QPointF(-600, -20), pattern(1)));
    QVERIFY(paint(canvas.at(1), QPointF(10, 10), pattern(2)));
    const QList<Snapshot> before = snapshotAll(canvas);

    const QHash<QByteArray, QVariant> oldValues{
        {"name", QStringLiteral("Layer 2")}, {"opacity", 1.0}, {"visible", true}, {"locked", false}};
    const QHash<QByteArray, QVariant> newValues{
        {"name", QStringLiteral("Ink")}, {"opacity", 0.35}, {"visible", false}, {"locked", true}};
    canvas.setLayerProperties(1, oldValues, newValues);
    MTextureLayer* layer = canvas.at(1);
    QCOMPARE(layer->name(), QStringLiteral("Ink"));
    QCOMPARE(layer->opacity(), 0.35);
    QVERIFY(!layer->visible() && layer->locked());
    QCOMPARE(snapshotAll(canvas), before);

    canvas.undo();
    QCOMPARE(canvas.at(1), layer);
    QCOMPARE(layer->name(), QStringLiteral("Layer 2"));
    QCOMPARE(layer->opacity(), 1.0);
    QVERIFY(layer->visible() && !layer->locked());
    QCOMPARE(snapshotAll(canvas), before);

    canvas.redo();
    QCOMPARE(layer->name(), QStringLiteral("Ink"));
    QCOMPARE(layer->opacity(), 0.35);
    QVERIFY(!layer->visible() && layer->locked());
    QCOMPARE(snapshotAll(canvas), before);
}

void TestUndoBackups::tileUpdateThroughPaste()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    MTextureLayer* layer = canvas.at(0);
    // Two cells painted, two that the paste creates; the paste straddles the origin.
    QVERIFY(paint(layer, QPointF(-250, -250), pattern(3)));
    QVERIFY(paint(layer, QPointF(250, 250), pattern(4)));
    const Snapshot painted = snapshot(layer);
    QCOMPARE(painted.size(), size_t(2));

    const QImage image = pasteImage(QSize(301, 157), QColor(200, 30, 40, 128));
    QVERIFY(canvas.pasteImage(QPointF(-20, 10), image, false, QStringLiteral("Paste test"), 0));
    QCOMPARE(canvas.undoStack()->count(), 1);
    QCOMPARE(canvas.undoStack()->command(0)->childCount(), 4);
    const QStringList ids = tileIds(canvas.undoStack(), 0);
    QCOMPARE(ids.size(), 8);
    for (const QString& id : ids)
        QVERIFY2(fileExists(id), qPrintable(id));

    const Snapshot after = snapshot(layer);
    QCOMPARE(after.size(), size_t(4));
    // The paste really changed the painted cells.
    for (const auto& entry : painted)
        QVERIFY(after.at(entry.first) != entry.second);

    Snapshot before = painted;
    for (const auto& entry : after) {
        if (!before.count(entry.first))
            before[entry.first] = QByteArray(tileBytes, '\0');
    }
    for (int round = 0; round < 2; ++round) {
        canvas.undo();
        QCOMPARE(snapshot(layer), before);
        canvas.redo();
        QCOMPARE(snapshot(layer), after);
    }
}

void TestUndoBackups::layerRemoval()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    canvas.appendLayer();
    canvas.appendLayer();
    MTextureLayer* removed = canvas.at(1);
    QVERIFY(paint(removed, QPointF(-1300, 700), pattern(5)));
    QVERIFY(paint(removed, QPointF(3, -3), pattern(6)));
    QVERIFY(paint(canvas.at(2), QPointF(3, -3), pattern(7)));
    removed->setName(QStringLiteral("Shadows"));
    removed->setOpacity(0.625);
    removed->setVisible(false);
    removed->setLocked(true);
    const QList<Snapshot> before = snapshotAll(canvas);

    canvas.removeLayer(1);
    QCOMPARE(canvas.count(), 2);
    const auto* command = dynamic_cast<const MCommandRemoveLayer*>(
        canvas.undoStack()->command(canvas.undoStack()->count() - 1));
    QVERIFY(command);
    QVERIFY(fileExists(command->layerId()));
    const QList<Snapshot> without = snapshotAll(canvas);

    for (int round = 0; round < 2; ++round) {
        canvas.undo();
        QCOMPARE(canvas.count(), 3);
        MTextureLayer* back = canvas.at(1);
        QCOMPARE(back->name(), QStringLiteral("Shadows"));
        QCOMPARE(back->opacity(), 0.625);
        QVERIFY(!back->visible() && back->locked());
        QCOMPARE(snapshotAll(canvas), before);
        canvas.redo();
        QCOMPARE(canvas.count(), 2);
        QCOMPARE(snapshotAll(canvas), without);
    }
    const QString id = command->layerId();
    canvas.undoStack()->clear();
    QVERIFY(!fileExists(id));
}

void TestUndoBackups::paintedRectChange()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    QVERIFY(paint(canvas.at(0), QPointF(-900, 400), pattern(8)));
    const QList<Snapshot> before = snapshotAll(canvas);
    const QRectF old = canvas.paintedRect();

    canvas.updatePaintedRect(QRectF(-37.5, 10.25, 123.25, 80));
    const QRectF aligned(-38, 10, 124, 81);
    QCOMPARE(canvas.paintedRect(), aligned);
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Resize painted rectangle: 124, 81"));
    canvas.undo();
    QCOMPARE(canvas.paintedRect(), old);
    QCOMPARE(snapshotAll(canvas), before);
    canvas.redo();
    QCOMPARE(canvas.paintedRect(), aligned);
    QCOMPARE(snapshotAll(canvas), before);
}

void TestUndoBackups::sharedIdOutlivesItsFirstHolder()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    canvas.undoStack()->setUndoLimit(2);
    QVERIFY(paint(canvas.at(0), QPointF(100, 100), pattern(9)));

    QVERIFY(canvas.pasteImage(QPointF(100, 100), pasteImage(QSize(40, 40), Qt::blue), false));
    const QStringList first = tileIds(canvas.undoStack(), 0);
    QCOMPARE(first.size(), 2);
    const QString shared = first.at(0);
    new HoldIdCommand(&canvas, shared);
    QCOMPARE(canvas.registeredCount(shared), 2);

    // A third step drops the paste: its own file goes, the shared one stays.
    new HoldIdCommand(&canvas, MLayer::newId());
    QCOMPARE(canvas.undoStack()->count(), 2);
    QVERIFY(!fileExists(first.at(1)));
    QVERIFY(fileExists(shared));
    QCOMPARE(canvas.registeredCount(shared), 1);

    // A fourth drops the second holder, and the file with it.
    new HoldIdCommand(&canvas, MLayer::newId());
    QVERIFY(!fileExists(shared));
    QCOMPARE(canvas.registeredCount(shared), 0);
}

void TestUndoBackups::undoLimitDropsTheOldestFiles()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    canvas.undoStack()->setUndoLimit(3);
    MTextureLayer* layer = canvas.at(0);

    // Each step is a stroke's shape: a macro of one tile update per touched
    // tile, here two tiles either side of x = 0.
    QList<QStringList> steps;
    for (int i = 0; i < 4; ++i) {
        QVERIFY(canvas.pasteImage(QPointF(0, 100 + 10 * i), pasteImage(QSize(60, 20), QColor(i * 60, 0, 0)),
                                  false, QStringLiteral("Stroke %1").arg(i), 0));
        const int top = canvas.undoStack()->count() - 1;
        steps.append(tileIds(canvas.undoStack(), top));
        QCOMPARE(steps.last().size(), 4);
        for (const QStringList& step : qAsConst(steps)) {
            for (const QString& id : step) {
                const bool dropped = i == 3 && &step == &steps.first();
                QVERIFY2(fileExists(id) != dropped,
                         qPrintable(QStringLiteral("step %1, id %2").arg(i).arg(id)));
            }
        }
    }
    QCOMPARE(canvas.undoStack()->count(), 3);
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Stroke 1"));
    QCOMPARE(layer->tileCount(), 2);

    // The steps that stayed still undo to what they hold.
    const Snapshot latest = snapshot(layer);
    canvas.undo();
    canvas.undo();
    canvas.undo();
    QVERIFY(!canvas.undoStack()->canUndo());
    canvas.redo();
    canvas.redo();
    canvas.redo();
    QCOMPARE(snapshot(layer), latest);

    canvas.undoStack()->clear();
    for (const QStringList& step : qAsConst(steps)) {
        for (const QString& id : step)
            QVERIFY(!fileExists(id));
    }
}

QUILLMERE_TEST_MAIN(TestUndoBackups)
#include "tst_undobackups.moc"
