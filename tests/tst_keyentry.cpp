#include "app/TextSetup.h"
#include "buttons/FireKey.h"
#include "buttons/GroupKey.h"
#include "buttons/KeySequences.h"
#include "support/Keys.h"
#include "support/PromptDriver.h"
#include "support/TestHome.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QScopeGuard>
#include <QSpinBox>

#include <memory>

Q_DECLARE_METATYPE(Qt::Key)

/** What is typed into the two dialogs, and what becomes of it. */
class KeyEntryTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { setUpFonts(); }
    void combination_data();
    void combination();
    void typedKeys_data();
    void typedKeys();
    void waysOut_data();
    void waysOut();
    void fireKey();
};

void KeyEntryTest::combination_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("events"); ///< action, kind, code of each
    QTest::addColumn<QString>("readBack");
    const auto row = [](const char *text, const char *events, const char *readBack = nullptr) {
        QTest::newRow(text) << QString(text) << QByteArray::fromHex(events) << QString(readBack ? readBack : text);
    };
    row("Ctrl+C", "000001 000106 010106 010001");
    row("A", "000104 010104");
    row("Shift+Ctrl+A", "000002 000001 000104 010104 010001 010002");
    row("Alt+Win", "000004 000008 010008 010004");
    row("", "000100 010100");
    row("Num+", "000157 010157");
    row("Ctrl+Num++A", "000001 000157 000104 010104 010157 010001");
    row("CTRL+backspace", "000001 00012a 01012a 010001", "Ctrl+BackSpace");
    row("A+B+C+D", "000104 000105 000106 010106 010105 010104", "A+B+C");
    row("LCtrl+none", "000100 000100 010100 010100", "+");
    row("F7", "000140 010140", "Alt"); // the mouse's code 64 is the right Alt key
    row("Enter+M", "000128 000110 010110 010128");
}

void KeyEntryTest::combination()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, events);
    QFETCH(QString, readBack);
    KeySequence sequence{};
    KeySequences::KeyCombinationToSequence(text, sequence);
    QByteArray made;
    for (int index = 0; index < sequence.EventCount; ++index) {
        const KeyEvent &event = sequence.Events[index];
        QCOMPARE(int(event.DelayMs), 10);
        made += char(event.Action);
        made += char(event.Kind);
        made += char(event.Code);
    }
    QCOMPARE(made.toHex(' '), events.toHex(' '));
    QCOMPARE(KeySequences::combinationText(sequence), readBack);
}

void KeyEntryTest::typedKeys_data()
{
    QTest::addColumn<QString>("boxes");
    QTest::addColumn<QList<int>>("keys"); ///< 0 is a pause
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("result"); ///< "too many" when the notice comes
    const auto row = [](const char *name, const QString &boxes, const QList<int> &keys, const QString &line,
                        const QString &result) { QTest::newRow(name) << boxes << keys << line << result; };
    using namespace Qt;
    row("Ctrl and two", "Ctrl", {Key_A, Key_B}, "A+B", "Ctrl+A+B");
    row("four in all", "Shift Ctrl Alt", {Key_A}, "A", "too many");
    row("boxes alone, in their order", "Alt Ctrl Shift", {}, "", "Shift+Ctrl+Alt");
    row("nothing", "", {}, "", "");
    row("the same again", "", {Key_A, Key_A, Key_B, Key_A}, "A+B", "A+B");
    row("the fourth begins anew", "", {Key_A, Key_B, Key_C, Key_D}, "D", "D");
    row("part of a name", "", {Key_F1, Key_F}, "F1", "F1");
    row("a pause begins anew", "Win", {Key_A, Key_B, 0, Key_B}, "B", "Win+B");
    row("the dialog's own keys", "", {Key_Escape, Key_Return, Key_Tab}, "Esc+Enter+Tab", "Esc+Enter+Tab");
    row("modifiers and media keys", "", {Key_Shift, Key_Control, Key_VolumeUp, Key_X}, "X", "X");
    row("a shifted key", "", {int(Key_Exclam), int(Key_F12)}, "1+F12", "1+F12");
}

