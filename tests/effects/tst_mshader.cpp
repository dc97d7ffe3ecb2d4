#include "support/glcontext.h"
#include "support/testenvironment.h"

#include "effects/mfield.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "effects/mshaderobject.h"
#include "effects/mtexture.h"
#include "effects/mvalues.h"

#include <QOpenGLShaderProgram>

class TestShader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sectionsSplitAsWritten();
    void assemblyWrapsTheBodyInHeaderAndFooter();
    void parseIsCachedUntilTheSourceChanges();
    void errorsKeepWhatWasThere();
    void optionsBecomeGlConstants();
    void shaderObjectsFollowTheirEffect();
    void assembledEffectsCompileAndTakeUniforms();
    void commandLineChecksAnEffectFile();

private:
    static QString cliPath() { return QFileInfo(QStringLiteral(QUILLMERE_APP_PATH)).path() + "/quillmere-cli"; }
};

void TestShader::sectionsSplitAsWritten()
{
    MShader shader;
    shader.setSource(QStringLiteral("lost before any section\n"
                                    "  @FUNCTIONS  \n"
                                    "    float twice(float x) { return 2.0 * x; }\n"
                                    "@main\n"
                                    "\tf_color = vec4(1.0);\n"
                                    "@ functions\n"
                                    "not read: a blank after the at sign makes another name\n"
                                    "@Functions\n"
                                    "float half(float x) { return x / 2.0; }\n"
                                    "@unknown\n"
                                    "ignored\n"));
    QCOMPARE(shader.section(QStringLiteral(" functions ")),
             QStringList({"float twice(float x) { return 2.0 * x; }", "float half(float x) { return x / 2.0; }"}));
    QCOMPARE(shader.section(QStringLiteral("MAIN")), QStringList({"f_color = vec4(1.0);"}));
    QVERIFY(shader.section(QStringLiteral("params")).isEmpty());
    QVERIFY(shader.source().startsWith(QStringLiteral("lost before any section")));

    bool ok = false;
    const QString assembled = shader.fragmentSource(&ok);
    QVERIFY(ok);
    QVERIFY(!assembled.contains(QStringLiteral("lost before")));
    QVERIFY(assembled.indexOf(QStringLiteral("twice")) < assembled.indexOf(QStringLiteral("half")));
    QVERIFY(assembled.contains(QStringLiteral("\tf_color = vec4(1.0);")));
}

void TestShader::assemblyWrapsTheBodyInHeaderAndFooter()
{
    MShader shader;
    QCOMPARE(shader.source(), QStringLiteral("@main"));
    QCOMPARE(shader.id(), shader.id().toUpper());
    QVERIFY(!QUuid(shader.id()).isNull());

    bool ok = false;
    const QStringList lines = shader.fragmentSource(&ok).split(QLatin1Char('\n'));
    QVERIFY(ok);
    QCOMPARE(lines.first(), QStringLiteral("#version 330 core"));
    const int mainAt = lines.indexOf(QStringLiteral("void main(void)"));
    QVERIFY(mainAt > 0);
    QCOMPARE(lines.at(mainAt - 1), QString());
    QCOMPARE(lines.at(mainAt + 1), QStringLiteral("{"));
    QCOMPARE(lines.at(mainAt + 2),
             QStringLiteral("\tf_color = texture(f_currentLayerTexture, v_texCoords0.st) * f_opacity;"));
    QCOMPARE(lines.at(mainAt + 3), QString());
    QCOMPARE(lines.last(), QStringLiteral("}"));
    QCOMPARE(lines.at(lines.size() - 2), QString());
    QVERIFY(lines.contains(QStringLiteral("    if (f_clipToPaintedRect) {")));

    shader.setType(MShader::BrushShader);
    const QStringList brushLines = shader.fragmentSource(&ok).split(QLatin1Char('\n'));
    QVERIFY(brushLines.contains(QStringLiteral("\tf_color = v_color;")));

    shader.setSource(QStringLiteral("@params\nfloat amount = 0.5; bool flip; int steps = 5.5; enum mode = 1 enum values = 0 "
                                    "\"a\" 1 \"b\"; color tint = rgb(1, 2, 3);\n"
                                    "texture grain \"nowhere.png\";\n@main\nf_color = v_color;"));
    shader.setType(MShader::EffectShader);
    const QString assembled = shader.fragmentSource(&ok);
    QVERIFY2(ok, qPrintable(shader.compileMessages()));
    for (const char* declaration : {"uniform float amount;", "uniform bool flip;", "uniform int steps;",
                                    "uniform int mode;", "uniform vec4 tint;", "uniform sampler2D grain;"})
        QVERIFY2(assembled.contains(QLatin1String(declaration)), declaration);
    QCOMPARE(shader.param(QByteArray("steps"))->defaultValue.toInt(), 5);
    QCOMPARE(shader.param(2)->name, QByteArray("steps"));
    QVERIFY(!shader.param(5));
    QVERIFY(!shader.param(QByteArray("nothing")));
    QCOMPARE(shader.textureCount(), 1);
    QVERIFY(!shader.texture(1));
    QVERIFY(shader.texturesChanged());
    QCOMPARE(shader.compileMessages(), QStringLiteral("Warning: texture file doesn't exits: nowhere.png"));
}

