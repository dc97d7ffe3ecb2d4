#pragma once

#include "app/mevent.h"
#include "brush/mstrokefile.h"
#include "brush/mstrokesmoother.h"

#include <QElapsedTimer>
#include <QOpenGLWidget>
#include <QPixmap>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QString>
#include <QVariant>
#include <QVector>
#include <qopengl.h>

#include <memory>

class MCanvas;
class MControl;
class MToolValues;
class MTransform;
class MVertexBuffer;
class QOpenGLVertexArrayObject;
class QParallelAnimationGroup;
class QPropertyAnimation;
class QPainter;

// The view of a canvas and the place where input enters the document. It owns
// the canvas and the view transform, draws the canvas through the paint engine
// and then a painter overlay (pixel grid, texts) on the same surface, and turns
// mouse and stylus input into MEvent records.
class MWidget : public QOpenGLWidget
{
    Q_OBJECT
    Q_PROPERTY(bool firstLayerAsBackground READ firstLayerAsBackground WRITE setFirstLayerAsBackground NOTIFY
                   firstLayerAsBackgroundChanged)
    Q_PROPERTY(QPointF translation READ translation WRITE setTranslation NOTIFY translationChanged)
    Q_PROPERTY(double scale READ scale WRITE setScale NOTIFY scaleChanged)
    Q_PROPERTY(double rotation READ rotation WRITE setRotation NOTIFY rotationChanged)
    Q_PROPERTY(double textOpacity READ textOpacity WRITE setTextOpacity NOTIFY textOpacityChanged)
    Q_PROPERTY(bool readOnly READ readOnly WRITE setReadOnly NOTIFY readOnlyChanged)
    Q_PROPERTY(bool interactive READ interactive WRITE setInteractive NOTIFY interactiveChanged)
    Q_PROPERTY(bool timeLineMode READ timeLineMode WRITE setTimeLineMode NOTIFY timeLineModeChanged)
    Q_PROPERTY(bool showPreviousFrame READ showPreviousFrame WRITE setShowPreviousFrame NOTIFY
                   showPreviousFrameChanged)

public:
    static constexpr double maximumRefreshRate = 50.0;
    static constexpr int textPixelSize = 25;
    static constexpr int textMargin = 10;
    static constexpr int keyStep = 10;
    static constexpr int keyPageStep = 200;
    static constexpr int wheelPanStep = 30;
    static constexpr int animationDuration = 500;

    explicit MWidget(QWidget* parent = nullptr);
    ~MWidget() override;

    MCanvas* canvas() const { return m_canvas; }
    MTransform* transform() const { return m_transform; }
    // The control points and numbers that tools keep for this view's document.
    MToolValues* toolValues() const { return m_toolValues; }
    // The on-canvas controls, which see every event before the tools.
    QVector<MControl*> controls() const;
    // Appends a control; one without a parent becomes the view's child.
    void addControl(MControl* control);

    bool firstLayerAsBackground() const { return m_firstLayerAsBackground; }
    QPointF translation() const;
    double scale() const;
    double rotation() const;
    double textOpacity() const { return m_textOpacity; }
    bool readOnly() const { return m_readOnly; }
    bool interactive() const { return m_interactive; }
    bool timeLineMode() const { return m_timeLineMode; }
    bool showPreviousFrame() const { return m_showPreviousFrame; }
    double alphaFilter() const { return m_alphaFilter; }
    GLuint filterMode() const { return m_filterMode; }

    bool isGlReady() const { return m_glReady; }
    // Linear magnification: the setting smoothPixels, and a scale under smoothMaxScale.
    bool isSmooth() const;
    // Space held: the left button drags the view.
    bool panMode() const { return m_panMode; }
    // The transient text of setText.
    QString text() const { return m_text; }
    // The line of states shown at the top: hidden or locked layer, selection, eraser.
    QString stateText() const;
    // The grid snap: while the grid tool shows its grid, each coordinate
    // goes to the nearest line; otherwise position as it is.
    QPointF snap(const QPointF& position) const;
    // The last event built from mouse or stylus input.
    const MEvent& currentEvent() const { return m_currentEvent; }
    // The parameter of the current layer's effect that animationValueChanged writes.
    QByteArray animatedParameter() const { return m_animatedParameter; }
    void setAnimatedParameter(const QByteArray& name) { m_animatedParameter = name; }

