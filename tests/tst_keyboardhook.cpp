#include "platform/KeyboardHook.h"
#include "support/TestHome.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

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
    void tellsKeys_data();
    void tellsKeys();
    void tellsOnce();
    void tellsOnceWithNestedKeys();
    void tellsHeldKeys();
    void treatsSystemKeys();
    void endsInCallback();
    void areIndependent();
};

void TestKeyboardHook::tellsKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<unsigned>("place"); // 0: not told
    QTest::addColumn<unsigned>("symbol");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<unsigned>("virtualKey");
    const int shift = Qt::ShiftModifier;
    const int keypad = Qt::KeypadModifier;
    QTest::newRow("A") << int(Qt::Key_A) << 0u << 0u << 0 << 65u;
    QTest::newRow("9") << int(Qt::Key_9) << 0u << 0u << 0 << 57u;
    QTest::newRow("keypad 9") << int(Qt::Key_9) << 0u << 0u << keypad << 105u;
    QTest::newRow("keypad /") << int(Qt::Key_Slash) << 0u << 0u << keypad << 111u;
    QTest::newRow("keypad Home") << int(Qt::Key_Home) << 0u << 0u << keypad << 36u;
    QTest::newRow("F12") << int(Qt::Key_F12) << 0u << 0u << 0 << 123u;
    QTest::newRow("Escape") << int(Qt::Key_Escape) << 0u << 0u << 0 << 27u;
    QTest::newRow("Shift+Tab") << int(Qt::Key_Backtab) << 0u << 0u << shift << 9u;
    QTest::newRow("Left") << int(Qt::Key_Left) << 0u << 0u << 0 << 37u;
    QTest::newRow("Ctrl") << int(Qt::Key_Control) << 0u << 0u << 0 << 162u;
    QTest::newRow("/") << int(Qt::Key_Slash) << 0u << 0u << 0 << 191u;
    QTest::newRow("?") << int(Qt::Key_Question) << 0u << 0u << shift << 191u;
    QTest::newRow("volume") << int(Qt::Key_VolumeUp) << 0u << 0u << 0 << 175u;
    QTest::newRow("no code") << int(Qt::Key_unknown) << 0u << 0u << 0 << 255u;
    QTest::newRow("left Shift") << int(Qt::Key_Shift) << 50u << 0xffe1u << 0 << 160u;
    QTest::newRow("right Shift") << int(Qt::Key_Shift) << 62u << 0xffe2u << 0 << 161u;
    QTest::newRow("left Ctrl") << int(Qt::Key_Control) << 37u << 0xffe3u << 0 << 162u;
    QTest::newRow("right Ctrl") << int(Qt::Key_Control) << 105u << 0xffe4u << 0 << 163u;
    QTest::newRow("left Alt") << int(Qt::Key_Alt) << 64u << 0xffe9u << 0 << 164u;
    QTest::newRow("Shift and left Alt") << int(Qt::Key_Meta) << 64u << 0xffe7u << shift << 164u;
    QTest::newRow("right Alt") << int(Qt::Key_Alt) << 108u << 0xffeau << 0 << 165u;
    QTest::newRow("AltGr") << int(Qt::Key_AltGr) << 108u << 0xfe03u << 0 << 165u;
    QTest::newRow("left Win") << int(Qt::Key_Super_L) << 133u << 0xffebu << 0 << 91u;
    QTest::newRow("right Win") << int(Qt::Key_Super_R) << 134u << 0xffecu << 0 << 92u;
    QTest::newRow("Caps Lock as Ctrl") << int(Qt::Key_Control) << 66u << 0xffe3u << 0 << 162u;
    QTest::newRow("right Ctrl by place") << int(Qt::Key_Control) << 105u << 0u << 0 << 163u;
    QTest::newRow("Cyrillic letter") << 0x0424 << 38u << 0x6e6u << 0 << 65u;
    QTest::newRow("German Shift+7") << int(Qt::Key_Slash) << 16u << 0x2fu << shift << 55u;
    QTest::newRow("French 1") << int(Qt::Key_Ampersand) << 10u << 0x26u << 0 << 49u;
    QTest::newRow("French A") << int(Qt::Key_A) << 24u << 0x61u << 0 << 65u;
}

