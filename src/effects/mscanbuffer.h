#pragma once

#include <QByteArray>

// The whole text of a declaration section as bytes, read one character at a time.
// Past the end, reads give EoF and the position stays put.
class MScanBuffer
{
public:
    // Outside the range of any character, so that it can't be mistaken for one.
    static constexpr int EoF = 0x10000;

    explicit MScanBuffer(const QByteArray& bytes);
    virtual ~MScanBuffer() = default;

    MScanBuffer(const MScanBuffer&) = delete;
    MScanBuffer& operator=(const MScanBuffer&) = delete;

    // The next character, or EoF.
    virtual int read();
    // The next character without moving on.
    int peek();

    int pos() const { return m_pos; }
    // A position outside 0 to length() is reported on the message handler and
    // clamped into range, so that a bad request can't read out of the block.
    void setPos(int value);
    int length() const { return int(m_bytes.size()); }

protected:
    int readByte();

private:
    QByteArray m_bytes;
    int m_pos = 0;
};
