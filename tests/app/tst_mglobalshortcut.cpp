// System-wide shortcuts: a real grab on the X server, a grab another client
// already holds, activation by key presses of the same id, and no shortcut at
// all without X11.

#include "support/testenvironment.h"

#include "app/mglobalshortcut.h"

#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QX11Info>

#include <xcb/xcb.h>

#include <cstdlib>

namespace {

xcb_key_press_event_t keyPress(unsigned int keyCode, unsigned int state)
{
    xcb_key_press_event_t event{};
    event.response_type = XCB_KEY_PRESS;
    event.detail = xcb_keycode_t(keyCode);
    event.root = xcb_window_t(QX11Info::appRootWindow());
    event.state = uint16_t(state);
    return event;
}

bool deliver(MGlobalShortcut& shortcut, xcb_key_press_event_t event)
{
    long result = 0;
    return shortcut.nativeEventFilter("xcb_generic_event_t", &event, &result);
}

} // namespace

class TestMGlobalShortcut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void grabAndRelease();
    void grabHeldByAnotherClient();
    void activation();
    void sameIdClashes();
    void withoutX11();
};

void TestMGlobalShortcut::grabAndRelease()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    QVERIFY(MGlobalShortcut::isAvailable());

    MGlobalShortcut shortcut;
    QVERIFY(shortcut.setShortcut(QKeySequence(QStringLiteral("Ctrl+Alt+F7"))));
    QCOMPARE(shortcut.shortcut(), QKeySequence(QStringLiteral("Ctrl+Alt+F7")));
    const unsigned int f7 = MGlobalShortcut::nativeKeyCode(Qt::Key_F7);
    QVERIFY(f7 != 0);
    QCOMPARE(shortcut.nativeKey(), f7);
    QCOMPARE(shortcut.nativeModifiers(), unsigned(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1));
    QCOMPARE(shortcut.id(), f7 ^ unsigned(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1));

    // Only the first key of a sequence counts; setting replaces.
    QVERIFY(shortcut.setShortcut(QKeySequence(QStringLiteral("Shift+F9, Ctrl+A"))));
    QCOMPARE(shortcut.shortcut(), QKeySequence(QStringLiteral("Shift+F9")));
    QCOMPARE(shortcut.nativeKey(), MGlobalShortcut::nativeKeyCode(Qt::Key_F9));

    QVERIFY(shortcut.unsetShortcut());
    QVERIFY(shortcut.shortcut().isEmpty());
    QCOMPARE(shortcut.id(), 0u);
    QVERIFY(!shortcut.unsetShortcut());

    // Keys without a native code, and empty sequences, can't be set.
    QVERIFY(!shortcut.setShortcut(QKeySequence()));
    QVERIFY(!shortcut.setShortcut(QKeySequence(Qt::Key_LaunchMail)));
    QVERIFY(shortcut.shortcut().isEmpty());

    // Once released, another client can take the same grab.
    QVERIFY(shortcut.setShortcut(QKeySequence(QStringLiteral("Ctrl+Alt+F7"))));
    QVERIFY(shortcut.unsetShortcut());
    xcb_connection_t* other = xcb_connect(nullptr, nullptr);
    QVERIFY(!xcb_connection_has_error(other));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    xcb_generic_error_t* error = xcb_request_check(
        other, xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, xcb_keycode_t(f7),
                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const bool taken = error == nullptr;
    std::free(error);
    xcb_disconnect(other);
    QVERIFY2(taken, "the released grab is still held");
}

