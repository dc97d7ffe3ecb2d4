// Canvases drawn through the paint engine the way a view draws them: in a
// context of the view's own, with its own vertex array, into an offscreen
// target, under a view transform. Every pixel of each window read back is
// compared with a reference computed here from the layers' content.

#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "document/mcanvas.h"
#include "document/mtexturetile.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mpaintengine.h"
#include "gpu/mpaintparams.h"
#include "gpu/mshareddata.h"
#include "gpu/mtransform.h"

#include <QOpenGLFramebufferObject>
#include <QOpenGLVertexArrayObject>
#include <QPainterPath>

#include <cmath>
#include <functional>

namespace {

// Tolerances, in units of 0..255 per channel. Nearest sampling of an 8-bit
// texture with opacity 1 is exact; one unit covers the single rounding of a
// blend. Filtered samples add the GPU's fixed-point filter weights and the
// rounding of stored mipmap levels.
constexpr double exactTolerance = 1.0;
constexpr double filteredTolerance = 2.0;

// Premultiplied RGBA in 0..255, in double so that references are exact.
struct Rgba
{
    double r = 0, g = 0, b = 0, a = 0;
};

Rgba over(const Rgba& top, const Rgba& bottom)
{
    const double k = 1.0 - top.a / 255.0;
    return {top.r + bottom.r * k, top.g + bottom.g * k, top.b + bottom.b * k, top.a + bottom.a * k};
}

Rgba times(const Rgba& c, double f)
{
    return {c.r * f, c.g * f, c.b * f, c.a * f};
}

Rgba mix(const Rgba& a, const Rgba& b, double t)
{
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t, a.a + (b.a - a.a) * t};
}

bool near(const Rgba& got, const Rgba& want, double tolerance)
{
    return std::abs(got.r - want.r) <= tolerance && std::abs(got.g - want.g) <= tolerance &&
           std::abs(got.b - want.b) <= tolerance && std::abs(got.a - want.a) <= tolerance;
}

QString text(const Rgba& c)
{
    return QStringLiteral("(%1, %2, %3, %4)").arg(c.r).arg(c.g).arg(c.b).arg(c.a);
}

int floorDiv(int value, int divisor)
{
    return int(std::floor(double(value) / divisor));
}

// What a layer holds: content inside region, transparent elsewhere.
struct Picture
{
    QRect region;
    std::function<Rgba(int, int)> content;

    Rgba at(int x, int y) const { return region.contains(x, y) ? content(x, y) : Rgba(); }
    Rgba nearest(const QPointF& q) const { return at(int(std::floor(q.x())), int(std::floor(q.y()))); }
    // Bilinear between texel centres; at the corner of four texels it is their
    // average, which is what the first mipmap level holds there.
    Rgba linear(const QPointF& q) const
    {
        const double x = q.x() - 0.5;
        const double y = q.y() - 0.5;
        const int x0 = int(std::floor(x));
        const int y0 = int(std::floor(y));
        const double fx = x - x0;
        const double fy = y - y0;
        return mix(mix(at(x0, y0), at(x0 + 1, y0), fx), mix(at(x0, y0 + 1), at(x0 + 1, y0 + 1), fx), fy);
    }
};

Picture uniform(const QRect& region, const Rgba& colour)
{
    return {region, [colour](int, int) { return colour; }};
}

// Writes a picture into every tile whose texture reaches its region, margins
// included, so that each margin repeats its neighbour's pixels as painting
// leaves them. Pixels outside the region keep what they held.
bool paint(MTextureLayer* layer, const Picture& picture)
{
    const int margin = layer->tileMargin();
    QSet<MTile*> tiles;
    layer->tilesInRect(QRectF(picture.region.adjusted(-margin, -margin, margin, margin)), tiles);
    if (tiles.isEmpty())
        return false;
    for (MTile* tile : qAsConst(tiles)) {
        auto* textureTile = dynamic_cast<MTextureTile*>(tile);
        if (!textureTile || !textureTile->isCreated())
            return false;
        QByteArray bytes(int(textureTile->bufferSize()), '\0');
        if (!textureTile->toBuffer(bytes.data()))
            return false;
        const QRect outer = tile->outerRect();
        const QRect part = outer.intersected(picture.region);
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) {
                const Rgba c = picture.content(x, y);
                auto* p = reinterpret_cast<uchar*>(bytes.data()) +
                          ((y - outer.y()) * outer.width() + x - outer.x()) * 4;
                p[0] = uchar(qRound(c.r));
                p[1] = uchar(qRound(c.g));
                p[2] = uchar(qRound(c.b));
                p[3] = uchar(qRound(c.a));
            }
        }
        if (!textureTile->setData(static_cast<const void*>(bytes.constData())))
            return false;
    }
    return true;
}

