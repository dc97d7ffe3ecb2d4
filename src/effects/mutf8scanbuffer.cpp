#include "effects/mutf8scanbuffer.h"

MUtf8ScanBuffer::MUtf8ScanBuffer(const QByteArray& bytes, int start) : MScanBuffer(bytes)
{
    setPos(start);
}

int MUtf8ScanBuffer::read()
{
    int ch;
    do {
        ch = readByte();
    } while (ch >= 128 && (ch & 0xC0) != 0xC0 && ch != EoF);
    if (ch < 128 || ch == EoF)
        return ch;
    // A missing continuation byte reads as EoF, whose low six bits are zero.
    if ((ch & 0xF0) == 0xF0) {
        const int c1 = ch & 0x07;
        const int c2 = readByte() & 0x3F;
        const int c3 = readByte() & 0x3F;
        const int c4 = readByte() & 0x3F;
        return (((((c1 << 6) | c2) << 6) | c3) << 6) | c4;
    }
    if ((ch & 0xE0) == 0xE0) {
        const int c1 = ch & 0x0F;
        const int c2 = readByte() & 0x3F;
        const int c3 = readByte() & 0x3F;
        return (((c1 << 6) | c2) << 6) | c3;
    }
    const int c1 = ch & 0x1F;
    const int c2 = readByte() & 0x3F;
    return (c1 << 6) | c2;
}
