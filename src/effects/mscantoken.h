#pragma once

#include <QString>

// One token of a declaration language: its kind in the language's table, where it
// starts, and its text as written (letter case kept).
struct MScanToken
{
    int kind = 0;
    int pos = 0;     // byte offset of the first character in the scanned text
    int charPos = 0; // character offset, differs from pos after multi-byte UTF-8
    int line = 1;    // from 1
    int col = 0;     // from 1
    QString val;
};
