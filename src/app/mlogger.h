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
    // Tools that run beside the program keep out of its log: their lines go to
    // the debug stream only. Set before the first line is written.
    static void setFileEnabled(bool enabled);

    // Appends one dated line; a log that can't be opened drops the line.
    void write(const QString& text);

    // The house form of a failure report: "<source>: System error: <message>".
    static void systemError(const QString& source, const QString& message);

private:
    static inline bool s_fileEnabled = true;
    QTextStream m_stream;
};
