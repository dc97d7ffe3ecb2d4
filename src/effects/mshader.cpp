#include "effects/mshader.h"

#include "app/mpathvarlist.h"
#include "app/mutility.h"
#include "effects/mfield.h"
#include "effects/mtexture.h"
#include "effects/options/optionsresult.h"
#include "effects/params/paramsresult.h"

#include <QColor>
#include <QFile>
#include <QOpenGLContext>
#include <QRegularExpression>
#include <QUuid>

namespace {

const QString defaultSource = QStringLiteral("@main");

} // namespace

MShader::MShader(QObject* parent) : QObject(parent)
{
    clear();
}

MShader::~MShader() = default;

void MShader::clear()
{
    m_id = QUuid::createUuid().toString().toUpper();
    m_group.clear();
    m_description.clear();
    m_source = defaultSource;
    m_isValid = false;
    m_type = EffectShader;
    m_parsed = false;
    m_texturesChanged = true;
    m_preview = QImage();
    m_minFilter = GL_LINEAR_MIPMAP_LINEAR;
    m_magFilter = GL_LINEAR;
    m_wrapS = GL_CLAMP_TO_EDGE;
    m_wrapT = GL_CLAMP_TO_EDGE;
    clearParams();
    m_textures.clear();
    m_compileMessages.clear();
}

void MShader::assign(const MShader& other)
{
    m_group = other.m_group;
    m_description = other.m_description;
    m_source = other.m_source;
    m_isValid = other.m_isValid;
    m_type = other.m_type;
    m_parsed = other.m_parsed;
    m_texturesChanged = other.m_texturesChanged;
    m_minFilter = other.m_minFilter;
    m_magFilter = other.m_magFilter;
    m_wrapS = other.m_wrapS;
    m_wrapT = other.m_wrapT;
    m_preview = other.m_preview;
    clearParams();
    for (const auto& field : other.m_params) {
        m_params.push_back(std::make_unique<MField>(*field));
        m_paramsByName.insert(m_params.back()->name, m_params.back().get());
    }
    // Textures come back with the next parse of the source.
    m_textures.clear();
}

void MShader::clearParams()
{
    m_paramsByName.clear();
    m_params.clear();
}

MField* MShader::param(int index) const
{
    return index >= 0 && index < paramCount() ? m_params[size_t(index)].get() : nullptr;
}

MTexture* MShader::texture(int index) const
{
    return index >= 0 && index < textureCount() ? m_textures[size_t(index)].get() : nullptr;
}

QStringList MShader::section(const QString& name) const
{
    const QString wanted = name.trimmed().toLower();
    QStringList result;
    bool copying = false;
    const QStringList lines = m_source.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(QLatin1Char('@'))) {
            copying = trimmed.mid(1).toLower() == wanted;
            continue;
        }
        if (copying)
            result << trimmed;
    }
    return result;
}

int MShader::glFilter(int value)
{
    switch (value) {
    case 0:
        return GL_NEAREST;
    case 2:
        return GL_NEAREST_MIPMAP_NEAREST;
    case 3:
        return GL_NEAREST_MIPMAP_LINEAR;
    case 4:
        return GL_LINEAR_MIPMAP_NEAREST;
    case 5:
        return GL_LINEAR_MIPMAP_LINEAR;
    default:
        return GL_LINEAR;
    }
}

int MShader::glWrap(int value)
{
    switch (value) {
    case 0:
        return GL_REPEAT;
    case 1:
        return GL_MIRRORED_REPEAT;
    case 3:
        return 0x812D; // GL_CLAMP_TO_BORDER
    default:
        // Mirror-clamp-to-edge is not in the core profile: it clamps to edge.
        return GL_CLAMP_TO_EDGE;
    }
}

QStringList MShader::resourceLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    static const QRegularExpression include(QStringLiteral("^#include \"([a-z_]+\\.glsl)\"$"));
    QStringList lines;
    const QStringList fileLines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : fileLines) {
        const QRegularExpressionMatch match = include.match(line);
        if (!match.hasMatch()) {
            lines << line;
            continue;
        }
        // Our own resources only, one level deep: an included file includes nothing.
        QFile included(QStringLiteral(":/shaders/") + match.captured(1));
        if (!included.open(QIODevice::ReadOnly | QIODevice::Text))
            return {};
        for (const QString& text : QString::fromUtf8(included.readAll()).split(QLatin1Char('\n')))
            if (!text.startsWith(QLatin1String("#version")))
                lines << text;
    }
    return lines;
}

