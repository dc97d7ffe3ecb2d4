#include "testenvironment.h"

#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdlib>
#include <memory>

namespace QuillmereTest {

namespace {

std::unique_ptr<QTemporaryDir>& home()
{
    static std::unique_ptr<QTemporaryDir> dir;
    return dir;
}

void setPath(const char* variable, const QString& path)
{
    QDir().mkpath(path);
    qputenv(variable, QFile::encodeName(path));
}

} // namespace

void isolateEnvironment()
{
    home() = std::make_unique<QTemporaryDir>();
    if (!home()->isValid()) {
        fprintf(stderr, "Cannot create a temporary home for the test\n");
        std::exit(1);
    }
    const QString root = home()->path();
    setPath("HOME", root);
    setPath("TMPDIR", root + QStringLiteral("/tmp"));
    setPath("XDG_DATA_HOME", root + QStringLiteral("/.local/share"));
    setPath("XDG_CONFIG_HOME", root + QStringLiteral("/.config"));
    setPath("XDG_CACHE_HOME", root + QStringLiteral("/.cache"));
    setPath("XDG_RUNTIME_DIR", root + QStringLiteral("/runtime"));
    QFile::setPermissions(root + QStringLiteral("/runtime"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    QStandardPaths::setTestModeEnabled(true);
}

QString temporaryHome()
{
    return home() ? home()->path() : QString();
}

QProcessEnvironment childEnvironment()
{
    // The variables set by isolateEnvironment are already in this process's environment.
    return QProcessEnvironment::systemEnvironment();
}

} // namespace QuillmereTest
