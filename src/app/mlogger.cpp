#include "app/mlogger.h"

#include "app/mutility.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>

MLogger::MLogger()
{
    if (s_fileEnabled) {
        QFile file(logFilePath());
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            file.close();
    }
    write(QStringLiteral("starting tarnbeck log session"));
}

QString MLogger::logFilePath()
{
    return MUtility::userDataDir() + QStringLiteral("tarnbeck.log");
}

void MLogger::write(const QString& text)
{
    QString line = text;
    if (!line.isEmpty())
        line[0] = line.at(0).toUpper();
    if (!line.endsWith(QLatin1Char('.')))
        line += QLatin1Char('.');
    qDebug().noquote() << line;

    if (!s_fileEnabled)
        return;
    QFile file(logFilePath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    m_stream.setDevice(&file);
    m_stream.setCodec("UTF-8");
    m_stream << QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd hh:mm:ss")) << ": " << line
             << '\n';
    m_stream.flush();
    m_stream.setDevice(nullptr);
    file.close();
}

void MLogger::setFileEnabled(bool enabled)
{
    s_fileEnabled = enabled;
}

void MLogger::systemError(const QString& source, const QString& message)
{
    instance()->write(QStringLiteral("%1: System error: %2").arg(source, message));
}