// A view that shows canvas point `at` at the middle of a target of `size`,
// moved by `shift` widget pixels, rotated about that point and flipped.
struct View
{
    QPointF at;
    QSize size{64, 64};
    double scale = 1.0;
    double degrees = 0.0;
    bool flip = false;
    QPointF shift;
    QColor clear = Qt::transparent;
    bool smoothPixels = true;
    bool paper = false;
    std::function<void(MPaintParams&)> adjust;
};

// A read-back target; (0, 0) is the top-left pixel, as the view sees it.
struct Frame
{
    int width = 0;
    int height = 0;
    QByteArray bytes; // rows as GL reads them, bottom first
    QTransform toCanvas;

    Rgba at(int x, int y) const
    {
        const auto* p =
            reinterpret_cast<const uchar*>(bytes.constData()) + ((height - 1 - y) * width + x) * 4;
        return {double(p[0]), double(p[1]), double(p[2]), double(p[3])};
    }
};

using Expected = std::function<Rgba(const QPointF&)>;

// The first pixel off by more than tolerance from what is expected at the
// canvas point under its centre, described; empty when all match.
QString mismatch(const Frame& frame, const Expected& expected, double tolerance)
{
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            const Rgba got = frame.at(x, y);
            const Rgba want = expected(frame.toCanvas.map(QPointF(x + 0.5, y + 0.5)));
            if (!near(got, want, tolerance))
                return QStringLiteral("pixel %1,%2: %3, expected %4")
                    .arg(x)
                    .arg(y)
                    .arg(text(got), text(want));
        }
    }
    return QString();
}

} // namespace

class TestViewComposition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void seamsUnderViewTransforms();
    void layersComposeOver();
    void paintedRectClip();
    void timeLineFrames();
    void clipRectLimitsCells();
    void effectInTheViewContext();
    void effectKeepsToSelectionAndPage();

private:
    bool render(MCanvas& canvas, const View& view, Frame* frame);
    // Empty when every pixel of the view is within tolerance of expected,
    // else what went wrong.
    QString check(MCanvas& canvas, const View& view, const Expected& expected, double tolerance)
    {
        Frame frame;
        return render(canvas, view, &frame) ? mismatch(frame, expected, tolerance) : m_why;
    }

    QuillmereTest::GLContext m_gl;
    QOpenGLVertexArrayObject m_vertexArray;
    QString m_why;
};

void TestViewComposition::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    QVERIFY(m_vertexArray.create());
}

void TestViewComposition::cleanupTestCase()
{
    if (m_gl.makeCurrent())
        m_vertexArray.destroy();
}

// Clears a target in the view's context and draws paper (when asked) and
// layers into it, then reads it back. False, with m_why, when the target
// can't be made or the engine leaves another context current.
bool TestViewComposition::render(MCanvas& canvas, const View& view, Frame* frame)
{
    if (!m_gl.makeCurrent()) {
        m_why = m_gl.why();
        return false;
    }
    MTransform transform;
    transform.zoom(view.scale, QPointF());
    transform.setRotationCentre(view.at);
    transform.setRotation(view.degrees);
    if (view.flip)
        transform.flipHorizontal();
    const QPointF middle(view.size.width() / 2.0, view.size.height() / 2.0);
    transform.setTranslation(transform.translation() + middle + view.shift - transform.mapToWidget(view.at));

    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::NoAttachment);
    format.setInternalTextureFormat(GL_RGBA8);
    QOpenGLFramebufferObject target(view.size, format);
    if (!target.isValid() || !target.bind()) {
        m_why = QStringLiteral("no framebuffer");
        return false;
    }
    QOpenGLFunctions_3_3_Core* gl = m_gl.gl();
    gl->glClearColor(float(view.clear.redF()), float(view.clear.greenF()), float(view.clear.blueF()),
                     float(view.clear.alphaF()));
    gl->glClear(GL_COLOR_BUFFER_BIT);

    MPaintParams params;
    params.context = m_gl.context();
    params.canvas = &canvas;
    params.programList = canvas.sharedData()->programList();
    params.vertexArray = &m_vertexArray;
    params.viewRect = QRectF(QPointF(0, 0), QSizeF(view.size));
    params.useDevicePixelRatio = false;
    params.transform = &transform;
    params.smoothPixels = view.smoothPixels;
    // What the view shows, in canvas coordinates.
    params.clipRect = transform.mapRectToCanvas(params.viewRect);
    if (view.adjust)
        view.adjust(params);
    if (view.paper)
        canvas.paintEngine()->drawPaper(&params);
    canvas.paintEngine()->drawLayers(&params);
    if (QOpenGLContext::currentContext() != m_gl.context()) {
        m_why = QStringLiteral("the engine left another context current");
        return false;
    }
    target.bind();
    frame->width = view.size.width();
    frame->height = view.size.height();
    frame->bytes = QByteArray(frame->width * frame->height * 4, '\0');
    frame->toCanvas = transform.matrix().inverted();
    gl->glPixelStorei(GL_PACK_ALIGNMENT, 1);
    gl->glReadPixels(0, 0, frame->width, frame->height, GL_RGBA, GL_UNSIGNED_BYTE, frame->bytes.data());
    target.release();
    const GLenum error = gl->glGetError();
    if (error != GL_NO_ERROR) {
        m_why = QStringLiteral("GL error 0x%1").arg(error, 0, 16);
        return false;
    }
    return true;
}

