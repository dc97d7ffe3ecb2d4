#include "support/logwatch.h"
#include "support/testenvironment.h"

#include "app/mutility.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mshaderstream.h"

#include <QTemporaryDir>

namespace {

QString folder(MEnum::PathType pathType)
{
    return MUtility::directory(pathType, MEnum::ShaderDir);
}

void writeEffect(MEnum::PathType pathType, const QString& id, const QString& description,
                 int type = MShader::EffectShader)
{
    MShader shader;
    shader.setId(id);
    shader.setGroup(QStringLiteral("tests"));
    shader.setDescription(description);
    shader.setType(type);
    shader.setSource(QStringLiteral("@main\ncolor = texture(mainTexture, texCoord);\n"));
    MShaderStream stream(&shader);
    QVERIFY(stream.save(folder(pathType) + id.toLower() + QStringLiteral(".qsh")));
}

QByteArray readFile(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

QStringList ids(const MShaderList& list)
{
    QStringList result;
    for (int row = 0; row < list.count(); ++row)
        result.append(list.shaderAt(row)->id());
    return result;
}

MShaderList* freshList()
{
    MShaderList::destroy();
    return MShaderList::instance();
}

} // namespace

// The effect list over its two directories, here temporary ones: what the
// files give, which file wins, and what list operations leave on disk.
class TestMShaderList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void userFileHidesSystemFile();
    void operationsLeaveTheRightFiles();
    void damagedFilesAreLoggedAndSkipped();

private:
    QTemporaryDir m_systemRoot;
};

void TestMShaderList::initTestCase()
{
    QVERIFY(m_systemRoot.isValid());
    MUtility::setSystemDataRoot(m_systemRoot.path());
}

void TestMShaderList::init()
{
    MShaderList::destroy();
    QVERIFY(MUtility::clearDirectory(folder(MEnum::SystemPath), false, true));
    QVERIFY(MUtility::clearDirectory(folder(MEnum::UserPath), false, true));
}

void TestMShaderList::userFileHidesSystemFile()
{
    writeEffect(MEnum::SystemPath, QStringLiteral("BLUR"), QStringLiteral("system blur"));
    writeEffect(MEnum::SystemPath, QStringLiteral("GLOW"), QStringLiteral("glow"), MShader::BrushShader);
    writeEffect(MEnum::UserPath, QStringLiteral("BLUR"), QStringLiteral("my blur"));
    QuillmereTest::LogWatch log;
    MShaderList* list = freshList();

    QCOMPARE(ids(*list), QStringList({"BLUR", "GLOW"}));
    QCOMPARE(list->shaderById(QStringLiteral(" blur "))->description(), QStringLiteral("my blur"));
    QCOMPARE(list->shaderById(QStringLiteral("glow"))->type(), int(MShader::BrushShader));
    QCOMPARE(list->currentRow(), 0);
    QCOMPARE(list->mimeTypes(), QStringList({"application/vnd.tarnbeck.shader"}));
    QVERIFY(log.added().contains(QStringLiteral("Shaders loaded: 2 shaders")));
    QCOMPARE(readFile(folder(MEnum::UserPath) + QStringLiteral("index.qmi")),
             QByteArray("BLUR # tests/my blur\nGLOW # tests/glow\n"));

    // The system index gives the order until the user has one of their own.
    QFile::remove(folder(MEnum::UserPath) + QStringLiteral("index.qmi"));
    QFile systemIndex(folder(MEnum::SystemPath) + QStringLiteral("index.qmi"));
    QVERIFY(systemIndex.open(QIODevice::WriteOnly));
    systemIndex.write("GLOW # engines\nMISSING\nblur\nBLUR # effects\n");
    systemIndex.close();
    list = freshList();
    QCOMPARE(ids(*list), QStringList({"GLOW", "BLUR"}));
    QCOMPARE(list->indexOfDescription(QStringLiteral("MY BLUR")), 1);
    QCOMPARE(list->indexOfDescription(QStringLiteral("nothing")), -1);
}

