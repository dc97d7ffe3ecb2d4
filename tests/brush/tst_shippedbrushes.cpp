// The brushes that ship beside the program: every file reads, names itself
// after its file, keeps its settings and curves in the ranges of the
// dictionaries, is the kind of brush its name promises, and still draws what
// its stored thumbnail shows.

#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "app/menum.h"
#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushinputinfolist.h"
#include "brush/mbrushpreview.h"
#include "brush/mbrushsettinginfolist.h"
#include "brush/mbrushstream.h"
#include "brush/mcurve.h"
#include "effects/mfield.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mvalues.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaEnum>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <memory>

namespace {

const QSize previewSize(150, 60);

const QStringList expectedIds = {
    QStringLiteral("PENCIL"),     QStringLiteral("INK_PEN"),     QStringLiteral("CALLIGRAPHY"),
    QStringLiteral("MARKER"),     QStringLiteral("PIXEL"),       QStringLiteral("HATCHING"),
    QStringLiteral("HARD_ROUND"), QStringLiteral("SOFT_ROUND"),  QStringLiteral("AIRBRUSH"),
    QStringLiteral("WET_BRUSH"),  QStringLiteral("BLENDER"),     QStringLiteral("BRISTLE"),
    QStringLiteral("CHALK"),      QStringLiteral("CHARCOAL"),    QStringLiteral("SPRAY"),
    QStringLiteral("GLOW"),       QStringLiteral("HARD_ERASER"), QStringLiteral("SOFT_ERASER")};
const QStringList erasers = {QStringLiteral("HARD_ERASER"), QStringLiteral("SOFT_ERASER")};

// Brushes a painter drives with the pen's pressure, in size or in paint.
const QStringList pressureBrushes = {
    QStringLiteral("PENCIL"),     QStringLiteral("INK_PEN"),     QStringLiteral("CALLIGRAPHY"),
    QStringLiteral("HARD_ROUND"), QStringLiteral("SOFT_ROUND"),  QStringLiteral("AIRBRUSH"),
    QStringLiteral("WET_BRUSH"),  QStringLiteral("BLENDER"),     QStringLiteral("CHALK"),
    QStringLiteral("CHARCOAL"),   QStringLiteral("SOFT_ERASER"), QStringLiteral("BRISTLE")};

// Brushes without chance in their dynamics, whose thumbnail is drawn the same
// at every rendering.
const QStringList steadyBrushes = {QStringLiteral("PENCIL"), QStringLiteral("HARD_ROUND"),
                                   QStringLiteral("CALLIGRAPHY")};

struct Shipped
{
    QString fileName;
    QJsonObject json;
    std::unique_ptr<MBrush> brush;
};

int paintedPixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    return count;
}

// A thumbnail holds a stroke: some paint, and not a box painted all over, as a
// failed read-back gives.
bool isStroke(const QImage& image)
{
    const int painted = paintedPixels(image);
    return painted > 100 && painted < image.width() * image.height() / 2;
}

// The values a setting can take through its curves from its base value: the
// curves multiply or add their y range in turn.
QPair<double, double> reachable(const MBrush& brush, int setting)
{
    double low = brush.baseValue(setting);
    double high = low;
    for (const MCurve* curve : brush.curves(setting)) {
        double yLow = curve->yMin();
        double yHigh = curve->yMax();
        if (curve->interpolationType() == MCurve::Sinus)
            yLow = 2 * curve->yMin() - curve->yMax();
        if (curve->interpolationType() == MCurve::Add) {
            low += yLow;
            high += yHigh;
        } else {
            const double products[] = {low * yLow, low * yHigh, high * yLow, high * yHigh};
            low = *std::min_element(std::begin(products), std::end(products));
            high = *std::max_element(std::begin(products), std::end(products));
        }
    }
    return {low, high};
}

struct Difference
{
    double mean = 255;
    int farOff = 0;
    bool isSmall(const QSize& size) const
    {
        return mean < 1.0 && farOff <= size.width() * size.height() / 200;
    }
};

// The largest channel difference of each pixel: its mean, and how many pixels
// are far off.
Difference compare(const QImage& first, const QImage& second)
{
    Difference result;
    if (first.size() != second.size() || first.isNull())
        return result;
    const QImage a = first.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage b = second.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    double total = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const int difference = qMax(qMax(qAbs(qRed(p) - qRed(q)), qAbs(qGreen(p) - qGreen(q))),
                                        qMax(qAbs(qBlue(p) - qBlue(q)), qAbs(qAlpha(p) - qAlpha(q))));
            total += difference;
            result.farOff += difference > 32 ? 1 : 0;
        }
    }
    result.mean = total / (a.width() * a.height());
    return result;
}

} // namespace

