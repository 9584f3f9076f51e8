#include "app/hub/PostMsg.h"
#include "support/PromptDriver.h"
#include "support/Rows.h"
#include "support/TestHome.h"
#include "ui/AddDelayTime.h"
#include "ui/ContainReset.h"
#include "ui/QuestionDialog.h"
#include "ui/UpDataParam.h"

#include <QLineEdit>

#include <memory>

using namespace PromptDriver;

/** What single prompts do beyond the family: what keys do to them, what is typed into them, and what closes them by
 * itself. */
class PromptEntriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyboard();
    void nameEntry_data();
    void nameEntry();
    void nameEditedInTheMiddle();
    void nameResult();
    void delayEntry_data();
    void delayEntry();
    void dimsWhatLiesBehind();
    void waiting();
};

void PromptEntriesTest::keyboard()
{
    // Return belongs to the button that has the keyboard, though OK has it as its shortcut.
    ContainReset reset;
    QCOMPARE(button(reset, "OK")->shortcut(), QKeySequence(Qt::Key_Return));
    QCOMPARE(execAnd(reset,
                     [&] {
                         QVERIFY(button(reset, "OK")->hasFocus());
                         QTest::keyClick(reset.windowHandle(), Qt::Key_Tab);
                         QVERIFY(button(reset, "Cancel")->hasFocus());
                         QTest::keyClick(reset.windowHandle(), Qt::Key_Return);
                     }),
             int(QDialog::Rejected));

    // A key that is still held from before confirms nothing.
    int open = 0;
    QCOMPARE(execAnd(reset,
                     [&] {
                         button(reset, "OK")->setFocus();
                         QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
                         QCoreApplication::sendEvent(reset.windowHandle(), &repeated);
                         open = reset.isVisible();
                         QTest::keyClick(reset.windowHandle(), Qt::Key_Return);
                     }),
             int(QDialog::Accepted));
    QCOMPARE(open, 1);

    // Waiting is nothing to answer.
    UpDataParam wait;
    QCOMPARE(execAnd(wait,
                     [&] {
                         QTest::keyClick(wait.windowHandle(), Qt::Key_Return);
                         QTest::keyClick(wait.windowHandle(), Qt::Key_Space);
                         open += wait.isVisible();
                         wait.done(5);
                     }),
             5);
    QCOMPARE(open, 2);
}

void PromptEntriesTest::nameEntry_data()
{
    const Rows<QString, QString> row("typed", "name");
    // In the user's 8-bit encoding: on Windows, two bytes may be one there.
    const auto bytes = [](const QString &text) { return text.toLocal8Bit().size(); };
    const QString fourBytes = QString::fromUtf8("🖱"); // two QChars
    const int quarters = 27 / bytes(fourBytes);
    const QString threeBytes(QChar(0x6f22));
    row("blank at the end", "ab ", "ab");
    row("blanks only", "   ", "");
    row("31 ASCII", QString(31, 'x'), QString(30, 'x'));
    row("no half characters", "abc" + fourBytes.repeated(quarters + 1), "abc" + fourBytes.repeated(quarters));
    row("a novel", threeBytes.repeated(100000), threeBytes.repeated(30 / bytes(threeBytes)));
}

/** Typed in one go, as a paste is; the rules hold for the whole text each time. */
void PromptEntriesTest::nameEntry()
{
    QFETCH(QString, typed);
    QuestionDialog dialog;
    auto *edit = dialog.findChild<QLineEdit *>("lineEdit");
    QKeyEvent key(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, typed);
    QCoreApplication::sendEvent(edit, &key);
    QTEST(edit->text(), "name");
    QVERIFY(edit->text().toLocal8Bit().size() <= 30);
}

void PromptEntriesTest::nameEditedInTheMiddle()
{
    QuestionDialog dialog;
    auto *edit = dialog.findChild<QLineEdit *>("lineEdit");
    QTest::keyClicks(edit, "abcd");
    edit->setCursorPosition(2);
    QTest::keyClicks(edit, " X");
    QCOMPARE(edit->text(), "ab Xcd");
    QCOMPARE(edit->cursorPosition(), 4);
    // A blank at the end takes all with it.
    edit->end(false);
    QTest::keyClick(edit, Qt::Key_Space);
    QCOMPARE(edit->text(), "abXcd");
    edit->setText(QString(30, 'x'));
    edit->setCursorPosition(1);
    QTest::keyClicks(edit, "Y");
    QCOMPARE(edit->text(), QLatin1Char('x') + "Y" + QString(28, 'x'));
    QCOMPARE(edit->cursorPosition(), 2);
}

