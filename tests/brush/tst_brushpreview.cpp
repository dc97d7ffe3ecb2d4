// The brush preview: a wavy stroke of the brush drawn on the GPU and read back
// into a list thumbnail. The pixels are checked for where the stroke runs, how
// thick it is, its colour and opacity, and for what the preview overrides.

#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "brush/mbrush.h"

#include <QOpenGLContext>
#include <QSignalSpy>

#include <cmath>
#include <functional>

namespace {

constexpr int width = 150;
constexpr int height = 60;

// The alpha-weighted centre and the painted extent of one column.
struct Column
{
    double centre = -1;
    int top = -1;
    int bottom = -1;
    int maxAlpha = 0;
};

Column column(const QImage& image, int x)
{
    Column result;
    double weight = 0;
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        const int a = qAlpha(image.pixel(x, y));
        if (a == 0)
            continue;
        weight += a;
        sum += a * (y + 0.5);
        if (result.top < 0)
            result.top = y;
        result.bottom = y;
        result.maxAlpha = qMax(result.maxAlpha, a);
    }
    if (weight > 0)
        result.centre = sum / weight;
    return result;
}

// The opaque-ish pixels' colour, unpremultiplied, averaged.
QColor meanColour(const QImage& image)
{
    double r = 0, g = 0, b = 0;
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (c.alpha() < 200)
                continue;
            r += c.red();
            g += c.green();
            b += c.blue();
            ++n;
        }
    }
    return n ? QColor(int(r / n), int(g / n), int(b / n)) : QColor();
}

bool marginIsEmpty(const QImage& image, int margin)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((x < margin || y < margin || x >= image.width() - margin || y >= image.height() - margin) &&
                qAlpha(image.pixel(x, y)) != 0)
                return false;
    return true;
}

} // namespace

class TestBrushPreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void defaultBrushDrawsAWave();
    void radiusIsHeldForTheThumbnail();
    void previewOverridesModesButKeepsTheLook();
    void borderColourShowsAtTheRim();
    void previewIsCachedUntilRefreshed();

private:
    QuillmereTest::GLContext m_gl;
};

void TestBrushPreview::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
}

void TestBrushPreview::defaultBrushDrawsAWave()
{
    MBrush brush;
    QVERIFY(m_gl.makeCurrent());
    const QImage image = brush.renderPreview(QSize(width, height), Qt::darkGray, Qt::white);
    // The caller's context is current again.
    QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());
    QCOMPARE(image.size(), QSize(width, height));
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QVERIFY(marginIsEmpty(image, 4));

    // Radius 30 is held to 10: the stroke's centre line runs from x = 15 to
    // 135 over one period of a sine between y = 15 and 45, down first.
    const double diameter = 2 * (10 + 5);
    for (int i = 2; i <= 38; i += 4) {
        const double x = (width - diameter) * i / 40.0 + diameter / 2;
        const double y = height * 0.5 + (height - diameter) * 0.5 * std::sin(2 * M_PI * i / 40.0);
        const Column c = column(image, int(x));
        QVERIFY2(
            std::abs(c.centre - y) < 2.5,
            qPrintable(QStringLiteral("column %1: centre %2, expected %3").arg(int(x)).arg(c.centre).arg(y)));
    }
    QVERIFY(column(image, 10).maxAlpha == 0 || column(image, 10).top > 10);
    const QColor colour = meanColour(image);
    QVERIFY2(std::abs(colour.red() - 128) <= 3 && std::abs(colour.green() - 128) <= 3 &&
                 std::abs(colour.blue() - 128) <= 3,
             qPrintable(colour.name()));
    // Overlapping stamps of hardness 0.8 build up to full paint.
    QVERIFY(column(image, 45).maxAlpha > 250);
}

void TestBrushPreview::radiusIsHeldForTheThumbnail()
{
    // At the crest the stroke runs level: its height there is the stamp's.
    auto thickness = [](const QImage& image) {
        const Column c = column(image, 45);
        return c.bottom - c.top + 1;
    };
    MBrush big;
    big.setRadius(100);
    const int bigThickness = thickness(big.renderPreview(QSize(width, height), Qt::darkGray, Qt::white));
    QVERIFY2(std::abs(bigThickness - 20) <= 2, qPrintable(QString::number(bigThickness)));
    QCOMPARE(big.radius(), 100.0);

    MBrush small;
    small.setRadius(2);
    small.setHardness(1.0);
    const int smallThickness = thickness(small.renderPreview(QSize(width, height), Qt::darkGray, Qt::white));
    QVERIFY2(std::abs(smallThickness - 4) <= 2, qPrintable(QString::number(smallThickness)));

    // Below 1 it is held to 1.
    MBrush tiny;
    tiny.setRadius(0.2);
    tiny.setHardness(1.0);
    const int tinyThickness = thickness(tiny.renderPreview(QSize(width, height), Qt::darkGray, Qt::white));
    QVERIFY2(tinyThickness >= 1 && tinyThickness <= 3, qPrintable(QString::number(tinyThickness)));
}

