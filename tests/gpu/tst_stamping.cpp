// Stamps laid through the stamp programs into a stroke tile and read back: the
// shape, ratio, angle, hardness, antialiasing, density and flow of a stamp as
// pixels, and every input of the programs that the host hands over (border
// colour, wet paint, brush texture, the layer under, the selection, and a
// brush engine's own images, parameters and tile values).

#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "brush/mbrush.h"
#include "brush/mstamppainter.h"
#include "document/mcanvas.h"
#include "document/mlayer.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mvalues.h"
#include "gpu/mshareddata.h"

#include <QLineF>
#include <QOpenGLFunctions>
#include <QOpenGLTexture>
#include <QPainterPath>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr int tileSize = 512;
// The stroke tile's texture covers -6..506 on both axes.
constexpr int origin = -6;
const QPointF centre(250, 250);

struct Px
{
    int r = 0, g = 0, b = 0, a = 0;
};

class Tile
{
public:
    explicit Tile(QByteArray bytes) : m_bytes(std::move(bytes)) {}
    bool isEmpty() const { return m_bytes.isEmpty(); }
    // The pixel whose centre is at canvas (x + 0.5, y + 0.5).
    Px at(int x, int y) const
    {
        const int i = ((y - origin) * tileSize + (x - origin)) * 4;
        const auto* p = reinterpret_cast<const uchar*>(m_bytes.constData()) + i;
        return {p[0], p[1], p[2], p[3]};
    }
    // Calls f for every pixel with its centre in canvas coordinates.
    void forEach(const std::function<void(const QPointF&, const Px&)>& f) const
    {
        for (int y = origin; y < origin + tileSize; ++y)
            for (int x = origin; x < origin + tileSize; ++x)
                f(QPointF(x + 0.5, y + 0.5), at(x, y));
    }
    QRect paintedBounds() const
    {
        QRect bounds;
        for (int y = origin; y < origin + tileSize; ++y)
            for (int x = origin; x < origin + tileSize; ++x)
                if (at(x, y).a > 0)
                    bounds |= QRect(x, y, 1, 1);
        return bounds;
    }

private:
    QByteArray m_bytes;
};

// The first failed pixel check of a pass over a tile, described.
struct Mismatch
{
    QString first;
    void check(bool ok, const QString& what)
    {
        if (!ok && first.isEmpty())
            first = what;
    }
};

QString text(const QPointF& p, const Px& got, double want)
{
    return QStringLiteral("at %1,%2: alpha %3, expected %4").arg(p.x()).arg(p.y()).arg(got.a).arg(want);
}

// The alpha of the shape at stamp coordinates uv, as the programs compute it.
double shapeAlpha(const QPointF& uv, int shape, double hardness)
{
    const double p = shape == 0 ? 2.0 : 7.0;
    const double d = (std::pow(std::abs(uv.x() - 0.5), p) + std::pow(std::abs(uv.y() - 0.5), p)) /
                     (2.0 * std::pow(0.5, p));
    const double inner = hardness / 2.0;
    if (d < inner)
        return hardness;
    if (d < 0.5) {
        const double t = std::clamp((d - inner) / (0.5 - inner), 0.0, 1.0);
        return hardness * (1.0 - t * t * (3.0 - 2.0 * t));
    }
    return 0.0;
}

QPointF stampCoordinates(const QPointF& p, double radius)
{
    return QPointF(0.5, 0.5) + (p - centre) / (2.0 * radius);
}

const QString hardHeaderEngine = QStringLiteral("{0B7E4C21-3A9D-4F60-8E15-C2D7A94B3E08}");
const QString readerEngine = QStringLiteral("{7C2A9E51-1F3B-4D84-A6E0-5B9D3C7F2E16}");

const char* standardBody = "@main\n"
                           "vec2 uv = v_texCoords0;\n"
                           "float alpha = getStandardClipping(getStandardAlpha(uv));\n"
                           "if (alpha < 0.004)\n"
                           "    discard;\n"
                           "f_color = getStandardComposition(getStandardColor(uv, alpha), alpha);\n";

