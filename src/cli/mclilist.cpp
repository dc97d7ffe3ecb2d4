#include "cli/mclilist.h"

#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"

#include <QTextStream>

namespace {

// Tabs and line breaks inside a field would break the columns.
QString field(const QString& text)
{
    QString result = text;
    result.replace(QLatin1Char('\t'), QLatin1Char(' '));
    result.replace(QLatin1Char('\n'), QLatin1Char(' '));
    result.replace(QLatin1Char('\r'), QLatin1Char(' '));
    return result;
}

} // namespace

QString MCliList::usage() const
{
    return QStringLiteral("list brushes|effects");
}

QString MCliList::summary() const
{
    return QStringLiteral(
        "Prints the brushes or the effects, shipped and the user's, one per line: id, group and "
        "description separated by tabs; brush engines are listed with the effects, with "
        "\"brush engine\" in a fourth column. Exit status 0, 2 for a usage error.");
}

int MCliList::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const QString kind = arguments.value(0);
    if (arguments.size() != 1 || (kind != QLatin1String("brushes") && kind != QLatin1String("effects"))) {
        return usageFailure(err);
    }
    if (kind == QLatin1String("brushes")) {
        const MBrushList* list = MBrushList::instance();
        for (int row = 0; row < list->count(); ++row) {
            const MBrush* brush = list->brushAt(row);
            out << field(brush->id()) << '\t' << field(brush->group()) << '\t' << field(brush->description())
                << '\n';
        }
        return 0;
    }
    const MShaderList* list = MShaderList::instance();
    for (int row = 0; row < list->count(); ++row) {
        const MShader* shader = list->shaderAt(row);
        out << field(shader->id()) << '\t' << field(shader->group()) << '\t' << field(shader->description());
        if (shader->type() == MShader::BrushShader)
            out << "\tbrush engine";
        out << '\n';
    }
    return 0;
}
