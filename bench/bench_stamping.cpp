// Laying stamps: long strokes of the default round brush through the stroke
// runners into the tiles of a 2000 x 2000 page, against two references that
// draw the same number of dabs at the same radius and spacing in the same run:
// libmypaint on its own tiled surface (when it is installed), and a bare
// batched round-dab shader on the same GL context, which is the floor. Then
// the time to end a stroke against the tiles it touched, and where the time of
// a stamp goes. Run on demand; it prints figures and asserts nothing.

#include "app/mapplication.h"
#include "app/menum.h"
#include "app/mevent.h"
#include "app/msettings.h"
#include "app/mutility.h"
#include "brush/mbrush.h"
#include "brush/mstamppainter.h"
#include "document/mcanvas.h"
#include "document/mtexturelayer.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mopengl.h"
#include "gpu/mshareddata.h"
#include "gpu/mvertex.h"

#include <QElapsedTimer>
#include <QFile>
#include <QOffscreenSurface>
#include <QOpenGLBuffer>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector2D>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#ifdef QUILLMERE_HAVE_LIBMYPAINT
#include <mypaint-brush.h>
#include <mypaint-fixed-tiled-surface.h>
#endif

namespace {

const QRectF page(0, 0, 2000, 2000);
const double radii[] = {5.0, 20.0, 50.0};
// Distance between two input samples along a path, as a fast stylus gives them.
constexpr double sampleStep = 6.0;
// Horizontal passes of the long stroke across the page.
constexpr int passes = 6;
// Each side is timed this many times, taking turns; the best counts, being the
// one least disturbed on a shared machine.
constexpr int rounds = 3;
constexpr double goal = 0.7;
constexpr int tileSize = 512;
constexpr int tileMargin = 6;
constexpr int innerSize = tileSize - 2 * tileMargin;
// The runners' floor of a step within one run.
constexpr double minimumStep = 0.1;
// Texture parameters of immutable storage, not in every GL header.
constexpr GLenum immutableFormat = 0x912F;
constexpr GLenum immutableLevels = 0x82DF;
// The default brush's hardness, for the references that shade a soft edge.
constexpr float defaultHardness = 0.8f;

double seconds(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e9;
}

// A zig-zag of horizontal passes across area, sampled every step pixels.
QVector<QPointF> zigzag(const QRectF& area, int count, double step)
{
    QVector<QPointF> corners;
    for (int pass = 0; pass < count; ++pass) {
        const double y = count > 1 ? area.top() + area.height() * pass / (count - 1) : area.center().y();
        const bool forward = pass % 2 == 0;
        corners << QPointF(forward ? area.left() : area.right(), y)
                << QPointF(forward ? area.right() : area.left(), y);
    }
    QVector<QPointF> path{corners.first()};
    for (int i = 1; i < corners.size(); ++i) {
        const QPointF from = corners[i - 1];
        const QPointF to = corners[i];
        const int steps = qMax(1, int(std::ceil(QLineF(from, to).length() / step)));
        for (int s = 1; s <= steps; ++s)
            path << from + (to - from) * (double(s) / steps);
    }
    return path;
}

double pathLength(const QVector<QPointF>& path)
{
    double length = 0.0;
    for (int i = 1; i < path.size(); ++i)
        length += QLineF(path[i - 1], path[i]).length();
    return length;
}

MEvent sample(int type, const QPointF& position)
{
    MEvent event;
    event.type = type;
    event.positionX = position.x();
    event.positionY = position.y();
    event.pressure = 1.0;
    return event;
}

// The stamp centres that the runners lay along path at a constant spacing,
// one batch per input sample: the press leaves a dot, and each move walks from
// the last stamp, strictly short of the sample.
QVector<QVector<QPointF>> dabBatches(const QVector<QPointF>& path, double spacing)
{
    QVector<QVector<QPointF>> batches;
    if (path.isEmpty())
        return batches;
    QPointF last = path.first();
    batches.append({last});
    for (int i = 1; i < path.size(); ++i) {
        const QPointF to = path[i];
        const double distance =
            double(QVector2D(float(to.x() - last.x()), float(to.y() - last.y())).length());
        QVector<QPointF> batch;
        double step = spacing;
        QPointF stamp = last;
        while (step < distance) {
            const double t = step / distance;
            stamp = last * (1.0 - t) + to * t;
            batch.append(stamp);
            step += qMax(spacing, minimumStep);
        }
        last = stamp;
        batches.append(batch);
    }
    return batches;
}

int dabCount(const QVector<QVector<QPointF>>& batches)
{
    int count = 0;
    for (const auto& batch : batches)
        count += batch.size();
    return count;
}

// The cells of the tile grid under rect, as the quadtree finds them.
std::vector<std::pair<int, int>> cellsUnder(const QRectF& rect)
{
    std::vector<std::pair<int, int>> cells;
    const int firstColumn = int(std::floor(rect.left() / innerSize));
    const int lastColumn = int(std::floor((rect.right() - 1.0) / innerSize));
    const int firstRow = int(std::floor(rect.top() / innerSize));
    const int lastRow = int(std::floor((rect.bottom() - 1.0) / innerSize));
    for (int row = firstRow; row <= lastRow; ++row) {
        for (int column = firstColumn; column <= lastColumn; ++column)
            cells.emplace_back(column, row);
    }
    return cells;
}

// ---- The floor: a bare batched round-dab shader on the same context.

const char* dabVertexSource = R"(#version 330 core
layout(location = 0) in vec2 position;
layout(location = 1) in vec2 coordinates;
uniform vec2 origin;
uniform float size;
out vec2 uv;
void main()
{
    uv = coordinates;
    gl_Position = vec4((position - origin) * (2.0 / size) - 1.0, 0.0, 1.0);
})";