void addEngine(const QString& id, const QString& source)
{
    auto engine = std::make_unique<MShader>();
    engine->setId(id);
    engine->setType(MShader::BrushShader);
    engine->setSource(source);
    MShaderList::instance()->addShader(std::move(engine));
}

} // namespace

class TestStamping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void hardRoundStampCoversItsDisc();
    void ratioAndAngleShapeTheStamp();
    void hardnessSoftensTheEdge();
    void antialiasingSmoothsTheEdge();
    void densityFlowAndRectangleShape();
    void borderColourAndWetPaint();
    void brushTextureGivesAlphaAndColour();
    void layerUnderAndSelectionClip();
    void engineReadsItsImagesParametersAndTile();

private:
    // A hard unsmoothed white stamp of radius 40 at the centre, adjusted, drawn
    // into an emptied stroke tile.
    Tile draw(const std::function<void(MBrush::SettingValues&)>& adjust = nullptr, double radius = 40,
              double ratio = 1.0, double angle = 0.0, const QColor& colour = Qt::white,
              const QString& engine = QString());

    QuillmereTest::GLContext m_gl;
    std::unique_ptr<MCanvas> m_canvas;
    MTextureTile* m_strokeTile = nullptr;
};

void TestStamping::initTestCase()
{
    // The driver probe runs first, as at start-up: drawing reads its limits.
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    addEngine(hardHeaderEngine, QString::fromLatin1(standardBody));
}

void TestStamping::init()
{
    m_canvas = std::make_unique<MCanvas>();
    QVERIFY(m_canvas->makeCurrent());
    m_canvas->sharedData()->initializeGL();
    QVERIFY(m_canvas->sharedData()->isValid());
    m_canvas->sharedData()->setCurrentLayerIndex(0);
    m_strokeTile = dynamic_cast<MTextureTile*>(m_canvas->strokeLayer()->addTile(centre));
    QVERIFY(m_strokeTile && m_strokeTile->isCreated());
    QCOMPARE(m_strokeTile->outerRect().topLeft(), QPoint(origin, origin));
}

void TestStamping::cleanup()
{
    m_canvas.reset();
}

Tile TestStamping::draw(const std::function<void(MBrush::SettingValues&)>& adjust, double radius,
                        double ratio, double angle, const QColor& colour, const QString& engine)
{
    MSharedData* data = m_canvas->sharedData();
    if (!m_canvas->makeCurrent())
        return Tile(QByteArray());
    const QByteArray empty(tileSize * tileSize * 4, '\0');
    if (!m_strokeTile->setData(static_cast<const void*>(empty.constData())))
        return Tile(QByteArray());
    if (data->brush()->shaderId() != engine) {
        MBrush brush;
        brush.set_shaderId(engine);
        data->setBrush(brush);
    }
    MBrush::SettingValues values = MBrush().baseValues();
    values[MEnum::bsRadius] = radius;
    values[MEnum::bsHardness] = 1.0;
    values[MEnum::bsAntialiasing] = MEnum::NoAntialiasing;
    if (adjust)
        adjust(values);
    QVector<MVertex> stamps;
    MStampPainter::addStamp(stamps, centre, radius, ratio, angle, colour);
    MStampPainter painter(data);
    if (!painter.drawStamps({m_strokeTile}, stamps, values))
        return Tile(QByteArray());
    QByteArray bytes(tileSize * tileSize * 4, '\0');
    if (!m_strokeTile->toBuffer(bytes.data()))
        return Tile(QByteArray());
    return Tile(bytes);
}

void TestStamping::hardRoundStampCoversItsDisc()
{
    // The bounds are a square that holds the stamp at any angle.
    QVector<MVertex> stamps;
    QCOMPARE(MStampPainter::addStamp(stamps, QPointF(10, 20), 5, 1.0, 0.0, Qt::red),
             QRectF(10 - 7.1, 20 - 7.1, 14.2, 14.2));
    QCOMPARE(stamps.size(), 6);

    const double radius = 40;
    const Tile tile = draw();
    QVERIFY(!tile.isEmpty());
    int painted = 0;
    Mismatch mismatch;
    tile.forEach([&](const QPointF& p, const Px& px) {
        const double distance = QLineF(p, centre).length();
        if (px.a > 0)
            ++painted;
        if (distance < radius - 1)
            mismatch.check(px.r == 255 && px.g == 255 && px.b == 255 && px.a == 255, text(p, px, 255));
        else if (distance > radius + 1)
            mismatch.check(px.a == 0 && px.r == 0, text(p, px, 0));
    });
    QVERIFY2(mismatch.first.isEmpty(), qPrintable(mismatch.first));
    QVERIFY(std::abs(painted - M_PI * radius * radius) < 0.01 * M_PI * radius * radius);
}

