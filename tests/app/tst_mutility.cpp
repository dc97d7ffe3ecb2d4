#include "support/testenvironment.h"

#include "app/mutility.h"

class TestUtility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void directoriesAreMadeWhereTheyBelong();
    void clearDirectoryWalksAsAsked();

private:
    static void touch(const QString& path);
};

void TestUtility::touch(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("x");
}

void TestUtility::directoriesAreMadeWhereTheyBelong()
{
    const QString user = MUtility::userDataDir();
    QVERIFY(user.startsWith(QuillmereTest::temporaryHome()));
    QVERIFY(user.endsWith(QStringLiteral("/Tarnbeck/Quillmere/")));
    QVERIFY(QFileInfo(user).isDir());

    const QString app = MUtility::applicationDir();
    QCOMPARE(app, QCoreApplication::applicationDirPath() + QLatin1Char('/'));

    QCOMPARE(MUtility::directory(MEnum::UserPath, MEnum::BrushDir), user + QStringLiteral("datas/brushes/"));
    QCOMPARE(MUtility::directory(MEnum::UserPath, MEnum::TextureDir), user + QStringLiteral("datas/textures/"));
    QCOMPARE(MUtility::directory(MEnum::SystemPath, MEnum::SwatchDir), app + QStringLiteral("datas/swatches/"));
    // The cache is the user's whatever is asked.
    QCOMPARE(MUtility::directory(MEnum::SystemPath, MEnum::CacheDir), user + QStringLiteral("cache/"));
    QCOMPARE(MUtility::directory(MEnum::UserPath, MEnum::CacheDir), user + QStringLiteral("cache/"));
    QCOMPARE(MUtility::tempDir(), user + QStringLiteral("cache/"));
    QVERIFY(QFileInfo(MUtility::tempDir()).isDir());
    QVERIFY(QFileInfo(user + QStringLiteral("datas/brushes")).isDir());

    QCOMPARE(MUtility::tileFilePath(QStringLiteral("  {AB12CD34-0000-4000-8000-00000000ABCD} ")),
             user + QStringLiteral("cache/{ab12cd34-0000-4000-8000-00000000abcd}.data"));
    QCOMPARE(MUtility::translationFile(QStringLiteral("fr")), app + QStringLiteral("translations/quillmere_fr.qm"));

    const QStringList names = {"brushes", "cache",    "models",    "papers",   "shaders",
                               "shapes",  "snippets", "swatches", "templates", "textures"};
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(MUtility::directoryName(MEnum::Directory(i)), names.at(i));
}

void TestUtility::clearDirectoryWalksAsAsked()
{
    QTemporaryDir scratch;
    const QString root = scratch.path() + QStringLiteral("/root");
    touch(root + QStringLiteral("/a.data"));
    touch(root + QStringLiteral("/.hidden"));
    touch(root + QStringLiteral("/sub/b.data"));
    touch(root + QStringLiteral("/sub/deeper/c.data"));

    // Not recursive: files go, subdirectories stay with their content.
    QVERIFY(MUtility::clearDirectory(root, false, false));
    QVERIFY(!QFile::exists(root + QStringLiteral("/a.data")));
    QVERIFY(!QFile::exists(root + QStringLiteral("/.hidden")));
    QVERIFY(QFile::exists(root + QStringLiteral("/sub/deeper/c.data")));

    // Recursive: everything under the directory goes, the directory stays.
    touch(root + QStringLiteral("/a.data"));
    QVERIFY(MUtility::clearDirectory(root, false, true));
    QVERIFY(QFileInfo(root).isDir());
    QVERIFY(QDir(root).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());

    // A link to a directory is removed as a link; what it points to survives.
    touch(scratch.path() + QStringLiteral("/outside/keep.txt"));
    QVERIFY(QFile::link(scratch.path() + QStringLiteral("/outside"), root + QStringLiteral("/link")));
    QVERIFY(MUtility::clearDirectory(root, true, true));
    QVERIFY(!QFileInfo::exists(root));
    QVERIFY(QFile::exists(scratch.path() + QStringLiteral("/outside/keep.txt")));

    QVERIFY(MUtility::clearDirectory(scratch.path() + QStringLiteral("/missing"), true, true));
}

QUILLMERE_TEST_MAIN(TestUtility)
#include "tst_mutility.moc"