// A round hard edge, one sample.
const char* hardDabSource = R"(#version 330 core
in vec2 uv;
uniform vec4 color;
out vec4 fragment;
void main()
{
    vec2 d = uv * 2.0 - 1.0;
    if (dot(d, d) > 1.0)
        discard;
    fragment = color;
})";

// The default brush's alpha as the default engine computes it: the soft
// round shape, 8 by 8 samples a pixel, with an exponent known only when it
// runs. With SQUARES defined the round shape's exponent 2 is written out;
// with EDGE_ONLY as well, only pixels across the soft edge take 64 samples.
const char* supersampledDabSource = R"(
in vec2 uv;
uniform vec4 color;
uniform float radius;
uniform float hardness;
uniform int shape;
out vec4 fragment;
float shapeAlpha(vec2 p)
{
#ifdef SQUARES
    vec2 q = p - 0.5;
    float d = dot(q, q) / 0.5;
#else
    float e = shape == 0 ? 2.0 : 7.0;
    float d = (pow(abs(p.x - 0.5), e) + pow(abs(p.y - 0.5), e)) / (2.0 * pow(0.5, e));
#endif
    float inner = hardness / 2.0;
    if (d < inner)
        return hardness;
    if (d < 0.5)
        return mix(hardness, 0.0, smoothstep(inner, 0.5, d));
    return 0.0;
}
void main()
{
    float pixel = 1.0 / (2.0 * radius);
#ifdef EDGE_ONLY
    // The round shape's pixel wholly inside the hard core or wholly outside
    // the stamp: one value stands for its 64 samples.
    vec2 q = abs(uv - 0.5);
    vec2 nearest = max(q - vec2(pixel / 2.0), 0.0);
    vec2 farthest = q + vec2(pixel / 2.0);
    if (dot(nearest, nearest) / 0.5 >= 0.5)
        discard;
    if (dot(farthest, farthest) / 0.5 < hardness / 2.0) {
        fragment = color * hardness;
        return;
    }
#endif
    float step = pixel / 8.0;
    vec2 origin = uv - vec2(pixel / 2.0) + vec2(step / 2.0);
    float sum = 0.0;
    for (int i = 0; i < 8; ++i)
        for (int j = 0; j < 8; ++j)
            sum += shapeAlpha(origin + vec2(i, j) * step);
    float alpha = sum / 64.0;
    if (alpha < 0.004)
        discard;
    fragment = color * alpha;
})";

// Two brush engines for the default brush: the default engine's steps as
// they stand, and the same with the round shape's exponent 2 written out, so
// that the runners measure what that change to the shape would bring.
const char* defaultStepsEngine = "@main\n"
                                 "vec2 uv = v_texCoords0;\n"
                                 "float alpha = getStandardClipping(getStandardAlpha(uv));\n"
                                 "if (alpha < 0.004)\n"
                                 "    discard;\n"
                                 "f_color = getStandardComposition(getStandardColor(uv, alpha), alpha);\n";

const char* squaresEngine = "@functions\n"
                            "float squaresShape(vec2 p)\n"
                            "{\n"
                            "    vec2 q = p - 0.5;\n"
                            "    float d = dot(q, q) / 0.5;\n"
                            "    float inner = f_hardness / 2.0;\n"
                            "    if (d < inner)\n"
                            "        return f_hardness;\n"
                            "    if (d < 0.5)\n"
                            "        return mix(f_hardness, 0.0, smoothstep(inner, 0.5, d));\n"
                            "    return 0.0;\n"
                            "}\n"
                            "float squaresAlpha(vec2 uv)\n"
                            "{\n"
                            "    float pixel = 1.0 / (2.0 * f_radius);\n"
                            "    float sampleStep = pixel / 8.0;\n"
                            "    vec2 origin = uv - vec2(pixel / 2.0) + vec2(sampleStep / 2.0);\n"
                            "    float sum = 0.0;\n"
                            "    for (int i = 0; i < 8; ++i)\n"
                            "        for (int j = 0; j < 8; ++j)\n"
                            "            sum += squaresShape(origin + vec2(i, j) * sampleStep);\n"
                            "    return sum / 64.0 * f_flow;\n"
                            "}\n"
                            "@main\n"
                            "vec2 uv = v_texCoords0;\n"
                            "float alpha = getStandardClipping(squaresAlpha(uv));\n"
                            "if (alpha < 0.004)\n"
                            "    discard;\n"
                            "f_color = getStandardComposition(getStandardColor(uv, alpha), alpha);\n";

QString addEngine(const char* source)
{
    auto engine = std::make_unique<MShader>();
    engine->setType(MShader::BrushShader);
    engine->setSource(QString::fromLatin1(source));
    MShader* added = MShaderList::instance()->addShader(std::move(engine));
    return added ? added->id() : QString();
}

