#include "support/testenvironment.h"

#include "app/mapplication.h"
#include "app/mlogger.h"
#include "app/mmainwindow.h"
#include "app/mmath.h"
#include "app/mnamedmutex.h"
#include "app/msettings.h"
#include "app/msingleinstance.h"
#include "app/mutility.h"
#include "brush/mbrushlist.h"
#include "document/mcanvas.h"
#include "effects/mshaderlist.h"
#include "gpu/mopengl.h"

#include <cmath>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

// Runs the program's own loop in this process: start-up, a restart on the
// restart code, and the shutdown of each round.
class TestApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void restartRunsStartUpAndShutDownAgain();
    void aFirstArgumentThatExistsIsOpened();
    void mathTableHoldsItsAngles();
    void frenchIsShownWhenChosen();

private:
    static QString logText();
};

QString TestApplication::logText()
{
    QFile file(MLogger::logFilePath());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void TestApplication::restartRunsStartUpAndShutDownAgain()
{
    QByteArray program = "quillmere";
    char* argv[] = {program.data(), nullptr};
    int argc = 1;

    int rounds = 0;
    bool staleFileGone = false;
    bool mipmapsBackOn = false;
    bool raised = false;
    bool mutexHeld = false;
    bool openglReady = false;
    MSettings* firstSettings = nullptr;
    MSettings* secondSettings = nullptr;

    const int code = MApplication::run(argc, argv, [&](MApplication& application) {
        ++rounds;
        openglReady = MOpenGL::instance()->isInitialized() && application.mainWindow() &&
                      application.mainWindow()->isVisible();
        if (rounds == 1) {
            firstSettings = MSettings::instance();
            // What a crashed or ending session leaves in the cache must be gone
            // before the next round's main window exists.
            QFile stale(MUtility::tempDir() + QStringLiteral("sub/{stale}.data"));
            QDir().mkpath(MUtility::tempDir() + QStringLiteral("sub"));
            stale.open(QIODevice::WriteOnly);
            stale.write("stale");
            stale.close();
            MSettings::instance()->set_generateMipmaps(false);
            QTimer::singleShot(0, &application, [] { QCoreApplication::exit(MApplication::restartCode); });
            return;
        }
        secondSettings = MSettings::instance();
        staleFileGone = QDir(MUtility::tempDir()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot);
        mipmapsBackOn = MSettings::instance()->generateMipmaps();

        // The marker that outside tools watch is held: an exclusive lock fails.
        const int fd =
            ::open(QFile::encodeName(MNamedMutex::path(MApplication::mutexName)).constData(), O_RDWR);
        mutexHeld = fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) != 0;
        if (fd >= 0)
            ::close(fd);

        // A second start, here from the same process, raises the window.
        QTimer::singleShot(0, &application, [&] {
            MSingleInstance second(MApplication::serverName);
            QVERIFY(second.sendMessage(MApplication::serverName, {QStringLiteral("hello")}));
            QTRY_VERIFY_WITH_TIMEOUT(application.mainWindow()->isMaximized(), 10000);
            raised = true;
            QCoreApplication::exit(7);
        });
    });

    QCOMPARE(code, 7);
    QCOMPARE(rounds, 2);
    QVERIFY(openglReady);
    QVERIFY(firstSettings && secondSettings);
    QVERIFY(staleFileGone);
    QVERIFY(mipmapsBackOn);
    QVERIFY(mutexHeld);
    QVERIFY(raised);
    // Shutdown releases every singleton it made.
    QVERIFY(!MSettings::exists());
    QVERIFY(!MOpenGL::exists());
    QVERIFY(!MMath::exists());
    QVERIFY(!MShaderList::exists());
    QVERIFY(!MBrushList::exists());
    QVERIFY(!MApplication::exists());
    QVERIFY(MLogger::exists());

    const QString log = logText();
    QCOMPARE(log.count(QStringLiteral("Starting tarnbeck log session.")), 1); // the log outlives a restart
    QCOMPARE(log.count(QStringLiteral("Settings loaded.")), 2);
    QCOMPARE(log.count(QStringLiteral("translation, langId = en")) +
                 log.count(QStringLiteral("translation loaded, langId = en")),
             4);
    // Each round reads the effects, then the brushes, which name effects as their engines.
    QCOMPARE(log.count(QStringLiteral("Shaders loaded: ")), 2);
    QCOMPARE(log.count(QStringLiteral("Brushes loaded: ")), 2);
    QVERIFY(log.indexOf(QStringLiteral("Shaders loaded: ")) < log.indexOf(QStringLiteral("Brushes loaded: ")));
}

