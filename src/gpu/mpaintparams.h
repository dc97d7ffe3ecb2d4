#pragma once

#include <QObject>
#include <QRectF>
#include <QString>

class MCanvas;
class MShaderProgramList;
class MTextureLayer;
class MTransform;
class QOpenGLContext;
class QOpenGLVertexArrayObject;

// The values of one drawing call of the paint engine, built on the stack.
class MPaintParams : public QObject
{
    Q_OBJECT

public:
    explicit MPaintParams(QObject* parent = nullptr) : QObject(parent) { reset(); }

    void reset()
    {
        context = nullptr;
        canvas = nullptr;
        clipRect = QRectF();
        clipToRect = true;
        layer = nullptr;
        underLayer = nullptr;
        shaderName.clear();
        programList = nullptr;
        opacity = 1.0;
        smoothPixels = true;
        viewRect = QRectF(0, 0, 1, 1);
        transform = nullptr;
        clipToSelection = false;
        timeLineMode = false;
        showPreviousFrame = false;
        firstLayerAsBackground = false;
        vertexArray = nullptr;
        useDevicePixelRatio = true;
    }

    QOpenGLContext* context;
    MCanvas* canvas;
    // With clipToRect, only cells meeting this rectangle are drawn.
    QRectF clipRect;
    bool clipToRect;
    MTextureLayer* layer;
    MTextureLayer* underLayer;
    QString shaderName;
    MShaderProgramList* programList;
    double opacity;
    bool smoothPixels;
    // The target, in device-independent pixels.
    QRectF viewRect;
    // Null is the identity.
    MTransform* transform;
    bool clipToSelection;
    bool timeLineMode;
    bool showPreviousFrame;
    bool firstLayerAsBackground;
    // Vertex arrays aren't shared between contexts: the caller's own.
    QOpenGLVertexArrayObject* vertexArray;
    bool useDevicePixelRatio;
};