void TestViewComposition::seamsUnderViewTransforms()
{
    // Nine tiles, at negative coordinates too, each with its own colour and
    // a pattern that changes at every pixel, of one alpha throughout: a seam
    // drawn twice would show a higher alpha, a gap a lower one.
    const Picture picture{QRect(-500, -500, 1500, 1500), [](int x, int y) {
                              const int column = floorDiv(x, 500) + 1;
                              const int row = floorDiv(y, 500) + 1;
                              const int pattern = x - floorDiv(x, 8) * 8 + y - floorDiv(y, 4) * 4;
                              return Rgba{30.0 + 50 * column, 30.0 + 50 * row, 8.0 * pattern, 160};
                          }};
    MCanvas canvas;
    canvas.setPaintedRect(QRectF(picture.region));
    QVERIFY(m_gl.makeCurrent());
    QVERIFY(paint(canvas.at(0), picture));

    const struct
    {
        const char* name;
        double scale;
        double degrees;
        bool flip;
        QPointF shift;
    } cases[] = {
        {"identity", 1, 0, false, QPointF()},     {"scale 2", 2, 0, false, QPointF()},
        {"scale 0.5", 0.5, 0, false, QPointF()},  {"quarter-pixel shift", 1, 0, false, QPointF(0.25, 0.25)},
        {"rotation 90", 1, 90, false, QPointF()}, {"horizontal flip", 1, 0, true, QPointF()},
    };
    // Tile centres, and the points where four tiles meet: the windows there
    // hold the seams x = -1/0 and 499/500, and the same in y.
    QList<QPoint> probes = {QPoint(0, 0), QPoint(500, 0), QPoint(0, 500), QPoint(500, 500)};
    for (int row = -1; row <= 1; ++row) {
        for (int column = -1; column <= 1; ++column)
            probes.append(QPoint(column * 500 + 250, row * 500 + 250));
    }
    for (const auto& c : cases) {
        for (const bool smooth : {false, true}) {
            // Magnification follows smoothPixels; minification is always trilinear.
            const bool nearest = !smooth && c.scale >= 1.0;
            for (const QPoint& probe : probes) {
                View view;
                view.at = probe;
                view.scale = c.scale;
                view.degrees = c.degrees;
                view.flip = c.flip;
                view.shift = c.shift;
                view.smoothPixels = smooth;
                const QString wrong = check(
                    canvas, view,
                    [&](const QPointF& q) { return nearest ? picture.nearest(q) : picture.linear(q); },
                    nearest ? exactTolerance : filteredTolerance);
                QVERIFY2(wrong.isEmpty(),
                         qPrintable(QString::asprintf("%s, %s, around %d,%d: ", c.name,
                                                      smooth ? "smooth" : "nearest", probe.x(), probe.y()) +
                                    wrong));
            }
        }
    }
}

