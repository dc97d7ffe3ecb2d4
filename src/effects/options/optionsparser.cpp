#include "effects/options/optionsparser.h"

namespace options {

Parser::Parser(Scanner& scanner) : MParserBase(scanner, std::make_unique<Errors>()) {}

Parser::~Parser() = default;

void Parser::parseStart()
{
    while (m_la.kind == MinSym || m_la.kind == MagSym || m_la.kind == WrapSSym || m_la.kind == WrapTSym) {
        textureOptions();
        expect(SemicolonSym);
    }
}

void Parser::textureOptions()
{
    switch (m_la.kind) {
    case MinSym:
        get();
        expect(FilterSym);
        expect(EqualsSym);
        filter(m_minFilter);
        break;
    case MagSym:
        get();
        expect(FilterSym);
        expect(EqualsSym);
        filter(m_magFilter);
        break;
    case WrapSSym:
    case WrapTSym:
        wrapModeOption();
        break;
    default:
        synErr(Errors::InvalidTextureOptions);
        break;
    }
}

void Parser::wrapModeOption()
{
    switch (m_la.kind) {
    case WrapSSym:
        get();
        expect(EqualsSym);
        wrapMode(m_wrapS);
        break;
    case WrapTSym:
        get();
        expect(EqualsSym);
        wrapMode(m_wrapT);
        break;
    default:
        synErr(Errors::InvalidWrapModeOption);
        break;
    }
}

// A missing value leaves the option as it was.
void Parser::filter(int& value)
{
    if (m_la.kind >= NearestSym && m_la.kind <= LinearMipmapLinearSym) {
        value = m_la.kind - NearestSym;
        get();
    } else {
        synErr(Errors::InvalidFilter);
    }
}

void Parser::wrapMode(int& value)
{
    if (m_la.kind >= RepeatSym && m_la.kind <= MirrorClampToEdgeSym) {
        value = m_la.kind - RepeatSym;
        get();
    } else {
        synErr(Errors::InvalidWrapMode);
    }
}

} // namespace options
