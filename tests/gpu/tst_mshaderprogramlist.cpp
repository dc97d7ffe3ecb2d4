#include "support/glcontext.h"
#include "support/logwatch.h"
#include "support/testenvironment.h"

#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mframebuffer.h"
#include "gpu/mshaderprogramlist.h"
#include "gpu/mvertexbuffer.h"

#include <QMatrix4x4>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QVector4D>

#include <functional>
#include <memory>
#include <vector>

namespace {

// Every image here is N by N, premultiplied, one QVector4D per texel in 0..1,
// row 0 first; a drawn row r samples texture row r.
constexpr int N = 8;
using Pixels = QVector<QVector4D>;
// Eight-bit targets: one step of rounding and a little of the GPU's own.
constexpr float tolerance = 2.5f / 255.f;
// What the target holds before each draw: a discarded fragment leaves it.
const QVector4D clearColor(10 / 255.f, 20 / 255.f, 30 / 255.f, 40 / 255.f);

struct Sampler
{
    const char* name;
    GLuint texture;
};

// A deterministic premultiplied pattern with transparent, opaque and partial texels.
Pixels pattern(int seed)
{
    Pixels result(N * N);
    for (int i = 0; i < N * N; ++i) {
        const int h = (i * 73 + seed * 151 + 17) % 256;
        const int a = (i + seed) % 5 == 0 ? 0 : (h % 4 == 0 ? 255 : h);
        const int r = a * ((i * 29 + seed * 7) % 256) / 255;
        const int g = a * ((i * 53 + seed * 11) % 256) / 255;
        const int b = a * ((i * 97 + seed * 13) % 256) / 255;
        result[i] = QVector4D(r, g, b, a) / 255.f;
    }
    return result;
}

Pixels filled(const QVector4D& value)
{
    return Pixels(N * N, value);
}

// A selection mask: white, premultiplied, with the given alphas (0..255) cycled.
Pixels mask(const std::vector<int>& alphas)
{
    Pixels result(N * N);
    for (int i = 0; i < N * N; ++i) {
        const float a = alphas[size_t(i) % alphas.size()] / 255.f;
        result[i] = QVector4D(a, a, a, a);
    }
    return result;
}

QString firstMismatch(const Pixels& actual, const Pixels& expected)
{
    if (actual.size() != expected.size())
        return QStringLiteral("%1 pixels read, %2 expected").arg(actual.size()).arg(expected.size());
    for (int i = 0; i < actual.size(); ++i) {
        for (int c = 0; c < 4; ++c) {
            if (qAbs(actual[i][c] - expected[i][c]) > tolerance) {
                auto text = [](const QVector4D& v) {
                    return QStringLiteral("(%1, %2, %3, %4)")
                        .arg(qRound(v.x() * 255))
                        .arg(qRound(v.y() * 255))
                        .arg(qRound(v.z() * 255))
                        .arg(qRound(v.w() * 255));
                };
                return QStringLiteral("pixel (%1, %2): %3, expected %4")
                    .arg(i % N)
                    .arg(i / N)
                    .arg(text(actual[i]), text(expected[i]));
            }
        }
    }
    return QString();
}

#define COMPARE_PIXELS(actual, expected)                                                                     \
    do {                                                                                                     \
        const QString mismatch = firstMismatch(actual, expected);                                            \
        QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));                                                  \
    } while (false)

// Catches the debug stream while it lives.
class DebugCapture
{
public:
    DebugCapture()
    {
        s_lines.clear();
        m_previous = qInstallMessageHandler(&DebugCapture::handle);
    }
    ~DebugCapture() { qInstallMessageHandler(m_previous); }
    QStringList lines() const { return s_lines; }
    DebugCapture(const DebugCapture&) = delete;
    DebugCapture& operator=(const DebugCapture&) = delete;

private:
    static void handle(QtMsgType type, const QMessageLogContext&, const QString& text)
    {
        if (type == QtDebugMsg)
            s_lines.append(text);
    }
    static inline QStringList s_lines;
    QtMessageHandler m_previous;
};

} // namespace

class TestShaderProgramList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void systemProgramsCompileAndLink();
    void unknownNamesAndEmptyList();
    void brokenUserEffectFallsBackUntilRebuilt();
    void basicClipsToPaintedRectangle();
    void paintedRectangleBordersBelongToIt();
    void blitHonoursSelection();
    void colorAndFill();
    void strokeOverLayerAndEraser();
    void selectionOutline();
    void stampingAndColorFeedback();
    void variantsLeaveOutOnlyTheirTest();

private:
    GLuint upload(const Pixels& pixels);
    void release(std::vector<GLuint> textures);
    // Draws one quad over the whole target with the named program and reads the
    // target back.
    Pixels draw(const QString& programName, const std::vector<Sampler>& samplers,
                const std::function<void(QOpenGLShaderProgram*)>& uniforms,
                const QColor& vertexColor = Qt::white, QOpenGLShaderProgram** bound = nullptr,
                int variant = 0);

    QuillmereTest::GLContext m_gl;
    std::unique_ptr<MShaderProgramList> m_list;
    std::unique_ptr<QOpenGLVertexArrayObject> m_vao;
    std::unique_ptr<MVertexBuffer> m_quad;
    std::unique_ptr<MFrameBuffer> m_frameBuffer;
    GLuint m_target = 0;
};

