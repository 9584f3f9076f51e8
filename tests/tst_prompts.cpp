#include "app/hub/PostMsg.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"
#include "support/AllPrompts.h"
#include "support/LanguageDocument.h"
#include "support/PromptDriver.h"
#include "support/TestHome.h"
#include "ui/FittedText.h"

#include <QGuiApplication>
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

/** What the prompts share: their shape, their texts and every way out. */
class PromptsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
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
};

void PromptsTest::initTestCase() { QFont::insertSubstitution(QStringLiteral("微软雅黑"), "Noto Sans CJK SC"); }

void PromptsTest::init() { UserSettings::instance()->setLanguage(0); }

void PromptsTest::shape()
{
    QFETCH(int, row);
    const Made prompt = rows[row].make();
    QCOMPARE(prompt->minimumSize(), QSize(300, 140));
    QCOMPARE(prompt->maximumSize(), QSize(300, 140));
    QVERIFY(!prompt->parent());
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

HALVARION_TEST_MAIN(PromptsTest)
#include "tst_prompts.moc"
