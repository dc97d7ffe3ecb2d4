#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"
#include "support/tilebytes.h"

#include "app/msettings.h"
#include "app/mutility.h"
#include "document/mcanvas.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mvalues.h"
#include "gpu/mpaintengine.h"
#include "gpu/mpaintparams.h"
#include "gpu/mshareddata.h"
#include "gpu/mtransform.h"

#include <QClipboard>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLTexture>
#include <QUndoStack>

#include <cmath>

namespace {

using namespace QuillmereTest;

// Eight-bit textures and premultiplication round once or twice per pass.
constexpr int tolerance = 3;

struct Rgba
{
    double r, g, b, a; // premultiplied, 0..255
};

Rgba over(const Rgba& top, const Rgba& bottom)
{
    const double k = 1.0 - top.a / 255.0;
    return {top.r + bottom.r * k, top.g + bottom.g * k, top.b + bottom.b * k, top.a + bottom.a * k};
}

Rgba scaled(const Rgba& c, double f)
{
    return {c.r * f, c.g * f, c.b * f, c.a * f};
}

bool near(const QColor& actual, const Rgba& expected)
{
    // QImage pixels of a premultiplied image read back unpremultiplied by
    // pixelColor; compare premultiplied values.
    const double a = actual.alpha();
    const double values[4] = {actual.red() * a / 255.0, actual.green() * a / 255.0, actual.blue() * a / 255.0,
                              a};
    const double wanted[4] = {expected.r, expected.g, expected.b, expected.a};
    for (int i = 0; i < 4; ++i) {
        if (std::abs(values[i] - wanted[i]) > tolerance)
            return false;
    }
    return true;
}

QString describe(const QColor& c)
{
    return QStringLiteral("(%1, %2, %3, %4)").arg(c.red()).arg(c.green()).arg(c.blue()).arg(c.alpha());
}

// Empty when the pixel at p is near the premultiplied colour, else what it is.
QString offColour(const QImage& image, const QPoint& p, const Rgba& expected)
{
    const QColor actual = image.pixelColor(p);
    return near(actual, expected) ? QString() : QString::asprintf("%d,%d: ", p.x(), p.y()) + describe(actual);
}

// Fills the part of a layer inside rect with one premultiplied colour, tile by tile.
bool fillRect(MTextureLayer* layer, const QRect& rect, const QColor& color)
{
    QSet<MTile*> tiles;
    layer->tilesInRect(QRectF(rect), tiles);
    for (MTile* tile : qAsConst(tiles)) {
        auto* textureTile = dynamic_cast<MTextureTile*>(tile);
        if (!textureTile || !textureTile->isCreated())
            return false;
        QByteArray bytes(tileBytes, '\0');
        if (!textureTile->toBuffer(bytes.data()))
            return false;
        const QRect outer = tile->outerRect();
        const QRect part = outer.intersected(rect);
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) {
                uchar* p =
                    reinterpret_cast<uchar*>(bytes.data()) + ((y - outer.y()) * 512 + (x - outer.x())) * 4;
                p[0] = uchar(color.red() * color.alpha() / 255);
                p[1] = uchar(color.green() * color.alpha() / 255);
                p[2] = uchar(color.blue() * color.alpha() / 255);
                p[3] = uchar(color.alpha());
            }
        }
        if (!textureTile->setData(static_cast<const void*>(bytes.constData())))
            return false;
    }
    return true;
}

// The premultiplied RGBA bytes of a layer at a canvas point; empty when no tile is there.
QByteArray pixelAt(MTextureLayer* layer, const QPoint& point)
{
    MTile* tile = layer->tileAt(point);
    const QPoint local = tile ? point - tile->outerRect().topLeft() : QPoint();
    return readBack(tile).mid((local.y() * 512 + local.x()) * 4, 4);
}

QByteArray tileBytesOf(MTextureLayer* layer, const QPointF& point)
{
    return readBack(layer->tileAt(point));
}

} // namespace

class TestMPaintEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void renderComposesPaperAndLayers();
    void renderPaperKinds();
    void tileOperations();
    void pasteUndoRedoIsExact();
    void duplicateMergeAndEffects();
    void clipboardAndThumbnails();
    void fillsAndClears();
    void viewWithSelectionAndTiling();

