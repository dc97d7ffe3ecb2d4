#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "app/mlogger.h"
#include "gpu/mframebuffer.h"
#include "gpu/mopengl.h"
#include "gpu/mvertexbuffer.h"

#include <QOpenGLTexture>

class TestOpenGL : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void driverProbeRecordsLimits();
    void framebufferAttachesAndReportsIncomplete();
    void vertexBufferLayoutAndCapacity();
};

void TestOpenGL::driverProbeRecordsLimits()
{
    MOpenGL probe;
    QVERIFY(!probe.isInitialized());
    QVERIFY2(probe.initialize(), "the driver probe failed: no OpenGL 3.3 core context");
    QVERIFY(probe.isInitialized());
    QVERIFY(probe.maxTextureImageUnits() >= 16);
    QVERIFY(probe.maxTextureSize() >= 2048);
    // A second call answers from what the first found.
    QVERIFY(probe.initialize());

    // Contexts made by the probe share with the global context and are 3.3 core.
    QuillmereTest::GLContext context;
    QVERIFY2(context.create(), qPrintable(context.why()));
    QVERIFY(QOpenGLContext::areSharing(context.context(), QOpenGLContext::globalShareContext()));
    QCOMPARE(context.context()->format().profile(), QSurfaceFormat::CoreProfile);
}

void TestOpenGL::framebufferAttachesAndReportsIncomplete()
{
    QuillmereTest::GLContext context;
    QVERIFY2(context.create(), qPrintable(context.why()));
    auto* gl = context.gl();

    MFrameBuffer framebuffer;
    QVERIFY(!framebuffer.detachTexture(0)); // nothing made yet

    QOpenGLTexture texture(QOpenGLTexture::Target2D);
    texture.setSize(8, 8);
    texture.setFormat(QOpenGLTexture::RGBA8_UNorm);
    texture.allocateStorage();
    QVERIFY(framebuffer.attachTexture(texture.textureId(), 0));
    QVERIFY(framebuffer.name() != 0);
    GLint bound = 0;
    gl->glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    QCOMPARE(GLuint(bound), framebuffer.name());

    gl->glClearColor(0.f, 1.f, 0.f, 1.f);
    gl->glClear(GL_COLOR_BUFFER_BIT);
    uchar pixel[4] = {};
    gl->glReadPixels(3, 3, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    QCOMPARE(int(pixel[1]), 255);
    QCOMPARE(int(pixel[0]), 0);

    // With no image attached the framebuffer is incomplete, and it stays bound.
    QVERIFY(framebuffer.detachTexture(0));
    QVERIFY(!framebuffer.attachTexture(0, 0));
    gl->glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    QCOMPARE(GLuint(bound), framebuffer.name());
    QCOMPARE(MFrameBuffer::statusName(GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT),
             QStringLiteral("GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT"));
    QCOMPARE(MFrameBuffer::statusName(0x1234), QStringLiteral("?"));
    QVERIFY(MFrameBuffer::statusName(GL_FRAMEBUFFER_COMPLETE).isEmpty());

    framebuffer.release();
    framebuffer.destroy();
    QCOMPARE(framebuffer.name(), 0u);
}

void TestOpenGL::vertexBufferLayoutAndCapacity()
{
    QuillmereTest::GLContext context;
    QVERIFY2(context.create(), qPrintable(context.why()));

    MVertexBuffer buffer(7);
    QVERIFY(buffer.create());
    QVERIFY(buffer.bind());
    QCOMPARE(buffer.size(), 7 * 112);

    const QRectF coordinates[2] = {QRectF(0, 0, 1, 1), QRectF(10, 20, 30, 40)};
    QVERIFY(buffer.appendQuad(QRectF(100, 200, 10, 20), QColor(255, 0, 0, 255), coordinates, 2));
    QCOMPARE(buffer.count(), 6);
    // The seventh vertex fits, the eighth is dropped.
    QVERIFY(!buffer.appendQuad(QRectF(0, 0, 1, 1), QRectF(0, 0, 1, 1), Qt::white, 2));
    QCOMPARE(buffer.count(), 7);

    QVector<MVertex> vertices(7);
    QVERIFY(buffer.read(0, vertices.data(), 7 * 112));
    // bottom-left, top-left, bottom-right, top-left, top-right, bottom-right
    const QPointF expected[6] = {{100, 220}, {100, 200}, {110, 220}, {100, 200}, {110, 200}, {110, 220}};
    const QPointF expectedSet1[6] = {{10, 60}, {10, 20}, {40, 60}, {10, 20}, {40, 20}, {40, 60}};
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(QPointF(vertices[i].position[0], vertices[i].position[1]), expected[i]);
        QCOMPARE(QPointF(vertices[i].textureCoordinates[1][0], vertices[i].textureCoordinates[1][1]),
                 expectedSet1[i]);
        QCOMPARE(vertices[i].color[0], 1.f);
        QCOMPARE(vertices[i].color[3], 1.f);
        QCOMPARE(vertices[i].modelMatrix[0], 1.f);
        QCOMPARE(vertices[i].modelMatrix[1], 0.f);
        QCOMPARE(vertices[i].textureCoordinates[2][0], 0.f);
    }
    // The single-set quad writes set 2 only.
    QCOMPARE(vertices[6].textureCoordinates[2][1], 1.f);
    QCOMPARE(vertices[6].textureCoordinates[0][1], 0.f);
    buffer.clear();
    QCOMPARE(buffer.count(), 0);
    buffer.release();
    buffer.destroy();
}

QUILLMERE_TEST_MAIN(TestOpenGL)
#include "tst_mopengl.moc"
