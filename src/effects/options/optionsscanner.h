#pragma once

#include "effects/mkeywordmap.h"
#include "effects/mscanbuffer.h"
#include "effects/mscannerbase.h"
#include "effects/mscantoken.h"
#include "effects/mutf8scanbuffer.h"

// The "@options" language of effects: how the layer texture is sampled.
namespace options {

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
    MinSym = 5,
    FilterSym = 6,
    EqualsSym = 7,
    MagSym = 8,
    WrapSSym = 9,
    WrapTSym = 10,
    NearestSym = 11,
    LinearSym = 12,
    NearestMipmapNearestSym = 13,
    NearestMipmapLinearSym = 14,
    LinearMipmapNearestSym = 15,
    LinearMipmapLinearSym = 16,
    RepeatSym = 17,
    MirroredRepeatSym = 18,
    ClampToEdgeSym = 19,
    ClampToBorderSym = 20,
    MirrorClampToEdgeSym = 21,
    NoSym = 22
};

class Scanner : public MScannerBase
{
public:
    explicit Scanner(const QString& text);

    static const KeywordMap& literals();
};

} // namespace options