void TestStamping::ratioAndAngleShapeTheStamp()
{
    const double radius = 40;
    // Twice as wide as high, and turned a quarter, twice as high as wide.
    QRect bounds = draw(nullptr, radius, 0.5).paintedBounds();
    QVERIFY2(std::abs(bounds.width() - 80) <= 2 && std::abs(bounds.height() - 40) <= 2,
             qPrintable(QStringLiteral("%1 x %2").arg(bounds.width()).arg(bounds.height())));
    QVERIFY(std::abs(bounds.center().x() - 250) <= 1 && std::abs(bounds.center().y() - 250) <= 1);
    bounds = draw(nullptr, radius, 0.5, 90).paintedBounds();
    QVERIFY2(std::abs(bounds.width() - 40) <= 2 && std::abs(bounds.height() - 80) <= 2,
             qPrintable(QStringLiteral("%1 x %2").arg(bounds.width()).arg(bounds.height())));

    // At 30 degrees every pixel clearly in or out of the turned ellipse is so;
    // the ellipse turned the other way would fail many of them.
    auto inside = [&](const QPointF& p, double degrees) {
        const double t = degrees * M_PI / 180.0;
        const QPointF v = p - centre;
        const double x = v.x() * std::cos(t) - v.y() * std::sin(t);
        const double y = (v.x() * std::sin(t) + v.y() * std::cos(t)) / 0.5;
        return std::sqrt(x * x + y * y) / radius;
    };
    const Tile turned = draw(nullptr, radius, 0.5, 30);
    QVERIFY(!turned.isEmpty());
    int mirroredWrong = 0;
    Mismatch mismatch;
    turned.forEach([&](const QPointF& p, const Px& px) {
        const double q = inside(p, 30);
        if (q < 0.9)
            mismatch.check(px.a == 255, text(p, px, 255));
        else if (q > 1.1)
            mismatch.check(px.a == 0, text(p, px, 0));
        const double mirrored = inside(p, -30);
        if ((q < 0.9 && mirrored > 1.1) || (q > 1.1 && mirrored < 0.9))
            ++mirroredWrong;
    });
    QVERIFY2(mismatch.first.isEmpty(), qPrintable(mismatch.first));
    QVERIFY(mirroredWrong > 500);
}

void TestStamping::hardnessSoftensTheEdge()
{
    const double radius = 40;
    auto soft = [](MBrush::SettingValues& v) { v[MEnum::bsHardness] = 0.5; };
    // Unsmoothed, the default engine follows the hardness: its peak is the
    // hardness itself and the edge falls off smoothly.
    const Tile tile = draw(soft);
    Mismatch mismatch;
    tile.forEach([&](const QPointF& p, const Px& px) {
        const double want = shapeAlpha(stampCoordinates(p, radius), 0, 0.5) * 255;
        mismatch.check(std::abs(px.a - want) <= 1.0, text(p, px, want));
    });
    QVERIFY2(mismatch.first.isEmpty(), qPrintable(mismatch.first));
    QVERIFY(std::abs(tile.at(250, 250).a - 127.5) <= 1);

    // A brush engine's unsmoothed shape is fully hard whatever the hardness;
    // supersampled, it honours it like the default engine.
    const Tile engine = draw(soft, radius, 1.0, 0.0, Qt::white, hardHeaderEngine);
    QVERIFY(!engine.isEmpty());
    QCOMPARE(engine.at(250, 250).a, 255);
    QCOMPARE(engine.at(250 + 35, 250).a, 255);
    QCOMPARE(engine.at(250 + 41, 250).a, 0);
    auto softSmooth = [](MBrush::SettingValues& v) {
        v[MEnum::bsHardness] = 0.5;
        v[MEnum::bsAntialiasing] = MEnum::Antialiasing;
    };
    const Tile engineSmooth = draw(softSmooth, radius, 1.0, 0.0, Qt::white, hardHeaderEngine);
    const Tile stampingSmooth = draw(softSmooth);
    QVERIFY(std::abs(engineSmooth.at(250, 250).a - 127.5) <= 1);
    for (int x = 250; x < 300; x += 3)
        QVERIFY(std::abs(engineSmooth.at(x, 250).a - stampingSmooth.at(x, 250).a) <= 1);
}

