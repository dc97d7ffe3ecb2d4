#pragma once

#include "effects/mparserbase.h"
#include "effects/options/optionserrors.h"
#include "effects/options/optionsscanner.h"

namespace options {

// Reads "@options" text into the four sampling values of the layer texture, in
// the language's numbering: filters 0 to 5 in the order of the filter keywords,
// wraps 0 to 4 in the order of the wrap keywords. A later option wins.
//
//   Options = { TextureOptions ";" } EOF.
//   TextureOptions = "min" "filter" "=" Filter | "mag" "filter" "=" Filter | WrapModeOption.
//   WrapModeOption = "wraps" "=" WrapMode | "wrapt" "=" WrapMode.
class Parser : public MParserBase
{
public:
    static constexpr int DefaultMinFilter = 5; // linearmipmaplinear
    static constexpr int DefaultMagFilter = 1; // linear
    static constexpr int DefaultWrap = 2;      // clamptoedge

    explicit Parser(Scanner& scanner);
    ~Parser() override;

    int minFilter() const { return m_minFilter; }
    int magFilter() const { return m_magFilter; }
    int wrapS() const { return m_wrapS; }
    int wrapT() const { return m_wrapT; }

protected:
    void parseStart() override;

private:
    void textureOptions();
    void wrapModeOption();
    void filter(int& value);
    void wrapMode(int& value);

    int m_minFilter = DefaultMinFilter;
    int m_magFilter = DefaultMagFilter;
    int m_wrapS = DefaultWrap;
    int m_wrapT = DefaultWrap;
};

} // namespace options
