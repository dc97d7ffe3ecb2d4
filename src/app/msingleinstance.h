#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>

class QLocalSocket;

// Keeps the program to one instance: a second start connects to the first
// one's local server, which raises its window, and then quits.
class MSingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit MSingleInstance(const QString& serverName, QObject* parent = nullptr);

    QString serverName() const { return m_serverName; }

    // True when another instance answered on that server name.
    bool sendMessage(const QString& serverName, const QStringList& messages);
    // Removes a stale server of that name (left by a crash), then listens.
    bool listen(const QString& serverName);

Q_SIGNALS:
    void newInstance();

private Q_SLOTS:
    void newConnection();
    void readyRead();

private:
    QString m_serverName;
    QLocalServer m_server;
    QLocalSocket* m_socket = nullptr;
};
