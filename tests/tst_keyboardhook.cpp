#include "platform/KeyboardHook.h"
#include "support/TestHome.h"

#include <QLineEdit>

#include <memory>

using platform::KeyboardHook;
using platform::SystemKeys;

namespace {

/** What a hook tells, as text: "+65" for a key that goes down, "+65*" for a repeat, "-65" for one that goes up. */
KeyboardHook::Callback noteIn(QStringList &changes)
{
    return [&changes](unsigned virtualKey, bool down, bool repeat) {
        changes << (down ? "+" : "-") + QString::number(virtualKey) + (repeat ? "*" : "");
    };
}

/** A press or release as the X11 platform delivers it: sent to the window, which hands it to the focus widget. */
void sendKey(QWidget &window, QEvent::Type type, int key, quint32 place, quint32 symbol,
             Qt::KeyboardModifiers modifiers = Qt::NoModifier, bool autoRepeat = false)
{
    QKeyEvent event(type, key, modifiers, place, symbol, 0, QString(), autoRepeat);
    QCoreApplication::sendEvent(window.windowHandle(), &event);
}

} // namespace

class TestKeyboardHook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        window = std::make_unique<QWidget>();
        edit = new QLineEdit(new QWidget(window.get()));
        window->show();
        edit->setFocus();
        QApplication::setActiveWindow(window.get());
        changes.clear();
        hook = std::make_unique<KeyboardHook>();
        QVERIFY(hook->install(noteIn(changes)));
    }
    void tellsKeys();
    void tellsOnce();
    void tellsNestedKeys();
    void tellsHeldKeys();
    void treatsSystemKeys();

private:
    QString told() const { return changes.join(' '); }

    std::unique_ptr<QWidget> window;
    QLineEdit *edit = nullptr; ///< has the focus; one widget lies between it and the window
    QStringList changes;
    std::unique_ptr<KeyboardHook> hook;
};

void TestKeyboardHook::tellsKeys()
{
    // Key, its place and symbol with 0 where they aren't told, and the virtual key that is told.
    const std::tuple<const char *, int, unsigned, unsigned, unsigned, Qt::KeyboardModifiers> keys[] = {
        {"keypad 9", Qt::Key_9, 0, 0, 105, Qt::KeypadModifier},
        {"F12", Qt::Key_F12, 0, 0, 123, {}},
        {"Shift+Tab", Qt::Key_Backtab, 0, 0, 9, Qt::ShiftModifier},
        {"Ctrl", Qt::Key_Control, 0, 0, 162, {}},
        {"?", Qt::Key_Question, 0, 0, 191, Qt::ShiftModifier},
        {"no code", Qt::Key_unknown, 0, 0, 255, {}},
        {"right Shift", Qt::Key_Shift, 62, 0xffe2, 161, {}},
        {"Shift and left Alt", Qt::Key_Meta, 64, 0xffe7, 164, Qt::ShiftModifier},
        {"AltGr", Qt::Key_AltGr, 108, 0xfe03, 165, {}},
        {"right Ctrl by place", Qt::Key_Control, 105, 0, 163, {}},
        {"Cyrillic letter", 0x0424, 38, 0x6e6, 65, {}},
        {"German Shift+7", Qt::Key_Slash, 16, 0x2f, 55, Qt::ShiftModifier},
        {"French 1", Qt::Key_Ampersand, 10, 0x26, 49, {}}};
    for (const auto &[name, key, place, symbol, virtualKey, modifiers] : keys) {
        changes.clear();
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            sendKey(*window, type, key, place, symbol, modifiers);
        QVERIFY2(told().startsWith(QString("+%1 -%1").arg(virtualKey)), name);
    }
}

