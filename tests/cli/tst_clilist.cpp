#include "support/clirun.h"
#include "support/testenvironment.h"

#include "brush/mbrush.h"
#include "brush/mbrushstream.h"
#include "effects/mshader.h"
#include "effects/mshaderstream.h"

#include <QDir>
#include <QProcessEnvironment>

using QuillmereTest::Run;
using QuillmereTest::runCli;

namespace {

// The shipped folder of a kind, beside the programs.
QString shippedFolder(const QString& kind)
{
    return QFileInfo(QuillmereTest::cliPath()).path() + QStringLiteral("/datas/") + kind + QLatin1Char('/');
}

// Where the command-line program, which runs without the test mode, keeps the user's files.
QString childUserFolder(const QString& kind)
{
    const QString dataHome = QProcessEnvironment::systemEnvironment().value(QStringLiteral("XDG_DATA_HOME"));
    return dataHome + QStringLiteral("/Tarnbeck/Quillmere/datas/") + kind + QLatin1Char('/');
}

QStringList lines(const QString& text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class TestCliList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void effectsAndEngines();
    void brushesWithAUserOverride();
    void usageErrors();
};

void TestCliList::effectsAndEngines()
{
    // What the shipped files say, read here.
    QHash<QString, int> types;
    const QFileInfoList files =
        QDir(shippedFolder(QStringLiteral("shaders"))).entryInfoList({"*.qsh"}, QDir::Files);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo& file : files) {
        MShader shader;
        MShaderStream stream(&shader);
        QVERIFY(stream.load(file.absoluteFilePath()));
        types.insert(file.completeBaseName().toUpper(), shader.type());
    }

    const Run run = runCli({QStringLiteral("list"), QStringLiteral("effects")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.err.isEmpty(), qPrintable(run.err));
    QSet<QString> listed;
    for (const QString& line : lines(run.out)) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        QVERIFY2(types.contains(fields.first()), qPrintable(line));
        const bool engine = types.value(fields.first()) == MShader::BrushShader;
        QCOMPARE(fields.size(), engine ? 4 : 3);
        if (engine)
            QCOMPARE(fields.at(3), QStringLiteral("brush engine"));
        QVERIFY2(!fields.at(1).isEmpty() && !fields.at(2).isEmpty(), qPrintable(line));
        listed.insert(fields.first());
    }
    QCOMPARE(listed.size(), types.size());
}

void TestCliList::brushesWithAUserOverride()
{
    const QFileInfoList files =
        QDir(shippedFolder(QStringLiteral("brushes"))).entryInfoList({"*.qmb"}, QDir::Files, QDir::Name);
    QVERIFY(!files.isEmpty());
    Run run = runCli({QStringLiteral("list"), QStringLiteral("brushes")});
    QCOMPARE(run.exitCode, 0);
    const QStringList shipped = lines(run.out);
    QCOMPARE(shipped.size(), files.size());

    // A user's file of the same id replaces the shipped brush in place.
    const QString id = shipped.first().section(QLatin1Char('\t'), 0, 0);
    MBrush brush;
    MBrushStream stream(&brush);
    QVERIFY(stream.load(shippedFolder(QStringLiteral("brushes")) + id.toLower() + QStringLiteral(".qmb")));
    brush.set_description(QStringLiteral("My\tOwn"));
    QVERIFY(QDir().mkpath(childUserFolder(QStringLiteral("brushes"))));
    QVERIFY(stream.save(childUserFolder(QStringLiteral("brushes")) + id.toLower() + QStringLiteral(".qmb")));
    run = runCli({QStringLiteral("list"), QStringLiteral("brushes")});
    QCOMPARE(run.exitCode, 0);
    const QStringList mine = lines(run.out);
    QCOMPARE(mine.size(), shipped.size());
    // Stored lower-cased; a tab inside a field would break the columns.
    QCOMPARE(mine.first(), id + QStringLiteral("\t") + shipped.first().section(QLatin1Char('\t'), 1, 1) +
                               QStringLiteral("\tmy own"));
    QCOMPARE(mine.mid(1), shipped.mid(1));
}

void TestCliList::usageErrors()
{
    for (const QStringList& arguments :
         {QStringList{"list"}, QStringList{"list", "colours"}, QStringList{"list", "brushes", "effects"}}) {
        const Run run = runCli(arguments);
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.err.contains(QStringLiteral("Usage: quillmere-cli list brushes|effects")));
        QVERIFY(run.out.isEmpty());
    }
}

QUILLMERE_TEST_MAIN(TestCliList)

#include "tst_clilist.moc"