void TestShader::parseIsCachedUntilTheSourceChanges()
{
    MShader shader;
    QSignalSpy sourceChanged(&shader, &MShader::sourceChanged);
    shader.setSource(QStringLiteral("@params\nfloat a;\n@main\n"));
    shader.setSource(QStringLiteral("@params\nfloat a;\n@main\n"));
    QCOMPARE(sourceChanged.count(), 1);
    shader.setIsValid(true);

    QVERIFY(shader.parseParams());
    MField* first = shader.param(0);
    QVERIFY(shader.parseParams());
    QCOMPARE(shader.param(0), first); // not parsed again
    QCOMPARE(shader.isValid(), true);

    shader.setSource(QStringLiteral("@params\nfloat a;\nint b;\n"));
    QCOMPARE(shader.isValid(), false);
    QVERIFY(!shader.isParsed());
    QVERIFY(shader.parseParams());
    QCOMPARE(shader.paramCount(), 2);

    // A copy carries its own fields, equal to the originals.
    MShader copy;
    copy.assign(shader);
    QCOMPARE(copy.paramCount(), 2);
    QVERIFY(copy.param(0) != shader.param(0));
    QCOMPARE(copy.param(QByteArray("b"))->type, int(QVariant::Int));
    QCOMPARE(copy.textureCount(), 0);
}

void TestShader::errorsKeepWhatWasThere()
{
    MShader shader;
    shader.setSource(QStringLiteral("@params\nfloat kept = 0.25;\n"));
    QVERIFY(shader.parseParams());
    MField* kept = shader.param(0);

    shader.setSource(QStringLiteral("@params\nfloat broken = 1\nfloat other;\n"));
    bool ok = true;
    QCOMPARE(shader.fragmentSource(&ok), QString());
    QVERIFY(!ok);
    QVERIFY(shader.compileMessages().startsWith(QStringLiteral("Errors during parameters compilation:\n-- line 2 col 1: ")));
    QCOMPARE(shader.paramCount(), 1);
    QCOMPARE(shader.param(0), kept);

    // Options fail after the parameters were taken; the filters keep their values.
    shader.setSource(QStringLiteral("@params\nfloat fresh;\n@options\nmin filter = nearest;\nwraps = sideways;\n"));
    QVERIFY(!shader.parseParams());
    QVERIFY(shader.compileMessages().startsWith(QStringLiteral("Errors during options compilation:\n-- line 2 col 9: ")));
    QCOMPARE(shader.param(0)->name, QByteArray("fresh"));
    QCOMPARE(shader.minFilter(), int(GL_LINEAR_MIPMAP_LINEAR));
}