void TestStamping::antialiasingSmoothsTheEdge()
{
    const double radius = 40;
    auto smooth = [](MBrush::SettingValues& v) { v[MEnum::bsAntialiasing] = MEnum::Antialiasing; };
    const Tile tile = draw(smooth);
    double sum = 0;
    int partial = 0;
    Mismatch mismatch;
    tile.forEach([&](const QPointF& p, const Px& px) {
        const double distance = QLineF(p, centre).length();
        sum += px.a;
        if (px.a > 0 && px.a < 255)
            ++partial;
        if (distance < radius - 1)
            mismatch.check(px.a == 255, text(p, px, 255));
        else if (distance > radius + 1)
            mismatch.check(px.a == 0, text(p, px, 0));
        else if (std::abs(distance - radius) < 0.2)
            mismatch.check(px.a > 60 && px.a < 195, text(p, px, 127));
    });
    QVERIFY2(mismatch.first.isEmpty(), qPrintable(mismatch.first));
    // Coverage adds up to the disc's area, and the rim is in between.
    QVERIFY(std::abs(sum / 255 - M_PI * radius * radius) < 0.003 * M_PI * radius * radius);
    QVERIFY(partial > 2 * M_PI * radius * 0.8);

    // Smoothing is for textures: a shape gets one sample, as unsmoothed.
    const Tile unsmoothed = draw();
    const Tile smoothing =
        draw([](MBrush::SettingValues& v) { v[MEnum::bsAntialiasing] = MEnum::Smoothing; });
    int differ = 0;
    smoothing.forEach([&](const QPointF& p, const Px& px) {
        if (px.a != unsmoothed.at(int(p.x()), int(p.y())).a)
            ++differ;
    });
    QCOMPARE(differ, 0);
}

void TestStamping::densityFlowAndRectangleShape()
{
    const Tile none = draw([](MBrush::SettingValues& v) { v[MEnum::bsDensity] = 0.0; });
    QVERIFY(!none.isEmpty());
    // Zero density is below the pattern nearly everywhere: only where the
    // pattern is exactly 0, which the float precision of its large sine
    // product makes about one pixel in 256, does a pixel stay.
    int left = 0;
    none.forEach([&](const QPointF&, const Px& px) { left += px.a > 0 ? 1 : 0; });
    QVERIFY2(left < 0.01 * M_PI * 40 * 40, qPrintable(QString::number(left)));

    // Half density leaves about half of the pixels out, in a pattern of stamp
    // coordinates only: the same for every stamp.
    const Tile half = draw([](MBrush::SettingValues& v) { v[MEnum::bsDensity] = 0.5; });
    const Tile again = draw([](MBrush::SettingValues& v) { v[MEnum::bsDensity] = 0.5; });
    int inside = 0;
    int kept = 0;
    Mismatch mismatch;
    half.forEach([&](const QPointF& p, const Px& px) {
        if (QLineF(p, centre).length() < 39) {
            ++inside;
            if (px.a == 255)
                ++kept;
            else
                mismatch.check(px.a == 0, text(p, px, 0));
        }
        mismatch.check(px.a == again.at(int(std::floor(p.x())), int(std::floor(p.y()))).a,
                       text(p, px, again.at(int(std::floor(p.x())), int(std::floor(p.y()))).a));
    });
    QVERIFY2(mismatch.first.isEmpty(), qPrintable(mismatch.first));
    QVERIFY2(kept > inside * 0.35 && kept < inside * 0.65,
             qPrintable(QString::number(double(kept) / inside)));

    const Tile flowing =
        draw([](MBrush::SettingValues& v) { v[MEnum::bsFlow] = 0.5; }, 40, 1.0, 0.0, QColor(200, 100, 50));
    const Px c = flowing.at(250, 250);
    QVERIFY(std::abs(c.a - 127.5) <= 1 && std::abs(c.r - 100) <= 1 && std::abs(c.g - 50) <= 1 &&
            std::abs(c.b - 25) <= 1);

    // The rectangle shape reaches into the corners that the ellipse leaves.
    auto square = [](MBrush::SettingValues& v) { v[MEnum::bsShape] = MEnum::RectangleShape; };
    const Tile rectangle = draw(square);
    const Tile ellipse = draw();
    QCOMPARE(rectangle.at(250 + 35, 250 + 35).a, 255);
    QCOMPARE(ellipse.at(250 + 35, 250 + 35).a, 0);
    // A brush engine's shape comes through the header's shape argument.
    QCOMPARE(draw(square, 40, 1.0, 0.0, Qt::white, hardHeaderEngine).at(250 + 35, 250 + 35).a, 255);
    mismatch = Mismatch();
    rectangle.forEach([&](const QPointF& p, const Px& px) {
        const QPointF uv = stampCoordinates(p, 40);
        const double d = (std::pow(std::abs(uv.x() - 0.5), 7) + std::pow(std::abs(uv.y() - 0.5), 7)) /
                         (2 * std::pow(0.5, 7));
        // Away from the edge, where float and double may round differently.
        if (std::abs(d - 0.5) > 0.02)
            mismatch.check(px.a == (d < 0.5 ? 255 : 0), text(p, px, d < 0.5 ? 255 : 0));
    });
    QVERIFY2(mismatch.first.isEmpty(), qPrintable(mismatch.first));
}

