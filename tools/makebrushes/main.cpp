// quillmere-makebrushes: builds the shipped brushes from their sources.
//
// A source is library/brushes/<id in lower case>.json: a brush file without
// its images. Its texture, if any, is a PNG in library/brushes/textures named
// by the key "textureFile". library/brushes/index.qmi gives the brushes and
// their order. Each brush is read through the brush file reader, its texture
// set, its thumbnail rendered on the GPU, and the result written to
// datas/brushes/<id>.qmb with datas/brushes/index.qmi beside it. The brush
// engines of datas/shaders are loaded first so that engine brushes draw with
// their own engine.
//
//   quillmere-makebrushes [--root <repository>] [--make-textures]
//
// --make-textures first writes the grain textures anew, from a fixed seed.
// Needs a display for OpenGL: run it under xvfb-run where there is none.

#include "app/mapplication.h"
#include "app/mlogger.h"
#include "brush/mbrush.h"
#include "brush/mbrushinputinfolist.h"
#include "brush/mbrushpreview.h"
#include "brush/mbrushsettinginfolist.h"
#include "brush/mbrushstream.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mshaderstream.h"
#include "gpu/mopengl.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>
#include <QStandardPaths>
#include <QTextStream>

#include <cmath>
#include <memory>

namespace {

// The size of a cell of the brush list, which shows the thumbnail as it stands.
const QSize previewSize(150, 60);
const QString textureKey = QStringLiteral("textureFile");

QTextStream& err()
{
    static QTextStream stream(stderr);
    return stream;
}

void fail(const QString& file, const QString& message)
{
    err() << "quillmere-makebrushes: " << file << ": " << message << Qt::endl;
}

// ---------------------------------------------------------------------------
// Grain textures. Noise from an integer hash, so that the same image comes out
// on every machine and with every library version.

double hashNoise(int x, int y, quint32 seed)
{
    quint32 h = quint32(x) * 374761393u + quint32(y) * 668265263u + seed * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    h ^= h >> 16;
    return double(h & 0xffffffu) / double(0xffffff);
}

double smooth(double t)
{
    return t * t * (3.0 - 2.0 * t);
}

// Value noise, cells of sx by sy pixels, wrapping every period cells so that
// the grain has no seam where the texture is sampled at its edge.
double valueNoise(double x, double y, double sx, double sy, int period, quint32 seed)
{
    const double u = x / sx;
    const double v = y / sy;
    const int i = int(std::floor(u));
    const int j = int(std::floor(v));
    const double fu = smooth(u - i);
    const double fv = smooth(v - j);
    auto at = [&](int a, int b) {
        return hashNoise(((a % period) + period) % period, ((b % period) + period) % period, seed);
    };
    const double top = at(i, j) * (1 - fu) + at(i + 1, j) * fu;
    const double bottom = at(i, j + 1) * (1 - fu) + at(i + 1, j + 1) * fu;
    return top * (1 - fv) + bottom * fv;
}

double smoothstep(double edge0, double edge1, double x)
{
    const double t = qBound(0.0, (x - edge0) / (edge1 - edge0), 1.0);
    return smooth(t);
}

// A round stamp pitted by paper grain: white, the grain in the alpha. Chalk
// leaves the pits open; charcoal fills more and runs in streaks along x, the
// direction of travel of a brush whose angle follows the stroke.
QImage grainTexture(bool streaky)
{
    const int size = 128;
    QImage image(size, size, QImage::Format_ARGB32);
    for (int y = 0; y < size; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size; ++x) {
            const double dx = (x + 0.5) / size - 0.5;
            const double dy = (y + 0.5) / size - 0.5;
            const double distance = std::sqrt(dx * dx + dy * dy) * 2.0;
            // Ragged rim: the edge of a stick of chalk is broken too.
            const double rim = 0.82 + 0.14 * valueNoise(x, y, 10, 10, 13, 7);
            const double mask = 1.0 - smoothstep(rim - 0.2, rim, distance);
            double grain;
            double alpha;
            if (streaky) {
                grain = 0.55 * valueNoise(x, y, 32, 3, 4, 11) + 0.3 * valueNoise(x, y, 8, 2, 16, 12) +
                        0.15 * hashNoise(x, y, 13);
                alpha = smoothstep(0.3, 0.55, grain);
            } else {
                grain = 0.5 * valueNoise(x, y, 6, 6, 21, 3) + 0.3 * valueNoise(x, y, 3, 3, 42, 4) +
                        0.2 * hashNoise(x, y, 5);
                alpha = smoothstep(0.38, 0.62, grain);
            }
            line[x] = qRgba(255, 255, 255, qBound(0, int(std::lround(255.0 * mask * alpha)), 255));
        }
    }
    return image;
}

