// The effects and brush engines shipped in datas/shaders, read from the copy
// beside the test as the program reads its system directory: each loads,
// compiles with the driver, and does to a sample tile what it is for; a few
// are checked pixel by pixel against the same arithmetic done here. Also the
// refusals of MEffectRenderer, which must not fall back silently.

#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushpreview.h"
#include "effects/mfield.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mshaderstream.h"
#include "gpu/meffectrenderer.h"

#include <QRandomGenerator>

#include <cmath>
#include <functional>
#include <memory>

namespace {

const QStringList effectIds = {QStringLiteral("BLUR"),
                               QStringLiteral("SHARPEN"),
                               QStringLiteral("BRIGHTNESS_CONTRAST"),
                               QStringLiteral("HUE_SATURATION_VALUE"),
                               QStringLiteral("LEVELS"),
                               QStringLiteral("INVERT"),
                               QStringLiteral("GREYSCALE"),
                               QStringLiteral("SEPIA"),
                               QStringLiteral("POSTERIZE"),
                               QStringLiteral("PIXELATE"),
                               QStringLiteral("EMBOSS"),
                               QStringLiteral("EDGE_DETECTION"),
                               QStringLiteral("VIGNETTE"),
                               QStringLiteral("NOISE"),
                               QStringLiteral("THRESHOLD"),
                               QStringLiteral("COLOUR_BALANCE")};
const QStringList engineIds = {QStringLiteral("HATCHING"), QStringLiteral("BRISTLE"), QStringLiteral("GLOW")};

// Effects that only recolour: their alpha must be the input's exactly.
const QStringList alphaKeepingIds = {QStringLiteral("BRIGHTNESS_CONTRAST"),
                                     QStringLiteral("HUE_SATURATION_VALUE"),
                                     QStringLiteral("LEVELS"),
                                     QStringLiteral("INVERT"),
                                     QStringLiteral("GREYSCALE"),
                                     QStringLiteral("SEPIA"),
                                     QStringLiteral("POSTERIZE"),
                                     QStringLiteral("EMBOSS"),
                                     QStringLiteral("EDGE_DETECTION"),
                                     QStringLiteral("VIGNETTE"),
                                     QStringLiteral("NOISE"),
                                     QStringLiteral("THRESHOLD"),
                                     QStringLiteral("COLOUR_BALANCE"),
                                     QStringLiteral("SHARPEN")};

// Tolerance of the references, in units of 0..255: one rounding of the
// 8-bit target, plus one where the effect divides by alpha and multiplies
// back.
constexpr int linearTolerance = 1;
constexpr int straightColourTolerance = 2;

// Horizontal and vertical ramps, alpha rising from 40 to 255 over the tile,
// and a hard opaque square so that filters have an edge to work on.
QImage sampleTile()
{
    QImage image(64, 64, QImage::Format_ARGB32);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            const bool square = x >= 20 && x < 36 && y >= 24 && y < 40;
            const int alpha = square ? 255 : 40 + (x + y) * 215 / 126;
            image.setPixel(x, y,
                           square ? qRgba(250, 250, 240, 255) : qRgba(x * 4, y * 4, 255 - x * 2 - y, alpha));
        }
    }
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

// Each pixel of a premultiplied image has no channel above its alpha.
QString notPremultiplied(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = image.pixel(x, y);
            if (qRed(p) > qAlpha(p) || qGreen(p) > qAlpha(p) || qBlue(p) > qAlpha(p))
                return QStringLiteral("pixel %1,%2 is %3 with alpha %4")
                    .arg(x)
                    .arg(y)
                    .arg(p, 8, 16)
                    .arg(qAlpha(p));
        }
    }
    return QString();
}

