// Composing a view through the paint engine (canvas, paper, layers, effects)
// against a bare reference that draws the same tile textures as textured
// quads with a shader of its own, in the same run and the same target. Run on
// demand; it prints frames per second and the ratio, and asserts nothing.

#include "app/mapplication.h"
#include "document/mcanvas.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mopengl.h"
#include "gpu/mpaintengine.h"
#include "gpu/mpaintparams.h"
#include "gpu/mshareddata.h"
#include "gpu/mtransform.h"

#include <QElapsedTimer>
#include <QOffscreenSurface>
#include <QOpenGLBuffer>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QStandardPaths>

#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr int columns = 4;
constexpr int rows = 3;
constexpr int layerCount = 10;
constexpr int targetWidth = 1920;
constexpr int targetHeight = 1080;
constexpr double goal = 0.8;
// Each side of a case is timed in rounds of about this many seconds, the two
// sides taking turns, and the best round of each counts: on a shared machine
// the best round is the one least disturbed.
constexpr double secondsPerRound = 0.3;
constexpr int rounds = 3;
const QColor background(64, 64, 64);
const QColor paper(245, 240, 230);

const char* vertexSource = R"(#version 330 core
layout(location = 0) in vec2 position;
layout(location = 1) in vec2 coordinates;
uniform mat4 mvp;
out vec2 texCoords;
void main()
{
    texCoords = coordinates;
    gl_Position = mvp * vec4(position, 0.0, 1.0);
})";

const char* tileSource = R"(#version 330 core
in vec2 texCoords;
uniform sampler2D tile;
uniform float opacity;
out vec4 color;
void main()
{
    color = texture(tile, texCoords) * opacity;
})";

// What the benchmark's effect does, written bare.
const char* swapSource = R"(#version 330 core
in vec2 texCoords;
uniform sampler2D tile;
uniform float opacity;
out vec4 color;
void main()
{
    vec4 c = texture(tile, texCoords);
    color = vec4(c.b, c.g, c.r, c.a) * opacity;
})";

const char* paperSource = R"(#version 330 core
uniform vec4 paperColor;
out vec4 color;
void main()
{
    color = paperColor;
})";

// A trivial effect: red and blue swapped.
const char* effectSource = "@main\n"
                           "vec4 c = texture(f_currentLayerTexture, v_texCoords0);\n"
                           "f_color = vec4(c.b, c.g, c.r, c.a) * f_opacity;";

std::unique_ptr<QOpenGLShaderProgram> program(const char* fragment)
{
    auto result = std::make_unique<QOpenGLShaderProgram>();
    if (!result->addShaderFromSourceCode(QOpenGLShader::Vertex, vertexSource) ||
        !result->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment) || !result->link()) {
        std::printf("Reference program: %s\n", qPrintable(result->log()));
        return nullptr;
    }
    return result;
}