void TestShader::optionsBecomeGlConstants()
{
    MShader shader;
    QCOMPARE(shader.minFilter(), int(GL_LINEAR_MIPMAP_LINEAR));
    QCOMPARE(shader.magFilter(), int(GL_LINEAR));
    QCOMPARE(shader.wrapS(), int(GL_CLAMP_TO_EDGE));

    shader.setSource(QStringLiteral("@options\nMIN FILTER = nearest; min filter = nearestmipmaplinear;\n"
                                    "mag filter = nearest; wraps = mirrorclamptoedge; wrapt = clamptoborder;\n"));
    QVERIFY2(shader.parseParams(), qPrintable(shader.compileMessages()));
    QCOMPARE(shader.minFilter(), int(GL_NEAREST_MIPMAP_LINEAR));
    QCOMPARE(shader.magFilter(), int(GL_NEAREST));
    QCOMPARE(shader.wrapS(), int(GL_CLAMP_TO_EDGE));
    QCOMPARE(shader.wrapT(), 0x812D);

    const int filters[] = {GL_NEAREST, GL_LINEAR, GL_NEAREST_MIPMAP_NEAREST, GL_NEAREST_MIPMAP_LINEAR,
                           GL_LINEAR_MIPMAP_NEAREST, GL_LINEAR_MIPMAP_LINEAR};
    for (int value = 0; value < 6; ++value)
        QCOMPARE(MShader::glFilter(value), filters[value]);
    QCOMPARE(MShader::glFilter(99), int(GL_LINEAR));
    const int wraps[] = {GL_REPEAT, GL_MIRRORED_REPEAT, GL_CLAMP_TO_EDGE, 0x812D, GL_CLAMP_TO_EDGE};
    for (int value = 0; value < 5; ++value)
        QCOMPARE(MShader::glWrap(value), wraps[value]);
}

void TestShader::shaderObjectsFollowTheirEffect()
{
    auto effect = std::make_unique<MShader>();
    effect->setSource(QStringLiteral("@params\nfloat strength = 0.5; bool invert = true; color tint = rgb(10, 20, 30);"));
    const QString id = effect->id();
    MShader* registered = MShaderList::instance()->addShader(std::move(effect));
    QCOMPARE(MShaderList::instance()->shaderById(QStringLiteral("  ") + id.toLower()), registered);

    MShaderObject object;
    object.set_isShaderActive(false);
    QSignalSpy idChanged(&object, &MShaderObject::shaderIdChanged);
    object.set_shaderId(id);
    QCOMPARE(idChanged.count(), 1);
    QCOMPARE(object.shaderId(), id);
    QVERIFY(object.isShaderActive());
    QCOMPARE(object.shaderValues()->count(), 3);
    QCOMPARE(object.shaderValues()->value("tint").value<QColor>(), QColor(10, 20, 30));

    // The same effect again merges: the user's values stay.
    object.shaderValues()->setValue("strength", 0.9);
    object.shaderValues()->setValue("gone", 1);
    object.set_shaderId(id);
    QCOMPARE(idChanged.count(), 1);
    QCOMPARE(object.shaderValues()->value("strength").toDouble(), 0.9);
    QVERIFY(!object.shaderValues()->contains("gone"));

    // The effect changes: a kept name keeps its value, a new one takes its default.
    registered->setSource(QStringLiteral("@params\nfloat strength = 0.1; int steps = 4;"));
    object.merge(id);
    QCOMPARE(object.shaderValues()->value("strength").toDouble(), 0.9);
    QCOMPARE(object.shaderValues()->value("steps").toInt(), 4);
    QVERIFY(!object.shaderValues()->contains("invert"));
    object.applyDefaults(id);
    QCOMPARE(object.shaderValues()->value("strength").toFloat(), 0.1f);

    MShaderObject copy;
    copy.copyFrom(object);
    QCOMPARE(copy.shaderId(), id);
    QCOMPARE(copy.shaderValues()->values(), object.shaderValues()->values());

    // An unknown id takes the effect away.
    object.set_shaderId(QStringLiteral("{00000000-0000-0000-0000-000000000000}"));
    QCOMPARE(object.shaderId(), QString());
    QCOMPARE(object.shaderValues()->count(), 0);
    QCOMPARE(idChanged.count(), 2);

    MValues values;
    QSignalSpy changed(&values, &MValues::valueChanged);
    values.setValue("a", 1);
    values.setValue("a", 1);
    values.setValue("a", 2);
    QCOMPARE(changed.count(), 2);
    MShaderList::instance()->removeShader(id);
    QVERIFY(!MShaderList::instance()->shaderById(id));
}