private:
    QuillmereTest::GLContext m_gl;
};

void TestMPaintEngine::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestMPaintEngine::renderComposesPaperAndLayers()
{
    MCanvas canvas;
    QVERIFY(canvas.sharedData()->isValid());
    QVERIFY(canvas.paintEngine()->isInitialized());
    canvas.setPaintedRect(QRectF(-300, -200, 600, 400));
    canvas.appendLayer();
    canvas.appendLayer();
    QVERIFY(canvas.makeCurrent());
    // Bottom: half-transparent red over the left half, reaching into a
    // second tile column. Middle: opaque blue square, at layer opacity 0.5.
    // Top: hidden green everywhere.
    QVERIFY(fillRect(canvas.at(0), QRect(-300, -200, 300, 400), QColor(255, 0, 0, 128)));
    QVERIFY(fillRect(canvas.at(1), QRect(-100, -100, 200, 200), QColor(0, 0, 255)));
    canvas.at(1)->setOpacity(0.5);
    QVERIFY(fillRect(canvas.at(2), QRect(-300, -200, 600, 400), QColor(0, 255, 0)));
    canvas.at(2)->setVisible(false);

    const QImage image = canvas.render();
    QCOMPARE(image.size(), QSize(600, 400));
    const Rgba white{255, 255, 255, 255};
    const Rgba red{128, 0, 0, 128};
    const Rgba blue = scaled(Rgba{0, 0, 255, 255}, 0.5);
    // At canvas points, the image's corner being the page's.
    const std::pair<QPoint, Rgba> probes[] = {
        {QPoint(-250, 0), over(red, white)},    {QPoint(-50, 0), over(blue, over(red, white))},
        {QPoint(50, 50), over(blue, white)},    {QPoint(250, 150), white},
        {QPoint(-300, -200), over(red, white)}, {QPoint(299, 199), white},
    };
    for (const auto& probe : probes)
        QCOMPARE(offColour(image, probe.first - QPoint(-300, -200), probe.second), QString());

    // One layer alone, without paper, at a smaller size: scaled to fit.
    const QImage half = canvas.render(QStringLiteral("basic"), 300, 200, QPainterPath(), false, false, {1});
    QCOMPARE(half.size(), QSize(300, 200));
    QVERIFY(near(half.pixelColor(150, 100), blue));
    QCOMPARE(half.pixelColor(20, 20).alpha(), 0);

    // A clip path larger than the page: outside the page nothing is drawn.
    QPainterPath wide;
    wide.addRect(QRectF(-400, -200, 800, 400));
    const QImage clipped = canvas.render(QStringLiteral("basic"), 800, 400, wide, false, false, {0});
    QCOMPARE(clipped.pixelColor(50, 200).alpha(), 0);
    QVERIFY(near(clipped.pixelColor(150, 200), red));

    // An effect name nobody knows draws as "basic".
    const QImage unknown =
        canvas.render(QStringLiteral("no such effect"), 600, 400, QPainterPath(), false, false, {1});
    QVERIFY(near(unknown.pixelColor(300, 200), blue));
}

void TestMPaintEngine::renderPaperKinds()
{
    MCanvas canvas;
    canvas.setPaintedRect(QRectF(0, 0, 64, 64));
    canvas.setPaperColor(QColor(10, 200, 30));
    QVERIFY(near(canvas.render().pixelColor(5, 5), Rgba{10, 200, 30, 255}));

    canvas.setPaperType(MEnum::Transparent);
    MSettings::instance()->set_showEmptyPaper(false);
    QCOMPARE(canvas.render().pixelColor(5, 5).alpha(), 0);
    MSettings::instance()->set_showEmptyPaper(true);
    const QImage checker = canvas.render();
    QCOMPARE(checker.pixelColor(1, 1), QColor(255, 255, 255));
    QCOMPARE(checker.pixelColor(9, 1), QColor(204, 204, 204));

    // A paper image repeats at one texel per canvas pixel from the page's corner.
    QImage paper(4, 4, QImage::Format_ARGB32_Premultiplied);
    paper.fill(QColor(0, 0, 200));
    paper.setPixelColor(1, 1, QColor(200, 0, 0));
    canvas.setPaperType(MEnum::Paper);
    canvas.setPaperTile(paper);
    const QImage papered = canvas.render();
    QCOMPARE(offColour(papered, QPoint(1, 1), Rgba{200, 0, 0, 255}), QString());
    QCOMPARE(offColour(papered, QPoint(5, 5), Rgba{200, 0, 0, 255}), QString());
    QCOMPARE(offColour(papered, QPoint(2, 1), Rgba{0, 0, 200, 255}), QString());
}

