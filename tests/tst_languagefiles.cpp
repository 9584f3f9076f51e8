#include "app/TextSetup.h"
#include "buttons/FireKey.h"
#include "buttons/GroupKey.h"
#include "macro/addKey.h"
#include "maintenance/Match.h"
#include "maintenance/PairingState.h"
#include "maintenance/Progress.h"
#include "maintenance/UpDateRepair.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"
#include "support/AllPrompts.h"
#include "support/LanguageDocument.h"
#include "support/Program.h"
#include "support/Rows.h"
#include "support/TestHome.h"
#include "support/TextFit.h"

#include <QAbstractButton>
#include <QSet>

namespace {

constexpr int korean = 3;
constexpr int russian = 4;

/** Texts that another one is appended to; only these may end in a blank. */
const QStringList prefixes = {"Buttoninterface/Macro_", "Buttoninterface/Config", "Macro/MacroReal"};

/**
 * Elements that stand for one function of a button and must read alike: the row at start, the entry of the function
 * list and the macro event. The page tells the last left button by this text.
 */
constexpr const char *sameFunction[][3] = {
    {"Buttoninterface/LeftKey_3", "Buttoninterface/FireKey", "Macro/ChooseEvent4"},
    {"Buttoninterface/RightKey_3", "Buttoninterface/RightKey", "Macro/ChooseEvent5"},
    {"Buttoninterface/MidKey", "Buttoninterface/BackKey", "Macro/ChooseEvent6"},
    {"Buttoninterface/ForWardKey", "Buttoninterface/TopMusic", "Macro/ChooseEvent7"},
    {"Buttoninterface/BackKey_2", "Buttoninterface/StartPause", "Macro/ChooseEvent8"},
    {"Buttoninterface/VolumeUp_8", "Buttoninterface/BackMusic", "Buttoninterface/VolumeUp_8"},
};

/** Elements of the button page that are no function of a button. */
constexpr const char *noFunction = "Reset ImportData OutputData checkBox Macro_ Config "
                                   "FireKey RightKey BackKey StartPause TopMusic BackMusic";

/** Units, colour letters, the plain OK button and a name that Russian players leave in English. */
bool maySayItInEnglish(int language, const QString &path, const QString &text)
{
    static const QStringList words = {"OK", "ms", "DPI"};
    static const QStringList letters = {"Light/label_10", "Light/label_11", "Light/label_12"};
    return words.contains(text) || letters.contains(path) || (language == russian && path == "Sensor/label_7");
}

/** Every text that a widget below the window shows or can show: its own, its items, its tool tip. */
QStringList textsOf(const QWidget *window)
{
    QStringList texts;
    const QList<QWidget *> widgets = window->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        texts << widget->toolTip();
        if (const auto *const label = qobject_cast<const QLabel *>(widget))
            texts << label->text();
        else if (const auto *const button = qobject_cast<const QAbstractButton *>(widget))
            texts << button->text();
        else if (const auto *const list = qobject_cast<const QComboBox *>(widget)) {
            // The names of the languages are each in its own.
            for (int item = 0; item < list->count() && list->itemText(0) != LanguageFile::nativeName(0); ++item)
                texts << list->itemText(item);
        }
    }
    return texts;
}

/** The repair with each of its texts. */
struct AnyRepair : UpDateRepair
{
    using Prompt::showElement;
};

} // namespace

/**
 * The language files of the product: complete, translated, true to what the program makes of their texts, and none too
 * long for its widget, on every window and prompt there is.
 */
class TestLanguageFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data() { languages(); }
    void texts();
    void wording_data() { languages(); }
    void wording();
    void everyWidget_data() { languages(); }
    void everyWidget();
    void everyDialogFits_data() { languages(); }
    void everyDialogFits();

private:
    static void languages();
};