/** Whatever was confirmed before, a refusal leaves nothing. */
void PromptEntriesTest::nameResult()
{
    QuestionDialog dialog;
    auto *const edit = dialog.findChild<QLineEdit *>("lineEdit");
    QCOMPARE(dialog.focusWidget(), edit);
    for (const char *way : {"NewHong", "CloseButton", "NewHong_2"}) {
        QVERIFY(execAnd(dialog, [&] {
                    edit->setText("Jump");
                    QTest::mouseClick(button(dialog, way), Qt::LeftButton);
                }) != -99);
        QCOMPARE(dialog.name(), way == QString("NewHong") ? "Jump" : QString());
    }
}

void PromptEntriesTest::delayEntry_data()
{
    const Rows<QString, int> row("typed", "delay");
    row("nothing", "", 10);
    row("too small", "9", 10);
    row("most", "65535", 65535);
    row("too much: the last digit is refused", "65536", 6553);
    row("no number", "-a2 5", 25);
}

void PromptEntriesTest::delayEntry()
{
    QFETCH(QString, typed);
    AddDelayTime dialog;
    QCOMPARE(dialog.delay(), 10);
    // What is typed replaces the number that was there.
    QCOMPARE(execAnd(dialog,
                     [&] {
                         QTest::keyClicks(dialog.focusWidget(), typed);
                         QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
                     }),
             int(QDialog::Accepted));
    QTEST(dialog.delay(), "delay");
}

/** Whatever is behind the prompt in front is dim, and nothing is when the last has gone, whichever way they went. */
void PromptEntriesTest::dimsWhatLiesBehind()
{
    QWidget window;
    window.setStyleSheet("background: rgb(200,200,200);");
    window.resize(400, 300);
    window.show();
    const auto grey = [](QWidget &shown) { return qGray(shown.grab().toImage().pixel(shown.width() - 4, 10)); };
    ContainReset lower;
    lower.show();
    const int bright = grey(lower);
    const int dim = grey(window);
    QVERIFY(dim > 0 && dim < 100);
    window.resize(500, 300);
    QCOMPARE(grey(window), dim);
    auto upper = std::make_unique<UpDataParam>();
    upper->show();
    QVERIFY(grey(lower) < bright && grey(window) == dim); // once, however many prompts there are
    lower.close();
    QCOMPARE(grey(window), dim);
    lower.show();
    QVERIFY(grey(lower) == bright && grey(*upper) < bright);
    upper.reset();
    QVERIFY(grey(lower) == bright && grey(window) == dim);
    window.hide(); // into the tray and back, meanwhile
    window.show();
    QCOMPARE(grey(window), dim);
    {
        QWidget gone; // while it is dim
        gone.show();
    }
    lower.accept();
    QVERIFY(grey(window) == 200 && window.findChildren<QWidget *>().isEmpty());
}

/**
 * The wait tells the version display first, then does what was handed in, and closes by itself. What was handed in runs
 * for a wait that the user closed as well, not for one that is gone; and may take the prompt away.
 */
void PromptEntriesTest::waiting()
{
    QStringList story;
    QObject context;
    connect(postMsg(), &PostMsg::SigSetver, &context, [&](int step) { story << QStringLiteral("ver %1").arg(step); });
    auto prompt = std::make_unique<UpDataParam>();
    prompt->setTimeUp([&] {
        story << (prompt->isVisible() ? "open" : "closed");
        Wait::serving(500);
    });
    prompt->startWaiting();
    prompt->startWaiting();
    QVERIFY(execAnd(*prompt, [] {}) != -99);
    QVERIFY(!prompt->isVisible());
    prompt->startWaiting();
    QCOMPARE(execAnd(*prompt, [&] { prompt->on_CloseButton_clicked(); }), int(QDialog::Rejected));
    QTRY_COMPARE(story, QStringList({"ver 4", "open", "ver 4", "closed"}));
    UpDataParam().startWaiting();
    prompt->setTimeUp([&] { prompt.reset(); });
    prompt->show();
    prompt->startWaiting();
    QTRY_VERIFY(!prompt);
    QTest::qWait(2 * Wait::scaled(4500));
    QCOMPARE(story.size(), 5);
}

HALVARION_TEST_MAIN(PromptEntriesTest)
#include "tst_promptentries.moc"
