#include "effects/mscanbuffer.h"

#include <QDebug>

MScanBuffer::MScanBuffer(const QByteArray& bytes) : m_bytes(bytes) {}

int MScanBuffer::read()
{
    return readByte();
}

int MScanBuffer::readByte()
{
    if (m_pos < m_bytes.size())
        return static_cast<unsigned char>(m_bytes.at(m_pos++));
    return EoF;
}

int MScanBuffer::peek()
{
    const int position = m_pos;
    const int ch = read();
    m_pos = position;
    return ch;
}

void MScanBuffer::setPos(int value)
{
    if (value < 0 || value > length()) {
        qWarning().noquote() << QStringLiteral("--- buffer out of bounds access, position: %1").arg(value);
        value = qBound(0, value, length());
    }
    m_pos = value;
}
