#include "support/testenvironment.h"

#include "effects/mshader.h"
#include "effects/mshaderstream.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTranslator>

namespace {

// Answers only for the effect context, and remembers what it was asked.
class ShaderTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char* = nullptr,
                      int = -1) const override
    {
        if (qstrcmp(context, "Shaders") != 0)
            return QString();
        asked.append(QString::fromUtf8(sourceText));
        if (qstrcmp(sourceText, "basics") == 0)
            return QStringLiteral("Grundlagen");
        if (qstrcmp(sourceText, "brush shader") == 0)
            return QStringLiteral("Pinsel-Effekt");
        if (qstrcmp(sourceText, "soft glow") == 0)
            return QStringLiteral("Weiches Leuchten");
        return QString();
    }
    bool isEmpty() const override { return false; }

    mutable QStringList asked;
};

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray pngBytes(const QImage& image)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

quint32 crc32(const QByteArray& data)
{
    quint32 crc = 0xFFFFFFFFu;
    for (char c : data) {
        crc ^= quint8(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

QImage testImage()
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    image.setPixel(0, 0, qRgba(255, 0, 0, 255));
    image.setPixel(2, 1, qRgba(10, 200, 30, 255));
    image.setPixel(1, 0, qRgba(0, 0, 255, 255));
    return image;
}

} // namespace

class TestShaderStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(m_dir.isValid()); }
    void writtenFileReadsBackFieldByField();
    void missingKeysAndWrongTypesTakeDefaults();
    void groupAndDescriptionAreTranslatedOnRead();
    void damagedFilesLoadWithoutLoss();
    void mutatedFilesNeverBreakTheReader();

private:
    QString path(const QString& name) const { return m_dir.filePath(name); }
    QTemporaryDir m_dir;
};

void TestShaderStream::writtenFileReadsBackFieldByField()
{
    const QString source = QStringLiteral("@main\n// Ωmega, grün, 日本語 😀\ngl_FragColor = vec4(1.0);\n");
    MShader shader;
    shader.setId(QStringLiteral("  ab12cd34-0000-4000-8000-00000000abcd "));
    shader.setGroup(QStringLiteral("  Blur Effects "));
    shader.setDescription(QStringLiteral("Soft Glow"));
    shader.setSource(source);
    shader.setType(MShader::BrushShader);
    shader.setPreview(testImage());

    MShaderStream out(&shader);
    QCOMPARE(out.shader(), &shader);
    QVERIFY(out.save(path("a.qsh")));
    const QByteArray bytes = readAll(path("a.qsh"));
    for (char c : bytes)
        QVERIFY2(quint8(c) < 0x80, "the file must stay ASCII");

    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    const QStringList keys = object.keys();
    QCOMPARE(keys, QStringList({"description", "group", "id", "preview", "source", "type"}));
    QCOMPARE(object.value("group").toString(), QStringLiteral("blur effects"));
    QCOMPARE(object.value("description").toString(), QStringLiteral("soft glow"));
    QCOMPARE(object.value("id").toString(), QStringLiteral("AB12CD34-0000-4000-8000-00000000ABCD"));
    QCOMPARE(QByteArray::fromBase64(object.value("source").toString().toLatin1()), source.toUtf8());
    QCOMPARE(object.value("type").toInt(-1), 1);

    MShader back;
    MShaderStream in(&back);
    QVERIFY(in.load(path("a.qsh")));
    QCOMPARE(back.id(), QStringLiteral("AB12CD34-0000-4000-8000-00000000ABCD"));
    QCOMPARE(back.group(), QStringLiteral("blur effects"));
    QCOMPARE(back.description(), QStringLiteral("soft glow"));
    QCOMPARE(back.source(), source);
    QCOMPARE(back.type(), int(MShader::BrushShader));
    QCOMPARE(back.preview().convertToFormat(QImage::Format_ARGB32), testImage());

    // A second save of what was read gives the same bytes.
    QVERIFY(in.save(path("b.qsh")));
    QCOMPARE(readAll(path("b.qsh")), bytes);

    // An effect without a preview of its own writes the shared default, and a
    // file without one leaves the default showing.
    MShader plain;
    QVERIFY(!plain.preview().isNull());
    QVERIFY(MShaderStream(&plain).save(path("plain.qsh")));
    const QJsonObject plainObject = QJsonDocument::fromJson(readAll(path("plain.qsh"))).object();
    const QImage written =
        QImage::fromData(QByteArray::fromBase64(plainObject.value("preview").toString().toLatin1()), "PNG");
    QCOMPARE(written.convertToFormat(QImage::Format_ARGB32),
             plain.preview().convertToFormat(QImage::Format_ARGB32));
    QVERIFY(writeAll(path("nopreview.qsh"), R"({"id": "x", "source": ""})"));
    MShader noPreview;
    QVERIFY(MShaderStream(&noPreview).load(path("nopreview.qsh")));
    QCOMPARE(noPreview.preview(), plain.preview());

    QVERIFY(!out.save(path("missing/dir/c.qsh")));
}

