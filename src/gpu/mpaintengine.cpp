#include "gpu/mpaintengine.h"

#include "app/mlogger.h"
#include "app/mpathvarlist.h"
#include "app/msettings.h"
#include "document/mcanvas.h"
#include "document/mquadtree.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mtexture.h"
#include "effects/mvalues.h"
#include "gpu/mframebuffer.h"
#include "gpu/mpaintparams.h"
#include "gpu/mshaderprogramlist.h"
#include "gpu/mshareddata.h"
#include "gpu/mtexturebinder.h"
#include "gpu/mtransform.h"
#include "gpu/mvertexbuffer.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <QOpenGLVertexArrayObject>

#include <cmath>
#include <new>

namespace {

constexpr int vertexCapacity = 30;
constexpr int workTextureSize = 512;
const QString contextFailure = QStringLiteral("Unable to make current context");

double devicePixelRatio()
{
    return QApplication::desktop() ? QApplication::desktop()->devicePixelRatioF() : 1.0;
}

// The cell of a point on a grid of inner edge `inner`: floor, so that
// negative coordinates fall in the cell to their left or above.
QPoint cellOf(const QPointF& point, int inner)
{
    return QPoint(int(std::floor(point.x() / inner)), int(std::floor(point.y() / inner)));
}

// Limits drawing to the pixels whose centres lie in the clip rectangle while
// it lives, and tells which cells can reach one of them: a cell that only
// meets the clip with its margin is visited but needs no draw. The previous
// scissor state comes back on destruction.
class ScissorGuard
{
public:
    ScissorGuard(QOpenGLFunctions* gl, const MPaintParams* params, double ratio)
        : m_gl(gl), m_params(params), m_ratio(ratio)
    {
        if (!params->clipToRect || !params->transform || params->clipRect.isEmpty())
            return;
        // Pixel centres sit at half-integers; a centre on the edge belongs to
        // the rectangle, give or take rounding.
        const QRectF box = windowBox(params->clipRect);
        const int x0 = int(std::ceil(box.left() - 0.5 - tolerance));
        const int x1 = int(std::floor(box.right() - 0.5 + tolerance)) + 1;
        const int y0 = int(std::ceil(box.top() - 0.5 - tolerance));
        const int y1 = int(std::floor(box.bottom() - 0.5 + tolerance)) + 1;
        QRect window(QPoint(x0, y0), QPoint(x1 - 1, y1 - 1));
        m_wasEnabled = gl->glIsEnabled(GL_SCISSOR_TEST);
        gl->glGetIntegerv(GL_SCISSOR_BOX, m_previous);
        if (m_wasEnabled)
            window &= QRect(m_previous[0], m_previous[1], m_previous[2], m_previous[3]);
        if (window.isEmpty())
            window = QRect(0, 0, 0, 0);
        gl->glEnable(GL_SCISSOR_TEST);
        gl->glScissor(window.x(), window.y(), window.width(), window.height());
        m_window = window;
        m_active = true;
    }
    ~ScissorGuard()
    {
        if (!m_active)
            return;
        m_gl->glScissor(m_previous[0], m_previous[1], m_previous[2], m_previous[3]);
        if (!m_wasEnabled)
            m_gl->glDisable(GL_SCISSOR_TEST);
    }
    ScissorGuard(const ScissorGuard&) = delete;
    ScissorGuard& operator=(const ScissorGuard&) = delete;

    // Whether a quad over this canvas rectangle can cover a pixel centre
    // inside the scissor; rounding counts in favour of drawing.
    bool reaches(const QRectF& canvasRect) const
    {
        if (!m_active)
            return true;
        if (m_window.isEmpty())
            return false;
        const QRectF quad = windowBox(canvasRect);
        return quad.left() - tolerance <= m_window.right() + 0.5 &&
               quad.right() + tolerance >= m_window.left() + 0.5 &&
               quad.top() - tolerance <= m_window.bottom() + 0.5 &&
               quad.bottom() + tolerance >= m_window.top() + 0.5;
    }

private:
    static constexpr double tolerance = 1e-3;

    // A canvas rectangle's bounding box in bottom-up window pixels.
    QRectF windowBox(const QRectF& canvasRect) const
    {
        const QRectF view = m_params->viewRect;
        const QRectF mapped = m_params->transform->mapRectToWidget(canvasRect);
        const double left = mapped.left() * m_ratio;
        const double right = mapped.right() * m_ratio;
        // The viewport starts at the view's corner, so its top edge is at
        // y + height in bottom-up pixels.
        const double bottom = (2 * view.y() + view.height() - mapped.top()) * m_ratio;
        const double top = (2 * view.y() + view.height() - mapped.bottom()) * m_ratio;
        return QRectF(QPointF(left, top), QPointF(right, bottom));
    }

    QOpenGLFunctions* m_gl;
    const MPaintParams* m_params;
    double m_ratio;
    bool m_active = false;
    GLboolean m_wasEnabled = GL_FALSE;
    GLint m_previous[4] = {0, 0, 0, 0};
    QRect m_window;
};

} // namespace

