#include "effects/mscannerbase.h"

#include "effects/mutf8scanbuffer.h"

namespace {

constexpr int Eol = '\n';

bool isDigit(int ch)
{
    return ch >= '0' && ch <= '9';
}

// Only after lower-casing: upper-case letters never reach the matching.
bool isIdentStart(int ch)
{
    return (ch >= 'a' && ch <= 'z') || ch == '_';
}

bool isIdentPart(int ch)
{
    return isIdentStart(ch) || isDigit(ch);
}

QString lowerAscii(const QString& text)
{
    QString lower = text;
    for (QChar& c : lower)
        if (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
            c = QChar(c.unicode() + ('a' - 'A'));
    return lower;
}

void appendCodePoint(QString& text, int ch)
{
    const uint code = uint(ch);
    if (code <= 0xFFFF) {
        text.append(QChar(ushort(code)));
    } else if (code <= 0x10FFFF) {
        text.append(QChar(QChar::highSurrogate(code)));
        text.append(QChar(QChar::lowSurrogate(code)));
    } else {
        text.append(QChar(QChar::ReplacementCharacter));
    }
}

} // namespace

MScannerBase::MScannerBase(const QString& text, const MKeywordMap& literals, int noSym)
    : m_literals(literals), m_noSym(noSym)
{
    QByteArray bytes = text.toLatin1();
    // An empty text still gives one character to read, so the first read is alike
    // for all texts.
    if (bytes.isEmpty())
        bytes = QByteArrayLiteral(" ");
    if (bytes.startsWith("\xEF\xBB\xBF"))
        m_buffer = std::make_unique<MUtf8ScanBuffer>(bytes, 3);
    else
        m_buffer = std::make_unique<MScanBuffer>(bytes);
    nextCh();
}

MScannerBase::~MScannerBase() = default;

void MScannerBase::nextCh()
{
    m_pos = m_buffer->pos();
    m_ch = m_buffer->read();
    ++m_col;
    ++m_charPos;
    // A return that no line feed follows ends a line on its own.
    if (m_ch == '\r' && m_buffer->peek() != '\n')
        m_ch = Eol;
    if (m_ch == Eol) {
        ++m_line;
        m_col = 0;
    }
    if (m_ch != MScanBuffer::EoF)
        m_valCh = m_ch;
    if (m_ch >= 'A' && m_ch <= 'Z')
        m_ch += 'a' - 'A';
}

void MScannerBase::addCh()
{
    if (m_ch == MScanBuffer::EoF)
        return;
    appendCodePoint(m_tval, m_valCh);
    nextCh();
}

void MScannerBase::backTo(const Mark& mark)
{
    m_buffer->setPos(mark.pos);
    nextCh();
    m_line = mark.line;
    m_col = mark.col;
    m_charPos = mark.charPos;
}

bool MScannerBase::skipLineComment()
{
    const Mark start{m_pos, m_line, m_col, m_charPos};
    nextCh();
    if (m_ch != '/') {
        backTo(start);
        return false;
    }
    for (;;) {
        nextCh();
        if (m_ch == Eol) {
            nextCh();
            return true;
        }
        // Unfinished at the end of the text: the scanner stays at its end.
        if (m_ch == MScanBuffer::EoF)
            return false;
    }
}

bool MScannerBase::skipBlockComment()
{
    const Mark start{m_pos, m_line, m_col, m_charPos};
    nextCh();
    if (m_ch != '*') {
        backTo(start);
        return false;
    }
    // Nesting is counted, not recursed into, so any depth costs nothing more.
    qint64 level = 1;
    nextCh();
    for (;;) {
        if (m_ch == '*') {
            nextCh();
            if (m_ch == '/') {
                if (--level == 0) {
                    nextCh();
                    return true;
                }
                nextCh();
            }
        } else if (m_ch == '/') {
            nextCh();
            if (m_ch == '*') {
                ++level;
                nextCh();
            }
        } else if (m_ch == MScanBuffer::EoF) {
            return false;
        } else {
            nextCh();
        }
    }
}

MScanToken MScannerBase::scan()
{
    for (;;) {
        while (m_ch == ' ' || m_ch == '\t' || m_ch == '\n' || m_ch == '\r')
            nextCh();
        if ((m_ch == '/' && skipLineComment()) || (m_ch == '/' && skipBlockComment()))
            continue;
        break;
    }

    MScanToken token;
    token.pos = m_pos;
    token.col = m_col;
    token.line = m_line;
    token.charPos = m_charPos;
    if (m_ch == MScanBuffer::EoF) {
        token.kind = EofKind;
        return token;
    }

    m_tval.clear();
    const int first = m_ch;
    addCh();
    if (isIdentStart(first)) {
        while (isIdentPart(m_ch))
            addCh();
        token.kind = m_literals.get(lowerAscii(m_tval), IdentKind);
    } else if (isDigit(first)) {
        scanNumberRest(token);
    } else if ((first == '+' || first == '-') && isDigit(m_ch)) {
        scanNumberRest(token);
    } else if (first == '"' || first == '\'') {
        scanStringRest(token, first);
    } else if (first < 128) {
        token.kind = m_literals.get(QString(QChar(first)), m_noSym);
    } else {
        token.kind = m_noSym;
    }
    token.val = m_tval;
    return token;
}

void MScannerBase::scanNumberRest(MScanToken& token)
{
    token.kind = NumberKind;
    while (isDigit(m_ch))
        addCh();
    if (m_ch != '.')
        return;
    const int dotPos = m_pos;
    addCh();
    if (isDigit(m_ch)) {
        while (isDigit(m_ch))
            addCh();
        return;
    }
    // "5." is the number 5 and then a "." of its own: go back to the dot. The
    // characters of a number are all single bytes, so bytes count characters.
    const int length = dotPos - token.pos;
    backTo(Mark{token.pos, token.line, token.col, token.charPos});
    for (int i = 0; i < length; ++i)
        nextCh();
    m_tval.truncate(length);
}

void MScannerBase::scanStringRest(MScanToken& token, int quote)
{
    while (m_ch != quote && m_ch != '\n' && m_ch != '\r' && m_ch != MScanBuffer::EoF)
        addCh();
    if (m_ch == quote) {
        addCh();
        token.kind = StringKind;
    } else {
        // Unclosed on its line: what was read is one unknown token.
        token.kind = m_noSym;
    }
}