void TestShaderProgramList::initTestCase()
{
    QVERIFY2(m_gl.create(), qPrintable(m_gl.why()));
    m_vao = std::make_unique<QOpenGLVertexArrayObject>();
    QVERIFY(m_vao->create());
    m_quad = std::make_unique<MVertexBuffer>(6);
    QVERIFY(m_quad->create());
    m_frameBuffer = std::make_unique<MFrameBuffer>();
    m_target = upload(filled(QVector4D()));

    m_list = std::make_unique<MShaderProgramList>();
    QVERIFY(m_list->initializeGL());
    QVERIFY(m_list->addSystemPrograms());
    QVERIFY(m_gl.makeCurrent());
}

void TestShaderProgramList::cleanupTestCase()
{
    QVERIFY(m_gl.makeCurrent());
    m_list.reset();
    QVERIFY(m_gl.makeCurrent());
    release({m_target});
    m_frameBuffer->destroy();
    m_quad->destroy();
    m_vao->destroy();
}

GLuint TestShaderProgramList::upload(const Pixels& pixels)
{
    QVector<uchar> bytes(N * N * 4);
    for (int i = 0; i < N * N; ++i)
        for (int c = 0; c < 4; ++c)
            bytes[i * 4 + c] = uchar(qBound(0, qRound(pixels[i][c] * 255.f), 255));
    auto* gl = m_gl.gl();
    GLuint texture = 0;
    gl->glGenTextures(1, &texture);
    gl->glBindTexture(GL_TEXTURE_2D, texture);
    gl->glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, N, N, 0, GL_RGBA, GL_UNSIGNED_BYTE, bytes.constData());
    // Nearest and clamped: a texel reads exactly, and neighbours past the edge
    // read the edge.
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    gl->glBindTexture(GL_TEXTURE_2D, 0);
    return texture;
}

void TestShaderProgramList::release(std::vector<GLuint> textures)
{
    m_gl.gl()->glDeleteTextures(GLsizei(textures.size()), textures.data());
}

Pixels TestShaderProgramList::draw(const QString& programName, const std::vector<Sampler>& samplers,
                                   const std::function<void(QOpenGLShaderProgram*)>& uniforms,
                                   const QColor& vertexColor, QOpenGLShaderProgram** bound, int variant)
{
    auto* gl = m_gl.gl();
    if (bound)
        *bound = nullptr;
    if (!m_frameBuffer->attachTexture(m_target, 0))
        return {};
    gl->glViewport(0, 0, N, N);
    gl->glDisable(GL_BLEND);
    gl->glClearColor(clearColor.x(), clearColor.y(), clearColor.z(), clearColor.w());
    gl->glClear(GL_COLOR_BUFFER_BIT);

    m_quad->bind();
    m_quad->clear();
    const QRectF coordinates[2] = {QRectF(0, 0, 1, 1), QRectF(0, 0, 1, 1)};
    m_quad->appendQuad(QRectF(0, 0, N, N), vertexColor, coordinates, 2);

    QOpenGLShaderProgram* program = m_list->bindWithAttributes(programName, m_vao.get(), variant);
    if (bound)
        *bound = program;
    Pixels result;
    if (program) {
        QMatrix4x4 mvp;
        mvp.ortho(0, N, 0, N, -1, 1);
        program->setUniformValue("mvp", mvp);
        for (size_t unit = 0; unit < samplers.size(); ++unit) {
            gl->glActiveTexture(GLenum(GL_TEXTURE1 + unit));
            gl->glBindTexture(GL_TEXTURE_2D, samplers[unit].texture);
            program->setUniformValue(samplers[unit].name, GLint(unit + 1));
        }
        if (uniforms)
            uniforms(program);
        gl->glDrawArrays(GL_TRIANGLES, 0, m_quad->count());
        m_list->releaseAttributes(program, m_vao.get());
        program->release();

        QVector<uchar> bytes(N * N * 4);
        gl->glPixelStorei(GL_PACK_ALIGNMENT, 1);
        gl->glReadPixels(0, 0, N, N, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
        result.resize(N * N);
        for (int i = 0; i < N * N; ++i)
            result[i] = QVector4D(bytes[i * 4], bytes[i * 4 + 1], bytes[i * 4 + 2], bytes[i * 4 + 3]) / 255.f;
        for (size_t unit = 0; unit < samplers.size(); ++unit) {
            gl->glActiveTexture(GLenum(GL_TEXTURE1 + unit));
            gl->glBindTexture(GL_TEXTURE_2D, 0);
        }
        gl->glActiveTexture(GL_TEXTURE0);
    }
    m_quad->release();
    m_frameBuffer->detachTexture(0);
    m_frameBuffer->release();
    return result;
}

void TestShaderProgramList::systemProgramsCompileAndLink()
{
    QuillmereTest::LogWatch log;
    MShaderProgramList list;
    QVERIFY(!list.isInitialized());
    QVERIFY(list.initializeGL());
    QVERIFY(list.isInitialized());
    // Building goes on in the private context; the caller's stays current.
    QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());
    QVERIFY(list.context() && list.context() != m_gl.context());
    QVERIFY(QOpenGLContext::areSharing(list.context(), m_gl.context()));

    const QStringList names = {"basic", "blit",          "stamping", "color",  "paper",     "shading", "line",
                               "grid",  "colorfeedback", "fill",     "stroke", "selection", "texture"};
    QCOMPARE(list.systemProgramNames(), names);
    QVERIFY(list.addSystemPrograms());
    QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());
    for (const QString& name : names) {
        QOpenGLShaderProgram* program = list.programByName(name);
        QVERIFY2(program && program->isLinked(), qPrintable(name));
        // The resources are where the table says; a second call builds nothing new.
        QVERIFY2(QFile::exists(list.systemProgram(name).vertex), qPrintable(name));
        QVERIFY2(QFile::exists(list.systemProgram(name).fragment), qPrintable(name));
        QCOMPARE(list.addSystemProgram(name), program);
        QCOMPARE(list.bind(name, m_vao.get()), program);
        program->release();
        m_vao->release();
    }
    QVERIFY(QFile::exists(QStringLiteral(":/shaders/colorfeedback_vert.glsl")));
    QCOMPARE(list.systemProgram("stroke").vertex, QStringLiteral(":/shaders/basic_vert.glsl"));
    QCOMPARE(list.systemProgram("colorfeedback").vertex, QStringLiteral(":/shaders/basic_vert.glsl"));
    QCOMPARE(list.systemProgram("shading").vertex, QStringLiteral(":/shaders/shading_vert.glsl"));
    QVERIFY2(!log.added().contains(QStringLiteral("System error")), qPrintable(log.added()));

    list.shutDown();
    QVERIFY(!list.isInitialized());
    QVERIFY(!list.context());
    QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());
}

