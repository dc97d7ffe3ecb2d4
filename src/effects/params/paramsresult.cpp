#include "effects/params/paramsresult.h"

#include "effects/params/paramsparser.h"
#include "effects/params/paramsscanner.h"

namespace params {

Result compile(const QString& text)
{
    Scanner scanner(text);
    Parser parser(scanner);
    parser.parse();
    Result result;
    result.errorCount = parser.errors().count();
    result.errors = parser.errors().lines();
    result.fields = parser.takeFields();
    result.textures = parser.takeTextures();
    return result;
}

} // namespace params
