// quillmere-cli apply, run as a separate process as a user runs it: effects
// by id and from a file, values given with --set, and every refusal with its
// message, its exit status and no output file left behind.

#include "support/clirun.h"
#include "support/testenvironment.h"

#include "effects/mshader.h"
#include "effects/mshaderstream.h"

#include <QTemporaryDir>

namespace {

using QuillmereTest::Run;
using QuillmereTest::runCli;

// Opaque colour steps, so that a PNG round trip is exact.
QImage sourceImage()
{
    QImage image(48, 32, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 5, y * 7, 200 - x * 2));
    }
    return image;
}

QString writeEffect(const QString& path, const QString& id, const QString& source)
{
    MShader shader;
    shader.setId(id);
    shader.setGroup(QStringLiteral("tests"));
    shader.setDescription(id.toLower());
    shader.setSource(source);
    MShaderStream stream(&shader);
    return stream.save(path) ? path : QString();
}

} // namespace

class TestCliApply : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void appliesByIdAndByFile();
    void refusalsLeaveNoFile();
    void damagedEffectFiles();

private:
    QTemporaryDir m_dir;
    QString m_image;
};

void TestCliApply::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_image = m_dir.filePath(QStringLiteral("source.png"));
    QVERIFY(sourceImage().save(m_image));
}