/** A row each language: its number, what its script must hold, and what must not slip in from another language. */
void TestLanguageFiles::languages()
{
    const Rows<int, QString, QString> row("language", "own", "foreign");
    // Kana and Hangul by their ranges: the script classes also take the full stop that Chinese shares with Japanese.
    row("English", 0, "[A-Za-z]", R"([\p{Han}ぁ-ゖァ-ヺ가-힣\p{Cyrillic}])");
    row("Simplified Chinese", 1, R"(\p{Han})",
        R"([ぁ-ゖァ-ヺ가-힣\p{Cyrillic}設備數開關時間鍵記錄傳輸讀請標離線擇顯電單])");
    // "宏" is the mainland's word for a macro.
    row("Traditional Chinese", 2, R"(\p{Han})",
        R"([ぁ-ゖァ-ヺ가-힣\p{Cyrillic}设备开关时间键记录传输读请标离线择显电单宏])");
    row("Korean", 3, "[가-힣]", R"([\p{Han}ぁ-ゖァ-ヺ\p{Cyrillic}])");
    // A Latin letter inside a Cyrillic word looks right and breaks searching and line breaking.
    row("Russian", 4, R"(\p{Cyrillic})", R"([\p{Han}ぁ-ゖァ-ヺ가-힣]|[A-Za-z]\p{Cyrillic}|\p{Cyrillic}[A-Za-z])");
    row("Japanese", 5, R"([ぁ-ゖァ-ヺ\p{Han}])", R"([가-힣\p{Cyrillic}设备开关时间键记录传输读请标离线择显电单])");
}

/** Each file has the elements of the English one, with a text in its own language. */
void TestLanguageFiles::texts()
{
    QFETCH(int, language);
    QFETCH(QString, own);
    QFETCH(QString, foreign);
    const LanguageDocument english(LanguageFile::path(0));
    LanguageDocument document(LanguageFile::path(language));
    QCOMPARE(document.error, QString());
    QCOMPARE(document.root, QStringLiteral("Total"));
    QStringList expected = english.order;
    expected.sort();
    document.order.sort();
    QCOMPARE(document.order, expected);
    QCOMPARE(expected.removeDuplicates(), 0);
    QVERIFY(document.text.size() > 200);

    QStringList problems;
    const QRegularExpression ownPattern(own);
    const QRegularExpression foreignPattern(foreign);
    for (auto entry = document.text.cbegin(); entry != document.text.cend(); ++entry) {
        const auto complain = [&](const char *problem) {
            problems << QStringLiteral("%1 %2: \"%3\"").arg(entry.key(), QLatin1String(problem), entry.value());
        };
        const QString &text = entry.value();
        const bool isShared = maySayItInEnglish(language, entry.key(), text);
        if (text.trimmed().isEmpty())
            complain("is empty");
        else if (text != text.trimmed() && !prefixes.contains(entry.key()))
            complain("has blanks at its ends");
        if (text.contains(QChar::ReplacementCharacter))
            complain("was damaged by a wrong encoding");
        if (language != 0 && text == english.text.value(entry.key()) && !isShared)
            complain("is still English");
        if (!text.contains(ownPattern) && !isShared)
            complain("has no letter of the language");
        if (text.contains(foreignPattern))
            complain("has something of another language");
    }
    QCOMPARE(problems, QStringList());
}

/** The program compares, joins and searches some texts; these must fit each other within a language. */
void TestLanguageFiles::wording()
{
    QFETCH(int, language);
    const LanguageDocument document(LanguageFile::path(language));
    const auto text = [&document](const char *path) { return document.text.value(QLatin1String(path)); };

    // The button page finds the rows of a deleted macro by the macro page's copy of the prefix.
    QCOMPARE(text("Macro/MacroReal"), text("Buttoninterface/Macro_"));
    for (const auto &paths : sameFunction) {
        QCOMPARE(text(paths[1]), text(paths[0]));
        QCOMPARE(text(paths[2]), text(paths[0]));
    }

    // A row tells its function by its text alone, so no two functions read alike.
    const QStringList skipped = QString(noFunction).split(' ');
    QSet<QString> functions;
    for (const QString &path : document.order) {
        const QString element = path.section(QLatin1Char('/'), 1);
        if (!path.startsWith(QLatin1String("Buttoninterface/")) || skipped.contains(element) ||
            QRegularExpression(QStringLiteral("^S\\d+$")).match(element).hasMatch())
            continue;
        const QString function = document.text.value(path);
        QVERIFY2(!functions.contains(function), qPrintable(path + QLatin1String(" repeats ") + function));
        functions.insert(function);
    }

    // A macro row with "ms" in it counts as a delay; and a mouse button mustn't take the name of a key.
    const QRegularExpression notAMouseButton(QStringLiteral("ms|^(.|Tab|Esc|Home|End|Insert|Del|Pause|Enter|Space)$"));
    for (int number = 4; number <= 8; ++number) {
        const QString button = document.text.value(QStringLiteral("Macro/ChooseEvent%1").arg(number));
        QVERIFY2(!button.contains(notAMouseButton), qPrintable(button));
    }

    // The instruction names the button to press; the progress text goes on with ": 35%"; a failure is told by its text.
    QVERIFY(text("Match/textEdit").contains(text("Match/MatchButton")));
    QVERIFY(!QStringLiteral(".。:：").contains(text("Progress/UpdateNotMove").right(1)));
    QVERIFY(text("Progress/UpDateFail") != text("Progress/UpDateSuccess"));
}

