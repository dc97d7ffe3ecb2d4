#include "support/logwatch.h"
#include "support/testenvironment.h"

#include "app/menum.h"
#include "brush/mbrush.h"
#include "brush/mbrushsettinginfolist.h"
#include "brush/mbrushstream.h"
#include "brush/mcurve.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mvalues.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTranslator>

#include <memory>

namespace {

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& data)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

QImage patternImage(int width, int height, int seed)
{
    QImage image(width, height, QImage::Format_RGBA8888_Premultiplied);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixelColor(x, y, QColor((x * 13 + seed) % 256, (y * 29) % 256, (x + y) % 256, 255));
    }
    return image;
}

quint32 crc32(const QByteArray& data)
{
    quint32 crc = 0xffffffffu;
    for (char c : data) {
        crc ^= quint32(uchar(c));
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

// A real PNG whose header claims another size, with a valid checksum.
QByteArray pngClaiming(quint32 width, quint32 height)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    patternImage(4, 4, 0).save(&buffer, "PNG");
    auto put = [&png](int at, quint32 v) {
        for (int i = 0; i < 4; ++i)
            png[at + i] = char((v >> (24 - 8 * i)) & 0xff);
    };
    // Signature (8), length (4), then "IHDR" at 12 and its 13 data bytes at 16.
    put(16, width);
    put(20, height);
    put(29, crc32(png.mid(12, 17)));
    return png;
}

QJsonObject parse(const QByteArray& data)
{
    return QJsonDocument::fromJson(data).object();
}

// Answers the "Brushes" context from a small table and records what it was asked.
class TableTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char* = nullptr,
                      int = -1) const override
    {
        asked.append(QString::fromUtf8(context) + QLatin1Char('/') + QString::fromUtf8(sourceText));
        if (qstrcmp(context, "Brushes") != 0)
            return QString();
        if (qstrcmp(sourceText, "my group") == 0)
            return QStringLiteral("Meine Gruppe");
        if (qstrcmp(sourceText, "basics") == 0)
            return QStringLiteral("Grundlagen");
        return QString();
    }
    bool isEmpty() const override { return false; }
    mutable QStringList asked;
};

} // namespace

class TestBrushStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writtenAndReadBackEqual();
    void missingKeysAndWrongTypesGiveDefaults();
    void groupAndDescriptionAreTranslatedOnRead();
    void badInputIsRefusedOrReadAsEmpty();
    void mutatedFilesNeverCrash();

private:
    QTemporaryDir m_dir;
};