// The tiles of the canvas drawn without the engine: one static buffer of
// quads (one per tile, then the page), the tile textures, a draw per tile.
class Reference
{
public:
    bool create(MCanvas* canvas)
    {
        m_tile = program(tileSource);
        m_swap = program(swapSource);
        m_paper = program(paperSource);
        if (!m_tile || !m_swap || !m_paper || !m_vertexArray.create() || !m_buffer.create())
            return false;
        MTextureLayer* first = canvas->at(0);
        const double border = double(first->tileMargin()) / first->tileSize();
        const int inner = first->innerSize();
        std::vector<float> vertices;
        const auto quad = [&vertices](const QRectF& r, double s0, double t0, double s1, double t1) {
            const float corners[6][4] = {
                {float(r.left()), float(r.top()), float(s0), float(t0)},
                {float(r.right()), float(r.top()), float(s1), float(t0)},
                {float(r.right()), float(r.bottom()), float(s1), float(t1)},
                {float(r.left()), float(r.top()), float(s0), float(t0)},
                {float(r.right()), float(r.bottom()), float(s1), float(t1)},
                {float(r.left()), float(r.bottom()), float(s0), float(t1)},
            };
            for (const auto& corner : corners)
                vertices.insert(vertices.end(), corner, corner + 4);
        };
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column)
                quad(QRectF(column * inner, row * inner, inner, inner), border, border, 1.0 - border,
                     1.0 - border);
        }
        quad(canvas->paintedRect(), 0, 0, 1, 1);
        m_vertexArray.bind();
        m_buffer.bind();
        m_buffer.allocate(vertices.data(), int(vertices.size() * sizeof(float)));
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glEnableVertexAttribArray(0);
        gl->glEnableVertexAttribArray(1);
        gl->glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 4 * sizeof(float), nullptr);
        gl->glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 4 * sizeof(float),
                                  reinterpret_cast<void*>(2 * sizeof(float)));
        m_vertexArray.release();
        m_buffer.release();
        // The textures, tile by tile in the order of the quads.
        for (int layer = 0; layer < canvas->count(); ++layer) {
            std::vector<unsigned> ids;
            for (int row = 0; row < rows; ++row) {
                for (int column = 0; column < columns; ++column) {
                    auto* tile = dynamic_cast<MTextureTile*>(canvas->at(layer)->tileAt(
                        QPointF(column * inner + inner / 2.0, row * inner + inner / 2.0)));
                    ids.push_back(tile ? tile->textureId() : 0);
                }
            }
            m_textures.push_back(ids);
        }
        return true;
    }

    // Paper, then `layers` layers over the tiles in `tiles` (indices into
    // row-major order; all of them when empty).
    void draw(const QMatrix4x4& mvp, int layers, bool swap, bool withPaper, const std::vector<int>& tiles)
    {
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glViewport(0, 0, targetWidth, targetHeight);
        gl->glEnable(GL_BLEND);
        gl->glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        m_vertexArray.bind();
        if (withPaper) {
            m_paper->bind();
            m_paper->setUniformValue("mvp", mvp);
            m_paper->setUniformValue("paperColor", paper);
            gl->glDrawArrays(GL_TRIANGLES, columns * rows * 6, 6);
        }
        QOpenGLShaderProgram* tileProgram = swap ? m_swap.get() : m_tile.get();
        tileProgram->bind();
        tileProgram->setUniformValue("mvp", mvp);
        tileProgram->setUniformValue("tile", 0);
        gl->glActiveTexture(GL_TEXTURE0);
        for (int layer = 0; layer < layers; ++layer) {
            tileProgram->setUniformValue("opacity", float(opacityOf(layer)));
            const auto drawTile = [&](int index) {
                gl->glBindTexture(GL_TEXTURE_2D, m_textures[size_t(layer)][size_t(index)]);
                gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
                gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
                gl->glDrawArrays(GL_TRIANGLES, index * 6, 6);
            };
            if (tiles.empty()) {
                for (int index = 0; index < columns * rows; ++index)
                    drawTile(index);
            } else {
                for (int index : tiles)
                    drawTile(index);
            }
        }
        gl->glBindTexture(GL_TEXTURE_2D, 0);
        tileProgram->release();
        m_vertexArray.release();
    }

    void destroy()
    {
        m_vertexArray.destroy();
        m_buffer.destroy();
        m_tile.reset();
        m_swap.reset();
        m_paper.reset();
    }

    static double opacityOf(int layer) { return 0.95 - 0.05 * (layer % 4); }

private:
    std::unique_ptr<QOpenGLShaderProgram> m_tile;
    std::unique_ptr<QOpenGLShaderProgram> m_swap;
    std::unique_ptr<QOpenGLShaderProgram> m_paper;
    QOpenGLVertexArrayObject m_vertexArray;
    QOpenGLBuffer m_buffer{QOpenGLBuffer::VertexBuffer};
    std::vector<std::vector<unsigned>> m_textures;
};

// Ten layers of four by three tiles, each with its own premultiplied pattern.
bool fillCanvas(MCanvas* canvas)
{
    while (canvas->count() < layerCount)
        canvas->appendLayer();
    const int inner = canvas->at(0)->innerSize();
    canvas->setPaintedRect(QRectF(0, 0, columns * inner, rows * inner));
    canvas->setPaperColor(paper);
    for (int layer = 0; layer < layerCount; ++layer) {
        MTextureLayer* target = canvas->at(layer);
        target->setOpacity(Reference::opacityOf(layer));
        const int size = target->tileSize();
        std::vector<uchar> bytes(size_t(size) * size * 4);
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                for (int y = 0; y < size; ++y) {
                    for (int x = 0; x < size; ++x) {
                        uchar* p = &bytes[(size_t(y) * size + x) * 4];
                        const int alpha = 128 + ((x * 3 + y * 5 + layer * 40 + column * 17) & 127);
                        p[0] = uchar(((x + layer * 20) & 255) * alpha / 255);
                        p[1] = uchar(((y + row * 60) & 255) * alpha / 255);
                        p[2] = uchar(((x + y + layer * 33) & 255) * alpha / 255);
                        p[3] = uchar(alpha);
                    }
                }
                auto* tile = dynamic_cast<MTextureTile*>(
                    target->addTile(QPointF(column * inner + inner / 2.0, row * inner + inner / 2.0)));
                if (!tile || !tile->isCreated() || !tile->setData(static_cast<const void*>(bytes.data())))
                    return false;
            }
        }
    }
    return true;
}