void TestMPaintEngine::tileOperations()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    MTextureLayer* layer = canvas.at(0);
    QVERIFY(fillRect(layer, QRect(0, 0, 500, 500), QColor(0, 128, 255)));
    auto* tile = dynamic_cast<MTextureTile*>(layer->tileAt(QPointF(10, 10)));
    QVERIFY(tile);
    MPaintEngine* engine = canvas.paintEngine();
    MSharedData* shared = canvas.sharedData();

    // Clearing with no source and no selection leaves transparency.
    const auto clear = [&] {
        engine->blitTile(tile, nullptr, GL_ONE, GL_ZERO, shared->programList(), QStringLiteral("blit"), 1.0,
                         shared->vertexArray());
    };
    clear();
    QCOMPARE(tileBytesOf(layer, QPointF(10, 10)), QByteArray(tileBytes, '\0'));

    // With a selection only its inside is cleared.
    QVERIFY(fillRect(layer, QRect(0, 0, 500, 500), QColor(0, 128, 255)));
    QPainterPath selection;
    selection.addRect(QRectF(100, 100, 50, 50));
    canvas.setClipPath(selection);
    clear();
    QCOMPARE(pixelAt(layer, QPoint(120, 120)), QByteArray(4, '\0'));
    QCOMPARE(pixelAt(layer, QPoint(90, 120)), QByteArray::fromHex("0080FFFF"));

    // A fill honours the selection, and a half-transparent selection pixel
    // gets the whole colour.
    QImage soft(500, 500, QImage::Format_ARGB32_Premultiplied);
    soft.fill(Qt::transparent);
    auto* selectionTile = dynamic_cast<MTextureTile*>(canvas.selectionLayer()->tileAt(QPointF(10, 10)));
    QVERIFY(selectionTile);
    QByteArray mask(tileBytes, '\0');
    for (int x = 200; x < 210; ++x)
        mask[(206 * 512 + x) * 4 + 3] = char(40);
    QVERIFY(selectionTile->setData(static_cast<const void*>(mask.constData())));
    engine->fillTile(tile, selectionTile, QColor(255, 0, 0), shared->programList(), QStringLiteral("fill"),
                     true, shared->vertexArray());
    QCOMPARE(pixelAt(layer, QPoint(195, 200)), QByteArray::fromHex("FF0000FF"));
    QCOMPARE(pixelAt(layer, QPoint(195, 201)), QByteArray::fromHex("0080FFFF"));
    canvas.resetClipPath();
    engine->fillTile(tile, nullptr, QColor(0, 255, 0, 128), shared->programList(), QStringLiteral("fill"),
                     false, shared->vertexArray());
    QCOMPARE(pixelAt(layer, QPoint(400, 400)), QByteArray::fromHex("00800080"));

    // A layer index that names no layer leaves the output as it was.
    LogWatch log;
    QOpenGLTexture* work = engine->workTexture();
    engine->drawTileOnTexture(tile, 7, work, GL_ONE, GL_ZERO, shared->programList(), QStringLiteral("basic"),
                              1.0, 1.0, shared->vertexArray());
    QVERIFY(log.added().contains(
        QStringLiteral("MPaintEngine::drawTileOnTexture: System error: no current layer")));
    engine->blitTexture(nullptr, work->textureId(), GL_ONE, GL_ZERO, shared->programList(),
                        QStringLiteral("blit"), 1.0, shared->vertexArray());
    QVERIFY(log.added().contains(
        QStringLiteral("MPaintEngine::blitTexture: System error: try to blit on a null destination tile")));

    // A stroke merged through "stroke": over, then as eraser.
    MTextureLayer* stroke = canvas.strokeLayer();
    QVERIFY(fillRect(stroke, QRect(300, 300, 10, 10), QColor(255, 255, 255, 102)));
    stroke->setOpacity(0.5);
    canvas.mergeStrokeTile(tile, 0);
    const Rgba layerColour{0, 128, 0, 128};
    const Rgba strokeColour = scaled(Rgba{102, 102, 102, 102}, 0.5);
    const QByteArray merged = pixelAt(layer, QPoint(305, 305));
    const Rgba expected = over(strokeColour, layerColour);
    QVERIFY2(std::abs(quint8(merged[1]) - expected.g) <= tolerance &&
                 std::abs(quint8(merged[3]) - expected.a) <= tolerance,
             merged.toHex().constData());
    QCOMPARE(pixelAt(layer, QPoint(320, 320)), QByteArray::fromHex("00800080"));
    stroke->setEraserMode(true);
    canvas.mergeStrokeTile(tile, 0);
    const QByteArray erased = pixelAt(layer, QPoint(305, 305));
    const double keep = 1.0 - 102.0 / 255.0 * 0.5;
    QVERIFY2(std::abs(quint8(erased[3]) - quint8(merged[3]) * keep) <= tolerance, erased.toHex().constData());
    QCOMPARE(pixelAt(layer, QPoint(320, 320)), QByteArray::fromHex("00800080"));
    stroke->clear();
}

