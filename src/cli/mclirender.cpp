#include "cli/mclirender.h"

#include "document/mcanvas.h"
#include "gpu/mopengl.h"

#include <QFileInfo>
#include <QImageWriter>
#include <QPainterPath>
#include <QTextStream>

#include <cmath>

namespace {

struct Options
{
    QString document;
    QString output;
    int width = 0;
    int height = 0;
    int layer = -1;
    bool paper = true;
};

// A positive whole number, or 0.
int positive(const QString& text)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok && value > 0 ? value : 0;
}

// The error message, empty when the arguments are good.
QString parse(const QStringList& arguments, Options* options)
{
    QStringList positional;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const bool hasValue = i + 1 < arguments.size();
        if (argument == QLatin1String("--no-paper")) {
            options->paper = false;
        } else if (argument == QLatin1String("--width") || argument == QLatin1String("--height")) {
            const int value = hasValue ? positive(arguments.at(++i)) : 0;
            if (value == 0)
                return QStringLiteral("%1 needs a positive whole number").arg(argument);
            (argument == QLatin1String("--width") ? options->width : options->height) = value;
        } else if (argument == QLatin1String("--layer")) {
            options->layer = MCliCommand::layerArgument(arguments, i);
            if (options->layer < 0)
                return MCliCommand::layerArgumentError();
        } else if (argument.startsWith(QLatin1String("--"))) {
            return QStringLiteral("unexpected argument: %1").arg(argument);
        } else {
            positional << argument;
        }
    }
    if (positional.size() != 2)
        return QStringLiteral("a document and an output image are needed");
    options->document = positional.at(0);
    options->output = positional.at(1);
    const QByteArray format = QFileInfo(options->output).suffix().toLower().toLatin1();
    if (!QImageWriter::supportedImageFormats().contains(format))
        return QStringLiteral("no image format for the extension of %1").arg(options->output);
    return QString();
}

} // namespace

QString MCliRender::usage() const
{
    return QStringLiteral("render DOC.qmd OUT.png [--width W] [--height H] [--no-paper] [--layer N]");
}

QString MCliRender::summary() const
{
    return QStringLiteral(
        "Loads the document and draws it with OpenGL into an image in the format of OUT's extension: every "
        "visible layer over the paper, or with --layer N only the layer of row N (0 at the bottom); "
        "--no-paper "
        "leaves the paper out. The size is the page's unless given; with one side given the other keeps the "
        "page's proportions. Exit status 0, 1 when the document can't be read or drawn, 2 for bad "
        "arguments.");
}

bool MCliRender::needsGui(const QStringList& arguments) const
{
    Q_UNUSED(arguments);
    return true;
}

int MCliRender::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    Options options;
    const QString usageError = parse(arguments, &options);
    if (!usageError.isEmpty())
        return usageFailure(err, usageError);
    if (!initializeOpenGL(err))
        return 1;
    const int maxSide = MOpenGL::instance()->maxTextureSize();
    if (options.width > maxSide || options.height > maxSide) {
        err << "quillmere-cli: the driver draws images of at most " << maxSide << " pixels a side\n";
        return 2;
    }

    MCanvas canvas;
    if (const int status = openDocument(canvas, options.document, options.layer, err))
        return status;

    const QSizeF page = canvas.paintedRect().size();
    if (page.width() < 1 || page.height() < 1) {
        err << "quillmere-cli: the page of " << options.document << " is empty\n";
        return 1;
    }
    int width = options.width;
    int height = options.height;
    if (width == 0 && height == 0) {
        width = int(std::round(page.width()));
        height = int(std::round(page.height()));
    } else if (width == 0) {
        width = qMax(1, int(std::round(height * page.width() / page.height())));
    } else if (height == 0) {
        height = qMax(1, int(std::round(width * page.height() / page.width())));
    }
    if (width > maxSide || height > maxSide) {
        err << "quillmere-cli: the image would be " << width << " x " << height
            << "; the driver draws at most " << maxSide << " pixels a side: give --width or --height\n";
        return 1;
    }

    // A transparent paper has nothing to draw: the checker the program shows
    // for it is a screen aid, not a part of the picture.
    const bool paper = options.paper && canvas.paperType() != MEnum::Transparent;
    const QString program = QStringLiteral("basic");
    const QImage image =
        options.layer >= 0
            ? canvas.render(program, width, height, QPainterPath(), paper, false, {options.layer})
            : canvas.render(program, width, height, QPainterPath(), paper, true);
    if (image.isNull()) {
        err << "quillmere-cli: the document could not be drawn\n";
        return 1;
    }
    QImageWriter writer(options.output);
    if (!writer.write(image)) {
        err << "quillmere-cli: cannot write " << options.output << ": " << writer.errorString() << "\n";
        return 1;
    }
    out << "Rendered " << width << " x " << height << " to " << options.output << "\n";
    out.flush();
    return 0;
}