// What a floor run does beyond the bare minimum; each adds one thing that the
// runners do, so that a chain of them shows where the time goes.
struct FloorOptions
{
    // 112-byte vertices written one call each and re-sent for every tile.
    bool runnerVertices = false;
    enum Shading
    {
        Hard,
        SoftShape,
        SoftShapeSquares,
        SoftShapeEdgeOnly
    };
    // The round hard edge, the default brush's 8 x 8 supersampled soft
    // shape, the same with its exponent written out, or that on the edge only.
    Shading shading = Hard;
    // A glFinish for each touched tile after each run.
    bool finishPerTile = false;
    // Mipmaps of each touched tile regenerated after each run, a full chain.
    bool mipmaps = false;
};

class Floor
{
public:
    bool create(QOpenGLContext* context)
    {
        m_gl = context->functions();
        m_hard = program(QByteArray(hardDabSource));
        const QByteArray soft(supersampledDabSource);
        m_soft = program("#version 330 core\n" + soft);
        m_softSquares = program("#version 330 core\n#define SQUARES\n" + soft);
        m_softEdgeOnly = program("#version 330 core\n#define SQUARES\n#define EDGE_ONLY\n" + soft);
        if (!m_hard || !m_soft || !m_softSquares || !m_softEdgeOnly || !m_vertexArray.create() ||
            !m_buffer.create())
            return false;
        m_buffer.setUsagePattern(QOpenGLBuffer::DynamicDraw);
        m_buffer.bind();
        m_buffer.allocate(capacity * MVertex::stride);
        m_buffer.release();
        return true;
    }

    void destroy()
    {
        for (auto& entry : m_tiles) {
            m_gl->glDeleteFramebuffers(1, &entry.second.framebuffer);
            m_gl->glDeleteTextures(1, &entry.second.texture);
        }
        m_tiles.clear();
        m_vertexArray.destroy();
        m_buffer.destroy();
        m_hard.reset();
        m_soft.reset();
        m_softSquares.reset();
        m_softEdgeOnly.reset();
    }

    // One run: the batch's quads in the buffer once (or per tile, as the
    // runners send them), then one draw call into each tile under them.
    void run(const QVector<QPointF>& batch, double radius, const FloorOptions& options)
    {
        if (batch.isEmpty())
            return;
        std::set<std::pair<int, int>> cells;
        const double reach = radius * 1.42;
        for (const QPointF& p : batch) {
            for (const auto& cell : cellsUnder(QRectF(p.x() - reach, p.y() - reach, 2 * reach, 2 * reach)))
                cells.insert(cell);
        }
        QOpenGLShaderProgram* shader = m_hard.get();
        if (options.shading == FloorOptions::SoftShape)
            shader = m_soft.get();
        else if (options.shading == FloorOptions::SoftShapeSquares)
            shader = m_softSquares.get();
        else if (options.shading == FloorOptions::SoftShapeEdgeOnly)
            shader = m_softEdgeOnly.get();
        m_vertexArray.bind();
        m_buffer.bind();
        const int count = std::min(int(batch.size()) * 6, capacity);
        if (!options.runnerVertices)
            writeSlim(batch, radius, count);
        shader->bind();
        shader->setUniformValue("size", float(tileSize));
        shader->setUniformValue("color", 0.f, 0.f, 0.f, 1.f);
        shader->setUniformValue("radius", float(radius));
        shader->setUniformValue("hardness", defaultHardness);
        shader->setUniformValue("shape", 0);
        m_gl->glEnable(GL_BLEND);
        m_gl->glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        m_gl->glViewport(0, 0, tileSize, tileSize);
        for (const auto& cell : cells) {
            const Tile& tile = tileAt(cell);
            if (options.runnerVertices)
                writeFat(batch, radius, count);
            m_gl->glBindFramebuffer(GL_FRAMEBUFFER, tile.framebuffer);
            shader->setUniformValue("origin", float(cell.first * innerSize - tileMargin),
                                    float(cell.second * innerSize - tileMargin));
            m_gl->glDrawArrays(GL_TRIANGLES, 0, count);
        }
        shader->release();
        m_buffer.release();
        m_vertexArray.release();
        QOpenGLFramebufferObject::bindDefault();
        if (options.mipmaps || options.finishPerTile) {
            for (const auto& cell : cells) {
                if (options.mipmaps) {
                    m_gl->glBindTexture(GL_TEXTURE_2D, tileAt(cell).texture);
                    m_gl->glGenerateMipmap(GL_TEXTURE_2D);
                }
                if (options.finishPerTile)
                    m_gl->glFinish();
            }
            m_gl->glBindTexture(GL_TEXTURE_2D, 0);
        }
    }

    int tileCount() const { return int(m_tiles.size()); }

private:
    struct Tile
    {
        GLuint texture = 0;
        GLuint framebuffer = 0;
    };
    static constexpr int capacity = 60000;