void TestMPaintEngine::pasteUndoRedoIsExact()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    QVERIFY(fillRect(canvas.at(0), QRect(-600, -600, 1200, 1200), QColor(20, 40, 60)));
    QImage image(300, 200, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor(x % 256, y, (x * y) % 256, 255));
    }
    // Centred on a tile corner, so that four tiles take part.
    const QPointF centre(500, 500);
    const auto tiles = [&canvas] {
        QList<QByteArray> all;
        for (const QPointF& place :
             {QPointF(400, 400), QPointF(600, 400), QPointF(400, 600), QPointF(600, 600)})
            all << tileBytesOf(canvas.at(0), place);
        return all;
    };
    const QList<QByteArray> before = tiles();
    QVERIFY(canvas.pasteImage(centre, image, false));
    QCOMPARE(canvas.undoStack()->count(), 1);
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Paste an image"));
    QCOMPARE(canvas.undoStack()->command(0)->childCount(), 4);
    // The image's top-left pixel lands at (350, 400).
    QCOMPARE(pixelAt(canvas.at(0), QPoint(350, 400)), QByteArray::fromHex("000000FF"));
    QCOMPARE(quint8(pixelAt(canvas.at(0), QPoint(360, 410))[0]), quint8(10));
    QCOMPARE(quint8(pixelAt(canvas.at(0), QPoint(360, 410))[1]), quint8(10));
    QCOMPARE(quint8(pixelAt(canvas.at(0), QPoint(649, 599))[2]), quint8(image.pixelColor(299, 199).blue()));
    QCOMPARE(pixelAt(canvas.at(0), QPoint(349, 400)), QByteArray::fromHex("14283CFF"));
    const QList<QByteArray> after = tiles();
    QVERIFY(after != before);
    canvas.undo();
    QVERIFY(tiles() == before);
    canvas.redo();
    QVERIFY(tiles() == after);
    // The stroke layer is left empty, and each command holds two files.
    QVERIFY(canvas.strokeLayer()->isEmpty());
    QCOMPARE(QDir(MUtility::tempDir()).entryList({QStringLiteral("*.data")}).size(), 8);
    canvas.undoStack()->clear();
    QCOMPARE(QDir(MUtility::tempDir()).entryList({QStringLiteral("*.data")}).size(), 0);

    // Pasting on a locked or hidden layer, or a null image, does nothing.
    canvas.at(0)->setLocked(true);
    QVERIFY(!canvas.pasteImage(centre, image, false));
    canvas.at(0)->setLocked(false);
    QVERIFY(!canvas.pasteImage(centre, QImage(), false));
    QCOMPARE(canvas.undoStack()->count(), 0);

    // An image opened as a document lies centred on a page of its size.
    const QString path = QDir::temp().filePath(QStringLiteral("opened.png"));
    QVERIFY(image.save(path));
    QVERIFY(canvas.loadImage(path));
    QCOMPARE(canvas.count(), 1);
    QCOMPARE(canvas.paintedRect().size(), QSizeF(300, 200));
    QVERIFY(canvas.isNew());
    QVERIFY(!canvas.undoStack()->canUndo());
    const QImage rendered = canvas.render(0);
    QCOMPARE(rendered.pixelColor(10, 20), image.pixelColor(10, 20));
    QCOMPARE(rendered.pixelColor(299, 199), image.pixelColor(299, 199));
    QVERIFY(!canvas.loadImage(QDir::temp().filePath(QStringLiteral("none.png"))));
    QCOMPARE(canvas.lastError(), 1);
}

