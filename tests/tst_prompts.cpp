#include "app/hub/PostMsg.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"
#include "support/AllPrompts.h"
#include "support/LanguageDocument.h"
#include "support/PromptDriver.h"
#include "support/Rows.h"
#include "support/TestHome.h"
#include "ui/FittedText.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QScopeGuard>
#include <QScreen>
#include <QWindow>

#include <map>
#include <utility>

using namespace AllPrompts;
using namespace PromptDriver;

namespace {

/** The buttons with a text. */
QList<QToolButton *> textButtons(const Prompt &prompt)
{
    QList<QToolButton *> buttons = prompt.findChildren<QToolButton *>();
    buttons.removeAll(button(prompt, "CloseButton"));
    return buttons;
}

/** The lines of the label's text, as wide and high as they are drawn. */
QRect textRect(const Prompt &prompt)
{
    const auto *label = prompt.findChild<QLabel *>("label");
    return label->fontMetrics().boundingRect(label->contentsRect(), Qt::AlignCenter | Qt::TextWordWrap, label->text());
}

/** What the product's language file says in an element of a section. */
QString fileText(int language, const QString &section, const QString &element)
{
    static std::map<int, LanguageDocument> files;
    const LanguageDocument &file = files.try_emplace(language, LanguageFile::path(language)).first->second;
    return file.text.value(section + QLatin1Char('/') + element, "missing");
}

void everyPrompt()
{
    QTest::addColumn<int>("row");
    int index = 0;
    for (const Row &row : rows)
        QTest::newRow(row.name) << index++;
}

} // namespace

/**
 * What the prompts share: their shape, their texts and every way out. And what single ones do: what keys do to them,
 * what is typed into them, and what closes them by itself.
 */
class PromptsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QFont::insertSubstitution("微软雅黑", "Noto Sans CJK SC"); }
    void init() { UserSettings::instance()->setLanguage(0); }
    void shape_data() { everyPrompt(); }
    void shape();
    void languages_data() { everyPrompt(); }
    void languages();
    void longTexts();
    void givenText();
    void waysOut_data() { everyPrompt(); }
    void waysOut();
    void placement();
    void placedByACompositor();
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

void PromptsTest::shape()
{
    QFETCH(int, row);
    const Made prompt = rows[row].make();
    QCOMPARE(prompt->minimumSize(), QSize(300, 140));
    QCOMPARE(prompt->maximumSize(), QSize(300, 140));
    // Qt adds the window bit to whatever has no parent.
    QCOMPARE(int(prompt->windowFlags()), 0x6C12 | int(Qt::Window));

    QCOMPARE(button(*prompt, "CloseButton")->geometry(), QRect(275, 5, 20, 20));
    QVERIFY(prompt->grab().toImage().pixelColor(40, 120).lightness() < 60); // its picture, not the system's ground
    // No button over another, the label or the edge.
    QRegion taken(prompt->findChild<QLabel *>("label")->geometry());
    const QList<QToolButton *> buttons = textButtons(*prompt);
    for (const QToolButton *each : buttons) {
        const QRect place = each->geometry();
        QCOMPARE(place.size(), QSize(90, 24));
        QVERIFY(!taken.intersects(place) && prompt->rect().contains(place));
        taken += place;
    }
}

/** Each language while the prompt is open: the file's texts as they stand, painted in letters one can read. */
void PromptsTest::languages()
{
    QFETCH(int, row);
    const char *const section = rows[row].section;
    const Made prompt = rows[row].make();
    prompt->show();
    QImage painted;
    for (int language = LanguageFile::languageCount; language >= 0; --language) {
        postMsg()->post(&PostMsg::SigChangeLanguage, int{language});
        QCOMPARE(labelText(*prompt), fileText(language, section, rows[row].text));
        for (const QToolButton *each : textButtons(*prompt))
            QCOMPARE(each->text(), fileText(language, section, each->objectName()));
        auto *const label = prompt->findChild<QLabel *>("label");
        QVERIFY2(label->font().pointSizeF() >= 9, qPrintable(label->text()));
        const QImage before = std::exchange(painted, label->grab().toImage());
        QVERIFY2(before != painted, qPrintable(label->text()));
    }
    // One that opens later comes up in the language chosen.
    UserSettings::instance()->setLanguage(4);
    QCOMPARE(labelText(*rows[row].make()), fileText(4, section, rows[row].text));
}

/** Letters shrink for a text that needs it, and only then; also for one that was set before it came into sight. */
void PromptsTest::longTexts()
{
    ContainReset prompt;
    const auto *label = prompt.findChild<QLabel *>("label");
    prompt.setLabelText(QStringLiteral("Restore everything to what it was when you unpacked it? ").repeated(3));
    prompt.show();
    QVERIFY(label->font().pointSizeF() < 11);
    QVERIFY(label->rect().contains(textRect(prompt)));
    // Two lines of like length rather than a last word alone.
    prompt.setLabelText("There is one word too many in this very line");
    QCOMPARE(label->font().pointSizeF(), 11.0);
    QVERIFY(label->rect().contains(textRect(prompt)));
    QVERIFY(textRect(prompt).width() < label->fontMetrics().horizontalAdvance(label->text()) * 3 / 4);

    QWidget window; // Windows makes no window as narrow as that
    QToolButton button(&window);
    button.resize(90, 24);
    for (const QString &text : {QStringLiteral("Réinitialiser"), QString(60, 'W')}) {
        FittedText::set(&button, text, 11);
        window.show();
        QVERIFY(button.fontMetrics().horizontalAdvance(button.text()) <= 82);
        QCOMPARE(button.text().endsWith(QChar(0x2026)), text.startsWith('W'));
    }
}

