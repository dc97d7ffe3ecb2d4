// The composition modes: their list, the combo boxes it fills, the constants
// of the stamp programs, and each mode drawn for real. A stamp of known
// colour is laid with the default engine and with a brush engine built on the
// engines' header over a layer tile of many known colours; the stroke tile is
// read back and every sampled pixel compared with the formula computed here.

#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "app/msettings.h"
#include "brush/mbrush.h"
#include "brush/mstamppainter.h"
#include "document/mcanvas.h"
#include "document/mtexturetile.h"
#include "effects/menumedit.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mcompositionmode.h"
#include "gpu/mcompositionmodelist.h"
#include "gpu/mshaderprogramlist.h"
#include "gpu/mshareddata.h"

#include <QComboBox>
#include <QFile>
#include <QOpenGLShaderProgram>
#include <QRegularExpression>
#include <QTranslator>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

struct Row
{
    int mode;
    const char* constant;
    const char* description;
    bool brush;
};

const Row table[] = {
    {0, "M_FOREGROUNDOVER", "Normal", true},
    {1, "M_BACKGROUNDOVER", "Background over", false},
    {2, "M_CLEAR", "Clear", false},
    {3, "M_FOREGROUND", "Foreground", false},
    {4, "M_BACKGROUND", "Background", false},
    {5, "M_FOREGROUNDIN", "Foreground in", true},
    {6, "M_BACKGROUNDIN", "Background in", false},
    {7, "M_FOREGROUNDOUT", "Foreground out", true},
    {8, "M_BACKGROUNDOUT", "Background out", false},
    {9, "M_FOREGROUNDATOP", "Foreground at top", false},
    {10, "M_BACKGROUNDATOP", "Background at top", false},
    {11, "M_XOR", "Xor", false},
    {12, "M_PLUS", "Plus", true},
    {13, "M_MULTIPLY", "Multiply", true},
    {14, "M_SCREEN", "Screen", true},
    {15, "M_OVERLAY", "Overlay", true},
    {16, "M_DARKEN", "Darken", true},
    {17, "M_LIGHTEN", "Lighten", true},
    {18, "M_COLORDODGE", "Color dodge", true},
    {19, "M_COLORBURN", "Color burn", true},
    {20, "M_HARDLIGHT", "Hard light", true},
    {21, "M_SOFTLIGHT", "Soft light", true},
    {22, "M_DIFFERENCE", "Difference", true},
    {23, "M_EXCLUSION", "Exclusion", true},
    {24, "M_DARKER", "Darker", true},
    {25, "M_LIGHTER", "Lighter", true},
    {26, "M_VIVIDLIGHT", "Vivid light", true},
    {27, "M_PINLIGHT", "Pin light", true},
    {28, "M_HSL_HUE", "HSL hue", true},
    {29, "M_HSL_SATURATION", "HSL saturation", true},
    {30, "M_HSL_COLOR", "HSL color", true},
    {31, "M_HSL_LUMINOSITY", "HSL luminosity", true},
    {32, "M_DODGEHIGHLIGHT", "Dodge highlight", true},
    {33, "M_BURNHIGHLIGHT", "Burn highlight", true},
    {34, "M_DODGEMIDTONE", "Dodge midtone", true},
    {35, "M_BURNMIDTONE", "Burn midtone", true},
    {36, "M_DODGESHADOW", "Dodge shadow", true},
    {37, "M_BURNSHADOW", "Burn shadow", true},
    {1000, "M_USER", "User", false},
};

// ---- The formulas, on unpremultiplied colours in 0..1.

struct C3
{
    double r = 0, g = 0, b = 0;
    double& operator[](int i) { return i == 0 ? r : (i == 1 ? g : b); }
    double operator[](int i) const { return i == 0 ? r : (i == 1 ? g : b); }
};

C3 each(const C3& s, const C3& d, const std::function<double(double, double)>& f)
{
    return {f(s.r, d.r), f(s.g, d.g), f(s.b, d.b)};
}

