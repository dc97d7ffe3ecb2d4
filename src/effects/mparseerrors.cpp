#include "effects/mparseerrors.h"

void MParseErrors::error(int line, int col, const QString& text)
{
    m_lines.append(format(line, col, text));
    ++m_count;
}

QString MParseErrors::format(int line, int col, const QString& text)
{
    return QStringLiteral("-- line %1 col %2: %3").arg(line).arg(col).arg(text);
}
