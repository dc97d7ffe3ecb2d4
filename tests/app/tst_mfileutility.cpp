#include "support/testenvironment.h"

#include "app/mapplication.h"
#include "app/mfileutility.h"
#include "app/mpathvar.h"
#include "app/mpathvarlist.h"
#include "app/mutility.h"

#include <QLocalSocket>
#include <QPushButton>

class TestFileUtility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filtersComeFromTheFormatsQtReads();
    void pathVariablesExpandInOrder();
    void waitSwallowsInputUntilItEnds();
    void buildPlacesTheDataSkeletonBesideThePrograms();
    void installationFillsOnlyEmptyUserDirectories();

private:
    // Runs a copy of the program from its own directory until it has started
    // up, then stops it.
    static bool runProgramOnce(const QString& program, QString* why);
    static QString userDir(const QString& name);
};

void TestFileUtility::filtersComeFromTheFormatsQtReads()
{
    const QStringList formats = MFileUtility::imageFormats();
    QVERIFY(formats.contains(QStringLiteral("png")));
    QVERIFY(formats.contains(QStringLiteral("jpg")));
    for (const QString& format : formats) {
        QCOMPARE(format, format.toLower());
        QCOMPARE(formats.count(format), 1);
    }

    const QStringList extensions = MFileUtility::imageFilters(true);
    QCOMPARE(extensions.size(), formats.size());
    QVERIFY(extensions.contains(QStringLiteral("*.png")));

    const QStringList filters = MFileUtility::imageFilters(false);
    QCOMPARE(filters.size(), formats.size() + 1);
    QCOMPARE(filters.first(), QStringLiteral("All image files (") + extensions.join(QLatin1Char(' ')) + ")");
    QVERIFY(filters.contains(QStringLiteral("Portable Network Graphics (*.png)")));
    QVERIFY(filters.contains(QStringLiteral("Joint Photographic Experts Group (*.jpeg)")));
    QCOMPARE(MFileUtility::formatDescription(QStringLiteral("TGA")), QStringLiteral("Truevision Targa"));
    QCOMPARE(MFileUtility::formatDescription(QStringLiteral("icns")), QStringLiteral("icns files"));

    QCOMPARE(MFileUtility::documentFilters(),
             QStringList({"Quillmere files (*.qmd)", "All files (*.*)"}));
    QCOMPARE(MFileUtility::modelFilters(), QStringList({"WaveFront object files (*.obj)", "All files (*.*)"}));
}

void TestFileUtility::pathVariablesExpandInOrder()
{
    MPathVarList list;
    QCOMPARE(list.count(), 3);
    QCOMPARE(list.at(0)->variable(), QStringLiteral("$DocumentsPath$"));
    QCOMPARE(list.at(1)->variable(), QStringLiteral("$ImagesPath$"));
    QCOMPARE(list.at(2)->variable(), QStringLiteral("$InstallationPath$"));
    QCOMPARE(list.at(2)->description(), QStringLiteral("Installation path"));
    QVERIFY(!list.at(3));

    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString images = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString installation = QCoreApplication::applicationDirPath();
    QCOMPARE(list.expand(QStringLiteral("$ImagesPath$/a.png;$ImagesPath$/b.png")),
             images + "/a.png;" + images + "/b.png");
    QCOMPARE(list.expand(QStringLiteral("$DocumentsPath$|$InstallationPath$")), documents + "|" + installation);
    // Case matters, and unknown variables stay as they are.
    QCOMPARE(list.expand(QStringLiteral("$imagespath$ $Other$")), QStringLiteral("$imagespath$ $Other$"));
}

void TestFileUtility::waitSwallowsInputUntilItEnds()
{
    QPushButton button(QStringLiteral("Press"));
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QSignalSpy clicked(&button, &QPushButton::clicked);

    MUtility::beginWait();
    MUtility::beginWait(); // nested waits stack cursors but keep one filter
    QVERIFY(MUtility::isWaiting());
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 0);

    MUtility::endWait();
    QVERIFY(!MUtility::isWaiting());
    QVERIFY(!QApplication::overrideCursor());
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    MUtility::endWait(); // harmless when nothing waits
}

