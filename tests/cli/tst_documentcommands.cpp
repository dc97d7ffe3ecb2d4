#include "support/clirun.h"
#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "document/mcanvas.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

namespace {

using QuillmereTest::cliPath;
using QuillmereTest::Run;
using QuillmereTest::runCli;
using QuillmereTest::runProgram;

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Opaque blocks of colour, with a transparent hole.
QImage sourceImage()
{
    QImage image(700, 300, QImage::Format_ARGB32);
    image.fill(QColor(30, 60, 90));
    QPainter painter(&image);
    painter.fillRect(QRect(0, 0, 350, 150), QColor(250, 10, 10));
    painter.fillRect(QRect(350, 150, 350, 150), QColor(10, 240, 20));
    painter.fillRect(QRect(495, 0, 12, 300), QColor(255, 255, 0));
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(100, 200, 40, 50), Qt::transparent);
    painter.end();
    return image;
}

// The first pixel where the images differ, or an empty text.
QString difference(const QImage& actual, const QImage& expected)
{
    if (actual.size() != expected.size())
        return QStringLiteral("size %1 x %2, not %3 x %4")
            .arg(actual.width())
            .arg(actual.height())
            .arg(expected.width())
            .arg(expected.height());
    const QImage a = actual.convertToFormat(QImage::Format_ARGB32);
    const QImage b = expected.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                return QStringLiteral("pixel %1, %2 is %3, not %4")
                    .arg(x)
                    .arg(y)
                    .arg(a.pixel(x, y), 8, 16, QLatin1Char('0'))
                    .arg(b.pixel(x, y), 8, 16, QLatin1Char('0'));
        }
    }
    return QString();
}

QJsonObject rect(double x, double y, double width, double height)
{
    return QJsonObject{{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

} // namespace

class TestDocumentCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void convertThenInfoThenRender();
    void layersOfAPaintedDocument();
    void errorsAndUsage();
    void convertOverAFullDevice();

private:
    QuillmereTest::GLContext m_gl;
    QTemporaryDir m_dir;
};

void TestDocumentCommands::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    QVERIFY(m_dir.isValid());
    QVERIFY(QFileInfo(cliPath()).isExecutable());
}

