#pragma once

#include "app/mlogger.h"

#include <QFile>
#include <QFileInfo>
#include <QString>

namespace QuillmereTest {

// What the session log gained since the watch was made.
class LogWatch
{
public:
    LogWatch() : m_start(QFileInfo(MLogger::logFilePath()).size()) {}
    QString added() const
    {
        QFile file(MLogger::logFilePath());
        if (!file.open(QIODevice::ReadOnly))
            return QString();
        file.seek(m_start);
        return QString::fromUtf8(file.readAll());
    }

private:
    qint64 m_start;
};

} // namespace QuillmereTest
