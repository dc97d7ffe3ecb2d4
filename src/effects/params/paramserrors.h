#pragma once

#include "effects/mparseerrors.h"

namespace params {

class Errors : public MParseErrors
{
public:
    // Syntax errors past the token kinds.
    enum Number
    {
        InvalidTextureOptions = 38,
        InvalidWrapModeOption = 39,
        InvalidFilter = 40,
        InvalidWrapMode = 41,
        InvalidVarType = 42,
        InvalidExpression = 43,
        InvalidInfo = 44
    };

    QString message(int n) const override;
};

} // namespace params
