#include "app/hub/PostMsg.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"
#include "support/AllPrompts.h"
#include "support/ProductCopy.h"
#include "support/PromptDriver.h"
#include "support/TestHome.h"
#include "ui/FittedText.h"

#include <QFile>
#include <QGuiApplication>
#include <QScopeGuard>
#include <QScreen>
#include <QWindow>
#include <QXmlStreamReader>

using namespace AllPrompts;
using namespace PromptDriver;

namespace {

using Texts = QMap<QString, QString>;

/** The buttons with a text. */
QList<QToolButton *> textButtons(const Prompt &prompt)
{
    QList<QToolButton *> buttons = prompt.findChildren<QToolButton *>();
    buttons.removeAll(button(prompt, "CloseButton"));
    return buttons;
}

/** What a prompt shows, by object name. */
Texts shownTexts(const Prompt &prompt)
{
    Texts texts{{"label", labelText(prompt)}};
    for (const QToolButton *each : textButtons(prompt))
        texts[each->objectName()] = each->text();
    return texts;
}

/** The lines of the label's text, as wide and high as they are drawn. */
QRect textRect(const Prompt &prompt)
{
    const auto *label = prompt.findChild<QLabel *>("label");
    return label->fontMetrics().boundingRect(label->contentsRect(), Qt::AlignCenter | Qt::TextWordWrap, label->text());
}

/** A section of the product's language file, read apart from the program's reader. */
Texts fileTexts(int language, const QString &section)
{
    Texts texts;
    QFile file(LanguageFile::path(language));
    if (!file.open(QIODevice::ReadOnly))
        return texts;
    QXmlStreamReader reader(&file);
    reader.readNextStartElement();
    while (reader.readNextStartElement()) {
        if (reader.name() != section) {
            reader.skipCurrentElement();
            continue;
        }
        while (reader.readNextStartElement()) {
            const QString element = reader.name().toString();
            texts[element] = reader.readElementText();
        }
    }
    return texts;
}

void everyPrompt()
{
    QTest::addColumn<int>("row");
    int index = 0;
    for (const Row &row : rows)
        QTest::newRow(row.name) << index++;
}

} // namespace

/** What the fifteen prompts share: their shape, their texts, every way out, and that none holds the program. */
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
    void selectedTexts();
    void damagedLanguageFile();
    void probe();
    void waysOut_data() { everyPrompt(); }
    void waysOut();
    void programEnds();
    void placement();
    void placedByACompositor();
};

void PromptsTest::initTestCase() { QFont::insertSubstitution(QStringLiteral("微软雅黑"), "Noto Sans CJK SC"); }

void PromptsTest::init()
{
    UserSettings::instance()->setLanguage(0);
    MouseOffLine::setPromptIndex(0);
    InportFail::setImportStatus(1);
    UpDataParam::setImportRunning(false);
}

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
    // No button over another, the label or the edge; one alone stands in the middle.
    QRegion taken(prompt->findChild<QLabel *>("label")->geometry());
    const QList<QToolButton *> buttons = textButtons(*prompt);
    for (const QToolButton *each : buttons) {
        const QRect place = each->geometry();
        QCOMPARE(place.size(), QSize(90, 24));
        QVERIFY(!taken.intersects(place) && prompt->rect().contains(place));
        taken += place;
        if (buttons.size() == 1)
            QCOMPARE(place.topLeft(), QPoint(100, 110));
    }
}

/** Each language while the prompt is open: the file's texts as they stand, in letters one can read. */
void PromptsTest::languages()
{
    QFETCH(int, row);
    const QString section = QString::fromLatin1(rows[row].section);
    const Made prompt = rows[row].make();
    prompt->show();
    for (int language = LanguageFile::languageCount; language >= 0; --language) {
        postMsg()->post(&PostMsg::SigChangeLanguage, int{language});
        const Texts file = fileTexts(language, section);
        const Texts shown = shownTexts(*prompt);
        for (auto each = shown.cbegin(); each != shown.cend(); ++each)
            QCOMPARE(each.value(), file.value(each.key(), "missing"));
        QVERIFY2(prompt->findChild<QLabel *>("label")->font().pointSizeF() >= 9, qPrintable(labelText(*prompt)));
    }
    // One that opens later comes up in the language chosen.
    UserSettings::instance()->setLanguage(4);
    QCOMPARE(labelText(*rows[row].make()), fileTexts(4, section).value("label"));
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

    QToolButton button;
    button.resize(90, 24);
    for (const QString &text : {QStringLiteral("Réinitialiser"), QString(60, 'W')}) {
        FittedText::set(&button, text, 11);
        button.show();
        QVERIFY(button.fontMetrics().horizontalAdvance(button.text()) <= 82);
        QCOMPARE(button.text().endsWith(QChar(0x2026)), text.startsWith('W'));
    }
}