double clamp01(double v)
{
    return std::isnan(v) ? v : std::clamp(v, 0.0, 1.0);
}

double lum(const C3& c)
{
    return 0.3 * c.r + 0.59 * c.g + 0.11 * c.b;
}

double minOf(const C3& c)
{
    return std::min({c.r, c.g, c.b});
}

double maxOf(const C3& c)
{
    return std::max({c.r, c.g, c.b});
}

C3 setLum(const C3& base, const C3& l)
{
    const double ll = lum(l);
    C3 c = each(base, base, [&](double x, double) { return x + ll - lum(base); });
    const double n = minOf(c);
    const double x = maxOf(c);
    if (n < 0)
        return each(c, c, [&](double v, double) { return ll + (v - ll) * ll / (ll - n); });
    if (x > 1)
        return each(c, c, [&](double v, double) { return ll + (v - ll) * (1 - ll) / (x - ll); });
    return c;
}

C3 setLumSat(const C3& base, const C3& s, const C3& l)
{
    const double baseSat = maxOf(base) - minOf(base);
    C3 c;
    if (baseSat > 0)
        c = each(base, base,
                 [&](double v, double) { return (v - minOf(base)) * (maxOf(s) - minOf(s)) / baseSat; });
    return setLum(c, l);
}

// The colour function of a mode; factor is the brush's factor. Modes without
// one give the stamp's colour.
C3 blend(int mode, const C3& S, const C3& D, double factor)
{
    const double k = factor / 3.0;
    auto per = [&](const std::function<double(double, double)>& f) { return each(S, D, f); };
    switch (mode) {
    case 12:
        return per([](double s, double d) { return clamp01(s + d); });
    case 13:
        return per([](double s, double d) { return s * d; });
    case 14:
        return per([](double s, double d) { return clamp01(1 - (1 - s) * (1 - d)); });
    case 15:
        return per([](double s, double d) { return d < 0.5 ? s * d : 1 - 2 * (1 - s) * (1 - d); });
    case 16:
        return per([](double s, double d) { return std::min(s, d); });
    case 17:
        return per([](double s, double d) { return std::max(s, d); });
    case 18:
        return per([](double s, double d) { return clamp01(d / std::max(1.0 / 256, 1 - s)); });
    case 19:
        return per([](double s, double d) { return clamp01(1 - (1 - d) / std::max(1.0 / 256, s)); });
    case 20:
        return per(
            [](double s, double d) { return s > 0.5 ? 1 - (1 - 2 * (s - 0.5)) * (1 - d) : 2 * d * s; });
    case 21:
        return per([](double s, double d) { return d * ((1 - d) * s + (1 - (1 - d) * (1 - s))); });
    case 22:
        return per([](double s, double d) { return std::abs(s - d); });
    case 23:
        return per([](double s, double d) { return clamp01(s + d - 2 * s * d); });
    case 24:
        return lum(D) > lum(S) ? S : D;
    case 25:
        return lum(D) > lum(S) ? D : S;
    case 26:
        return per([](double s, double d) {
            return s < 0.5 ? clamp01(1 - (1 - d) / (2 * s)) : clamp01(d / (2 * (1 - s)));
        });
    case 27:
        return per([](double s, double d) {
            if (2 * s - 1 > d)
                return clamp01(2 * s - 1);
            if (s < 0.5 * d)
                return clamp01(2 * s);
            return d;
        });
    case 28:
        return setLumSat(S, D, D);
    case 29:
        return setLumSat(D, S, D);
    case 30:
        return setLum(S, D);
    case 31:
        return setLum(D, S);
    case 32:
        return per([&](double, double d) { return d * (1 + k); });
    case 33:
        return per([&](double, double d) { return d * (1 - k); });
    case 34:
        return per([&](double, double d) { return std::pow(d, 1 / (1 + factor)); });
    case 35:
        return per([&](double, double d) { return std::pow(d, 1 + k); });
    case 36:
        return per([&](double, double d) { return d + k - d * k; });
    case 37:
        return per([&](double, double d) { return (d - k) * (1 - k); });
    default:
        return S;
    }
}