void TestBrushStream::writtenAndReadBackEqual()
{
    auto effect = std::make_unique<MShader>();
    effect->setSource(
        QStringLiteral("@params\nfloat strength = 0.5; bool invert = false; color tint = rgb(1, 2, 3);"));
    const QString engineId = effect->id();
    MShaderList::instance()->addShader(std::move(effect));

    MBrush source;
    source.set_id(QStringLiteral(" abc-Def "));
    source.set_group(QStringLiteral(" Ink Brushes "));
    source.set_description(QStringLiteral("My Brush"));
    source.setRadius(42.5);
    source.setEraser(true);
    source.setShape(2);
    source.setAngle(-33.25);
    source.setQuickSettings({MEnum::bsHardness, MEnum::bsRadius, MEnum::bsEraser});
    MCurve* pressure = source.curve(MEnum::bsRadius, MEnum::biPressure);
    pressure->setModulo(0.75);
    pressure->setRange(pressure->xMin(), pressure->xMax(), 2.0, 5.0);
    pressure->addPoint({0.0, 0.25});
    pressure->addPoint({0.4, 0.9});
    pressure->addPoint({1.0, 0.1});
    pressure->setInterpolationType(MCurve::Add);
    source.curve(MEnum::bsAngle, MEnum::biXTilt)->setInitType(MCurve::GaussianCurve);
    source.set_shaderId(engineId);
    source.shaderValues()->setValue("strength", 0.125);
    source.shaderValues()->setValue("invert", true);
    source.shaderValues()->setValue("tint", QColor(10, 20, 30));
    source.shaderValues()->setValue("odd", QPointF(1, 2));
    source.setTexture(patternImage(20, 10, 7));
    source.setRatio(3.0);
    source.setPreview(patternImage(150, 60, 3));

    const QString first = m_dir.filePath(QStringLiteral("first.qmb"));
    QuillmereTest::LogWatch log;
    MBrushStream writer(&source);
    QVERIFY(writer.save(first));
    QVERIFY2(log.added().trimmed().endsWith(
                 QLatin1String("MBrushStream::save: System error: QPointF: invalid param type.")),
             qPrintable(log.added()));

    const QJsonObject json = parse(readFile(first));
    QCOMPARE(json.value("version").toInt(), 100);
    QCOMPARE(json.value("id").toString(), QStringLiteral(" abc-Def "));
    QCOMPARE(json.value("group").toString(), QStringLiteral("ink brushes"));
    QCOMPARE(json.value("description").toString(), QStringLiteral("my brush"));
    QCOMPARE(json.value("shaderId").toString(), engineId.trimmed().toUpper());
    QCOMPARE(json.value("quickSettings").toArray(), (QJsonArray{"hardness", "radius", "eraser"}));
    QCOMPARE(json.value("ratio").toObject().value("value").toDouble(), 3.0);
    const QJsonArray shaderValues = json.value("shaderValues").toArray();
    QCOMPARE(shaderValues.size(), 3);
    QCOMPARE(shaderValues.at(0).toObject().value("paramName").toString(), QStringLiteral("invert"));
    QCOMPARE(shaderValues.at(0).toObject().value("paramValue"), QJsonValue(true));
    QCOMPARE(shaderValues.at(2).toObject().value("paramValue").toString(), QStringLiteral("#0a141e"));

    MBrush copy;
    MBrushStream reader(&copy);
    QVERIFY(reader.load(first));
    QCOMPARE(copy.id(), QStringLiteral("ABC-DEF"));
    QCOMPARE(copy.group(), QStringLiteral("ink brushes"));
    QCOMPARE(copy.description(), QStringLiteral("my brush"));
    QCOMPARE(copy.version(), 100);
    QCOMPARE(copy.quickSettings(), source.quickSettings());
    for (int setting = 0; setting < MEnum::bsCount; ++setting) {
        // The texture decides the ratio, whatever the file said.
        const double expected = setting == MEnum::bsRatio ? 0.5 : source.baseValue(setting);
        QVERIFY2(copy.baseValue(setting) == expected, qPrintable(QString::number(setting)));
        for (int input = 0; input < MEnum::biCount; ++input) {
            const MCurve* a = source.curveOrNull(setting, input);
            const MCurve* b = copy.curveOrNull(setting, input);
            QCOMPARE(b != nullptr, a != nullptr);
            if (!a)
                continue;
            QCOMPARE(b->modulo(), a->modulo());
            QCOMPARE(b->xMin(), a->xMin());
            QCOMPARE(b->xMax(), a->xMax());
            QCOMPARE(b->yMin(), a->yMin());
            QCOMPARE(b->yMax(), a->yMax());
            QCOMPARE(b->interpolationType(), a->interpolationType());
            QCOMPARE(b->points(), a->points());
        }
    }
    QCOMPARE(copy.shaderId(), engineId.toUpper());
    QCOMPARE(copy.shaderValues()->count(), 3);
    QCOMPARE(copy.shaderValues()->value("strength").toDouble(), 0.125);
    QCOMPARE(copy.shaderValues()->value("invert").toBool(), true);
    QCOMPARE(copy.shaderValues()->value("tint").value<QColor>(), QColor(10, 20, 30));
    QCOMPARE(copy.texture(), source.texture());
    QCOMPARE(copy.preview().convertToFormat(QImage::Format_RGBA8888_Premultiplied),
             source.preview().convertToFormat(QImage::Format_RGBA8888_Premultiplied));

    // Once normalised by a read, a brush writes the same bytes every time.
    const QString second = m_dir.filePath(QStringLiteral("second.qmb"));
    const QString third = m_dir.filePath(QStringLiteral("third.qmb"));
    QVERIFY(reader.save(second));
    MBrush again;
    MBrushStream againStream(&again);
    QVERIFY(againStream.load(second));
    QVERIFY(againStream.save(third));
    QCOMPARE(readFile(third), readFile(second));

    QVERIFY(!reader.save(m_dir.filePath(QStringLiteral("missing/dir/x.qmb"))));
    MShaderList::instance()->removeShader(engineId);
}

