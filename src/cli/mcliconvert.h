#pragma once

#include "cli/mclicommand.h"

// "convert IMAGE OUT": an image opened as a new document, as the program
// opens one, and saved as a document.
class MCliConvert : public MCliCommand
{
public:
    QStringList words() const override { return {QStringLiteral("convert")}; }
    QString usage() const override;
    QString summary() const override;
    bool needsGui(const QStringList& arguments) const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
