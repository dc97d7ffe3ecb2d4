#pragma once

#include "cli/mclicommand.h"

// "render DOC OUT": the document loaded as the program loads it and drawn by
// the GPU, written as an image in the format of OUT's extension.
class MCliRender : public MCliCommand
{
public:
    QStringList words() const override { return {QStringLiteral("render")}; }
    QString usage() const override;
    QString summary() const override;
    bool needsGui(const QStringList& arguments) const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