void TestMPaintEngine::duplicateMergeAndEffects()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    QVERIFY(fillRect(canvas.at(0), QRect(0, 0, 100, 100), QColor(200, 0, 0)));
    canvas.at(0)->setName(QStringLiteral("source"));
    canvas.at(0)->setOpacity(0.3);
    canvas.duplicateLayer(0);
    QCOMPARE(canvas.count(), 2);
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Duplicate layer"));
    QCOMPARE(canvas.at(1)->name(), QStringLiteral("Layer 2"));
    QCOMPARE(canvas.at(1)->opacity(), 1.0);
    QCOMPARE(tileBytesOf(canvas.at(1), QPointF(50, 50)), tileBytesOf(canvas.at(0), QPointF(50, 50)));

    // Merging lays the upper layer over the lower at the upper's opacity.
    QVERIFY(fillRect(canvas.at(1), QRect(0, 0, 100, 100), QColor(0, 0, 255)));
    canvas.at(1)->setOpacity(0.5);
    canvas.mergeLayerWithLower(1);
    QCOMPARE(canvas.count(), 1);
    const QByteArray mergedPixel = pixelAt(canvas.at(0), QPoint(50, 50));
    const Rgba expected = over(Rgba{0, 0, 127.5, 127.5}, Rgba{200, 0, 0, 255});
    QVERIFY2(std::abs(quint8(mergedPixel[0]) - expected.r) <= tolerance &&
                 std::abs(quint8(mergedPixel[2]) - expected.b) <= tolerance,
             mergedPixel.toHex().constData());
    canvas.undo();
    QCOMPARE(canvas.count(), 2);
    QCOMPARE(pixelAt(canvas.at(0), QPoint(50, 50)), QByteArray::fromHex("C80000FF"));
    QCOMPARE(pixelAt(canvas.at(1), QPoint(50, 50)), QByteArray::fromHex("0000FFFF"));
    // There is no layer under row 0.
    const int steps = canvas.undoStack()->count();
    canvas.mergeLayerWithLower(0);
    canvas.mergeLayerWithUpper(1);
    QCOMPARE(canvas.undoStack()->count(), steps);

    // An effect runs live in the view with its values, and applying it makes
    // it part of the pixels as one undo step.
    auto effect = std::make_unique<MShader>();
    effect->setSource(QStringLiteral("@params\nfloat amount = 0.5;\n@main\n"
                                     "vec4 c = texture(f_currentLayerTexture, v_texCoords0);\n"
                                     "f_color = vec4(c.rgb * amount, c.a) * f_opacity;"));
    const QString id = MShaderList::instance()->addShader(std::move(effect))->id();
    MTextureLayer* layer = canvas.at(0);
    canvas.at(1)->setVisible(false);
    layer->setOpacity(1.0);
    layer->set_shaderId(id);
    QVERIFY(layer->isShaderActive());
    canvas.setPaintedRect(QRectF(0, 0, 100, 100));
    QCOMPARE(canvas.render(QStringLiteral("basic"), 100, 100, QPainterPath(), false, true).pixelColor(50, 50),
             QColor(100, 0, 0));
    layer->shaderValues()->setValue("amount", 0.25);
    QCOMPARE(canvas.render(QStringLiteral("basic"), 100, 100, QPainterPath(), false, true).pixelColor(50, 50),
             QColor(50, 0, 0));
    canvas.setCurrentRow(0);
    canvas.applyEffect();
    QVERIFY(!layer->isShaderActive());
    QCOMPARE(pixelAt(layer, QPoint(50, 50)), QByteArray::fromHex("320000FF"));
    QVERIFY(canvas.strokeLayer()->isEmpty());
    canvas.undo();
    QCOMPARE(pixelAt(canvas.at(0), QPoint(50, 50)), QByteArray::fromHex("C80000FF"));
}

