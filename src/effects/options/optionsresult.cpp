#include "effects/options/optionsresult.h"

#include "effects/options/optionsscanner.h"

namespace options {

Result compile(const QString& text)
{
    Scanner scanner(text);
    Parser parser(scanner);
    parser.parse();
    Result result;
    result.errorCount = parser.errors().count();
    result.errors = parser.errors().lines();
    result.minFilter = parser.minFilter();
    result.magFilter = parser.magFilter();
    result.wrapS = parser.wrapS();
    result.wrapT = parser.wrapT();
    return result;
}

} // namespace options
