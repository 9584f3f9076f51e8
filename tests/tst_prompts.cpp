#include "app/hub/PostMsg.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"
#include "support/ProductCopy.h"
#include "support/PromptDriver.h"
#include "support/TestHome.h"
#include "ui/AddDelayTime.h"
#include "ui/ContainReset.h"
#include "ui/DeleteConfirm.h"
#include "ui/ExeIsRun.h"
#include "ui/FittedText.h"
#include "ui/GroupMaxThree.h"
#include "ui/InportFail.h"
#include "ui/KeyNumberLimit.h"
#include "ui/LeftButtonOnly.h"
#include "ui/MakeMacro.h"
#include "ui/MouseOffLine.h"
#include "ui/QuestionDialog.h"
#include "ui/QuestiondialogB.h"
#include "ui/RePair.h"
#include "ui/SameMacro.h"
#include "ui/UpDataParam.h"

#include <QFile>
#include <QFrame>
#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QXmlStreamReader>

#include <memory>

using Made = std::unique_ptr<Prompt>;
using namespace PromptDriver;

namespace {

template<typename Class>
Made make()
{
    return std::make_unique<Class>();
}

struct Row
{
    const char *name;
    Made (*make)();
    const char *frame;
    const char *section;
    const char *text;
    const char *buttons; ///< "object name=text", the confirm button first
};

const Row rows[] = {
    {"QuestionDialog", make<QuestionDialog>, "Question", "Question", "Please create a macro first",
     "NewHong=确认 NewHong_2=取消"},
    {"AddDelayTime", make<AddDelayTime>, "AddDelayTimeA", "AddDelayTime", "Please enter the delay time",
     "NewHong=确定 NewHong_2=取消"},
    {"DeleteConfirm", make<DeleteConfirm>, "DeleteConfirmA", "DeleteConfirm", "Confirm Delete", "NewHong=确定"},
    {"SameMacro", make<SameMacro>, "SameMacroA", "SameMacro", "Already have a same name macro", "NewHong=确定"},
    {"MakeMacro", make<MakeMacro>, "MakeMacroA", "MakeMacro", "Please create a macro first", "NewHong=确定"},
    {"KeyNumberLimit", make<KeyNumberLimit>, "LimitA", "Limit", "Macro Key reached the Max limit", "NewHong=确定"},
    {"ExeIsRun", make<ExeIsRun>, "DeleteConfirmA", "EXEIsRun", "Confirm Delete", "NewHong=确定"},
    {"LeftButtonOnly", make<LeftButtonOnly>, "ButtonOnly", "ButtonOnly", "Left button must be retained", ""},
    {"GroupMaxThree", make<GroupMaxThree>, "MaxThree", "MaxThree", "  Key can only have up to three buttons",
     "NewHong=确定"},
    {"ContainReset", make<ContainReset>, "ContainResetA", "ContainReset", " Is need to restore the default settings",
     "OK=确定 Cancel=取消"},
    {"RePair", make<RePair>, "RePairA", "RePair", "        Do you need to pair again", "OK=确定 Cancel=取消"},
    {"QuestiondialogB", make<QuestiondialogB>, "QuestionB", "QuestionB", "  Do not insert multiple identical devices",
     ""},
    {"MouseOffLine", make<MouseOffLine>, "MouseOffLineA", "MouseOffLine", "   The mouse is offline. Please move first",
     "NewHong=确认"},
    {"InportFail", make<InportFail>, "InportFailA", "InportFail", "Config does not match the device", "NewHong=确定"},
    {"UpDataParam", make<UpDataParam>, "UpDataParamA", "UpDataParam", "Please wait, we are updating the setting", ""},
};

using Texts = QMap<QString, QString>;

/** The defaults of a row by object name. */
Texts defaultTexts(const Row &row)
{
    Texts texts{{"label", QString::fromUtf8(row.text)}};
    const QStringList buttons = QString::fromUtf8(row.buttons).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &button : buttons)
        texts[button.section(QLatin1Char('='), 0, 0)] = button.section(QLatin1Char('='), 1);
    return texts;
}

