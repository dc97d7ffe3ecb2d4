#include "effects/params/paramsscanner.h"

namespace params {

Scanner::Scanner(const QString& text) : MScannerBase(text, literals(), NoSym) {}

const KeywordMap& Scanner::literals()
{
    static const KeywordMap map{{";", SemicolonSym},
                                {"texture", TextureSym},
                                {"min", MinSym},
                                {"filter", FilterSym},
                                {"=", EqualsSym},
                                {"mag", MagSym},
                                {"wraps", WrapSSym},
                                {"wrapt", WrapTSym},
                                {"nearest", NearestSym},
                                {"linear", LinearSym},
                                {"nearestmipmapnearest", NearestMipmapNearestSym},
                                {"nearestmipmaplinear", NearestMipmapLinearSym},
                                {"linearmipmapnearest", LinearMipmapNearestSym},
                                {"linearmipmaplinear", LinearMipmapLinearSym},
                                {"repeat", RepeatSym},
                                {"mirroredrepeat", MirroredRepeatSym},
                                {"clamptoedge", ClampToEdgeSym},
                                {"clamptoborder", ClampToBorderSym},
                                {"mirrorclamptoedge", MirrorClampToEdgeSym},
                                {"int", IntSym},
                                {"bool", BoolSym},
                                {"float", FloatSym},
                                {"color", ColorSym},
                                {"enum", EnumSym},
                                {"true", TrueSym},
                                {"false", FalseSym},
                                {"rgb", RgbSym},
                                {"(", LeftParenSym},
                                {",", CommaSym},
                                {")", RightParenSym},
                                {"max", MaxSym},
                                {"increment", IncrementSym},
                                {"values", ValuesSym}};
    return map;
}

} // namespace params