// Premultiplied RGBA in 0..255.
struct Px
{
    double v[4] = {0, 0, 0, 0};
};

// The stamp's fragment over the layer pixel dca, where the stroke tile is
// empty: the composition of the stamp program, clamped by the 8-bit target.
Px compose(int mode, const C3& S, double alpha, const Px& dca, double factor, bool inheritAlphaCurrent)
{
    const double da = dca.v[3] / 255.0;
    C3 D;
    for (int i = 0; i < 3; ++i)
        D[i] = dca.v[i] / 255.0 / std::max(1.0 / 256, da);
    C3 c = S;
    double X = 1;
    double Y = 1;
    if (mode == 5) {
        Y = 0;
    } else if (mode == 7) {
        c = C3();
        X = 0;
    } else if (mode != 0) {
        c = blend(mode, S, D, factor);
    }
    if (inheritAlphaCurrent)
        Y = 0;
    Px out;
    for (int i = 0; i < 3; ++i)
        out.v[i] = clamp01(c[i] * alpha * da + Y * S[i] * alpha * (1 - da)) * 255;
    out.v[3] = clamp01(X * alpha * da + Y * alpha * (1 - da)) * 255;
    return out;
}

// A channel that the formula leaves undefined (0 / 0 of vivid light) is the
// GPU's own and matches anything.
bool close(const Px& got, const Px& want, double tolerance)
{
    for (int i = 0; i < 4; ++i)
        if (!std::isnan(want.v[i]) && !(std::abs(got.v[i] - want.v[i]) <= tolerance))
            return false;
    return true;
}

QString text(const Px& p)
{
    return QStringLiteral("(%1, %2, %3, %4)").arg(p.v[0]).arg(p.v[1]).arg(p.v[2]).arg(p.v[3]);
}

// ---- The layer under the stamps: 8 by 8 blocks of one colour each, opaque,
// translucent and empty, some of them grey.

constexpr int tileSize = 512;
constexpr int block = 8;
constexpr int blocks = tileSize / block;

Px layerColour(int bx, int by)
{
    static const int alphas[] = {255, 255, 255, 255, 200, 128, 40, 0};
    const int k = by * blocks + bx;
    const int a = alphas[(k * 7 + 3) % 8];
    int r = (k * 37 + 11) % 256;
    int g = (k * 91 + 53) % 256;
    int b = (k * 53 + 101) % 256;
    if (k % 9 == 0)
        g = b = r;
    // Nearly black, where the floor of a divisor shows.
    if (k % 11 == 5)
        r = g = b = 1 + k % 2;
    Px p;
    p.v[0] = std::round(r * a / 255.0);
    p.v[1] = std::round(g * a / 255.0);
    p.v[2] = std::round(b * a / 255.0);
    p.v[3] = a;
    return p;
}

QByteArray layerBytes()
{
    QByteArray bytes(tileSize * tileSize * 4, '\0');
    auto* p = reinterpret_cast<uchar*>(bytes.data());
    for (int y = 0; y < tileSize; ++y)
        for (int x = 0; x < tileSize; ++x) {
            const Px c = layerColour(x / block, y / block);
            for (int i = 0; i < 4; ++i)
                p[(y * tileSize + x) * 4 + i] = uchar(c.v[i]);
        }
    return bytes;
}

Px pixel(const QByteArray& bytes, int x, int y)
{
    const auto* p = reinterpret_cast<const uchar*>(bytes.constData()) + (y * tileSize + x) * 4;
    Px result;
    for (int i = 0; i < 4; ++i)
        result.v[i] = p[i];
    return result;
}