bool makeTextures(const QString& directory)
{
    if (!QDir().mkpath(directory)) {
        fail(directory, QStringLiteral("cannot create the directory"));
        return false;
    }
    const QPair<QString, bool> textures[] = {{QStringLiteral("chalk.png"), false},
                                             {QStringLiteral("charcoal.png"), true}};
    for (const auto& texture : textures) {
        const QString path = directory + texture.first;
        if (!grainTexture(texture.second).save(path, "PNG")) {
            fail(path, QStringLiteral("cannot write the texture"));
            return false;
        }
        err() << "wrote " << path << Qt::endl;
    }
    return true;
}

// ---------------------------------------------------------------------------
// Sources. The reader of brush files takes anything and reads defaults for
// what it doesn't know; a source is checked key by key first, so that a typing
// error in a setting name fails here instead of shipping a default.

bool checkCurve(const QString& file, const QString& where, const QJsonValue& value)
{
    if (!value.isObject()) {
        fail(file, where + QStringLiteral(": a curve is an object"));
        return false;
    }
    static const QSet<QString> keys = {QStringLiteral("modulo"), QStringLiteral("yMin"),
                                       QStringLiteral("yMax"), QStringLiteral("interpolationType"),
                                       QStringLiteral("points")};
    bool ok = true;
    const QJsonObject curve = value.toObject();
    for (auto it = curve.begin(); it != curve.end(); ++it) {
        if (!keys.contains(it.key())) {
            fail(file, where + QStringLiteral(": unknown curve key \"%1\"").arg(it.key()));
            ok = false;
        }
    }
    for (const QJsonValue& point : curve.value(QStringLiteral("points")).toArray()) {
        const QJsonArray pair = point.toArray();
        if (pair.size() != 2 || !pair.at(0).isDouble() || !pair.at(1).isDouble()) {
            fail(file, where + QStringLiteral(": a point is [x, y]"));
            ok = false;
        }
    }
    return ok;
}

bool checkSource(const QString& file, const QJsonObject& source)
{
    static const QSet<QString> topKeys = {QStringLiteral("id"),
                                          QStringLiteral("group"),
                                          QStringLiteral("description"),
                                          QStringLiteral("shaderId"),
                                          QStringLiteral("quickSettings"),
                                          QStringLiteral("shaderValues"),
                                          QStringLiteral("version"),
                                          textureKey};
    const MBrushSettingInfoList* settings = MBrushSettingInfoList::instance();
    const MBrushInputInfoList* inputs = MBrushInputInfoList::instance();
    bool ok = true;
    for (auto it = source.begin(); it != source.end(); ++it) {
        const QString& key = it.key();
        if (topKeys.contains(key))
            continue;
        if (settings->field(key.toUtf8()).isNull()) {
            fail(file, QStringLiteral("unknown key \"%1\"").arg(key));
            ok = false;
            continue;
        }
        const QJsonObject setting = it.value().toObject();
        if (!setting.value(QStringLiteral("value")).isDouble()) {
            fail(file, key + QStringLiteral(": no number \"value\""));
            ok = false;
        }
        for (auto entry = setting.begin(); entry != setting.end(); ++entry) {
            if (entry.key() == QLatin1String("value"))
                continue;
            if (inputs->info(entry.key().toUtf8()).input < 0) {
                fail(file, key + QStringLiteral(": unknown input \"%1\"").arg(entry.key()));
                ok = false;
                continue;
            }
            ok = checkCurve(file, key + QLatin1Char('.') + entry.key(), entry.value()) && ok;
        }
    }
    for (const QJsonValue& name : source.value(QStringLiteral("quickSettings")).toArray()) {
        if (settings->field(name.toString().toUtf8()).isNull()) {
            fail(file, QStringLiteral("unknown quick setting \"%1\"").arg(name.toString()));
            ok = false;
        }
    }
    for (const QString& key : {QStringLiteral("group"), QStringLiteral("description")}) {
        const QString text = source.value(key).toString();
        if (text.trimmed().isEmpty() || text != text.toLower()) {
            fail(file, key + QStringLiteral(" must be a lower-case text"));
            ok = false;
        }
    }
    return ok;
}