void TestBrushStream::missingKeysAndWrongTypesGiveDefaults()
{
    MBrushSettingInfoList* settings = MBrushSettingInfoList::instance();
    MBrush brush;
    brush.set_id(QStringLiteral("KEEP"));
    brush.setRadius(99.0);
    brush.curve(MEnum::bsFlow, MEnum::biPressure);
    brush.setQuickSettings({MEnum::bsNoise});
    const QImage preview = patternImage(15, 6, 1);
    brush.setPreview(preview);
    brush.setTexture(patternImage(4, 4, 2));
    MBrushStream stream(&brush);

    QVERIFY(stream.fromJson("{}"));
    QCOMPARE(brush.id(), QStringLiteral("KEEP"));
    QCOMPARE(brush.version(), 0);
    QCOMPARE(brush.group(), QStringLiteral("basics"));
    QCOMPARE(brush.description(), QStringLiteral("brush"));
    QVERIFY(brush.shaderId().isEmpty());
    QCOMPARE(brush.quickSettings(),
             (QVector<int>{MEnum::bsRadius, MEnum::bsHardness, MEnum::bsFlow, MEnum::bsOpacity}));
    QVERIFY(brush.allCurves().isEmpty());
    for (const MField* field : settings->fields())
        QCOMPARE(brush.baseValue(field->id), field->defaultValue.toDouble());
    QVERIFY(brush.texture().isNull());
    QCOMPARE(brush.preview(), preview);

    // Wrong types read as their defaults: a setting that is no object has value 0,
    // a curve that is no object is a fresh curve.
    QVERIFY(stream.fromJson(R"({"id": 5, "group": 7, "description": [], "version": "x",
        "Radius": 3, "hardness": {"value": "a", "pressure": 5},
        "flow": {"value": 0.5, "xTilt": {"yMin": 3, "yMax": 4, "points": [[2, -1], [0.5], "z"]}},
        "quickSettings": "radius", "shaderId": "NO-SUCH-ENGINE",
        "shaderValues": [{"paramName": "x", "paramValue": 1}], "texture": 12, "preview": true})"));
    QCOMPARE(brush.id(), QStringLiteral("KEEP"));
    QCOMPARE(brush.group(), QStringLiteral("basics"));
    QCOMPARE(brush.description(), QStringLiteral("brush"));
    QCOMPARE(brush.version(), 0);
    QCOMPARE(brush.radius(), 0.0);
    QCOMPARE(brush.hardness(), 0.0);
    QCOMPARE(brush.flow(), 0.5);
    const MCurve* fresh = brush.curveOrNull(MEnum::bsHardness, MEnum::biPressure);
    QVERIFY(fresh);
    const MCurve reference(MEnum::bsHardness, MEnum::biPressure, MCurve::Multiply);
    QCOMPARE(fresh->points(), reference.points());
    QCOMPARE(fresh->yMin(), 0.0);
    QCOMPARE(fresh->yMax(), 1.0);
    QCOMPARE(fresh->modulo(), 0.0);
    QCOMPARE(fresh->interpolationType(), int(MCurve::Multiply));
    const MCurve* read = brush.curveOrNull(MEnum::bsFlow, MEnum::biXTilt);
    QVERIFY(read);
    QCOMPARE(read->yMin(), 3.0);
    QCOMPARE(read->yMax(), 4.0);
    QCOMPARE(read->points(), (QVector<QPointF>{{0.0, 0.0}, {0.5, 0.0}, {1.0, 0.0}}));
    QCOMPARE(brush.allCurves().size(), 2);
    // An engine that isn't installed is kept by name, without values, and
    // written back as read.
    QCOMPARE(brush.shaderId(), QStringLiteral("NO-SUCH-ENGINE"));
    QCOMPARE(brush.shaderValues()->count(), 0);
    QCOMPARE(QJsonDocument::fromJson(stream.toJson()).object().value("shaderId").toString(),
             QStringLiteral("NO-SUCH-ENGINE"));
    QCOMPARE(brush.quickSettings().size(), 4);
    QCOMPARE(brush.preview(), preview);

    struct Case
    {
        const char* json;
        QVector<int> expected;
    };
    const QVector<int> defaults{MEnum::bsRadius, MEnum::bsHardness, MEnum::bsFlow, MEnum::bsOpacity};
    const Case cases[] = {
        {R"({"quickSettings": []})", defaults},
        {R"({"quickSettings": ["bogus", "Radius", 4]})", defaults},
        {R"({"quickSettings": ["eraser", "radius", "eraser", "bogus"]})", {MEnum::bsEraser, MEnum::bsRadius}},
    };
    for (const Case& c : cases) {
        brush.setQuickSettings({MEnum::bsNoise});
        QVERIFY(stream.fromJson(c.json));
        QCOMPARE(brush.quickSettings(), c.expected);
    }
}

void TestBrushStream::groupAndDescriptionAreTranslatedOnRead()
{
    TableTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    MBrush brush;
    MBrushStream stream(&brush);
    QVERIFY(stream.fromJson(R"({"group": "My GROUP", "description": "SOFT Round"})"));
    QCOMPARE(brush.group(), QStringLiteral("Meine Gruppe"));
    QCOMPARE(brush.description(), QStringLiteral("soft round"));
    QVERIFY(translator.asked.contains(QStringLiteral("Brushes/my group")));
    QVERIFY(translator.asked.contains(QStringLiteral("Brushes/soft round")));

    QVERIFY(stream.fromJson(R"({"group": ""})"));
    QCOMPARE(brush.group(), QStringLiteral("Grundlagen"));
    QVERIFY(translator.asked.contains(QStringLiteral("Brushes/brush")));
    QCoreApplication::removeTranslator(&translator);
}

