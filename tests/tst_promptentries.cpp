#include "app/hub/PostMsg.h"
#include "support/PromptDriver.h"
#include "support/TestHome.h"
#include "ui/AddDelayTime.h"
#include "ui/ContainReset.h"
#include "ui/MouseOffLine.h"
#include "ui/QuestionDialog.h"
#include "ui/UpDataParam.h"

#include <QLineEdit>
#include <QSpinBox>

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
    void mouseAnswersAgain();
    void dimsWhatLiesBehind();
    void waiting();
    void waitingCutShort();
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
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    const QString twoBytes = QStringLiteral("é");
    const QString fourBytes = QString::fromUtf8("🖱"); // two QChars
    QTest::newRow("blank at the end") << "ab "
                                      << "ab";
    QTest::newRow("blanks only") << "   "
                                 << "";
    QTest::newRow("30 ASCII") << QString(30, 'x') << QString(30, 'x');
    QTest::newRow("31 ASCII") << QString(31, 'x') << QString(30, 'x');
    QTest::newRow("15 of two bytes") << twoBytes.repeated(15) << twoBytes.repeated(15);
    QTest::newRow("16 of two bytes") << twoBytes.repeated(16) << twoBytes.repeated(15);
    QTest::newRow("mixed") << twoBytes.repeated(14) + "abc" << twoBytes.repeated(14) + "ab";
    QTest::newRow("no half characters") << "abc" + fourBytes.repeated(7) << "abc" + fourBytes.repeated(6);
    QTest::newRow("a novel") << QString(100000, QChar(0x6f22)) << QString(10, QChar(0x6f22));
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
    // A blank at the end takes all with it, and the cursor stays with its letter.
    edit->end(false);
    QTest::keyClick(edit, Qt::Key_Space);
    QCOMPARE(edit->text(), "abXcd");
    QCOMPARE(edit->cursorPosition(), 5);
    edit->setText(QString(30, 'x'));
    edit->setCursorPosition(1);
    QTest::keyClicks(edit, "Y");
    QCOMPARE(edit->text(), QLatin1Char('x') + "Y" + QString(28, 'x'));
    QCOMPARE(edit->cursorPosition(), 2);
}

void PromptEntriesTest::nameResult()
{
    QuestionDialog dialog;
    QCOMPARE(dialog.focusWidget(), dialog.findChild<QLineEdit *>());
    const auto enter = [&dialog](Qt::Key key, const char *buttonName = "") {
        return execAnd(dialog, [&dialog, key, buttonName] {
            auto *edit = dialog.findChild<QLineEdit *>("lineEdit");
            edit->setFocus();
            edit->selectAll();
            QTest::keyClicks(edit, "Jump");
            if (*buttonName)
                QTest::mouseClick(button(dialog, QLatin1String(buttonName)), Qt::LeftButton);
            else
                QTest::keyClick(edit, key);
        });
    };
    QCOMPARE(enter(Qt::Key_Return), int(QDialog::Accepted));
    QCOMPARE(dialog.name(), "Jump");
    // Whatever was confirmed before, a refusal leaves nothing.
    for (const char *way : {"CloseButton", "NewHong_2"}) {
        QCOMPARE(enter(Qt::Key_unknown, way), int(QDialog::Rejected));
        QCOMPARE(dialog.name(), QString());
        QCOMPARE(enter(Qt::Key_unknown, "NewHong"), int(QDialog::Accepted));
    }
    QCOMPARE(enter(Qt::Key_Escape), int(QDialog::Rejected));
    QCOMPARE(dialog.name(), QString());
}

void PromptEntriesTest::delayEntry_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("delay");
    QTest::newRow("nothing") << "" << 10;
    QTest::newRow("too small") << "9" << 10;
    QTest::newRow("least") << "10" << 10;
    QTest::newRow("usual") << "250" << 250;
    QTest::newRow("most") << "65535" << 65535;
    QTest::newRow("too much: the last digit is refused") << "65536" << 6553;
    QTest::newRow("no number") << "-a2 5" << 25;
}