void TestShader::assembledEffectsCompileAndTakeUniforms()
{
    QuillmereTest::GLContext context;
    QVERIFY2(context.create(), qPrintable(context.why()));

    const QStringList sources = {
        QStringLiteral("@main"),
        QStringLiteral("@params\nfloat amount = 0.5 \"Amount\" min = 0 max = 2;\nbool flip = true;\nint steps = 3;\n"
                       "enum mode = 1 enum values = 0 \"A\" 1 \"B\";\ncolor tint = rgb(255, 128, 0, 64);\n"
                       "texture grain \"$ImagesPath$/grain.png\" min filter = nearest wraps = repeat;\n"
                       "texture paper 'p.png';\n"
                       "@options\nmag filter = nearest;\n"
                       "@functions\nvec4 shade(vec4 c) { return flip ? c.abgr : c; }\n"
                       "@main\nvec4 c = texture(f_currentLayerTexture, v_texCoords0) * amount;\n"
                       "c += texture(grain, v_texCoords0) * float(steps + mode) + texture(paper, v_texCoords1);\n"
                       "f_color = shade(mix(c, tint, 0.5)) * f_opacity;"),
        QStringLiteral("@functions\nfloat wave(vec2 p) { return sin(p.x * 6.2831 + f_globalTime); }\n"
                       "@main\nint t = tileIndex(v_texCoords0);\nvec2 q = tileTexCoord(v_texCoords0);\n"
                       "f_color = vec4(wave(q)) * float(t) * (inRect(q.x, q.y) ? 1.0 : 0.0);"),
    };
    for (const QString& text : sources) {
        MShader shader;
        shader.setSource(text);
        bool ok = false;
        const QString fragment = shader.fragmentSource(&ok);
        QVERIFY2(ok, qPrintable(shader.compileMessages()));
        QOpenGLShaderProgram program;
        QVERIFY(program.addShaderFromSourceFile(QOpenGLShader::Vertex, QStringLiteral(":/shaders/basic_vert.glsl")));
        QVERIFY2(program.addShaderFromSourceCode(QOpenGLShader::Fragment, fragment), qPrintable(program.log()));
        QVERIFY2(program.link(), qPrintable(program.log()));
        QVERIFY(program.bind());

        // Values reach the uniforms of their names.
        MShaderObject holder;
        for (int i = 0; i < shader.paramCount(); ++i)
            holder.shaderValues()->setValue(shader.param(i)->name, shader.param(i)->defaultValue);
        holder.shaderValues()->setValue("undeclared", 3.0); // harmless
        holder.shaderValues()->applyUniforms(&program);
        holder.shaderValues()->applyUniforms(nullptr);
        if (shader.paramCount() == 0)
            continue;
        auto* gl = context.gl();
        GLfloat amount = 0;
        gl->glGetUniformfv(program.programId(), program.uniformLocation("amount"), &amount);
        QCOMPARE(amount, 0.5f);
        GLint steps = 0;
        gl->glGetUniformiv(program.programId(), program.uniformLocation("steps"), &steps);
        QCOMPARE(steps, 3);
        GLint flip = 0;
        gl->glGetUniformiv(program.programId(), program.uniformLocation("flip"), &flip);
        QCOMPARE(flip, 1);
        GLfloat tint[4] = {};
        gl->glGetUniformfv(program.programId(), program.uniformLocation("tint"), tint);
        QVERIFY(qAbs(tint[0] - 1.0f) < 1e-4f && qAbs(tint[1] - 128.0f / 255.0f) < 1e-4f);
        QVERIFY(qAbs(tint[3] - 64.0f / 255.0f) < 1e-4f);
        program.release();
    }
}

