#include "gpu/meffectrenderer.h"

#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "effects/mfield.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mcontextkeeper.h"
#include "gpu/mopengl.h"
#include "gpu/mshaderprogramlist.h"
#include "gpu/mshareddata.h"

#include <QColor>
#include <QLocale>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLShaderProgram>
#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>
#include <QSurface>

#include <cmath>
#include <memory>

namespace {

bool isEnum(const MField& field)
{
    return field.type == QVariant::Int && field.hasPickList();
}

QString typeName(const MField& field)
{
    switch (field.type) {
    case QVariant::Bool:
        return QStringLiteral("a boolean");
    case QVariant::Int:
        return isEnum(field) ? QStringLiteral("one of the listed values") : QStringLiteral("a whole number");
    case QVariant::Color:
        return QStringLiteral("a colour");
    default:
        return QStringLiteral("a number");
    }
}

QString number(double value)
{
    return QLocale::c().toString(value, 'g', 6);
}

// Within the declared range, or *error says which.
bool inRange(const MField& field, double value, QString* error)
{
    if (value >= field.minimum() && value <= field.maximum())
        return true;
    *error = QStringLiteral("%1 is out of the range %2 to %3")
                 .arg(number(value), number(field.minimum()), number(field.maximum()));
    return false;
}

QVariant enumValue(const MField& field, int value, QString* error)
{
    QStringList allowed;
    for (const MPickItem& item : field.pickList) {
        if (item.value.toInt() == value)
            return QVariant(value);
        allowed << QStringLiteral("%1 (%2)").arg(item.value.toInt()).arg(item.text);
    }
    *error = QStringLiteral("%1 is none of %2").arg(value).arg(allowed.join(QStringLiteral(", ")));
    return QVariant();
}

// The image in the layer's tiles, margins included, so that an effect that
// reads its neighbours sees across tile seams as it does in a document.
bool fillLayer(MTextureLayer* layer, const QImage& image)
{
    const int margin = layer->tileMargin();
    QSet<MTile*> tiles;
    layer->tilesInRect(QRectF(QRect(QPoint(), image.size()).adjusted(-margin, -margin, margin, margin)),
                       tiles);
    if (tiles.isEmpty())
        return false;
    for (MTile* tile : qAsConst(tiles)) {
        auto* textureTile = dynamic_cast<MTextureTile*>(tile);
        if (!textureTile || !textureTile->isCreated())
            return false;
        const QRect outer = tile->outerRect();
        QImage piece(outer.size(), QImage::Format_ARGB32_Premultiplied);
        if (piece.isNull())
            return false;
        piece.fill(Qt::transparent);
        QPainter painter(&piece);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(-outer.topLeft(), image);
        painter.end();
        if (!textureTile->setData(piece))
            return false;
    }
    return true;
}

} // namespace

QImage MEffectRenderer::fail(const QString& error)
{
    m_error = error;
    return QImage();
}

