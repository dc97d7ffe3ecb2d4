#include "effects/params/paramsparser.h"

#include "effects/mfield.h"
#include "effects/mtexture.h"

#include <QColor>

#include <cmath>
#include <limits>
#include <utility>

namespace params {

namespace {

bool isVarType(int kind)
{
    return kind == IntSym || kind == BoolSym || kind == FloatSym || kind == ColorSym || kind == EnumSym;
}

bool isInfoStart(int kind)
{
    return kind == StringSym || kind == MinSym || kind == EnumSym || kind == MaxSym || kind == IncrementSym;
}

bool isTextureOptionStart(int kind)
{
    return kind == MinSym || kind == MagSym || kind == WrapSSym || kind == WrapTSym;
}

// Towards zero; beyond the range of int, its nearer end (a plain cast would be undefined).
int truncated(double value)
{
    if (value >= 2147483647.0)
        return std::numeric_limits<int>::max();
    if (value <= -2147483648.0)
        return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

// Single precision, as the uniform takes it; beyond its range, its largest value.
float narrowed(double value)
{
    constexpr double largest = double(std::numeric_limits<float>::max());
    return float(qBound(-largest, value, largest));
}

} // namespace

Parser::Parser(Scanner& scanner) : MParserBase(scanner, std::make_unique<Errors>()) {}

Parser::~Parser() = default;

std::vector<std::unique_ptr<MField>> Parser::takeFields()
{
    return std::exchange(m_fields, {});
}

std::vector<std::unique_ptr<MTexture>> Parser::takeTextures()
{
    return std::exchange(m_textures, {});
}

void Parser::parseStart()
{
    while (isVarType(m_la.kind) || m_la.kind == TextureSym) {
        if (isVarType(m_la.kind))
            varDeclaration();
        else
            textureDeclaration();
        expect(SemicolonSym);
    }
}

void Parser::varDeclaration()
{
    m_fields.push_back(std::make_unique<MField>());
    MField& field = *m_fields.back();
    varType(field);
    expect(IdentSym);
    // Without a name this is the token before; the parse has an error then anyway.
    field.name = m_t.val.toLatin1();
    if (m_la.kind == EqualsSym) {
        get();
        expression(field);
    }
    if (isInfoStart(m_la.kind))
        infoList(field);
}

void Parser::varType(MField& field)
{
    switch (m_la.kind) {
    case IntSym:
        get();
        field.type = QVariant::Int;
        break;
    case BoolSym:
        get();
        field.type = QVariant::Bool;
        break;
    case FloatSym:
        get();
        field.type = QVariant::Double;
        break;
    case ColorSym:
        get();
        field.type = QVariant::Color;
        break;
    case EnumSym:
        get();
        field.type = QVariant::Int;
        field.enumName = QByteArrayLiteral("enum");
        break;
    default:
        synErr(Errors::InvalidVarType);
        break;
    }
}

void Parser::expression(MField& field)
{
    switch (m_la.kind) {
    case NumberSym: {
        get();
        const double value = numberValue();
        if (field.type == QVariant::Int)
            field.defaultValue = truncated(value);
        else
            field.defaultValue = QVariant::fromValue(narrowed(value));
        break;
    }
    case TrueSym:
        get();
        field.defaultValue = true;
        break;
    case FalseSym:
        get();
        field.defaultValue = false;
        break;
    case RgbSym: {
        get();
        expect(LeftParenSym);
        expect(NumberSym);
        const double red = numberValue();
        expect(CommaSym);
        expect(NumberSym);
        const double green = numberValue();
        expect(CommaSym);
        expect(NumberSym);
        const double blue = numberValue();
        double alpha = 255.0;
        if (m_la.kind == CommaSym) {
            get();
            expect(NumberSym);
            alpha = numberValue();
        }
        expect(RightParenSym);
        // Out of range components are brought into range: QColor would refuse
        // them and give an invalid colour.
        const auto component = [](double value) { return qBound(0, truncated(value), 255); };
        QColor color;
        color.setRgb(component(red), component(green), component(blue), component(alpha));
        field.defaultValue = color;
        break;
    }
    default:
        synErr(Errors::InvalidExpression);
        break;
    }
}

void Parser::infoList(MField& field)
{
    info(field);
    while (isInfoStart(m_la.kind))
        info(field);
}

void Parser::info(MField& field)
{
    switch (m_la.kind) {
    case StringSym:
        get();
        field.label = stringValue();
        break;
    case MaxSym:
        get();
        expect(EqualsSym);
        expect(NumberSym);
        field.setMaximum(numberValue());
        break;
    case MinSym:
        get();
        expect(EqualsSym);
        expect(NumberSym);
        field.setMinimum(numberValue());
        break;
    case IncrementSym:
        get();
        expect(EqualsSym);
        expect(NumberSym);
        field.step = numberValue();
        break;
    case EnumSym:
        get();
        expect(ValuesSym);
        expect(EqualsSym);
        enumValue(field);
        while (m_la.kind == NumberSym)
            enumValue(field);
        break;
    default:
        synErr(Errors::InvalidInfo);
        break;
    }
}

void Parser::enumValue(MField& field)
{
    expect(NumberSym);
    const int value = truncated(numberValue());
    expect(StringSym);
    field.addPick(stringValue(), value);
}

void Parser::textureDeclaration()
{
    // Checked before "texture" is read, so that the report points at it.
    MTexture* texture = nullptr;
    if (int(m_textures.size()) >= MaxTextures) {
        // The rest of the declaration is still read, into nothing.
        semErr(QStringLiteral("You can use 4 user textures max."));
    } else {
        m_textures.push_back(std::make_unique<MTexture>());
        texture = m_textures.back().get();
    }
    expect(TextureSym);
    expect(IdentSym);
    if (texture)
        texture->name = m_t.val.toLatin1();
    expect(StringSym);
    if (texture)
        texture->fileName = stringValue();
    while (isTextureOptionStart(m_la.kind))
        textureOptions(texture);
}

void Parser::textureOptions(MTexture* texture)
{
    int value = -1;
    switch (m_la.kind) {
    case MinSym:
        get();
        expect(FilterSym);
        expect(EqualsSym);
        filter(value);
        if (texture && value >= 0)
            texture->minFilter = value;
        break;
    case MagSym:
        get();
        expect(FilterSym);
        expect(EqualsSym);
        filter(value);
        if (texture && value >= 0)
            texture->magFilter = value;
        break;
    case WrapSSym:
    case WrapTSym:
        wrapModeOption(texture);
        break;
    default:
        synErr(Errors::InvalidTextureOptions);
        break;
    }
}

void Parser::wrapModeOption(MTexture* texture)
{
    int value = -1;
    switch (m_la.kind) {
    case WrapSSym:
        get();
        expect(EqualsSym);
        wrapMode(value);
        if (texture && value >= 0)
            texture->wrapS = value;
        break;
    case WrapTSym:
        get();
        expect(EqualsSym);
        wrapMode(value);
        if (texture && value >= 0)
            texture->wrapT = value;
        break;
    default:
        synErr(Errors::InvalidWrapModeOption);
        break;
    }
}

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

// The value of the token last read, meant to be a number. When it isn't one (the
// number was missing) or doesn't fit a double, the error is reported and the
// value is 0.
double Parser::numberValue()
{
    bool ok = false;
    const double value = m_t.val.toDouble(&ok);
    if (!ok || !std::isfinite(value)) {
        semErr(QStringLiteral("Invalid number"));
        return 0.0;
    }
    return value;
}

// The text of the string token last read, without its quotes.
QString Parser::stringValue() const
{
    return m_t.val.mid(1, m_t.val.size() - 2);
}

} // namespace params
