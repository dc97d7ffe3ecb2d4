#pragma once

#include "cli/mclicommand.h"

// "list brushes|effects": one item per line in the order of the list, its id,
// group and description separated by tabs; brush engines come with the
// effects, with a fourth column that says so.
class MCliList : public MCliCommand
{
public:
    QStringList words() const override { return {QStringLiteral("list")}; }
    QString usage() const override;
    QString summary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
