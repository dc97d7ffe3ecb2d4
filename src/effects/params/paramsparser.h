#pragma once

#include "effects/mparserbase.h"
#include "effects/params/paramserrors.h"
#include "effects/params/paramsscanner.h"

#include <memory>
#include <vector>

class MField;
class MTexture;

namespace params {

// Reads "@params" text into fields and textures, in declaration order:
//
//   Params = { ( VarDeclaration | TextureDeclaration ) ";" } EOF.
//   VarDeclaration = VarType ident [ "=" Expression ] [ Info { Info } ].
//   VarType = "int" | "bool" | "float" | "color" | "enum".
//   Expression = number | "true" | "false" | "rgb" "(" number "," number "," number [ "," number ] ")".
//   Info = string | "max" "=" number | "min" "=" number | "increment" "=" number
//        | "enum" "values" "=" EnumValue { EnumValue }.
//   EnumValue = number string.
//   TextureDeclaration = "texture" ident string { TextureOptions }.
//   TextureOptions = "min" "filter" "=" Filter | "mag" "filter" "=" Filter | WrapModeOption.
//   WrapModeOption = "wraps" "=" WrapMode | "wrapt" "=" WrapMode.
//
// After a parse with errors, the fields and textures hold what was read, which
// callers are expected to throw away.
class Parser : public MParserBase
{
public:
    static constexpr int MaxTextures = 4;

    explicit Parser(Scanner& scanner);
    ~Parser() override;

    const std::vector<std::unique_ptr<MField>>& fields() const { return m_fields; }
    const std::vector<std::unique_ptr<MTexture>>& textures() const { return m_textures; }

    // Hand the declarations over; the parser is left without any.
    std::vector<std::unique_ptr<MField>> takeFields();
    std::vector<std::unique_ptr<MTexture>> takeTextures();

protected:
    void parseStart() override;

private:
    void varDeclaration();
    void varType(MField& field);
    void expression(MField& field);
    void infoList(MField& field);
    void info(MField& field);
    void enumValue(MField& field);
    void textureDeclaration();
    void textureOptions(MTexture* texture);
    void wrapModeOption(MTexture* texture);
    void filter(int& value);
    void wrapMode(int& value);

    double numberValue();
    QString stringValue() const;

    std::vector<std::unique_ptr<MField>> m_fields;
    std::vector<std::unique_ptr<MTexture>> m_textures;
};

} // namespace params
