#pragma once

#include "effects/mfield.h"
#include "effects/mtexture.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace params {

// What compiling a "@params" text gives. The declarations are only meaningful
// when there is no error.
struct Result
{
    int errorCount = 0;
    QStringList errors; // one "-- line L col C: message" each
    std::vector<std::unique_ptr<MField>> fields;
    std::vector<std::unique_ptr<MTexture>> textures;

    bool ok() const { return errorCount == 0; }
};

// Scans and parses text in one go.
Result compile(const QString& text);

} // namespace params