void TestMShaderList::operationsLeaveTheRightFiles()
{
    writeEffect(MEnum::SystemPath, QStringLiteral("BLUR"), QStringLiteral("blur"));
    MShaderList* list = freshList();
    const QString systemBlur = folder(MEnum::SystemPath) + QStringLiteral("blur.qsh");
    const QByteArray systemBytes = readFile(systemBlur);

    // New and duplicated effects are written to the user directory and read back equal.
    MShader* created = list->newShader(MShader::BrushShader, QStringLiteral("engines"),
                                       QStringLiteral("dots"), QStringLiteral("@main\ncolor = vec4(1.0);\n"));
    QVERIFY(created);
    QCOMPARE(list->currentShader(), created);
    MShader reread;
    MShaderStream stream(&reread);
    QVERIFY(stream.load(list->userFileName(created)));
    QCOMPARE(reread.id(), created->id());
    QCOMPARE(reread.source(), created->source());
    QCOMPARE(reread.type(), int(MShader::BrushShader));
    MShader* copy =
        list->duplicateShader(list->shaderById(QStringLiteral("BLUR")), QStringLiteral("blur copy"));
    QVERIFY(copy && copy->id() != QStringLiteral("BLUR"));
    QCOMPARE(copy->source(), list->shaderById(QStringLiteral("BLUR"))->source());
    QCOMPARE(list->count(), 3);

    // Every effect added this way is in the index and comes back at the next start.
    const QStringList before = ids(*list);
    QCOMPARE(before.mid(1), QStringList({created->id(), copy->id()}));
    list = freshList();
    QCOMPARE(ids(*list), before);

    // Deleting a system effect's row removes only the user file and the id from the order.
    MShader* blur = list->shaderById(QStringLiteral("BLUR"));
    QVERIFY(list->renameItem(blur, QStringLiteral("soft blur")));
    QVERIFY(QFile::exists(folder(MEnum::UserPath) + QStringLiteral("blur.qsh")));
    QVERIFY(list->removeByDescription(QStringLiteral("SOFT BLUR")));
    QVERIFY(!QFile::exists(folder(MEnum::UserPath) + QStringLiteral("blur.qsh")));
    QCOMPARE(readFile(systemBlur), systemBytes);
    QVERIFY(!list->order().contains(QStringLiteral("BLUR")));
    QVERIFY(!list->removeByDescription(QStringLiteral("soft blur")));
    QVERIFY(!freshList()->shaderById(QStringLiteral("BLUR")));

    // Effects of this session only leave no trace on disk.
    const QByteArray index = readFile(folder(MEnum::UserPath) + QStringLiteral("index.qmi"));
    auto loose = std::make_unique<MShader>();
    loose->setId(QStringLiteral("LOOSE"));
    MShaderList::instance()->addShader(std::move(loose));
    QVERIFY(MShaderList::instance()->shaderById(QStringLiteral("loose")));
    QVERIFY(MShaderList::instance()->removeShader(QStringLiteral("LOOSE")));
    QCOMPARE(readFile(folder(MEnum::UserPath) + QStringLiteral("index.qmi")), index);
    QVERIFY(!QFile::exists(folder(MEnum::UserPath) + QStringLiteral("loose.qsh")));

    // An import takes an effect file and refuses what isn't one.
    QTemporaryDir outside;
    const QString garbage = outside.path() + QStringLiteral("/garbage.qsh");
    QFile file(garbage);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\x00\x01 not an effect");
    file.close();
    const int rows = MShaderList::instance()->count();
    QVERIFY(!MShaderList::instance()->importFile(garbage));
    QCOMPARE(MShaderList::instance()->count(), rows);
    MShader* imported =
        MShaderList::instance()->importFile(systemBlur) ? MShaderList::instance()->currentShader() : nullptr;
    QVERIFY(imported);
    QCOMPARE(imported->id(), QStringLiteral("BLUR"));
    QCOMPARE(imported->description(), QStringLiteral("blur"));
    QVERIFY(QFile::exists(folder(MEnum::UserPath) + QStringLiteral("blur.qsh")));
}

void TestMShaderList::damagedFilesAreLoggedAndSkipped()
{
    writeEffect(MEnum::SystemPath, QStringLiteral("GOOD"), QStringLiteral("good"));
    // A file that isn't JSON loads as an empty effect under its file's id; a
    // file that names another id inside is still known by its file's name.
    QFile broken(folder(MEnum::SystemPath) + QStringLiteral("broken.qsh"));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("\x89PNG\r\n\x1a\n{{{ not json");
    broken.close();
    writeEffect(MEnum::SystemPath, QStringLiteral("OTHER"), QStringLiteral("other"));
    QVERIFY(QFile::rename(folder(MEnum::SystemPath) + QStringLiteral("other.qsh"),
                          folder(MEnum::SystemPath) + QStringLiteral("renamed.qsh")));
    // A directory with the extension is no file.
    QVERIFY(QDir().mkpath(folder(MEnum::SystemPath) + QStringLiteral("folder.qsh")));

    MShaderList* list = freshList();
    QCOMPARE(ids(*list), QStringList({"BROKEN", "GOOD", "RENAMED"}));
    QCOMPARE(list->shaderById(QStringLiteral("BROKEN"))->description(), QStringLiteral("brush shader"));
    QCOMPARE(list->shaderById(QStringLiteral("RENAMED"))->description(), QStringLiteral("other"));
    QVERIFY(list->shaderById(QStringLiteral("BROKEN"))->source().isEmpty());
}

QUILLMERE_TEST_MAIN(TestMShaderList)

#include "tst_mshaderlist.moc"