MPaintEngine::MPaintEngine(MCanvas* canvas) : QObject(canvas), m_canvas(canvas)
{
    m_clock.start();
}

MPaintEngine::~MPaintEngine() = default;

double MPaintEngine::globalTime()
{
    m_globalTime = double(m_clock.nsecsElapsed()) / 1e9;
    return m_globalTime;
}

bool MPaintEngine::makeCanvasCurrent(const QString& source)
{
    if (m_canvas->makeCurrent())
        return true;
    MLogger::systemError(source, contextFailure);
    return false;
}

bool MPaintEngine::initializeGL()
{
    if (m_initialized)
        return true;
    const QString source = QStringLiteral("MPaintEngine::initializeGL");
    if (!QOpenGLContext::currentContext()) {
        MLogger::systemError(source, QStringLiteral("Need a current context"));
        return false;
    }
    initializeOpenGLFunctions();
    m_vertexBuffer = std::make_unique<MVertexBuffer>(vertexCapacity);
    if (!m_vertexBuffer->create()) {
        MLogger::systemError(source, QStringLiteral("Can't create vertex buffer"));
        return false;
    }
    QOpenGLContext* saved = QOpenGLContext::currentContext();
    QSurface* savedSurface = saved->surface();
    if (!makeCanvasCurrent(QStringLiteral("MPaintEngine::createEmptyTexture")))
        return false;
    m_emptyTexture = MSharedData::createEmptyTexture(QStringLiteral("MPaintEngine::createEmptyTexture"));
    if (!m_emptyTexture) {
        MLogger::systemError(source, QStringLiteral("Can't create empty texture"));
        return false;
    }
    if (!createTransparentPaperTexture()) {
        MLogger::systemError(source, QStringLiteral("Can't create empty paper texture"));
        return false;
    }
    if (!createWorkTexture()) {
        MLogger::systemError(source, QStringLiteral("Can't create work texture"));
        return false;
    }
    saved->makeCurrent(savedSurface);
    m_initialized = true;
    return true;
}

bool MPaintEngine::createTransparentPaperTexture()
{
    QImage image(QStringLiteral(":/icons/alphaback.png"));
    if (image.isNull())
        return false;
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    m_transparentPaperTexture.reset(new (std::nothrow) QOpenGLTexture(image));
    if (!m_transparentPaperTexture || !m_transparentPaperTexture->isCreated())
        return false;
    m_transparentPaperTexture->setMinMagFilters(QOpenGLTexture::NearestMipMapNearest,
                                                QOpenGLTexture::NearestMipMapNearest);
    return true;
}