/** What a prompt shows, by object name. */
Texts shownTexts(const Prompt &prompt)
{
    Texts texts;
    const auto labels = prompt.findChildren<QLabel *>();
    for (const QLabel *label : labels)
        texts[label->objectName()] = label->text();
    const auto buttons = prompt.findChildren<QToolButton *>();
    for (const QToolButton *button : buttons) {
        if (button->objectName() != QLatin1String("CloseButton"))
            texts[button->objectName()] = button->text();
    }
    return texts;
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
    void damagedLanguageFile_data();
    void damagedLanguageFile();
    void probe();
    void waysOut_data();
    void waysOut();
    void programStays();
    void programEnds_data() { everyPrompt(); }
    void programEnds();
    void placement();
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
    const Row &expected = rows[row];
    const Made prompt = expected.make();
    QCOMPARE(QString::fromLatin1(prompt->metaObject()->className()), QString::fromLatin1(expected.name));
    QCOMPARE(prompt->minimumSize(), QSize(300, 140));
    QCOMPARE(prompt->maximumSize(), QSize(300, 140));
    QVERIFY(!prompt->parent());
    // Qt adds the window bit to whatever has no parent.
    QCOMPARE(int(prompt->windowFlags()), 0x6C12 | int(Qt::Window));

    const auto *frame = prompt->findChild<QFrame *>(QString::fromLatin1(expected.frame));
    QVERIFY(frame);
    QCOMPARE(frame->geometry(), QRect(0, 0, 300, 140));
    QVERIFY(frame->styleSheet().contains("/Picture/WarningDialog/BackGround.png"));
    const auto *close = button(*prompt, "CloseButton");
    QVERIFY(close && close->autoRaise());
    QCOMPARE(close->geometry(), QRect(275, 5, 20, 20));

    // Exactly these buttons, none over another, the label or the edge.
    QCOMPARE(shownTexts(*prompt).keys(), defaultTexts(expected).keys());
    const QStringList names = defaultTexts(expected).keys();
    QRegion taken(prompt->findChild<QLabel *>("label")->geometry());
    for (const QString &name : names) {
        if (name == QLatin1String("label"))
            continue;
        const QRect place = button(*prompt, name)->geometry();
        QCOMPARE(place.size(), QSize(90, 24));
        QVERIFY(!taken.intersects(place) && prompt->rect().contains(place));
        taken += place;
        if (names.size() == 2)
            QCOMPARE(place.topLeft(), QPoint(100, 110));
        QCOMPARE(button(*prompt, name)->font().family(), QStringLiteral("微软雅黑"));
    }
}

/** Each language while the prompt is open: the file's texts as they stand, whole, and in letters one can read. */
void PromptsTest::languages()
{
    QFETCH(int, row);
    const Made prompt = rows[row].make();
    prompt->show();
    const QStringList names = defaultTexts(rows[row]).keys();
    for (int language = LanguageFile::languageCount; language >= 0; --language) {
        postMsg()->post(&PostMsg::SigChangeLanguage, int{language});
        const Texts file = fileTexts(language, QString::fromLatin1(rows[row].section));
        const Texts shown = shownTexts(*prompt);
        for (const QString &name : names) {
            QVERIFY2(file.contains(name), qPrintable(name));
            QCOMPARE(shown.value(name), file.value(name));
        }
        const auto *label = prompt->findChild<QLabel *>("label");
        const QRect needed =
            label->fontMetrics().boundingRect(label->contentsRect(), Qt::AlignCenter | Qt::TextWordWrap, label->text());
        QVERIFY2(label->rect().adjusted(8, 0, -8, 0).contains(needed), qPrintable(label->text()));
        QVERIFY2(label->font().pointSizeF() >= 9, qPrintable(label->text()));
        for (const QToolButton *each : prompt->findChildren<QToolButton *>()) {
            QVERIFY2(each->fontMetrics().horizontalAdvance(each->text()) <= each->width() - 8,
                     qPrintable(each->text()));
        }
    }
    // One that opens later comes up in the language chosen.
    UserSettings::instance()->setLanguage(4);
    QCOMPARE(labelText(*rows[row].make()), fileTexts(4, QString::fromLatin1(rows[row].section)).value("label"));
}

