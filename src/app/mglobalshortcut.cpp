#include "app/mglobalshortcut.h"

#include "app/mlogger.h"

#include <QCoreApplication>
#include <QGuiApplication>

#ifdef QUILLMERE_X11
#include <QX11Info>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#endif

namespace {

#ifdef QUILLMERE_X11

constexpr unsigned int modifierMask =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
// Caps Lock and Num Lock change nothing to a shortcut: each grab is repeated
// with them.
constexpr unsigned int lockMasks[4] = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                       XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

xcb_connection_t* connection()
{
    return QX11Info::isPlatformX11() ? QX11Info::connection() : nullptr;
}

// The X key symbol of a Qt key; 0 for keys without one.
unsigned int keySymbol(int key)
{
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return 0xffbe + unsigned(key - Qt::Key_F1);
    switch (key) {
    case Qt::Key_Escape:
        return 0xff1b;
    case Qt::Key_Tab:
        return 0xff09;
    case Qt::Key_Backspace:
        return 0xff08;
    case Qt::Key_Return:
        return 0xff0d;
    case Qt::Key_Enter:
        return 0xff8d;
    case Qt::Key_Insert:
        return 0xff63;
    case Qt::Key_Delete:
        return 0xffff;
    case Qt::Key_Pause:
        return 0xff13;
    case Qt::Key_Print:
        return 0xff61;
    case Qt::Key_Home:
        return 0xff50;
    case Qt::Key_End:
        return 0xff57;
    case Qt::Key_Left:
        return 0xff51;
    case Qt::Key_Up:
        return 0xff52;
    case Qt::Key_Right:
        return 0xff53;
    case Qt::Key_Down:
        return 0xff54;
    case Qt::Key_PageUp:
        return 0xff55;
    case Qt::Key_PageDown:
        return 0xff56;
    default:
        break;
    }
    // Latin-1 keys share their codes with their X symbols.
    if (key >= 0x20 && key <= 0xff)
        return unsigned(key);
    return 0;
}

#endif

} // namespace

MGlobalShortcut::MGlobalShortcut(QObject* parent) : QObject(parent)
{
    if (QCoreApplication::instance())
        QCoreApplication::instance()->installNativeEventFilter(this);
}