void TestShaderProgramList::unknownNamesAndEmptyList()
{
    // A list with no context and no programs hands out nothing and touches nothing.
    {
        MShaderProgramList empty;
        m_quad->bind();
        QCOMPARE(empty.bindWithAttributes(QStringLiteral("basic"), m_vao.get()), nullptr);
        QCOMPARE(empty.bind(QStringLiteral("no such effect"), nullptr), nullptr);
        QCOMPARE(empty.program(QStringLiteral("basic")), nullptr);
        MShaderProgramList::setupAttributes(nullptr, m_vao.get());
        MShaderProgramList::releaseAttributes(nullptr, m_vao.get());
        m_quad->release();
        QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());
    }

    // A fresh list builds "basic" on demand for a name it doesn't know, and the
    // caller's context is current again before any uniform is set.
    MShaderProgramList list;
    QVERIFY(list.initializeGL());
    QCOMPARE(list.programByName(QStringLiteral("basic")), nullptr);
    QOpenGLShaderProgram* program = list.bind(QStringLiteral("no such effect"), m_vao.get());
    QVERIFY(program);
    QCOMPARE(program, list.programByName(QStringLiteral("basic")));
    QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());
    program->release();
    m_vao->release();
    QCOMPARE(list.programByName(QStringLiteral("no such effect")), nullptr);

    // And the unknown name draws what "basic" draws.
    const Pixels source = pattern(3);
    const GLuint texture = upload(source);
    QOpenGLShaderProgram* bound = nullptr;
    const Pixels drawn = draw(
        QStringLiteral("no such effect"), {{"f_currentLayerTexture", texture}},
        [](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_opacity", 0.5f);
            p->setUniformValue("f_clipToPaintedRect", false);
        },
        Qt::white, &bound);
    QCOMPARE(bound, m_list->programByName(QStringLiteral("basic")));
    Pixels expected(source);
    for (QVector4D& texel : expected)
        texel *= 0.5f;
    COMPARE_PIXELS(drawn, expected);
    release({texture});
}