void TestBrushPreview::previewOverridesModesButKeepsTheLook()
{
    // Each of these would leave nothing, or black, on the preview's empty
    // canvas; the preview shows the plain stroke all the same, pixel for pixel.
    const QImage plain = MBrush().renderPreview(QSize(width, height), Qt::darkGray, Qt::white);
    const std::function<void(MBrush&)> overrides[] = {
        [](MBrush& b) { b.setCompositionMode(5); },
        [](MBrush& b) { b.setInheritAlphaCurrent(true); },
        [](MBrush& b) {
            b.setColorAbsorbtionRate(0.5);
            b.setColorFlowingRate(0.0);
        },
        [](MBrush& b) { b.setEraser(true); },
    };
    for (const auto& adjust : overrides) {
        MBrush brush;
        adjust(brush);
        QCOMPARE(brush.renderPreview(QSize(width, height), Qt::darkGray, Qt::white), plain);
    }
    MBrush brush;
    brush.setCompositionMode(5);
    brush.renderPreview(QSize(width, height), Qt::darkGray, Qt::white);
    QCOMPARE(brush.compositionMode(), 5);

    // Opacity acts where the stroke is laid on the layer: no overlap of
    // stamps goes past it.
    MBrush half;
    half.setOpacity(0.5);
    const int alpha = column(half.renderPreview(QSize(width, height), Qt::darkGray, Qt::white), 45).maxAlpha;
    QVERIFY2(std::abs(alpha - 128) <= 3, qPrintable(QString::number(alpha)));

    // The colour is the one asked for.
    const QColor red =
        meanColour(MBrush().renderPreview(QSize(width, height), QColor(200, 30, 30), Qt::white));
    QVERIFY2(std::abs(red.red() - 200) <= 3 && std::abs(red.green() - 30) <= 3, qPrintable(red.name()));

    // The stroke's pressure drives the dynamics: with radius on pressure the
    // stroke is thick at the crest (pressure 1) and thin at the trough (0.6).
    MBrush pressed;
    pressed.setHardness(1.0);
    pressed.curve(MEnum::bsRadius, MEnum::biPressure);
    const QImage image = pressed.renderPreview(QSize(width, height), Qt::darkGray, Qt::white);
    const Column crest = column(image, 45);
    const Column trough = column(image, 105);
    const int thick = crest.bottom - crest.top + 1;
    const int thin = trough.bottom - trough.top + 1;
    QVERIFY2(std::abs(thick - 20) <= 2 && std::abs(thin - 12) <= 2,
             qPrintable(QStringLiteral("%1, %2").arg(thick).arg(thin)));
}

void TestBrushPreview::borderColourShowsAtTheRim()
{
    MBrush brush;
    brush.setUseBorderColor(true);
    brush.setHardness(1.0);
    const QImage image = brush.renderPreview(QSize(width, height), Qt::blue, Qt::red);
    // Each pixel keeps the colour of the last stamp over it, whose rim it
    // lies in along the stroke; the middle of the last stamp stays blue.
    const Column c = column(image, 45);
    QVERIFY(c.top >= 0);
    const QColor along = image.pixelColor(45, int(c.centre));
    const QColor end = image.pixelColor(133, 30);
    QVERIFY2(along.red() > along.blue() && along.alpha() == 255, qPrintable(along.name(QColor::HexArgb)));
    QVERIFY2(end.blue() > 200 && end.red() < 60, qPrintable(end.name(QColor::HexArgb)));
}

void TestBrushPreview::previewIsCachedUntilRefreshed()
{
    MBrush brush;
    QSignalSpy changed(&brush, &MBrush::previewChanged);
    const QImage first = brush.preview();
    QCOMPARE(first.size(), QSize(150, 60));
    QVERIFY(column(first, 45).maxAlpha > 0);
    QCOMPARE(brush.preview().cacheKey(), first.cacheKey());
    QCOMPARE(brush.property("preview").value<QImage>().cacheKey(), first.cacheKey());
    QCOMPARE(changed.count(), 0);

    brush.setOpacity(0.25);
    QCOMPARE(brush.preview().cacheKey(), first.cacheKey());
    brush.refreshPreview();
    QCOMPARE(changed.count(), 1);
    const QImage second = brush.preview();
    QVERIFY(second.cacheKey() != first.cacheKey());
    QVERIFY(column(second, 45).maxAlpha < 70);

    // A copy draws its own preview.
    MBrush copy;
    copy.assign(brush);
    QVERIFY(copy.preview().cacheKey() != second.cacheKey());
}

QUILLMERE_TEST_MAIN(TestBrushPreview)
#include "tst_brushpreview.moc"