MGlobalShortcut::~MGlobalShortcut()
{
    unsetShortcut();
    if (QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool MGlobalShortcut::isAvailable()
{
#ifdef QUILLMERE_X11
    return connection() != nullptr;
#else
    return false;
#endif
}

unsigned int MGlobalShortcut::nativeKeyCode(int key)
{
#ifdef QUILLMERE_X11
    xcb_connection_t* x = connection();
    const unsigned int symbol = keySymbol(key);
    if (!x || symbol == 0)
        return 0;
    // Letters are listed under their lower-case symbol first.
    const unsigned int lower = (symbol >= 'A' && symbol <= 'Z') ? symbol + 32 : symbol;
    const xcb_setup_t* setup = xcb_get_setup(x);
    const xcb_keycode_t first = setup->min_keycode;
    const int count = int(setup->max_keycode) - int(first) + 1;
    if (count <= 0)
        return 0;
    xcb_generic_error_t* error = nullptr;
    std::unique_ptr<xcb_get_keyboard_mapping_reply_t, decltype(&std::free)> reply(
        xcb_get_keyboard_mapping_reply(x, xcb_get_keyboard_mapping(x, first, xcb_keycode_t(count)), &error),
        &std::free);
    if (error) {
        MLogger::systemError(QStringLiteral("MGlobalShortcut::nativeKeyCode"),
                             QStringLiteral("Keyboard mapping refused, code %1").arg(error->error_code));
        std::free(error);
        return 0;
    }
    if (!reply)
        return 0;
    const int perCode = reply->keysyms_per_keycode;
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    const int length = xcb_get_keyboard_mapping_keysyms_length(reply.get());
    for (int code = 0; code < count; ++code) {
        for (int column = 0; column < perCode; ++column) {
            const int index = code * perCode + column;
            if (index >= length)
                return 0;
            if (symbols[index] == lower || symbols[index] == symbol)
                return unsigned(first) + unsigned(code);
        }
    }
    return 0;
#else
    Q_UNUSED(key)
    return 0;
#endif
}

unsigned int MGlobalShortcut::nativeModifierMask(Qt::KeyboardModifiers modifiers)
{
#ifdef QUILLMERE_X11
    unsigned int mask = 0;
    if (modifiers & Qt::ShiftModifier)
        mask |= XCB_MOD_MASK_SHIFT;
    if (modifiers & Qt::ControlModifier)
        mask |= XCB_MOD_MASK_CONTROL;
    if (modifiers & Qt::AltModifier)
        mask |= XCB_MOD_MASK_1;
    if (modifiers & Qt::MetaModifier)
        mask |= XCB_MOD_MASK_4;
    return mask;
#else
    Q_UNUSED(modifiers)
    return 0;
#endif
}

void MGlobalShortcut::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    Q_EMIT enabledChanged(enabled);
}

bool MGlobalShortcut::setShortcut(const QKeySequence& shortcut)
{
    if (!m_shortcut.isEmpty())
        unsetShortcut();
    if (shortcut.isEmpty() || !isAvailable())
        return false;
    const int combined = shortcut[0];
    const int key = combined & ~int(Qt::KeyboardModifierMask);
    const auto modifiers = Qt::KeyboardModifiers(combined & int(Qt::KeyboardModifierMask));
    const unsigned int nativeKey = nativeKeyCode(key);
    const unsigned int nativeModifiers = nativeModifierMask(modifiers);
    if (nativeKey == 0 || !grab(nativeKey, nativeModifiers))
        return false;
    m_shortcut = QKeySequence(combined);
    m_nativeKey = nativeKey;
    m_nativeModifiers = nativeModifiers;
    return true;
}

bool MGlobalShortcut::unsetShortcut()
{
    if (m_shortcut.isEmpty())
        return false;
    ungrab(m_nativeKey, m_nativeModifiers);
    m_shortcut = QKeySequence();
    m_nativeKey = 0;
    m_nativeModifiers = 0;
    return true;
}

bool MGlobalShortcut::grab(unsigned int key, unsigned int modifiers)
{
#ifdef QUILLMERE_X11
    xcb_connection_t* x = connection();
    if (!x)
        return false;
    const xcb_window_t root = xcb_window_t(QX11Info::appRootWindow());
    xcb_void_cookie_t cookies[4];
    for (int i = 0; i < 4; ++i) {
        cookies[i] = xcb_grab_key_checked(x, 1, root, uint16_t(modifiers | lockMasks[i]), xcb_keycode_t(key),
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    }
    bool granted = true;
    for (int i = 0; i < 4; ++i) {
        xcb_generic_error_t* error = xcb_request_check(x, cookies[i]);
        // Only the plain grab decides: the lock variants are a convenience.
        if (error && i == 0)
            granted = false;
        std::free(error);
    }
    if (!granted)
        ungrab(key, modifiers);
    return granted;
#else
    Q_UNUSED(key)
    Q_UNUSED(modifiers)
    return false;
#endif
}

void MGlobalShortcut::ungrab(unsigned int key, unsigned int modifiers)
{
#ifdef QUILLMERE_X11
    xcb_connection_t* x = connection();
    if (!x)
        return;
    const xcb_window_t root = xcb_window_t(QX11Info::appRootWindow());
    for (unsigned int lock : lockMasks)
        xcb_ungrab_key(x, xcb_keycode_t(key), root, uint16_t(modifiers | lock));
    xcb_flush(x);
#else
    Q_UNUSED(key)
    Q_UNUSED(modifiers)
#endif
}

bool MGlobalShortcut::nativeEventFilter(const QByteArray& eventType, void* message, long* result)
{
    Q_UNUSED(result)
#ifdef QUILLMERE_X11
    if (eventType != "xcb_generic_event_t" || !message || m_shortcut.isEmpty())
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & ~0x80) != XCB_KEY_PRESS)
        return false;
    const auto* press = static_cast<const xcb_key_press_event_t*>(message);
    const unsigned int pressedId = unsigned(press->detail) ^ (unsigned(press->state) & modifierMask);
    if (pressedId == id() && m_enabled)
        Q_EMIT activated(this);
#else
    Q_UNUSED(eventType)
    Q_UNUSED(message)
#endif
    // Other shortcuts of the same id see the press too.
    return false;
}
