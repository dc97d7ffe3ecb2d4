#include "support/testenvironment.h"

#include "app/mapplication.h"
#include "app/mnamedmutex.h"
#include "app/msingleinstance.h"

#include <QLocalSocket>

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <unistd.h>

class TestSingleInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectionRaisesTheListener();
    void staleServerDoesNotBlockListening();
    void secondProcessDefersToTheFirst();
    void namedMutexIsVisibleFromOutside();

private:
    static bool waitForServer(const QString& name, int timeoutMs);
    // The log of a child process: the real program knows no test mode and
    // writes under XDG_DATA_HOME, which the isolation points into the temporary home.
    static QString childLogText();
};

bool TestSingleInstance::waitForServer(const QString& name, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs) {
        QLocalSocket probe;
        probe.connectToServer(name);
        if (probe.waitForConnected(200))
            return true;
        QTest::qWait(100);
    }
    return false;
}

QString TestSingleInstance::childLogText()
{
    QFile file(QuillmereTest::temporaryHome() + QStringLiteral("/.local/share/Tarnbeck/Quillmere/tarnbeck.log"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void TestSingleInstance::connectionRaisesTheListener()
{
    const QString name = QStringLiteral("quillmere-test-raise");
    MSingleInstance first(name);
    MSingleInstance second(name);
    QSignalSpy raised(&first, &MSingleInstance::newInstance);

    QElapsedTimer timer;
    timer.start();
    QVERIFY(!second.sendMessage(name, {QStringLiteral("hello")}));
    QVERIFY2(timer.elapsed() < 5000, "a missing server must be noticed at once, not after the time-out");

    QVERIFY(first.listen(name));
    QVERIFY(second.sendMessage(name, {QStringLiteral("hello"), QStringLiteral("world")}));
    QTRY_COMPARE(raised.count(), 1);
    // Every connection raises, whatever it says.
    QVERIFY(second.sendMessage(name, {}));
    QTRY_COMPARE(raised.count(), 2);
}

void TestSingleInstance::staleServerDoesNotBlockListening()
{
    const QString name = QStringLiteral("quillmere-test-stale");
    // What a crash leaves: a socket file that nobody listens on.
    const QString socketPath = QDir::tempPath() + QLatin1Char('/') + name;
    {
        QFile stale(socketPath);
        QVERIFY(stale.open(QIODevice::WriteOnly));
    }
    MSingleInstance client(name);
    QVERIFY(!client.sendMessage(name, {QStringLiteral("hello")}));

    MSingleInstance server(name);
    QSignalSpy raised(&server, &MSingleInstance::newInstance);
    QVERIFY(server.listen(name));
    QVERIFY(client.sendMessage(name, {QStringLiteral("hello")}));
    QTRY_COMPARE(raised.count(), 1);
}

void TestSingleInstance::secondProcessDefersToTheFirst()
{
    const QString app = QStringLiteral(QUILLMERE_APP_PATH);
    QVERIFY2(QFile::exists(app), qPrintable(app));

    QProcess first;
    first.setProcessEnvironment(QuillmereTest::childEnvironment());
    first.setProcessChannelMode(QProcess::ForwardedChannels);
    first.start(app, QStringList());
    QVERIFY(first.waitForStarted());
    QVERIFY2(waitForServer(MApplication::serverName, 60000), "the first instance never started listening");
    QCOMPARE(first.state(), QProcess::Running);

    // A second start with a document on its command line quits with 0 and leaves the first running.
    QTemporaryDir scratch;
    const QString document = scratch.filePath(QStringLiteral("second.qmd"));
    QFile(document).open(QIODevice::WriteOnly);
    QProcess second;
    second.setProcessEnvironment(QuillmereTest::childEnvironment());
    second.start(app, {document});
    QVERIFY(second.waitForFinished(60000));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QVERIFY(childLogText().contains(QStringLiteral(": Only one instance at a time!")));
    QCOMPARE(first.state(), QProcess::Running);

    // A crash leaves its socket behind; the next start still comes up.
    ::kill(pid_t(first.processId()), SIGKILL);
    QVERIFY(first.waitForFinished(10000));
    QVERIFY(QFileInfo::exists(QDir::tempPath() + QLatin1Char('/') + MApplication::serverName));

    QProcess third;
    third.setProcessEnvironment(QuillmereTest::childEnvironment());
    third.setProcessChannelMode(QProcess::ForwardedChannels);
    third.start(app, QStringList());
    QVERIFY(third.waitForStarted());
    QVERIFY2(waitForServer(MApplication::serverName, 60000), "a stale server blocked the new instance");
    QCOMPARE(third.state(), QProcess::Running);
    QVERIFY(childLogText().contains(QStringLiteral(": Settings loaded.")));
    third.kill();
    QVERIFY(third.waitForFinished(10000));
}

void TestSingleInstance::namedMutexIsVisibleFromOutside()
{
    const QString name = QStringLiteral("{00000000-1111-2222-3333-444444444444}");
    const QString path = MNamedMutex::path(name);
    QVERIFY(path.startsWith(QuillmereTest::temporaryHome()));

    auto heldByAnyone = [&] {
        const int fd = ::open(QFile::encodeName(path).constData(), O_RDWR);
        if (fd < 0)
            return false;
        const bool held = ::flock(fd, LOCK_EX | LOCK_NB) != 0;
        ::close(fd);
        return held;
    };
    QVERIFY(!heldByAnyone());
    QVERIFY(MNamedMutex::create(name));
    QVERIFY(heldByAnyone());
    QVERIFY(MNamedMutex::create(name)); // a restart asks again
    QVERIFY(heldByAnyone());

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().trimmed(), QByteArray::number(qint64(::getpid())));

    // The check the README gives to outside tools.
    QProcess check;
    check.start(QStringLiteral("flock"), {QStringLiteral("--nonblock"), QStringLiteral("--exclusive"), path,
                                          QStringLiteral("true")});
    QVERIFY(check.waitForFinished(10000));
    QVERIFY(check.exitCode() != 0);
}

QUILLMERE_TEST_MAIN(TestSingleInstance)
#include "tst_msingleinstance.moc"