// The ids of the order file, upper-cased, or an empty list after a failure.
QStringList readOrder(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(fileName, file.errorString());
        return {};
    }
    static const QRegularExpression idPattern(QStringLiteral("^[A-Z][A-Z0-9_]*$"));
    QStringList ids;
    for (const QString& rawLine : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        QString line = rawLine;
        const int comment = line.indexOf(QLatin1Char('#'));
        if (comment >= 0)
            line = line.left(comment);
        line = line.trimmed();
        if (line.isEmpty())
            continue;
        if (!idPattern.match(line).hasMatch() || ids.contains(line)) {
            fail(fileName,
                 QStringLiteral("bad or repeated id \"%1\": upper case, digits and _ only").arg(line));
            return {};
        }
        ids << line;
    }
    return ids;
}

bool loadEngines(const QString& directory)
{
    bool ok = true;
    const QStringList files = QDir(directory).entryList({QStringLiteral("*.qsh")}, QDir::Files, QDir::Name);
    for (const QString& name : files) {
        const QString path = directory + name;
        auto shader = std::make_unique<MShader>();
        MShaderStream stream(shader.get());
        if (!stream.load(path) || shader->id().trimmed().isEmpty()) {
            fail(path, QStringLiteral("not a readable effect file"));
            ok = false;
            continue;
        }
        MShaderList::instance()->addShader(std::move(shader));
    }
    return ok;
}

int paintedPixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    return count;
}

// Reads one source into brush; the texture comes from its own file.
bool readBrush(const QString& sourceDir, const QString& id, MBrush& brush)
{
    const QString fileName = sourceDir + id.toLower() + QStringLiteral(".json");
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(fileName, file.errorString());
        return false;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        fail(fileName,
             QStringLiteral("not a JSON object (%1 at %2)").arg(error.errorString()).arg(error.offset));
        return false;
    }
    QJsonObject source = document.object();
    if (!checkSource(fileName, source))
        return false;
    if (source.value(QStringLiteral("id")).toString() != id) {
        fail(fileName, QStringLiteral("the id must be \"%1\", as the file is named").arg(id));
        return false;
    }
    // The brush itself forgets an engine it can't find; the source still names it.
    const QString engine = source.value(QStringLiteral("shaderId")).toString().trimmed();
    MShader* shader = engine.isEmpty() ? nullptr : MShaderList::instance()->shaderById(engine);
    if (!engine.isEmpty() && !shader) {
        fail(fileName, QStringLiteral("no brush engine %1 in datas/shaders").arg(engine));
        return false;
    }
    if (shader && !shader->parseParams()) {
        fail(fileName, QStringLiteral("the parameters of the engine %1 don't compile").arg(engine));
        return false;
    }
    // The reader skips a value of an unknown parameter without a word.
    for (const QJsonValue& entry : source.value(QStringLiteral("shaderValues")).toArray()) {
        const QString name = entry.toObject().value(QStringLiteral("paramName")).toString();
        if (!shader || !shader->param(name.toUtf8())) {
            fail(fileName, QStringLiteral("the engine has no parameter \"%1\"").arg(name));
            return false;
        }
    }
    const QString textureFile = source.value(textureKey).toString();
    source.remove(textureKey);

    MBrushStream stream(&brush);
    if (!stream.fromJson(QJsonDocument(source).toJson())) {
        fail(fileName, QStringLiteral("not readable as a brush"));
        return false;
    }
    if (!textureFile.isEmpty()) {
        const QString texturePath = sourceDir + QStringLiteral("textures/") + textureFile;
        const QImage texture(texturePath);
        if (texture.isNull()) {
            fail(fileName, QStringLiteral("no texture image %1").arg(texturePath));
            return false;
        }
        brush.setTexture(texture);
    }
    return true;
}