void TestDocumentCommands::convertThenInfoThenRender()
{
    const QString imagePath = m_dir.filePath(QStringLiteral("source.png"));
    const QImage source = sourceImage();
    QVERIFY(source.save(imagePath));
    const QString document = m_dir.filePath(QStringLiteral("converted.qmd"));

    Run run = runCli({QStringLiteral("convert"), imagePath, document});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY2(run.out.contains(QStringLiteral("(700 x 300)")) && run.out.contains(QStringLiteral("4 tiles")),
             qPrintable(run.out));

    run = runCli({QStringLiteral("info"), document});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QJsonParseError error;
    const QJsonObject info = QJsonDocument::fromJson(run.out.toUtf8(), &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(run.out));
    // Indented, one field a line.
    QVERIFY(run.out.contains(QStringLiteral("\n    \"layerCount\": 1,\n")));
    QCOMPARE(info.value("file").toString(), QFileInfo(document).absoluteFilePath());
    QCOMPARE(info.value("version").toInt(), 100);
    QCOMPARE(info.value("paintedRect").toObject(), rect(-350, -150, 700, 300));
    QCOMPARE(info.value("paperType").toInt(), 1);
    QCOMPARE(info.value("paperTypeName").toString(), QStringLiteral("Colored"));
    QCOMPARE(info.value("paperColor").toString(), QStringLiteral("#ffffffff"));
    QVERIFY(!info.contains("paperName"));
    QCOMPARE(info.value("autoExtent").toBool(), false);
    QCOMPARE(info.value("paintMargin").toDouble(), 0.0);
    QCOMPARE(info.value("tileCount").toInt(), 4);
    const QJsonArray layers = info.value("layers").toArray();
    QCOMPARE(layers.size(), 1);
    const QJsonObject layer = layers.at(0).toObject();
    QCOMPARE(layer.value("row").toInt(), 0);
    QCOMPARE(layer.value("name").toString(), QStringLiteral("Layer 1"));
    QCOMPARE(layer.value("opacity").toDouble(), 1.0);
    QCOMPARE(layer.value("locked").toBool(), false);
    QCOMPARE(layer.value("visible").toBool(), true);
    QCOMPARE(layer.value("shaderId").toString(), QString());
    QSet<QString> tiles;
    for (const QJsonValue& tile : layer.value("tiles").toArray())
        tiles.insert(QString::fromUtf8(QJsonDocument(tile.toObject()).toJson(QJsonDocument::Compact)));
    QSet<QString> expectedTiles;
    for (const QJsonObject& tile :
         {rect(-500, -500, 500, 500), rect(0, -500, 500, 500), rect(-500, 0, 500, 500), rect(0, 0, 500, 500)})
        expectedTiles.insert(QString::fromUtf8(QJsonDocument(tile).toJson(QJsonDocument::Compact)));
    QCOMPARE(tiles, expectedTiles);

    // Without paper the picture comes back pixel for pixel, hole included.
    const QString bare = m_dir.filePath(QStringLiteral("bare.png"));
    run = runCli({QStringLiteral("render"), document, bare, QStringLiteral("--no-paper")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(run.out, QStringLiteral("Rendered 700 x 300 to %1\n").arg(bare));
    const QString bareDifference = difference(QImage(bare), source);
    QVERIFY2(bareDifference.isEmpty(), qPrintable(bareDifference));

    // The white paper shows through the hole only.
    QImage onPaper = source;
    {
        QPainter painter(&onPaper);
        painter.fillRect(QRect(100, 200, 40, 50), Qt::white);
    }
    const QString paper = m_dir.filePath(QStringLiteral("paper.png"));
    run = runCli({QStringLiteral("render"), document, paper});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QString paperDifference = difference(QImage(paper), onPaper);
    QVERIFY2(paperDifference.isEmpty(), qPrintable(paperDifference));

    // The one layer alone is the whole picture.
    const QString only = m_dir.filePath(QStringLiteral("only.png"));
    run = runCli({QStringLiteral("render"), document, only, QStringLiteral("--layer"), QStringLiteral("0"),
                  QStringLiteral("--no-paper")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY(difference(QImage(only), source).isEmpty());

    // One side given, the other keeps the proportions; the format follows the extension.
    const QString half = m_dir.filePath(QStringLiteral("half.bmp"));
    run =
        runCli({QStringLiteral("render"), document, half, QStringLiteral("--width"), QStringLiteral("350")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(readFile(half).left(2), QByteArray("BM"));
    const QImage small(half);
    QCOMPARE(small.size(), QSize(350, 150));
    // Well inside a block, the colour survives the scaling.
    QCOMPARE(small.pixelColor(80, 40), QColor(250, 10, 10));
    QCOMPARE(small.pixelColor(300, 120), QColor(10, 240, 20));
    const QString both = m_dir.filePath(QStringLiteral("both.png"));
    run = runCli({QStringLiteral("render"), document, both, QStringLiteral("--width"), QStringLiteral("64"),
                  QStringLiteral("--height"), QStringLiteral("64")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(QImage(both).size(), QSize(64, 64));
}

void TestDocumentCommands::layersOfAPaintedDocument()
{
    // Two layers painted here: a red bottom, a blue top that is hidden, with
    // an effect that the command-line tool doesn't know.
    MShader* effect = MShaderList::instance()->addShader(std::make_unique<MShader>());
    const QString document = m_dir.filePath(QStringLiteral("layers.qmd"));
    {
        MCanvas canvas;
        QVERIFY(canvas.makeCurrent());
        canvas.setPaintedRect(QRectF(-100, -50, 200, 100));
        canvas.appendLayer();
        QImage red(200, 100, QImage::Format_ARGB32_Premultiplied);
        red.fill(QColor(200, 0, 0));
        QImage blue(100, 100, QImage::Format_ARGB32_Premultiplied);
        blue.fill(QColor(0, 0, 220));
        QVERIFY(canvas.pasteImage(QPointF(0, 0), red, false, QString(), 0));
        QVERIFY(canvas.pasteImage(QPointF(50, 0), blue, false, QString(), 1));
        MTextureLayer* top = canvas.at(1);
        top->setName(QStringLiteral("Blue"));
        top->setOpacity(0.5);
        top->setVisible(false);
        top->setLocked(true);
        top->set_shaderId(effect->id());
        QCOMPARE(top->shaderId(), effect->id());
        canvas.setPaperType(MEnum::Transparent);
        QVERIFY(canvas.save(document));
    }

    Run run = runCli({QStringLiteral("info"), document});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QJsonObject info = QJsonDocument::fromJson(run.out.toUtf8()).object();
    QCOMPARE(info.value("paperTypeName").toString(), QStringLiteral("Transparent"));
    QCOMPARE(info.value("tileCount").toInt(), 6);
    const QJsonObject top = info.value("layers").toArray().at(1).toObject();
    QCOMPARE(top.value("name").toString(), QStringLiteral("Blue"));
    QCOMPARE(top.value("opacity").toDouble(), 0.5);
    QCOMPARE(top.value("visible").toBool(), false);
    QCOMPARE(top.value("locked").toBool(), true);
    QCOMPARE(top.value("shaderId").toString(), effect->id());
    QCOMPARE(top.value("tileCount").toInt(), 2);

    // The hidden layer stays out of the picture; a transparent paper draws nothing.
    const QString all = m_dir.filePath(QStringLiteral("all.png"));
    run = runCli({QStringLiteral("render"), document, all});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QImage expected(200, 100, QImage::Format_ARGB32);
    expected.fill(QColor(200, 0, 0));
    QString diff = difference(QImage(all), expected);
    QVERIFY2(diff.isEmpty(), qPrintable(diff));

    // Asked for by row, it is drawn alone, at its opacity.
    const QString alone = m_dir.filePath(QStringLiteral("alone.png"));
    run = runCli({QStringLiteral("render"), document, alone, QStringLiteral("--layer"), QStringLiteral("1")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QImage image(alone);
    QCOMPARE(image.size(), QSize(200, 100));
    QCOMPARE(qAlpha(image.pixel(20, 50)), 0);
    const QColor inside = image.pixelColor(150, 50);
    QVERIFY2(qAbs(inside.alpha() - 128) <= 1 && inside.blue() >= 218 && inside.red() == 0,
             qPrintable(inside.name(QColor::HexArgb)));
}

void TestDocumentCommands::errorsAndUsage()
{
    const QString missing = m_dir.filePath(QStringLiteral("missing.qmd"));
    Run run = runCli({QStringLiteral("info"), missing});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(
                 QStringLiteral("cannot read %1: the file could not be opened (code 1)").arg(missing)),
             qPrintable(run.err));
    QVERIFY(run.out.isEmpty());

    const QString notDocument = m_dir.filePath(QStringLiteral("not.qmd"));
    QFile file(notDocument);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(64, 'z'));
    file.close();
    run = runCli({QStringLiteral("info"), notDocument});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.err.contains(QStringLiteral("not a document (invalid magic) (code 2)")));
    QVERIFY(run.err.contains(QStringLiteral("Invalid canvas file format")));
    run = runCli({QStringLiteral("render"), notDocument, m_dir.filePath(QStringLiteral("x.png"))});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(QStringLiteral("not a document (invalid magic) (code 2)")),
             qPrintable(run.err));
    QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("x.png"))));

    // A document cut in its first tile.
    const QString imagePath = m_dir.filePath(QStringLiteral("tiny.png"));
    QImage tiny(10, 10, QImage::Format_ARGB32);
    tiny.fill(Qt::black);
    QVERIFY(tiny.save(imagePath));
    const QString document = m_dir.filePath(QStringLiteral("tiny.qmd"));
    QCOMPARE(runCli({QStringLiteral("convert"), imagePath, document}).exitCode, 0);
    const QByteArray whole = readFile(document);
    const QString cut = m_dir.filePath(QStringLiteral("cut.qmd"));
    {
        QFile out(cut);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(whole.left(whole.size() - 1000));
    }
    run = runCli({QStringLiteral("info"), cut});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(QStringLiteral("the document is damaged or cut short (code 3)")),
             qPrintable(run.err));
    QVERIFY(run.err.contains(QStringLiteral("Error during readRawData")));
    run = runCli({QStringLiteral("render"), cut, m_dir.filePath(QStringLiteral("cut.png"))});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.err.contains(QStringLiteral("(code 3)")));

    // Usage errors.
    const QString png = m_dir.filePath(QStringLiteral("out.png"));
    const QVector<QStringList> usageErrors{
        {QStringLiteral("info")},
        {QStringLiteral("info"), document, document},
        {QStringLiteral("info"), QStringLiteral("--json")},
        {QStringLiteral("render"), document},
        {QStringLiteral("render"), document, m_dir.filePath(QStringLiteral("out.nosuchformat"))},
        {QStringLiteral("render"), document, png, QStringLiteral("--width")},
        {QStringLiteral("render"), document, png, QStringLiteral("--width"), QStringLiteral("-4")},
        {QStringLiteral("render"), document, png, QStringLiteral("--height"), QStringLiteral("big")},
        {QStringLiteral("render"), document, png, QStringLiteral("--layer"), QStringLiteral("-1")},
        {QStringLiteral("render"), document, png, QStringLiteral("--sepia")},
        {QStringLiteral("render"), document, png, QStringLiteral("--layer"), QStringLiteral("1")},
        {QStringLiteral("render"), document, png, QStringLiteral("--width"), QStringLiteral("1000000")},
        {QStringLiteral("convert"), imagePath},
        {QStringLiteral("convert"), imagePath, document, document},
    };
    for (const QStringList& arguments : usageErrors) {
        run = runCli(arguments);
        QVERIFY2(run.exitCode == 2, qPrintable(arguments.join(' ') + QStringLiteral(": ") + run.err));
        QVERIFY2(!run.err.isEmpty(), qPrintable(arguments.join(' ')));
    }
    QVERIFY(runCli({QStringLiteral("render"), document, png, QStringLiteral("--layer"), QStringLiteral("1")})
                .err.contains(QStringLiteral("has 1 layers; there is no row 1")));
    QVERIFY(!QFile::exists(png));

    run = runCli({QStringLiteral("convert"), m_dir.filePath(QStringLiteral("nothing.png")), document});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.err.contains(QStringLiteral("cannot read the image")));
    QCOMPARE(readFile(document), whole);

    run = runCli({});
    QCOMPARE(run.exitCode, 0);
    for (const char* usage :
         {"info DOC.qmd", "render DOC.qmd OUT.png [--width W] [--height H] [--no-paper] [--layer N]",
          "convert IMAGE OUT.qmd"})
        QVERIFY2(run.out.contains(QLatin1String(usage)), usage);
}

