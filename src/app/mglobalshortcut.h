#pragma once

#include <QAbstractNativeEventFilter>
#include <QKeySequence>
#include <QObject>

// A hot key that works while another application has the focus. Under X11 it
// is a key grab on the root window; without X11 no shortcut can be set. The id
// of a hot key is its native key code XOR its native modifiers, and a key press
// whose code and modifiers give the same XOR activates it: two shortcuts whose
// XORs are equal are one id and fire together.
class MGlobalShortcut : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QKeySequence shortcut READ shortcut)

public:
    explicit MGlobalShortcut(QObject* parent = nullptr);
    ~MGlobalShortcut() override;

    bool isEnabled() const { return m_enabled; }
    QKeySequence shortcut() const { return m_shortcut; }
    // Zero while no shortcut is set.
    unsigned int id() const { return m_nativeKey ^ m_nativeModifiers; }
    unsigned int nativeKey() const { return m_nativeKey; }
    unsigned int nativeModifiers() const { return m_nativeModifiers; }

    // Whether this platform has system-wide shortcuts at all.
    static bool isAvailable();
    // The native key code of a key, 0 when it has none or there is no X11.
    static unsigned int nativeKeyCode(int key);
    static unsigned int nativeModifierMask(Qt::KeyboardModifiers modifiers);

    // Watches for the key presses of the grab.
    bool nativeEventFilter(const QByteArray& eventType, void* message, long* result) override;

public Q_SLOTS:
    // While disabled the grab stays but nothing is emitted.
    void setEnabled(bool enabled);
    // Takes the first key of the sequence, replacing the present shortcut;
    // false when the key has no native code, the grab is refused (another
    // client holds it) or there is no X11.
    bool setShortcut(const QKeySequence& shortcut);
    bool unsetShortcut();

Q_SIGNALS:
    void activated(MGlobalShortcut* self);
    void enabledChanged(bool enabled);

private:
    bool grab(unsigned int key, unsigned int modifiers);
    void ungrab(unsigned int key, unsigned int modifiers);

    bool m_enabled = true;
    QKeySequence m_shortcut;
    unsigned int m_nativeKey = 0;
    unsigned int m_nativeModifiers = 0;
};