void TestBrushStream::badInputIsRefusedOrReadAsEmpty()
{
    MBrush brush;
    brush.set_id(QStringLiteral("SAFE"));
    brush.setRadius(77.0);
    brush.setPreview(patternImage(150, 60, 5));
    MBrushStream stream(&brush);
    const QString valid = m_dir.filePath(QStringLiteral("valid.qmb"));
    QVERIFY(stream.save(valid));
    const QByteArray good = readFile(valid);

    QVERIFY(!stream.load(m_dir.filePath(QStringLiteral("absent.qmb"))));
    const QByteArray refused[] = {
        QByteArray("{ \"id\": "),
        good.left(good.size() / 2),
        QByteArray("\xff\xfe\x00\x01\x80\x81{\"id\":\"x\"}", 16),
        QByteArray(),
    };
    for (const QByteArray& data : refused) {
        const QString path = m_dir.filePath(QStringLiteral("bad.qmb"));
        QVERIFY(writeFile(path, data));
        QVERIFY(!stream.load(path));
        QCOMPARE(brush.id(), QStringLiteral("SAFE"));
        QCOMPARE(brush.radius(), 77.0);
    }

    // Images that don't decode read as none; an unreadable preview keeps the old one.
    const QImage oldPreview = brush.preview();
    const QByteArray notPng = QByteArray("plain text, no image").toBase64();
    // A real image past the size limit is refused too: the limit, not the decoder, stops it.
    QByteArray wide;
    QBuffer wideBuffer(&wide);
    QVERIFY(wideBuffer.open(QIODevice::WriteOnly));
    QVERIFY(patternImage(8193, 1, 0).save(&wideBuffer, "PNG"));
    const QByteArray images[] = {"!!!not base64***", notPng, pngClaiming(100000, 100000).toBase64(),
                                 wide.toBase64()};
    for (const QByteArray& image : images) {
        brush.setTexture(patternImage(2, 2, 0));
        QJsonObject object = parse(good);
        object.insert("texture", QString::fromLatin1(image));
        object.insert("preview", QString::fromLatin1(image));
        QVERIFY(stream.fromJson(QJsonDocument(object).toJson()));
        QVERIFY(brush.texture().isNull());
        QCOMPARE(brush.preview(), oldPreview);
        QCOMPARE(brush.radius(), 77.0);
    }
    // The same header with its real size reads, so the claim alone is what was refused.
    QJsonObject object = parse(good);
    object.insert("texture", QString::fromLatin1(pngClaiming(4, 4).toBase64()));
    QVERIFY(stream.fromJson(QJsonDocument(object).toJson()));
    QCOMPARE(brush.texture().size(), QSize(4, 4));

    // A document that is no object is a document: it reads with defaults.
    QVERIFY(stream.fromJson("[1, 2, 3]"));
    QCOMPARE(brush.group(), QStringLiteral("basics"));
}

void TestBrushStream::mutatedFilesNeverCrash()
{
    auto effect = std::make_unique<MShader>();
    effect->setSource(QStringLiteral("@params\nfloat strength = 0.5; color tint = rgb(1, 2, 3);"));
    const QString engineId = effect->id();
    MShaderList::instance()->addShader(std::move(effect));

    MBrush source;
    source.curve(MEnum::bsRadius, MEnum::biPressure);
    source.curve(MEnum::bsOpacity, MEnum::biRandom)->setModulo(0.5);
    source.set_shaderId(engineId);
    source.setTexture(patternImage(6, 3, 1));
    source.setPreview(patternImage(30, 12, 2));
    const QByteArray good = MBrushStream(&source).toJson();

    QRandomGenerator random(20261123);
    MBrush target;
    MBrushStream stream(&target);
    for (int round = 0; round < 400; ++round) {
        QByteArray data = good;
        const int edits = 1 + random.bounded(6);
        for (int e = 0; e < edits && !data.isEmpty(); ++e) {
            const int at = random.bounded(data.size());
            switch (random.bounded(4)) {
            case 0:
                data[at] = char(random.bounded(256));
                break;
            case 1:
                data.remove(at, 1 + random.bounded(8));
                break;
            case 2:
                data.insert(at, "{[\",:0-e9"[random.bounded(9)]);
                break;
            default:
                data.truncate(at);
                break;
            }
        }
        const bool parses = !QJsonDocument::fromJson(data).isNull();
        QCOMPARE(stream.fromJson(data), parses);
        QVERIFY(!target.group().isEmpty());
        QVERIFY(!target.description().isEmpty());
        QVERIFY(!target.quickSettings().isEmpty());
    }
    MShaderList::instance()->removeShader(engineId);
}

QUILLMERE_TEST_MAIN(TestBrushStream)
#include "tst_mbrushstream.moc"