void TestCliApply::appliesByIdAndByFile()
{
    const QImage source = sourceImage();

    // By id: the inverse, exact on opaque pixels.
    const QString inverted = m_dir.filePath(QStringLiteral("inverted.png"));
    Run run = runCli({QStringLiteral("apply"), QStringLiteral("invert"), m_image, inverted});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY2(run.err.isEmpty(), qPrintable(run.err));
    QCOMPARE(run.out, QStringLiteral("Applied INVERT to %1 (48 x 32) into %2\n").arg(m_image, inverted));
    QImage result(inverted);
    QCOMPARE(result.size(), source.size());
    for (int y = 0; y < source.height(); ++y) {
        for (int x = 0; x < source.width(); ++x) {
            const QRgb s = source.pixel(x, y);
            QCOMPARE(result.pixel(x, y), qRgb(255 - qRed(s), 255 - qGreen(s), 255 - qBlue(s)));
        }
    }

    // --set changes the result: a threshold at two levels.
    const QString low = m_dir.filePath(QStringLiteral("low.png"));
    const QString high = m_dir.filePath(QStringLiteral("high.png"));
    run = runCli({QStringLiteral("apply"), QStringLiteral("THRESHOLD"), m_image, low, QStringLiteral("--set"),
                  QStringLiteral("level=0.1")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    run =
        runCli({QStringLiteral("apply"), QStringLiteral("THRESHOLD"), m_image, high, QStringLiteral("--set"),
                QStringLiteral("level=0.9"), QStringLiteral("--set"), QStringLiteral("light=#ff0000")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QImage lowImage(low);
    const QImage highImage(high);
    QVERIFY(!lowImage.isNull() && !highImage.isNull());
    QVERIFY(lowImage != highImage);
    // Under the high level everything here is dark; the light colour shows
    // nowhere.
    QCOMPARE(highImage.pixel(0, 0), qRgb(0, 0, 0));
    QCOMPARE(lowImage.pixel(47, 31), qRgb(255, 255, 255));

    // By file: an effect that isn't installed, with a colour and a bool.
    const QString file =
        writeEffect(m_dir.filePath(QStringLiteral("tint.qsh")), QStringLiteral("TEST_TINT"),
                    QStringLiteral("@params\ncolor tint = rgb(0, 0, 255) \"tint\";\n"
                                   "bool keepRed = false \"keep red\";\n@main\n"
                                   "vec4 c = texture(f_currentLayerTexture, v_texCoords0);\n"
                                   "f_color = vec4(keepRed ? c.r : tint.r * c.a, tint.g * c.a, "
                                   "tint.b * c.a, c.a);"));
    QVERIFY(!file.isEmpty());
    const QString tinted = m_dir.filePath(QStringLiteral("tinted.png"));
    run = runCli({QStringLiteral("apply"), file, m_image, tinted, QStringLiteral("--set"),
                  QStringLiteral("tint=#102030"), QStringLiteral("--set"), QStringLiteral("keepRed=1")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    result = QImage(tinted);
    QCOMPARE(result.pixel(10, 5), qRgb(qRed(source.pixel(10, 5)), 0x20, 0x30));
    run = runCli({QStringLiteral("apply"), file, m_image, tinted});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(QImage(tinted).pixel(10, 5), qRgb(0, 0, 255));

    // The help lists the command.
    run = runCli({});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains(QStringLiteral("  apply EFFECT IMAGE OUT.png [--set NAME=VALUE ...]\n")),
             qPrintable(run.out));
}

void TestCliApply::refusalsLeaveNoFile()
{
    const QString output = m_dir.filePath(QStringLiteral("refused.png"));
    const QString broken =
        writeEffect(m_dir.filePath(QStringLiteral("broken.qsh")), QStringLiteral("TEST_BROKEN"),
                    QStringLiteral("@main\nf_color = vec4(notDeclared);"));
    const QString badParams =
        writeEffect(m_dir.filePath(QStringLiteral("params.qsh")), QStringLiteral("TEST_PARAMS"),
                    QStringLiteral("@params\nfloat x = ;\n@main\n"));
    QVERIFY(!broken.isEmpty() && !badParams.isEmpty());
    const QString usage =
        QStringLiteral("Usage: quillmere-cli apply EFFECT IMAGE OUT.png [--set NAME=VALUE ...]\n");

    const struct
    {
        QStringList arguments;
        int exitCode;
        QString message;
    } cases[] = {
        {{QStringLiteral("NOPE"), m_image, output},
         1,
         QStringLiteral(
             "quillmere-cli: unknown effect: NOPE (neither a .qsh file nor the id of an effect)\n")},
        {{m_dir.filePath(QStringLiteral("missing.qsh")), m_image, output},
         1,
         QStringLiteral("quillmere-cli: cannot read %1: no such file\n")
             .arg(m_dir.filePath(QStringLiteral("missing.qsh")))},
        {{QStringLiteral("INVERT"), m_image, output, QStringLiteral("--set"), QStringLiteral("strength=1")},
         1,
         QStringLiteral("quillmere-cli: the effect INVERT has no parameter strength (it has: amount)\n")},
        {{QStringLiteral("INVERT"), m_image, output, QStringLiteral("--set"), QStringLiteral("amount=lots")},
         1,
         QStringLiteral("quillmere-cli: bad value for amount: \"lots\" is not a number\n")},
        {{QStringLiteral("INVERT"), m_image, output, QStringLiteral("--set"), QStringLiteral("amount=1.5")},
         1,
         QStringLiteral("quillmere-cli: bad value for amount: 1.5 is out of the range 0 to 1\n")},
        {{QStringLiteral("THRESHOLD"), m_image, output, QStringLiteral("--set"),
          QStringLiteral("dark=black")},
         1,
         QStringLiteral(
             "quillmere-cli: bad value for dark: \"black\" is not a colour of the form #rrggbb\n")},
        {{QStringLiteral("EMBOSS"), m_image, output, QStringLiteral("--set"),
          QStringLiteral("keepColours=maybe")},
         1,
         QStringLiteral("quillmere-cli: bad value for keepColours: \"maybe\" is not true, false, 1 or 0\n")},
        {{QStringLiteral("INVERT"), m_dir.filePath(QStringLiteral("nothing.png")), output},
         1,
         QStringLiteral("quillmere-cli: cannot read %1: File not found\n")
             .arg(m_dir.filePath(QStringLiteral("nothing.png")))},
        {{QStringLiteral("GLOW"), m_image, output},
         1,
         QStringLiteral("quillmere-cli: GLOW is a brush engine, not an effect\n")},
        {{badParams, m_image, output},
         1,
         QStringLiteral("quillmere-cli: the effect TEST_PARAMS doesn't compile:\nErrors during parameters "
                        "compilation:\n")},
        {{broken, m_image, output},
         1,
         QStringLiteral("quillmere-cli: the effect TEST_BROKEN doesn't compile with the graphics driver:\n")},
        {{QStringLiteral("INVERT"), m_image},
         2,
         QStringLiteral("quillmere-cli: an effect, an image and an output image are needed\n") + usage},
        {{QStringLiteral("INVERT"), m_image, m_dir.filePath(QStringLiteral("refused.jpg"))},
         2,
         QStringLiteral("quillmere-cli: the output is written as PNG: give it the extension .png\n") + usage},
        {{QStringLiteral("INVERT"), m_image, output, QStringLiteral("--set"), QStringLiteral("amount")},
         2,
         QStringLiteral("quillmere-cli: --set needs NAME=VALUE, not \"amount\"\n") + usage},
    };
    for (const auto& c : cases) {
        const Run run = runCli(QStringList{QStringLiteral("apply")} + c.arguments);
        const QString what = c.arguments.join(QLatin1Char(' '));
        QVERIFY2(run.exitCode == c.exitCode, qPrintable(what + QStringLiteral(": ") + run.err));
        // Qt's own warning about a shader that doesn't compile may stand first.
        QVERIFY2(run.err.startsWith(c.message) ||
                     (c.arguments.first() == broken && run.err.contains(c.message)),
                 qPrintable(what + QStringLiteral(": ") + run.err));
        QVERIFY2(run.out.isEmpty(), qPrintable(what + QStringLiteral(": ") + run.out));
        QVERIFY2(!QFile::exists(output), qPrintable(what));
        QVERIFY2(!QFile::exists(m_dir.filePath(QStringLiteral("refused.jpg"))), qPrintable(what));
    }
    // The compiler's own words follow the message.
    const Run run = runCli({QStringLiteral("apply"), broken, m_image, output});
    QVERIFY2(run.err.contains(QStringLiteral("notDeclared")), qPrintable(run.err));
}

void TestCliApply::damagedEffectFiles()
{
    // A good file cut short at several places, and garbage: each run ends
    // with a message and exit status 1 or, where what is left still makes an
    // effect, 0 with a picture; never a crash, never a half-written output.
    const QString good =
        writeEffect(m_dir.filePath(QStringLiteral("good.qsh")), QStringLiteral("TEST_GOOD"),
                    QStringLiteral("@main\nf_color = texture(f_currentLayerTexture, v_texCoords0);"));
    QFile goodFile(good);
    QVERIFY(goodFile.open(QIODevice::ReadOnly));
    const QByteArray bytes = goodFile.readAll();
    QList<QByteArray> damaged = {QByteArray(), QByteArray("not json at all"), QByteArray("{\"id\": 5}"),
                                 QByteArray(4096, '\xff')};
    for (const double part : {0.1, 0.5, 0.9})
        damaged << bytes.left(int(bytes.size() * part));
    int index = 0;
    for (const QByteArray& content : qAsConst(damaged)) {
        const QString path = m_dir.filePath(QStringLiteral("damaged%1.qsh").arg(index));
        const QString output = m_dir.filePath(QStringLiteral("damaged%1.png").arg(index++));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        const Run run = runCli({QStringLiteral("apply"), path, m_image, output});
        QVERIFY2(run.exitCode == 1, qPrintable(QStringLiteral("%1: %2").arg(run.exitCode).arg(run.err)));
        QCOMPARE(run.err,
                 QStringLiteral("quillmere-cli: %1 is not an effect file (no id or no source)\n").arg(path));
        QVERIFY(!QFile::exists(output));
    }
}

QUILLMERE_TEST_MAIN(TestCliApply)
#include "tst_cliapply.moc"
