// quillmere-cli paint, run as a user would: recorded strokes replayed into a
// document, byte for byte the same on every run, on the chosen layer with the
// chosen brush and colour; and the stroke file's reader against damaged input.

#include "support/clirun.h"
#include "support/glcontext.h"
#include "support/tilebytes.h"

#include "brush/mbrush.h"
#include "brush/mbrushstream.h"
#include "brush/mstrokefile.h"
#include "document/mcanvas.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>

namespace {

// A wavy stroke left to right across the middle of the page, with pressure
// rising, sampled every 8 milliseconds.
QJsonArray wave(double y, int samples = 60)
{
    QJsonArray stroke;
    for (int i = 0; i < samples; ++i) {
        const double x = -200.0 + 400.0 * i / (samples - 1);
        stroke.append(QJsonObject{{QStringLiteral("x"), x},
                                  {QStringLiteral("y"), y + 30.0 * std::sin(i * 0.3)},
                                  {QStringLiteral("p"), 0.3 + 0.7 * i / (samples - 1)},
                                  {QStringLiteral("t"), 8.0 * i}});
    }
    return stroke;
}

using QuillmereTest::readFile;
using QuillmereTest::writeFile;

} // namespace

class TestCliPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void replayIsDeterministicAndLandsOnTheLayer();
    void brushColourAndLayerOptions();
    void refusalsLeaveNoFile();
    void strokeFileReadsAppendsAndRefuses();

private:
    // Layer row of the document at path, rendered at the page's size.
    QImage layer(const QString& path, int row);
    QString path(const QString& name) const { return m_dir.filePath(name); }

    QuillmereTest::GLContext m_gl;
    QTemporaryDir m_dir;
    QString m_document;
    QString m_events;
};

void TestCliPaint::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    // Two empty layers on a 600 by 400 page.
    MCanvas canvas;
    QVERIFY(canvas.makeCurrent());
    canvas.setPaintedRect(QRectF(-300, -200, 600, 400));
    canvas.appendLayer();
    QCOMPARE(canvas.count(), 2);
    m_document = path(QStringLiteral("empty.qmd"));
    QVERIFY(canvas.save(m_document));
    m_events = path(QStringLiteral("events.json"));
    const QJsonObject events{{QStringLiteral("strokes"), QJsonArray{wave(-80), wave(80)}}};
    QVERIFY(writeFile(m_events, QJsonDocument(events).toJson()));
}

QImage TestCliPaint::layer(const QString& file, int row)
{
    MCanvas canvas;
    if (!canvas.makeCurrent() || !canvas.load(file))
        return QImage();
    return canvas.render(row);
}

void TestCliPaint::replayIsDeterministicAndLandsOnTheLayer()
{
    const QString first = path(QStringLiteral("first.qmd"));
    const QString second = path(QStringLiteral("second.qmd"));
    for (const QString& output : {first, second}) {
        const QuillmereTest::Run run =
            QuillmereTest::runCli({QStringLiteral("paint"), m_document, output, QStringLiteral("--events"), m_events});
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QVERIFY(run.err.isEmpty());
    }
    const QByteArray bytes = readFile(first);
    QVERIFY(!bytes.isEmpty());
    QVERIFY(bytes == readFile(second));

    // The top layer got both strokes, dark, in the grain of the list's
    // current brush (a pencil); the bottom one stayed empty.
    const QImage top = layer(first, 1);
    const QImage bottom = layer(first, 0);
    QCOMPARE(top.size(), QSize(600, 400));
    int painted = 0;
    for (int y = 0; y < top.height(); ++y)
        for (int x = 0; x < top.width(); ++x) {
            QCOMPARE(qAlpha(bottom.pixel(x, y)), 0);
            if (qAlpha(top.pixel(x, y)) > 0)
                ++painted;
            if (qAlpha(top.pixel(x, y)) > 100)
                QVERIFY(qRed(top.pixel(x, y)) < 40);
        }
    QVERIFY2(painted > 2000, qPrintable(QString::number(painted)));
    // Near each stroke's middle (x = 0, canvas), nothing far from its waves.
    QVERIFY(qAlpha(top.pixel(300, 200)) == 0);
    int column = 0;
    for (int y = 0; y < 200; ++y)
        column += qAlpha(top.pixel(300, y)) > 0 ? 1 : 0;
    QVERIFY(column > 0);
}

