#include "cli/mcliconvert.h"

#include "document/mcanvas.h"

#include <QTextStream>

QString MCliConvert::usage() const
{
    return QStringLiteral("convert IMAGE OUT.qmd");
}

QString MCliConvert::summary() const
{
    return QStringLiteral("Opens IMAGE as a new document of its size and saves it as OUT; a document that "
                          "can't be saved leaves any previous OUT as it was. Exit status 0, 1 when the image "
                          "can't be read or the document can't be saved, 2 for bad arguments.");
}

bool MCliConvert::needsGui(const QStringList& arguments) const
{
    Q_UNUSED(arguments);
    return true;
}

int MCliConvert::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    if (arguments.size() != 2 || arguments.at(0).startsWith(QLatin1String("--")) ||
        arguments.at(1).startsWith(QLatin1String("--"))) {
        return usageFailure(err);
    }
    const QString image = arguments.at(0);
    const QString output = arguments.at(1);
    if (!initializeOpenGL(err))
        return 1;
    MCanvas canvas;
    if (!canvas.isGlInitialized()) {
        err << "quillmere-cli: the document's OpenGL context could not be made\n";
        return 1;
    }
    if (!canvas.loadImage(image)) {
        err << "quillmere-cli: cannot read the image " << image << "\n";
        return 1;
    }
    if (!canvas.save(output)) {
        err << "quillmere-cli: cannot save " << output << ": " << writeResultText(canvas.lastError())
            << " (code " << canvas.lastError() << "); any previous file is left as it was\n";
        return 1;
    }
    int tiles = 0;
    for (int row = 0; row < canvas.count(); ++row)
        tiles += canvas.at(row)->tileCount();
    const QRectF page = canvas.paintedRect();
    out << "Converted " << image << " (" << page.width() << " x " << page.height() << ") to " << output
        << ": " << canvas.count() << " layer, " << tiles << " tiles\n";
    out.flush();
    return 0;
}