void PromptEntriesTest::delayEntry()
{
    QFETCH(QString, typed);
    AddDelayTime dialog;
    const auto *spinBox = dialog.findChild<QSpinBox *>("spinBox");
    QCOMPARE(spinBox->buttonSymbols(), QAbstractSpinBox::NoButtons);
    QVERIFY(spinBox->alignment() & Qt::AlignRight);
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

void PromptEntriesTest::mouseAnswersAgain()
{
    MouseOffLine prompt;
    QCOMPARE(execAnd(prompt, [] { postMsg()->post(&PostMsg::SigCloseOffOnline); }), int(QDialog::Rejected));
}

/** What is behind the prompt in front is dim, and nothing is when the last has gone, in whatever order and way they go.
 */
void PromptEntriesTest::dimsWhatLiesBehind()
{
    QWidget window;
    window.setStyleSheet("background: rgb(200,200,200);");
    window.resize(400, 300);
    window.show();
    auto *const button = new QToolButton(&window);
    const auto brightness = [](QWidget &shown) { return qGray(shown.grab().toImage().pixel(shown.width() - 4, 10)); };
    const int bright = brightness(window);

    ContainReset lower;
    lower.show();
    const int prompt = brightness(lower);
    QVERIFY(brightness(window) < bright / 2 && brightness(window) > 0);
    button->resize(window.size()); // what comes and goes underneath stays underneath
    window.resize(500, 300);
    QVERIFY(brightness(window) < bright / 2);
    auto upper = std::make_unique<UpDataParam>();
    upper->show();
    QVERIFY(brightness(lower) < prompt && brightness(window) < bright / 2);
    const int once = brightness(window);
    lower.close(); // before the one above it
    QCOMPARE(brightness(window), once);
    lower.show();
    QCOMPARE(brightness(lower), prompt);
    QVERIFY(brightness(*upper) < prompt);
    upper.reset();
    QCOMPARE(brightness(lower), prompt);
    QCOMPARE(brightness(window), once);
    QCOMPARE(execAnd(lower, [&] { lower.accept(); }), int(QDialog::Accepted));
    QCOMPARE(brightness(window), bright);

    MouseOffLine offline;
    QVERIFY(execAnd(offline, [&] {
                window.hide(); // into the tray and back, meanwhile
                window.show();
                QVERIFY(brightness(window) < bright / 2);
                postMsg()->post(&PostMsg::SigCloseOffOnline);
            }) != -99);
    QCOMPARE(brightness(window), bright);
    {
        const auto gone = std::make_unique<QWidget>();
        gone->show();
        lower.show();
    } // a window that goes while it is dim
    lower.close();
    QCOMPARE(brightness(window), bright);
    QCOMPARE(window.findChildren<QWidget *>().size(), 1);
}

/** The wait tells the version display first, then does what was handed in, and closes by itself. */
void PromptEntriesTest::waiting()
{
    QStringList story;
    QObject context;
    connect(postMsg(), &PostMsg::SigSetver, &context, [&](int step) { story << QStringLiteral("ver %1").arg(step); });
    UpDataParam prompt;
    prompt.setTimeUp([&] {
        story << (prompt.isVisible() ? "open" : "closed");
        Wait::serving(500);
    });
    prompt.startWaiting();
    prompt.startWaiting();
    QVERIFY(execAnd(prompt, [] {}) != -99);
    QTest::qWait(2 * Wait::scaled(4500));
    QCOMPARE(story, QStringList({"ver 4", "open"}));
    QVERIFY(!prompt.isVisible());

    QVERIFY(!prompt.rereadMark() && !prompt.importMode());
    prompt.setImport("file.bin");
    QVERIFY(prompt.importMode());
    prompt.setImport(QString());
    QVERIFY(!prompt.importMode());
}

/** Closed by the user, or gone before its time: what was handed in still runs for the one, and not for the other. */
void PromptEntriesTest::waitingCutShort()
{
    int runs = 0;
    {
        UpDataParam prompt;
        prompt.setTimeUp([&] { ++runs; });
        prompt.startWaiting();
        QCOMPARE(execAnd(prompt, [&] { prompt.on_CloseButton_clicked(); }), int(QDialog::Rejected));
        QTRY_COMPARE(runs, 1);
        QVERIFY(!prompt.isVisible());
        prompt.startWaiting();
    }
    QTest::qWait(2 * Wait::scaled(4500));
    QCOMPARE(runs, 1);

    // What was handed in may close the prompt, and even take it away.
    auto prompt = std::make_unique<UpDataParam>();
    prompt->setTimeUp([&] { prompt.reset(); });
    prompt->show();
    prompt->startWaiting();
    QTRY_VERIFY(!prompt);
}

HALVARION_TEST_MAIN(PromptEntriesTest)
#include "tst_promptentries.moc"
