#include "cli/mclieffectcheck.h"

#include "effects/mfield.h"
#include "effects/mshader.h"
#include "effects/mtexture.h"
#include "gpu/mopengl.h"

#include <QColor>
#include <QFile>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLShaderProgram>
#include <QTextStream>

#include <memory>

namespace {

QString typeName(const MField& field)
{
    switch (field.type) {
    case QVariant::Bool:
        return QStringLiteral("bool");
    case QVariant::Int:
        return field.enumName == "enum" ? QStringLiteral("enum") : QStringLiteral("int");
    case QVariant::Color:
        return QStringLiteral("color");
    default:
        return QStringLiteral("float");
    }
}

QString valueText(const QVariant& value)
{
    switch (int(value.type())) {
    case QVariant::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QVariant::Color: {
        const QColor color = value.value<QColor>();
        return QStringLiteral("rgb(%1, %2, %3, %4)")
            .arg(color.red())
            .arg(color.green())
            .arg(color.blue())
            .arg(color.alpha());
    }
    default:
        return value.toString();
    }
}

} // namespace

QString MCliEffectCheck::usage() const
{
    return QStringLiteral("effect check FILE [--brush] [--source] [--compile]");
}

QString MCliEffectCheck::summary() const
{
    return QStringLiteral(
        "Compiles the effect source in FILE and prints its parameters, textures, sampling options and "
        "messages; --brush reads it as a brush engine, --source prints the assembled fragment shader, "
        "--compile also compiles it with the graphics driver. Exit status 0 when clean, 1 with errors.");
}

bool MCliEffectCheck::needsGui(const QStringList& arguments) const
{
    return arguments.contains(QStringLiteral("--compile"));
}

QString MCliEffectCheck::glFilterName(int value)
{
    switch (value) {
    case GL_NEAREST:
        return QStringLiteral("GL_NEAREST");
    case GL_LINEAR:
        return QStringLiteral("GL_LINEAR");
    case GL_NEAREST_MIPMAP_NEAREST:
        return QStringLiteral("GL_NEAREST_MIPMAP_NEAREST");
    case GL_NEAREST_MIPMAP_LINEAR:
        return QStringLiteral("GL_NEAREST_MIPMAP_LINEAR");
    case GL_LINEAR_MIPMAP_NEAREST:
        return QStringLiteral("GL_LINEAR_MIPMAP_NEAREST");
    case GL_LINEAR_MIPMAP_LINEAR:
        return QStringLiteral("GL_LINEAR_MIPMAP_LINEAR");
    default:
        return QStringLiteral("0x%1").arg(value, 4, 16, QLatin1Char('0'));
    }
}

QString MCliEffectCheck::glWrapName(int value)
{
    switch (value) {
    case GL_REPEAT:
        return QStringLiteral("GL_REPEAT");
    case GL_MIRRORED_REPEAT:
        return QStringLiteral("GL_MIRRORED_REPEAT");
    case GL_CLAMP_TO_EDGE:
        return QStringLiteral("GL_CLAMP_TO_EDGE");
    case 0x812D:
        return QStringLiteral("GL_CLAMP_TO_BORDER");
    default:
        return QStringLiteral("0x%1").arg(value, 4, 16, QLatin1Char('0'));
    }
}

void MCliEffectCheck::printDeclarations(MShader& shader, QTextStream& out)
{
    out << "Parameters: " << shader.paramCount() << "\n";
    for (int i = 0; i < shader.paramCount(); ++i) {
        const MField* field = shader.param(i);
        out << "  " << field->name << "  " << typeName(*field) << "  default "
            << valueText(field->defaultValue);
        if (field->type == QVariant::Double || (field->type == QVariant::Int && !field->hasPickList()))
            out << "  range " << field->minimum() << " to " << field->maximum() << " step " << field->step;
        if (field->hasPickList()) {
            QStringList picks;
            for (const MPickItem& item : field->pickList)
                picks << QStringLiteral("%1 \"%2\"").arg(item.value.toString(), item.text);
            out << "  values " << picks.join(QStringLiteral(", "));
        }
        out << "  label \"" << field->label << "\"\n";
    }
    out << "Textures: " << shader.textureCount() << "\n";
    for (int i = 0; i < shader.textureCount(); ++i) {
        const MTexture* texture = shader.texture(i);
        out << "  " << texture->name << "  \"" << texture->fileName << "\"  min "
            << glFilterName(MShader::glFilter(texture->minFilter)) << "  mag "
            << glFilterName(MShader::glFilter(texture->magFilter)) << "  wrap s "
            << glWrapName(MShader::glWrap(texture->wrapS)) << "  wrap t "
            << glWrapName(MShader::glWrap(texture->wrapT)) << "\n";
    }
    out << "Options:\n"
        << "  min filter " << glFilterName(shader.minFilter()) << "\n"
        << "  mag filter " << glFilterName(shader.magFilter()) << "\n"
        << "  wrap s " << glWrapName(shader.wrapS()) << "\n"
        << "  wrap t " << glWrapName(shader.wrapT()) << "\n";
}

bool MCliEffectCheck::compileWithDriver(const QString& fragmentSource, QString* log)
{
    std::unique_ptr<QOpenGLContext> context(
        MOpenGL::createSharedContext(QOpenGLContext::globalShareContext()));
    std::unique_ptr<QOffscreenSurface> surface(context ? MOpenGL::createSurface(context.get()) : nullptr);
    if (!context || !surface || !context->makeCurrent(surface.get())) {
        *log = QStringLiteral("No OpenGL 3.3 core context could be made.");
        return false;
    }
    bool linked = false;
    {
        QOpenGLShaderProgram program;
        const bool vertex = program.addShaderFromSourceFile(QOpenGLShader::Vertex,
                                                            QStringLiteral(":/shaders/basic_vert.glsl"));
        const bool fragment = program.addShaderFromSourceCode(QOpenGLShader::Fragment, fragmentSource);
        linked = vertex && fragment && program.link();
        *log = program.log().trimmed();
    }
    context->doneCurrent();
    return linked;
}

int MCliEffectCheck::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    QString path;
    bool showSource = false;
    bool brush = false;
    bool compile = false;
    for (const QString& argument : arguments) {
        if (argument == QLatin1String("--source"))
            showSource = true;
        else if (argument == QLatin1String("--brush"))
            brush = true;
        else if (argument == QLatin1String("--compile"))
            compile = true;
        else if (path.isEmpty() && !argument.startsWith(QLatin1String("--")))
            path = argument;
        else {
            return usageFailure(err, QStringLiteral("unexpected argument: ") + argument);
        }
    }
    if (path.isEmpty()) {
        return usageFailure(err);
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        err << "quillmere-cli: cannot read " << path << ": " << file.errorString() << "\n";
        return 1;
    }
    MShader shader;
    shader.setType(brush ? MShader::BrushShader : MShader::EffectShader);
    shader.setSource(QString::fromUtf8(file.readAll()));

    bool ok = false;
    const QString source = shader.fragmentSource(&ok);
    printDeclarations(shader, out);
    out << "Messages:\n";
    if (!shader.compileMessages().isEmpty())
        out << shader.compileMessages() << "\n";
    if (ok && showSource)
        out << "Fragment source:\n" << source << "\n";
    if (!ok) {
        out.flush();
        return 1;
    }
    if (compile) {
        QString log;
        const bool linked = compileWithDriver(source, &log);
        out << "Driver: " << (linked ? "compiled and linked" : "failed") << "\n";
        if (!log.isEmpty())
            out << log << "\n";
        out.flush();
        return linked ? 0 : 1;
    }
    out.flush();
    return 0;
}
