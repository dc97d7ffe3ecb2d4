#pragma once

#include "support/testenvironment.h"

#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace QuillmereTest {

// What a run of a program left: its exit code (-1 when it crashed or hung),
// and its output.
struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

// The command-line program built beside the tests.
inline QString cliPath()
{
    return QFileInfo(QStringLiteral(QUILLMERE_APP_PATH)).path() + QStringLiteral("/quillmere-cli");
}

// Runs a program in this test's isolated environment, for two minutes at most.
inline Run runProgram(const QString& program, const QStringList& arguments)
{
    Run run;
    QProcess process;
    process.setProcessEnvironment(childEnvironment());
    process.start(program, arguments);
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

inline Run runCli(const QStringList& arguments)
{
    return runProgram(cliPath(), arguments);
}

} // namespace QuillmereTest