void TestShaderProgramList::brokenUserEffectFallsBackUntilRebuilt()
{
    auto owned = std::make_unique<MShader>();
    owned->setSource(QStringLiteral("@main\nf_color = vec4(0.0, 0.0, 1.0, 1.0) +;\n"));
    MShader* shader = MShaderList::instance()->addShader(std::move(owned));
    const QString id = shader->id();
    QVERIFY(!id.isEmpty());

    QOpenGLShaderProgram* basic = m_list->programByName(QStringLiteral("basic"));
    QStringList lines;
    {
        DebugCapture capture;
        QCOMPARE(m_list->bind(id, m_vao.get()), basic);
        lines = capture.lines();
    }
    QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());
    QVERIFY(!shader->isValid());
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines.at(0).startsWith(QStringLiteral("Could not compile fragment shader %1:\nError: ").arg(id)),
             qPrintable(lines.at(0)));
    // The compiler's own words follow, with the line of the error.
    QVERIFY2(lines.at(0).length() >
                 QStringLiteral("Could not compile fragment shader %1:\nError: ").arg(id).length(),
             qPrintable(lines.at(0)));
    QCOMPARE(lines.at(1), QStringLiteral("MShaderProgramList::bind: program link"));
    QCOMPARE(lines.at(2), QStringLiteral("MShaderProgramList::bind: fallback to basic"));

    // Stored once: the next bind doesn't compile again, it only retries the link.
    {
        DebugCapture capture;
        QCOMPARE(m_list->bind(id, m_vao.get()), basic);
        lines = capture.lines();
    }
    QCOMPARE(lines, QStringList({QStringLiteral("MShaderProgramList::bind: program link"),
                                 QStringLiteral("MShaderProgramList::bind: fallback to basic")}));
    QVERIFY(m_list->programByName(id) && m_list->programByName(id) != basic);
    basic->release();
    m_vao->release();

    // Drawing goes on with "basic".
    const Pixels source = pattern(5);
    const GLuint texture = upload(source);
    auto uniforms = [](QOpenGLShaderProgram* p) {
        p->setUniformValue("f_opacity", 1.0f);
        p->setUniformValue("f_clipToPaintedRect", false);
    };
    Pixels drawn;
    {
        DebugCapture capture;
        drawn = draw(id, {{"f_currentLayerTexture", texture}}, uniforms);
    }
    COMPARE_PIXELS(drawn, source);

    // Fixed and rebuilt, the effect is what binds and draws.
    shader->setSource(QStringLiteral("@main\nf_color = vec4(0.0, 0.0, 1.0, 1.0) * f_opacity;\n"));
    QOpenGLShaderProgram* rebuilt = m_list->rebuildUserProgram(id.toLower());
    QVERIFY(rebuilt);
    QVERIFY(rebuilt->isLinked());
    QVERIFY(shader->isValid());
    QCOMPARE(m_list->programByName(id), rebuilt);
    QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());
    {
        DebugCapture capture;
        QOpenGLShaderProgram* bound = nullptr;
        drawn = draw(
            id, {{"f_currentLayerTexture", texture}},
            [](QOpenGLShaderProgram* p) {
                p->setUniformValue("f_opacity", 0.5f);
                p->setUniformValue("f_clipToPaintedRect", false);
            },
            Qt::white, &bound);
        QCOMPARE(bound, rebuilt);
        QVERIFY2(capture.lines().isEmpty(), qPrintable(capture.lines().join('|')));
    }
    COMPARE_PIXELS(drawn, filled(QVector4D(0.f, 0.f, 0.5f, 0.5f)));

    // Unknown to the effect list, a name can't be rebuilt.
    QCOMPARE(m_list->rebuildUserProgram(QStringLiteral("NO-SUCH-EFFECT")), nullptr);
    release({texture});
    QVERIFY(MShaderList::instance()->removeShader(id));
}

void TestShaderProgramList::basicClipsToPaintedRectangle()
{
    const Pixels source = pattern(1);
    const GLuint texture = upload(source);

    // The tile stands at (100, 200) on the canvas, one canvas pixel per texel;
    // texel centres fall at 100.5, 101.5 ... The painted rectangle covers the
    // centres of columns 2 to 4 and rows 4 and 5.
    auto clipped = [](QOpenGLShaderProgram* p) {
        p->setUniformValue("f_opacity", 0.6f);
        p->setUniformValue("f_clipToPaintedRect", true);
        p->setUniformValue("f_texturePos", QVector2D(100.f, 200.f));
        p->setUniformValue("f_textureSize", float(N));
        p->setUniformValue("f_paintedRectPos", QVector2D(102.25f, 203.75f));
        p->setUniformValue("f_paintedRectWidth", 3.0f);
        p->setUniformValue("f_paintedRectHeight", 2.5f);
    };
    Pixels expected(N * N, clearColor);
    for (int y = 4; y <= 5; ++y)
        for (int x = 2; x <= 4; ++x)
            expected[y * N + x] = source[y * N + x] * 0.6f;
    COMPARE_PIXELS(draw(QStringLiteral("basic"), {{"f_currentLayerTexture", texture}}, clipped), expected);

    // The same rectangle with clipping off: everything, scaled.
    auto unclipped = [&](QOpenGLShaderProgram* p) {
        clipped(p);
        p->setUniformValue("f_clipToPaintedRect", false);
    };
    for (int i = 0; i < N * N; ++i)
        expected[i] = source[i] * 0.6f;
    COMPARE_PIXELS(draw(QStringLiteral("basic"), {{"f_currentLayerTexture", texture}}, unclipped), expected);
    release({texture});
}

void TestShaderProgramList::paintedRectangleBordersBelongToIt()
{
    // With a texture size of 0 every fragment lands exactly on f_texturePos, so
    // that a painted rectangle whose edge passes there tests the border itself,
    // free of interpolation. Every program of the drawing family is held to it.
    const Pixels layer = pattern(2);
    const Pixels stroke = pattern(4);
    const GLuint layerTexture = upload(layer);
    const GLuint strokeTexture = upload(stroke);
    const std::vector<Sampler> samplers = {{"f_currentLayerTexture", layerTexture},
                                           {"f_strokeLayerTexture", strokeTexture},
                                           {"f_paperTexture", layerTexture}};

    auto withRect = [](QPointF position, QSizeF size, bool clip) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_clipToPaintedRect", clip);
            p->setUniformValue("f_clipToSelection", false);
            p->setUniformValue("f_texturePos", QVector2D(100.f, 200.f));
            p->setUniformValue("f_textureSize", 0.0f);
            p->setUniformValue("f_paintedRectPos", QVector2D(position));
            p->setUniformValue("f_paintedRectWidth", float(size.width()));
            p->setUniformValue("f_paintedRectHeight", float(size.height()));
        };
    };
    const Pixels allClear(N * N, clearColor);
    for (const char* name : {"basic", "blit", "color", "paper", "stroke"}) {
        const QString program = QString::fromLatin1(name);
        const QColor vertexColor(200, 100, 50, 255);
        const Pixels whole = draw(program, samplers, withRect({0, 0}, {0, 0}, false), vertexColor);
        QVERIFY2(!whole.isEmpty() && firstMismatch(whole, allClear) != QString(), name);
        // Top-left corner on the point, then bottom-right corner on it, then an
        // empty rectangle on it: all three hold the point.
        COMPARE_PIXELS(draw(program, samplers, withRect({100, 200}, {3, 4}, true), vertexColor), whole);
        COMPARE_PIXELS(draw(program, samplers, withRect({97, 196}, {3, 4}, true), vertexColor), whole);
        COMPARE_PIXELS(draw(program, samplers, withRect({100, 200}, {0, 0}, true), vertexColor), whole);
        // Just beside the point, on either axis and either side, nothing is written.
        COMPARE_PIXELS(draw(program, samplers, withRect({100.5, 200}, {3, 4}, true), vertexColor), allClear);
        COMPARE_PIXELS(draw(program, samplers, withRect({100, 200.5}, {3, 4}, true), vertexColor), allClear);
        COMPARE_PIXELS(draw(program, samplers, withRect({96.5, 196}, {3, 4}, true), vertexColor), allClear);
        COMPARE_PIXELS(draw(program, samplers, withRect({97, 195.5}, {3, 4}, true), vertexColor), allClear);
    }

    release({layerTexture, strokeTexture});
}