void TestViewComposition::layersComposeOver()
{
    MCanvas canvas;
    canvas.setPaintedRect(QRectF(0, 0, 500, 500));
    canvas.appendLayer();
    QVERIFY(m_gl.makeCurrent());
    // Bottom over the left half, top over the upper half: around (250, 250)
    // the window holds both, each alone, and neither.
    const Picture lower = uniform(QRect(0, 0, 250, 500), Rgba{180, 60, 20, 220});
    const Picture upper = uniform(QRect(0, 0, 500, 250), Rgba{30, 140, 200, 240});
    QVERIFY(paint(canvas.at(0), lower));
    QVERIFY(paint(canvas.at(1), upper));
    canvas.at(0)->setOpacity(0.6);
    canvas.at(1)->setOpacity(0.75);
    const Rgba paper{250, 240, 200, 255};
    canvas.setPaperColor(QColor(250, 240, 200));

    for (const bool withPaper : {false, true}) {
        View view;
        view.at = QPointF(250, 250);
        view.smoothPixels = false;
        view.paper = withPaper;
        const QString wrong = check(
            canvas, view,
            [&](const QPointF& q) {
                const Rgba below = over(times(lower.nearest(q), 0.6), withPaper ? paper : Rgba());
                return over(times(upper.nearest(q), 0.75), below);
            },
            exactTolerance);
        QVERIFY2(wrong.isEmpty(), qPrintable((withPaper ? QStringLiteral("on paper: ") : QString()) + wrong));
    }
}

void TestViewComposition::paintedRectClip()
{
    MCanvas canvas;
    QVERIFY(m_gl.makeCurrent());
    const Rgba colour{40, 170, 90, 200};
    QVERIFY(paint(canvas.at(0), uniform(QRect(-1050, -1050, 1600, 1600), colour)));
    View view;
    view.size = QSize(32, 32);
    view.smoothPixels = false;
    // Both start at negative coordinates off the grid and end on a cell
    // boundary, one at 500, one at 0.
    for (const QRectF& painted : {QRectF(-737, -263, 1237, 763), QRectF(-1001, -999, 1001, 999)}) {
        canvas.setPaintedRect(painted);
        for (const QPointF& corner :
             {painted.topLeft(), painted.topRight(), painted.bottomLeft(), painted.bottomRight()}) {
            view.at = corner;
            const QString wrong = check(
                canvas, view, [&](const QPointF& q) { return painted.contains(q) ? colour : Rgba(); },
                exactTolerance);
            QVERIFY2(wrong.isEmpty(),
                     qPrintable(QString::asprintf("corner %g,%g: ", corner.x(), corner.y()) + wrong));
        }
    }
    // The first and last pixels of the first page, read explicitly: with a
    // 32-pixel window aimed at a corner, widget pixel 16 holds the corner's
    // canvas pixel and 15 the one before it.
    canvas.setPaintedRect(QRectF(-737, -263, 1237, 763));
    for (const QPointF& corner : {QPointF(-737, -263), QPointF(500, 500)}) {
        view.at = corner;
        Frame frame;
        QVERIFY2(render(canvas, view, &frame), qPrintable(m_why));
        const bool start = corner.x() < 0;
        QCOMPARE(frame.at(16, 16).a, start ? colour.a : 0.0);
        QCOMPARE(frame.at(15, 15).a, start ? 0.0 : colour.a);
        QCOMPARE(frame.at(16, 15).a, 0.0);
        QCOMPARE(frame.at(15, 16).a, 0.0);
    }
}

void TestViewComposition::timeLineFrames()
{
    MCanvas canvas;
    canvas.setPaintedRect(QRectF(0, 0, 500, 500));
    for (int i = 0; i < 3; ++i)
        canvas.appendLayer();
    QVERIFY(m_gl.makeCurrent());
    const Rgba colours[4] = {{200, 40, 0, 210}, {0, 150, 30, 170}, {20, 0, 190, 200}, {90, 90, 90, 240}};
    const double opacities[4] = {0.9, 0.8, 0.7, 0.6};
    for (int i = 0; i < 4; ++i) {
        QVERIFY(paint(canvas.at(i), uniform(QRect(0, 0, 500, 500), colours[i])));
        canvas.at(i)->setOpacity(opacities[i]);
    }
    const auto layer = [&](int i, double opacity) { return times(colours[i], opacity); };
    const struct
    {
        int current;
        bool previous;
        bool background;
        Rgba expected;
    } cases[] = {
        // On the last layer the next frame doesn't exist: nothing gets 0.4.
        {3, true, false, layer(3, 0.6)},
        // On a middle layer, the next one is drawn over it at 0.4.
        {1, true, false, over(layer(2, 0.4), layer(1, 0.8))},
        {1, false, false, layer(1, 0.8)},
        // The first layer as background goes under the frame at its own opacity.
        {2, true, true, over(layer(3, 0.4), over(layer(2, 0.7), layer(0, 0.9)))},
    };
    for (const auto& c : cases) {
        canvas.setCurrentRow(c.current);
        View view;
        view.at = QPointF(250, 250);
        view.size = QSize(16, 16);
        view.smoothPixels = false;
        view.adjust = [&](MPaintParams& params) {
            params.timeLineMode = true;
            params.showPreviousFrame = c.previous;
            params.firstLayerAsBackground = c.background;
        };
        const QString wrong = check(
            canvas, view, [&](const QPointF&) { return c.expected; }, exactTolerance);
        QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("layer %1: ").arg(c.current) + wrong));
    }
}