void TestShaderStream::missingKeysAndWrongTypesTakeDefaults()
{
    const QList<QByteArray> files = {
        "{}",
        R"({"group": 5, "description": [1], "id": {}, "source": 12, "type": "1", "preview": true})",
        R"({"group": "", "description": "", "id": "", "source": "", "type": null})",
        R"({"type": 1.5})",
    };
    for (const QByteArray& content : files) {
        MShader shader;
        shader.setGroup("old");
        shader.setDescription("old");
        shader.setId("OLD");
        shader.setSource("old source");
        shader.setType(MShader::BrushShader);
        shader.setPreview(testImage());
        QVERIFY(writeAll(path("d.qsh"), content));
        QVERIFY(MShaderStream(&shader).load(path("d.qsh")));
        QCOMPARE(shader.group(), QStringLiteral("basics"));
        QCOMPARE(shader.description(), QStringLiteral("brush shader"));
        QCOMPARE(shader.id(), QString());
        QCOMPARE(shader.source(), QString());
        QCOMPARE(shader.type(), int(MShader::EffectShader));
        QCOMPARE(shader.preview(), testImage());
    }

    // Read keeps the case rules even for files written by hand.
    QVERIFY(writeAll(path("e.qsh"),
                     R"({"group": "My Group ", "description": "Glow", "id": "ab-cd", "type": 1})"));
    MShader shader;
    QVERIFY(MShaderStream(&shader).load(path("e.qsh")));
    QCOMPARE(shader.group(), QStringLiteral("my group "));
    QCOMPARE(shader.description(), QStringLiteral("glow"));
    QCOMPARE(shader.id(), QStringLiteral("AB-CD"));
    QCOMPARE(shader.type(), int(MShader::BrushShader));
}

void TestShaderStream::groupAndDescriptionAreTranslatedOnRead()
{
    ShaderTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));

    QVERIFY(writeAll(path("t.qsh"), R"({"group": "", "description": "Soft GLOW"})"));
    MShader shader;
    const bool loaded = MShaderStream(&shader).load(path("t.qsh"));
    QVERIFY(writeAll(path("u.qsh"), R"({"group": "Unknown Group", "description": ""})"));
    MShader other;
    const bool otherLoaded = MShaderStream(&other).load(path("u.qsh"));
    QCoreApplication::removeTranslator(&translator);

    QVERIFY(loaded && otherLoaded);
    QCOMPARE(shader.group(), QStringLiteral("Grundlagen"));
    QCOMPARE(shader.description(), QStringLiteral("Weiches Leuchten"));
    QCOMPARE(other.group(), QStringLiteral("unknown group"));
    QCOMPARE(other.description(), QStringLiteral("Pinsel-Effekt"));
    QCOMPARE(translator.asked, QStringList({"basics", "soft glow", "unknown group", "brush shader"}));
}