    std::unique_ptr<QOpenGLShaderProgram> program(const QByteArray& fragment)
    {
        auto result = std::make_unique<QOpenGLShaderProgram>();
        result->bindAttributeLocation("position", 0);
        result->bindAttributeLocation("coordinates", 1);
        if (!result->addShaderFromSourceCode(QOpenGLShader::Vertex, dabVertexSource) ||
            !result->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment) || !result->link()) {
            std::printf("Floor program: %s\n", qPrintable(result->log()));
            return nullptr;
        }
        return result;
    }

    const Tile& tileAt(const std::pair<int, int>& cell)
    {
        auto found = m_tiles.find(cell);
        if (found != m_tiles.end())
            return found->second;
        Tile tile;
        m_gl->glGenTextures(1, &tile.texture);
        m_gl->glBindTexture(GL_TEXTURE_2D, tile.texture);
        m_gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, tileSize, tileSize, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                           nullptr);
        m_gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        m_gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        m_gl->glBindTexture(GL_TEXTURE_2D, 0);
        m_gl->glGenFramebuffers(1, &tile.framebuffer);
        m_gl->glBindFramebuffer(GL_FRAMEBUFFER, tile.framebuffer);
        m_gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, tile.texture, 0);
        m_gl->glClearColor(0.f, 0.f, 0.f, 0.f);
        m_gl->glClear(GL_COLOR_BUFFER_BIT);
        QOpenGLFramebufferObject::bindDefault();
        return m_tiles.emplace(cell, tile).first->second;
    }

    // Corners in the runners' order: bottom-left, top-left, bottom-right,
    // top-left, top-right, bottom-right.
    static void corners(const QPointF& p, double r, float out[6][4])
    {
        const float left = float(p.x() - r), right = float(p.x() + r);
        const float top = float(p.y() - r), bottom = float(p.y() + r);
        const float values[6][4] = {{left, bottom, 0.f, 1.f},  {left, top, 0.f, 0.f},
                                    {right, bottom, 1.f, 1.f}, {left, top, 0.f, 0.f},
                                    {right, top, 1.f, 0.f},    {right, bottom, 1.f, 1.f}};
        std::copy(&values[0][0], &values[0][0] + 24, &out[0][0]);
    }

    // 16 bytes a vertex, the whole batch in one call.
    void writeSlim(const QVector<QPointF>& batch, double radius, int count)
    {
        m_slim.resize(size_t(count) * 4);
        for (int i = 0; i * 6 < count; ++i)
            corners(batch[i], radius, reinterpret_cast<float(*)[4]>(&m_slim[size_t(i) * 24]));
        m_buffer.write(0, m_slim.data(), count * 4 * int(sizeof(float)));
        setLayout(4 * sizeof(float), 0, 2 * sizeof(float));
    }

    // The runners' record, one call a vertex.
    void writeFat(const QVector<QPointF>& batch, double radius, int count)
    {
        for (int i = 0; i * 6 < count; ++i) {
            float quad[6][4];
            corners(batch[i], radius, quad);
            for (int v = 0; v < 6; ++v) {
                MVertex vertex;
                vertex.position[0] = quad[v][0];
                vertex.position[1] = quad[v][1];
                vertex.setColor(0.f, 0.f, 0.f, 1.f);
                vertex.textureCoordinates[0][0] = quad[v][2];
                vertex.textureCoordinates[0][1] = quad[v][3];
                m_buffer.write((i * 6 + v) * MVertex::stride, &vertex, MVertex::stride);
            }
        }
        setLayout(MVertex::stride, MVertex::positionOffset, MVertex::textureCoordinatesOffset[0]);
    }

    void setLayout(int stride, int positionOffset, int coordinatesOffset)
    {
        m_gl->glEnableVertexAttribArray(0);
        m_gl->glEnableVertexAttribArray(1);
        m_gl->glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, stride,
                                    reinterpret_cast<void*>(quintptr(positionOffset)));
        m_gl->glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, stride,
                                    reinterpret_cast<void*>(quintptr(coordinatesOffset)));
    }

    QOpenGLFunctions* m_gl = nullptr;
    std::unique_ptr<QOpenGLShaderProgram> m_hard;
    std::unique_ptr<QOpenGLShaderProgram> m_soft;
    std::unique_ptr<QOpenGLShaderProgram> m_softSquares;
    std::unique_ptr<QOpenGLShaderProgram> m_softEdgeOnly;
    QOpenGLVertexArrayObject m_vertexArray;
    QOpenGLBuffer m_buffer{QOpenGLBuffer::VertexBuffer};
    std::vector<float> m_slim;
    std::map<std::pair<int, int>, Tile> m_tiles;
};

// ---- libmypaint on its own tiled surface.

#ifdef QUILLMERE_HAVE_LIBMYPAINT

// Dabs that reach the surface, counted on their way in.
MyPaintSurfaceDrawDabFunction surfaceDrawDab = nullptr;
long long drawnDabs = 0;

int countingDrawDab(MyPaintSurface* self, float x, float y, float radius, float r, float g, float b,
                    float opaque, float hardness, float eraser, float ratio, float angle, float lockAlpha,
                    float colorize)
{
    ++drawnDabs;
    return surfaceDrawDab(self, x, y, radius, r, g, b, opaque, hardness, eraser, ratio, angle, lockAlpha,
                          colorize);
}

class MyPaintReference
{
public:
    ~MyPaintReference()
    {
        if (m_brush)
            mypaint_brush_unref(m_brush);
        if (m_surface)
            mypaint_surface_unref(m_surface);
    }

    bool create()
    {
        m_fixed = mypaint_fixed_tiled_surface_new(int(page.width()), int(page.height()));
        m_surface = m_fixed ? mypaint_fixed_tiled_surface_interface(m_fixed) : nullptr;
        m_brush = mypaint_brush_new();
        if (!m_surface || !m_brush)
            return false;
        surfaceDrawDab = m_surface->draw_dab;
        m_surface->draw_dab = countingDrawDab;
        return true;
    }

