#include "cli/mclicommand.h"

#include "document/mcanvas.h"

#include "gpu/mopengl.h"

#include <QOpenGLContext>
#include <QSurfaceFormat>
#include <QTextStream>

QString MCliCommand::readResultText(int code)
{
    switch (code) {
    case 1:
        return QStringLiteral("the file could not be opened");
    case 2:
        return QStringLiteral("not a document (invalid magic)");
    case 3:
        return QStringLiteral("the document is damaged or cut short");
    case 4:
        return QStringLiteral("no layer could be created");
    default:
        return QStringLiteral("error %1").arg(code);
    }
}

QString MCliCommand::writeResultText(int code)
{
    switch (code) {
    case 1:
        return QStringLiteral("the file could not be opened for writing");
    case 2:
        return QStringLiteral("short write");
    case 3:
        return QStringLiteral("the transfer from the GPU failed");
    default:
        return QStringLiteral("error %1").arg(code);
    }
}

bool MCliCommand::initializeOpenGL(QTextStream& err)
{
    QOpenGLContext* share = QOpenGLContext::globalShareContext();
    if (!share || !MOpenGL::instance()->initialize()) {
        err << "quillmere-cli: no OpenGL context could be made; a display with OpenGL 3.3 is needed "
               "(xvfb-run will do)\n";
        return false;
    }
    const QSurfaceFormat format = share->format();
    if (format.version() < qMakePair(3, 3) || format.profile() != QSurfaceFormat::CoreProfile) {
        err << "quillmere-cli: the OpenGL context is " << format.majorVersion() << "."
            << format.minorVersion() << ", not 3.3 core\n";
        return false;
    }
    return true;
}

int MCliCommand::openDocument(MCanvas& canvas, const QString& fileName, int layer, QTextStream& err)
{
    if (!canvas.isGlInitialized()) {
        err << "quillmere-cli: the document's OpenGL context could not be made\n";
        return 1;
    }
    if (!canvas.load(fileName)) {
        err << "quillmere-cli: cannot read " << fileName << ": " << readResultText(canvas.lastError()) << " (code "
            << canvas.lastError() << ")\n";
        return 1;
    }
    if (layer >= canvas.count()) {
        err << "quillmere-cli: " << fileName << " has " << canvas.count() << " layers; there is no row " << layer
            << "\n";
        return 2;
    }
    return 0;
}

int MCliCommand::layerArgument(const QStringList& arguments, int& index)
{
    if (index + 1 >= arguments.size())
        return -1;
    bool ok = false;
    const int value = arguments.at(++index).toInt(&ok);
    return ok && value >= 0 ? value : -1;
}

int MCliCommand::usageFailure(QTextStream& err, const QString& why) const
{
    if (!why.isEmpty())
        err << "quillmere-cli: " << why << "\n";
    err << "Usage: quillmere-cli " << usage() << "\n";
    return 2;
}