void TestViewComposition::clipRectLimitsCells()
{
    MCanvas canvas;
    canvas.setPaintedRect(QRectF(-500, -500, 1500, 1500));
    QVERIFY(m_gl.makeCurrent());
    const auto cellColour = [](int column, int row) {
        return Rgba{60.0 + 40 * column, 60.0 + 40 * row, 100, 200};
    };
    for (int row = -1; row <= 1; ++row) {
        for (int column = -1; column <= 1; ++column)
            QVERIFY(paint(canvas.at(0),
                          uniform(QRect(column * 500, row * 500, 500, 500), cellColour(column, row))));
    }
    const QColor clear = QColor::fromRgbF(0.2, 0.4, 0.6, 0.8);
    const Rgba clearRgba{double(clear.red()), double(clear.green()), double(clear.blue()),
                         double(clear.alpha())};
    // A quarter-scale view of the nine cells; widget = 200 + (canvas - 250) / 4.
    const auto widget = [](double canvasCoordinate) { return int(200 + (canvasCoordinate - 250) / 4); };
    // A damaged area well inside one cell, away from its margins.
    const QRectF damaged(100, 100, 300, 300);
    for (const bool clipped : {true, false}) {
        View view;
        view.at = QPointF(250, 250);
        view.size = QSize(400, 400);
        view.scale = 0.25;
        view.clear = clear;
        view.adjust = [&](MPaintParams& params) {
            params.clipRect = damaged;
            params.clipToRect = clipped;
        };
        Frame frame;
        QVERIFY2(render(canvas, view, &frame), qPrintable(m_why));
        for (int row = -1; row <= 1; ++row) {
            for (int column = -1; column <= 1; ++column) {
                // Each cell's centre, and a point of it outside the damaged area:
                // with the clip only the damaged area is drawn, even in its cell.
                for (const QPointF& point : {QPointF(column * 500 + 250, row * 500 + 250),
                                             QPointF(column * 500 + 50, row * 500 + 50)}) {
                    const bool drawn = !clipped || damaged.contains(point);
                    const Rgba want = drawn ? over(cellColour(column, row), clearRgba) : clearRgba;
                    const Rgba got = frame.at(widget(point.x()), widget(point.y()));
                    QVERIFY2(near(got, want, drawn ? filteredTolerance : 0.0),
                             qPrintable(QString::asprintf("%s at %g,%g: ", clipped ? "clipped" : "whole",
                                                          point.x(), point.y()) +
                                        text(got) + QStringLiteral(", expected ") + text(want)));
                }
            }
        }
    }

    // Damaged areas that reach a pixel or two into the next cell, across a
    // vertical and a horizontal cell edge: the cell beyond draws exactly
    // those pixels, whose centres lie in the area, edges included, and
    // nothing else is touched.
    const auto colourAt = [&](const QPointF& q) {
        return cellColour(floorDiv(int(std::floor(q.x())), 500), floorDiv(int(std::floor(q.y())), 500));
    };
    for (const QRectF& area : {QRectF(470, 230, 31.5, 20), QRectF(498.5, 230, 20, 20),
                               QRectF(230, 470, 20, 31.5), QRectF(230, 498.5, 20, 20)}) {
        View view;
        view.at = QPointF(area.center().toPoint());
        view.clear = clear;
        view.adjust = [&](MPaintParams& params) { params.clipRect = area; };
        const QString wrong = check(
            canvas, view,
            [&](const QPointF& q) {
                const bool inside = q.x() >= area.left() && q.x() <= area.right() && q.y() >= area.top() &&
                                    q.y() <= area.bottom();
                return inside ? over(colourAt(q), clearRgba) : clearRgba;
            },
            exactTolerance);
        QVERIFY2(wrong.isEmpty(), qPrintable(QString::asprintf("area %g,%g %gx%g: ", area.x(), area.y(),
                                                               area.width(), area.height()) +
                                             wrong));
    }
}

