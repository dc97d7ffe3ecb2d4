#pragma once

#include <QString>
#include <QStringList>

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
};
