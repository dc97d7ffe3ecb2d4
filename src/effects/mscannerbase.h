#pragma once

#include "effects/mkeywordmap.h"
#include "effects/mscanbuffer.h"
#include "effects/mscantoken.h"

#include <QString>

#include <memory>

// The character level and token reader shared by the declaration languages of
// effects; a language brings its table of literals and its "no symbol" kind.
//
// The text is read as Latin-1 bytes, or as UTF-8 when it opens with a byte-order
// mark. Blanks, tabs, line ends, "//" comments and nested "/* */" comments are
// skipped. Every language shares the kinds of the first four tokens below:
// - an identifier: a letter or "_", then letters, digits and "_";
// - a number: an optional sign, digits, and optionally "." and more digits; "5." is
//   the number 5 and then a "." of its own;
// - a string: between double or between single quotes on one line, no escapes.
// Keywords match in any letter case; a token's text keeps the case as written.
// Any other character is the language's "no symbol", and so is an unclosed string.
class MScannerBase
{
public:
    enum SharedKind
    {
        EofKind = 0,
        IdentKind = 1,
        NumberKind = 2,
        StringKind = 3
    };

    virtual ~MScannerBase();

    MScannerBase(const MScannerBase&) = delete;
    MScannerBase& operator=(const MScannerBase&) = delete;

    // The next token; at the end of the text, an EOF token for every later call.
    MScanToken scan();

protected:
    MScannerBase(const QString& text, const MKeywordMap& literals, int noSym);

private:
    struct Mark
    {
        int pos;
        int line;
        int col;
        int charPos;
    };

    void nextCh();
    void addCh();
    bool skipLineComment();
    bool skipBlockComment();
    void backTo(const Mark& mark);
    void scanNumberRest(MScanToken& token);
    void scanStringRest(MScanToken& token, int quote);

    std::unique_ptr<MScanBuffer> m_buffer;
    const MKeywordMap& m_literals;
    const int m_noSym;

    int m_ch = 0;    // the current character, A to Z lower-cased, for matching
    int m_valCh = 0; // the same as written, for token texts
    int m_pos = -1;  // byte offset of m_ch
    int m_charPos = -1;
    int m_line = 1;
    int m_col = 0;
    QString m_tval; // text of the token being read
};
