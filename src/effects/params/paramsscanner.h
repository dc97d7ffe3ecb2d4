#pragma once

#include "effects/mkeywordmap.h"
#include "effects/mscanbuffer.h"
#include "effects/mscannerbase.h"
#include "effects/mscantoken.h"
#include "effects/mutf8scanbuffer.h"

// The "@params" language of effects: declarations of parameters and textures.
namespace params {

using Buffer = MScanBuffer;
using UTF8Buffer = MUtf8ScanBuffer;
using Token = MScanToken;
using KeywordMap = MKeywordMap;

// Token kinds; the numbers are those of the error messages.
enum Kind
{
    EofSym = 0,
    IdentSym = 1,
    NumberSym = 2,
    StringSym = 3,
    SemicolonSym = 4,
    TextureSym = 5,
    MinSym = 6,
    FilterSym = 7,
    EqualsSym = 8,
    MagSym = 9,
    WrapSSym = 10,
    WrapTSym = 11,
    NearestSym = 12,
    LinearSym = 13,
    NearestMipmapNearestSym = 14,
    NearestMipmapLinearSym = 15,
    LinearMipmapNearestSym = 16,
    LinearMipmapLinearSym = 17,
    RepeatSym = 18,
    MirroredRepeatSym = 19,
    ClampToEdgeSym = 20,
    ClampToBorderSym = 21,
    MirrorClampToEdgeSym = 22,
    IntSym = 23,
    BoolSym = 24,
    FloatSym = 25,
    ColorSym = 26,
    EnumSym = 27,
    TrueSym = 28,
    FalseSym = 29,
    RgbSym = 30,
    LeftParenSym = 31,
    CommaSym = 32,
    RightParenSym = 33,
    MaxSym = 34,
    IncrementSym = 35,
    ValuesSym = 36,
    NoSym = 37
};

class Scanner : public MScannerBase
{
public:
    explicit Scanner(const QString& text);

    static const KeywordMap& literals();
};

} // namespace params