// The first pixel farther than tolerance from the reference, or an empty
// text. The reference gets the input pixel and returns the premultiplied
// output; a negative alpha skips the pixel.
QString compare(const QImage& input, const QImage& output, int tolerance,
                const std::function<void(QRgb, int*, int*, int*, int*)>& reference)
{
    if (output.size() != input.size())
        return QStringLiteral("the output's size differs");
    for (int y = 0; y < input.height(); ++y) {
        for (int x = 0; x < input.width(); ++x) {
            int r = 0, g = 0, b = 0, a = 0;
            reference(input.pixel(x, y), &r, &g, &b, &a);
            if (a < 0)
                continue;
            const QRgb got = output.pixel(x, y);
            if (std::abs(qRed(got) - r) > tolerance || std::abs(qGreen(got) - g) > tolerance ||
                std::abs(qBlue(got) - b) > tolerance || qAlpha(got) != a)
                return QStringLiteral("pixel %1,%2: got %3,%4,%5,%6, want %7,%8,%9,%10")
                    .arg(x)
                    .arg(y)
                    .arg(qRed(got))
                    .arg(qGreen(got))
                    .arg(qBlue(got))
                    .arg(qAlpha(got))
                    .arg(r)
                    .arg(g)
                    .arg(b)
                    .arg(a);
        }
    }
    return QString();
}

int countPainted(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    }
    return count;
}

} // namespace

class TestShippedEffects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void filesLoadWithTheirMetadata();
    void everyEffectChangesTheTile();
    void effectsMatchReferences();
    void enginesCompileAndPaint();
    void rendererRefusesWhatItCannotApply();
    void valuesFromTextNeverSlipThrough();

private:
    QuillmereTest::GLContext m_gl;
    QString m_directory;
};

void TestShippedEffects::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    m_directory = MUtility::directory(MEnum::SystemPath, MEnum::ShaderDir);
    QVERIFY2(m_directory.startsWith(QCoreApplication::applicationDirPath()), qPrintable(m_directory));
}