void TestMGlobalShortcut::grabHeldByAnotherClient()
{
    const unsigned int f8 = MGlobalShortcut::nativeKeyCode(Qt::Key_F8);
    QVERIFY(f8 != 0);
    xcb_connection_t* other = xcb_connect(nullptr, nullptr);
    QVERIFY(!xcb_connection_has_error(other));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    xcb_generic_error_t* error = xcb_request_check(
        other, xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT,
                                    xcb_keycode_t(f8), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    QVERIFY(error == nullptr);

    MGlobalShortcut shortcut;
    QVERIFY(!shortcut.setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+F8"))));
    QVERIFY(shortcut.shortcut().isEmpty());
    QCOMPARE(shortcut.id(), 0u);
    // The same key with other modifiers is free.
    QVERIFY(shortcut.setShortcut(QKeySequence(QStringLiteral("Ctrl+F8"))));
    xcb_disconnect(other);
    // Once the other client is gone, the grab can be had.
    MGlobalShortcut later;
    QTRY_VERIFY(later.setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+F8"))));
}

void TestMGlobalShortcut::activation()
{
    MGlobalShortcut shortcut;
    QVERIFY(shortcut.setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+F10"))));
    QSignalSpy activated(&shortcut, &MGlobalShortcut::activated);
    const unsigned int key = shortcut.nativeKey();
    const unsigned int modifiers = shortcut.nativeModifiers();

    // Caps Lock and Num Lock don't matter; the press is left to others.
    QVERIFY(!deliver(shortcut, keyPress(key, modifiers | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2)));
    QCOMPARE(activated.size(), 1);
    QCOMPARE(activated.at(0).at(0).value<MGlobalShortcut*>(), &shortcut);

    // Other modifiers, another key, a release: nothing.
    deliver(shortcut, keyPress(key, XCB_MOD_MASK_CONTROL));
    deliver(shortcut, keyPress(key + 1, modifiers));
    xcb_key_press_event_t release = keyPress(key, modifiers);
    release.response_type = XCB_KEY_RELEASE;
    deliver(shortcut, release);
    QCOMPARE(activated.size(), 1);

    // Disabled: the grab stays, nothing is emitted.
    QSignalSpy enabled(&shortcut, &MGlobalShortcut::enabledChanged);
    shortcut.setEnabled(false);
    shortcut.setEnabled(false);
    QCOMPARE(enabled.size(), 1);
    deliver(shortcut, keyPress(key, modifiers));
    QCOMPARE(activated.size(), 1);
    shortcut.setEnabled(true);
    deliver(shortcut, keyPress(key, modifiers));
    QCOMPARE(activated.size(), 2);

    // Other kinds of native events are not looked at.
    long result = 0;
    xcb_key_press_event_t press = keyPress(key, modifiers);
    QVERIFY(!shortcut.nativeEventFilter("windows_generic_MSG", &press, &result));
    QCOMPARE(activated.size(), 2);
}

void TestMGlobalShortcut::sameIdClashes()
{
    struct Modifier
    {
        Qt::KeyboardModifiers qt;
        const char* text;
    };
    const Modifier modifierSets[] = {{Qt::NoModifier, ""},
                                     {Qt::ShiftModifier, "Shift+"},
                                     {Qt::ControlModifier, "Ctrl+"},
                                     {Qt::AltModifier, "Alt+"},
                                     {Qt::ShiftModifier | Qt::ControlModifier, "Ctrl+Shift+"},
                                     {Qt::ControlModifier | Qt::AltModifier, "Ctrl+Alt+"},
                                     {Qt::ShiftModifier | Qt::AltModifier, "Shift+Alt+"}};
    QVector<int> keys;
    for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key)
        keys.append(key);
    for (int key = Qt::Key_0; key <= Qt::Key_9; ++key)
        keys.append(key);
    for (int key = Qt::Key_F1; key <= Qt::Key_F12; ++key)
        keys.append(key);

    // Two different combinations of key and modifiers with the same XOR.
    QString first;
    QString second;
    for (int a : keys) {
        const unsigned int codeA = MGlobalShortcut::nativeKeyCode(a);
        if (codeA == 0)
            continue;
        const unsigned int idA = codeA ^ MGlobalShortcut::nativeModifierMask(Qt::ControlModifier);
        for (int b : keys) {
            const unsigned int codeB = MGlobalShortcut::nativeKeyCode(b);
            for (const Modifier& modifier : modifierSets) {
                if (b == a || codeB == 0 || (codeB ^ MGlobalShortcut::nativeModifierMask(modifier.qt)) != idA)
                    continue;
                first = QStringLiteral("Ctrl+") + QKeySequence(a).toString();
                second = QLatin1String(modifier.text) + QKeySequence(b).toString();
                break;
            }
            if (!second.isEmpty())
                break;
        }
        if (!second.isEmpty())
            break;
    }
    QVERIFY2(!second.isEmpty(), "no pair of shortcuts with one id in this key map");

    MGlobalShortcut one;
    MGlobalShortcut two;
    QVERIFY2(one.setShortcut(QKeySequence(first)), qPrintable(first));
    QVERIFY2(two.setShortcut(QKeySequence(second)), qPrintable(second));
    QVERIFY(one.nativeKey() != two.nativeKey());
    QCOMPARE(one.id(), two.id());

    QSignalSpy oneActivated(&one, &MGlobalShortcut::activated);
    QSignalSpy twoActivated(&two, &MGlobalShortcut::activated);
    // The press of either combination is the press of the one id.
    const xcb_key_press_event_t pressTwo = keyPress(two.nativeKey(), two.nativeModifiers());
    deliver(one, pressTwo);
    deliver(two, pressTwo);
    QCOMPARE(oneActivated.size(), 1);
    QCOMPARE(twoActivated.size(), 1);
    const xcb_key_press_event_t pressOne = keyPress(one.nativeKey(), one.nativeModifiers());
    deliver(one, pressOne);
    deliver(two, pressOne);
    QCOMPARE(oneActivated.size(), 2);
    QCOMPARE(twoActivated.size(), 2);
}

void TestMGlobalShortcut::withoutX11()
{
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        // Run this function again in a process of its own on the offscreen platform.
        QProcess child;
        QProcessEnvironment environment = QuillmereTest::childEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("withoutX11")});
        QVERIFY(child.waitForFinished(60000));
        const QString output = QString::fromLocal8Bit(child.readAll());
        QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0, qPrintable(output));
        QVERIFY2(output.contains(QLatin1String("PASS   : TestMGlobalShortcut::withoutX11()")),
                 qPrintable(output));
        return;
    }
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("offscreen"));
    QVERIFY(!MGlobalShortcut::isAvailable());
    QCOMPARE(MGlobalShortcut::nativeKeyCode(Qt::Key_F7), 0u);
    MGlobalShortcut shortcut;
    QVERIFY(!shortcut.setShortcut(QKeySequence(QStringLiteral("Ctrl+Alt+F7"))));
    QVERIFY(shortcut.shortcut().isEmpty());
    QVERIFY(!shortcut.unsetShortcut());
}

QUILLMERE_TEST_MAIN(TestMGlobalShortcut)
#include "tst_mglobalshortcut.moc"
