#pragma once

#include "app/msingleton.h"

#include <QString>
#include <QTextStream>

// The session log, tarnbeck.log in the user data directory. It is truncated when
// the logger is made and lives until the process ends, across restarts.
class MLogger : public MSingleton<MLogger>
{
public:
    MLogger();

    static QString logFilePath();

    // Appends one dated line; a log that can't be opened drops the line.
    void write(const QString& text);

    // The house form of a failure report: "<source>: System error: <message>".
    static void systemError(const QString& source, const QString& message);

private:
    QTextStream m_stream;
};