void TestShippedEffects::filesLoadWithTheirMetadata()
{
    const QDir directory(m_directory);
    const QStringList files = directory.entryList({QStringLiteral("*.qsh")}, QDir::Files, QDir::Name);
    QSet<QString> ids;
    for (const QString& name : files) {
        MShader shader;
        MShaderStream stream(&shader);
        QVERIFY2(stream.load(directory.filePath(name)), qPrintable(name));
        QVERIFY2(!shader.group().isEmpty() && shader.group() != QLatin1String("basics"), qPrintable(name));
        QVERIFY2(!shader.description().isEmpty() && shader.description() != QLatin1String("brush shader"),
                 qPrintable(name));
        QCOMPARE(shader.description(), shader.description().toLower());
        QCOMPARE(name, shader.id().toLower() + QStringLiteral(".qsh"));
        // A preview of its own, not the shared default.
        shader.setPreview(QImage());
        const QImage fallback = shader.preview();
        MShader reread;
        MShaderStream(&reread).load(directory.filePath(name));
        QVERIFY2(!reread.preview().isNull() && reread.preview() != fallback, qPrintable(name));
        QCOMPARE(reread.preview().size(), QSize(128, 128));
        QVERIFY2(reread.parseParams(), qPrintable(name + QLatin1Char(' ') + reread.compileMessages()));
        QVERIFY2(reread.paramCount() > 0, qPrintable(name));
        // Sliders open on their default, within a range that is one.
        for (int i = 0; i < reread.paramCount(); ++i) {
            const MField* field = reread.param(i);
            if (field->type != QVariant::Double && (field->type != QVariant::Int || field->hasPickList()))
                continue;
            const double value = field->defaultValue.toDouble();
            QVERIFY2(field->minimum() < field->maximum() && value >= field->minimum() &&
                         value <= field->maximum(),
                     qPrintable(name + QLatin1Char(' ') + QString::fromLatin1(field->name)));
        }
        QCOMPARE(reread.type(),
                 engineIds.contains(reread.id()) ? int(MShader::BrushShader) : int(MShader::EffectShader));
        ids.insert(shader.id());
    }
    for (const QString& id : effectIds + engineIds)
        QVERIFY2(ids.contains(id), qPrintable(id + QStringLiteral(" is not shipped")));

    // The index names every file once, effects before engines.
    QFile index(directory.filePath(QStringLiteral("index.qmi")));
    QVERIFY(index.open(QIODevice::ReadOnly));
    QStringList order;
    for (const QString& line :
         QString::fromUtf8(index.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        order << line.section(QLatin1Char('#'), 0, 0).trimmed();
    QCOMPARE(QSet<QString>(order.begin(), order.end()), ids);
    QCOMPARE(order.size(), ids.size());
    int lastEffect = -1;
    int firstEngine = order.size();
    for (int i = 0; i < order.size(); ++i) {
        if (engineIds.contains(order.at(i)))
            firstEngine = qMin(firstEngine, i);
        else
            lastEffect = i;
    }
    QVERIFY(lastEffect < firstEngine);

    // The list reads the same directory.
    for (const QString& id : effectIds + engineIds)
        QVERIFY2(MShaderList::instance()->shaderById(id), qPrintable(id));
}

void TestShippedEffects::everyEffectChangesTheTile()
{
    const QImage input = sampleTile();
    for (const QString& id : effectIds) {
        MShader* shader = MShaderList::instance()->shaderById(id);
        QVERIFY2(shader, qPrintable(id));
        QString error;
        QVERIFY2(MEffectRenderer::compile(shader, &error), qPrintable(id + QLatin1Char(' ') + error));
        MEffectRenderer renderer;
        const QImage output = renderer.apply(id, input);
        QVERIFY2(!output.isNull(), qPrintable(id + QLatin1Char(' ') + renderer.errorString()));
        QCOMPARE(output.size(), input.size());
        const QString wrong = notPremultiplied(output);
        QVERIFY2(wrong.isEmpty(), qPrintable(id + QLatin1Char(' ') + wrong));
        int changed = 0;
        for (int y = 0; y < input.height(); ++y) {
            for (int x = 0; x < input.width(); ++x)
                changed += output.pixel(x, y) != input.pixel(x, y) ? 1 : 0;
        }
        QVERIFY2(changed > input.width() * input.height() / 20,
                 qPrintable(QStringLiteral("%1 changed only %2 pixels").arg(id).arg(changed)));
        if (alphaKeepingIds.contains(id)) {
            const QString alpha = compare(input, output, 255, [](QRgb p, int* r, int* g, int* b, int* a) {
                *r = *g = *b = 128;
                *a = qAlpha(p);
            });
            QVERIFY2(alpha.isEmpty(), qPrintable(id + QStringLiteral(" changed alpha: ") + alpha));
        }
    }
}

void TestShippedEffects::effectsMatchReferences()
{
    const QImage input = sampleTile();
    MEffectRenderer renderer;

    QImage output = renderer.apply(QStringLiteral("INVERT"), input);
    QString wrong = compare(input, output, linearTolerance, [](QRgb p, int* r, int* g, int* b, int* a) {
        *a = qAlpha(p);
        *r = *a - qRed(p);
        *g = *a - qGreen(p);
        *b = *a - qBlue(p);
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("invert: ") + wrong));

    // Half strength: the midpoint of the colour and its inverse.
    output = renderer.apply(QStringLiteral("INVERT"), input, {{"amount", 0.5}});
    wrong = compare(input, output, linearTolerance, [](QRgb p, int* r, int* g, int* b, int* a) {
        *a = qAlpha(p);
        *r = *g = *b = qRound(*a * 0.5);
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("invert 0.5: ") + wrong));

    output = renderer.apply(QStringLiteral("GREYSCALE"), input);
    wrong = compare(input, output, linearTolerance, [](QRgb p, int* r, int* g, int* b, int* a) {
        *a = qAlpha(p);
        *r = *g = *b = qRound(0.2126 * qRed(p) + 0.7152 * qGreen(p) + 0.0722 * qBlue(p));
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("greyscale: ") + wrong));

    // Threshold on straight luminance, dark and light colours set: pixels
    // within the rounding of the level are left out.
    output = renderer.apply(QStringLiteral("THRESHOLD"), input,
                            {{"level", 0.4}, {"dark", QColor(0, 0, 255)}, {"light", QColor(255, 255, 0)}});
    wrong = compare(input, output, linearTolerance, [](QRgb p, int* r, int* g, int* b, int* a) {
        *a = qAlpha(p);
        const double l = (0.2126 * qRed(p) + 0.7152 * qGreen(p) + 0.0722 * qBlue(p)) / *a;
        if (std::abs(l - 0.4) < 0.02) {
            *a = -1;
            return;
        }
        *r = *g = l >= 0.4 ? *a : 0;
        *b = l >= 0.4 ? 0 : *a;
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("threshold: ") + wrong));

    // Brightness 0.2 without contrast adds 0.2 to the straight colour.
    output = renderer.apply(QStringLiteral("BRIGHTNESS_CONTRAST"), input,
                            {{"brightness", 0.2}, {"contrast", 0.0}});
    wrong = compare(input, output, straightColourTolerance, [](QRgb p, int* r, int* g, int* b, int* a) {
        *a = qAlpha(p);
        const auto lift = [&](int c) { return qRound(qBound(0.0, c / double(*a) + 0.2, 1.0) * *a); };
        *r = lift(qRed(p));
        *g = lift(qGreen(p));
        *b = lift(qBlue(p));
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("brightness: ") + wrong));

    // Blur and pixelate leave a flat picture flat, away from its border.
    QImage flat(40, 40, QImage::Format_ARGB32_Premultiplied);
    flat.fill(qRgba(60, 90, 120, 200));
    for (const QString& id : {QStringLiteral("BLUR"), QStringLiteral("PIXELATE")}) {
        output = renderer.apply(id, flat);
        wrong = compare(flat, output, linearTolerance, [&](QRgb p, int* r, int* g, int* b, int* a) {
            *r = qRed(p);
            *g = qGreen(p);
            *b = qBlue(p);
            *a = qAlpha(p);
        });
        // The picture's border meets transparency, which a blur draws in.
        if (id == QLatin1String("PIXELATE"))
            QVERIFY2(wrong.isEmpty(), qPrintable(id + QStringLiteral(": ") + wrong));
        else
            QCOMPARE(output.pixel(20, 20), flat.pixel(20, 20));
    }
}

void TestShippedEffects::enginesCompileAndPaint()
{
    QImage plain;
    {
        MBrush brush;
        brush.setRadius(10.0);
        plain = MBrushPreview::render(brush, QSize(128, 128), QColor(40, 60, 140), Qt::white);
    }
    QVERIFY(countPainted(plain) > 0);
    for (const QString& id : engineIds) {
        MShader* shader = MShaderList::instance()->shaderById(id);
        QVERIFY2(shader && shader->type() == MShader::BrushShader, qPrintable(id));
        QString error;
        QVERIFY2(MEffectRenderer::compile(shader, &error), qPrintable(id + QLatin1Char(' ') + error));
        MBrush brush;
        brush.setRadius(10.0);
        brush.set_shaderId(id);
        QCOMPARE(brush.shaderId(), id);
        const QImage preview = MBrushPreview::render(brush, QSize(128, 128), QColor(40, 60, 140), Qt::white);
        QVERIFY2(countPainted(preview) > 200,
                 qPrintable(QStringLiteral("%1 painted %2 pixels").arg(id).arg(countPainted(preview))));
        // Its own look, not the default stamp's.
        QVERIFY2(preview != plain, qPrintable(id));
        // An engine is not an effect.
        MEffectRenderer renderer;
        QVERIFY(renderer.apply(id, sampleTile()).isNull());
        QCOMPARE(renderer.errorString(), QStringLiteral("%1 is a brush engine, not an effect").arg(id));
    }
    QVERIFY(QOpenGLContext::currentContext() == m_gl.context());
}

void TestShippedEffects::rendererRefusesWhatItCannotApply()
{
    QVERIFY(m_gl.makeCurrent());
    const QImage input = sampleTile();
    MEffectRenderer renderer;

    QVERIFY(renderer.apply(QStringLiteral("NO_SUCH_EFFECT"), input).isNull());
    QCOMPARE(renderer.errorString(), QStringLiteral("unknown effect: NO_SUCH_EFFECT"));
    QVERIFY(renderer.apply(QStringLiteral("INVERT"), QImage()).isNull());
    QCOMPARE(renderer.errorString(), QStringLiteral("the image is empty"));
    QVERIFY(renderer.apply(QStringLiteral("INVERT"), input, {{"strength", 1.0}}).isNull());
    QCOMPARE(renderer.errorString(), QStringLiteral("the effect INVERT has no parameter strength"));
    QVERIFY(renderer.apply(QStringLiteral("THRESHOLD"), input, {{"dark", 3.0}}).isNull());
    QCOMPARE(renderer.errorString(),
             QStringLiteral("bad value for dark: a value of type double is not a colour"));
    QVERIFY(renderer.apply(QStringLiteral("POSTERIZE"), input, {{"levels", 2.5}}).isNull());
    QVERIFY(renderer.errorString().startsWith(QStringLiteral("bad value for levels")));
    QVERIFY(renderer.apply(QStringLiteral("POSTERIZE"), input, {{"levels", QStringLiteral("99")}}).isNull());
    QCOMPARE(renderer.errorString(), QStringLiteral("bad value for levels: 99 is out of the range 2 to 32"));

    // Declarations that don't parse, and a body the driver refuses: both are
    // reported, where the view would quietly draw "basic".
    auto broken = std::make_unique<MShader>();
    broken->setSource(QStringLiteral("@params\nfloat x = 1.0 min = ;\n@main\nf_color = vec4(1.0);"));
    const QString brokenId = MShaderList::instance()->addShader(std::move(broken))->id();
    QVERIFY(renderer.apply(brokenId, input).isNull());
    QVERIFY2(
        renderer.errorString().startsWith(QStringLiteral("the effect %1 doesn't compile:\n").arg(brokenId)) &&
            renderer.errorString().contains(QStringLiteral("Errors during parameters compilation:")),
        qPrintable(renderer.errorString()));
    auto badGlsl = std::make_unique<MShader>();
    badGlsl->setSource(QStringLiteral("@main\nf_color = vec4(undeclaredThing);"));
    const QString badId = MShaderList::instance()->addShader(std::move(badGlsl))->id();
    QVERIFY(renderer.apply(badId, input).isNull());
    QVERIFY2(renderer.errorString().startsWith(
                 QStringLiteral("the effect %1 doesn't compile with the graphics driver:\n").arg(badId)) &&
                 renderer.errorString().contains(QStringLiteral("undeclaredThing")),
             qPrintable(renderer.errorString()));
    QString error;
    QVERIFY(!MEffectRenderer::compile(MShaderList::instance()->shaderById(badId), &error));
    QVERIFY2(error.contains(QStringLiteral("undeclaredThing")), qPrintable(error));

    // A good effect of the test's own, with values of every kind, gives what
    // its body says; the caller's context is current afterwards.
    auto own = std::make_unique<MShader>();
    own->setSource(QStringLiteral(
        "@params\ncolor tint = rgb(0, 0, 0);\nbool useTint = false;\nint shift = 0 min = 0 max = 10;\n"
        "@main\nvec4 c = texture(f_currentLayerTexture, v_texCoords0);\n"
        "f_color = useTint ? vec4(tint.rgb * c.a, c.a) : c;\n"
        "f_color.r = shift == 4 ? c.a : f_color.r;"));
    const QString ownId = MShaderList::instance()->addShader(std::move(own))->id();
    const QImage tinted =
        renderer.apply(ownId, input, {{"tint", QStringLiteral("#00ff00")}, {"useTint", 1}, {"shift", 4.0}});
    QVERIFY2(!tinted.isNull(), qPrintable(renderer.errorString()));
    QVERIFY(renderer.errorString().isEmpty());
    const QString wrong = compare(input, tinted, linearTolerance, [](QRgb p, int* r, int* g, int* b, int* a) {
        *a = qAlpha(p);
        *r = *a;
        *g = *a;
        *b = 0;
    });
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    QVERIFY(QOpenGLContext::currentContext() == m_gl.context());

    // A failed build is not left behind: the next canvas tries again, so a
    // fixed source works at once.
    MShaderList::instance()->shaderById(badId)->setSource(QStringLiteral("@main\nf_color = vec4(0.0);"));
    QVERIFY2(!renderer.apply(badId, input).isNull(), qPrintable(renderer.errorString()));
    for (const QString& id : {brokenId, badId, ownId})
        MShaderList::instance()->removeShader(id);
}

void TestShippedEffects::valuesFromTextNeverSlipThrough()
{
    MShader shader;
    shader.setSource(
        QStringLiteral("@params\nfloat f = 0.5 min = -1.0 max = 2.0;\nint i = 3 min = 1 max = 9;\n"
                       "bool b = true;\ncolor c = rgb(1, 2, 3);\n"
                       "enum e = 1 enum values = 1 \"one\" 5 \"five\";\n@main\n"));
    QVERIFY(shader.parseParams());
    const MField* f = shader.param(QByteArrayLiteral("f"));
    const MField* i = shader.param(QByteArrayLiteral("i"));
    const MField* b = shader.param(QByteArrayLiteral("b"));
    const MField* c = shader.param(QByteArrayLiteral("c"));
    const MField* e = shader.param(QByteArrayLiteral("e"));
    QVERIFY(f && i && b && c && e);

    const struct
    {
        const MField* field;
        const char* text;
        QVariant want;
        const char* error;
    } cases[] = {
        {f, "1.25", 1.25, ""},
        {f, " -1 ", -1.0, ""},
        {f, "2.5", QVariant(), "2.5 is out of the range -1 to 2"},
        {f, "1,5", QVariant(), "\"1,5\" is not a number"},
        {f, "nan", QVariant(), "\"nan\" is not a number"},
        {f, "inf", QVariant(), "\"inf\" is not a number"},
        {i, "9", 9, ""},
        {i, "0", QVariant(), "0 is out of the range 1 to 9"},
        {i, "3.5", QVariant(), "\"3.5\" is not a whole number"},
        {b, "TRUE", true, ""},
        {b, "0", false, ""},
        {b, "yes", QVariant(), "\"yes\" is not true, false, 1 or 0"},
        {c, "#A0b1C2", QColor(0xa0, 0xb1, 0xc2), ""},
        {c, "#abc", QVariant(), "\"#abc\" is not a colour of the form #rrggbb"},
        {c, "red", QVariant(), "\"red\" is not a colour of the form #rrggbb"},
        {e, "5", 5, ""},
        {e, "2", QVariant(), "2 is none of 1 (one), 5 (five)"},
    };
    for (const auto& k : cases) {
        QString error;
        const QVariant got = MEffectRenderer::valueFromText(*k.field, QString::fromLatin1(k.text), &error);
        QCOMPARE(got, k.want);
        QCOMPARE(error, QString::fromLatin1(k.error));
    }

    // Random text: a value comes back only with the field's type and within
    // its range; anything else comes back with a reason.
    QRandomGenerator random(20240611);
    const QString alphabet = QStringLiteral("0123456789.-+e#aAfFtrueTRUEnx ,\t\xe9");
    for (int n = 0; n < 20000; ++n) {
        QString text;
        const int length = int(random.bounded(12));
        for (int k = 0; k < length; ++k)
            text += alphabet.at(int(random.bounded(alphabet.size())));
        for (const MField* field : {f, i, b, c, e}) {
            QString error;
            const QVariant got = MEffectRenderer::valueFromText(*field, text, &error);
            if (!got.isValid()) {
                QVERIFY2(!error.isEmpty(), qPrintable(text));
                continue;
            }
            QVERIFY2(error.isEmpty(), qPrintable(text));
            QCOMPARE(int(got.type()), field->type);
            if (field == f || field == i)
                QVERIFY2(got.toDouble() >= field->minimum() && got.toDouble() <= field->maximum(),
                         qPrintable(text));
            if (field == e)
                QVERIFY(got.toInt() == 1 || got.toInt() == 5);
        }
    }
}

QUILLMERE_TEST_MAIN(TestShippedEffects)
#include "tst_shippedeffects.moc"
