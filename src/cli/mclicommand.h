#pragma once

#include <QString>
#include <QStringList>

class MCanvas;
class QTextStream;

// One command of quillmere-cli, named by its words ("effect check").
class MCliCommand
{
public:
    virtual ~MCliCommand() = default;

    virtual QStringList words() const = 0;
    virtual QString usage() const = 0;
    virtual QString summary() const = 0;
    // Whether the command needs a GUI application (an OpenGL context) for
    // these arguments; a plain core application serves the others.
    virtual bool needsGui(const QStringList& arguments) const
    {
        Q_UNUSED(arguments);
        return false;
    }
    // Runs with the arguments after the command's words. 0 means success,
    // 1 that the input had errors, 2 a usage error.
    virtual int run(const QStringList& arguments, QTextStream& out, QTextStream& err) = 0;

    // The value of "--layer N" at arguments[index + 1], stepping index over
    // it; -1 when it isn't a row number from 0.
    static int layerArgument(const QStringList& arguments, int& index);
    static QString layerArgumentError() { return QStringLiteral("--layer needs a row number from 0"); }

protected:
    // Prints why, when given, and the command's usage line on err; returns
    // the exit status of a usage error.
    int usageFailure(QTextStream& err, const QString& why = QString()) const;
    // The result codes of the document reader and writer, for messages.
    static QString readResultText(int code);
    static QString writeResultText(int code);
    // The driver probe and a 3.3 core shared context, as the program needs
    // them to hold a document; false with a message on err otherwise.
    static bool initializeOpenGL(QTextStream& err);
    // Reads the document into canvas and checks that it has a row of layer
    // (-1: no row asked for). 0, or the exit status with a message on err.
    static int openDocument(MCanvas& canvas, const QString& fileName, int layer, QTextStream& err);
};