void TestStamping::borderColourAndWetPaint()
{
    const double radius = 40;
    // A red border around a blue stamp, blended from 0.3 to 0.5 of the radius
    // in stamp coordinates.
    const QColor red = Qt::red;
    auto bordered = [&](MBrush::SettingValues& v) {
        v[MEnum::bsUseBorderColor] = 1;
        v[MEnum::bsBorderColorHue] = red.hsvHueF();
        v[MEnum::bsBorderColorSaturation] = red.hsvSaturationF();
        v[MEnum::bsBorderColorValue] = red.valueF();
    };
    const Tile border = draw(bordered, radius, 1.0, 0.0, Qt::blue);
    Mismatch mismatch;
    border.forEach([&](const QPointF& p, const Px& px) {
        const double l = QLineF(stampCoordinates(p, radius), QPointF(0.5, 0.5)).length();
        if (l > 0.49)
            return;
        const double x = std::clamp((l - 0.3) / 0.2, 0.0, 1.0);
        const double t = l < 0.3 ? 0.0 : x * x * (3 - 2 * x);
        mismatch.check(
            std::abs(px.r - 255 * t) <= 1 && std::abs(px.b - 255 * (1 - t)) <= 1 && px.a == 255,
            QStringLiteral("at %1,%2: %3 %4 %5").arg(p.x()).arg(p.y()).arg(px.r).arg(px.g).arg(px.b));
    });
    QVERIFY2(mismatch.first.isEmpty(), qPrintable(mismatch.first));

    // A wet brush lays the picked paint under its own colour by the flow rate.
    MSharedData* data = m_canvas->sharedData();
    QOpenGLTexture* sample = data->colorTexture(data->colorTextureSize());
    QVERIFY(sample);
    const int size = sample->width();
    QVector<quint32> green(size * size, qToLittleEndian(0xFF00FF00u));
    sample->bind();
    QOpenGLContext::currentContext()->functions()->glTexSubImage2D(
        GL_TEXTURE_2D, 0, 0, 0, size, size, GL_RGBA, GL_UNSIGNED_BYTE, green.constData());
    sample->release();
    auto wet = [](MBrush::SettingValues& v) {
        v[MEnum::bsColorAbsorbtionRate] = 0.5;
        v[MEnum::bsColorFlowingRate] = 0.25;
    };
    Px c = draw(wet, radius, 1.0, 0.0, Qt::blue).at(250, 250);
    QVERIFY2(c.r == 0 && std::abs(c.g - 191.25) <= 1 && std::abs(c.b - 63.75) <= 1 && c.a == 255,
             qPrintable(QStringLiteral("%1 %2 %3 %4").arg(c.r).arg(c.g).arg(c.b).arg(c.a)));
    // Without absorption the sample is not read.
    c = draw([](MBrush::SettingValues& v) { v[MEnum::bsColorFlowingRate] = 0.25; }, radius, 1.0, 0.0,
             Qt::blue)
            .at(250, 250);
    QVERIFY(c.g == 0 && c.b == 255);
}