bool writeIndex(const QString& fileName, const QStringList& lines)
{
    QSaveFile file(fileName);
    const QByteArray content = lines.join(QLatin1Char('\n')).toUtf8() + '\n';
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit()) {
        fail(fileName, file.errorString());
        return false;
    }
    return true;
}

int run(const QString& root, bool textures)
{
    const QString sourceDir = root + QStringLiteral("/library/brushes/");
    const QString outputDir = root + QStringLiteral("/datas/brushes/");
    if (textures && !makeTextures(sourceDir + QStringLiteral("textures/")))
        return 1;
    // The driver probe runs first, as at start-up: drawing code reads its limits.
    if (!MOpenGL::instance()->initialize()) {
        fail(QStringLiteral("OpenGL"), QStringLiteral("no usable 3.3 core driver"));
        return 1;
    }
    if (!loadEngines(root + QStringLiteral("/datas/shaders/")))
        return 1;

    const QStringList ids = readOrder(sourceDir + QStringLiteral("index.qmi"));
    if (ids.isEmpty())
        return 1;
    bool ok = true;
    // A source left out of the order would silently not ship.
    const QStringList sources = QDir(sourceDir).entryList({QStringLiteral("*.json")}, QDir::Files);
    for (const QString& name : sources) {
        if (!ids.contains(QFileInfo(name).completeBaseName().toUpper())) {
            fail(sourceDir + name, QStringLiteral("not listed in index.qmi"));
            ok = false;
        }
    }
    if (!QDir().mkpath(outputDir)) {
        fail(outputDir, QStringLiteral("cannot create the directory"));
        return 1;
    }

    QStringList index;
    for (const QString& id : ids) {
        MBrush brush;
        if (!readBrush(sourceDir, id, brush)) {
            ok = false;
            continue;
        }
        const QImage preview = MBrushPreview::render(brush, previewSize, Qt::darkGray, Qt::white);
        // Even the pixel brush's thumbnail is a line of some hundred pixels.
        const int painted = paintedPixels(preview);
        // A box painted all over is a failed read-back, not a stroke.
        if (painted < 100 || painted > previewSize.width() * previewSize.height() / 2) {
            fail(id, QStringLiteral("the thumbnail shows no stroke (%1 pixels painted)").arg(painted));
            ok = false;
            continue;
        }
        brush.setPreview(preview);
        const QString output = outputDir + id.toLower() + QStringLiteral(".qmb");
        MBrushStream stream(&brush);
        if (!stream.save(output)) {
            fail(output, QStringLiteral("cannot write the file"));
            ok = false;
            continue;
        }
        index << QStringLiteral("%1 # %2/%3").arg(id, brush.group(), brush.description());
        err() << "wrote " << output << " (" << painted << " pixels painted)" << Qt::endl;
    }
    // The order names what was written, so that the list never looks for a
    // file that a failure left out.
    if (!writeIndex(outputDir + QStringLiteral("index.qmi"), index))
        return 1;
    return ok ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    // The tool's lines go to the terminal, not to the program's log.
    MLogger::setFileEnabled(false);
    MApplication::prepareProcess();
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnbeck"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillmere"));
    // The developer's own effects and brushes must not leak into what ships.
    QStandardPaths::setTestModeEnabled(true);

    QString root = QStringLiteral(QUILLMERE_SOURCE_DIR);
    bool textures = false;
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    for (int i = 0; i < arguments.size(); ++i) {
        if (arguments.at(i) == QLatin1String("--root") && i + 1 < arguments.size()) {
            root = arguments.at(++i);
        } else if (arguments.at(i) == QLatin1String("--make-textures")) {
            textures = true;
        } else {
            err() << "usage: quillmere-makebrushes [--root <repository>] [--make-textures]" << Qt::endl;
            return 2;
        }
    }
    return run(QDir(root).absolutePath(), textures);
}
