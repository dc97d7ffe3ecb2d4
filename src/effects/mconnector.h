#pragma once

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QVector>

#include <functional>

// Holds a set of signal connections so that they can all be cut while values
// are loaded into editors, and made again afterwards. Connections are
// remembered by how to make them, not by handle: a connection whose sender or
// receiver has gone is simply not made again.
class MConnector
{
public:
    MConnector() = default;
    MConnector(const MConnector&) = delete;
    MConnector& operator=(const MConnector&) = delete;
    ~MConnector() { disconnectAll(); }

    // Adds a connection; it is made at once unless the connector is
    // disconnected, in which case it waits for connectAll.
    template <typename Sender, typename Signal, typename Receiver, typename Slot>
    void connect(Sender* sender, Signal signal, Receiver* receiver, Slot slot)
    {
        const QPointer<QObject> source(sender);
        const QPointer<QObject> target(receiver);
        add([source, target, signal, slot]() {
            if (!source || !target)
                return QMetaObject::Connection();
            return QObject::connect(static_cast<Sender*>(source.data()), signal,
                                    static_cast<Receiver*>(target.data()), slot);
        });
    }

    // Cuts every connection; they stay remembered.
    void disconnectAll();
    // Makes every remembered connection again.
    void connectAll();
    // Cuts and forgets every connection.
    void clear();

    bool isConnected() const { return m_connected; }
    int count() const { return m_entries.size(); }

private:
    struct Entry
    {
        std::function<QMetaObject::Connection()> make;
        QMetaObject::Connection connection;
    };

    void add(std::function<QMetaObject::Connection()> make);

    QVector<Entry> m_entries;
    bool m_connected = true;
};

// Keeps a connector disconnected for the lifetime of a scope.
class MConnectorPause
{
public:
    explicit MConnectorPause(MConnector& connector)
        : m_connector(connector), m_wasConnected(connector.isConnected())
    {
        m_connector.disconnectAll();
    }
    ~MConnectorPause()
    {
        if (m_wasConnected)
            m_connector.connectAll();
    }
    MConnectorPause(const MConnectorPause&) = delete;
    MConnectorPause& operator=(const MConnectorPause&) = delete;

private:
    MConnector& m_connector;
    bool m_wasConnected;
};
