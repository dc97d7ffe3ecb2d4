#include "effects/options/optionsscanner.h"

namespace options {

Scanner::Scanner(const QString& text) : MScannerBase(text, literals(), NoSym) {}

const KeywordMap& Scanner::literals()
{
    static const KeywordMap map{{";", SemicolonSym},
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
                                {"mirrorclamptoedge", MirrorClampToEdgeSym}};
    return map;
}

} // namespace options