void TestShaderProgramList::blitHonoursSelection()
{
    const Pixels source = pattern(6);
    // 1/255 and 2/255 are under the 1% threshold, 3/255 is over it.
    const std::vector<int> alphas = {0, 1, 2, 3, 64, 128, 200, 255, 0, 255, 17};
    const Pixels selection = mask(alphas);
    const GLuint sourceTexture = upload(source);
    const GLuint selectionTexture = upload(selection);
    const std::vector<Sampler> samplers = {{"f_currentLayerTexture", sourceTexture},
                                           {"f_selectionLayerTexture", selectionTexture}};

    auto uniforms = [](bool clipToSelection) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_opacity", 0.8f);
            p->setUniformValue("f_clipToPaintedRect", false);
            p->setUniformValue("f_clipToSelection", clipToSelection);
        };
    };
    Pixels expected(N * N);
    for (int i = 0; i < N * N; ++i)
        expected[i] = source[i] * 0.8f;
    COMPARE_PIXELS(draw(QStringLiteral("blit"), samplers, uniforms(false)), expected);

    for (int i = 0; i < N * N; ++i) {
        const float a = selection[i].w();
        expected[i] = a < 0.01f ? clearColor : source[i] * 0.8f * a;
    }
    COMPARE_PIXELS(draw(QStringLiteral("blit"), samplers, uniforms(true)), expected);
    release({sourceTexture, selectionTexture});
}

void TestShaderProgramList::colorAndFill()
{
    auto opacity = [](float value) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_opacity", value);
            p->setUniformValue("f_clipToPaintedRect", false);
        };
    };
    // "color" writes the vertex colour premultiplied, times the opacity.
    COMPARE_PIXELS(draw(QStringLiteral("color"), {}, opacity(0.5f), QColor(255, 128, 0, 255)),
                   filled(QVector4D(1.f, 128 / 255.f, 0.f, 1.f) * 0.5f));
    const float a = 128 / 255.f;
    COMPARE_PIXELS(draw(QStringLiteral("color"), {}, opacity(0.75f), QColor(200, 100, 50, 128)),
                   filled(QVector4D(200 / 255.f * a, 100 / 255.f * a, 50 / 255.f * a, a) * 0.75f));

    // "fill" keeps the layer only where the selection is exactly empty; the
    // faintest selection takes the whole colour.
    const Pixels layer = pattern(7);
    const Pixels selection = mask({0, 1, 255, 128, 0, 0, 3});
    const GLuint layerTexture = upload(layer);
    const GLuint selectionTexture = upload(selection);
    const std::vector<Sampler> samplers = {{"f_currentLayerTexture", layerTexture},
                                           {"f_selectionLayerTexture", selectionTexture}};
    auto fill = [](const QColor& color, bool clipToSelection) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_fillColor", color);
            p->setUniformValue("f_clipToSelection", clipToSelection);
        };
    };
    const QVector4D opaque(30 / 255.f, 60 / 255.f, 90 / 255.f, 1.f);
    COMPARE_PIXELS(draw(QStringLiteral("fill"), samplers, fill(QColor(30, 60, 90), false)), filled(opaque));
    Pixels expected(N * N);
    for (int i = 0; i < N * N; ++i)
        expected[i] = selection[i].w() == 0.f ? layer[i] : opaque;
    COMPARE_PIXELS(draw(QStringLiteral("fill"), samplers, fill(QColor(30, 60, 90), true)), expected);
    // A translucent fill lands premultiplied, as every tile holds its colour.
    COMPARE_PIXELS(draw(QStringLiteral("fill"), samplers, fill(QColor(255, 0, 0, 128), false)),
                   filled(QVector4D(a, 0.f, 0.f, a)));
    // Transparent clears.
    COMPARE_PIXELS(draw(QStringLiteral("fill"), samplers, fill(QColor(0, 0, 0, 0), false)),
                   filled(QVector4D()));
    release({layerTexture, selectionTexture});
}