void TestDocumentCommands::convertOverAFullDevice()
{
    const QString imagePath = m_dir.filePath(QStringLiteral("full.png"));
    QImage image(800, 600, QImage::Format_ARGB32);
    image.fill(QColor(1, 2, 3));
    QVERIFY(image.save(imagePath));
    QDir out(m_dir.filePath(QStringLiteral("full")));
    QVERIFY(out.mkpath(QStringLiteral(".")));
    const QString document = out.filePath(QStringLiteral("out.qmd"));
    const QByteArray previous("a previous document that a full device must not destroy");
    {
        QFile file(document);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(previous);
    }

    // The child may write no file past 64 blocks of the shell's unit (at
    // most 64 KiB) and ignores the signal, so that the write fails with
    // EFBIG as on a full device. Both are inherited through exec.
    const QString script = QStringLiteral("ulimit -f 64 && trap '' XFSZ && exec \"$0\" \"$@\"");
    Run run = runProgram(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script, cliPath(),
                                                     QStringLiteral("convert"), imagePath, document});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains(QStringLiteral("cannot save %1: short write (code 2)").arg(document)),
             qPrintable(run.err));
    QVERIFY2(run.err.contains(
                 QStringLiteral("MCanvasWriter::saveLayerToStream: System error: Error during writeRawData")),
             qPrintable(run.err));
    QCOMPARE(readFile(document), previous);
    QCOMPARE(out.entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("out.qmd")});

    // Without the limit the same command replaces the file.
    run = runCli({QStringLiteral("convert"), imagePath, document});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY(readFile(document).startsWith(QByteArray::fromHex("CEC50B25E8654A4F9E63120098E6C0FD")));
    QVERIFY(run.out.contains(QStringLiteral("4 tiles")));
    // The header, one layer record named "Layer 1", and four tiles.
    QCOMPARE(readFile(document).size(), 84 + 52 + 4 * (16 + 1048576));
    QCOMPARE(out.entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("out.qmd")});
}

QUILLMERE_TEST_MAIN(TestDocumentCommands)
#include "tst_documentcommands.moc"