void TestFileUtility::buildPlacesTheDataSkeletonBesideThePrograms()
{
    const QString datas = QFileInfo(QStringLiteral(QUILLMERE_APP_PATH)).path() + QStringLiteral("/datas/");
    for (const char* name :
         {"brushes", "shaders", "papers", "shapes", "snippets", "swatches", "templates", "textures"})
        QVERIFY2(QFileInfo(datas + name).isDir(), name);
}

QString TestFileUtility::userDir(const QString& name)
{
    // The program itself knows no test mode: it writes under XDG_DATA_HOME.
    return QuillmereTest::temporaryHome() + QStringLiteral("/.local/share/Tarnbeck/Quillmere/datas/") + name;
}

bool TestFileUtility::runProgramOnce(const QString& program, QString* why)
{
    QProcess process;
    process.setProcessEnvironment(QuillmereTest::childEnvironment());
    process.start(program, QStringList());
    if (!process.waitForStarted()) {
        *why = QStringLiteral("the program did not start");
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    bool listening = false;
    while (!listening && timer.elapsed() < 60000 && process.state() == QProcess::Running) {
        QLocalSocket probe;
        probe.connectToServer(MApplication::serverName);
        listening = probe.waitForConnected(200);
        if (!listening)
            QTest::qWait(100);
    }
    process.kill();
    process.waitForFinished(10000);
    if (!listening)
        *why = QStringLiteral("the program never finished starting: ") + QString::fromLocal8Bit(process.readAll());
    return listening;
}

void TestFileUtility::installationFillsOnlyEmptyUserDirectories()
{
    // A copy of the program in a directory of its own, with shipped data beside it.
    QTemporaryDir installation;
    const QString program = installation.filePath(QStringLiteral("quillmere"));
    QVERIFY(QFile::copy(QStringLiteral(QUILLMERE_APP_PATH), program));
    auto ship = [&](const QString& relative) {
        const QString path = installation.filePath(QStringLiteral("datas/") + relative);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(relative.toUtf8());
    };
    ship(QStringLiteral("brushes/pencil.qmb"));
    ship(QStringLiteral("brushes/ink.qmb"));
    ship(QStringLiteral("brushes/sub/deep.qmb"));
    ship(QStringLiteral("swatches/basic.qmp"));
    ship(QStringLiteral("models/cube.obj")); // models are not installed

    // The user's palettes can't be made: a file stands where the directory should be.
    QDir().mkpath(QFileInfo(userDir(QStringLiteral("swatches"))).path());
    {
        QFile blocker(userDir(QStringLiteral("swatches")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
    }

    QString why;
    QVERIFY2(runProgramOnce(program, &why), qPrintable(why));
    QVERIFY(QFile::exists(userDir(QStringLiteral("brushes/pencil.qmb"))));
    QVERIFY(QFile::exists(userDir(QStringLiteral("brushes/ink.qmb"))));
    QFile deep(userDir(QStringLiteral("brushes/sub/deep.qmb")));
    QVERIFY(deep.open(QIODevice::ReadOnly));
    QCOMPARE(deep.readAll(), QByteArray("brushes/sub/deep.qmb"));
    QVERIFY(!QFileInfo::exists(userDir(QStringLiteral("models"))));
    QVERIFY(QFileInfo(userDir(QStringLiteral("shaders"))).isDir()); // made, though nothing was shipped

    QFile log(QuillmereTest::temporaryHome() + QStringLiteral("/.local/share/Tarnbeck/Quillmere/tarnbeck.log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains("MFileUtility::installData: System error: Cannot copy"));
    log.close();

    // A file the user deleted stays deleted while another one remains...
    QVERIFY(QFile::remove(userDir(QStringLiteral("brushes/pencil.qmb"))));
    QVERIFY2(runProgramOnce(program, &why), qPrintable(why));
    QVERIFY(!QFile::exists(userDir(QStringLiteral("brushes/pencil.qmb"))));

    // ...and an emptied directory is filled again.
    QVERIFY(MUtility::clearDirectory(userDir(QStringLiteral("brushes")), false, true));
    QVERIFY2(runProgramOnce(program, &why), qPrintable(why));
    QVERIFY(QFile::exists(userDir(QStringLiteral("brushes/pencil.qmb"))));
    QVERIFY(QFile::exists(userDir(QStringLiteral("brushes/sub/deep.qmb"))));
}

QUILLMERE_TEST_MAIN(TestFileUtility)
#include "tst_mfileutility.moc"
