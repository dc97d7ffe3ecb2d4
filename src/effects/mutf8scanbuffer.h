#pragma once

#include "effects/mscanbuffer.h"

// A scan buffer that decodes UTF-8 sequences of one to four bytes into one
// character each. Stray continuation bytes are skipped; a sequence cut short by the
// end of the text decodes with zero bits for the missing bytes, then EoF follows.
class MUtf8ScanBuffer : public MScanBuffer
{
public:
    // Starts reading at start, a byte offset (after the byte-order mark).
    MUtf8ScanBuffer(const QByteArray& bytes, int start);

    int read() override;
};
