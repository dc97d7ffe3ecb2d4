#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class MField;
class MTexture;

// A user-programmable fragment shader: one text in sections ("@params",
// "@options", "@functions", "@main") whose declarations compile to parameters
// and texture options, and whose code is assembled into a complete shader
// around a standard header and footer.
class MShader : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int minFilter READ minFilter WRITE set_minFilter NOTIFY minFilterChanged)
    Q_PROPERTY(int magFilter READ magFilter WRITE set_magFilter NOTIFY magFilterChanged)
    Q_PROPERTY(int wrapS READ wrapS WRITE set_wrapS NOTIFY wrapSChanged)
    Q_PROPERTY(int wrapT READ wrapT WRITE set_wrapT NOTIFY wrapTChanged)
    Q_PROPERTY(QString id READ id WRITE setId NOTIFY idChanged)
    Q_PROPERTY(QString group READ group WRITE setGroup NOTIFY groupChanged)
    Q_PROPERTY(QString description READ description WRITE setDescription NOTIFY descriptionChanged)
    Q_PROPERTY(QString source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(bool isValid READ isValid WRITE setIsValid NOTIFY isValidChanged)
    Q_PROPERTY(int type READ type WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QImage preview READ preview WRITE setPreview NOTIFY previewChanged)

public:
    // The lines of a shader source among the resources. A line
    // #include "name" stands for the lines of :/shaders/name, less its
    // #version line: GLSL has no includes of its own.
    static QStringList resourceLines(const QString& path);

    enum Type
    {
        EffectShader = 0,
        BrushShader = 1
    };
    Q_ENUM(Type)

    explicit MShader(QObject* parent = nullptr);
    ~MShader() override;

    int minFilter() const { return m_minFilter; }
    int magFilter() const { return m_magFilter; }
    int wrapS() const { return m_wrapS; }
    int wrapT() const { return m_wrapT; }
    QString id() const { return m_id; }
    QString group() const { return m_group; }
    QString description() const { return m_description; }
    QString source() const { return m_source; }
    bool isValid() const { return m_isValid; }
    int type() const { return m_type; }

    void clear();
    void assign(const MShader& other);

    // The complete fragment shader; empty with *ok false when the declarations
    // don't compile.
    QString fragmentSource(bool* ok);
    // The lines of every section of that name, in order, each trimmed.
    QStringList section(const QString& name) const;

    int paramCount() const { return int(m_params.size()); }
    MField* param(int index) const;
    MField* param(const QByteArray& name) const { return m_paramsByName.value(name); }
    int textureCount() const { return int(m_textures.size()); }
    MTexture* texture(int index) const;

    QString compileMessages() const { return m_compileMessages; }
    bool isParsed() const { return m_parsed; }
    bool texturesChanged() const { return m_texturesChanged; }
    void setTexturesChanged(bool changed) { m_texturesChanged = changed; }

    // The user's file of this effect.
    QString fileName() const;

    // The GL constants for the declaration language's filter and wrap values.
    static int glFilter(int value);
    static int glWrap(int value);

public Q_SLOTS:
    void set_minFilter(int value);
    void set_magFilter(int value);
    void set_wrapS(int value);
    void set_wrapT(int value);
    void setId(const QString& id);
    void setGroup(const QString& group);
    void setDescription(const QString& description);
    void setSource(const QString& source);
    void setIsValid(bool valid);
    void setType(int type);
    void setPreview(const QImage& image);
    // Compiles the declarations when the source changed since the last time.
    bool parseParams();
    // The thumbnail, or the shared default one when none was set.
    QImage preview() const;

Q_SIGNALS:
    void minFilterChanged(int value);
    void magFilterChanged(int value);
    void wrapSChanged(int value);
    void wrapTChanged(int value);
    void idChanged(const QString& id);
    void groupChanged(const QString& group);
    void descriptionChanged(const QString& description);
    void sourceChanged(const QString& source);
    void isValidChanged(bool valid);
    void typeChanged(int type);
    void previewChanged(const QImage& image);

private:
    void clearParams();

    int m_minFilter;
    int m_magFilter;
    int m_wrapS;
    int m_wrapT;
    QString m_id;
    QString m_group;
    QString m_description;
    QString m_source;
    bool m_isValid = false;
    int m_type = EffectShader;
    std::vector<std::unique_ptr<MField>> m_params;
    std::vector<std::unique_ptr<MTexture>> m_textures;
    QHash<QByteArray, MField*> m_paramsByName;
    QString m_compileMessages;
    bool m_parsed = false;
    bool m_texturesChanged = true;
    QImage m_preview;
};