bool MPaintEngine::createWorkTexture()
{
    QImage image(workTextureSize, workTextureSize, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return false;
    image.fill(Qt::transparent);
    m_workTexture.reset(new (std::nothrow) QOpenGLTexture(QOpenGLTexture::Target2D));
    if (!m_workTexture || !m_workTexture->create())
        return false;
    m_workTexture->setFormat(QOpenGLTexture::RGBA8_UNorm);
    m_workTexture->setData(image);
    m_workTexture->setMinMagFilters(QOpenGLTexture::LinearMipMapLinear, QOpenGLTexture::LinearMipMapLinear);
    return m_workTexture->isCreated();
}

void MPaintEngine::createPaperTexture()
{
    const QImage paper = m_canvas->paperTile();
    if (m_paperTextureValid || paper.isNull())
        return;
    m_paperTexture.reset(new (std::nothrow) QOpenGLTexture(QOpenGLTexture::Target2D));
    if (!m_paperTexture || !m_paperTexture->create()) {
        m_paperTexture.reset();
        return;
    }
    m_paperTexture->setFormat(QOpenGLTexture::RGBA8_UNorm);
    m_paperTexture->setSize(paper.width(), paper.height());
    m_paperTexture->setMinificationFilter(QOpenGLTexture::LinearMipMapLinear);
    m_paperTexture->setMagnificationFilter(QOpenGLTexture::Linear);
    m_paperTexture->setData(paper);
    m_paperTextureValid = true;
}

void MPaintEngine::resetPaper()
{
    m_paperTextureValid = false;
}

void MPaintEngine::shutDown()
{
    if (m_vertexBuffer)
        m_vertexBuffer->destroy();
    m_vertexBuffer.reset();
    m_emptyTexture.reset();
    m_paperTexture.reset();
    m_transparentPaperTexture.reset();
    m_workTexture.reset();
    m_paperTextureValid = false;
    clearShaderTextures();
    m_initialized = false;
}

void MPaintEngine::viewMatrix(MPaintParams* params, QMatrix4x4& result)
{
    const double ratio = params->useDevicePixelRatio ? devicePixelRatio() : 1.0;
    const QRectF scaled(params->viewRect.topLeft() * ratio, params->viewRect.size() * ratio);
    glViewport(int(scaled.x()), int(scaled.y()), int(scaled.width()), int(scaled.height()));
    result.setToIdentity();
    result.ortho(scaled);
    if (params->transform) {
        QMatrix4x4 scaling;
        scaling.scale(float(ratio), float(ratio));
        result = result * scaling * params->transform->matrix4x4();
    }
}

unsigned MPaintEngine::tileTexture(MTextureLayer* layer, const QPointF& point)
{
    auto* tile = layer ? dynamic_cast<MTextureTile*>(layer->tileAt(point)) : nullptr;
    if (tile && tile->isCreated())
        return tile->textureId();
    return m_emptyTexture ? m_emptyTexture->textureId() : 0;
}

void MPaintEngine::drawQuad(MPaintParams* params, const QString& programName, const QMatrix4x4& matrix,
                            QOpenGLTexture* texture, bool smooth)
{
    // The painted-rectangle test is off for these quads, so it is left out.
    QOpenGLShaderProgram* program = params->programList->bindWithAttributes(
        programName, params->vertexArray, MShaderProgramList::InsidePaintedRect);
    if (!program) {
        MLogger::systemError(QStringLiteral("MPaintEngine::drawQuad"),
                             QStringLiteral("Unable to find a shader program"));
        return;
    }
    program->setUniformValue("mvp", matrix);
    program->setUniformValue("f_opacity", 1.0f);
    program->setUniformValue("f_clipToPaintedRect", false);
    MTextureBinder binder(this);
    if (texture) {
        binder.bindTexture(texture->textureId(), program, "f_paperTexture", GL_LINEAR_MIPMAP_LINEAR,
                           smooth ? GL_LINEAR : GL_NEAREST, GL_REPEAT, GL_REPEAT);
    }
    glDrawArrays(GL_TRIANGLES, 0, m_vertexBuffer->count());
    binder.releaseTextures();
    params->programList->releaseAttributes(program, params->vertexArray);
    program->release();
}

void MPaintEngine::drawView(MPaintParams* params, bool selectionEnabled, bool tiling)
{
    if (!params)
        return;
    drawFullPass(params, selectionEnabled);
    if (!tiling)
        return;
    MTransform* original = params->transform;
    const QRectF page =
        original ? original->mapRectToWidget(m_canvas->paintedRect()) : m_canvas->paintedRect();
    const QPointF shifts[4] = {
        {page.width(), 0}, {-page.width(), 0}, {0, page.height()}, {0, -page.height()}};
    for (const QPointF& shift : shifts) {
        MTransform shifted;
        if (original)
            shifted.copyFrom(*original);
        shifted.translate(shift);
        params->transform = &shifted;
        drawFullPass(params, selectionEnabled);
    }
    params->transform = original;
}

void MPaintEngine::drawFullPass(MPaintParams* params, bool selectionEnabled)
{
    drawPaper(params);
    drawLayers(params);
    if (selectionEnabled && m_canvas->selectionPath().isEmpty()) {
        params->layer = m_canvas->selectionLayer();
        params->underLayer = nullptr;
        params->opacity = 1.0;
        params->shaderName = QStringLiteral("selection");
        drawLayer(params);
    }
}

void MPaintEngine::drawPaper(MPaintParams* params)
{
    if (!initializeGL() || !params || !params->programList)
        return;
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    switch (m_canvas->paperType()) {
    case MEnum::Colored: {
        QMatrix4x4 matrix;
        viewMatrix(params, matrix);
        m_vertexBuffer->bind();
        m_vertexBuffer->clear();
        m_vertexBuffer->appendQuad(m_canvas->paintedRect(), QRectF(0, 0, 1, 1), m_canvas->paperColor(), 0);
        drawQuad(params, QStringLiteral("color"), matrix, nullptr, params->smoothPixels);
        m_vertexBuffer->release();
        break;
    }
    case MEnum::Paper:
        createPaperTexture();
        drawPaperTexture(params, m_paperTexture.get());
        break;
    case MEnum::Transparent:
        if (MSettings::instance()->showEmptyPaper())
            drawTransparentPaper(params);
        break;
    }
}

void MPaintEngine::drawPaperTexture(MPaintParams* params, QOpenGLTexture* texture)
{
    if (!texture || !texture->isCreated())
        return;
    const QRectF rect = m_canvas->paintedRect();
    const QRectF sets[2] = {QRectF(0, 0, rect.width() / texture->width(), rect.height() / texture->height()),
                            QRectF()};
    QMatrix4x4 matrix;
    viewMatrix(params, matrix);
    m_vertexBuffer->bind();
    m_vertexBuffer->clear();
    m_vertexBuffer->appendQuad(rect, Qt::white, sets, 2);
    drawQuad(params, QStringLiteral("paper"), matrix, texture, params->smoothPixels);
    m_vertexBuffer->release();
}

void MPaintEngine::drawTransparentPaper(MPaintParams* params)
{
    QOpenGLTexture* texture = m_transparentPaperTexture.get();
    if (!texture || !texture->isCreated())
        return;
    const QRectF rect = params->transform ? params->transform->mapRectToWidget(m_canvas->paintedRect())
                                          : m_canvas->paintedRect();
    const QRectF sets[2] = {QRectF(0, 0, rect.width() / texture->width(), rect.height() / texture->height()),
                            QRectF()};
    // The checker keeps its size on screen: no view transform in the matrix.
    MTransform* transform = params->transform;
    params->transform = nullptr;
    QMatrix4x4 matrix;
    viewMatrix(params, matrix);
    params->transform = transform;
    const double ratio = params->useDevicePixelRatio ? devicePixelRatio() : 1.0;
    matrix.scale(float(ratio), float(ratio));
    m_vertexBuffer->bind();
    m_vertexBuffer->clear();
    m_vertexBuffer->appendQuad(rect, Qt::white, sets, 2);
    drawQuad(params, QStringLiteral("paper"), matrix, texture, params->smoothPixels);
    m_vertexBuffer->release();
}

void MPaintEngine::drawWidgetRectangle(MPaintParams* params, const QRectF& rect, const QColor& color,
                                       double opacity)
{
    if (!initializeGL() || !params || !params->programList)
        return;
    MTransform* transform = params->transform;
    params->transform = nullptr;
    QMatrix4x4 matrix;
    viewMatrix(params, matrix);
    params->transform = transform;
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    m_vertexBuffer->bind();
    m_vertexBuffer->clear();
    m_vertexBuffer->appendQuad(rect, QRectF(0, 0, 1, 1), color, 0);
    QOpenGLShaderProgram* program = params->programList->bindWithAttributes(
        QStringLiteral("color"), params->vertexArray, MShaderProgramList::InsidePaintedRect);
    if (program) {
        program->setUniformValue("mvp", matrix);
        program->setUniformValue("f_opacity", float(opacity));
        program->setUniformValue("f_clipToPaintedRect", false);
        glDrawArrays(GL_TRIANGLES, 0, m_vertexBuffer->count());
        params->programList->releaseAttributes(program, params->vertexArray);
        program->release();
    }
    m_vertexBuffer->release();
}

void MPaintEngine::drawLayers(MPaintParams* params)
{
    if (!params || !m_canvas->isGlInitialized() || m_canvas->count() == 0)
        return;
    const int count = m_canvas->count();
    const int current = m_canvas->currentRow();
    int first = 0;
    int last = count - 1;
    auto programOf = [this, current](int row, MTextureLayer* layer) {
        if (row == current && m_canvas->strokeInProgress())
            return QStringLiteral("stroke");
        if (!layer->shaderId().isEmpty() && layer->isShaderActive())
            return layer->shaderId();
        return QStringLiteral("basic");
    };
    if (params->timeLineMode) {
        first = last = current;
        if (params->showPreviousFrame)
            last = current + 1;
        MTextureLayer* background = m_canvas->at(0);
        if (params->firstLayerAsBackground && background && background->visible()) {
            params->layer = background;
            params->opacity = background->opacity();
            params->underLayer = nullptr;
            params->shaderName = programOf(0, background);
            drawLayer(params);
        }
    }
    for (int row = first; row <= last && row < count; ++row) {
        MTextureLayer* layer = m_canvas->at(row);
        if (!layer || !layer->visible())
            continue;
        params->layer = layer;
        params->opacity =
            params->timeLineMode && params->showPreviousFrame && row == last ? 0.4 : layer->opacity();
        params->underLayer = row > 0 ? m_canvas->at(row - 1) : nullptr;
        params->shaderName = programOf(row, layer);
        drawLayer(params);
    }
}

void MPaintEngine::setEffectValues(QOpenGLShaderProgram* program, MShader* shader, MTextureLayer* layer)
{
    if (!shader || !layer || !layer->shaderValues())
        return;
    layer->shaderValues()->applyUniforms(program);
}

void MPaintEngine::drawLayer(MPaintParams* params)
{
    const QString source = QStringLiteral("MPaintEngine::drawLayer");
    if (!initializeGL())
        return;
    // The first missing piece is named in the log.
    const char* missing = !params                ? "No params"
                          : !params->context     ? "No context"
                          : !params->canvas      ? "No canvas"
                          : !params->programList ? "No shader program list"
                          : !params->layer       ? "No layer"
                                                 : nullptr;
    if (missing) {
        MLogger::systemError(source, QString::fromLatin1(missing));
        return;
    }
    if (QOpenGLContext::currentContext() != params->context &&
        !params->context->makeCurrent(params->context->surface())) {
        MLogger::systemError(source, contextFailure);
        return;
    }
    MTextureLayer* layer = params->layer;
    if (layer->type() != MLayer::OpenGLLayer)
        return;
    m_globalTime = globalTime();

    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    const bool paper = m_canvas->paperType() == MEnum::Paper;
    if (paper) {
        createPaperTexture();
        if (m_paperTexture)
            m_paperTexture->generateMipMaps();
    }
    MShader* shader = MShaderList::instance()->shaderById(params->shaderName);
    createShaderTextures(shader);

    m_vertexBuffer->bind();
    QOpenGLShaderProgram* program =
        params->programList->bindWithAttributes(params->shaderName, params->vertexArray);
    if (!program) {
        MLogger::systemError(source, QStringLiteral("Unable to find a shader program"));
        m_vertexBuffer->release();
        return;
    }
    int minFilter = GL_LINEAR_MIPMAP_LINEAR;
    int magFilter = params->smoothPixels ? GL_LINEAR : GL_NEAREST;
    int wrapS = GL_CLAMP_TO_EDGE;
    int wrapT = GL_CLAMP_TO_EDGE;
    if (shader) {
        minFilter = MShader::glFilter(shader->minFilter());
        magFilter = MShader::glFilter(shader->magFilter());
        wrapS = MShader::glWrap(shader->wrapS());
        wrapT = MShader::glWrap(shader->wrapT());
    }
    QMatrix4x4 matrix;
    viewMatrix(params, matrix);

    const QRectF painted = m_canvas->paintedRect();
    MTextureLayer* strokeLayer = m_canvas->strokeLayer();
    MTextureLayer* selectionLayer = m_canvas->selectionLayer();
    const bool hasEffect = !layer->shaderId().isEmpty() && layer->isShaderActive();
    const bool clipToSelection = params->clipToSelection || (m_canvas->hasSelection() && hasEffect);
    const int size = layer->tileSize();
    const int margin = layer->tileMargin();
    const int inner = size - 2 * margin;
    const float border = float(margin) / float(size);
    const QPoint firstCell = cellOf(painted.topLeft(), inner);
    const QPoint lastCell = cellOf(painted.bottomRight(), inner);
    const int left = firstCell.x() * inner;
    const int top = firstCell.y() * inner;
    const int right = lastCell.x() * inner + inner - 1;
    const int bottom = lastCell.y() * inner + inner - 1;
    const QRectF textureCoordinates(border, border, 1.0 - 2.0 * border, 1.0 - 2.0 * border);

    // The uniforms that are the same for every cell, set once on each program
    // the layer draws with: the plain one, and the variants that leave out a
    // clipping test that can't discard anything in a cell.
    QOpenGLShaderProgram* prepared[4] = {};
    int preparedCount = 0;
    const auto prepare = [&](QOpenGLShaderProgram* target) {
        for (int i = 0; i < preparedCount; ++i) {
            if (prepared[i] == target)
                return;
        }
        if (preparedCount < 4)
            prepared[preparedCount++] = target;
        if (shader)
            setEffectValues(target, shader, layer);
        target->setUniformValue("mvp", matrix);
        target->setUniformValue("f_opacity", float(params->opacity));
        target->setUniformValue("f_globalTime", float(m_globalTime));
        target->setUniformValue("f_textureSize", float(size));
        target->setUniformValue("f_textureBorder", float(margin));
        target->setUniformValue("f_paintedRectPos", painted.topLeft());
        target->setUniformValue("f_paintedRectWidth", float(painted.width()));
        target->setUniformValue("f_paintedRectHeight", float(painted.height()));
        target->setUniformValue("f_clipToPaintedRect", params->clipToRect);
        target->setUniformValue("f_eraserMode", strokeLayer->eraserMode());
        target->setUniformValue("f_strokeOpacity", float(strokeLayer->opacity()));
        target->setUniformValue("f_clipToSelection", clipToSelection);
    };
    prepare(program);
    const int layerFlags = clipToSelection ? 0 : MShaderProgramList::NoSelectionClip;
    int boundFlags = 0;
    const ScissorGuard scissor(this, params, params->useDevicePixelRatio ? devicePixelRatio() : 1.0);

    for (int x = left; x <= right + inner; x += inner) {
        for (int y = top; y <= bottom + inner; y += inner) {
            const QRect cellRect(x, y, inner, inner);
            const QRect outer = cellRect.adjusted(-margin, -margin, margin, margin);
            if (params->clipToRect && !params->clipRect.intersects(outer))
                continue;
            if (!scissor.reaches(cellRect))
                continue;
            const QPointF centre = QRectF(cellRect).center();
            // A cell within the painted rectangle, edges included, has no
            // fragment that the painted-rectangle test would discard.
            const QRectF drawn(cellRect);
            const bool inside =
                !params->clipToRect || (drawn.left() >= painted.left() && drawn.right() <= painted.right() &&
                                        drawn.top() >= painted.top() && drawn.bottom() <= painted.bottom());
            const int flags = layerFlags | (inside ? MShaderProgramList::InsidePaintedRect : 0);
            if (flags != boundFlags) {
                QOpenGLShaderProgram* cellProgram =
                    params->programList->bindWithAttributes(params->shaderName, params->vertexArray, flags);
                if (!cellProgram)
                    continue;
                boundFlags = flags;
                program = cellProgram;
                prepare(program);
            }
            program->setUniformValue("f_texturePos", QPointF(outer.topLeft()));

            m_vertexBuffer->clear();
            m_vertexBuffer->appendQuad(drawn, textureCoordinates, Qt::white, 0);

            MTextureBinder binder(this);
            const unsigned underTexture = tileTexture(params->underLayer, centre);
            binder.bindTexture(tileTexture(layer, centre), program, "f_currentLayerTexture", minFilter,
                               magFilter, wrapS, wrapT);
            binder.bindTexture(underTexture, program, "f_underLayerTexture", minFilter, magFilter, wrapS,
                               wrapT);
            // Effects see the paper only when they run on a tile; in a view
            // this sampler deliberately shows the layer below.
            if (paper)
                binder.bindTexture(underTexture, program, "f_paperTexture", minFilter, magFilter, wrapS,
                                   wrapT);
            binder.bindTexture(tileTexture(strokeLayer, centre), program, "f_strokeLayerTexture", minFilter,
                               magFilter, wrapS, wrapT);
            binder.bindTexture(tileTexture(selectionLayer, centre), program, "f_selectionLayerTexture",
                               GL_LINEAR_MIPMAP_LINEAR, params->smoothPixels ? GL_LINEAR : GL_NEAREST,
                               GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE);
            if (shader) {
                for (int i = 0; i < shader->textureCount(); ++i) {
                    const MTexture* image = shader->texture(i);
                    const int filter = MShader::glFilter(image->minFilter);
                    binder.bindTexture(image->textureHandle, program, image->name, filter,
                                       params->smoothPixels ? GL_LINEAR : filter,
                                       MShader::glWrap(image->wrapS), MShader::glWrap(image->wrapT));
                }
            }
            glDrawArrays(GL_TRIANGLES, 0, m_vertexBuffer->count());
            binder.releaseTextures();
        }
    }
    // Attribute locations are the linker's choice, so each program used
    // releases its own.
    for (int i = 0; i < preparedCount; ++i)
        params->programList->releaseAttributes(prepared[i], nullptr);
    params->programList->releaseAttributes(nullptr, params->vertexArray);
    program->release();
    m_vertexBuffer->release();
}

void MPaintEngine::createShaderTextures(MShader* shader)
{
    if (!shader || !shader->texturesChanged())
        return;
    // The images are made on the canvas's context, but a view draws on its
    // own: that one must be current again for the rest of its draw.
    QOpenGLContext* saved = QOpenGLContext::currentContext();
    QSurface* savedSurface = saved ? saved->surface() : nullptr;
    makeCanvasCurrent(QStringLiteral("MPaintEngine::createShaderTextures"));
    shader->setTexturesChanged(false);
    clearShaderTextures();
    for (int i = 0; i < shader->textureCount(); ++i) {
        MTexture* image = shader->texture(i);
        const QString fileName = MPathVarList::instance()->expand(image->fileName);
        QOpenGLTexture* texture = MSharedData::createTexture(QImage(fileName));
        if (!texture) {
            MLogger::systemError(QStringLiteral("MPaintEngine::createShaderTextures"),
                                 QStringLiteral("Error during texture creation") + fileName);
            continue;
        }
        image->textureHandle = texture->textureId();
        image->loaded = true;
        m_shaderTextures.append(texture);
    }
    if (saved && savedSurface && QOpenGLContext::currentContext() != saved)
        saved->makeCurrent(savedSurface);
}

void MPaintEngine::clearShaderTextures()
{
    if (m_shaderTextures.isEmpty())
        return;
    m_canvas->makeCurrent();
    for (QOpenGLTexture* texture : qAsConst(m_shaderTextures)) {
        texture->release();
        texture->destroy();
    }
    qDeleteAll(m_shaderTextures);
    m_shaderTextures.clear();
}

unsigned MPaintEngine::selectionTexture(const QPointF& centre, bool* active)
{
    *active = m_canvas->hasSelection();
    if (*active) {
        auto* tile = dynamic_cast<MTextureTile*>(m_canvas->selectionLayer()->tileAt(centre));
        if (tile && tile->isCreated())
            return tile->textureId();
    }
    return m_emptyTexture->textureId();
}

bool MPaintEngine::beginTilePass(unsigned outputTextureId, const QSize& size, int sourceFactor,
                                 int destinationFactor, QMatrix4x4* matrix)
{
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_SCISSOR_TEST);
    glEnable(GL_BLEND);
    glBlendEquation(GL_FUNC_ADD);
    glBlendFunc(GLenum(sourceFactor), GLenum(destinationFactor));
    glViewport(0, 0, size.width(), size.height());
    matrix->setToIdentity();
    matrix->ortho(0, float(size.width()), 0, float(size.height()), -1, 1);
    glActiveTexture(GL_TEXTURE0);
    MFrameBuffer* frameBuffer = m_canvas->sharedData()->frameBuffer();
    if (!frameBuffer || !frameBuffer->attachTexture(outputTextureId, 0)) {
        if (frameBuffer)
            frameBuffer->release();
        return false;
    }
    frameBuffer->bind();
    m_vertexBuffer->bind();
    m_vertexBuffer->clear();
    m_vertexBuffer->appendQuad(QRectF(0, 0, size.width(), size.height()), QRectF(0, 0, 1, 1), Qt::white, 0);
    return true;
}

