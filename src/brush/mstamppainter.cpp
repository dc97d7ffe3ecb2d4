#include "brush/mstamppainter.h"

#include "app/mevent.h"
#include "app/mlogger.h"
#include "document/mcanvas.h"
#include "document/mlayer.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mtexture.h"
#include "effects/mvalues.h"
#include "gpu/mframebuffer.h"
#include "gpu/mshaderprogramlist.h"
#include "gpu/mshareddata.h"
#include "gpu/mtexturebinder.h"
#include "gpu/mvertexbuffer.h"

#include <QMatrix4x4>
#include <QOpenGLFramebufferObject>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <QVector2D>

#include <cmath>
#include <limits>

namespace {

const QString stampingProgram = QStringLiteral("stamping");

GLint flag(bool value)
{
    return value ? 1 : 0;
}

// The texture of the layer's tile at point, or the empty texture; makes no tile.
unsigned tileTextureAt(MTextureLayer* layer, const QPointF& point, unsigned emptyTexture)
{
    auto* tile = layer ? dynamic_cast<MTextureTile*>(layer->tileAt(point)) : nullptr;
    return tile && tile->isCreated() ? tile->textureId() : emptyTexture;
}

// A stroke along the selection's own outline turns the clip flag off.
bool clipsToSelection(const MCanvas* canvas)
{
    return canvas->hasSelection() && canvas->clipStroke();
}

// The composition mode that needs no read of the layer: the number of
// "foreground over" in the brush engines' header.
constexpr int foregroundOver = 0;

} // namespace

MStampPainter::MStampPainter(MSharedData* sharedData) : m_sharedData(sharedData) {}

