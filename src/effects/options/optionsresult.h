#pragma once

#include "effects/options/optionsparser.h"

#include <QString>
#include <QStringList>

namespace options {

// What compiling an "@options" text gives. The values are only meaningful when
// there is no error.
struct Result
{
    int errorCount = 0;
    QStringList errors; // one "-- line L col C: message" each
    int minFilter = Parser::DefaultMinFilter;
    int magFilter = Parser::DefaultMagFilter;
    int wrapS = Parser::DefaultWrap;
    int wrapT = Parser::DefaultWrap;

    bool ok() const { return errorCount == 0; }
};

// Scans and parses text in one go.
Result compile(const QString& text);

} // namespace options
