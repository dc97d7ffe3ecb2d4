#include "gpu/mshaderprogramlist.h"

#include "app/mlogger.h"
#include "effects/mshader.h"
#include "effects/mshaderlist.h"
#include "gpu/mopengl.h"
#include "gpu/mvertex.h"

#include <QDebug>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>

namespace {

const QString basicName = QStringLiteral("basic");
const QString basicVertex = QStringLiteral(":/shaders/basic_vert.glsl");

struct VariantMacro
{
    int flag;
    const char* name;
};
constexpr VariantMacro variantMacros[] = {
    {MShaderProgramList::InsidePaintedRect, "M_INSIDE_PAINTED_RECT"},
    {MShaderProgramList::NoSelectionClip, "M_NO_SELECTION_CLIP"},
    {MShaderProgramList::NoBrushTexture, "M_NO_BRUSH_TEXTURE"},
    {MShaderProgramList::NoAlphaUnder, "M_NO_ALPHA_UNDER"},
    {MShaderProgramList::NoBorderColor, "M_NO_BORDER_COLOR"},
    {MShaderProgramList::DryBrush, "M_DRY_BRUSH"},
    {MShaderProgramList::ForegroundOver, "M_FOREGROUND_OVER"},
};

struct Attribute
{
    const char* name;
    int offset;
    int tupleSize;
};

// modelMatrix is a mat4: it takes four locations, one column each.
constexpr Attribute vectorAttributes[] = {
    {"vertexPosition", MVertex::positionOffset, 2},
    {"vertexColor", MVertex::colorOffset, 4},
    {"textureCoordinates0", MVertex::textureCoordinatesOffset[0], 2},
    {"textureCoordinates1", MVertex::textureCoordinatesOffset[1], 2},
    {"textureCoordinates2", MVertex::textureCoordinatesOffset[2], 2},
};
constexpr const char* matrixAttribute = "modelMatrix";

// Makes the context that was current on entry current again on every way out,
// unless that was the list's own private one, which nobody draws with.
class CurrentContextKeeper
{
public:
    explicit CurrentContextKeeper(const QOpenGLContext* privateContext)
        : m_context(QOpenGLContext::currentContext())
    {
        if (m_context == privateContext)
            m_context = nullptr;
        m_surface = m_context ? m_context->surface() : nullptr;
    }
    ~CurrentContextKeeper()
    {
        if (m_context && m_surface && QOpenGLContext::currentContext() != m_context)
            m_context->makeCurrent(m_surface);
    }
    CurrentContextKeeper(const CurrentContextKeeper&) = delete;
    CurrentContextKeeper& operator=(const CurrentContextKeeper&) = delete;

private:
    QOpenGLContext* m_context;
    QSurface* m_surface;
};

// User shader errors belong to the debug stream only: the effect editor shows
// them from the effect itself.
void debugLine(const QString& text)
{
    qDebug().noquote() << text;
}

} // namespace