void TestShader::commandLineChecksAnEffectFile()
{
    QTemporaryDir scratch;
    auto write = [&](const QString& name, const QByteArray& text) {
        QFile file(scratch.filePath(name));
        file.open(QIODevice::WriteOnly);
        file.write(text);
        return file.fileName();
    };
    auto runCli = [&](const QStringList& arguments, QString* output) {
        QProcess process;
        process.setProcessEnvironment(QuillmereTest::childEnvironment());
        process.start(cliPath(), arguments);
        if (!process.waitForFinished(60000))
            return -1;
        *output = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
        return process.exitCode();
    };

    const QString clean = write(QStringLiteral("clean.qsh.txt"),
                                "@params\nfloat amount = 0.5 \"Amount\" min = 0 max = 2 increment = 0.1;\n"
                                "enum mode = 1 \"Mode\" enum values = 0 \"A\" 1 \"B\";\n"
                                "texture grain \"/no/such/grain.png\" min filter = nearest wraps = repeat;\n"
                                "@options\nwrapt = mirroredrepeat;\n@main\nf_color = v_color * amount;\n");
    QString output;
    QCOMPARE(runCli({QStringLiteral("effect"), QStringLiteral("check"), clean}, &output), 0);
    QVERIFY2(output.contains(QStringLiteral("Parameters: 2")), qPrintable(output));
    QVERIFY(output.contains(QStringLiteral("  amount  float  default 0.5  range 0 to 2 step 0.1  label \"Amount\"")));
    QVERIFY(output.contains(QStringLiteral("  mode  enum  default 1  values 0 \"A\", 1 \"B\"  label \"Mode\"")));
    QVERIFY(output.contains(QStringLiteral("  grain  \"/no/such/grain.png\"  min GL_NEAREST  mag GL_LINEAR  wrap s "
                                           "GL_REPEAT  wrap t GL_CLAMP_TO_EDGE")));
    QVERIFY(output.contains(QStringLiteral("  min filter GL_LINEAR_MIPMAP_LINEAR")));
    QVERIFY(output.contains(QStringLiteral("  wrap t GL_MIRRORED_REPEAT")));
    QVERIFY(output.contains(QStringLiteral("Warning: texture file doesn't exits: /no/such/grain.png")));
    QVERIFY(!output.contains(QStringLiteral("void main(void)")));

    QCOMPARE(runCli({QStringLiteral("effect"), QStringLiteral("check"), clean, QStringLiteral("--source"),
                     QStringLiteral("--compile")},
                    &output),
             0);
    QVERIFY(output.contains(QStringLiteral("Fragment source:\n#version 330 core")));
    QVERIFY2(output.contains(QStringLiteral("Driver: compiled and linked")), qPrintable(output));

    // Declarations that parse but GLSL that doesn't: the driver says so.
    const QString badGlsl = write(QStringLiteral("bad.txt"), "@main\nf_color = undefinedThing;\n");
    QCOMPARE(runCli({QStringLiteral("effect"), QStringLiteral("check"), badGlsl, QStringLiteral("--compile")}, &output), 1);
    QVERIFY(output.contains(QStringLiteral("Driver: failed")));
    QVERIFY(output.contains(QStringLiteral("undefinedThing")));

    const QString broken = write(QStringLiteral("broken.txt"), "@params\nfloat a = 1\nint b;\n");
    QCOMPARE(runCli({QStringLiteral("effect"), QStringLiteral("check"), broken}, &output), 1);
    QVERIFY(output.contains(QStringLiteral("Errors during parameters compilation:\n-- line 2 col 1: \";\" expected")));

    QCOMPARE(runCli({QStringLiteral("effect"), QStringLiteral("check"), scratch.filePath("missing")}, &output), 1);
    QVERIFY(output.contains(QStringLiteral("cannot read")));
    QCOMPARE(runCli({QStringLiteral("effect"), QStringLiteral("check")}, &output), 2);
    QCOMPARE(runCli({QStringLiteral("effect"), QStringLiteral("explode")}, &output), 2);
    QVERIFY(output.contains(QStringLiteral("effect check FILE")));
    QCOMPARE(runCli({}, &output), 0);
}

QUILLMERE_TEST_MAIN(TestShader)
#include "tst_mshader.moc"
