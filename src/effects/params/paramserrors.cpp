#include "effects/params/paramserrors.h"

namespace params {

QString Errors::message(int n) const
{
    // Numbers 0 to 37 are "expected" token kinds, in the order of Kind.
    static const char* const texts[] = {"EOF expected",
                                        "ident expected",
                                        "number expected",
                                        "string expected",
                                        "\";\" expected",
                                        "\"texture\" expected",
                                        "\"min\" expected",
                                        "\"filter\" expected",
                                        "\"=\" expected",
                                        "\"mag\" expected",
                                        "\"wraps\" expected",
                                        "\"wrapt\" expected",
                                        "\"nearest\" expected",
                                        "\"linear\" expected",
                                        "\"nearestmipmapnearest\" expected",
                                        "\"nearestmipmaplinear\" expected",
                                        "\"linearmipmapnearest\" expected",
                                        "\"linearmipmaplinear\" expected",
                                        "\"repeat\" expected",
                                        "\"mirroredrepeat\" expected",
                                        "\"clamptoedge\" expected",
                                        "\"clamptoborder\" expected",
                                        "\"mirrorclamptoedge\" expected",
                                        "\"int\" expected",
                                        "\"bool\" expected",
                                        "\"float\" expected",
                                        "\"color\" expected",
                                        "\"enum\" expected",
                                        "\"true\" expected",
                                        "\"false\" expected",
                                        "\"rgb\" expected",
                                        "\"(\" expected",
                                        "\",\" expected",
                                        "\")\" expected",
                                        "\"max\" expected",
                                        "\"increment\" expected",
                                        "\"values\" expected",
                                        "??? expected",
                                        "invalid TextureOptions",
                                        "invalid WrapModeOption",
                                        "invalid Filter",
                                        "invalid WrapMode",
                                        "invalid VarType",
                                        "invalid Expression",
                                        "invalid Info"};
    constexpr int count = int(sizeof(texts) / sizeof(texts[0]));
    if (n >= 0 && n < count)
        return QString::fromLatin1(texts[n]);
    return QStringLiteral("error %1").arg(n);
}

} // namespace params
