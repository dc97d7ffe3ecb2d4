#pragma once

#include "cli/mclicommand.h"

// "paint DOC OUT --events EVENTS.json": recorded strokes replayed on a layer
// through the same smoothing and stroke runners as the view, and the document
// saved.
class MCliPaint : public MCliCommand
{
public:
    QStringList words() const override { return {QStringLiteral("paint")}; }
    QString usage() const override;
    QString summary() const override;
    bool needsGui(const QStringList& arguments) const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
