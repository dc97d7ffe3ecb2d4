#pragma once

#include <QHash>
#include <QString>

#include <initializer_list>
#include <utility>

// The literal tokens of a language by their lower-case spelling: its keywords, and
// its one-character symbols such as ";" and "=".
class MKeywordMap
{
public:
    MKeywordMap(std::initializer_list<std::pair<const char*, int>> literals);

    // The kind of the literal spelled so, or defaultKind when there is none.
    int get(const QString& spelling, int defaultKind) const { return m_kinds.value(spelling, defaultKind); }

private:
    QHash<QString, int> m_kinds;
};
