#include "effects/mkeywordmap.h"

MKeywordMap::MKeywordMap(std::initializer_list<std::pair<const char*, int>> literals)
{
    for (const auto& literal : literals)
        m_kinds.insert(QString::fromLatin1(literal.first), literal.second);
}