void TestStamping::brushTextureGivesAlphaAndColour()
{
    const double radius = 40;
    MSharedData* data = m_canvas->sharedData();
    // Opaque red on the left half, nothing on the right.
    QImage image(64, 64, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 32; ++x)
            image.setPixelColor(x, y, Qt::red);
    QVERIFY(data->loadBrushTexture(image));
    const Tile plain = draw(nullptr, radius, 1.0, 0.0, Qt::blue);
    // Square stamps: a texture fills the quad, whatever the shape.
    QCOMPARE(plain.at(250 - 38, 250 - 38).a, 255);
    QCOMPARE(plain.at(250 - 10, 250 + 30).a, 255);
    QCOMPARE(plain.at(250 + 10, 250).a, 0);
    const Px blue = plain.at(250 - 20, 250);
    QVERIFY(blue.r == 0 && blue.b == 255);
    const Tile kept = draw([](MBrush::SettingValues& v) { v[MEnum::bsPreserveTextureColor] = 1; }, radius,
                           1.0, 0.0, Qt::blue);
    const Px purple = kept.at(250 - 20, 250);
    QVERIFY2(std::abs(purple.r - 127.5) <= 1 && purple.g == 0 && std::abs(purple.b - 127.5) <= 1,
             qPrintable(QStringLiteral("%1 %2 %3").arg(purple.r).arg(purple.g).arg(purple.b)));

    // A uniform alpha of 0.6: supersampled and single samples keep it, the
    // distance-field smoothing sharpens it by the radius.
    QImage grey(64, 64, QImage::Format_RGBA8888_Premultiplied);
    grey.fill(QColor(0, 0, 0, 153));
    QVERIFY(data->loadBrushTexture(grey));
    auto alphaWith = [&](int antialiasing) {
        return draw([=](MBrush::SettingValues& v) { v[MEnum::bsAntialiasing] = antialiasing; }, radius)
            .at(250, 250)
            .a;
    };
    QVERIFY(std::abs(alphaWith(MEnum::NoAntialiasing) - 153) <= 1);
    QVERIFY(std::abs(alphaWith(MEnum::Antialiasing) - 153) <= 1);
    const double scale = (radius - 5) / (200 - 5);
    const double t = std::clamp((0.6 - (0.35 + scale * 0.12)) / (0.3 - scale * 0.24), 0.0, 1.0);
    QVERIFY(std::abs(alphaWith(MEnum::Smoothing) - 255 * t * t * (3 - 2 * t)) <= 1);

    data->unloadBrushTexture();
    QVERIFY(!data->brushTexture());
    QCOMPARE(draw(nullptr, radius, 1.0, 0.0, Qt::blue).at(250 - 38, 250 - 38).a, 0);
}