void TestCliPaint::brushColourAndLayerOptions()
{
    // A brush file: hard, radius 12.
    MBrush brush;
    brush.set_id(QStringLiteral("{5F0A2E44-1C3B-4E7D-9A21-6B8C0D4E2F13}"));
    brush.set_description(QStringLiteral("test round"));
    brush.setRadius(12);
    brush.setBaseValue(MEnum::bsHardness, 1.0);
    const QString brushFile = path(QStringLiteral("round.qmb"));
    QVERIFY(MBrushStream(&brush).save(brushFile));

    const QString output = path(QStringLiteral("red.qmd"));
    const QuillmereTest::Run run = QuillmereTest::runCli(
        {QStringLiteral("paint"), m_document, output, QStringLiteral("--events"), m_events, QStringLiteral("--layer"),
         QStringLiteral("0"), QStringLiteral("--color"), QStringLiteral("#FF0000"), QStringLiteral("--brush"),
         brushFile});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QImage bottom = layer(output, 0);
    const QImage top = layer(output, 1);
    int red = 0;
    for (int y = 0; y < bottom.height(); ++y)
        for (int x = 0; x < bottom.width(); ++x) {
            QCOMPARE(qAlpha(top.pixel(x, y)), 0);
            const QRgb px = bottom.pixel(x, y);
            if (qAlpha(px) == 255) {
                QCOMPARE(QColor(px), QColor(Qt::red));
                ++red;
            }
        }
    QVERIFY(red > 1000);
    // The middle column crosses each wave once, at least as thick as the
    // brush's 24 pixels, more where the wave climbs.
    int thickness = 0;
    int runs = 0;
    bool inside = false;
    for (int y = 0; y < bottom.height(); ++y) {
        const bool solid = qAlpha(bottom.pixel(300, y)) == 255;
        thickness += solid ? 1 : 0;
        runs += solid && !inside ? 1 : 0;
        inside = solid;
    }
    QCOMPARE(runs, 2);
    QVERIFY2(thickness >= 2 * 22 && thickness <= 2 * 80, qPrintable(QString::number(thickness)));
}

void TestCliPaint::refusalsLeaveNoFile()
{
    const QString output = path(QStringLiteral("refused.qmd"));
    const QString badEvents = path(QStringLiteral("bad.json"));
    QVERIFY(writeFile(badEvents, R"({"strokes": [[{"x": 1, "y": 2}, {"x": "3", "y": 4}]]})"));
    const QList<QPair<QStringList, int>> cases = {
        {{m_document, output}, 2},
        {{m_document, output, QStringLiteral("--events")}, 2},
        {{m_document, output, QStringLiteral("--events"), m_events, QStringLiteral("--color"), QStringLiteral("red")}, 2},
        {{m_document, output, QStringLiteral("--events"), m_events, QStringLiteral("--layer"), QStringLiteral("2")}, 2},
        {{m_document, output, QStringLiteral("--events"), m_events, QStringLiteral("--layer"), QStringLiteral("-1")}, 2},
        {{m_document, output, QStringLiteral("--events"), m_events, QStringLiteral("--brush"), QStringLiteral("nobrush")}, 2},
        {{m_document, output, QStringLiteral("--events"), m_events, QStringLiteral("--brush"), path(QStringLiteral("none.qmb"))}, 1},
        {{m_document, output, QStringLiteral("--events"), badEvents}, 1},
        {{m_document, output, QStringLiteral("--events"), path(QStringLiteral("missing.json"))}, 1},
        {{path(QStringLiteral("missing.qmd")), output, QStringLiteral("--events"), m_events}, 1},
        {{m_document, output, QStringLiteral("--events"), m_events, QStringLiteral("--frobnicate")}, 2},
    };
    for (const auto& entry : cases) {
        const QuillmereTest::Run run = QuillmereTest::runCli(QStringList{QStringLiteral("paint")} + entry.first);
        QVERIFY2(run.exitCode == entry.second,
                 qPrintable(entry.first.join(QLatin1Char(' ')) + QStringLiteral(": ") + run.err));
        QVERIFY(!run.err.isEmpty());
        QVERIFY(!QFile::exists(output));
    }
    const QuillmereTest::Run run =
        QuillmereTest::runCli({QStringLiteral("paint"), m_document, output, QStringLiteral("--events"), badEvents});
    QVERIFY2(run.err.contains(QStringLiteral("stroke 1, sample 2: \"x\" is not a number")), qPrintable(run.err));
}