void TestShaderProgramList::strokeOverLayerAndEraser()
{
    const Pixels layer = pattern(8);
    const Pixels stroke = pattern(9);
    const GLuint layerTexture = upload(layer);
    const GLuint strokeTexture = upload(stroke);
    const std::vector<Sampler> samplers = {{"f_currentLayerTexture", layerTexture},
                                           {"f_strokeLayerTexture", strokeTexture}};
    const float strokeOpacity = 0.7f;
    const float opacity = 0.9f;
    auto uniforms = [=](bool eraser) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_opacity", opacity);
            p->setUniformValue("f_strokeOpacity", strokeOpacity);
            p->setUniformValue("f_eraserMode", eraser);
            p->setUniformValue("f_clipToPaintedRect", false);
        };
    };

    bool strokeHasHoles = false;
    Pixels expected(N * N);
    for (int i = 0; i < N * N; ++i) {
        const QVector4D& L = layer[i];
        const QVector4D& S = stroke[i];
        const float a = S.w() * strokeOpacity;
        expected[i] = (S * strokeOpacity + (1.f - a) * L) * opacity;
        strokeHasHoles = strokeHasHoles || (S.w() == 0.f && L.w() > 0.f);
    }
    QVERIFY(strokeHasHoles);
    COMPARE_PIXELS(draw(QStringLiteral("stroke"), samplers, uniforms(false)), expected);

    for (int i = 0; i < N * N; ++i) {
        const QVector4D& L = layer[i];
        const QVector4D& S = stroke[i];
        expected[i] = (S.w() == 0.f ? L : L * (1.f - S.w() * strokeOpacity)) * opacity;
    }
    COMPARE_PIXELS(draw(QStringLiteral("stroke"), samplers, uniforms(true)), expected);
    release({layerTexture, strokeTexture});
}

void TestShaderProgramList::selectionOutline()
{
    // A 5 by 6 block, a faint lone texel in a corner, and a hole in the block.
    Pixels selection(N * N, QVector4D());
    for (int y = 1; y <= 6; ++y)
        for (int x = 2; x <= 6; ++x)
            selection[y * N + x] = QVector4D(1, 1, 1, 1);
    selection[7 * N + 0] = QVector4D(100, 100, 100, 100) / 255.f;
    selection[3 * N + 5] = QVector4D();
    const GLuint texture = upload(selection);

    Pixels expected(N * N, clearColor);
    const QVector4D green(0.f, 0.7f, 0.f, 0.7f);
    for (int y = 0; y < N; ++y) {
        for (int x = 0; x < N; ++x) {
            if (selection[y * N + x].w() == 0.f)
                continue;
            bool edge = false;
            for (int j = -1; j <= 1; ++j)
                for (int i = -1; i <= 1; ++i)
                    edge =
                        edge || selection[qBound(0, y + j, N - 1) * N + qBound(0, x + i, N - 1)].w() == 0.f;
            if (edge)
                expected[y * N + x] = green;
        }
    }
    // Opacity has deliberately no effect on the outline.
    auto uniforms = [](QOpenGLShaderProgram* p) {
        p->setUniformValue("f_textureSize", float(N));
        p->setUniformValue("f_opacity", 0.3f);
        p->setUniformValue("f_globalTime", 12.0f);
        p->setUniformValue("f_clipToPaintedRect", false);
    };
    const Pixels drawn = draw(QStringLiteral("selection"), {{"f_currentLayerTexture", texture}}, uniforms);
    COMPARE_PIXELS(drawn, expected);
    // Interior texels were there to be left out.
    QCOMPARE(drawn[4 * N + 3], clearColor);

    // Clipped to a painted rectangle over the centres of columns 2 to 4 and
    // rows 1 to 3, with the tile at (100, 200).
    auto clipped = [&](QOpenGLShaderProgram* p) {
        uniforms(p);
        p->setUniformValue("f_clipToPaintedRect", true);
        p->setUniformValue("f_texturePos", QVector2D(100.f, 200.f));
        p->setUniformValue("f_paintedRectPos", QVector2D(102.25f, 201.25f));
        p->setUniformValue("f_paintedRectWidth", 3.0f);
        p->setUniformValue("f_paintedRectHeight", 2.5f);
    };
    for (int y = 0; y < N; ++y)
        for (int x = 0; x < N; ++x)
            if (x < 2 || x > 4 || y < 1 || y > 3)
                expected[y * N + x] = clearColor;
    QVERIFY(expected[1 * N + 3] == green && expected[3 * N + 4] == green);
    COMPARE_PIXELS(draw(QStringLiteral("selection"), {{"f_currentLayerTexture", texture}}, clipped),
                   expected);
    release({texture});
}