class TestShippedBrushes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyFileReadsAndNamesItself();
    void valuesAndCurvesStayInRange();
    void eachBrushIsWhatItsNameSays();
    void thumbnailsStillMatchTheEngine();

private:
    MBrush* brush(const QString& id) const;

    QuillmereTest::GLContext m_gl;
    QString m_directory;
    std::map<QString, Shipped> m_shipped;
};

void TestShippedBrushes::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    m_directory = MUtility::directory(MEnum::SystemPath, MEnum::BrushDir);
    const QStringList files = QDir(m_directory).entryList({QStringLiteral("*.qmb")}, QDir::Files, QDir::Name);
    QVERIFY2(!files.isEmpty(), qPrintable(m_directory));
    for (const QString& name : files) {
        Shipped shipped;
        shipped.fileName = m_directory + name;
        QFile file(shipped.fileName);
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(name));
        shipped.json = QJsonDocument::fromJson(file.readAll()).object();
        shipped.brush = std::make_unique<MBrush>();
        MBrushStream stream(shipped.brush.get());
        QVERIFY2(stream.load(shipped.fileName), qPrintable(name));
        m_shipped[QFileInfo(name).completeBaseName().toUpper()] = std::move(shipped);
    }
}

MBrush* TestShippedBrushes::brush(const QString& id) const
{
    const auto found = m_shipped.find(id);
    return found == m_shipped.end() ? nullptr : found->second.brush.get();
}