void TestCliPaint::strokeFileReadsAppendsAndRefuses()
{
    // Appending creates the file, then adds after what is there; defaults
    // fill what a sample leaves out.
    const QString file = path(QStringLiteral("recorded.json"));
    MStrokeFile::Stroke stroke;
    stroke.append({1.5, -2.0, 0.25, 0.0, 10.0, -20.0});
    stroke.append({4.0, 8.0, 0.5, 16.0, 0.0, 0.0});
    QVERIFY(MStrokeFile::append(file, stroke));
    QVERIFY(MStrokeFile::append(file, stroke.mid(0, 1)));
    QVector<MStrokeFile::Stroke> strokes;
    QString error;
    QVERIFY2(MStrokeFile::read(file, strokes, &error), qPrintable(error));
    QCOMPARE(strokes.size(), 2);
    QCOMPARE(strokes.at(0).size(), 2);
    QCOMPARE(strokes.at(1).size(), 1);
    QCOMPARE(strokes.at(0).at(0).xTilt, 10.0);
    QCOMPARE(strokes.at(0).at(1).time, 16.0);
    QCOMPARE(strokes.at(0).at(1).y, 8.0);
    QVERIFY(MStrokeFile::parse(R"({"strokes": [[{"x": 1, "y": 2}, {"x": 3, "y": 4, "t": 5}, {"x": 0, "y": 0}]]})",
                               strokes, &error));
    QCOMPARE(strokes.at(0).at(0).pressure, 1.0);
    QCOMPARE(strokes.at(0).at(2).time, 5.0);

    // A file that isn't a stroke file isn't overwritten by a recording.
    const QString other = path(QStringLiteral("other.json"));
    QVERIFY(writeFile(other, "[1, 2, 3]"));
    QVERIFY(!MStrokeFile::append(other, stroke, &error));
    QCOMPARE(readFile(other), QByteArray("[1, 2, 3]"));

    const QList<QPair<QByteArray, QString>> refused = {
        {"", QStringLiteral("not JSON at byte 0")},
        {"{\"strokes\": 3}", QStringLiteral("\"strokes\" is missing or not an array")},
        {"{\"strokes\": [3]}", QStringLiteral("stroke 1 is not an array")},
        {"{\"strokes\": [[], [5]]}", QStringLiteral("stroke 2, sample 1 is not an object")},
        {"{\"strokes\": [[{\"x\": 1}]]}", QStringLiteral("stroke 1, sample 1 has no \"x\" or no \"y\"")},
        {"{\"strokes\": [[{\"x\": 1, \"y\": 1e9}]]}", QStringLiteral("\"y\" is out of range")},
        {"{\"strokes\": [[{\"x\": 1, \"y\": 1, \"p\": 1.5}]]}", QStringLiteral("\"p\" is out of range")},
        {"{\"strokes\": [[{\"x\": 1, \"y\": 1, \"p\": -0.5}]]}", QStringLiteral("\"p\" is out of range (0 to 1)")},
        {"{\"strokes\": [[{\"x\": 1, \"y\": 1, \"xt\": 400}]]}", QStringLiteral("\"xt\" is out of range")},
        {"{\"strokes\": [[{\"x\": 1, \"y\": 1, \"t\": null}]]}", QStringLiteral("\"t\" is not a number")},
    };
    for (const auto& entry : refused) {
        strokes = {stroke};
        error.clear();
        QVERIFY2(!MStrokeFile::parse(entry.first, strokes, &error), entry.first.constData());
        QVERIFY2(error.contains(entry.second), qPrintable(error));
        QCOMPARE(strokes.size(), 1);
    }

    // Mutations of a good file: every byte changed or cut, and random noise,
    // never crash; what is accepted holds only samples within the limits.
    const QByteArray good = readFile(file);
    QRandomGenerator random(11);
    for (int round = 0; round < 3000; ++round) {
        QByteArray mutated = good;
        const int at = int(random.bounded(quint32(mutated.size())));
        switch (round % 3) {
        case 0:
            mutated[at] = char(random.bounded(256));
            break;
        case 1:
            mutated.truncate(at);
            break;
        default:
            mutated.insert(at, QByteArray::number(random.bounded(1e12) - 5e11));
            break;
        }
        QVector<MStrokeFile::Stroke> read;
        if (!MStrokeFile::parse(mutated, read, &error))
            continue;
        for (const MStrokeFile::Stroke& s : qAsConst(read))
            for (const MStrokeFile::Sample& sample : s)
                QVERIFY(std::abs(sample.x) <= MStrokeFile::maximumCoordinate &&
                        std::abs(sample.y) <= MStrokeFile::maximumCoordinate && sample.pressure >= 0.0 &&
                        sample.pressure <= 1.0);
    }
}

QUILLMERE_TEST_MAIN(TestCliPaint)
#include "tst_clipaint.moc"