QImage MEffectRenderer::apply(const QString& effectId, const QImage& image,
                              const QHash<QByteArray, QVariant>& values)
{
    m_error.clear();
    if (image.isNull() || image.width() < 1 || image.height() < 1)
        return fail(QStringLiteral("the image is empty"));
    MShader* shader = MShaderList::instance()->shaderById(effectId);
    if (!shader)
        return fail(QStringLiteral("unknown effect: %1").arg(effectId.trimmed()));
    const QString id = shader->id();
    if (shader->type() == MShader::BrushShader)
        return fail(QStringLiteral("%1 is a brush engine, not an effect").arg(id));
    bool parsed = false;
    shader->fragmentSource(&parsed);
    if (!parsed)
        return fail(QStringLiteral("the effect %1 doesn't compile:\n%2").arg(id, shader->compileMessages()));

    QHash<QByteArray, QVariant> converted;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        const MField* field = shader->param(it.key());
        if (!field)
            return fail(
                QStringLiteral("the effect %1 has no parameter %2").arg(id, QString::fromLatin1(it.key())));
        QString why;
        const QVariant value = convertedValue(*field, it.value(), &why);
        if (!value.isValid())
            return fail(QStringLiteral("bad value for %1: %2").arg(QString::fromLatin1(it.key()), why));
        converted.insert(it.key(), value);
    }

    MContextKeeper keeper;
    MCanvas canvas;
    if (!canvas.isGlInitialized() || !canvas.makeCurrent())
        return fail(QStringLiteral("no OpenGL context could be made for the canvas"));
    const int maxSide = MOpenGL::instance()->maxTextureSize();
    if (maxSide > 0 && (image.width() > maxSide || image.height() > maxSide))
        return fail(QStringLiteral("the image is %1 x %2; the driver draws at most %3 pixels a side")
                        .arg(image.width())
                        .arg(image.height())
                        .arg(maxSide));
    MSharedData* data = canvas.sharedData();
    data->initializeGL();
    MShaderProgramList* programs = data->programList();
    if (!data->isValid() || !programs)
        return fail(QStringLiteral("the canvas's shader programs could not be made"));

    // Built now, on the list that will draw, so that a failure is reported
    // instead of being drawn as "basic".
    QOpenGLShaderProgram* program = programs->program(id);
    if (!program || !program->isLinked() || !shader->isValid()) {
        const QString log = program ? program->log().trimmed() : QString();
        return fail(QStringLiteral("the effect %1 doesn't compile with the graphics driver%2")
                        .arg(id, log.isEmpty() ? QString() : QStringLiteral(":\n") + log));
    }
    if (!canvas.makeCurrent())
        return fail(QStringLiteral("the canvas's OpenGL context could not be made current"));

    canvas.setPaperType(MEnum::Transparent);
    canvas.setPaintedRect(QRectF(0, 0, image.width(), image.height()));
    MTextureLayer* layer = canvas.at(0);
    if (!layer || !fillLayer(layer, image))
        return fail(QStringLiteral("the image could not be laid into the canvas"));
    layer->set_shaderId(id);
    layer->set_isShaderActive(true);
    if (layer->shaderId().compare(id, Qt::CaseInsensitive) != 0)
        return fail(QStringLiteral("the layer didn't take the effect %1").arg(id));
    for (auto it = converted.constBegin(); it != converted.constEnd(); ++it)
        layer->shaderValues()->setValue(it.key(), it.value());

    const QImage result =
        canvas.render(QStringLiteral("basic"), image.width(), image.height(), QPainterPath(), false, true);
    if (result.isNull())
        return fail(QStringLiteral("the canvas could not be drawn"));
    return result.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QVariant MEffectRenderer::valueFromText(const MField& field, const QString& rawText, QString* error)
{
    const QString text = rawText.trimmed();
    switch (field.type) {
    case QVariant::Bool: {
        const QString lower = text.toLower();
        if (lower == QLatin1String("true") || lower == QLatin1String("1"))
            return QVariant(true);
        if (lower == QLatin1String("false") || lower == QLatin1String("0"))
            return QVariant(false);
        *error = QStringLiteral("\"%1\" is not true, false, 1 or 0").arg(text);
        return QVariant();
    }
    case QVariant::Color: {
        static const QRegularExpression pattern(QStringLiteral("^#[0-9A-Fa-f]{6}$"));
        if (!pattern.match(text).hasMatch()) {
            *error = QStringLiteral("\"%1\" is not a colour of the form #rrggbb").arg(text);
            return QVariant();
        }
        return QVariant(QColor(text));
    }
    case QVariant::Int: {
        bool ok = false;
        const int value = text.toInt(&ok);
        if (!ok) {
            *error = QStringLiteral("\"%1\" is not a whole number").arg(text);
            return QVariant();
        }
        if (isEnum(field))
            return enumValue(field, value, error);
        return inRange(field, value, error) ? QVariant(value) : QVariant();
    }
    default: {
        bool ok = false;
        const double value = QLocale::c().toDouble(text, &ok);
        if (!ok || !std::isfinite(value)) {
            *error = QStringLiteral("\"%1\" is not a number").arg(text);
            return QVariant();
        }
        return inRange(field, value, error) ? QVariant(value) : QVariant();
    }
    }
}

QVariant MEffectRenderer::convertedValue(const MField& field, const QVariant& value, QString* error)
{
    const int type = int(value.type());
    if (type == QVariant::String)
        return valueFromText(field, value.toString(), error);
    const bool numeric = type == QVariant::Int || type == QVariant::UInt || type == QVariant::LongLong ||
                         type == QVariant::ULongLong || type == QVariant::Double || type == QMetaType::Float;
    switch (field.type) {
    case QVariant::Bool:
        if (type == QVariant::Bool)
            return value;
        if (numeric && (value.toDouble() == 0.0 || value.toDouble() == 1.0))
            return QVariant(value.toDouble() != 0.0);
        break;
    case QVariant::Color:
        if (type == QVariant::Color && value.value<QColor>().isValid())
            return value;
        break;
    case QVariant::Int:
        if (numeric && std::isfinite(value.toDouble()) && value.toDouble() == std::trunc(value.toDouble()) &&
            std::abs(value.toDouble()) <= 2147483647.0) {
            if (isEnum(field))
                return enumValue(field, value.toInt(), error);
            return QVariant(value.toInt());
        }
        break;
    default:
        if (numeric && std::isfinite(value.toDouble()))
            return QVariant(value.toDouble());
        break;
    }
    *error = QStringLiteral("a value of type %1 is not %2")
                 .arg(QString::fromLatin1(value.typeName()), typeName(field));
    if (!value.isValid())
        *error = QStringLiteral("no value given; %1 is needed").arg(typeName(field));
    return QVariant();
}

bool MEffectRenderer::compile(MShader* shader, QString* error)
{
    if (!shader) {
        *error = QStringLiteral("no effect");
        return false;
    }
    bool ok = false;
    const QString source = shader->fragmentSource(&ok);
    if (!ok) {
        *error = shader->compileMessages();
        return false;
    }
    MContextKeeper keeper;
    std::unique_ptr<QOpenGLContext> context(
        MOpenGL::createSharedContext(QOpenGLContext::globalShareContext()));
    std::unique_ptr<QOffscreenSurface> surface(context ? MOpenGL::createSurface(context.get()) : nullptr);
    if (!context || !surface || !context->makeCurrent(surface.get())) {
        *error = QStringLiteral("no OpenGL 3.3 core context could be made");
        return false;
    }
    bool linked = false;
    {
        QOpenGLShaderProgram program;
        linked = program.addShaderFromSourceFile(QOpenGLShader::Vertex,
                                                 QStringLiteral(":/shaders/basic_vert.glsl")) &&
                 program.addShaderFromSourceCode(QOpenGLShader::Fragment, source) && program.link();
        *error = linked ? QString() : program.log().trimmed();
    }
    context->doneCurrent();
    return linked;
}
