#pragma once

#include <QObject>
#include <QRectF>

class MEvent;
class QPainter;

// An object drawn inside a canvas view that sees the view's events before any
// tool does. The view offers it every event through handleEvent; an answer of
// true ends the dispatch.
class MControl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ enabled WRITE set_enabled NOTIFY enabledChanged)
    Q_PROPERTY(bool visible READ visible WRITE set_visible NOTIFY visibleChanged)

public:
    explicit MControl(QObject* parent = nullptr);

    bool enabled() const { return m_enabled; }
    bool visible() const { return m_visible; }

    // Kind 0 to mousePress, 1 to hoverMove, 2 to mouseMove, 3 to mouseRelease;
    // any other kind answers false.
    bool handleEvent(MEvent* event);

    // The area to repaint after the control took an event, in canvas
    // coordinates; a null rectangle repaints the whole view.
    virtual QRectF boundingRect();
    // The GL pass, in the view's context.
    virtual void render();
    // The painter pass, over the tools.
    virtual void paint(QPainter* painter);
    // Reserved for a control that recomputes itself; nothing calls it yet.
    virtual void refresh();
    virtual bool mousePress(MEvent* event);
    virtual bool mouseMove(MEvent* event);
    virtual bool mouseRelease(MEvent* event);
    virtual bool hoverMove(MEvent* event);
    // The view hands the wheel to its controls first, as an event of kind 4
    // whose directionY is the sign of the turn.
    virtual bool wheel(MEvent* event);
    // Reserved: an MEvent carries no key, and the view offers keys to the
    // tools only.
    virtual bool keyPress(MEvent* event);

public Q_SLOTS:
    void set_enabled(bool value);
    void set_visible(bool value);

Q_SIGNALS:
    void enabledChanged(bool value);
    void visibleChanged(bool value);

private:
    bool m_enabled = true;
    bool m_visible = true;
};
