#include "effects/mparserbase.h"

MParserBase::MParserBase(MScannerBase& scanner, std::unique_ptr<MParseErrors> errors)
    : m_scanner(scanner), m_errors(std::move(errors))
{
}

MParserBase::~MParserBase() = default;

void MParserBase::parse()
{
    m_la = MScanToken();
    get();
    parseStart();
    expect(MScannerBase::EofKind);
}

void MParserBase::get()
{
    m_t = std::move(m_la);
    m_la = m_scanner.scan();
    // Only "at least MinErrDist" is ever asked, so counting stops there.
    if (m_errDist < MinErrDist)
        ++m_errDist;
}

void MParserBase::expect(int kind)
{
    if (m_la.kind == kind)
        get();
    else
        synErr(kind);
}

void MParserBase::synErr(int n)
{
    if (m_errDist >= MinErrDist)
        m_errors->synErr(m_la.line, m_la.col, n);
    m_errDist = 0;
}

void MParserBase::semErr(const QString& text)
{
    m_errors->error(m_la.line, m_la.col, text);
}