void TestKeyboardHook::tellsOnce()
{
    QStringList others;
    KeyboardHook other;
    QVERIFY(!other.install({}));
    QVERIFY(other.install(noteIn(others)));
    // The edit takes letters and leaves Escape to its parents: neither is told twice, and the edit gets its text.
    QTest::keyClick(window->windowHandle(), Qt::Key_A);
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QTest::keyClick(edit, Qt::Key_B);
    QTest::keyClick(edit, Qt::Key_Escape);
    QTest::keyClick(edit->parentWidget(), Qt::Key_Escape);
    hook->remove(); // the other one goes on
    QTest::keyClick(edit, Qt::Key_C);
    QCOMPARE(told(), QString("+65 -65 +27 -27 +66 -66 +27 -27 +27 -27"));
    QCOMPARE(others.join(' '), told() + " +67 -67");
    QCOMPARE(edit->text(), QString("abc"));
}

void TestKeyboardHook::tellsNestedKeys()
{
    // A key that arrives while another is told, as in the event loop of a dialog, doesn't make that one come twice.
    bool isLast = false;
    const auto nested = [&](unsigned key, bool down, bool repeat) {
        noteIn(changes)(key, down, repeat);
        if (isLast)
            hook.reset(); // nor does a hook that ends itself tell another one
        if (isLast || changes.size() == 1)
            QTest::keyClick(window->windowHandle(), Qt::Key_B);
    };
    QVERIFY(hook->install(nested));
    QTest::keyClick(window->windowHandle(), Qt::Key_A);
    QCOMPARE(told(), QString("+65 +66 -66 -65"));
    QCOMPARE(edit->text(), QString("ba"));
    isLast = true;
    QTest::keyClick(window->windowHandle(), Qt::Key_C);
    QCOMPARE(told(), QString("+65 +66 -66 -65 +67"));
}

void TestKeyboardHook::tellsHeldKeys()
{
    sendKey(*window, QEvent::KeyPress, Qt::Key_A, 38, 'a');
    for (int i = 0; i < 2; ++i) {
        sendKey(*window, QEvent::KeyRelease, Qt::Key_A, 38, 'a', Qt::NoModifier, true);
        sendKey(*window, QEvent::KeyPress, Qt::Key_A, 38, 'a', Qt::NoModifier, true);
    }
    sendKey(*window, QEvent::KeyPress, Qt::Key_B, 56, 'b');
    sendKey(*window, QEvent::KeyRelease, Qt::Key_A, 38, 'a');
    sendKey(*window, QEvent::KeyRelease, Qt::Key_B, 56, 'b');
    // Shift and 7 of a German keyboard, Shift let go first: the symbol changes under the finger, the key doesn't.
    sendKey(*window, QEvent::KeyPress, Qt::Key_Slash, 16, '/', Qt::ShiftModifier);
    sendKey(*window, QEvent::KeyRelease, Qt::Key_Slash, 0, '/');
    sendKey(*window, QEvent::KeyRelease, Qt::Key_Slash, 16, '/');
    QCOMPARE(told(), QString("+65 +65* +65* +66 -65 -66 +55 -191 -55"));
}

void TestKeyboardHook::treatsSystemKeys()
{
    for (SystemKeys systemKeys : {SystemKeys::Followed, SystemKeys::Untold}) {
        changes.clear();
        hook->install(noteIn(changes), systemKeys);
        sendKey(*window, QEvent::KeyPress, Qt::Key_Alt, 64, 0xffe9);
        sendKey(*window, QEvent::KeyPress, Qt::Key_A, 38, 'a', Qt::AltModifier);
        sendKey(*window, QEvent::KeyRelease, Qt::Key_A, 38, 'a', Qt::AltModifier);
        sendKey(*window, QEvent::KeyPress, Qt::Key_B, 56, 'b', Qt::AltModifier | Qt::ControlModifier);
        QCOMPARE(told(), QString(systemKeys == SystemKeys::Followed ? "+164 +65 -65* +66" : "-164 -65 -65* +66"));
    }
}

HALVARION_TEST_MAIN(TestKeyboardHook)
#include "tst_keyboardhook.moc"