void TestApplication::aFirstArgumentThatExistsIsOpened()
{
    QTemporaryDir scratch;
    const QString existing = scratch.filePath(QStringLiteral("drawing.png"));
    QImage image(40, 30, QImage::Format_ARGB32);
    image.fill(Qt::darkCyan);
    QVERIFY(image.save(existing));

    // A missing file is not stored at all: opening it would stop the start
    // on an error box.
    for (const QString& argument : {scratch.filePath(QStringLiteral("missing.png")), existing}) {
        QByteArray program = "quillmere";
        QByteArray path = QFile::encodeName(argument);
        char* argv[] = {program.data(), path.data(), nullptr};
        int argc = 2;
        QSizeF page;
        QString leftOver = QStringLiteral("unread");
        const int code = MApplication::run(argc, argv, [&](MApplication& application) {
            page = application.mainWindow()->canvas()->paintedRect().size();
            leftOver = MSettings::instance()->startupFile();
            QTimer::singleShot(0, &application, [] { QCoreApplication::exit(0); });
        });
        QCOMPARE(code, 0);
        QVERIFY(leftOver.isEmpty());
        QCOMPARE(page == QSizeF(40, 30), argument == existing);
    }
}

void TestApplication::mathTableHoldsItsAngles()
{
    MMath math;
    QCOMPARE(math.table()[0], 0.0);
    QCOMPARE(math.table()[1], std::atan2(10.0, 290.0));
    QCOMPARE(math.table()[29], std::atan2(10.0, 10.0));
    for (int i = 2; i < MMath::tableSize; ++i)
        QVERIFY(math.table()[i] > math.table()[i - 1]);
}

void TestApplication::frenchIsShownWhenChosen()
{
    QSettings().setValue(QStringLiteral("userLangId"), QStringLiteral("FR"));
    QByteArray program = "quillmere";
    char* argv[] = {program.data(), nullptr};
    int argc = 1;
    QString splashText;
    QString settingsLabel;
    QString qtText;
    const int code = MApplication::run(argc, argv, [&](MApplication& application) {
        splashText = QCoreApplication::translate("MApplication", "translation loaded...");
        settingsLabel = MSettings::instance()->item(QStringLiteral("showGrid"))->label();
        qtText = QCoreApplication::translate("QPlatformTheme", "Cancel");
        MSettings::instance()->set_userLangId(QStringLiteral("en"));
        QTimer::singleShot(0, &application, [] { QCoreApplication::exit(0); });
    });
    QCOMPARE(code, 0);
    QCOMPARE(splashText, QStringLiteral("traduction chargée..."));
    QCOMPARE(settingsLabel, QStringLiteral("Afficher la grille"));
    QCOMPARE(qtText, QStringLiteral("Annuler"));
    const QString log = logText();
    QVERIFY(log.contains(QStringLiteral("Quillmere translation loaded, langId = fr.")));
    QVERIFY(log.contains(QStringLiteral("Qt translation loaded, langId = fr.")));
}

// The program's loop makes its own application objects, so none is made here.
int main(int argc, char** argv)
{
    QuillmereTest::isolateEnvironment();
    MApplication::prepareProcess();
    TestApplication test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_mapplication.moc"