void TestMPaintEngine::clipboardAndThumbnails()
{
    MCanvas canvas;
    canvas.setPaintedRect(QRectF(0, 0, 200, 100));
    QVERIFY(canvas.makeCurrent());
    QVERIFY(fillRect(canvas.at(0), QRect(0, 0, 100, 100), QColor(0, 200, 0)));
    canvas.copyToClipboard(false);
    const QImage copied = QGuiApplication::clipboard()->image();
    QCOMPARE(copied.size(), QSize(200, 100));
    QCOMPARE(copied.pixelColor(50, 50), QColor(0, 200, 0));
    QCOMPARE(copied.pixelColor(150, 50).alpha(), 0);

    QPainterPath path;
    path.addRect(QRectF(80, 0, 40, 100));
    canvas.setClipPath(path);
    canvas.copyToClipboard(true);
    const QImage part = QGuiApplication::clipboard()->image();
    QCOMPARE(part.size(), QSize(40, 100));
    QCOMPARE(part.pixelColor(10, 50), QColor(0, 200, 0));
    QCOMPARE(part.pixelColor(30, 50).alpha(), 0);

    const QString guid = canvas.at(0)->imageGuid();
    canvas.updateLayerThumbnail();
    const QImage thumbnail = canvas.at(0)->thumbnail();
    QCOMPARE(thumbnail.size(), QSize(70, 35));
    QVERIFY(canvas.at(0)->imageGuid() != guid);
    QCOMPARE(thumbnail.pixelColor(10, 17), QColor(0, 200, 0));
}

void TestMPaintEngine::fillsAndClears()
{
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    MTextureLayer* layer = canvas.at(0);
    // An empty layer stays empty, and no step is made.
    canvas.fill(Qt::red);
    QVERIFY(layer->isEmpty());
    QCOMPARE(canvas.undoStack()->count(), 0);

    QVERIFY(fillRect(layer, QRect(-600, -100, 700, 200), QColor(0, 0, 255)));
    QCOMPARE(layer->tileCount(), 6);
    const QByteArray before = tileBytesOf(layer, QPointF(-550, -50));
    canvas.fill(QColor(255, 0, 0));
    QCOMPARE(canvas.undoStack()->count(), 1);
    QCOMPARE(canvas.undoStack()->text(0), QStringLiteral("Clear"));
    QCOMPARE(canvas.undoStack()->command(0)->childCount(), 6);
    QCOMPARE(canvas.undoStack()->command(0)->child(0)->text(), QStringLiteral("Fill tile with color"));
    // Every pixel of every existing tile, margins included, and nothing else.
    QCOMPARE(tileBytesOf(layer, QPointF(-550, -50)),
             QByteArray(512 * 512, char(0)).replace(QByteArray(1, '\0'), QByteArray::fromHex("FF0000FF")));
    QVERIFY(!layer->tileAt(QPointF(900, 900)));
    const QByteArray filled = tileBytesOf(layer, QPointF(-550, -50));
    canvas.undo();
    QCOMPARE(tileBytesOf(layer, QPointF(-550, -50)), before);
    canvas.redo();
    QCOMPARE(tileBytesOf(layer, QPointF(-550, -50)), filled);

    // With a selection only its inside changes.
    QPainterPath square;
    square.addRect(QRectF(10, 10, 20, 20));
    canvas.setClipPath(square);
    canvas.erase();
    QCOMPARE(pixelAt(layer, QPoint(15, 15)), QByteArray(4, '\0'));
    QCOMPARE(pixelAt(layer, QPoint(5, 15)), QByteArray::fromHex("FF0000FF"));
    canvas.resetClipPath();

    // A smaller page with clipping erases what lies outside it.
    canvas.setPaperSize(QSize(100, 100), true);
    QCOMPARE(canvas.paintedRect(), QRectF(-50, -50, 100, 100));
    QCOMPARE(pixelAt(layer, QPoint(-40, 0)), QByteArray::fromHex("FF0000FF"));
    QCOMPARE(pixelAt(layer, QPoint(-60, 0)), QByteArray(4, '\0'));
    QCOMPARE(pixelAt(layer, QPoint(-55, -55)), QByteArray(4, '\0'));
    QVERIFY(!canvas.hasSelection());
    canvas.undo();
    QCOMPARE(canvas.paintedRect(), QRectF(-500, -500, 1000, 1000));
    QCOMPARE(pixelAt(layer, QPoint(-60, 0)), QByteArray::fromHex("FF0000FF"));
}

