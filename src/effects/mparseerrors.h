#pragma once

#include <QString>
#include <QStringList>

// The error lines of one parse, each "-- line L col C: message", and their count.
// A language supplies the texts of its syntax errors by number.
class MParseErrors
{
public:
    virtual ~MParseErrors() = default;

    // The text of syntax error n.
    virtual QString message(int n) const = 0;

    void synErr(int line, int col, int n) { error(line, col, message(n)); }
    void error(int line, int col, const QString& text);

    int count() const { return m_count; }
    const QStringList& lines() const { return m_lines; }

    static QString format(int line, int col, const QString& text);

private:
    int m_count = 0;
    QStringList m_lines;
};