void MPaintEngine::endTilePass()
{
    m_vertexBuffer->release();
    MFrameBuffer* frameBuffer = m_canvas->sharedData()->frameBuffer();
    frameBuffer->detachTexture(0);
    frameBuffer->release();
}

void MPaintEngine::blitTexture(MTextureTile* target, unsigned sourceTextureId, int sourceFactor,
                               int destinationFactor, MShaderProgramList* programs,
                               const QString& programName, double opacity, QOpenGLVertexArrayObject* vao)
{
    const QString source = QStringLiteral("MPaintEngine::blitTexture");
    if (!m_initialized)
        return;
    if (!target) {
        MLogger::systemError(source, QStringLiteral("try to blit on a null destination tile"));
        return;
    }
    if (!makeCanvasCurrent(source) || !target->isCreated())
        return;
    QMatrix4x4 matrix;
    if (!beginTilePass(target->textureId(), target->outerRect().size(), sourceFactor, destinationFactor,
                       &matrix))
        return;
    bool selectionActive = false;
    const unsigned selection = selectionTexture(QRectF(target->outerRect()).center(), &selectionActive);
    QOpenGLShaderProgram* program = programs->bindWithAttributes(programName, vao);
    if (program) {
        MTextureBinder binder(this);
        binder.bindTexture(sourceTextureId, program, "f_currentLayerTexture", GL_NEAREST, GL_NEAREST,
                           GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE);
        binder.bindTexture(selection, program, "f_selectionLayerTexture", GL_NEAREST, GL_NEAREST,
                           GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE);
        program->setUniformValue("mvp", matrix);
        program->setUniformValue("f_opacity", float(opacity));
        program->setUniformValue("f_clipToPaintedRect", false);
        program->setUniformValue("f_clipToSelection", selectionActive);
        glDrawArrays(GL_TRIANGLES, 0, m_vertexBuffer->count());
        programs->releaseAttributes(program, vao);
        program->release();
        binder.releaseTextures();
    } else {
        MLogger::systemError(source, QStringLiteral("Unable to find a shader program"));
    }
    endTilePass();
    // Every blit refreshes the target's mipmaps, whatever the setting that
    // governs them elsewhere.
    target->texture()->bind();
    target->texture()->generateMipMaps();
    target->texture()->release();
    QOpenGLFramebufferObject::bindDefault();
    glFlush();
}