void TestMPaintEngine::viewWithSelectionAndTiling()
{
    MCanvas canvas;
    canvas.setPaintedRect(QRectF(0, 0, 50, 50));
    QVERIFY(canvas.makeCurrent());
    QVERIFY(fillRect(canvas.at(0), QRect(0, 0, 50, 50), QColor(255, 0, 0)));
    // A painted mask without an outline path, as a fill selection leaves it.
    QByteArray mask(tileBytes, '\0');
    for (int y = 10; y < 30; ++y) {
        for (int x = 10; x < 30; ++x)
            mask[((y + 6) * 512 + x + 6) * 4 + 3] = char(255);
    }
    auto* maskTile = dynamic_cast<MTextureTile*>(canvas.selectionLayer()->addTile(QPointF(0, 0)));
    QVERIFY(maskTile && maskTile->isCreated());
    QVERIFY(maskTile->setData(static_cast<const void*>(mask.constData())));

    QOpenGLFramebufferObjectFormat format;
    format.setInternalTextureFormat(GL_RGBA8);
    QOpenGLFramebufferObject target(150, 150, format);
    QVERIFY(target.bind());
    canvas.context()->functions()->glClearColor(0, 0, 0, 0);
    canvas.context()->functions()->glClear(GL_COLOR_BUFFER_BIT);
    MTransform transform;
    transform.setTranslation(QPointF(50, 50));
    MPaintParams params;
    params.context = canvas.context();
    params.canvas = &canvas;
    params.programList = canvas.sharedData()->programList();
    params.vertexArray = canvas.sharedData()->vertexArray();
    params.viewRect = QRectF(0, 0, 150, 150);
    params.useDevicePixelRatio = false;
    params.transform = &transform;
    params.clipToRect = false;
    canvas.paintEngine()->drawView(&params, true, true);
    target.release();
    const QImage image = target.toImage();

    // The page and its four neighbours, not the diagonal ones.
    const Rgba red{255, 0, 0, 255};
    for (const QPoint& point :
         {QPoint(75, 75), QPoint(25, 75), QPoint(125, 75), QPoint(75, 25), QPoint(75, 125)})
        QCOMPARE(offColour(image, point, red), QString());
    QCOMPARE(image.pixelColor(25, 25).alpha(), 0);
    QCOMPARE(image.pixelColor(125, 125).alpha(), 0);
    // The mask's outline: premultiplied green at 0.7 over the layer, on the
    // edge only, in the page and in its copies.
    const Rgba edge = over(Rgba{0, 178.5, 0, 178.5}, Rgba{255, 0, 0, 255});
    QCOMPARE(offColour(image, QPoint(60, 70), edge), QString());
    QCOMPARE(offColour(image, QPoint(110, 70), edge), QString());
    QCOMPARE(offColour(image, QPoint(70, 70), red), QString());
    QCOMPARE(offColour(image, QPoint(55, 55), red), QString());
}

QUILLMERE_TEST_MAIN(TestMPaintEngine)
#include "tst_mpaintengine.moc"