/** The prompts that hold several texts show the one asked for, before and after a change of language. */
void PromptsTest::selectedTexts()
{
    const auto follows = [](const Prompt &prompt, const char *section, const char *element) {
        for (int language : {0, 1, 0}) { // at first without a change
            const QString expected = fileTexts(language, section).value(element);
            if (expected.isEmpty() || labelText(prompt) != expected)
                return false;
            postMsg()->post(&PostMsg::SigChangeLanguage, 1 - language);
        }
        postMsg()->post(&PostMsg::SigChangeLanguage, 0);
        return true;
    };
    ExeIsRun running;
    running.showNoMacroSelected();
    QVERIFY(follows(running, "EXEIsRun", "label_2"));
    MouseOffLine::setPromptIndex(1);
    const MouseOffLine late;
    MouseOffLine::setPromptIndex(0);
    QVERIFY(follows(late, "MouseOffLine", "Timeout") && follows(MouseOffLine(), "MouseOffLine", "label"));
    InportFail::setImportStatus(2);
    UpDataParam::setImportRunning(true);
    QVERIFY(follows(InportFail(), "InportFail", "label_1") && follows(UpDataParam(), "UpDataParam", "label_1"));
    // A question that was put must not turn into another one under the user's eyes.
    ContainReset other;
    other.setLabelText(QStringLiteral("Something else?"));
    postMsg()->post(&PostMsg::SigChangeLanguage, 1);
    QCOMPARE(labelText(other), QStringLiteral("Something else?"));
    QCOMPARE(button(other, "OK")->text(), fileTexts(1, "ContainReset").value("OK"));
}

/** What the file doesn't give stays as it is without one. */
void PromptsTest::damagedLanguageFile()
{
    const auto tell = [](const QByteArray &file) {
        ProductCopy copy;
        copy.replace("Language/0-English.xml", file);
        const ProductCopy::Result result = copy.run("probe");
        return result.exitCode == 0 ? result.told.split(QLatin1Char('\n')) : QStringList();
    };
    QStringList expected = tell(QByteArray());
    QVERIFY(expected.contains("SameMacro/label=Already have a same name macro"));
    expected.replaceInStrings(QRegularExpression("^InportFail/NewHong=.*"), "InportFail/NewHong=kept");
    QCOMPARE(tell("<Total><Odd><SameMacro><label>no</label></SameMacro></Odd>"
                  "<InportFail><NewHong>kept</NewHong><NewHong_9>no</NewHong_9><label>lo"),
             expected);
}

void PromptsTest::probe()
{
    if (!ProductCopy::isCopy())
        QSKIP("runs in the copies that damagedLanguageFile makes");
    for (const Row &row : rows) {
        const Texts texts = shownTexts(*row.make());
        for (auto each = texts.cbegin(); each != texts.cend(); ++each)
            ProductCopy::tell(QStringLiteral("%1/%2=%3").arg(QLatin1String(row.name), each.key(), each.value()));
    }
}

/** By every button, by the keys, and by closing; twice, as nothing of the first time may stay. */
void PromptsTest::waysOut()
{
    QFETCH(int, row);
    QStringList ways{"CloseButton", "Escape", "close"};
    QStringList buttons = shownTexts(*rows[row].make()).keys();
    buttons.removeAll("label");
    if (!buttons.isEmpty())
        ways += buttons + QStringList{"Return"};
    for (const QString &way : ways) {
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

/** An open prompt must not hold the program back when it ends, and counts as refused. */
void PromptsTest::programEnds()
{
    int refused = 0;
    for (const Row &row : rows) {
        QTimer::singleShot(0, [&] {
            const Made prompt = row.make();
            QTimer::singleShot(20, qApp, [] { QCoreApplication::exit(7); });
            QTimer::singleShot(5000, prompt.get(), [&prompt] { prompt->done(99); });
            refused += prompt->exec() == QDialog::Rejected && !prompt->confirmed();
        });
        QCOMPARE(QCoreApplication::exec(), 7);
    }
    QCOMPARE(refused, int(std::size(rows)));
}

void PromptsTest::placement()
{
    QWidget caller;
    caller.setWindowFlags(Qt::FramelessWindowHint);
    caller.setGeometry(40, 30, 500, 400);
    QWidget page(&caller);
    page.setGeometry(20, 10, 320, 160);
    SameMacro prompt;
    prompt.centreOn(&caller);
    QCOMPARE(prompt.pos(), QPoint(40 + 100, 30 + 130));
    prompt.centreOn(&page, QPoint(-50, -70));
    QCOMPARE(prompt.pos(), QPoint(40 + 20 + 10 - 50, 30 + 10 + 10 - 70));
    prompt.show();
    QCOMPARE(prompt.pos(), QPoint(20, -20));

    // Where nobody could answer it doesn't go.
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    caller.move(-32000, -32000);
    prompt.centreOn(&caller);
    QVERIFY(screen.contains(prompt.geometry()));
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
    SameMacro onTop;
    onTop.centreOn(&prompt);
    QCOMPARE(onTop.windowHandle()->transientParent(), prompt.windowHandle());
}

HALVARION_TEST_MAIN(PromptsTest)
#include "tst_prompts.moc"
