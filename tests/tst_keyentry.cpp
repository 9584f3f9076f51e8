#include "app/TextSetup.h"
#include "buttons/FireKey.h"
#include "buttons/GroupKey.h"
#include "buttons/KeySequences.h"
#include "support/Child.h"
#include "support/Keys.h"
#include "support/PromptDriver.h"
#include "support/TestHome.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QScopeGuard>
#include <QSpinBox>

#include <memory>

/** What is typed into the two dialogs, and what becomes of it. */
class KeyEntryTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { setUpFonts(); }
    void combination();
    void typedKeys();
    void waysOut();
    void fireKey();
};

void KeyEntryTest::combination()
{
    // Text, what its events are by action, kind and code, and what is read of them.
    const std::tuple<const char *, const char *, const char *> combinations[] = {
        {"Ctrl+C", "000001 000106 010106 010001", "Ctrl+C"},
        {"Shift+Ctrl+Num+", "000002 000001 000157 010157 010001 010002", "Shift+Ctrl+Num+"},
        {"Alt+Win", "000004 000008 010008 010004", "Alt+Win"},
        {"", "000100 010100", ""},
        {"Ctrl+Num++A", "000001 000157 000104 010104 010157 010001", "Ctrl+Num++A"},
        {"CTRL+backspace", "000001 00012a 01012a 010001", "Ctrl+BackSpace"},
        {"A+B+C+D", "000104 000105 000106 010106 010105 010104", "A+B+C"},
        {"LCtrl+none", "000100 000100 010100 010100", "+"},
        {"F7", "000140 010140", "Alt"}}; // the mouse's code 64 is the right Alt key
    for (const auto &[text, events, readBack] : combinations) {
        KeySequence sequence{};
        KeySequences::KeyCombinationToSequence(text, sequence);
        QByteArray made;
        for (int index = 0; index < sequence.EventCount; ++index) {
            const KeyEvent &event = sequence.Events[index];
            QCOMPARE(int(event.DelayMs), 10);
            for (const int part : {int(event.Action), int(event.Kind), int(event.Code)})
                made += char(part);
        }
        QCOMPARE(made.toHex(), QByteArray(events).replace(' ', ""));
        QCOMPARE(KeySequences::combinationText(sequence), QString(readBack));
    }
}

void KeyEntryTest::typedKeys()
{
    using namespace Qt;
    // Boxes, keys with 0 for a pause, the line that shows, and what comes of it.
    const std::tuple<const char *, QList<int>, const char *, const char *> entries[] = {
        {"Ctrl", {Key_A, Key_B}, "A+B", "Ctrl+A+B"},
        {"Shift Ctrl Alt", {Key_A}, "A", "too many"}, // four in all
        {"Alt Ctrl Shift", {}, "", "Shift+Ctrl+Alt"}, // in their order
        {"", {}, "", ""},
        {"", {Key_A, Key_A, Key_B, Key_A}, "A+B", "A+B"},
        {"", {Key_A, Key_B, Key_C, Key_D}, "D", "D"}, // the fourth begins anew
        {"", {Key_F1, Key_F}, "F1", "F1"},            // part of a name
        {"Win", {Key_A, Key_B, 0, Key_B}, "B", "Win+B"},
        {"", {Key_Escape, Key_Return, Key_Tab}, "Esc+Enter+Tab", "Esc+Enter+Tab"},
        {"", {Key_Shift, Key_Control, Key_VolumeUp, Key_X}, "X", "X"},
        {"", {Key_Exclam, Key_F12}, "1+F12", "1+F12"}};
    const auto cutAgain = qScopeGuard([] { Wait::setScale(shortWaits); });
    for (const auto &[boxes, keys, line, result] : entries) {
        GroupKey dialog;
        auto *const edit = dialog.findChild<QLineEdit *>("lineEdit");
        QString shown;
        bool isTooMany = false;
        // A busy machine takes longer from key to key than a pause that is cut.
        Wait::setScale(keys.contains(0) ? shortWaits : 1.0);
        PromptDriver::execAnd(dialog, [&, &boxes = boxes, &keys = keys] {
            for (const QString &box : QString(boxes).split(' ', SkipEmptyParts))
                QTest::mouseClick(dialog.findChild<QCheckBox *>(box), LeftButton, {}, {8, 12});
            for (const int key : keys) {
                if (key == 0)
                    QTest::qWait(Wait::scaled(3000)); // two seconds are the limit
                else
                    Keys::click(&dialog, Qt::Key(key));
            }
            shown = edit->text();
            QTimer::singleShot(20, &dialog, [&] {
                if (QApplication::activeModalWidget() == &dialog || !QApplication::activeModalWidget())
                    return;
                isTooMany = true;
                QTest::keyClick(QApplication::activeModalWidget(), Key_Return);
                QTimer::singleShot(0, &dialog, [&] { dialog.reject(); });
            });
            clickChild(&dialog, "NewHong");
        });
        QCOMPARE(shown, QString(line));
        QCOMPARE(isTooMany ? "too many" : dialog.keyText(), QString(result));
        QVERIFY(dialog.confirmed() != isTooMany && (!isTooMany || edit->text().isEmpty()));
    }
}

void KeyEntryTest::waysOut()
{
    QLineEdit elsewhere;
    for (const char *button : {"NewHong", "NewHong_2", "CloseButton"}) {
        GroupKey dialog;
        PromptDriver::execAnd(dialog, [&] {
            for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F12, Qt::Key_Return})
                QTest::keyClick(&dialog, key); // three entries that are no way out
            QVERIFY(dialog.isVisible());
            Keys::click(&dialog, Qt::Key_Q);
            clickChild(&dialog, button);
        });
        QCOMPARE(dialog.confirmed(), button == QString("NewHong"));
        // The hook is gone: what is typed elsewhere is no entry.
        elsewhere.show();
        QVERIFY(QTest::qWaitForWindowActive(&elsewhere));
        Keys::click(&elsewhere, Qt::Key_W);
        QCOMPARE(dialog.findChild<QLineEdit *>("lineEdit")->text(), QString("Q"));
    }
    QCOMPARE(elsewhere.text(), QString("www"));
}

void KeyEntryTest::fireKey()
{
    FireKey dialog;
    dialog.setTime(999);
    dialog.setCount(-1);
    auto *const time = dialog.findChild<QSpinBox *>("Time");
    QCOMPARE(time->value(), 255);
    const int result = PromptDriver::execAnd(dialog, [&] {
        QCOMPARE(dialog.focusWidget(), time);
        time->selectAll();
        QTest::keyClicks(time, "40");
        QTest::keyClick(time, Qt::Key_Return);
    });
    QVERIFY(result == 1 && dialog.interval() == 40 && dialog.repeats() == 0);
}

HALVARION_TEST_MAIN(KeyEntryTest)
#include "tst_keyentry.moc"
