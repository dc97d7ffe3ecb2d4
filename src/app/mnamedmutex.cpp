#include "app/mnamedmutex.h"

#include "app/mlogger.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QStandardPaths>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

QString MNamedMutex::path(const QString& name)
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (dir.isEmpty())
        dir = QDir::tempPath();
    return dir + QLatin1Char('/') + name + QStringLiteral(".lock");
}

bool MNamedMutex::create(const QString& name)
{
    // The descriptors are never closed: the lock must last as long as the process.
    static QSet<QString> held;
    if (held.contains(name))
        return true;

    const QString file = path(name);
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
        MLogger::systemError(QStringLiteral("MNamedMutex::create"), QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    if (::flock(fd, LOCK_SH | LOCK_NB) != 0) {
        MLogger::systemError(QStringLiteral("MNamedMutex::create"), QString::fromLocal8Bit(std::strerror(errno)));
        ::close(fd);
        return false;
    }
    // The process id inside is for people; the lock is what counts.
    const QByteArray pid = QByteArray::number(qint64(::getpid())) + '\n';
    if (::ftruncate(fd, 0) != 0 || ::write(fd, pid.constData(), size_t(pid.size())) != pid.size())
        qDebug() << "MNamedMutex::create: the process id could not be written to" << file;
    held.insert(name);
    return true;
}