const char* engineSource = "@main\n"
                           "vec2 uv = v_texCoords0;\n"
                           "float alpha = getStandardClipping(getStandardAlpha(uv));\n"
                           "if (alpha < 0.004)\n"
                           "    discard;\n"
                           "f_color = getStandardComposition(getStandardColor(uv, alpha), alpha);\n";

const QString engineId = QStringLiteral("{5A3C1E0B-7D2F-4B8A-9C61-0E4D2B7F9A13}");

// Names in brackets: whether a text went through the translation or not shows.
class BracketTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char* disambiguation = nullptr,
                      int n = -1) const override
    {
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        if (qstrcmp(context, "MCompositionModeList") != 0)
            return QString();
        return QStringLiteral("[%1]").arg(QString::fromUtf8(sourceText));
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class TestCompositionModes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void listHoldsEveryModeInOrder();
    void comboBoxesOfferBrushModesByName();
    void programsDefineTheListNumbers();
    void everyModeDrawsItsFormula_data();
    void everyModeDrawsItsFormula();

private:
    // Draws one stamp over the whole tile and reads the stroke tile back.
    QByteArray drawStamp(int mode, const QColor& colour, double flow, double factor, bool inheritAlphaCurrent,
                         bool userEngine);

    QuillmereTest::GLContext m_gl;
    std::unique_ptr<MCanvas> m_canvas;
    MTextureTile* m_layerTile = nullptr;
    MTextureTile* m_strokeTile = nullptr;
};

void TestCompositionModes::initTestCase()
{
    // The driver probe runs first, as at start-up: drawing reads its limits.
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    m_canvas = std::make_unique<MCanvas>();
    QVERIFY(m_canvas->makeCurrent());
    MSharedData* data = m_canvas->sharedData();
    data->initializeGL();
    QVERIFY(data->isValid());
    data->setCurrentLayerIndex(0);
    QVERIFY(m_canvas->at(0));
    // Inner rectangle 0..500 on both axes: the texture covers -6..506.
    m_layerTile = dynamic_cast<MTextureTile*>(m_canvas->at(0)->addTile(QPointF(250, 250)));
    m_strokeTile = dynamic_cast<MTextureTile*>(m_canvas->strokeLayer()->addTile(QPointF(250, 250)));
    QVERIFY(m_layerTile && m_layerTile->isCreated());
    QVERIFY(m_strokeTile && m_strokeTile->isCreated());
    QCOMPARE(m_layerTile->outerRect(), QRect(-6, -6, tileSize, tileSize));
    const QByteArray bytes = layerBytes();
    QVERIFY(m_layerTile->setData(static_cast<const void*>(bytes.constData())));

    auto engine = std::make_unique<MShader>();
    engine->setId(engineId);
    engine->setType(MShader::BrushShader);
    engine->setSource(QString::fromLatin1(engineSource));
    QVERIFY(MShaderList::instance()->addShader(std::move(engine)));
}

void TestCompositionModes::listHoldsEveryModeInOrder()
{
    MCompositionModeList* list = MCompositionModeList::instance();
    QCOMPARE(list->count(), int(std::size(table)));
    for (int row = 0; row < list->count(); ++row) {
        const MCompositionMode* mode = list->modeAt(row);
        QVERIFY(mode);
        QCOMPARE(mode->mode(), table[row].mode);
        QCOMPARE(mode->description(), QString::fromLatin1(table[row].description));
        QCOMPARE(mode->usedByBrush(), table[row].brush);
    }
    QCOMPARE(list->modeByNumber(1000), list->modeAt(list->count() - 1));
    QVERIFY(!list->modeByNumber(38));

    // The rows are a table of the mode's properties.
    const int column = list->columnOf("description");
    QVERIFY(column >= 0);
    QCOMPARE(list->data(list->index(13, column), Qt::EditRole).toString(), QStringLiteral("Multiply"));
}