void TestStamping::layerUnderAndSelectionClip()
{
    MSharedData* data = m_canvas->sharedData();
    m_canvas->appendLayer();
    QCOMPARE(m_canvas->count(), 2);
    data->setCurrentLayerIndex(1);
    QCOMPARE(data->underLayer(), m_canvas->at(0));
    // Alpha 0.6 under the left half of the tile, nothing under the right.
    auto* under = dynamic_cast<MTextureTile*>(m_canvas->at(0)->addTile(centre));
    QVERIFY(under && under->isCreated());
    QByteArray bytes(tileSize * tileSize * 4, '\0');
    for (int y = 0; y < tileSize; ++y)
        for (int x = 0; x < tileSize / 2; ++x)
            bytes[(y * tileSize + x) * 4 + 3] = char(153);
    QVERIFY(under->setData(static_cast<const void*>(bytes.constData())));
    auto full = [](MBrush::SettingValues& v) { v[MEnum::bsInheritAlphaUnder] = 0; };
    auto inherit = [](MBrush::SettingValues& v) { v[MEnum::bsInheritAlphaUnder] = 1; };
    const QPoint left(100, 250);
    const QPoint right(400, 250);
    struct Case
    {
        int mask;
        bool setting;
        int leftAlpha;
        int rightAlpha;
    };
    const Case cases[] = {{MLayer::NoMask, false, 255, 255},
                          {MLayer::NoMask, true, 102, 255},
                          {MLayer::AlphaMask, false, 153, 0},
                          {MLayer::OneMinusAlphaMask, false, 102, 255}};
    for (const Case& c : cases) {
        m_canvas->at(0)->set_mask(c.mask);
        const Tile tile = c.setting ? draw(inherit, 300) : draw(full, 300);
        QVERIFY(std::abs(tile.at(left.x(), left.y()).a - c.leftAlpha) <= 1);
        QVERIFY(std::abs(tile.at(right.x(), right.y()).a - c.rightAlpha) <= 1);
    }
    m_canvas->at(0)->set_mask(MLayer::NoMask);

    // With a selection, only its inside is painted.
    QPainterPath selection;
    selection.addRect(QRectF(0, 0, 200, 200));
    m_canvas->setClipPath(selection);
    QVERIFY(m_canvas->hasSelection());
    const Tile clipped = draw(nullptr, 300);
    QCOMPARE(clipped.at(100, 100).a, 255);
    QCOMPARE(clipped.at(300, 100).a, 0);
    QCOMPARE(clipped.at(100, 300).a, 0);
    m_canvas->resetClipPath();
    QCOMPARE(draw(nullptr, 300).at(300, 100).a, 255);
}

void TestStamping::engineReadsItsImagesParametersAndTile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("grain.png"));
    QImage grain(4, 4, QImage::Format_ARGB32);
    grain.fill(QColor(200, 100, 50));
    QVERIFY(grain.save(path));
    addEngine(readerEngine, QStringLiteral("@params\nfloat amount = 0.5;\ntexture grain \"%1\";\n@main\n"
                                           "vec4 g = texture(grain, v_texCoords0);\n"
                                           "if (v_texCoords0.x < 0.5)\n"
                                           "    f_color = vec4(g.rgb * amount, 1.0);\n"
                                           "else\n"
                                           "    f_color = vec4(float(f_stampCount) / 255.0, f_textureSize / "
                                           "1024.0, (f_texturePos.x + 100.0) / 255.0, f_paintedRectWidth / "
                                           "1000.0);\n")
                                .arg(path));
    MSharedData* data = m_canvas->sharedData();
    data->setStampCount(7);
    m_canvas->setPaintedRect(QRectF(-100, -100, 400, 300));
    Tile tile = draw(nullptr, 300, 1.0, 0.0, Qt::white, readerEngine);
    QVERIFY(!tile.isEmpty());
    Px c = tile.at(100, 250);
    QVERIFY2(std::abs(c.r - 100) <= 1 && std::abs(c.g - 50) <= 1 && std::abs(c.b - 25) <= 1,
             qPrintable(QStringLiteral("%1 %2 %3").arg(c.r).arg(c.g).arg(c.b)));
    c = tile.at(400, 250);
    QCOMPARE(c.r, 7);
    QVERIFY(std::abs(c.g - 127.5) <= 1);
    QCOMPARE(c.b, 94);
    QCOMPARE(c.a, 102);

    // The brush's parameter values reach the engine.
    MBrush brush;
    brush.set_shaderId(readerEngine);
    QCOMPARE(brush.shaderValues()->value("amount").toDouble(), 0.5);
    brush.shaderValues()->setValue("amount", 1.0);
    data->setBrush(brush);
    // The stroke draws with its own copy: later edits of the brush don't reach it.
    brush.shaderValues()->setValue("amount", 0.0);
    tile = draw(nullptr, 300, 1.0, 0.0, Qt::white, readerEngine);
    c = tile.at(100, 250);
    QVERIFY(std::abs(c.r - 200) <= 1 && std::abs(c.g - 100) <= 1 && std::abs(c.b - 50) <= 1);
}

QUILLMERE_TEST_MAIN(TestStamping)
#include "tst_stamping.moc"