void TestKeyboardHook::tellsKeys()
{
    QFETCH(int, key);
    QFETCH(unsigned, place);
    QFETCH(unsigned, symbol);
    QFETCH(int, modifiers);
    QFETCH(unsigned, virtualKey);
    QWidget window;
    window.show();
    QStringList changes;
    KeyboardHook hook;
    QVERIFY(hook.install(noteIn(changes)));
    sendKey(window, QEvent::KeyPress, key, place, symbol, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(changes.join(' '), QString("+%1").arg(virtualKey));
}

void TestKeyboardHook::tellsOnce()
{
    // The edit takes letters and leaves Escape to its parents: neither is told twice, and the edit gets its text.
    QWidget window;
    QWidget middle(&window);
    QLineEdit edit(&middle);
    window.show();
    edit.setFocus();
    QApplication::setActiveWindow(&window);
    QStringList changes;
    KeyboardHook hook;
    QVERIFY(hook.install(noteIn(changes)));
    QTest::keyClick(window.windowHandle(), Qt::Key_A);
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    QTest::keyClick(&edit, Qt::Key_B);
    QTest::keyClick(&edit, Qt::Key_Escape);
    QTest::keyClick(&middle, Qt::Key_Escape);
    QCOMPARE(changes.join(' '), QString("+65 -65 +27 -27 +66 -66 +27 -27 +27 -27"));
    QCOMPARE(edit.text(), QString("ab"));

    hook.remove();
    changes.clear();
    QTest::keyClick(&edit, Qt::Key_C);
    QCOMPARE(changes, QStringList());
    QCOMPARE(edit.text(), QString("abc"));
}

void TestKeyboardHook::tellsOnceWithNestedKeys()
{
    // A key that arrives while another is told, as in the event loop of a dialog, doesn't make that one come twice.
    QWidget window;
    QLineEdit edit(&window);
    window.show();
    edit.setFocus();
    QApplication::setActiveWindow(&window);
    QStringList changes;
    KeyboardHook hook;
    QVERIFY(hook.install([&](unsigned key, bool down, bool repeat) {
        noteIn(changes)(key, down, repeat);
        if (changes.size() == 1)
            QTest::keyClick(window.windowHandle(), Qt::Key_B);
    }));
    QTest::keyClick(window.windowHandle(), Qt::Key_A);
    QCOMPARE(changes.join(' '), QString("+65 +66 -66 -65"));
    QCOMPARE(edit.text(), QString("ba"));
}

void TestKeyboardHook::tellsHeldKeys()
{
    QWidget window;
    window.show();
    QStringList changes;
    KeyboardHook hook;
    QVERIFY(hook.install(noteIn(changes)));
    sendKey(window, QEvent::KeyPress, Qt::Key_A, 38, 'a');
    for (int i = 0; i < 2; ++i) {
        sendKey(window, QEvent::KeyRelease, Qt::Key_A, 38, 'a', Qt::NoModifier, true);
        sendKey(window, QEvent::KeyPress, Qt::Key_A, 38, 'a', Qt::NoModifier, true);
    }
    sendKey(window, QEvent::KeyPress, Qt::Key_B, 56, 'b');
    sendKey(window, QEvent::KeyRelease, Qt::Key_A, 38, 'a');
    sendKey(window, QEvent::KeyRelease, Qt::Key_B, 56, 'b');
    // Shift and 7 of a German keyboard, Shift let go first: the symbol changes under the finger, the key doesn't.
    sendKey(window, QEvent::KeyPress, Qt::Key_Slash, 16, '/', Qt::ShiftModifier);
    sendKey(window, QEvent::KeyRelease, Qt::Key_Slash, 0, '/');
    sendKey(window, QEvent::KeyRelease, Qt::Key_Slash, 16, '/');
    QCOMPARE(changes.join(' '), QString("+65 +65* +65* +66 -65 -66 +55 -191 -55"));
}

void TestKeyboardHook::treatsSystemKeys()
{
    QWidget window;
    window.show();
    const auto told = [&window](SystemKeys systemKeys) {
        QStringList changes;
        KeyboardHook hook;
        hook.install(noteIn(changes), systemKeys);
        sendKey(window, QEvent::KeyPress, Qt::Key_Alt, 64, 0xffe9);
        sendKey(window, QEvent::KeyPress, Qt::Key_A, 38, 'a', Qt::AltModifier);
        sendKey(window, QEvent::KeyRelease, Qt::Key_A, 38, 'a', Qt::AltModifier);
        sendKey(window, QEvent::KeyPress, Qt::Key_B, 56, 'b', Qt::AltModifier | Qt::ControlModifier);
        return changes.join(' ');
    };
    QCOMPARE(told(SystemKeys::Followed), QString("+164 +65 -65* +66"));
    QCOMPARE(told(SystemKeys::Untold), QString("-164 -65 -65* +66"));
}

void TestKeyboardHook::endsInCallback()
{
    QWidget window;
    window.show();
    auto hook = std::make_unique<KeyboardHook>();
    int told = 0;
    QVERIFY(hook->install([&](unsigned, bool, bool) {
        ++told;
        hook.reset();
        QTest::keyClick(&window, Qt::Key_B); // as in the event loop of a dialog that the callback opens
        ++told;
    }));
    QTest::keyClick(&window, Qt::Key_A);
    QCOMPARE(told, 2);
}

void TestKeyboardHook::areIndependent()
{
    QWidget window;
    window.show();
    QStringList first;
    QStringList second;
    KeyboardHook one;
    KeyboardHook other;
    QVERIFY(!one.install({}));
    QVERIFY(one.install(noteIn(first)));
    QVERIFY(other.install(noteIn(second)));
    QTest::keyPress(&window, Qt::Key_A);
    other.remove();
    QTest::keyRelease(&window, Qt::Key_A);
    QCOMPARE(first.join(' '), QString("+65 -65"));
    QCOMPARE(second.join(' '), QString("+65"));
}

HALVARION_TEST_MAIN(TestKeyboardHook)
#include "tst_keyboardhook.moc"
