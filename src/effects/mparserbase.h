#pragma once

#include "effects/mparseerrors.h"
#include "effects/mscannerbase.h"
#include "effects/mscantoken.h"

#include <memory>

// Recursive descent with one token of lookahead, shared by the declaration
// languages. A language implements its start symbol in parseStart().
//
// Recovery: no token is ever skipped; after a syntax error the parser goes on with
// the next construct at the same lookahead. To keep one mistake from producing a
// cascade, a syntax error is reported only when at least two tokens were read
// since the last one. Semantic errors are always reported.
class MParserBase
{
public:
    virtual ~MParserBase();

    MParserBase(const MParserBase&) = delete;
    MParserBase& operator=(const MParserBase&) = delete;

    // Reads the whole text. Call once.
    void parse();

    const MParseErrors& errors() const { return *m_errors; }

protected:
    MParserBase(MScannerBase& scanner, std::unique_ptr<MParseErrors> errors);

    virtual void parseStart() = 0;

    void get();
    void expect(int kind);
    void synErr(int n);
    // Reported at the lookahead whatever the distance to the last error, which it
    // leaves as it is.
    void semErr(const QString& text);

    MScanToken m_t;  // the token last read
    MScanToken m_la; // the lookahead

private:
    static constexpr int MinErrDist = 2;

    MScannerBase& m_scanner;
    std::unique_ptr<MParseErrors> m_errors;
    int m_errDist = MinErrDist;
};
