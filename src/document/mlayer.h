#pragma once

#include <QObject>

// One plane of the document's stack. For now it carries only its kind; the
// tiled layers below it hold the pixels.
class MLayer : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Type type READ type)

public:
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

    Type type() const { return m_type; }

    virtual void clear();
    // Only tiled layers can be empty.
    virtual bool isEmpty() const;

protected:
    // The kind is fixed by the subclass at construction.
    void setType(Type type) { m_type = type; }

private:
    Type m_type = BufferLayer;
};
