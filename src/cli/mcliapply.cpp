#include "cli/mcliapply.h"

#include "effects/mfield.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mshaderstream.h"
#include "gpu/meffectrenderer.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <QSaveFile>
#include <QTextStream>

#include <memory>

namespace {

struct Options
{
    QString effect;
    QString image;
    QString output;
    QList<QPair<QString, QString>> settings;
};

// The error message, empty when the arguments are good.
QString parse(const QStringList& arguments, Options* options)
{
    QStringList positional;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("--set")) {
            if (i + 1 >= arguments.size())
                return QStringLiteral("--set needs NAME=VALUE");
            const QString setting = arguments.at(++i);
            const int equals = setting.indexOf(QLatin1Char('='));
            if (equals <= 0)
                return QStringLiteral("--set needs NAME=VALUE, not \"%1\"").arg(setting);
            options->settings.append({setting.left(equals).trimmed(), setting.mid(equals + 1)});
        } else if (argument.startsWith(QLatin1String("--"))) {
            return QStringLiteral("unexpected argument: %1").arg(argument);
        } else {
            positional << argument;
        }
    }
    if (positional.size() != 3)
        return QStringLiteral("an effect, an image and an output image are needed");
    options->effect = positional.at(0);
    options->image = positional.at(1);
    options->output = positional.at(2);
    if (QFileInfo(options->output).suffix().compare(QLatin1String("png"), Qt::CaseInsensitive) != 0)
        return QStringLiteral("the output is written as PNG: give it the extension .png");
    return QString();
}

// The id of the effect named by the argument: a file is read and added to the
// list for this run; anything else is taken as an id. Empty with *error set.
QString effectId(const QString& argument, QString* error)
{
    const QFileInfo info(argument);
    if (info.isFile()) {
        auto shader = std::make_unique<MShader>();
        MShaderStream stream(shader.get());
        if (!stream.load(argument)) {
            *error = QStringLiteral("cannot read %1").arg(argument);
            return QString();
        }
        if (shader->id().trimmed().isEmpty() || shader->source().trimmed().isEmpty()) {
            *error = QStringLiteral("%1 is not an effect file (no id or no source)").arg(argument);
            return QString();
        }
        return MShaderList::instance()->addShader(std::move(shader))->id();
    }
    if (info.suffix().compare(QLatin1String("qsh"), Qt::CaseInsensitive) == 0) {
        *error = QStringLiteral("cannot read %1: no such file").arg(argument);
        return QString();
    }
    const MShader* shader = MShaderList::instance()->shaderById(argument);
    if (!shader) {
        *error =
            QStringLiteral("unknown effect: %1 (neither a .qsh file nor the id of an effect)").arg(argument);
        return QString();
    }
    return shader->id();
}

} // namespace

QString MCliApply::usage() const
{
    return QStringLiteral("apply EFFECT IMAGE OUT.png [--set NAME=VALUE ...]");
}

QString MCliApply::summary() const
{
    return QStringLiteral(
        "Applies an effect to an image as a layer's effect is drawn, on transparent paper, and writes the "
        "result as PNG. EFFECT is a .qsh file or the id of an installed effect. --set gives a parameter a "
        "value: colours as #rrggbb, booleans as true, false, 1 or 0, numbers within the parameter's range "
        "(out of range is refused, not clamped). Exit status 0, 1 when the effect, the image or a value is "
        "wrong or the effect doesn't compile, 2 for bad arguments.");
}

bool MCliApply::needsGui(const QStringList& arguments) const
{
    Q_UNUSED(arguments);
    return true;
}

int MCliApply::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    Options options;
    const QString usageError = parse(arguments, &options);
    if (!usageError.isEmpty())
        return usageFailure(err, usageError);
    if (!initializeOpenGL(err))
        return 1;

    QString error;
    const QString id = effectId(options.effect, &error);
    if (id.isEmpty()) {
        err << "quillmere-cli: " << error << "\n";
        return 1;
    }
    MShader* shader = MShaderList::instance()->shaderById(id);
    // The parameters are known once the declarations are compiled.
    if (!shader->parseParams()) {
        err << "quillmere-cli: the effect " << id << " doesn't compile:\n"
            << shader->compileMessages() << "\n";
        return 1;
    }
    QHash<QByteArray, QVariant> values;
    for (const auto& setting : qAsConst(options.settings)) {
        const QByteArray name = setting.first.toLatin1();
        const MField* field = shader->param(name);
        if (!field) {
            QStringList names;
            for (int i = 0; i < shader->paramCount(); ++i)
                names << QString::fromLatin1(shader->param(i)->name);
            err << "quillmere-cli: the effect " << id << " has no parameter " << setting.first << " (it has: "
                << (names.isEmpty() ? QStringLiteral("none") : names.join(QStringLiteral(", "))) << ")\n";
            return 1;
        }
        const QVariant value = MEffectRenderer::valueFromText(*field, setting.second, &error);
        if (!value.isValid()) {
            err << "quillmere-cli: bad value for " << setting.first << ": " << error << "\n";
            return 1;
        }
        values.insert(name, value);
    }

    QImageReader reader(options.image);
    const QImage image = reader.read();
    if (image.isNull()) {
        err << "quillmere-cli: cannot read " << options.image << ": " << reader.errorString() << "\n";
        return 1;
    }

    MEffectRenderer renderer;
    const QImage result = renderer.apply(id, image, values);
    if (result.isNull()) {
        err << "quillmere-cli: " << renderer.errorString() << "\n";
        return 1;
    }
    // Encoded first, so that a failure leaves no file, and written through a
    // save file, so that a reader never sees half an image.
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QSaveFile file(options.output);
    if (!result.save(&buffer, "PNG") || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size() || !file.commit()) {
        err << "quillmere-cli: cannot write " << options.output << ": " << file.errorString() << "\n";
        return 1;
    }
    out << "Applied " << id << " to " << options.image << " (" << image.width() << " x " << image.height()
        << ") into " << options.output << "\n";
    out.flush();
    return 0;
}