QString MShader::fragmentSource(bool* ok)
{
    if (!parseParams()) {
        if (ok)
            *ok = false;
        return QString();
    }
    const bool brush = m_type == BrushShader;
    QStringList lines;
    lines << resourceLines(brush ? QStringLiteral(":/shaders/std_brush_header_frag.glsl")
                                 : QStringLiteral(":/shaders/std_effect_header_frag.glsl"));
    lines << QString();
    for (const auto& field : m_params) {
        QString glslType = QStringLiteral("float");
        if (field->type == QVariant::Bool)
            glslType = QStringLiteral("bool");
        else if (field->type == QVariant::Int)
            glslType = QStringLiteral("int");
        else if (field->type == QVariant::Color)
            glslType = QStringLiteral("vec4");
        lines << QStringLiteral("uniform %1 %2;").arg(glslType, QString::fromLatin1(field->name));
    }
    for (const auto& texture : m_textures)
        lines << QStringLiteral("uniform sampler2D %1;").arg(QString::fromLatin1(texture->name));
    lines << section(QStringLiteral("functions"));
    lines << QString() << QStringLiteral("void main(void)") << QStringLiteral("{");
    const QStringList body = section(QStringLiteral("main"));
    if (body.isEmpty()) {
        lines << (brush ? QStringLiteral("\tf_color = v_color;")
                        : QStringLiteral(
                              "\tf_color = texture(f_currentLayerTexture, v_texCoords0.st) * f_opacity;"));
    } else {
        for (const QString& line : body)
            lines << QLatin1Char('\t') + line;
    }
    lines << QString();
    lines << resourceLines(brush ? QStringLiteral(":/shaders/std_brush_footer_frag.glsl")
                                 : QStringLiteral(":/shaders/std_effect_footer_frag.glsl"));
    lines << QString() << QStringLiteral("}");
    if (ok)
        *ok = true;
    return lines.join(QLatin1Char('\n'));
}

bool MShader::parseParams()
{
    if (m_parsed)
        return true;
    m_parsed = false;
    m_compileMessages.clear();

    params::Result declared = params::compile(section(QStringLiteral("params")).join(QLatin1Char('\n')));
    if (!declared.ok()) {
        m_compileMessages = tr("Errors during parameters compilation:") + QLatin1Char('\n') +
                            declared.errors.join(QLatin1Char('\n'));
        return false;
    }
    clearParams();
    m_params = std::move(declared.fields);
    for (const auto& field : m_params)
        m_paramsByName.insert(field->name, field.get());

    m_texturesChanged = false;
    m_textures.clear();
    QStringList warnings;
    for (auto& texture : declared.textures) {
        const QString path = MPathVarList::instance()->expand(texture->fileName);
        if (!QFile::exists(path))
            warnings << tr("Warning: texture file doesn't exits: ") + path;
        m_textures.push_back(std::move(texture));
        m_texturesChanged = true;
    }
    m_compileMessages = warnings.join(QLatin1Char('\n'));

    const options::Result sampling =
        options::compile(section(QStringLiteral("options")).join(QLatin1Char('\n')));
    if (!sampling.ok()) {
        m_compileMessages = tr("Errors during options compilation:") + QLatin1Char('\n') +
                            sampling.errors.join(QLatin1Char('\n'));
        return false;
    }
    set_minFilter(glFilter(sampling.minFilter));
    set_magFilter(glFilter(sampling.magFilter));
    set_wrapS(glWrap(sampling.wrapS));
    set_wrapT(glWrap(sampling.wrapT));
    m_parsed = true;
    return true;
}

QString MShader::fileName() const
{
    return MUtility::directory(MEnum::UserPath, MEnum::ShaderDir) +
           QStringLiteral("%1.%2").arg(m_id.toLower(), QStringLiteral("qsh"));
}

QImage MShader::preview() const
{
    if (!m_preview.isNull())
        return m_preview;
    static const QImage fallback(QStringLiteral(":/icons/effect-default.png"));
    return fallback;
}

void MShader::set_minFilter(int value)
{
    if (value == m_minFilter)
        return;
    m_minFilter = value;
    Q_EMIT minFilterChanged(value);
}

void MShader::set_magFilter(int value)
{
    if (value == m_magFilter)
        return;
    m_magFilter = value;
    Q_EMIT magFilterChanged(value);
}

void MShader::set_wrapS(int value)
{
    if (value == m_wrapS)
        return;
    m_wrapS = value;
    Q_EMIT wrapSChanged(value);
}

void MShader::set_wrapT(int value)
{
    if (value == m_wrapT)
        return;
    m_wrapT = value;
    Q_EMIT wrapTChanged(value);
}

void MShader::setId(const QString& id)
{
    if (id == m_id)
        return;
    m_id = id;
    Q_EMIT idChanged(id);
}

void MShader::setGroup(const QString& group)
{
    if (group == m_group)
        return;
    m_group = group;
    Q_EMIT groupChanged(group);
}

void MShader::setDescription(const QString& description)
{
    if (description == m_description)
        return;
    m_description = description;
    Q_EMIT descriptionChanged(description);
}

void MShader::setSource(const QString& source)
{
    if (source == m_source)
        return;
    m_source = source;
    m_parsed = false;
    setIsValid(false);
    Q_EMIT sourceChanged(source);
}

void MShader::setIsValid(bool valid)
{
    if (valid == m_isValid)
        return;
    m_isValid = valid;
    Q_EMIT isValidChanged(valid);
}

void MShader::setType(int type)
{
    if (type == m_type)
        return;
    m_type = type;
    Q_EMIT typeChanged(type);
}

void MShader::setPreview(const QImage& image)
{
    if (image == m_preview)
        return;
    m_preview = image;
    Q_EMIT previewChanged(image);
}