void TestCompositionModes::comboBoxesOfferBrushModesByName()
{
    MSettings::instance()->set_translateCompositionModes(true);
    BracketTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));

    QComboBox all;
    MCompositionModeList::instance()->fillComboBox(&all, false);
    QCOMPARE(all.count(), int(std::size(table)));
    QCOMPARE(all.itemText(1), QStringLiteral("[Background over]"));
    QCOMPARE(all.itemData(38).toInt(), 1000);

    QComboBox brush;
    MCompositionModeList::instance()->fillComboBox(&brush, true);
    QStringList names;
    QList<int> numbers;
    for (int i = 0; i < brush.count(); ++i) {
        names << brush.itemText(i);
        numbers << brush.itemData(i).toInt();
    }
    QList<int> brushNumbers;
    for (const Row& row : table)
        if (row.brush)
            brushNumbers << row.mode;
    QCOMPARE(numbers, brushNumbers);
    QCOMPARE(names.first(), QStringLiteral("[Normal]"));
    QCOMPARE(names.at(numbers.indexOf(26)), QStringLiteral("[Vivid light]"));

    // Turned off, the names stay in English.
    MSettings::instance()->set_translateCompositionModes(false);
    MEnumEdit edit;
    edit.setCompositionModes(true);
    QCOMPARE(edit.count(), brushNumbers.size());
    QCOMPARE(edit.itemText(0), QStringLiteral("Normal"));
    edit.set_value(13);
    QCOMPARE(edit.currentText(), QStringLiteral("Multiply"));
    QCOMPARE(edit.value(), 13);
    // A mode brushes don't offer selects nothing.
    edit.set_value(11);
    QCOMPARE(edit.value(), -1);

    QCoreApplication::removeTranslator(&translator);
    MSettings::instance()->set_translateCompositionModes(true);
}

void TestCompositionModes::programsDefineTheListNumbers()
{
    const QRegularExpression define(QStringLiteral("^#define (M_[A-Z_]+) (\\d+)\\s*$"),
                                    QRegularExpression::MultilineOption);
    for (const char* path : {":/shaders/stamping_frag.glsl", ":/shaders/std_brush_header_frag.glsl"}) {
        // The source as it is compiled, includes expanded.
        const QString source = MShader::resourceLines(QString::fromLatin1(path)).join(QLatin1Char('\n'));
        QVERIFY2(!source.isEmpty(), path);
        QHash<QString, int> defined;
        auto it = define.globalMatch(source);
        while (it.hasNext()) {
            const QRegularExpressionMatch match = it.next();
            defined.insert(match.captured(1), match.captured(2).toInt());
        }
        for (const Row& row : table) {
            QVERIFY2(defined.contains(QString::fromLatin1(row.constant)), row.constant);
            QCOMPARE(defined.value(QString::fromLatin1(row.constant)), row.mode);
            QVERIFY(MCompositionModeList::instance()->modeByNumber(row.mode));
        }
    }
}

QByteArray TestCompositionModes::drawStamp(int mode, const QColor& colour, double flow, double factor,
                                           bool inheritAlphaCurrent, bool userEngine)
{
    MSharedData* data = m_canvas->sharedData();
    if (!m_canvas->makeCurrent())
        return QByteArray();
    const QByteArray empty(tileSize * tileSize * 4, '\0');
    if (!m_strokeTile->setData(static_cast<const void*>(empty.constData())))
        return QByteArray();

    MBrush brush;
    brush.set_shaderId(userEngine ? engineId : QString());
    data->setBrush(brush);
    MBrush::SettingValues values = brush.baseValues();
    values[MEnum::bsRadius] = 400;
    values[MEnum::bsHardness] = 1.0;
    values[MEnum::bsAntialiasing] = MEnum::NoAntialiasing;
    values[MEnum::bsFlow] = flow;
    values[MEnum::bsCompositionMode] = mode;
    values[MEnum::bsFactor] = factor;
    values[MEnum::bsInheritAlphaCurrent] = inheritAlphaCurrent ? 1.0 : 0.0;

    // A disc of radius 400 about the tile's centre covers all of it.
    QVector<MVertex> stamps;
    MStampPainter::addStamp(stamps, QPointF(250, 250), 400, 1.0, 0.0, colour);
    MStampPainter painter(data);
    if (!painter.drawStamps({m_strokeTile}, stamps, values))
        return QByteArray();
    if (userEngine) {
        QOpenGLShaderProgram* program = data->programList()->programByName(engineId);
        if (!program || !program->isLinked())
            return QByteArray();
    }
    QByteArray bytes(tileSize * tileSize * 4, '\0');
    if (!m_strokeTile->toBuffer(bytes.data()))
        return QByteArray();
    return bytes;
}

