#pragma once

#include "effects/mparseerrors.h"

namespace options {

class Errors : public MParseErrors
{
public:
    // Syntax errors past the token kinds.
    enum Number
    {
        InvalidTextureOptions = 23,
        InvalidWrapModeOption = 24,
        InvalidFilter = 25,
        InvalidWrapMode = 26
    };

    QString message(int n) const override;
};

} // namespace options