void KeyEntryTest::typedKeys()
{
    QFETCH(QString, boxes);
    QFETCH(QList<int>, keys);
    QFETCH(QString, line);
    QFETCH(QString, result);
    GroupKey dialog;
    auto *const edit = dialog.findChild<QLineEdit *>("lineEdit");
    QString shown;
    bool isTooMany = false;
    if (!keys.contains(0))
        Wait::setScale(1.0); // a busy machine takes longer from key to key than a pause that is cut
    const auto cutAgain = qScopeGuard([] { Wait::setScale(shortWaits); });
    PromptDriver::execAnd(dialog, [&] {
        for (const QString &box : boxes.split(' ', Qt::SkipEmptyParts))
            QTest::mouseClick(dialog.findChild<QCheckBox *>(box), Qt::LeftButton, {}, {8, 12});
        for (const int key : qAsConst(keys)) {
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
            QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return);
            QTimer::singleShot(0, &dialog, [&] { dialog.reject(); });
        });
        QTest::mouseClick(dialog.findChild<QToolButton *>("NewHong"), Qt::LeftButton);
    });
    QCOMPARE(shown, line);
    QCOMPARE(isTooMany ? "too many" : dialog.keyText(), result);
    QCOMPARE(dialog.confirmed(), !isTooMany);
    if (isTooMany)
        QCOMPARE(edit->text(), QString());
}

void KeyEntryTest::waysOut_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isConfirmed");
    QTest::newRow("confirm") << "NewHong" << true;
    QTest::newRow("cancel") << "NewHong_2" << false;
    QTest::newRow("close") << "CloseButton" << false;
}

void KeyEntryTest::waysOut()
{
    QFETCH(QString, button);
    QFETCH(bool, isConfirmed);
    GroupKey dialog;
    PromptDriver::execAnd(dialog, [&] {
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F12, Qt::Key_Return})
            QTest::keyClick(&dialog, key); // three entries that are no way out
        QVERIFY(dialog.isVisible());
        Keys::click(&dialog, Qt::Key_Q);
        QTest::mouseClick(dialog.findChild<QToolButton *>(button), Qt::LeftButton);
    });
    QCOMPARE(dialog.confirmed(), isConfirmed);
    // The hook is gone: what is typed elsewhere is no entry.
    QLineEdit elsewhere;
    elsewhere.show();
    QVERIFY(QTest::qWaitForWindowActive(&elsewhere));
    Keys::click(&elsewhere, Qt::Key_W);
    QCOMPARE(elsewhere.text(), QString("w"));
    QCOMPARE(dialog.findChild<QLineEdit *>("lineEdit")->text(), QString("Q"));
}

void KeyEntryTest::fireKey()
{
    FireKey dialog;
    dialog.setTime(999);
    dialog.setCount(-1);
    auto *const time = dialog.findChild<QSpinBox *>("Time");
    QCOMPARE(time->value(), 255);
    QCOMPARE(PromptDriver::execAnd(dialog,
                                   [&] {
                                       QCOMPARE(dialog.focusWidget(), time);
                                       time->selectAll();
                                       QTest::keyClicks(time, "40");
                                       QTest::keyClick(time, Qt::Key_Return);
                                   }),
             1);
    QCOMPARE(dialog.interval(), 40);
    QCOMPARE(dialog.repeats(), 0);
    FireKey refused;
    QCOMPARE(refused.findChild<QSpinBox *>("Time")->value(), 10);
    QCOMPARE(refused.findChild<QSpinBox *>("Count")->value(), 3);
    QCOMPARE(PromptDriver::execAnd(refused, [&] { QTest::keyClick(&refused, Qt::Key_Escape); }), 0);
    QVERIFY(!refused.confirmed());
}

HALVARION_TEST_MAIN(KeyEntryTest)
#include "tst_keyentry.moc"