// Frames per second of one round of `frame`, finishing the GPU's work before
// the clock stops.
double framesPerSecond(QOpenGLFunctions* gl, const std::function<void()>& frame)
{
    gl->glFinish();
    QElapsedTimer timer;
    timer.start();
    int frames = 0;
    do {
        frame();
        ++frames;
        if (frames % 2 == 0)
            gl->glFinish();
    } while (timer.nsecsElapsed() < qint64(secondsPerRound * 1e9));
    gl->glFinish();
    return frames / (double(timer.nsecsElapsed()) / 1e9);
}

// The largest difference of any channel between two read-backs of a box.
int largestDifference(const std::vector<uchar>& a, const std::vector<uchar>& b)
{
    int result = 0;
    for (size_t i = 0; i < a.size() && i < b.size(); ++i)
        result = qMax(result, std::abs(int(a[i]) - int(b[i])));
    return result;
}

std::vector<uchar> readBox(QOpenGLFunctions* gl, const QRect& box)
{
    std::vector<uchar> pixels(size_t(box.width()) * box.height() * 4);
    gl->glPixelStorei(GL_PACK_ALIGNMENT, 1);
    gl->glReadPixels(box.x(), targetHeight - box.y() - box.height(), box.width(), box.height(), GL_RGBA,
                     GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

} // namespace

int main(int argc, char** argv)
{
    // Keeps the settings, data and log of the real user out of reach.
    QStandardPaths::setTestModeEnabled(true);
    MApplication::prepareProcess();
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnbeck"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillmere"));
    if (!MOpenGL::instance()->initialize()) {
        std::printf("The OpenGL driver probe failed.\n");
        return 1;
    }

    // The view's own context and vertex array, as a widget has them.
    std::unique_ptr<QOpenGLContext> context(
        MOpenGL::createSharedContext(QOpenGLContext::globalShareContext()));
    std::unique_ptr<QOffscreenSurface> surface(context ? MOpenGL::createSurface(context.get()) : nullptr);
    if (!context || !surface || !context->makeCurrent(surface.get())) {
        std::printf("No OpenGL context.\n");
        return 1;
    }
    QOpenGLFunctions* gl = context->functions();
    int status = 0;
    {
        auto canvas = std::make_unique<MCanvas>();
        context->makeCurrent(surface.get());
        if (!canvas->isGlInitialized() || !fillCanvas(canvas.get())) {
            std::printf("The canvas could not be made.\n");
            return 1;
        }
        auto effect = std::make_unique<MShader>();
        effect->setSource(QString::fromLatin1(effectSource));
        const QString effectId = MShaderList::instance()->addShader(std::move(effect))->id();

        context->makeCurrent(surface.get());
        QOpenGLVertexArrayObject vertexArray;
        Reference reference;
        QOpenGLFramebufferObjectFormat format;
        format.setAttachment(QOpenGLFramebufferObject::NoAttachment);
        format.setInternalTextureFormat(GL_RGBA8);
        QOpenGLFramebufferObject target(targetWidth, targetHeight, format);
        if (!vertexArray.create() || !reference.create(canvas.get()) || !target.isValid()) {
            std::printf("The view's GL objects could not be made.\n");
            return 1;
        }

        // The page fitted in the target, centred.
        const QRectF page = canvas->paintedRect();
        const double scale = qMin(targetWidth / page.width(), targetHeight / page.height());
        MTransform transform;
        transform.zoom(scale, QPointF());
        transform.setTranslation(QPointF(targetWidth, targetHeight) / 2.0 - page.center() * scale);
        QMatrix4x4 mvp;
        mvp.ortho(QRectF(0, 0, targetWidth, targetHeight));
        mvp = mvp * transform.matrix4x4();

        const auto clearBox = [&](const QRect& box) {
            gl->glClearColor(float(background.redF()), float(background.greenF()), float(background.blueF()),
                             1.0f);
            if (box.isNull()) {
                gl->glClear(GL_COLOR_BUFFER_BIT);
                return;
            }
            gl->glEnable(GL_SCISSOR_TEST);
            gl->glScissor(box.x(), targetHeight - box.y() - box.height(), box.width(), box.height());
            gl->glClear(GL_COLOR_BUFFER_BIT);
            gl->glDisable(GL_SCISSOR_TEST);
        };
        const auto setLayers = [&](int visible, bool withEffect) {
            for (int i = 0; i < canvas->count(); ++i) {
                canvas->at(i)->setVisible(i < visible);
                canvas->at(i)->set_shaderId(withEffect ? effectId : QString());
            }
            context->makeCurrent(surface.get());
        };

        std::printf(
            "View composition: %d x %d tiles of %d (canvas %g x %g) fitted at %.3g into %d x %d, on %s.\n",
            columns, rows, canvas->at(0)->tileSize(), page.width(), page.height(), scale, targetWidth,
            targetHeight, reinterpret_cast<const char*>(gl->glGetString(GL_RENDERER)));
        std::printf(
            "Engine: MPaintEngine::drawPaper + drawLayers in the view's own context. Reference: the same\n"
            "textures as bare textured quads, one draw per tile. Goal: engine/reference >= %.1f.\n"
            "max diff: the largest channel difference between the two pictures where both draw.\n",
            goal);
        std::printf("%-44s %11s %11s %7s %6s %9s\n", "case", "engine fps", "ref fps", "ratio", "goal",
                    "max diff");

        struct Case
        {
            QString name;
            int layers;
            bool effect;
            QRectF clip;            // empty: the whole page
            QRect box;              // where the picture is cleared and compared; null: everywhere
            std::vector<int> tiles; // of the reference; empty: all
        };
        const int inner = canvas->at(0)->innerSize();
        // The damaged tile: the second of the second row. A clip of the whole
        // tile meets its neighbours' margins too, so the engine visits those
        // cells as well, but the scissor keeps their pixels out.
        const QRectF damaged(inner, inner, inner, inner);
        const QRect damagedBox = transform.mapRectToWidget(damaged).toAlignedRect();
        std::vector<Case> cases;
        for (const bool withEffect : {false, true}) {
            for (const int layers : {1, 4, 10}) {
                cases.push_back({QStringLiteral("%1 layer%2, full view%3")
                                     .arg(layers)
                                     .arg(layers > 1 ? QStringLiteral("s") : QString())
                                     .arg(withEffect ? QStringLiteral(", effect on each") : QString()),
                                 layers,
                                 withEffect,
                                 QRectF(),
                                 QRect(),
                                 {}});
            }
        }
        cases.push_back({QStringLiteral("10 layers, damaged tile, clipRect = tile"),
                         layerCount,
                         false,
                         damaged,
                         damagedBox,
                         {columns + 1}});

        for (const Case& c : cases) {
            setLayers(c.layers, c.effect);
            const bool partial = !c.clip.isEmpty();
            const auto engineFrame = [&]() {
                target.bind();
                clearBox(c.box);
                MPaintParams params;
                params.context = context.get();
                params.canvas = canvas.get();
                params.programList = canvas->sharedData()->programList();
                params.vertexArray = &vertexArray;
                params.viewRect = QRectF(0, 0, targetWidth, targetHeight);
                params.useDevicePixelRatio = false;
                params.transform = &transform;
                params.clipRect = partial ? c.clip : page;
                if (!partial)
                    canvas->paintEngine()->drawPaper(&params);
                canvas->paintEngine()->drawLayers(&params);
            };
            const auto referenceFrame = [&]() {
                target.bind();
                clearBox(c.box);
                reference.draw(mvp, c.layers, c.effect, !partial, c.tiles);
            };
            // One frame of each to warm up, then rounds in turn.
            engineFrame();
            referenceFrame();
            double engineFps = 0.0;
            double referenceFps = 0.0;
            for (int round = 0; round < rounds; ++round) {
                engineFps = qMax(engineFps, framesPerSecond(gl, engineFrame));
                referenceFps = qMax(referenceFps, framesPerSecond(gl, referenceFrame));
            }
            if (QOpenGLContext::currentContext() != context.get()) {
                std::printf("The engine left another context current.\n");
                status = 1;
                context->makeCurrent(surface.get());
            }
            // One more frame of each, compared where both draw.
            const QRect box = c.box.isNull() ? QRect(0, 0, targetWidth, targetHeight) : c.box;
            engineFrame();
            target.bind();
            const std::vector<uchar> engineImage = readBox(gl, box);
            referenceFrame();
            target.bind();
            const std::vector<uchar> referenceImage = readBox(gl, box);
            const double ratio = engineFps / referenceFps;
            std::printf("%-44s %11.2f %11.2f %7.2f %6s %9d\n", qPrintable(c.name), engineFps, referenceFps,
                        ratio, ratio >= goal ? "met" : "MISSED",
                        largestDifference(engineImage, referenceImage));
            std::fflush(stdout);
        }
        target.release();
        reference.destroy();
        vertexArray.destroy();
        MShaderList::instance()->removeShader(effectId);
    }
    context->doneCurrent();
    return status;
}
