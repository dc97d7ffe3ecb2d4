#pragma once

#include "cli/mclicommand.h"

// "apply EFFECT IMAGE OUT.png": an effect, named by its id or read from a
// .qsh file, applied to an image as a layer's effect is drawn, written as PNG.
class MCliApply : public MCliCommand
{
public:
    QStringList words() const override { return {QStringLiteral("apply")}; }
    QString usage() const override;
    QString summary() const override;
    bool needsGui(const QStringList& arguments) const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