/** A question that was put must not turn into another one under the user's eyes. */
void PromptsTest::givenText()
{
    ContainReset other;
    other.setLabelText(QStringLiteral("Something else?"));
    postMsg()->post(&PostMsg::SigChangeLanguage, 1);
    QCOMPARE(labelText(other), QStringLiteral("Something else?"));
    QCOMPARE(button(other, "OK")->text(), fileText(1, "ContainReset", "OK"));
}

/** By every button, by the keys, and by closing; twice, as nothing of the first time may stay. */
void PromptsTest::waysOut()
{
    QFETCH(int, row);
    QStringList ways{"CloseButton", "Escape", "close"};
    const Made first = rows[row].make();
    for (const QToolButton *each : textButtons(*first))
        ways << each->objectName() << "Return";
    for (const QString &way : qAsConst(ways)) {
        const Made prompt = rows[row].make();
        QVERIFY(!prompt->confirmed());
        const bool confirms = QStringList{"NewHong", "OK", "Return"}.contains(way);
        const auto leave = [&] {
            QWidget *const target = prompt->focusWidget() ? prompt->focusWidget() : prompt.get();
            if (way == "Escape" || way == "Return")
                QTest::keyClick(target, way == "Escape" ? Qt::Key_Escape : Qt::Key_Return);
            else if (way == "close")
                prompt->close();
            else
                QTest::mouseClick(button(*prompt, way), Qt::LeftButton);
        };
        for (int showing = 0; showing < 2; ++showing) {
            const int result = execAnd(*prompt, leave);
            QVERIFY2(result == (confirms ? QDialog::Accepted : QDialog::Rejected), qPrintable(way));
            QVERIFY2(prompt->confirmed() == confirms && !prompt->isVisible(), qPrintable(way));
        }
    }
}

void PromptsTest::placement()
{
    QWidget caller;
    caller.setWindowFlags(Qt::FramelessWindowHint);
    caller.setGeometry(40, 30, 500, 400);
    QWidget page(&caller);
    page.setGeometry(20, 10, 320, 160);
    SameMacro prompt;
    prompt.centreOn(&page, QPoint(-50, -70));
    prompt.show();
    QCOMPARE(prompt.pos(), QPoint(40 + 20 + 10 - 50, 30 + 10 + 10 - 70));

    // Where nobody could answer it doesn't go.
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    caller.move(-32000, -32000);
    prompt.centreOn(&caller);
    QVERIFY(screen.contains(prompt.geometry()));
    prompt.move(5000, 0);
    prompt.centreOn(nullptr);
    QVERIFY(screen.contains(prompt.geometry()));
}

/** It has to know to whom a prompt belongs, and gives the keyboard to no window that bypasses it. */
void PromptsTest::placedByACompositor()
{
#ifndef Q_OS_LINUX
    QSKIP("no Wayland");
#endif
    const auto desktop = qScopeGuard([] { qunsetenv("WAYLAND_DISPLAY"); });
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    QWidget caller;
    caller.show();
    SameMacro prompt;
    QVERIFY(!(prompt.windowFlags() & Qt::BypassWindowManagerHint));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("the compositor places"));
    prompt.centreOn(&caller);
    QCOMPARE(prompt.windowHandle()->transientParent(), caller.windowHandle());
}

void PromptsTest::keyboard()
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

void PromptsTest::nameEntry_data()
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
void PromptsTest::nameEntry()
{
    QFETCH(QString, typed);
    QuestionDialog dialog;
    auto *edit = dialog.findChild<QLineEdit *>("lineEdit");
    QKeyEvent key(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, typed);
    QCoreApplication::sendEvent(edit, &key);
    QTEST(edit->text(), "name");
    QVERIFY(edit->text().toLocal8Bit().size() <= 30);
}

void PromptsTest::nameEditedInTheMiddle()
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
void PromptsTest::nameResult()
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

void PromptsTest::delayEntry_data()
{
    const Rows<QString, int> row("typed", "delay");
    row("nothing", "", 10);
    row("too small", "9", 10);
    row("most", "65535", 65535);
    row("too much: the last digit is refused", "65536", 6553);
    row("no number", "-a2 5", 25);
}

void PromptsTest::delayEntry()
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
void PromptsTest::dimsWhatLiesBehind()
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
void PromptsTest::waiting()
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

HALVARION_TEST_MAIN(PromptsTest)
#include "tst_prompts.moc"
