#pragma once

#include "cli/mclicommand.h"

// "info DOC": the document's fields and, per layer, its properties and tile
// rectangles, as indented JSON. The file is walked without OpenGL, so what it
// prints is what the file holds (an effect id included, known or not).
class MCliInfo : public MCliCommand
{
public:
    QStringList words() const override { return {QStringLiteral("info")}; }
    QString usage() const override;
    QString summary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