void TestShaderProgramList::stampingAndColorFeedback()
{
    // One stamp over the whole target, hard and unsmoothed: alpha 1 inside the
    // circle of diameter 1 in stamp coordinates, nothing outside. No texel
    // centre of an 8 by 8 grid lies near that circle.
    auto inside = [](int x, int y) {
        const float u = (x + 0.5f) / N - 0.5f;
        const float v = (y + 0.5f) / N - 0.5f;
        return u * u + v * v < 0.25f;
    };
    const Pixels transparent = filled(QVector4D());
    const QVector4D layerColor(0.5f, 1.f, 0.2f, 1.f);
    const GLuint emptyTexture = upload(transparent);
    const GLuint layerTexture = upload(filled(layerColor));
    auto stamp = [](int mode) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_radius", float(N) / 2.f);
            p->setUniformValue("f_hardness", 1.0f);
            p->setUniformValue("f_antialiasing", 1);
            p->setUniformValue("f_compositionMode", mode);
            p->setUniformValue("f_clipToSelection", false);
        };
    };
    const QColor brush(255, 128, 0);
    const QVector4D brushColor(1.f, 128 / 255.f, 0.f, 1.f);
    auto expectedStamp = [&](const QVector4D& colour) {
        Pixels result(N * N, clearColor);
        for (int y = 0; y < N; ++y)
            for (int x = 0; x < N; ++x)
                if (inside(x, y))
                    result[y * N + x] = colour;
        return result;
    };
    // Normal, over a transparent layer and over an opaque one.
    COMPARE_PIXELS(
        draw(QStringLiteral("stamping"), {{"f_currentLayerTexture", emptyTexture}}, stamp(0), brush),
        expectedStamp(brushColor));
    COMPARE_PIXELS(
        draw(QStringLiteral("stamping"), {{"f_currentLayerTexture", layerTexture}}, stamp(0), brush),
        expectedStamp(brushColor));
    // A user mode has no branch here and acts as normal.
    COMPARE_PIXELS(
        draw(QStringLiteral("stamping"), {{"f_currentLayerTexture", layerTexture}}, stamp(1000), brush),
        expectedStamp(brushColor));
    // Multiply with the layer under it; over nothing the colour lands unchanged.
    COMPARE_PIXELS(
        draw(QStringLiteral("stamping"), {{"f_currentLayerTexture", layerTexture}}, stamp(13), brush),
        expectedStamp(QVector4D(0.5f, 128 / 255.f, 0.f, 1.f)));
    COMPARE_PIXELS(
        draw(QStringLiteral("stamping"), {{"f_currentLayerTexture", emptyTexture}}, stamp(13), brush),
        expectedStamp(brushColor));
    // Foreground out over opaque paint writes nothing at all.
    COMPARE_PIXELS(
        draw(QStringLiteral("stamping"), {{"f_currentLayerTexture", layerTexture}}, stamp(7), brush),
        expectedStamp(QVector4D()));

    // Colour feedback: a fresh sample without flow takes the paint under the
    // brush, unpremultiplied and opaque, and white where there is none; later
    // samples move towards it by the absorption rate.
    const Pixels layer = pattern(10);
    const Pixels previous = pattern(11);
    const GLuint sampleLayer = upload(layer);
    const GLuint previousSample = upload(previous);
    const std::vector<Sampler> samplers = {{"f_currentLayerTexture", sampleLayer},
                                           {"f_colorTexture", previousSample}};
    auto unmultiply = [](const QVector4D& c) { return c.toVector3D() / qMax(1.f / 256.f, c.w()); };
    auto feedback = [](bool clear, float absorption, float flow) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_clear", clear);
            p->setUniformValue("f_colorAbsorbtionRate", absorption);
            p->setUniformValue("f_colorFlowingRate", flow);
        };
    };
    Pixels expected(N * N);
    for (int i = 0; i < N * N; ++i)
        expected[i] = layer[i].w() == 0.f ? QVector4D(1, 1, 1, 1) : QVector4D(unmultiply(layer[i]), 1.f);
    COMPARE_PIXELS(draw(QStringLiteral("colorfeedback"), samplers, feedback(true, 0.25f, 0.f)), expected);
    COMPARE_PIXELS(draw(QStringLiteral("colorfeedback"), samplers, feedback(true, 0.25f, 0.5f), brush),
                   filled(brushColor));
    for (int i = 0; i < N * N; ++i) {
        const QVector3D prev = unmultiply(previous[i]);
        const QVector3D toward = layer[i].w() == 0.f ? QVector3D(1, 1, 1) : unmultiply(layer[i]);
        expected[i] = QVector4D(prev + (toward - prev) * 0.25f, 1.f);
    }
    COMPARE_PIXELS(draw(QStringLiteral("colorfeedback"), samplers, feedback(false, 0.25f, 0.f)), expected);
    release({emptyTexture, layerTexture, sampleLayer, previousSample});
}