/** Letters shrink for a text that needs it, and only then. */
void PromptsTest::longTexts()
{
    ContainReset prompt;
    const auto *label = prompt.findChild<QLabel *>("label");
    const auto needed = [label] {
        return label->fontMetrics().boundingRect(label->contentsRect(), Qt::AlignCenter | Qt::TextWordWrap,
                                                 label->text());
    };
    prompt.setLabelText(QStringLiteral("Restore everything to what it was when you unpacked it? ").repeated(3));
    QVERIFY(label->font().pointSizeF() < 11);
    QVERIFY(label->rect().contains(needed()));
    prompt.setLabelText(QStringLiteral("Restore?"));
    QCOMPARE(label->font().pointSizeF(), 11.0);
    // Two lines of like length rather than a last word alone.
    prompt.setLabelText("There is one word too many in this very line");
    QCOMPARE(label->font().pointSizeF(), 11.0);
    QVERIFY(label->rect().contains(needed()));
    QVERIFY(needed().width() < label->fontMetrics().horizontalAdvance(label->text()) * 3 / 4);

    QToolButton button;
    button.resize(90, 24);
    FittedText::set(&button, QStringLiteral("Réinitialiser"), 11);
    const QString whole = button.text();
    QVERIFY(button.font().pointSizeF() < 11 || button.fontMetrics().horizontalAdvance(whole) <= 82);
    QCOMPARE(whole, QStringLiteral("Réinitialiser"));
    FittedText::set(&button, QString(60, 'W'), 11);
    QVERIFY(button.fontMetrics().horizontalAdvance(button.text()) <= 82);
    QVERIFY(button.text().endsWith(QChar(0x2026)));
}

/** The prompts that hold several texts show the one asked for, before and after a change of language. */
void PromptsTest::selectedTexts()
{
    const auto follows = [](const Prompt &prompt, const char *section, const char *element) {
        for (int language : {1, 0}) {
            postMsg()->post(&PostMsg::SigChangeLanguage, int{language});
            const QString expected = fileTexts(language, QLatin1String(section)).value(QLatin1String(element));
            if (expected.isEmpty() || labelText(prompt) != expected)
                return false;
        }
        return true;
    };
    ExeIsRun running;
    QVERIFY(follows(running, "EXEIsRun", "label"));
    running.showNoMacroSelected();
    QCOMPARE(labelText(running), fileTexts(0, "EXEIsRun").value("label_2"));
    QVERIFY(follows(running, "EXEIsRun", "label_2"));
    running.showPleaseStop();
    QVERIFY(follows(running, "EXEIsRun", "PleaseStop"));

    MouseOffLine::setPromptIndex(1);
    const MouseOffLine late;
    MouseOffLine::setPromptIndex(0);
    QCOMPARE(labelText(late), fileTexts(0, "MouseOffLine").value("Timeout"));
    QVERIFY(follows(late, "MouseOffLine", "Timeout"));
    QVERIFY(follows(MouseOffLine(), "MouseOffLine", "label"));

    InportFail::setImportStatus(2);
    QVERIFY(follows(InportFail(), "InportFail", "label_1"));
    InportFail::setImportStatus(1);
    QVERIFY(follows(InportFail(), "InportFail", "label"));

    UpDataParam::setImportRunning(true);
    QVERIFY(follows(UpDataParam(), "UpDataParam", "label_1"));
    UpDataParam::setImportRunning(false);
    QVERIFY(follows(UpDataParam(), "UpDataParam", "label"));

    // A question that was put must not turn into another one under the user's eyes.
    ContainReset other;
    other.setLabelText(QStringLiteral("Something else?"));
    postMsg()->post(&PostMsg::SigChangeLanguage, 1);
    QCOMPARE(labelText(other), QStringLiteral("Something else?"));
    QCOMPARE(button(other, "OK")->text(), fileTexts(1, "ContainReset").value("OK"));
}

void PromptsTest::damagedLanguageFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("changed"); // row and object name
    QTest::addColumn<QString>("text");
    QTest::newRow("missing") << QByteArray() << ""
                             << "";
    QTest::newRow("no XML") << QByteArray("\xff\xfe\0\1garbage", 11) << ""
                            << "";
    QTest::newRow("another root") << QByteArray("<Other><SameMacro><label>never</label></SameMacro></Other>") << ""
                                  << "";
    QTest::newRow("element missing")
        << QByteArray("<Total><SameMacro><label>taken</label><NewHong_9>x</NewHong_9></SameMacro></Total>")
        << "SameMacro/label"
        << "taken";
    QTest::newRow("cut off") << QByteArray("<Total><Odd><SameMacro><label>no</label></SameMacro></Odd>"
                                           "<InportFail><NewHong>kept</NewHong><label>lo")
                             << "InportFail/NewHong"
                             << "kept";
}