void TestViewComposition::effectInTheViewContext()
{
    // The first draw of a new effect in a view: its program is built on the
    // program list's context and its image loaded on the canvas's, and the
    // draw must still land in the view's target, with the view's context
    // current afterwards.
    const QString grainPath = QDir::temp().filePath(QStringLiteral("grain.png"));
    QImage grain(4, 4, QImage::Format_ARGB32);
    grain.fill(QColor(128, 128, 128));
    QVERIFY(grain.save(grainPath));
    auto effect = std::make_unique<MShader>();
    effect->setSource(QStringLiteral("@params\ntexture grain \"%1\";\n@main\n"
                                     "vec4 c = texture(f_currentLayerTexture, v_texCoords0);\n"
                                     "f_color = vec4(c.b, c.g, c.r, c.a) * texture(grain, v_texCoords0).r * "
                                     "f_opacity;")
                          .arg(grainPath));
    const QString id = MShaderList::instance()->addShader(std::move(effect))->id();
    MCanvas canvas;
    canvas.setPaintedRect(QRectF(0, 0, 500, 500));
    QVERIFY(m_gl.makeCurrent());
    QVERIFY(paint(canvas.at(0), uniform(QRect(0, 0, 500, 500), Rgba{200, 100, 50, 255})));
    canvas.at(0)->set_shaderId(id);
    QVERIFY(canvas.at(0)->isShaderActive());
    // Red and blue swapped, scaled by the grey of the image.
    const Rgba expected = times(Rgba{50, 100, 200, 255}, 128.0 / 255.0);
    View view;
    view.at = QPointF(250, 250);
    view.size = QSize(16, 16);
    for (int pass = 0; pass < 2; ++pass) {
        const QString wrong = check(
            canvas, view, [&](const QPointF&) { return expected; }, exactTolerance);
        QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("pass %1: %2").arg(pass).arg(wrong)));
    }
    MShaderList::instance()->removeShader(id);
}

void TestViewComposition::effectKeepsToSelectionAndPage()
{
    // A page that cuts through cells on every side, so that the view has
    // cells wholly inside it and cells across its edges; an effect on the
    // layer, and a selection over part of the page.
    auto effect = std::make_unique<MShader>();
    effect->setSource(QStringLiteral("@main\nvec4 c = texture(f_currentLayerTexture, v_texCoords0);\n"
                                     "f_color = vec4(c.b, c.g, c.r, c.a) * f_opacity;"));
    const QString id = MShaderList::instance()->addShader(std::move(effect))->id();
    MCanvas canvas;
    const QRectF page(-100, -100, 700, 650);
    canvas.setPaintedRect(page);
    QVERIFY(m_gl.makeCurrent());
    const Rgba colour{200, 100, 50, 255};
    const Rgba swapped{50, 100, 200, 255};
    QVERIFY(paint(canvas.at(0), uniform(QRect(-600, -600, 1800, 1800), colour)));
    const QRect selected(-50, 120, 400, 300);
    canvas.at(0)->set_shaderId(id);

    // One canvas pixel per view pixel, pixel centres on texel centres.
    View view;
    view.at = QPointF(250, 225);
    view.size = QSize(800, 760);
    const auto inPage = [&](const QPointF& q) {
        return q.x() >= page.left() && q.x() <= page.right() && q.y() >= page.top() && q.y() <= page.bottom();
    };
    for (const bool withSelection : {true, false}) {
        if (withSelection) {
            QPainterPath path;
            path.addRect(selected);
            canvas.setClipPath(path);
            QVERIFY(canvas.hasSelection());
        } else {
            canvas.resetClipPath();
            QVERIFY(!canvas.hasSelection());
        }
        const QString wrong = check(
            canvas, view,
            [&](const QPointF& q) {
                if (!inPage(q))
                    return Rgba();
                return !withSelection ||
                               selected.contains(QPoint(int(std::floor(q.x())), int(std::floor(q.y()))))
                           ? swapped
                           : colour;
            },
            exactTolerance);
        QVERIFY2(wrong.isEmpty(),
                 qPrintable(QStringLiteral("selection %1: %2").arg(withSelection).arg(wrong)));
    }
    MShaderList::instance()->removeShader(id);
}

QUILLMERE_TEST_MAIN(TestViewComposition)
#include "tst_viewcomposition.moc"