    // A round brush of that radius, hardness and spacing, with no dynamics
    // that would move, grow or thin its dabs.
    void setBrush(double radius, double spacing)
    {
        mypaint_brush_from_defaults(m_brush);
        const std::pair<MyPaintBrushSetting, double> settings[] = {
            {MYPAINT_BRUSH_SETTING_RADIUS_LOGARITHMIC, std::log(radius)},
            {MYPAINT_BRUSH_SETTING_HARDNESS, double(defaultHardness)},
            {MYPAINT_BRUSH_SETTING_OPAQUE, 1.0},
            {MYPAINT_BRUSH_SETTING_DABS_PER_ACTUAL_RADIUS, radius / spacing},
            {MYPAINT_BRUSH_SETTING_DABS_PER_BASIC_RADIUS, 0.0},
            {MYPAINT_BRUSH_SETTING_DABS_PER_SECOND, 0.0},
            {MYPAINT_BRUSH_SETTING_RADIUS_BY_RANDOM, 0.0},
            {MYPAINT_BRUSH_SETTING_OFFSET_BY_RANDOM, 0.0},
            {MYPAINT_BRUSH_SETTING_OFFSET_BY_SPEED, 0.0},
            {MYPAINT_BRUSH_SETTING_SLOW_TRACKING, 0.0},
            {MYPAINT_BRUSH_SETTING_SLOW_TRACKING_PER_DAB, 0.0},
            {MYPAINT_BRUSH_SETTING_TRACKING_NOISE, 0.0},
            {MYPAINT_BRUSH_SETTING_ELLIPTICAL_DAB_RATIO, 1.0},
            {MYPAINT_BRUSH_SETTING_COLOR_H, 0.0},
            {MYPAINT_BRUSH_SETTING_COLOR_S, 0.0},
            {MYPAINT_BRUSH_SETTING_COLOR_V, 0.0},
        };
        for (const auto& setting : settings)
            mypaint_brush_set_base_value(m_brush, setting.first, float(setting.second));
    }

    // One stroke along path, one atomic section per input sample as an
    // application hands them; dabs reach the tiles when a section ends.
    // Returns seconds, and the dabs drawn in dabs.
    double stroke(const QVector<QPointF>& path, long long& dabs)
    {
        mypaint_brush_reset(m_brush);
        mypaint_brush_new_stroke(m_brush);
        drawnDabs = 0;
        QElapsedTimer timer;
        timer.start();
        for (const QPointF& p : path) {
            mypaint_surface_begin_atomic(m_surface);
            mypaint_brush_stroke_to(m_brush, m_surface, float(p.x()), float(p.y()), 1.0f, 0.0f, 0.0f, 0.005);
            MyPaintRectangle roi;
            mypaint_surface_end_atomic(m_surface, &roi);
        }
        const double elapsed = seconds(timer);
        dabs = drawnDabs;
        return elapsed;
    }

private:
    MyPaintFixedTiledSurface* m_fixed = nullptr;
    MyPaintSurface* m_surface = nullptr;
    MyPaintBrush* m_brush = nullptr;
};

#endif

// ---- Strokes through the runners.

struct Stroke
{
    double seconds = 0.0;    // press and moves, glFinish at both ends
    double endSeconds = 0.0; // the release alone
    int stamps = 0;
    int tiles = 0; // stroke-layer tiles touched
    double spacing = 0.0;
};

void finish(MCanvas* canvas)
{
    canvas->makeCurrent();
    QOpenGLContext::currentContext()->functions()->glFinish();
}

Stroke strokeThrough(MCanvas* canvas, const MBrush& brush, const QVector<QPointF>& path)
{
    Stroke result;
    MSharedData* data = canvas->sharedData();
    finish(canvas);
    QElapsedTimer timer;
    timer.start();
    canvas->startStroke(sample(0, path.first()), brush, Qt::black, Qt::white, 0, 0);
    for (int i = 1; i < path.size(); ++i)
        canvas->strokeTo(sample(2, path[i]), 0);
    finish(canvas);
    result.seconds = seconds(timer);
    // The count runs over the whole stroke; it was reset at its first run.
    result.stamps = data->stampCount();
    result.tiles = canvas->strokeLayer()->changedTiles().size();
    result.spacing = (*data->values(0))[MEnum::bsSpacing];
    timer.restart();
    canvas->endStroke(sample(3, path.last()), 0);
    finish(canvas);
    result.endSeconds = seconds(timer);
    return result;
}

double floorStroke(MCanvas* canvas, Floor& floor, const QVector<QVector<QPointF>>& batches, double radius,
                   const FloorOptions& options)
{
    finish(canvas);
    QElapsedTimer timer;
    timer.start();
    for (const auto& batch : batches)
        floor.run(batch, radius, options);
    finish(canvas);
    return seconds(timer);
}

std::unique_ptr<MBrush> defaultBrush(double radius)
{
    auto brush = std::make_unique<MBrush>();
    brush->setRadius(radius);
    return brush;
}