QUILLMERE_TEST_MAIN(TestShaderProgramList)
void TestShaderProgramList::variantsLeaveOutOnlyTheirTest()
{
    // The macros go right after the #version line, which must stay first.
    QCOMPARE(MShaderProgramList::variantSource(QStringLiteral("#version 330 core\nvoid main() {}"),
                                               MShaderProgramList::InsidePaintedRect |
                                                   MShaderProgramList::NoSelectionClip),
             QStringLiteral("#version 330 core\n#define M_INSIDE_PAINTED_RECT\n#define M_NO_SELECTION_CLIP\n"
                            "void main() {}"));
    QCOMPARE(MShaderProgramList::variantSource(QStringLiteral("#version 330 core\nx"), 0),
             QStringLiteral("#version 330 core\nx"));

    const Pixels source = pattern(7);
    const GLuint texture = upload(source);
    const int inside = MShaderProgramList::InsidePaintedRect;
    QOpenGLShaderProgram* basic = m_list->programByName(QStringLiteral("basic"));

    // "basic" built without its painted-rectangle test: where the test would
    // discard nothing it draws the same, and where it would, it no longer does,
    // which is why the engine asks for it only for cells inside the rectangle.
    auto rect = [](QPointF position, QSizeF size) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_opacity", 0.8f);
            p->setUniformValue("f_clipToPaintedRect", true);
            p->setUniformValue("f_texturePos", QVector2D(0.f, 0.f));
            p->setUniformValue("f_textureSize", float(N));
            p->setUniformValue("f_paintedRectPos", QVector2D(position));
            p->setUniformValue("f_paintedRectWidth", float(size.width()));
            p->setUniformValue("f_paintedRectHeight", float(size.height()));
        };
    };
    Pixels scaled(source);
    for (QVector4D& texel : scaled)
        texel *= 0.8f;
    QOpenGLShaderProgram* bound = nullptr;
    COMPARE_PIXELS(draw(QStringLiteral("basic"), {{"f_currentLayerTexture", texture}}, rect({0, 0}, {N, N}),
                        Qt::white, &bound, inside),
                   scaled);
    QVERIFY(bound && bound != basic && bound->isLinked());
    QCOMPARE(m_list->variant(QStringLiteral("basic"), inside), bound);
    const Pixels half =
        draw(QStringLiteral("basic"), {{"f_currentLayerTexture", texture}}, rect({0, 0}, {N / 2.0, N}));
    QVERIFY(firstMismatch(half, scaled) != QString());
    COMPARE_PIXELS(draw(QStringLiteral("basic"), {{"f_currentLayerTexture", texture}},
                        rect({0, 0}, {N / 2.0, N}), Qt::white, nullptr, inside),
                   scaled);

    // A program without the guard has no variant: the plain one is bound.
    QCOMPARE(m_list->variant(QStringLiteral("blit"), inside), nullptr);
    QCOMPARE(m_list->bind(QStringLiteral("blit"), m_vao.get(), inside),
             m_list->programByName(QStringLiteral("blit")));
    m_list->programByName(QStringLiteral("blit"))->release();
    m_vao->release();
    QCOMPARE(m_list->variant(QStringLiteral("no such effect"), inside), nullptr);
    QCOMPARE(m_list->bind(QStringLiteral("no such effect"), m_vao.get(), inside),
             m_list->variant(QStringLiteral("basic"), inside));
    basic->release();
    m_vao->release();
    QCOMPARE(m_list->variant(QStringLiteral("basic"), 0), nullptr);

    // An effect without its selection block ignores a selection, and with
    // f_clipToSelection false draws what the full program draws.
    auto owned = std::make_unique<MShader>();
    owned->setSource(QStringLiteral("@main\nvec4 c = texture(f_currentLayerTexture, v_texCoords0);\n"
                                    "f_color = vec4(c.b, c.g, c.r, c.a) * f_opacity;\n"));
    MShader* shader = MShaderList::instance()->addShader(std::move(owned));
    const QString id = shader->id();
    const GLuint selection = upload(mask({0, 128, 255}));
    const std::vector<Sampler> samplers = {{"f_currentLayerTexture", texture},
                                           {"f_selectionLayerTexture", selection}};
    auto effectUniforms = [](bool clipToSelection) {
        return [=](QOpenGLShaderProgram* p) {
            p->setUniformValue("f_opacity", 1.0f);
            p->setUniformValue("f_clipToPaintedRect", false);
            p->setUniformValue("f_clipToSelection", clipToSelection);
        };
    };
    Pixels swapped(source);
    for (QVector4D& texel : swapped)
        texel = QVector4D(texel.z(), texel.y(), texel.x(), texel.w());
    const int noSelection = MShaderProgramList::NoSelectionClip;
    COMPARE_PIXELS(draw(id, samplers, effectUniforms(false)), swapped);
    COMPARE_PIXELS(draw(id, samplers, effectUniforms(false), Qt::white, &bound, noSelection), swapped);
    QVERIFY(bound && bound != m_list->programByName(id));
    QVERIFY(firstMismatch(draw(id, samplers, effectUniforms(true)), swapped) != QString());
    COMPARE_PIXELS(draw(id, samplers, effectUniforms(true), Qt::white, nullptr, noSelection), swapped);

    // An edited effect takes its variants with it: they are built anew from
    // the new source.
    shader->setSource(QStringLiteral("@main\nf_color = vec4(0.0, 0.5, 0.0, 0.5) * f_opacity;\n"));
    QVERIFY(m_list->rebuildUserProgram(id));
    COMPARE_PIXELS(draw(id, samplers, effectUniforms(false), Qt::white, nullptr, noSelection),
                   filled(QVector4D(0.f, 0.5f, 0.f, 0.5f)));

    // A broken effect falls back to "basic", in the variant of the flags that
    // "basic" has.
    shader->setSource(QStringLiteral("@main\nf_color = ;\n"));
    {
        DebugCapture capture;
        QVERIFY(m_list->rebuildUserProgram(id));
        QCOMPARE(m_list->bind(id, m_vao.get(), noSelection | inside),
                 m_list->variant(QStringLiteral("basic"), inside));
    }
    basic->release();
    m_vao->release();
    QCOMPARE(m_list->variant(id, noSelection), nullptr);
    QCOMPARE(QOpenGLContext::currentContext(), m_gl.context());

    release({texture, selection});
    QVERIFY(MShaderList::instance()->removeShader(id));
}

#include "tst_mshaderprogramlist.moc"