/**
 * Built in the language and changed to it from another: each text has its place, none is left of what was before, and
 * none stands in the program's own code.
 */
void TestLanguageFiles::everyWidget()
{
    QFETCH(int, language);
    QFETCH(QString, foreign);
    UserSettings::instance()->setLanguage(language);
    static QStringList warnings;
    warnings.clear();
    // A slot whose name fits no widget, a picture that is missing: they would say so.
    const QtMessageHandler usual =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
            if (type != QtInfoMsg)
                warnings << text;
        });
    QStringList complaints;
    QStringList shown;
    {
        VirtualMice::restoreScene();
        const Program program;
        complaints << textsThatDoNotFit(program.window());
        postMsg()->post(&PostMsg::SigChangeLanguage, language == korean ? russian : korean);
        postMsg()->post(&PostMsg::SigChangeLanguage, language);
        QCoreApplication::sendPostedEvents(); // Qt's words have changed too, which every widget is told
        complaints << textsThatDoNotFit(program.window());
        shown = textsOf(program.window());
    }
    qInstallMessageHandler(usual);
    QCOMPARE(warnings, QStringList());
    QVERIFY2(complaints.isEmpty(), qPrintable('\n' + complaints.join('\n')));
    QVERIFY(shown.size() > 100);
    QCOMPARE(shown.filter(QRegularExpression(foreign)), QStringList());
}

void TestLanguageFiles::everyDialogFits()
{
    QFETCH(int, language);
    UserSettings::instance()->setLanguage(language);
    setUpFonts();
    QStringList complaints;
    for (const AllPrompts::Row &row : AllPrompts::rows) {
        const AllPrompts::Made prompt = row.make();
        prompt->show();
        complaints << textsThatDoNotFit(prompt.get());
    }
    addKey key;
    GroupKey combination;
    FireKey fire;
    for (QWidget *dialog : std::initializer_list<QWidget *>{&key, &combination, &fire}) {
        dialog->show();
        complaints << textsThatDoNotFit(dialog);
    }
    Match match({});
    match.show();
    for (const auto state : {PairingState::Idle, PairingState::Pairing, PairingState::Success, PairingState::Failed}) {
        PairingState::listen();
        PairingState::end(state);
        QMetaObject::invokeMethod(&match, "SlotButtonenable", Q_ARG(int, 0));
        complaints << textsThatDoNotFit(&match);
    }
    Progress progress;
    progress.show();
    for (int code : {0, 1, 2}) {
        progress.SlotProgress(100, code);
        complaints << textsThatDoNotFit(&progress);
    }
    AnyRepair repair;
    repair.show();
    for (const char *element :
         {"ToolText", "UpdateNotMove", "NoDevice", "SameDevice", "UpdateFail", "UpdateSuccess", "DeviceWorks"}) {
        repair.showElement(element);
        complaints << textsThatDoNotFit(&repair);
    }
    QVERIFY2(complaints.isEmpty(), qPrintable('\n' + complaints.join('\n')));
}

HALVARION_TEST_MAIN(TestLanguageFiles)
#include "tst_languagefiles.moc"