void PromptsTest::damagedLanguageFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, changed);
    QFETCH(QString, text);
    ProductCopy copy;
    copy.replace("Language/0-English.xml", content);
    const ProductCopy::Result result = copy.run("probe");
    QCOMPARE(result.exitCode, 0);
    QStringList expected;
    for (const Row &row : rows) {
        const Texts texts = defaultTexts(row);
        for (auto each = texts.cbegin(); each != texts.cend(); ++each) {
            const QString place = QLatin1String(row.name) + QLatin1Char('/') + each.key();
            expected << place + QLatin1Char('=') + (place == changed ? text : each.value());
        }
    }
    QCOMPARE(result.told.split(QLatin1Char('\n')), expected);
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

void PromptsTest::waysOut_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("confirms");
    int index = 0;
    for (const Row &row : rows) {
        const auto add = [&](const QString &way, bool confirms) {
            QTest::addRow("%s by %s", row.name, qPrintable(way)) << index << way << confirms;
        };
        const QStringList buttons = QString::fromUtf8(row.buttons).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (int position = 0; position < buttons.size(); ++position)
            add(buttons.at(position).section(QLatin1Char('='), 0, 0), position == 0);
        add("CloseButton", false);
        add("Escape", false);
        add("close", false);
        if (!buttons.isEmpty())
            add("Return", true);
        ++index;
    }
}

void PromptsTest::waysOut()
{
    QFETCH(int, row);
    QFETCH(QString, way);
    QFETCH(bool, confirms);
    const Made prompt = rows[row].make();
    QVERIFY(!prompt->confirmed());
    const auto leave = [&] {
        if (way == QLatin1String("Escape"))
            QTest::keyClick(prompt->focusWidget() ? prompt->focusWidget() : prompt.get(), Qt::Key_Escape);
        else if (way == QLatin1String("Return"))
            QTest::keyClick(prompt->focusWidget() ? prompt->focusWidget() : prompt.get(), Qt::Key_Return);
        else if (way == QLatin1String("close"))
            prompt->close();
        else
            QTest::mouseClick(button(*prompt, way), Qt::LeftButton);
    };
    for (int showing = 0; showing < 2; ++showing) {
        QCOMPARE(execAnd(*prompt, leave), confirms ? int(QDialog::Accepted) : int(QDialog::Rejected));
        QCOMPARE(prompt->confirmed(), confirms);
        QVERIFY(!prompt->isVisible());
    }
}

/** With the main window in the tray a prompt is the only window; that it closes is no reason to end the program. */
void PromptsTest::programStays()
{
    QSignalSpy lastClosed(qGuiApp, &QGuiApplication::lastWindowClosed);
    QTimer::singleShot(0, [&] {
        for (const Row &row : rows) {
            const Made prompt = row.make();
            execAnd(*prompt, [&] { prompt->accept(); });
            execAnd(*prompt, [&] { prompt->close(); });
        }
        QTimer::singleShot(50, qApp, [] { QCoreApplication::exit(1); });
    });
    QCOMPARE(QCoreApplication::exec(), 1);
    QCOMPARE(lastClosed.count(), 0);

    // Other windows do tell, so the count means something.
    QTimer::singleShot(0, [] {
        QDialog other;
        QTimer::singleShot(0, &other, [&other] { other.accept(); });
        other.exec();
    });
    QCoreApplication::exec();
    QCOMPARE(lastClosed.count(), 1);
}

/** An open prompt must not hold the program back when it ends, and counts as refused. */
void PromptsTest::programEnds()
{
    QFETCH(int, row);
    bool returned = false;
    QTimer::singleShot(0, [&] {
        const Made prompt = rows[row].make();
        QTimer::singleShot(20, qApp, [] { QCoreApplication::exit(7); });
        QTimer::singleShot(5000, prompt.get(), [&prompt] { prompt->done(99); });
        returned = prompt->exec() == QDialog::Rejected && !prompt->confirmed();
    });
    QCOMPARE(QCoreApplication::exec(), 7);
    QVERIFY(returned);
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

HALVARION_TEST_MAIN(PromptsTest)
#include "tst_prompts.moc"