void TestShaderStream::damagedFilesLoadWithoutLoss()
{
    MShader shader;
    MShaderStream stream(&shader);
    QVERIFY(!stream.load(path("does-not-exist.qsh")));

    MShader good;
    good.setId("GOOD");
    good.setGroup("g");
    good.setDescription("d");
    good.setSource("void main() {}");
    good.setType(MShader::BrushShader);
    QVERIFY(MShaderStream(&good).save(path("good.qsh")));
    const QByteArray valid = readAll(path("good.qsh"));

    QByteArray binary;
    QRandomGenerator random(7);
    for (int i = 0; i < 4096; ++i)
        binary.append(char(random.bounded(256)));
    const QList<QByteArray> unreadable = {
        R"({"group": "x", "id": "y",)",
        valid.left(valid.size() / 2),
        binary,
        QByteArray(),
        "[1, 2]",
        "\"text\"",
    };
    for (const QByteArray& content : unreadable) {
        shader.setId("KEEP");
        shader.setType(MShader::BrushShader);
        shader.setSource("x");
        QVERIFY(writeAll(path("bad.qsh"), content));
        QVERIFY(stream.load(path("bad.qsh")));
        QCOMPARE(shader.group(), QStringLiteral("basics"));
        QCOMPARE(shader.description(), QStringLiteral("brush shader"));
        QCOMPARE(shader.id(), QString());
        QCOMPARE(shader.source(), QString());
        QCOMPARE(shader.type(), 0);
    }

    // Base64 that doesn't decode gives no source and keeps the preview; bytes
    // that aren't UTF-8 still make a string.
    shader.setPreview(testImage());
    QVERIFY(writeAll(path("b64.qsh"), R"({"source": "@@not base64!!", "preview": "%%%%"})"));
    QVERIFY(stream.load(path("b64.qsh")));
    QCOMPARE(shader.source(), QString());
    QCOMPARE(shader.preview(), testImage());
    QVERIFY(writeAll(path("latin.qsh"), "{\"source\": \"" + QByteArray("\xff\xfe\x80x").toBase64() + "\"}"));
    QVERIFY(stream.load(path("latin.qsh")));
    QVERIFY(shader.source().endsWith(QLatin1Char('x')));

    // A PNG whose header claims a huge size is refused before decoding.
    QByteArray png = pngBytes(testImage());
    QCOMPARE(png.mid(12, 4), QByteArray("IHDR"));
    const QByteArray side = QByteArray::fromHex("0000C350"); // 50000
    png.replace(16, 4, side);
    png.replace(20, 4, side);
    const quint32 crc = crc32(png.mid(12, 17));
    const char crcBytes[4] = {char(crc >> 24), char(crc >> 16), char(crc >> 8), char(crc)};
    png.replace(29, 4, QByteArray(crcBytes, 4));
    QVERIFY(writeAll(path("huge.qsh"), "{\"preview\": \"" + png.toBase64() + "\"}"));
    QVERIFY(stream.load(path("huge.qsh")));
    QCOMPARE(shader.preview(), testImage());

    // The limit itself: a real image one pixel too wide is refused, one at the
    // limit is taken.
    for (int width : {MShaderStream::maxPreviewSide + 1, MShaderStream::maxPreviewSide}) {
        QImage wide(width, 1, QImage::Format_ARGB32);
        wide.fill(qRgba(1, 2, 3, 255));
        QVERIFY(writeAll(path("wide.qsh"), "{\"preview\": \"" + pngBytes(wide).toBase64() + "\"}"));
        QVERIFY(stream.load(path("wide.qsh")));
        QCOMPARE(shader.preview().width(), width > MShaderStream::maxPreviewSide ? 3 : width);
    }
}

void TestShaderStream::mutatedFilesNeverBreakTheReader()
{
    MShader good;
    good.setId("ABCDEF");
    good.setGroup("blur");
    good.setDescription("soft");
    good.setSource("@params\nfloat a = 1.0;\n@main\n");
    good.setType(MShader::BrushShader);
    good.setPreview(testImage());
    QVERIFY(MShaderStream(&good).save(path("seed.qsh")));
    const QByteArray valid = readAll(path("seed.qsh"));

    QRandomGenerator random(20261123);
    MShader shader;
    MShaderStream stream(&shader);
    for (int round = 0; round < 400; ++round) {
        QByteArray bytes = valid;
        const int edits = 1 + random.bounded(6);
        for (int e = 0; e < edits && !bytes.isEmpty(); ++e) {
            const int at = random.bounded(bytes.size());
            switch (random.bounded(4)) {
            case 0:
                bytes[at] = char(random.bounded(256));
                break;
            case 1:
                bytes.insert(at, char(random.bounded(256)));
                break;
            case 2:
                bytes.remove(at, 1 + random.bounded(8));
                break;
            default:
                bytes.truncate(at);
                break;
            }
        }
        QVERIFY(writeAll(path("m.qsh"), bytes));
        QVERIFY(stream.load(path("m.qsh")));
        QVERIFY(!shader.group().isEmpty());
        QCOMPARE(shader.group(), shader.group().toLower());
        QCOMPARE(shader.id(), shader.id().toUpper());
        QVERIFY(shader.preview().width() <= MShaderStream::maxPreviewSide);
    }
}

QUILLMERE_TEST_MAIN(TestShaderStream)
#include "tst_mshaderstream.moc"
