// quillmere-makeeffects [LIBRARY_DIR [OUTPUT_DIR]]
//
// Reads every <id>.glsl of LIBRARY_DIR (default: library/shaders of the
// source tree), each opening with a block of "// key: value" lines (id,
// group, description, type), and writes OUTPUT_DIR (default: datas/shaders)
// with one <id>.qsh per source, previews included, and index.qmi. Effects are
// previewed applied to a sample picture, brush engines by a stroke of a
// default brush. Any source that doesn't compile stops the tool: nothing
// broken is shipped.

#include "app/mapplication.h"
#include "app/mlogger.h"
#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mbrushpreview.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mshaderstream.h"
#include "gpu/meffectrenderer.h"
#include "gpu/mopengl.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <memory>

namespace {

// The size of the thumbnails: the list shows them scaled down, and 128
// leaves room for a large icon view.
constexpr int previewSide = 128;

struct Source
{
    QString id;
    QString group;
    QString description;
    int type = MShader::EffectShader;
    QString text;
};

// The metadata block and the rest of the file; false with *error when a key
// is missing or unknown.
bool readSource(const QString& path, Source* source, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return false;
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    int body = 0;
    QString type;
    for (; body < lines.size(); ++body) {
        const QString line = lines.at(body).trimmed();
        if (!line.startsWith(QLatin1String("//")))
            break;
        const QString entry = line.mid(2).trimmed();
        const int colon = entry.indexOf(QLatin1Char(':'));
        const QString key = entry.left(colon).trimmed();
        const QString value = entry.mid(colon + 1).trimmed();
        if (colon < 0)
            break;
        if (key == QLatin1String("id"))
            source->id = value.toUpper();
        else if (key == QLatin1String("group"))
            source->group = value.toLower();
        else if (key == QLatin1String("description"))
            source->description = value.toLower();
        else if (key == QLatin1String("type"))
            type = value.toLower();
        else
            break;
    }
    while (body < lines.size() && lines.at(body).trimmed().isEmpty())
        ++body;
    source->text = lines.mid(body).join(QLatin1Char('\n'));
    if (source->id.isEmpty() || source->group.isEmpty() || source->description.isEmpty() || type.isEmpty()) {
        *error = QStringLiteral("the block of id, group, description and type is incomplete");
        return false;
    }
    if (type != QLatin1String("effect") && type != QLatin1String("engine")) {
        *error = QStringLiteral("type is \"effect\" or \"engine\", not \"%1\"").arg(type);
        return false;
    }
    source->type = type == QLatin1String("engine") ? MShader::BrushShader : MShader::EffectShader;
    if (source->id.contains(QLatin1Char(' '))) {
        *error = QStringLiteral("the id holds a blank");
        return false;
    }
    return true;
}

// A colourful picture with hard and soft edges, flat areas and a transparent
// corner, so that every effect shows something.
QImage samplePicture()
{
    QImage image(previewSide, previewSide, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient hues(0, 0, previewSide, 0);
    for (int i = 0; i <= 6; ++i)
        hues.setColorAt(i / 6.0, QColor::fromHsvF((i % 6) / 6.0, 0.8, 0.95));
    painter.fillRect(image.rect(), hues);
    QLinearGradient shade(0, 0, 0, previewSide);
    shade.setColorAt(0, QColor(255, 255, 255, 90));
    shade.setColorAt(0.5, QColor(255, 255, 255, 0));
    shade.setColorAt(1, QColor(0, 0, 0, 150));
    painter.fillRect(image.rect(), shade);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(250, 245, 230));
    painter.drawEllipse(QPointF(44, 50), 22, 22);
    painter.setBrush(QColor(30, 40, 70));
    painter.drawRect(QRectF(74, 30, 30, 30));
    for (int i = 0; i < 6; ++i) {
        painter.setBrush(QColor::fromHsv(i * 60, 255, 200));
        painter.drawRect(QRectF(14 + i * 17, 88, 12, 24));
    }
    // A soft, transparent corner: effects must keep alpha.
    QRadialGradient corner(QPointF(previewSide, previewSide), 40);
    corner.setColorAt(0, QColor(0, 0, 0, 255));
    corner.setColorAt(1, QColor(0, 0, 0, 0));
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillRect(image.rect(), corner);
    painter.end();
    return image;
}

bool writeFile(const QString& path, const QByteArray& content, QString* error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    MLogger::setFileEnabled(false);
    MApplication::prepareProcess();
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnbeck"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillmere"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    const QStringList arguments = application.arguments().mid(1);
    if (arguments.size() > 2 || arguments.contains(QStringLiteral("--help"))) {
        err << "Usage: quillmere-makeeffects [LIBRARY_DIR [OUTPUT_DIR]]\n";
        return 2;
    }
    const QDir root(QStringLiteral(QUILLMERE_SOURCE_DIR));
    const QDir library(arguments.value(0, root.filePath(QStringLiteral("library/shaders"))));
    const QString outputPath = arguments.value(1, root.filePath(QStringLiteral("datas/shaders")));
    if (!library.exists()) {
        err << "quillmere-makeeffects: no directory " << library.path() << "\n";
        return 1;
    }
    if (!QDir().mkpath(outputPath)) {
        err << "quillmere-makeeffects: cannot make " << outputPath << "\n";
        return 1;
    }
    const QDir output(outputPath);
    if (!MOpenGL::instance()->initialize()) {
        err << "quillmere-makeeffects: no OpenGL 3.3 context (xvfb-run will do)\n";
        return 1;
    }
    // The shipped files being rebuilt must not be read back as the system's.
    QTemporaryDir emptyRoot;
    MUtility::setSystemDataRoot(emptyRoot.path());

    QVector<Source> sources;
    const QStringList names = library.entryList({QStringLiteral("*.glsl")}, QDir::Files, QDir::Name);
    for (const QString& name : names) {
        Source source;
        QString error;
        if (!readSource(library.filePath(name), &source, &error)) {
            err << "quillmere-makeeffects: " << name << ": " << error << "\n";
            return 1;
        }
        if (source.id.toLower() + QStringLiteral(".glsl") != name) {
            err << "quillmere-makeeffects: " << name << " holds the id " << source.id
                << "; the file is named after the lower-cased id\n";
            return 1;
        }
        sources.append(source);
    }
    // Effects by group, then the engines; by description within a group.
    std::stable_sort(sources.begin(), sources.end(), [](const Source& a, const Source& b) {
        if (a.type != b.type)
            return a.type < b.type;
        if (a.group != b.group)
            return a.group < b.group;
        return a.description < b.description;
    });

    for (const Source& source : qAsConst(sources)) {
        auto shader = std::make_unique<MShader>();
        shader->setId(source.id);
        shader->setGroup(source.group);
        shader->setDescription(source.description);
        shader->setType(source.type);
        shader->setSource(source.text);
        MShaderList::instance()->addShader(std::move(shader));
    }

    const QImage sample = samplePicture();
    QByteArray index;
    for (const Source& source : qAsConst(sources)) {
        MShader* shader = MShaderList::instance()->shaderById(source.id);
        QString error;
        if (!MEffectRenderer::compile(shader, &error)) {
            err << "quillmere-makeeffects: " << source.id << " doesn't compile:\n" << error << "\n";
            return 1;
        }
        QImage preview;
        if (source.type == MShader::EffectShader) {
            MEffectRenderer renderer;
            preview = renderer.apply(source.id, sample);
            error = renderer.errorString();
        } else {
            MBrush brush;
            brush.setRadius(10.0);
            brush.set_shaderId(source.id);
            preview = MBrushPreview::render(brush, QSize(previewSide, previewSide), QColor(40, 60, 140),
                                            QColor(255, 255, 255));
            if (brush.shaderId() != source.id)
                error = QStringLiteral("the brush didn't take the engine");
            else if (preview.isNull())
                error = QStringLiteral("no preview was drawn");
        }
        if (preview.isNull() || !error.isEmpty()) {
            err << "quillmere-makeeffects: " << source.id << ": " << error << "\n";
            return 1;
        }
        shader->setPreview(preview);
        const QString fileName = output.filePath(source.id.toLower() + QStringLiteral(".qsh"));
        MShaderStream stream(shader);
        if (!stream.save(fileName)) {
            err << "quillmere-makeeffects: cannot write " << fileName << "\n";
            return 1;
        }
        index += QStringLiteral("%1 # %2/%3\n").arg(source.id, source.group, source.description).toUtf8();
        out << "  " << fileName << "\n";
    }
    QString error;
    if (!writeFile(output.filePath(QStringLiteral("index.qmi")), index, &error)) {
        err << "quillmere-makeeffects: cannot write index.qmi: " << error << "\n";
        return 1;
    }
    out << sources.size() << " effects and engines written to " << output.path() << "\n";
    out.flush();
    return 0;
}