void TestCompositionModes::everyModeDrawsItsFormula_data()
{
    QTest::addColumn<bool>("userEngine");
    QTest::addColumn<bool>("inherit");
    QTest::newRow("stamping") << false << false;
    QTest::newRow("brush engine") << true << false;
    // Inheriting the layer's alpha, nothing lands where the layer is empty.
    QTest::newRow("stamping, layer alpha inherited") << false << true;
    QTest::newRow("brush engine, layer alpha inherited") << true << true;
}

void TestCompositionModes::everyModeDrawsItsFormula()
{
    QFETCH(bool, userEngine);
    QFETCH(bool, inherit);
    // Stamp colours of 16-bit channels away from the layer's 8-bit steps; the
    // last one holds 1 and 0, where dodge and vivid light divide by their floor
    // or by zero.
    const QList<QColor> colours = {QColor::fromRgbF(0.9, 0.35, 0.12), QColor::fromRgbF(0.2, 0.7, 0.55),
                                   QColor::fromRgbF(1.0, 0.5, 0.0)};
    const float flow = 0.8f;
    const float factor = 0.6f;
    const QByteArray layer = layerBytes();
    for (const Row& row : table) {
        for (const QColor& colour : colours) {
            const QByteArray bytes = drawStamp(row.mode, colour, flow, factor, inherit, userEngine);
            QVERIFY2(!bytes.isEmpty(), row.constant);
            const C3 S{double(float(colour.redF())), double(float(colour.greenF())),
                       double(float(colour.blueF()))};
            for (int by = 0; by < blocks; ++by) {
                for (int bx = 0; bx < blocks; ++bx) {
                    const int x = bx * block + block / 2;
                    const int y = by * block + block / 2;
                    const Px dca = pixel(layer, x, y);
                    const Px got = pixel(bytes, x, y);
                    const Px want = compose(row.mode, S, flow, dca, factor, inherit);
                    // Where a formula turns on a comparison or a division, the
                    // GPU's float and this double may fall on either side of
                    // the edge: a result of the inputs nudged by 1e-5 passes too.
                    bool matched = close(got, want, 1.0);
                    for (int nudge = 1; nudge < 5 && !matched; ++nudge) {
                        const double e = nudge % 2 ? 1e-5 : -1e-5;
                        C3 s = S;
                        Px d = dca;
                        for (int i = 0; i < 3; ++i) {
                            if (nudge < 3)
                                s[i] += e;
                            else
                                d.v[i] = std::max(0.0, d.v[i] + e * 255);
                        }
                        matched = close(got, compose(row.mode, s, flow, d, factor, inherit), 1.0);
                    }
                    if (!matched)
                        QFAIL(qPrintable(QStringLiteral("%1, stamp %2 over %3 at %4,%5: %6, expected %7")
                                             .arg(QString::fromLatin1(row.constant), colour.name(), text(dca))
                                             .arg(x)
                                             .arg(y)
                                             .arg(text(got), text(want))));
                }
            }
        }
    }
}

QUILLMERE_TEST_MAIN(TestCompositionModes)
#include "tst_compositionmodes.moc"