void TestShippedBrushes::everyFileReadsAndNamesItself()
{
    for (const auto& [stem, shipped] : m_shipped) {
        const MBrush& b = *shipped.brush;
        QCOMPARE(b.id(), stem);
        // Group and description are catalogue keys: lower case in the file.
        for (const QString& key : {QStringLiteral("group"), QStringLiteral("description")}) {
            const QString text = shipped.json.value(key).toString();
            QVERIFY2(!text.trimmed().isEmpty() && text == text.toLower(),
                     qPrintable(stem + QLatin1Char(' ') + key));
        }
        QVERIFY(!b.group().isEmpty() && !b.description().isEmpty());
        QCOMPARE(b.preview().size(), previewSize);
        QVERIFY2(isStroke(b.preview()), qPrintable(stem));
    }
    for (const QString& id : expectedIds)
        QVERIFY2(brush(id), qPrintable(id + QStringLiteral(" is not shipped")));

    // The order lists every brush once, with its group and description, and
    // puts the erasers last.
    QFile index(m_directory + QStringLiteral("index.qmi"));
    QVERIFY(index.open(QIODevice::ReadOnly));
    QStringList order;
    for (const QString& line :
         QString::fromUtf8(index.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QString id = line.section(QLatin1Char('#'), 0, 0).trimmed();
        const MBrush* b = brush(id);
        QVERIFY2(b, qPrintable(line));
        QCOMPARE(line.section(QLatin1Char('#'), 1).trimmed(),
                 b->group() + QLatin1Char('/') + b->description());
        order << id;
    }
    QCOMPARE(int(order.size()), int(m_shipped.size()));
    QCOMPARE(order.mid(order.size() - erasers.size()), erasers);
}

void TestShippedBrushes::valuesAndCurvesStayInRange()
{
    const MBrushSettingInfoList* settings = MBrushSettingInfoList::instance();
    const MBrushInputInfoList* inputs = MBrushInputInfoList::instance();
    for (const auto& [stem, shipped] : m_shipped) {
        const MBrush& b = *shipped.brush;
        for (const MField* field : settings->fields()) {
            const QString where = stem + QLatin1Char('.') + QString::fromUtf8(field->name);
            const double value = b.baseValue(field->id);
            QVERIFY2(value >= field->minimum() && value <= field->maximum(), qPrintable(where));
            if (field->type == QVariant::Bool)
                QVERIFY2(value == 0.0 || value == 1.0, qPrintable(where));
            if (field->type == QVariant::Int) {
                QVERIFY2(value == std::trunc(value), qPrintable(where));
                const QMetaEnum meta = MEnum::metaEnum(QString::fromLatin1(field->enumName));
                if (meta.isValid())
                    QVERIFY2(meta.valueToKey(int(value)), qPrintable(where));
            }
            if (b.curves(field->id).isEmpty())
                continue;
            // A curve on a setting without a curve button does nothing the
            // painter can see or change.
            QVERIFY2(field->hasCurve, qPrintable(where));
            const QPair<double, double> range = reachable(b, field->id);
            QVERIFY2(
                range.first >= field->minimum() && range.second <= field->maximum(),
                qPrintable(
                    QStringLiteral("%1 reaches %2 to %3").arg(where).arg(range.first).arg(range.second)));

            // The reader clamps points into the unit square: the file itself is checked.
            const QJsonObject object = shipped.json.value(QString::fromUtf8(field->name)).toObject();
            for (const MCurve* curve : b.curves(field->id)) {
                const QByteArray inputKey = inputs->info(curve->input()).key;
                QVERIFY2(curve->interpolationType() >= MCurve::Add &&
                             curve->interpolationType() <= MCurve::Sinus,
                         qPrintable(where));
                QVERIFY2(curve->pointCount() >= 2 && curve->pointCount() <= MCurve::maxKnots - 2,
                         qPrintable(where));
                const QJsonArray points = object.value(QString::fromUtf8(inputKey))
                                              .toObject()
                                              .value(QStringLiteral("points"))
                                              .toArray();
                QCOMPARE(int(points.size()), curve->pointCount());
                for (const QJsonValue& point : points) {
                    const double x = point.toArray().at(0).toDouble(-1);
                    const double y = point.toArray().at(1).toDouble(-1);
                    QVERIFY2(x >= 0 && x <= 1 && y >= 0 && y <= 1,
                             qPrintable(where + QLatin1Char('.') + inputKey));
                }
            }
        }
    }
}

void TestShippedBrushes::eachBrushIsWhatItsNameSays()
{
    for (const auto& [stem, shipped] : m_shipped)
        QVERIFY2(shipped.brush->eraser() == erasers.contains(stem), qPrintable(stem));

    const MBrush* calligraphy = brush(QStringLiteral("CALLIGRAPHY"));
    QVERIFY(calligraphy);
    QVERIFY(calligraphy->ratio() < 1.0);
    QVERIFY(calligraphy->angleType() == MEnum::FollowDirectionAngle ||
            calligraphy->hasCurve(MEnum::bsAngle, MEnum::biDirectionX) ||
            calligraphy->hasCurve(MEnum::bsAngle, MEnum::biDirectionY));

    // Grain: the textures hold both paper showing through and full paint.
    for (const QString& id : {QStringLiteral("CHALK"), QStringLiteral("CHARCOAL")}) {
        const MBrush* b = brush(id);
        QVERIFY(b);
        const QImage texture = b->texture();
        QVERIFY2(!texture.isNull(), qPrintable(id));
        int open = 0;
        int full = 0;
        const QPoint centre(texture.width() / 2, texture.height() / 2);
        for (int y = centre.y() - texture.height() / 4; y < centre.y() + texture.height() / 4; ++y) {
            for (int x = centre.x() - texture.width() / 4; x < centre.x() + texture.width() / 4; ++x) {
                const int alpha = qAlpha(texture.pixel(x, y));
                open += alpha < 64 ? 1 : 0;
                full += alpha > 192 ? 1 : 0;
            }
        }
        QVERIFY2(open > 0 && full > open,
                 qPrintable(QStringLiteral("%1: %2 open, %3 full").arg(id).arg(open).arg(full)));
    }

    const MBrush* wet = brush(QStringLiteral("WET_BRUSH"));
    QVERIFY(wet);
    QVERIFY(wet->colorAbsorbtionRate() > 0.0 && wet->colorFlowingRate() > 0.0);
    // The blender lays only what it picked up, and only on paint.
    const MBrush* blender = brush(QStringLiteral("BLENDER"));
    QVERIFY(blender);
    QVERIFY(blender->colorAbsorbtionRate() > 0.0 && blender->colorFlowingRate() < 1.0);

    const MBrush* spray = brush(QStringLiteral("SPRAY"));
    QVERIFY(spray);
    QVERIFY(spray->density() < 0.5 && spray->noise() > 0.0);

    const MBrush* pixel = brush(QStringLiteral("PIXEL"));
    QVERIFY(pixel);
    QCOMPARE(pixel->baseValue(MEnum::bsAntialiasing), double(MEnum::NoAntialiasing));
    QCOMPARE(pixel->hardness(), 1.0);
    QVERIFY(pixel->radius() <= 2.0);

    // Pressure makes the stroke bigger or fuller, never less.
    for (const QString& id : pressureBrushes) {
        const MBrush* b = brush(id);
        QVERIFY2(b, qPrintable(id));
        QVector<MCurve*> pressure;
        for (int setting : {MEnum::bsRadius, MEnum::bsFlow, MEnum::bsDensity})
            if (MCurve* curve = b->curveOrNull(setting, MEnum::biPressure))
                pressure << curve;
        QVERIFY2(!pressure.isEmpty(), qPrintable(id));
        for (const MCurve* curve : pressure)
            QVERIFY2(curve->apply(1.0, 1.0) > curve->apply(0.2, 1.0), qPrintable(id));
    }

    const std::pair<const char*, const char*> engines[] = {
        {"HATCHING", "HATCHING"}, {"BRISTLE", "BRISTLE"}, {"GLOW", "GLOW"}};
    for (const auto& [id, engine] : engines) {
        const MBrush* b = brush(QString::fromLatin1(id));
        QVERIFY(b);
        QCOMPARE(b->shaderId(), QString::fromLatin1(engine));
    }
    // A brush naming an engine that isn't shipped would draw with the
    // fallback. The file keeps a value for every parameter of the engine, read
    // back in the parameter's type and range.
    for (const auto& [stem, shipped] : m_shipped) {
        const QString engine = shipped.brush->shaderId();
        if (engine.isEmpty())
            continue;
        MShader* shader = MShaderList::instance()->shaderById(engine);
        QVERIFY2(shader && shader->parseParams(), qPrintable(stem + QStringLiteral(": no engine ") + engine));
        QSet<QString> inFile;
        for (const QJsonValue& entry : shipped.json.value(QStringLiteral("shaderValues")).toArray())
            inFile.insert(entry.toObject().value(QStringLiteral("paramName")).toString());
        for (int i = 0; i < shader->paramCount(); ++i) {
            const MField* param = shader->param(i);
            const QString where = stem + QLatin1Char('.') + QString::fromUtf8(param->name);
            QVERIFY2(inFile.contains(QString::fromUtf8(param->name)), qPrintable(where));
            const QVariant value = shipped.brush->shaderValues()->value(param->name);
            // An engine's defaults are floats, values read from a file doubles.
            const int type =
                int(value.type()) == QMetaType::Float ? int(QVariant::Double) : int(value.type());
            QVERIFY2(type == param->type,
                     qPrintable(where + QLatin1Char(' ') + QString::fromLatin1(value.typeName())));
            if (param->type == QVariant::Double || param->type == QVariant::Int)
                QVERIFY2(value.toDouble() >= param->minimum() && value.toDouble() <= param->maximum(),
                         qPrintable(where));
        }
    }
}

void TestShippedBrushes::thumbnailsStillMatchTheEngine()
{
    QVERIFY(m_gl.makeCurrent());
    for (const auto& [stem, shipped] : m_shipped) {
        const QImage now = MBrushPreview::render(*shipped.brush, previewSize, Qt::darkGray, Qt::white);
        QVERIFY2(isStroke(now), qPrintable(stem));
        if (!steadyBrushes.contains(stem))
            continue;
        // A change of the engine that alters a shipped brush shows here; the
        // tolerance is for rounding between drivers.
        const Difference difference = compare(now, shipped.brush->preview());
        QVERIFY2(difference.isSmall(now.size()),
                 qPrintable(QStringLiteral("%1: mean difference %2, %3 pixels far off")
                                .arg(stem)
                                .arg(difference.mean)
                                .arg(difference.farOff)));
    }
    // And the comparison sees a change: the hard round at a smaller size.
    const MBrush* hardRound = brush(QStringLiteral("HARD_ROUND"));
    QVERIFY(hardRound);
    MBrush changed;
    changed.assign(*hardRound);
    changed.setRadius(5.0);
    const QImage other = MBrushPreview::render(changed, previewSize, Qt::darkGray, Qt::white);
    QVERIFY(!compare(other, hardRound->preview()).isSmall(previewSize));
}

QUILLMERE_TEST_MAIN(TestShippedBrushes)
#include "tst_shippedbrushes.moc"
