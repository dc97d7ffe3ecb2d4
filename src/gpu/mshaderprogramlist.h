#pragma once

#include <QHash>
#include <QObject>
#include <QOpenGLVertexArrayObject>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <utility>

class MShader;
class QOffscreenSurface;
class QOpenGLContext;
class QOpenGLShaderProgram;
class QSurface;

// The linked GLSL programs of one canvas, by name: the system programs from the
// resources, and user effects and brush engines, built on first use. Building
// happens in a private context that shares with all others, so that it never
// disturbs the context that draws. A program that can't be used is replaced by
// "basic": drawing never stops for a bad shader.
class MShaderProgramList : public QObject
{
public:
    struct SystemProgram
    {
        QString fragment;
        QString vertex;
    };

    // What a draw can promise about itself, so that a program may be built
    // without a test that could not change the result. Software GL runs both
    // sides of a branch, so even a test whose uniform turns it off costs as
    // much as one that runs. A program whose source doesn't guard the test
    // with the macro is used as it is.
    enum VariantFlag
    {
        // The painted-rectangle test can't discard: every fragment lies inside
        // the rectangle, or the draw sets f_clipToPaintedRect false
        // (M_INSIDE_PAINTED_RECT).
        InsidePaintedRect = 0x1,
        // f_clipToSelection is false for the draw (M_NO_SELECTION_CLIP).
        NoSelectionClip = 0x2,
        // Stamps: f_hasTexture is false (M_NO_BRUSH_TEXTURE).
        NoBrushTexture = 0x4,
        // Stamps: f_inheritAlphaUnder is false (M_NO_ALPHA_UNDER).
        NoAlphaUnder = 0x8,
        // Stamps: f_useBorderColor is false (M_NO_BORDER_COLOR).
        NoBorderColor = 0x10,
        // Stamps: f_colorAbsorbtionRate is 0 (M_DRY_BRUSH).
        DryBrush = 0x20,
        // Stamps: foreground over without f_inheritAlphaCurrent (M_FOREGROUND_OVER).
        ForegroundOver = 0x40,
    };

    explicit MShaderProgramList(QObject* parent = nullptr);
    ~MShaderProgramList() override;

    // Makes the private context and surface. The context current on entry is
    // current again on return.
    bool initializeGL();
    bool isInitialized() const { return m_initialized; }
    void shutDown();

    // Compiles every system program; true when all of them linked.
    bool addSystemPrograms();
    // Compiles one system program, or returns it when it exists. A program that
    // failed stays in the list and is returned all the same.
    QOpenGLShaderProgram* addSystemProgram(const QString& name);
    // Finds or builds: a system program, else the user effect of that id, else
    // "basic".
    QOpenGLShaderProgram* program(const QString& name);
    // Finds only.
    QOpenGLShaderProgram* programByName(const QString& name) const;
    QOpenGLShaderProgram* addUserProgram(MShader* shader);
    // Compiles the effect's assembled source into the program and records the
    // outcome in the effect's isValid flag, which it returns.
    bool buildUserProgram(MShader* shader, QOpenGLShaderProgram* program);
    // After an effect's source changed: drops its program and builds it again.
    QOpenGLShaderProgram* rebuildUserProgram(const QString& name);
    void removeProgram(MShader* shader);

    // Looks up, links if needed, falls back to "basic", binds the program and
    // vao. Null only when not even "basic" can be had.
    // With variant flags, the program built with those promises is bound
    // instead, where its source has them and it links; else the plain one.
    QOpenGLShaderProgram* bind(const QString& name, QOpenGLVertexArrayObject* vao, int variantFlags = 0);
    // bind, then the vertex attributes; the vertex buffer must be bound.
    QOpenGLShaderProgram* bindWithAttributes(const QString& name, QOpenGLVertexArrayObject* vao,
                                             int variantFlags = 0);
    // Finds or builds the variant of a linked program; null when the program
    // has no such variant and the plain one serves.
    QOpenGLShaderProgram* variant(const QString& name, int flags);
    // The source with the macros of the flags defined after its first line.
    static QString variantSource(const QString& fragment, int flags);
    static void setupAttributes(QOpenGLShaderProgram* program, QOpenGLVertexArrayObject* vao);
    static void releaseAttributes(QOpenGLShaderProgram* program, QOpenGLVertexArrayObject* vao);

    // The system programs in the order of their table.
    QStringList systemProgramNames() const { return m_systemProgramNames; }
    SystemProgram systemProgram(const QString& name) const { return m_systemPrograms.value(name); }
    QOpenGLContext* context() const { return m_context.get(); }

private:
    void addSystemProgramEntry(const QString& name, const QString& vertex, const QString& fragment);
    bool makePrivateCurrent();
    QString fragmentSourceOf(const QString& name) const;
    QOpenGLShaderProgram* findOrBuild(const QString& name);

    std::map<QString, std::unique_ptr<QOpenGLShaderProgram>> m_programs;
    // By name and flags; null where the plain program serves. Flags that make
    // no difference to a source share one program.
    std::map<std::pair<QString, int>, std::shared_ptr<QOpenGLShaderProgram>> m_variants;
    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<QOffscreenSurface> m_surface;
    // What was current when bind had to build; made current again afterwards.
    QOpenGLContext* m_savedContext = nullptr;
    QSurface* m_savedSurface = nullptr;
    bool m_initialized = false;
    QHash<QString, SystemProgram> m_systemPrograms;
    QStringList m_systemProgramNames;
    QOpenGLVertexArrayObject m_vertexArray;
};
