#include "support/testenvironment.h"

#include "app/mlogger.h"
#include "app/mutility.h"

class TestLogger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesFollowTheHouseFormat();
    void constructionTruncatesTheLog();
    void unwritableLogDropsLinesSilently();

private:
    static QStringList logLines();
};

QStringList TestLogger::logLines()
{
    QFile file(MLogger::logFilePath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void TestLogger::linesFollowTheHouseFormat()
{
    QCOMPARE(MLogger::logFilePath(), MUtility::userDataDir() + QStringLiteral("tarnbeck.log"));
    QVERIFY(MLogger::logFilePath().startsWith(QuillmereTest::temporaryHome()));

    MLogger::instance()->write(QStringLiteral("hello world"));
    MLogger::instance()->write(QStringLiteral("already ends."));
    MLogger::instance()->write(QStringLiteral("élan vital"));
    MLogger::systemError(QStringLiteral("MCanvas::initializeGL"), QStringLiteral("Unable to make current"));

    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 5);
    const QRegularExpression dated(QStringLiteral("^\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}:\\d{2}: (.*)$"));
    QStringList texts;
    for (const QString& line : lines) {
        const QRegularExpressionMatch match = dated.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        texts << match.captured(1);
    }
    QCOMPARE(texts.at(0), QStringLiteral("Starting tarnbeck log session."));
    QCOMPARE(texts.at(1), QStringLiteral("Hello world."));
    QCOMPARE(texts.at(2), QStringLiteral("Already ends."));
    QCOMPARE(texts.at(3), QStringLiteral("Élan vital."));
    QCOMPARE(texts.at(4), QStringLiteral("MCanvas::initializeGL: System error: Unable to make current."));

    const QDateTime stamp = QDateTime::fromString(lines.at(1).left(19), QStringLiteral("yyyy/MM/dd hh:mm:ss"));
    QVERIFY(stamp.isValid());
    QVERIFY(qAbs(stamp.secsTo(QDateTime::currentDateTime())) < 120);
}

void TestLogger::constructionTruncatesTheLog()
{
    {
        QFile file(MLogger::logFilePath());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Append));
        file.write("a line of an earlier session\n");
    }
    MLogger fresh; // a second logger, as a new process would make
    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.at(0).endsWith(QStringLiteral(": Starting tarnbeck log session.")));
}

void TestLogger::unwritableLogDropsLinesSilently()
{
    // A directory in the log's place can't be opened as a file, even by root.
    QVERIFY(QFile::remove(MLogger::logFilePath()));
    QVERIFY(QDir().mkpath(MLogger::logFilePath()));
    MLogger::instance()->write(QStringLiteral("goes nowhere"));
    MLogger blocked;
    QVERIFY(QFileInfo(MLogger::logFilePath()).isDir());
    QVERIFY(QDir().rmdir(MLogger::logFilePath()));

    MLogger::instance()->write(QStringLiteral("back again"));
    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.at(0).endsWith(QStringLiteral(": Back again.")));
}

QUILLMERE_TEST_MAIN(TestLogger)
#include "tst_mlogger.moc"