void MPaintEngine::blitTile(MTextureTile* target, MTextureTile* sourceTile, int sourceFactor,
                            int destinationFactor, MShaderProgramList* programs, const QString& programName,
                            double opacity, QOpenGLVertexArrayObject* vao)
{
    if (!m_initialized)
        return;
    unsigned sourceId = m_emptyTexture->textureId();
    if (sourceTile && sourceTile->isCreated())
        sourceId = sourceTile->textureId();
    blitTexture(target, sourceId, sourceFactor, destinationFactor, programs, programName, opacity, vao);
}

void MPaintEngine::drawTileOnTexture(MTextureTile* tile, int layerIndex, QOpenGLTexture* output,
                                     int sourceFactor, int destinationFactor, MShaderProgramList* programs,
                                     const QString& programName, double opacity, double strokeOpacity,
                                     QOpenGLVertexArrayObject* vao)
{
    const QString source = QStringLiteral("MPaintEngine::drawTileOnTexture");
    if (!m_initialized)
        return;
    if (!tile || !output) {
        MLogger::systemError(source, QStringLiteral("try to blit on a null destination tile"));
        return;
    }
    if (!output->isCreated()) {
        MLogger::systemError(source, QStringLiteral("output texture is not created"));
        return;
    }
    if (!makeCanvasCurrent(source))
        return;
    MTextureLayer* layer = m_canvas->at(layerIndex);
    if (!layer) {
        MLogger::systemError(source, QStringLiteral("no current layer"));
        return;
    }
    MTextureLayer* under = m_canvas->at(layerIndex - 1);
    if (!tile->isCreated())
        return;
    const QRect outer = tile->outerRect();
    QMatrix4x4 matrix;
    if (!beginTilePass(output->textureId(), outer.size(), sourceFactor, destinationFactor, &matrix))
        return;
    MShader* shader = MShaderList::instance()->shaderById(programName);
    createShaderTextures(shader);
    QOpenGLShaderProgram* program = programs->bindWithAttributes(programName, vao);
    if (!program) {
        MLogger::systemError(source, QStringLiteral("Unable to find a shader program"));
        endTilePass();
        return;
    }
    setEffectValues(program, shader, layer);
    program->setUniformValue("mvp", matrix);
    program->setUniformValue("f_clipToPaintedRect", false);
    program->setUniformValue("f_globalTime", float(globalTime()));
    program->setUniformValue("f_textureSize", float(tile->tileSize()));
    program->setUniformValue("f_textureBorder", float(tile->tileMargin()));
    program->setUniformValue("f_paintedRectWidth", float(outer.width()));
    program->setUniformValue("f_paintedRectHeight", float(outer.height()));
    program->setUniformValue("f_opacity", float(opacity));
    program->setUniformValue("f_eraserMode", m_canvas->strokeLayer()->eraserMode());
    program->setUniformValue("f_strokeOpacity", float(strokeOpacity));
    const bool hasEffect = !layer->shaderId().isEmpty() && layer->isShaderActive();
    program->setUniformValue("f_clipToSelection", m_canvas->hasSelection() && hasEffect);

    const QPointF centre = QRectF(outer).center();
    MTextureBinder binder(this);
    const auto bind = [&](unsigned id, const char* name) {
        binder.bindTexture(id, program, name, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, GL_CLAMP_TO_EDGE,
                           GL_CLAMP_TO_EDGE);
    };
    bind(tile->textureId(), "f_currentLayerTexture");
    bind(tileTexture(under, centre), "f_underLayerTexture");
    if (m_canvas->paperType() == MEnum::Paper) {
        createPaperTexture();
        if (m_paperTexture)
            bind(m_paperTexture->textureId(), "f_paperTexture");
    }
    bind(tileTexture(m_canvas->strokeLayer(), centre), "f_strokeLayerTexture");
    bind(tileTexture(m_canvas->selectionLayer(), centre), "f_selectionLayerTexture");
    if (shader) {
        for (int i = 0; i < shader->textureCount(); ++i) {
            const MTexture* image = shader->texture(i);
            binder.bindTexture(image->textureHandle, program, image->name,
                               MShader::glFilter(image->minFilter), GL_LINEAR, MShader::glWrap(image->wrapS),
                               MShader::glWrap(image->wrapT));
        }
    }
    glDrawArrays(GL_TRIANGLES, 0, m_vertexBuffer->count());
    programs->releaseAttributes(program, vao);
    program->release();
    endTilePass();
    binder.releaseTextures();
}

