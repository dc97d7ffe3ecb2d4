#pragma once

#include "cli/mclicommand.h"

class MShader;

// "effect check FILE": compiles an effect's declarations as the program does and
// prints what it declares and every message, optionally the assembled shader,
// and with --compile the verdict of the graphics driver.
class MCliEffectCheck : public MCliCommand
{
public:
    QStringList words() const override { return {QStringLiteral("effect"), QStringLiteral("check")}; }
    QString usage() const override;
    QString summary() const override;
    bool needsGui(const QStringList& arguments) const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;

    static QString glFilterName(int value);
    static QString glWrapName(int value);
    static void printDeclarations(MShader& shader, QTextStream& out);
    // Compiles and links the assembled source with the standard vertex shader;
    // false with the driver's log when it fails.
    static bool compileWithDriver(const QString& fragmentSource, QString* log);
};