MShaderProgramList::MShaderProgramList(QObject* parent) : QObject(parent)
{
    const QString vertex = basicVertex;
    addSystemProgramEntry(basicName, vertex, QStringLiteral(":/shaders/basic_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("blit"), vertex, QStringLiteral(":/shaders/blit_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("stamping"), vertex, QStringLiteral(":/shaders/stamping_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("color"), vertex, QStringLiteral(":/shaders/color_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("paper"), vertex, QStringLiteral(":/shaders/paper_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("shading"), QStringLiteral(":/shaders/shading_vert.glsl"),
                          QStringLiteral(":/shaders/shading_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("line"), QStringLiteral(":/shaders/line_vert.glsl"),
                          QStringLiteral(":/shaders/line_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("grid"), vertex, QStringLiteral(":/shaders/grid_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("colorfeedback"), vertex,
                          QStringLiteral(":/shaders/colorfeedback_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("fill"), vertex, QStringLiteral(":/shaders/fill_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("stroke"), vertex, QStringLiteral(":/shaders/stroke_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("selection"), vertex,
                          QStringLiteral(":/shaders/selection_frag.glsl"));
    addSystemProgramEntry(QStringLiteral("texture"), vertex, QStringLiteral(":/shaders/texture_frag.glsl"));
}

MShaderProgramList::~MShaderProgramList()
{
    {
        // Program names are freed at once when a context of the share group is
        // current, and only later otherwise.
        CurrentContextKeeper keeper(m_context.get());
        if (m_initialized)
            makePrivateCurrent();
        m_variants.clear();
        m_programs.clear();
    }
    shutDown();
}

void MShaderProgramList::addSystemProgramEntry(const QString& name, const QString& vertex,
                                               const QString& fragment)
{
    m_systemPrograms.insert(name, SystemProgram{fragment, vertex});
    m_systemProgramNames.append(name);
}

bool MShaderProgramList::makePrivateCurrent()
{
    if (!m_context || !m_surface)
        return false;
    if (QOpenGLContext::currentContext() == m_context.get() && m_context->surface() == m_surface.get())
        return true;
    return m_context->makeCurrent(m_surface.get());
}

bool MShaderProgramList::initializeGL()
{
    if (m_initialized)
        return true;
    const QString source = QStringLiteral("MShaderProgramList::initializeGL");
    CurrentContextKeeper keeper(nullptr);

    m_context.reset(MOpenGL::createSharedContext(QOpenGLContext::globalShareContext()));
    if (!m_context) {
        MLogger::systemError(source, QStringLiteral("Unable to create shared context"));
        return false;
    }
    m_surface.reset(MOpenGL::createSurface(m_context.get()));
    if (!m_surface) {
        MLogger::systemError(source, QStringLiteral("Unable to create surface"));
        m_context.reset();
        return false;
    }
    m_initialized = true;
    if (!makePrivateCurrent()) {
        MLogger::systemError(source, QStringLiteral("Unable to make current context"));
        return false;
    }
    m_context->functions()->initializeOpenGLFunctions();
    m_vertexArray.create();
    return true;
}

void MShaderProgramList::shutDown()
{
    if (!m_context && !m_surface && !m_initialized)
        return;
    CurrentContextKeeper keeper(m_context.get());
    // The vertex array belongs to the private context and goes with it.
    if (makePrivateCurrent()) {
        m_vertexArray.destroy();
        m_context->doneCurrent();
    }
    if (m_surface) {
        m_surface->destroy();
        m_surface.reset();
    }
    m_context.reset();
    m_initialized = false;
}

bool MShaderProgramList::addSystemPrograms()
{
    CurrentContextKeeper keeper(m_context.get());
    bool allLinked = true;
    for (const QString& name : qAsConst(m_systemProgramNames)) {
        QOpenGLShaderProgram* built = addSystemProgram(name);
        allLinked = built && built->isLinked() && allLinked;
    }
    return allLinked;
}

QOpenGLShaderProgram* MShaderProgramList::addSystemProgram(const QString& name)
{
    if (QOpenGLShaderProgram* found = programByName(name))
        return found;
    const auto entry = m_systemPrograms.constFind(name);
    if (entry == m_systemPrograms.constEnd())
        return nullptr;

    const QString source = QStringLiteral("MShaderProgramList::addSystemProgram");
    CurrentContextKeeper keeper(m_context.get());
    if (!makePrivateCurrent())
        return nullptr;

    auto built = std::make_unique<QOpenGLShaderProgram>();
    bool compiled = true;
    if (!built->addShaderFromSourceFile(QOpenGLShader::Vertex, entry->vertex)) {
        MLogger::systemError(source,
                             QStringLiteral("Could not compile vertex shader. Error: %1").arg(built->log()));
        compiled = false;
    }
    const QString fragment = MShader::resourceLines(entry->fragment).join(QLatin1Char('\n'));
    if (!built->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment)) {
        MLogger::systemError(
            source, QStringLiteral("Could not compile fragment shader. Error: %1").arg(built->log()));
        compiled = false;
    }
    // A program with one stage alone may link, and would then draw garbage.
    if (!compiled)
        built->removeAllShaders();
    if (!built->link())
        MLogger::systemError(source,
                             QStringLiteral("Could not link shader program. Error: %1").arg(built->log()));

    // Kept even when broken: bind retries the link and falls back to "basic".
    QOpenGLShaderProgram* result = built.get();
    m_programs[name] = std::move(built);
    return result;
}

QOpenGLShaderProgram* MShaderProgramList::program(const QString& name)
{
    if (QOpenGLShaderProgram* found = programByName(name))
        return found;
    CurrentContextKeeper keeper(m_context.get());
    if (!makePrivateCurrent())
        return nullptr;
    if (m_systemPrograms.contains(name))
        return addSystemProgram(name);
    if (MShader* shader = MShaderList::instance()->shaderById(name))
        return addUserProgram(shader);
    return addSystemProgram(basicName);
}

QOpenGLShaderProgram* MShaderProgramList::programByName(const QString& name) const
{
    const auto found = m_programs.find(name);
    return found == m_programs.end() ? nullptr : found->second.get();
}

QOpenGLShaderProgram* MShaderProgramList::addUserProgram(MShader* shader)
{
    if (!shader)
        return nullptr;
    const QString name = shader->id();
    if (QOpenGLShaderProgram* found = programByName(name))
        return found;
    CurrentContextKeeper keeper(m_context.get());
    if (!makePrivateCurrent())
        return nullptr;
    // Stored before it is built, so that a failed build isn't retried on every draw.
    auto created = std::make_unique<QOpenGLShaderProgram>();
    QOpenGLShaderProgram* result = created.get();
    m_programs[name] = std::move(created);
    buildUserProgram(shader, result);
    return result;
}

bool MShaderProgramList::buildUserProgram(MShader* shader, QOpenGLShaderProgram* program)
{
    if (!shader || !program)
        return false;
    CurrentContextKeeper keeper(m_context.get());
    if (!makePrivateCurrent())
        return false;
    shader->setIsValid(false);
    program->removeAllShaders();

    if (!program->addShaderFromSourceFile(QOpenGLShader::Vertex, basicVertex)) {
        debugLine(QStringLiteral("Could not compile vertex shader. Error: %1").arg(program->log()));
        program->removeAllShaders();
        return shader->isValid();
    }
    bool assembled = false;
    const QString fragment = shader->fragmentSource(&assembled);
    // Declarations that don't parse leave no source; their messages stand for the compiler's.
    const bool compiled = assembled && program->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment);
    if (!compiled) {
        debugLine(QStringLiteral("Could not compile fragment shader %1:%2Error: %3")
                      .arg(shader->id(), QStringLiteral("\n"),
                           assembled ? program->log() : shader->compileMessages()));
        // Without its fragment stage the program must not link.
        program->removeAllShaders();
        return shader->isValid();
    }
    if (program->link())
        shader->setIsValid(true);
    else
        debugLine(QStringLiteral("Could not link shader program. Error: %1").arg(program->log()));
    return shader->isValid();
}

QOpenGLShaderProgram* MShaderProgramList::rebuildUserProgram(const QString& name)
{
    MShader* shader = MShaderList::instance()->shaderById(name);
    if (!shader)
        return nullptr;
    removeProgram(shader);
    return addUserProgram(shader);
}

void MShaderProgramList::removeProgram(MShader* shader)
{
    if (!shader)
        return;
    // An effect named like a system program never owned that program.
    if (m_systemPrograms.contains(shader->id()))
        return;
    const auto found = m_programs.find(shader->id());
    if (found == m_programs.end())
        return;
    CurrentContextKeeper keeper(m_context.get());
    if (QOpenGLContext::currentContext())
        found->second->release();
    else
        makePrivateCurrent();
    m_programs.erase(found);
    for (auto it = m_variants.begin(); it != m_variants.end();) {
        if (it->first.first == shader->id())
            it = m_variants.erase(it);
        else
            ++it;
    }
}

QString MShaderProgramList::variantSource(const QString& fragment, int flags)
{
    QString defines;
    for (const VariantMacro& macro : variantMacros) {
        if (flags & macro.flag)
            defines += QStringLiteral("#define %1\n").arg(QLatin1String(macro.name));
    }
    // After the #version line, which must stay first.
    const int lineEnd = fragment.indexOf(QLatin1Char('\n'));
    if (defines.isEmpty() || lineEnd < 0)
        return fragment;
    return fragment.left(lineEnd + 1) + defines + fragment.mid(lineEnd + 1);
}

QString MShaderProgramList::fragmentSourceOf(const QString& name) const
{
    const auto entry = m_systemPrograms.constFind(name);
    if (entry != m_systemPrograms.constEnd())
        return MShader::resourceLines(entry->fragment).join(QLatin1Char('\n'));
    MShader* shader = MShaderList::instance()->shaderById(name);
    bool assembled = false;
    const QString source = shader ? shader->fragmentSource(&assembled) : QString();
    return assembled ? source : QString();
}

QOpenGLShaderProgram* MShaderProgramList::variant(const QString& name, int flags)
{
    const std::pair<QString, int> key(name, flags);
    const auto found = m_variants.find(key);
    if (found != m_variants.end())
        return found->second.get();
    QOpenGLShaderProgram* plain = programByName(name);
    if (!flags || !plain || !plain->isLinked())
        return nullptr;
    // Only the flags whose macro the source tests make a difference; the
    // others share the program of the flags that do.
    const QString fragment = fragmentSourceOf(name);
    int effective = 0;
    for (const VariantMacro& macro : variantMacros) {
        if ((flags & macro.flag) && fragment.contains(QLatin1String(macro.name)))
            effective |= macro.flag;
    }
    std::shared_ptr<QOpenGLShaderProgram>& slot = m_variants[key];
    if (effective != flags) {
        if (effective)
            variant(name, effective);
        slot = m_variants[std::make_pair(name, effective)];
        return slot.get();
    }
    CurrentContextKeeper keeper(m_context.get());
    if (!makePrivateCurrent())
        return nullptr;
    const auto entry = m_systemPrograms.constFind(name);
    const QString vertex = entry != m_systemPrograms.constEnd() ? entry->vertex : basicVertex;
    auto built = std::make_shared<QOpenGLShaderProgram>();
    // The plain program compiled from the same text, so a failure here is
    // ours, not the user's: the plain program goes on serving, silently.
    if (built->addShaderFromSourceFile(QOpenGLShader::Vertex, vertex) &&
        built->addShaderFromSourceCode(QOpenGLShader::Fragment, variantSource(fragment, flags)) &&
        built->link())
        slot = std::move(built);
    return slot.get();
}

QOpenGLShaderProgram* MShaderProgramList::findOrBuild(const QString& name)
{
    if (QOpenGLShaderProgram* found = programByName(name))
        return found;
    // Building happens on the private context; the drawing context must be
    // current again before the caller sets a uniform.
    QOpenGLContext* current = QOpenGLContext::currentContext();
    m_savedContext = current != m_context.get() ? current : nullptr;
    m_savedSurface = m_savedContext ? m_savedContext->surface() : nullptr;
    QOpenGLShaderProgram* result = program(name);
    if (m_savedContext && m_savedSurface && QOpenGLContext::currentContext() != m_savedContext)
        m_savedContext->makeCurrent(m_savedSurface);
    m_savedContext = nullptr;
    m_savedSurface = nullptr;
    return result;
}

QOpenGLShaderProgram* MShaderProgramList::bind(const QString& name, QOpenGLVertexArrayObject* vao,
                                               int variantFlags)
{
    QOpenGLShaderProgram* result = findOrBuild(name);
    if (!result)
        return nullptr;

    const QString source = QStringLiteral("MShaderProgramList::bind");
    if (!result->isLinked()) {
        debugLine(QStringLiteral("%1: program link").arg(source));
        result->link();
    }
    if (!result->isLinked()) {
        debugLine(QStringLiteral("%1: fallback to basic").arg(source));
        result = programByName(basicName);
        if (!result || !result->isLinked())
            return nullptr;
    }
    if (variantFlags) {
        // A name that fell back stands for "basic", and takes its variant.
        const QString& builtName = programByName(name) == result ? name : basicName;
        if (QOpenGLShaderProgram* special = variant(builtName, variantFlags))
            result = special;
    }
    if (!result->bind())
        return nullptr;
    if (vao)
        vao->bind();
    return result;
}

QOpenGLShaderProgram* MShaderProgramList::bindWithAttributes(const QString& name,
                                                             QOpenGLVertexArrayObject* vao, int variantFlags)
{
    QOpenGLShaderProgram* result = bind(name, vao, variantFlags);
    setupAttributes(result, vao);
    return result;
}

void MShaderProgramList::setupAttributes(QOpenGLShaderProgram* program, QOpenGLVertexArrayObject* vao)
{
    if (!program)
        return;
    if (vao)
        vao->bind();
    for (const Attribute& attribute : vectorAttributes) {
        program->enableAttributeArray(attribute.name);
        program->setAttributeBuffer(attribute.name, GL_FLOAT, attribute.offset, attribute.tupleSize,
                                    MVertex::stride);
    }
    const int matrix = program->attributeLocation(matrixAttribute);
    if (matrix < 0)
        return;
    for (int column = 0; column < 4; ++column) {
        program->enableAttributeArray(matrix + column);
        program->setAttributeBuffer(matrix + column, GL_FLOAT,
                                    MVertex::modelMatrixOffset + column * 4 * int(sizeof(float)), 4,
                                    MVertex::stride);
    }
}

void MShaderProgramList::releaseAttributes(QOpenGLShaderProgram* program, QOpenGLVertexArrayObject* vao)
{
    if (program) {
        for (const Attribute& attribute : vectorAttributes)
            program->disableAttributeArray(attribute.name);
        const int matrix = program->attributeLocation(matrixAttribute);
        for (int column = 0; matrix >= 0 && column < 4; ++column)
            program->disableAttributeArray(matrix + column);
    }
    if (vao)
        vao->release();
}
