#include "app/msingleinstance.h"

#include "app/mlogger.h"

#include <QLocalSocket>

namespace {
constexpr int timeoutMs = 30000;
}

MSingleInstance::MSingleInstance(const QString& serverName, QObject* parent)
    : QObject(parent), m_serverName(serverName)
{
    connect(&m_server, &QLocalServer::newConnection, this, &MSingleInstance::newConnection);
}

bool MSingleInstance::sendMessage(const QString& serverName, const QStringList& messages)
{
    QLocalSocket socket;
    socket.connectToServer(serverName, QIODevice::ReadWrite);
    if (!socket.waitForConnected(timeoutMs))
        return false;
    QByteArray bytes;
    for (const QString& message : messages)
        bytes += message.toUtf8() + '\n';
    socket.write(bytes);
    socket.waitForBytesWritten(timeoutMs);
    return true;
}

bool MSingleInstance::listen(const QString& serverName)
{
    QLocalServer::removeServer(serverName);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server.listen(serverName)) {
        MLogger::systemError(QStringLiteral("MSingleInstance::listen"), m_server.errorString());
        return false;
    }
    return true;
}

void MSingleInstance::newConnection()
{
    Q_EMIT newInstance();
    m_socket = m_server.nextPendingConnection();
    if (!m_socket)
        return;
    connect(m_socket, &QLocalSocket::readyRead, this, &MSingleInstance::readyRead);
}

void MSingleInstance::readyRead()
{
    auto* socket = qobject_cast<QLocalSocket*>(sender());
    if (!socket)
        return;
    // The message means nothing: the connection is what counts.
    socket->readAll();
    socket->close();
    socket->deleteLater();
    if (socket == m_socket)
        m_socket = nullptr;
}
