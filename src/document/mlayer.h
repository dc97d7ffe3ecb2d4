#pragma once

#include "effects/mshaderobject.h"

#include <QColor>
#include <QImage>
#include <QString>

// One plane of the document's stack: what the layer panel shows and edits.
// Every property notifies, because the layer list watches layers generically.
// The tiled layers below it hold the pixels.
class MLayer : public MShaderObject
{
    Q_OBJECT
    Q_PROPERTY(int mask READ mask WRITE set_mask NOTIFY maskChanged)
    Q_PROPERTY(Type type READ type)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(double opacity READ opacity WRITE setOpacity NOTIFY opacityChanged)
    Q_PROPERTY(bool locked READ locked WRITE setLocked NOTIFY lockedChanged)
    Q_PROPERTY(bool visible READ visible WRITE setVisible NOTIFY visibleChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QImage thumbnail READ thumbnail WRITE setThumbnail NOTIFY thumbnailChanged)
    Q_PROPERTY(QString imageGuid READ imageGuid WRITE setImageGuid NOTIFY imageGuidChanged)
    Q_PROPERTY(bool eraserMode READ eraserMode WRITE setEraserMode NOTIFY eraserModeChanged)

public:
    enum Mask
    {
        NoMask = 0,
        AlphaMask = 1,
        OneMinusAlphaMask = 2
    };
    Q_ENUM(Mask)

    enum Type
    {
        BufferLayer = 0,
        OpenGLLayer = 1,
        VectorLayer = 2,
        CloneLayer = 3,
        UndoLayer = 4
    };
    Q_ENUM(Type)

    explicit MLayer(QObject* parent = nullptr);
    ~MLayer() override;

    int mask() const { return m_mask; }
    Type type() const { return m_type; }
    QString name() const { return m_name; }
    double opacity() const { return m_opacity; }
    bool locked() const { return m_locked; }
    bool visible() const { return m_visible; }
    QColor color() const { return m_color; }
    QImage thumbnail() const { return m_thumbnail; }
    QString imageGuid() const { return m_imageGuid; }
    bool eraserMode() const { return m_eraserMode; }

    virtual void clear();
    // Only tiled layers can be empty.
    virtual bool isEmpty() const;
    // Takes the other layer's properties and effect; never its pixels, its
    // thumbnail or its image id.
    virtual void assign(const MLayer& other);

    // A fresh upper-case id with braces, as used for images and backup files.
    static QString newId();

public Q_SLOTS:
    void set_mask(int mask);
    void setName(const QString& name);
    void setOpacity(double opacity);
    void setLocked(bool locked);
    void setVisible(bool visible);
    void setColor(const QColor& color);
    // The image id is a cache key of the thumbnail, so it is renewed on every
    // call, even with an equal image.
    void setThumbnail(const QImage& thumbnail);
    void setImageGuid(const QString& id);
    void setEraserMode(bool eraserMode);

Q_SIGNALS:
    void maskChanged(int mask);
    void nameChanged(const QString& name);
    void opacityChanged(double opacity);
    void lockedChanged(bool locked);
    void visibleChanged(bool visible);
    void colorChanged(const QColor& color);
    void thumbnailChanged(const QImage& thumbnail);
    void imageGuidChanged(const QString& id);
    void eraserModeChanged(bool eraserMode);

protected:
    // The kind is fixed by the subclass at construction.
    void setType(Type type) { m_type = type; }

private:
    int m_mask = NoMask;
    Type m_type = BufferLayer;
    QString m_name;
    double m_opacity = 1.0;
    bool m_locked = false;
    bool m_visible = true;
    QColor m_color = Qt::red;
    QImage m_thumbnail;
    QString m_imageGuid;
    bool m_eraserMode = false;
};
