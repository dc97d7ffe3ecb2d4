#include "effects/mconnector.h"

#include <utility>

void MConnector::add(std::function<QMetaObject::Connection()> make)
{
    Entry entry;
    entry.make = std::move(make);
    if (m_connected)
        entry.connection = entry.make();
    m_entries.append(entry);
}

void MConnector::disconnectAll()
{
    for (Entry& entry : m_entries) {
        QObject::disconnect(entry.connection);
        entry.connection = QMetaObject::Connection();
    }
    m_connected = false;
}

void MConnector::connectAll()
{
    if (m_connected)
        return;
    for (Entry& entry : m_entries)
        entry.connection = entry.make();
    m_connected = true;
}

void MConnector::clear()
{
    disconnectAll();
    m_entries.clear();
    m_connected = true;
}
