#include "app/mapplication.h"
#include "app/mlogger.h"
#include "cli/mclicommand.h"
#include "cli/mclicommandlist.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>
#include <memory>

namespace {

// The program's log lines come through qDebug. A batch tool keeps its
// stderr for what went wrong: Qt's warnings and the log's failures pass, the
// log's news of what was loaded doesn't.
void quietMessages(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if ((type == QtDebugMsg || type == QtInfoMsg) && !message.contains(QLatin1String(": System error: ")))
        return;
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

} // namespace

int main(int argc, char** argv)
{
    MLogger::setFileEnabled(false);
    qInstallMessageHandler(quietMessages);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    QTextStream out(stdout);
    QTextStream err(stderr);
    MCliCommandList commands;
    QStringList rest;
    MCliCommand* command = commands.find(arguments, &rest);
    if (!command) {
        if (!arguments.isEmpty() && arguments.first() != QLatin1String("--help") &&
            arguments.first() != QLatin1String("-h"))
            err << "quillmere-cli: unknown command: " << arguments.join(QLatin1Char(' ')) << "\n\n";
        commands.printUsage(arguments.isEmpty() || arguments.first().startsWith(QLatin1Char('-')) ? out
                                                                                                  : err);
        return arguments.isEmpty() || arguments.first().startsWith(QLatin1Char('-')) ? 0 : 2;
    }

    std::unique_ptr<QCoreApplication> application;
    if (command->needsGui(rest)) {
        MApplication::prepareProcess();
        application = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        application = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnbeck"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillmere"));
    return command->run(rest, out, err);
}