// Microseconds per stamp of the main-processor half of a stamp: the settings
// through their curves, and the quad.
void cpuPerStamp(const MBrush& brush, double& evaluate, double& quad)
{
    const MBrush::SettingValues base = brush.baseValues();
    MBrush::SettingValues values{};
    constexpr int count = 20000;
    MEvent from = sample(2, QPointF(100, 100));
    const MEvent to = sample(2, QPointF(1900, 1900));
    QElapsedTimer timer;
    timer.start();
    double sink = 0.0;
    for (int i = 0; i < count; ++i) {
        const MEvent event = MEvent::interpolated(from, to, double(i) / count);
        brush.evaluate(base, event, values);
        sink += values[MEnum::bsRadius];
    }
    evaluate = seconds(timer) * 1e6 / count;
    QVector<MVertex> stamps;
    // A first pass touches the memory; the second is timed.
    for (int i = 0; i < count; ++i)
        MStampPainter::addStamp(stamps, QPointF(100 + i * 0.01, 100), values[MEnum::bsRadius], 1.0, 0.0,
                                Qt::black);
    stamps.resize(0);
    timer.restart();
    for (int i = 0; i < count; ++i)
        MStampPainter::addStamp(stamps, QPointF(100 + i * 0.01, 100), values[MEnum::bsRadius], 1.0, 0.0,
                                Qt::black);
    quad = seconds(timer) * 1e6 / count;
    if (sink < 0.0 || stamps.size() != count * 6)
        std::printf("(unexpected evaluation result)\n");
}

} // namespace

int main(int argc, char** argv)
{
    // Settings, data and tile backups go to a home of this run's own.
    QTemporaryDir home;
    if (!home.isValid()) {
        std::printf("No temporary directory for the run's home.\n");
        return 1;
    }
    qputenv("HOME", QFile::encodeName(home.path()));
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    QStandardPaths::setTestModeEnabled(true);
    MApplication::prepareProcess();
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tarnbeck"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillmere"));
    // An empty system library: nothing is installed or loaded that a stroke doesn't need.
    QTemporaryDir systemData;
    if (!systemData.isValid()) {
        std::printf("No temporary directory for the system data.\n");
        return 1;
    }
    MUtility::setSystemDataRoot(systemData.path());
    if (!MOpenGL::instance()->initialize()) {
        std::printf("The OpenGL driver probe failed.\n");
        return 1;
    }
    std::unique_ptr<QOpenGLContext> context(
        MOpenGL::createSharedContext(QOpenGLContext::globalShareContext()));
    std::unique_ptr<QOffscreenSurface> surface(context ? MOpenGL::createSurface(context.get()) : nullptr);
    if (!context || !surface || !context->makeCurrent(surface.get())) {
        std::printf("No OpenGL context.\n");
        return 1;
    }

    auto canvas = std::make_unique<MCanvas>();
    if (!canvas->isGlInitialized() || !canvas->makeCurrent()) {
        std::printf("The canvas has no OpenGL context.\n");
        return 1;
    }
    canvas->setPaintedRect(page);
    canvas->setCurrentRow(0);
    if (!canvas->canPaint()) {
        std::printf("The canvas can't be painted on.\n");
        return 1;
    }
    MEvent::seedRandom(7);

    // Options for a shorter run, under a profiler for instance: --radius R
    // measures that radius only, --table-only stops after the first table.
    const QStringList arguments = QCoreApplication::arguments();
    std::vector<double> chosenRadii(std::begin(radii), std::end(radii));
    const int radiusArgument = arguments.indexOf(QStringLiteral("--radius"));
    if (radiusArgument > 0) {
        bool ok = false;
        const double chosen = arguments.value(radiusArgument + 1).toDouble(&ok);
        if (!ok || !(chosen > 0.0 && chosen <= 200.0)) {
            std::printf("--radius takes a radius of more than 0 and at most 200 pixels.\n");
            return 1;
        }
        chosenRadii = {chosen};
    }
    const bool tableOnly = arguments.contains(QStringLiteral("--table-only"));

    // The floor draws on the canvas's own context.
    canvas->makeCurrent();
    QOpenGLContext* canvasContext = QOpenGLContext::currentContext();
    Floor floor;
    if (!canvasContext || !floor.create(canvasContext)) {
        std::printf("The floor's GL objects could not be made.\n");
        return 1;
    }
    const char* renderer =
        reinterpret_cast<const char*>(canvasContext->functions()->glGetString(GL_RENDERER));

#ifdef QUILLMERE_HAVE_LIBMYPAINT
    MyPaintReference mypaint;
    const bool haveMypaint = mypaint.create();
    if (!haveMypaint)
        std::printf("libmypaint: its surface or brush could not be made.\n");
#else
    const bool haveMypaint = false;
