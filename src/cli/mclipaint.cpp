#include "cli/mclipaint.h"

#include "app/mevent.h"
#include "brush/mbrush.h"
#include "brush/mbrushlist.h"
#include "brush/mstrokefile.h"
#include "brush/mstrokesmoother.h"
#include "colour/mcolorlist.h"
#include "document/mcanvas.h"

#include <QColor>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

#include <memory>

namespace {

// Replays draw the same random inputs every time.
constexpr quint32 replaySeed = 1;

struct Options
{
    QString document;
    QString output;
    QString brush;
    QString events;
    QColor color = Qt::black;
    int layer = -1;
};

QString parse(const QStringList& arguments, Options* options)
{
    QStringList positional;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const bool hasValue = i + 1 < arguments.size();
        if (argument == QLatin1String("--brush") || argument == QLatin1String("--events")) {
            if (!hasValue || arguments.at(i + 1).isEmpty())
                return QStringLiteral("%1 needs a value").arg(argument);
            (argument == QLatin1String("--brush") ? options->brush : options->events) = arguments.at(++i);
        } else if (argument == QLatin1String("--color")) {
            static const QRegularExpression hex(QStringLiteral("^#[0-9A-Fa-f]{6}$"));
            if (!hasValue || !hex.match(arguments.at(i + 1)).hasMatch())
                return QStringLiteral("--color needs a colour written #RRGGBB");
            options->color = QColor(arguments.at(++i));
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
        return QStringLiteral("a document and an output document are needed");
    if (options->events.isEmpty())
        return QStringLiteral("--events EVENTS.json is needed");
    options->document = positional.at(0);
    options->output = positional.at(1);
    return QString();
}

MEvent eventOf(const MStrokeFile::Sample& sample)
{
    MEvent event;
    event.positionX = sample.x;
    event.positionY = sample.y;
    event.pressure = sample.pressure;
    event.xTilt = sample.xTilt;
    event.yTilt = sample.yTilt;
    event.button = Qt::LeftButton;
    event.buttons = Qt::LeftButton;
    return event;
}

// One stroke as the view would send it: the press, each kept drag through the
// smoothing, the release.
void replay(MCanvas* canvas, const MBrush* brush, const MStrokeFile::Stroke& stroke)
{
    if (stroke.isEmpty())
        return;
    MStrokeSmoother smoother;
    const double accumulator = brush->baseValue(MEnum::bsAccumulatorDistance);
    MEvent press = eventOf(stroke.first());
    for (const MEvent& event : smoother.press(press))
        canvas->stroke(event, 0, brush);
    double lastKept = stroke.first().time;
    QList<MEvent> events;
    for (int i = 1; i < stroke.size(); ++i) {
        MEvent move = eventOf(stroke.at(i));
        if (i == stroke.size() - 1) {
            for (const MEvent& event : smoother.release(move, stroke.at(i).time - lastKept))
                canvas->stroke(event, 0, brush);
            return;
        }
        if (!smoother.move(move, stroke.at(i).time - lastKept, accumulator, events))
            continue;
        lastKept = stroke.at(i).time;
        for (const MEvent& event : qAsConst(events))
            canvas->stroke(event, 0, brush);
    }
    // A stroke of one sample: a press and its release at the same place.
    MEvent release = eventOf(stroke.last());
    for (const MEvent& event : smoother.release(release, 0.0))
        canvas->stroke(event, 0, brush);
}

} // namespace

QString MCliPaint::usage() const
{
    return QStringLiteral(
        "paint DOC.qmd OUT.qmd [--brush ID|FILE.qmb] [--color #RRGGBB] [--layer N] --events EVENTS.json");
}

QString MCliPaint::summary() const
{
    return QStringLiteral(
        "Replays the strokes of EVENTS.json on the layer of row N (0 at the bottom; default the top one) "
        "through the same smoothing and brush as the program, and saves the document as OUT. EVENTS.json is "
        "{\"strokes\": [[{\"x\": X, \"y\": Y, \"p\": PRESSURE, \"t\": MILLISECONDS, \"xt\": XTILT, \"yt\": "
        "YTILT}, ...], ...]} in canvas coordinates, \"p\" 1 and tilts 0 when absent; the program started with "
        "QUILLMERE_RECORD=FILE writes the strokes painted in it in this form. The brush is one of the brush "
        "list by id or a brush file, by default the list's current brush; the colour black by default. The "
        "same input gives the same bytes. Exit status 0, 1 when a file can't be read or written, 2 for bad "
        "arguments.");
}

bool MCliPaint::needsGui(const QStringList& arguments) const
{
    Q_UNUSED(arguments);
    return true;
}

int MCliPaint::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    Q_UNUSED(out);
    Options options;
    const QString usageError = parse(arguments, &options);
    if (!usageError.isEmpty())
        return usageFailure(err, usageError);

    QVector<MStrokeFile::Stroke> strokes;
    QString readError;
    if (!MStrokeFile::read(options.events, strokes, &readError)) {
        err << "quillmere-cli: " << options.events << ": " << readError << "\n";
        return 1;
    }

    std::unique_ptr<MBrush> fileBrush;
    const MBrush* brush = nullptr;
    if (options.brush.isEmpty()) {
        brush = MBrushList::instance()->currentBrush();
    } else if (options.brush.endsWith(QLatin1String(".qmb"), Qt::CaseInsensitive) ||
               QFileInfo(options.brush).isFile()) {
        fileBrush = std::make_unique<MBrush>();
        if (!fileBrush->load(options.brush)) {
            err << "quillmere-cli: cannot read the brush " << options.brush << "\n";
            return 1;
        }
        brush = fileBrush.get();
    } else {
        brush = MBrushList::instance()->brushById(options.brush);
        if (!brush) {
            err << "quillmere-cli: no brush of id " << options.brush
                << " (quillmere-cli list brushes shows them)\n";
            return 2;
        }
    }
    if (!brush) {
        err << "quillmere-cli: there is no brush to paint with\n";
        return 1;
    }

    if (!initializeOpenGL(err))
        return 1;
    MCanvas canvas;
    if (const int status = openDocument(canvas, options.document, options.layer, err))
        return status;
    canvas.setCurrentRow(options.layer >= 0 ? options.layer : canvas.count() - 1);
    if (!canvas.canPaint()) {
        err << "quillmere-cli: layer " << canvas.currentRow() << " of " << options.document
            << " can't be painted on: it is hidden or locked\n";
        return 1;
    }

    MColorList::instance()->setColor(options.color);
    MEvent::seedRandom(replaySeed);
    canvas.setClipStroke(true);
    for (const MStrokeFile::Stroke& stroke : qAsConst(strokes))
        replay(&canvas, brush, stroke);

    if (!canvas.save(options.output)) {
        err << "quillmere-cli: cannot write " << options.output << " (code " << canvas.lastError() << ")\n";
        return 1;
    }
    return 0;
}