int MStampPainter::truncated(double value)
{
    if (std::isnan(value))
        return 0;
    const double whole = std::trunc(value);
    if (whole <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    if (whole >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    return int(whole);
}

QColor MStampPainter::brushColor(const MBrush::SettingValues& values)
{
    return QColor::fromHsvF(qBound(0.0, values[MEnum::bsBrushColorHue], 1.0),
                            qBound(0.0, values[MEnum::bsBrushColorSaturation], 1.0),
                            qBound(0.0, values[MEnum::bsBrushColorValue], 1.0), 1.0);
}

QColor MStampPainter::borderColor(const MBrush::SettingValues& values)
{
    return QColor::fromHsvF(qBound(0.0, values[MEnum::bsBorderColorHue], 1.0),
                            qBound(0.0, values[MEnum::bsBorderColorSaturation], 1.0),
                            qBound(0.0, values[MEnum::bsBorderColorValue], 1.0), 1.0);
}

QRectF MStampPainter::addStamp(QVector<MVertex>& stamps, const QPointF& position, double radius, double ratio,
                               double angle, const QColor& color)
{
    const QRectF rect(position.x() - radius, position.y() - radius, 2 * radius, 2 * radius);

    QMatrix4x4 transform;
    transform.translate(float(position.x()), float(position.y()));
    transform.rotate(float(-angle), 0.f, 0.f, 1.f);
    transform.scale(1.f, float(ratio));
    transform.translate(float(-position.x()), float(-position.y()));

    auto corner = [&](const QPointF& point, float u, float v) {
        const QPointF mapped = transform.map(point);
        MVertex vertex;
        vertex.position[0] = float(mapped.x());
        vertex.position[1] = float(mapped.y());
        vertex.setColor(float(color.redF()), float(color.greenF()), float(color.blueF()),
                        float(color.alphaF()));
        vertex.textureCoordinates[0][0] = u;
        vertex.textureCoordinates[0][1] = v;
        return vertex;
    };
    const MVertex bottomLeft = corner(rect.bottomLeft(), 0.f, 1.f);
    const MVertex topLeft = corner(rect.topLeft(), 0.f, 0.f);
    const MVertex bottomRight = corner(rect.bottomRight(), 1.f, 1.f);
    const MVertex topRight = corner(rect.topRight(), 1.f, 0.f);
    stamps << bottomLeft << topLeft << bottomRight << topLeft << topRight << bottomRight;
    return stampBounds(position, radius);
}

QRectF MStampPainter::stampBounds(const QPointF& position, double radius)
{
    const double reach = radius * 1.42;
    return QRectF(position.x() - reach, position.y() - reach, 2 * reach, 2 * reach);
}

bool MStampPainter::drawStamps(const QSet<MTile*>& tiles, const QVector<MVertex>& stamps,
                               const MBrush::SettingValues& values, const QPointF& offset)
{
    const QString source = QStringLiteral("MStampPainter::drawStamps");
    if (!m_sharedData || !m_sharedData->isValid()) {
        MLogger::systemError(source, QStringLiteral("Shared data are not valid"));
        return false;
    }
    if (!m_sharedData->currentLayer()) {
        MLogger::systemError(source, QStringLiteral("No valid current layer"));
        return false;
    }
    if (!m_sharedData->canvas()->makeCurrent()) {
        MLogger::systemError(source, QStringLiteral("Unable to make current context"));
        return false;
    }
    initializeOpenGLFunctions();
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    bool drawn = false;
    for (MTile* tile : tiles) {
        auto* target = dynamic_cast<MTextureTile*>(tile);
        if (target && drawTile(target, stamps, values, offset))
            drawn = true;
    }
    QOpenGLFramebufferObject::bindDefault();
    glFlush();
    return drawn;
}

bool MStampPainter::drawTile(MTextureTile* target, const QVector<MVertex>& stamps,
                             const MBrush::SettingValues& values, const QPointF& offset)
{
    const QString source = QStringLiteral("MStampPainter::drawTile");
    if (!target->isCreated())
        return false;
    const QRect outer = target->outerRect();
    auto* layerTile =
        dynamic_cast<MTextureTile*>(m_sharedData->currentLayer()->addTile(QRectF(outer).center()));
    if (!layerTile || !layerTile->isCreated())
        return false;
    MFrameBuffer* frameBuffer = m_sharedData->frameBuffer();
    if (!frameBuffer->attachTexture(target->textureId(), 0)) {
        frameBuffer->release();
        return false;
    }
    // The four factors go in the order of the settings, which is not that of
    // the arguments' names: brush files hold values for this order.
    glBlendEquationSeparate(GLenum(truncated(values[MEnum::bsRgbBlendEquation])),
                            GLenum(truncated(values[MEnum::bsAlphaBlendEquation])));
    glBlendFuncSeparate(GLenum(truncated(values[MEnum::bsSourceRgbBlendMode])),
                        GLenum(truncated(values[MEnum::bsSourceAlphaBlendMode])),
                        GLenum(truncated(values[MEnum::bsDestinationRgbBlendMode])),
                        GLenum(truncated(values[MEnum::bsDestinationAlphaBlendMode])));
    glViewport(0, 0, outer.width(), outer.height());
    QMatrix4x4 projection;
    projection.ortho(0.f, float(outer.width()), 0.f, float(outer.height()), -1.f, 1.f);
    QMatrix4x4 view;
    view.translate(float(-outer.x()), float(-outer.y()));
    view.translate(float(offset.x()), float(offset.y()));

    MVertexBuffer* buffer = m_sharedData->stampBuffer();
    frameBuffer->bind();
    buffer->bind();
    buffer->clear();
    const QRectF layerRect(layerTile->outerRect());
    for (MVertex vertex : stamps) {
        vertex.textureCoordinates[1][0] = float((vertex.position[0] - layerRect.left()) / layerRect.width());
        vertex.textureCoordinates[1][1] = float((vertex.position[1] - layerRect.top()) / layerRect.height());
        buffer->append(vertex);
    }

    MBrush* brush = m_sharedData->brush();
    const QString engineId = brush->shaderId();
    MShader* engine = engineId.isEmpty() ? nullptr : MShaderList::instance()->shaderById(engineId);
    MShaderProgramList* programs = m_sharedData->programList();
    QOpenGLShaderProgram* program = programs->bindWithAttributes(
        engineId.isEmpty() ? stampingProgram : engineId, m_sharedData->vertexArray(), variantFlags(values));
    if (!program) {
        MLogger::systemError(source, QStringLiteral("Unable to find a shader program"));
        buffer->release();
        frameBuffer->detachTexture(0);
        frameBuffer->release();
        return false;
    }
    program->setUniformValue("mvp", projection * view);
    setUniforms(program, values, target);

    // Samplers, in the order brush engines are promised.
    MTextureBinder binder(this);
    const unsigned empty = m_sharedData->emptyTexture()->textureId();
    const QPointF centre = QRectF(outer).center();
    auto bindTile = [&](unsigned id, const char* name) {
        binder.bindTexture(id, program, name, GL_NEAREST_MIPMAP_NEAREST, GL_LINEAR, GL_CLAMP_TO_EDGE,
                           GL_CLAMP_TO_EDGE);
    };
    bindTile(layerTile->textureId(), "f_currentLayerTexture");
    if (MTextureLayer* under = m_sharedData->underLayer())
        bindTile(tileTextureAt(under, centre, empty), "f_underLayerTexture");
    QOpenGLTexture* brushTexture = m_sharedData->brushTexture();
    if (brushTexture && brushTexture->isCreated())
        binder.bindTexture(brushTexture->textureId(), program, "f_brushTexture", GL_LINEAR_MIPMAP_LINEAR,
                           GL_LINEAR, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE);
    QOpenGLTexture* colorTexture = m_sharedData->colorTexture(m_sharedData->colorTextureSize());
    if (colorTexture)
        bindTile(colorTexture->textureId(), "f_colorTexture");
    MCanvas* canvas = m_sharedData->canvas();
    if (clipsToSelection(canvas))
        bindTile(tileTextureAt(canvas->selectionLayer(), centre, empty), "f_selectionLayerTexture");
    if (engine && engine->parseParams() && m_sharedData->loadEngineTextures(engine)) {
        for (int i = 0; i < engine->textureCount(); ++i) {
            const MTexture* image = engine->texture(i);
            QOpenGLTexture* texture = m_sharedData->engineTexture(engine->id(), i);
            const int filter = MShader::glFilter(image->minFilter);
            if (texture)
                binder.bindTexture(texture->textureId(), program, image->name, filter, filter,
                                   MShader::glWrap(image->wrapS), MShader::glWrap(image->wrapT));
        }
    }

    glDrawArrays(GL_TRIANGLES, 0, buffer->count());

    programs->releaseAttributes(program, m_sharedData->vertexArray());
    program->release();
    buffer->release();
    frameBuffer->detachTexture(0);
    frameBuffer->release();
    binder.releaseTextures();
    if (colorTexture)
        colorTexture->release();
    layerTile->release();
    return true;
}

bool MStampPainter::hasBrushTexture() const
{
    const QOpenGLTexture* brushTexture = m_sharedData->brushTexture();
    return brushTexture && brushTexture->isCreated();
}

bool MStampPainter::inheritsAlphaUnder(const MBrush::SettingValues& values) const
{
    // A masked layer under the current one lends its alpha whatever the brush says.
    const MTextureLayer* under = m_sharedData->underLayer();
    return under && (values[MEnum::bsInheritAlphaUnder] != 0.0 || under->mask() != MLayer::NoMask);
}

int MStampPainter::variantFlags(const MBrush::SettingValues& values) const
{
    // Each flag stands for a uniform of setUniforms that switches a part of
    // the stamp off, tested as the program tests it.
    int flags = 0;
    if (!clipsToSelection(m_sharedData->canvas()))
        flags |= MShaderProgramList::NoSelectionClip;
    if (!hasBrushTexture())
        flags |= MShaderProgramList::NoBrushTexture;
    if (!inheritsAlphaUnder(values))
        flags |= MShaderProgramList::NoAlphaUnder;
    if (values[MEnum::bsUseBorderColor] == 0.0)
        flags |= MShaderProgramList::NoBorderColor;
    if (float(values[MEnum::bsColorAbsorbtionRate]) == 0.0f)
        flags |= MShaderProgramList::DryBrush;
    if (truncated(values[MEnum::bsCompositionMode]) == foregroundOver &&
        values[MEnum::bsInheritAlphaCurrent] == 0.0)
        flags |= MShaderProgramList::ForegroundOver;
    return flags;
}

void MStampPainter::setUniforms(QOpenGLShaderProgram* program, const MBrush::SettingValues& values,
                                MTextureTile* target) const
{
    program->setUniformValue("f_radius", float(values[MEnum::bsRadius]));
    program->setUniformValue("f_hardness", float(values[MEnum::bsHardness]));
    program->setUniformValue("f_density", float(values[MEnum::bsDensity]));
    program->setUniformValue("f_flow", float(values[MEnum::bsFlow]));
    program->setUniformValue("f_opacity", float(values[MEnum::bsOpacity]));
    program->setUniformValue("f_compositionMode", GLint(truncated(values[MEnum::bsCompositionMode])));
    program->setUniformValue("f_inheritAlphaCurrent", flag(values[MEnum::bsInheritAlphaCurrent] != 0.0));
    program->setUniformValue("f_inheritAlphaUnder", flag(inheritsAlphaUnder(values)));
    if (MTextureLayer* under = m_sharedData->underLayer())
        program->setUniformValue("f_alphaEquation", GLint(under->mask()));
    const bool hasTexture = hasBrushTexture();
    program->setUniformValue("f_hasTexture", flag(hasTexture));
    if (hasTexture)
        program->setUniformValue("f_preserveTextureColor",
                                 flag(values[MEnum::bsPreserveTextureColor] != 0.0));
    program->setUniformValue("f_colorAbsorbtionRate", float(values[MEnum::bsColorAbsorbtionRate]));
    program->setUniformValue("f_colorFlowingRate", float(values[MEnum::bsColorFlowingRate]));
    program->setUniformValue("f_antialiasing", GLint(truncated(values[MEnum::bsAntialiasing])));
    program->setUniformValue("f_shape", GLint(truncated(values[MEnum::bsShape])));
    program->setUniformValue("f_factor", float(values[MEnum::bsFactor]));
    program->setUniformValue("f_useBorderColor", flag(values[MEnum::bsUseBorderColor] != 0.0));
    program->setUniformValue("f_borderColor", borderColor(values));
    MCanvas* canvas = m_sharedData->canvas();
    program->setUniformValue("f_clipToSelection", flag(clipsToSelection(canvas)));
    program->setUniformValue("f_stampCount", GLint(m_sharedData->stampCount()));
    program->setUniformValue("f_random", float(MEvent::randomInput()));
    if (target) {
        program->setUniformValue("f_texturePos", QVector2D(QPointF(target->outerRect().topLeft())));
        program->setUniformValue("f_textureSize", float(target->tileSize()));
        program->setUniformValue("f_textureBorder", float(target->tileMargin()));
    }
    const QRectF painted = canvas->paintedRect();
    program->setUniformValue("f_paintedRectPos", QVector2D(painted.topLeft()));
    program->setUniformValue("f_paintedRectWidth", float(painted.width()));
    program->setUniformValue("f_paintedRectHeight", float(painted.height()));
    // The engine's own parameters come last, over anything of the same name.
    m_sharedData->brush()->shaderValues()->applyUniforms(program);
}