#endif

    const QVector<QPointF> path = zigzag(page.adjusted(60, 60, -60, -60), passes, sampleStep);
    std::printf("Stamping: the default round brush (only its radius set) along a zig-zag of %d passes across "
                "a %g x %g page,\n%.0f pixels, %d input samples %g pixels apart; on %s.\n",
                passes, page.width(), page.height(), pathLength(path), int(path.size()), sampleStep,
                renderer);
    std::printf(
        "Ours: MCanvas::startStroke, strokeTo per sample (press and moves timed, glFinish at both "
        "ends).\nlibmypaint: fixed tiled surface, same radius, hardness %.1f, dabs per actual radius = "
        "radius / spacing.\nFloor: one buffer of the run's quads, one draw per touched 512 x 512 tile, "
        "round hard alpha, source-over.\nBest of %d rounds each. Goal: ours / floor >= %.1f at every "
        "radius (libmypaint ahead at radius 5 is expected).\n\n",
        double(defaultHardness), rounds, goal);
    std::printf("%6s %8s %7s %7s %7s %12s %12s %12s %8s %6s %10s\n", "radius", "spacing", "stamps", "mp dabs",
                "stamps", "ours/s", "libmypaint/s", "floor/s", "ours/", "goal", "ours/");
    std::printf("%6s %8s %7s %7s %7s %12s %12s %12s %8s %6s %10s\n", "", "", "", "", "per run", "", "", "",
                "floor", "", "libmypaint");

    struct Row
    {
        double radius;
        double spacing;
        int stamps;
        QVector<QVector<QPointF>> batches;
    };
    std::vector<Row> rows;
    for (const double radius : chosenRadii) {
        const auto brush = defaultBrush(radius);
        // A short stroke first: programs compile and tiles come into being.
        strokeThrough(canvas.get(), *brush, zigzag(QRectF(100, 100, 1800, 1800), 2, sampleStep));
        Stroke best;
        best.seconds = 1e30;
        double floorSeconds = 1e30;
        double mypaintSeconds = 1e30;
        long long mypaintDabs = 0;
        QVector<QVector<QPointF>> batches;
        for (int round = 0; round < rounds; ++round) {
            const Stroke ours = strokeThrough(canvas.get(), *brush, path);
            if (ours.seconds < best.seconds)
                best = ours;
            if (batches.isEmpty()) {
                batches = dabBatches(path, ours.spacing);
                floorStroke(canvas.get(), floor, batches, radius, FloorOptions());
            }
            floorSeconds =
                qMin(floorSeconds, floorStroke(canvas.get(), floor, batches, radius, FloorOptions()));
#ifdef QUILLMERE_HAVE_LIBMYPAINT
            if (haveMypaint) {
                mypaint.setBrush(radius, ours.spacing);
                mypaintSeconds = qMin(mypaintSeconds, mypaint.stroke(path, mypaintDabs));
            }
#endif
        }
        if (best.stamps == 0) {
            std::printf("The runners laid no stamps at radius %g.\n", radius);
            canvas->makeCurrent();
            floor.destroy();
            return 1;
        }
        const int floorDabs = dabCount(batches);
        if (floorDabs != best.stamps)
            std::printf("(the floor lays %d dabs where the runners laid %d)\n", floorDabs, best.stamps);
        const double oursRate = best.stamps / best.seconds;
        const double floorRate = floorDabs / floorSeconds;
        const double mypaintRate = haveMypaint ? double(mypaintDabs) / mypaintSeconds : 0.0;
        const double toFloor = oursRate / floorRate;
        char mypaintCell[32] = "-";
        char mypaintCount[32] = "-";
        char toMypaint[32] = "-";
        if (haveMypaint) {
            std::snprintf(mypaintCell, sizeof mypaintCell, "%.0f", mypaintRate);
            std::snprintf(mypaintCount, sizeof mypaintCount, "%lld", mypaintDabs);
            std::snprintf(toMypaint, sizeof toMypaint, "%.2f", oursRate / mypaintRate);
        }
        std::printf("%6g %8.3g %7d %7s %7.2f %12.0f %12s %12.0f %8.3f %6s %10s\n", radius, best.spacing,
                    best.stamps, mypaintCount, double(best.stamps) / (path.size() - 1), oursRate, mypaintCell,
                    floorRate, toFloor, toFloor >= goal ? "met" : "MISSED", toMypaint);
        std::fflush(stdout);
        rows.push_back({radius, best.spacing, best.stamps, batches});
    }
    if (!haveMypaint)
        std::printf("libmypaint: not available (install libmypaint-dev)\n");

    if (tableOnly) {
        canvas->makeCurrent();
        floor.destroy();
        return 0;
    }

    // The end of a stroke: a backup and a merge per touched tile.
    std::printf("\nEnding a stroke (MEndStrokeRunner: backups and merge), radius 20, zig-zags inside k x k "
                "tiles; best of %d:\n%6s %10s %12s\n",
                rounds, "tiles", "end ms", "ms per tile");
    {
        const auto brush = defaultBrush(20.0);
        for (int k = 1; k <= 4; ++k) {
            const QRectF area(40, 40, k * innerSize - 80, k * innerSize - 80);
            const QVector<QPointF> local = zigzag(area, 2 * k, sampleStep);
            double end = 1e30;
            int tiles = 0;
            for (int round = 0; round < rounds; ++round) {
                const Stroke stroke = strokeThrough(canvas.get(), *brush, local);
                end = qMin(end, stroke.endSeconds);
                tiles = stroke.tiles;
            }
            std::printf("%6d %10.2f %12.2f\n", tiles, end * 1e3, tiles ? end * 1e3 / tiles : 0.0);
            std::fflush(stdout);
        }
    }

    // Where the time goes: the floor with the runners' work added one thing at
    // a time, ours with that work taken off through brush and settings, and
    // the main-processor half of a stamp.
    std::printf("\nWhere the time goes, in stamps per second (best of %d):\n", rounds);
    std::printf("%-62s", "");
    for (const Row& row : rows)
        std::printf(" %9s%-3g", "radius ", row.radius);
    std::printf("\n");
    const auto line = [&](const char* label, const std::function<double(const Row&)>& rate) {
        std::printf("%-62s", label);
        for (const Row& row : rows)
            std::printf(" %12.0f", rate(row));
        std::printf("\n");
        std::fflush(stdout);
    };
    const auto floorLine = [&](const char* label, const FloorOptions& options) {
        line(label, [&](const Row& row) {
            floorStroke(canvas.get(), floor, row.batches, row.radius, options);
            double best = 1e30;
            for (int round = 0; round < rounds; ++round)
                best = qMin(best, floorStroke(canvas.get(), floor, row.batches, row.radius, options));
            return dabCount(row.batches) / best;
        });
    };
    const auto oursLine = [&](const char* label, const std::function<void(MBrush&)>& change) {
        line(label, [&](const Row& row) {
            auto brush = defaultBrush(row.radius);
            change(*brush);
            strokeThrough(canvas.get(), *brush, zigzag(QRectF(100, 100, 1800, 1800), 2, sampleStep));
            double best = 1e30;
            int stamps = 0;
            for (int round = 0; round < rounds; ++round) {
                const Stroke stroke = strokeThrough(canvas.get(), *brush, path);
                if (stroke.seconds < best) {
                    best = stroke.seconds;
                    stamps = stroke.stamps;
                }
            }
            return stamps / best;
        });
    };
    // What regenerating a stroke tile's mipmaps has to work on.
    {
        canvas->makeCurrent();
        QSet<MTile*> touched;
        canvas->strokeLayer()->tilesInRect(QRectF(100, 100, 10, 10), touched);
        auto* tile = touched.isEmpty() ? nullptr : dynamic_cast<MTextureTile*>(*touched.begin());
        if (tile && tile->isCreated()) {
            QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
            GLint immutable = 0;
            GLint levels = 0;
            gl->glBindTexture(GL_TEXTURE_2D, tile->textureId());
            gl->glGetTexParameteriv(GL_TEXTURE_2D, immutableFormat, &immutable);
            gl->glGetTexParameteriv(GL_TEXTURE_2D, immutableLevels, &levels);
            gl->glBindTexture(GL_TEXTURE_2D, 0);
            std::printf("A stroke-layer tile's texture: immutable storage %s, %d mipmap level%s.\n",
                        immutable ? "yes" : "no", int(levels), levels == 1 ? "" : "s");
        }
    }
    FloorOptions options;
    floorLine("floor", options);
    options.runnerVertices = true;
    floorLine(" + 112-byte vertices, one call each, re-sent per tile", options);
    options.shading = FloorOptions::SoftShapeSquares;
    floorLine(" + the default brush's soft shape, 8 x 8 samples, x * x", options);
    options.shading = FloorOptions::SoftShapeEdgeOnly;
    floorLine("   (the same, 64 samples only in pixels across the soft edge)", options);
    options.shading = FloorOptions::SoftShape;
    floorLine(" + pow() with a run-time exponent instead, as the engine has it", options);
    options.finishPerTile = true;
    floorLine(" + glFinish per touched tile per run", options);
    options.mipmaps = true;
    floorLine(" + a full mipmap chain of each touched tile per run", options);
    oursLine("ours, default brush", [](MBrush&) {});
    MSettings::instance()->set_generateMipmaps(false);
    oursLine("ours, mipmap setting off (no mipmaps, no glFinish)", [](MBrush&) {});
    oursLine("ours, mipmap setting off, brush antialiasing off",
             [](MBrush& brush) { brush.setBaseValue(MEnum::bsAntialiasing, MEnum::NoAntialiasing); });
    MSettings::instance()->set_generateMipmaps(true);
    oursLine("ours, brush antialiasing off",
             [](MBrush& brush) { brush.setBaseValue(MEnum::bsAntialiasing, MEnum::NoAntialiasing); });
    const QString defaultSteps = addEngine(defaultStepsEngine);
    const QString squares = addEngine(squaresEngine);
    if (defaultSteps.isEmpty() || squares.isEmpty()) {
        std::printf("The measuring brush engines could not be added.\n");
    } else {
        oursLine("ours, an engine with the default engine's steps",
                 [&](MBrush& brush) { brush.set_shaderId(defaultSteps); });
        oursLine("ours, the same engine with the shape's x * x written out",
                 [&](MBrush& brush) { brush.set_shaderId(squares); });
    }
    for (const QString& id : {defaultSteps, squares}) {
        if (!id.isEmpty())
            MShaderList::instance()->removeShader(id);
    }
    std::printf("%-62s", "main processor: settings evaluated (us per stamp)");
    for (const Row& row : rows) {
        double evaluate = 0.0, quad = 0.0;
        cpuPerStamp(*defaultBrush(row.radius), evaluate, quad);
        std::printf(" %12.2f", evaluate);
    }
    std::printf("\n%-62s", "main processor: quad made (us per stamp)");
    for (const Row& row : rows) {
        double evaluate = 0.0, quad = 0.0;
        cpuPerStamp(*defaultBrush(row.radius), evaluate, quad);
        std::printf(" %12.2f", quad);
    }
    std::printf("\n");

    canvas->makeCurrent();
    floor.destroy();
    canvas.reset();
    context->doneCurrent();
    return 0;
}