void MPaintEngine::drawTile(MTextureTile* tile, int layerIndex, int sourceFactor, int destinationFactor,
                            MShaderProgramList* programs, const QString& programName, double opacity,
                            double strokeOpacity, QOpenGLVertexArrayObject* vao)
{
    if (!m_initialized)
        return;
    drawTileOnTexture(tile, layerIndex, m_workTexture.get(), sourceFactor, destinationFactor, programs,
                      programName, opacity, strokeOpacity, vao);
    blitTexture(tile, m_workTexture->textureId(), GL_ONE, GL_ZERO, programs, QStringLiteral("basic"), 1.0,
                vao);
}

void MPaintEngine::fillTile(MTextureTile* target, MTextureTile* selectionTile, const QColor& color,
                            MShaderProgramList* programs, const QString& programName, bool clipToSelection,
                            QOpenGLVertexArrayObject* vao)
{
    const QString source = QStringLiteral("MPaintEngine::fillTile");
    if (!m_initialized)
        return;
    if (!target) {
        MLogger::systemError(source, QStringLiteral("try to blit on a null destination tile"));
        return;
    }
    if (!makeCanvasCurrent(source) || !target->isCreated())
        return;
    QMatrix4x4 matrix;
    if (!beginTilePass(m_workTexture->textureId(), target->outerRect().size(), GL_ONE, GL_ZERO, &matrix))
        return;
    QOpenGLShaderProgram* program = programs->bindWithAttributes(programName, vao);
    if (program) {
        unsigned selection = m_emptyTexture->textureId();
        if (clipToSelection && selectionTile && selectionTile->isCreated())
            selection = selectionTile->textureId();
        MTextureBinder binder(this);
        binder.bindTexture(target->textureId(), program, "f_currentLayerTexture", GL_NEAREST, GL_NEAREST,
                           GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE);
        binder.bindTexture(selection, program, "f_selectionLayerTexture", GL_NEAREST, GL_NEAREST,
                           GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE);
        program->setUniformValue("mvp", matrix);
        program->setUniformValue("f_fillColor", color);
        program->setUniformValue("f_clipToSelection", clipToSelection);
        glDrawArrays(GL_TRIANGLES, 0, m_vertexBuffer->count());
        programs->releaseAttributes(program, vao);
        program->release();
        binder.releaseTextures();
    } else {
        MLogger::systemError(source, QStringLiteral("Unable to find a shader program"));
    }
    endTilePass();
    blitTexture(target, m_workTexture->textureId(), GL_ONE, GL_ZERO, programs, QStringLiteral("basic"), 1.0,
                vao);
}