    // Frees the GL objects of the view and of its canvas; the owner calls it
    // before the widget's context goes away.
    void shutDown();

public Q_SLOTS:
    // With useTimer, skipped when the last update is younger than the refresh
    // period; a non-empty canvasRect limits the repaint to it.
    void refresh(bool useTimer = false, const QRectF& canvasRect = QRectF());
    // Animated: scale 1, fitted page, page as wide or as high as the view.
    void resetCanvas();
    void fitToView();
    void adjustToWidth();
    void adjustToHeight();
    void setTranslation(const QPointF& translation);
    // Recentres the page, then scales around the widget's centre.
    void setScale(double scale);
    // About the centre of the page.
    void setRotation(double rotation);
    void setAlphaFilter(double alpha);
    void setFilterMode(GLuint mode);
    // Shows text at the bottom, fading out over the setting textDuration.
    void setText(const QString& text);
    void setTextOpacity(double opacity);
    void setReadOnly(bool readOnly);
    void setInteractive(bool interactive);
    void setFirstLayerAsBackground(bool value);
    void setTimeLineMode(bool value);
    void setShowPreviousFrame(bool value);
    void onPaintedRectChanged(const QRectF& rect);
    void updateCursor(const QPointF& localPos);
    void updateCursor();
    void animationValueChanged(const QVariant& value);

Q_SIGNALS:
    void firstLayerAsBackgroundChanged(bool value);
    void translationChanged(const QPointF& translation);
    void scaleChanged(double scale);
    void rotationChanged(double rotation);
    void textOpacityChanged(double opacity);
    void readOnlyChanged(bool readOnly);
    void interactiveChanged(bool interactive);
    void timeLineModeChanged(bool value);
    void showPreviousFrameChanged(bool value);
    void alphaFilterChanged(double alpha);
    void filterModeChanged(GLuint mode);
    void editShaderParams();

protected:
    void initializeGL() override;
    // The whole view, GL then overlay; painting here rather than in paintEvent
    // keeps the multisampled target resolved and grabFramebuffer() true.
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private Q_SLOTS:
    void onTransformUpdate();

private:
    void animateView(bool fit, double scale);
    void paintGlHalf();
    void paintOverlay(QPainter* painter);
    void drawPixelGrid(QPainter* painter);
    void drawText(QPainter* painter, const QString& text, int position, double opacity);
    QPointF paintedRectCentre() const;
    // The events that a Qt mouse event gives, through the stroke smoothing
    // while a button is down; false when a move is too short to be kept.
    bool buildEvent(QMouseEvent* event, QList<MEvent>& events);
    void dispatch(QList<MEvent>& events);
    // With QUILLMERE_RECORD naming a file, the raw samples of each stroke are
    // appended to it at the release, to be replayed.
    void record(const MEvent& event, bool first);
    bool isPanButton(int button, Qt::KeyboardModifiers modifiers) const;
    // The id of the tool whose mouse functions apply.
    int currentToolId() const;
    // The current tool's: a move shorter than it is dropped, and a press is
    // held back to the first move that isn't.
    double toolAccumulatorDistance() const;
    // Whether the tools work on this view: they follow one view at a time.
    bool drivesTools() const;
    // Where each event built from input goes on to the controls, then the tools.
    void offerToTools(MEvent* event);

    MTransform* m_transform = nullptr;
    std::unique_ptr<MVertexBuffer> m_vertexBuffer;
    QElapsedTimer m_updateTimer;
    MCanvas* m_canvas = nullptr;
    MToolValues* m_toolValues = nullptr;
    QVector<QPointer<MControl>> m_controls;
    // A press held back for a tool with an accumulator distance.
    bool m_pressHeld = false;
    bool m_firstPaint = true;
    QPointF m_lastMousePosition;
    QPointF m_pressPosition;
    int m_pressedButton = 0;
    bool m_pressed = false;
    bool m_panning = false;
    bool m_panMode = false;
    MEvent m_currentEvent;
    QElapsedTimer m_eventTimer;
    QElapsedTimer m_strokeTimer;
    MStrokeSmoother m_smoother;
    MStrokeFile::Stroke m_recordedStroke;
    double m_alphaFilter = 0.5;
    GLuint m_filterMode;
    QString m_text;
    double m_textOpacity = 0.0;
    bool m_readOnly = false;
    bool m_interactive = true;
    bool m_glReady = false;
    bool m_timeLineMode = false;
    bool m_showPreviousFrame = false;
    bool m_firstLayerAsBackground = false;
    QPixmap m_forbiddenCursor;
    std::unique_ptr<QOpenGLVertexArrayObject> m_vertexArray;
    QByteArray m_animatedParameter;
    QPointer<QPropertyAnimation> m_textAnimation;
    QPointer<QParallelAnimationGroup> m_viewAnimation;
    QPointF m_lastTranslation;
    double m_lastRotation = 0.0;
};
