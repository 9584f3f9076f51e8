#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QTextCodec>
#include <QUrl>
#include <QXmlStreamReader>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

/** A section of a language file and the elements in it, separated by blanks. */
struct Section
{
    const char *name;
    const char *elements;
};

constexpr Section sections[] = {
    {"DialogMain", "MainForm Exit"},
    {"DialogChange", "label_2 label_3 OfflineTips1 OfflineTips2 RepairDevice MouseIsNewTips"},
    {"Buttoninterface",
     "Reset ImportData OutputData checkBox Macro_ Config "
     "FireKey RightKey BackKey StartPause TopMusic BackMusic "
     "LeftKey_3 RightKey_3 MidKey BackKey_2 ForWardKey DPI_2 DPI_3 DPI_6 DPI_8 DPI_5 DPI_13 DPI_11 DPI_4 DPI_9 DPI_7 "
     "DPI_12 DPI_10 VolumeUp_14 VolumeDown_14 VolumeUp_2 VolumeDown_2 VolumeUp_8 VolumeUp_4 VolumeUp_5 VolumeUp_6 "
     "VolumeUp_7 Player StartPause_2 BackMusic_2 TopMusic_2 Mute VolumeUp VolumeDown VolumeDown_4 VolumeDown_5 "
     "VolumeDown_6 VolumeDown_3 VolumeDown_8 VolumeDown_9 VolumeDown_7 VolumeDown_10 VolumeDown_12 VolumeDown_13 "
     "VolumeDown_11"},
    {"Sensor", "label label_2 label_3 label_4 label_5 label_6 label_7 label_11 label_12 label_14 label_15 "
               "ModeSelectDes LODDes MotionSyncDes Performance FullPerformanceDes PerformanceOpen Model Model1 Model2 "
               "RippleDes FixLineDes"},
    {"Macro",
     "label label_2 label_3 NewHong DeleteHong Amend DeleteKey MacroReal StartRecord StopRecord "
     "AutoInsertDelay DefaultDelay ReUntilLoose ReUntilClick ReUntil ReNumber Save NoMacro EmptyRows NeverReleased"},
    {"Light", "label label_2 label_3 label_4 label_5 label_6 label_8 label_10 label_11 label_12 label_13 LightMod "
              "StopCloseTime"},
    {"FormSetting", "label label_2 label_3 label_4 label_6 label_8 label_9 label_10 label_11 label_14 textEdit "
                    "textEdit_2 textEdit_3 textEdit_4 pushButton pushButton_2 Receive Mouse WiredMode NoDevice "
                    "SameDevice VerNew NewLabel"},
    {"Match", "label textEdit MatchButton Matching MatchFail MatchSuccess"},
    {"Progress", "Confirm UpdateNotMove UpDateFail UpDateSuccess"},
    {"AutoRepair", "ToolText NewHong UpdateNotMove NoDevice SameDevice UpdateFail UpdateSuccess"},
    {"NewVer", "NewHong"},
    {"RePair", "label OK Cancel"},
    {"ContainReset", "label OK Cancel"},
    {"Question", "label NewHong NewHong_2"},
    {"QuestionB", "label"},
    {"UpDataParam", "label label_1"},
    {"MouseOffLine", "label NewHong Timeout"},
    {"ButtonOnly", "label"},
    {"groupKey", "label NewHong NewHong_2"},
    {"FireKey", "label label_2 label_3 NewHong NewHong_2"},
    {"AddDelayTime", "label NewHong NewHong_2"},
    {"AddKey", "label NewHong NewHong_2"},
    {"MakeMacro", "label NewHong"},
    {"SameMacro", "label NewHong"},
    {"MaxThree", "label NewHong"},
    {"Limit", "label NewHong"},
    {"DeleteConfirm", "label NewHong"},
    {"EXEIsRun", "label NewHong label_2 PleaseStop"},
    {"InportFail", "label label_1 NewHong"},
};

/** Elements that differ only by the number at their end, which runs from 1 to last. */
struct Family
{
    const char *section;
    const char *stem;
    int last;
};

constexpr Family families[] = {
    {"Buttoninterface", "S", 20}, {"Sensor", "PerformanceOpen", 9}, {"Macro", "ChooseEvent", 9},
    {"Macro", "Key", 5},          {"Light", "LightMod", 5},         {"Light", "StopCloseTime", 10},
};

/**
 * Texts that may read as in English: units, colour letters, the plain OK button and names that players leave in
 * English. The language "*" stands for each.
 */
struct SharedText
{
    const char *language;
    const char *path;
};

constexpr SharedText sharedTexts[] = {
    {"*", "Light/label_10"},
    {"*", "Light/label_11"},
    {"*", "Light/label_12"},
    {"Russian", "Sensor/label_7"},
};

/** Words that are the same in every language that writes them at all. */
constexpr const char *internationalWords[] = {"OK", "ms", "DPI"};

/** Texts that another one is appended to; only these may end in a blank. */
constexpr const char *prefixes[] = {"Buttoninterface/Macro_", "Buttoninterface/Config", "Macro/MacroReal"};

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

struct Document
{
    QString error;
    QString root;
    QStringList order;            ///< "Section" and "Section/element", in the file's order, repeats included
    QHash<QString, QString> text; ///< by "Section/element"
};

Document read(const QString &fileName)
{
    Document document;
    QFile file(QStringLiteral(PRODUCT_SOURCE_DIR) + QLatin1Char('/') + fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        document.error = file.errorString();
        return document;
    }
    QXmlStreamReader reader(&file);
    reader.readNextStartElement();
    document.root = reader.name().toString();
    while (reader.readNextStartElement()) {
        const QString section = reader.name().toString();
        document.order << section;
        while (reader.readNextStartElement()) {
            const QString path = section + QLatin1Char('/') + reader.name();
            document.order << path;
            document.text[path] = reader.readElementText();
        }
    }
    // readNextStartElement stops at the root's end; what stands behind it must be well formed too.
    while (!reader.atEnd())
        reader.readNext();
    if (reader.hasError())
        document.error = QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
    return document;
}

QStringList words(const char *text) { return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts); }

QStringList expectedPaths()
{
    QStringList paths;
    for (const Section &section : sections) {
        paths << QLatin1String(section.name);
        const auto elements = words(section.elements);
        for (const QString &element : elements)
            paths << QLatin1String(section.name) + QLatin1Char('/') + element;
    }
    for (const Family &family : families) {
        for (int number = 1; number <= family.last; ++number)
            paths
                << QStringLiteral("%1/%2%3").arg(QLatin1String(family.section), QLatin1String(family.stem)).arg(number);
    }
    return paths;
}

template<typename List>
bool contains(const List &list, const QString &text)
{
    return std::any_of(std::begin(list), std::end(list),
                       [&text](const char *item) { return text == QLatin1String(item); });
}

bool maySayItInEnglish(const QString &language, const QString &path, const QString &text)
{
    return contains(internationalWords, text) ||
           std::any_of(std::begin(sharedTexts), std::end(sharedTexts), [&](const SharedText &shared) {
               return path == QLatin1String(shared.path) &&
                      (shared.language[0] == '*' || language == QLatin1String(shared.language));
           });
}

} // namespace

/** The language files of the product: complete, translated, and true to what the program makes of their texts. */
class TestLanguageFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void complete_data() { languages(); }
    void complete();
    void translated_data() { languages(false); }
    void translated();
    void script_data() { languages(); }
    void script();
    void wording_data() { languages(); }
    void wording();
    void companyLinks();

private:
    static void languages(bool withEnglish = true);
};

void TestLanguageFiles::initTestCase()
{
    // With the C locale the Chinese file names could not be opened.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

/** A row each language: its file, what its script must hold, and what must not slip in from another language. */
void TestLanguageFiles::languages(bool withEnglish)
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("own");
    QTest::addColumn<QString>("foreign");
    const auto row = [](const char *language, const char *file, const char *own, const char *foreign) {
        QTest::newRow(language) << QStringLiteral("Language/") + QString::fromUtf8(file) << QString::fromUtf8(own)
                                << QString::fromUtf8(foreign);
    };
    // Kana and Hangul by their ranges: the script classes also take the full stop that Chinese shares with Japanese.
    if (withEnglish)
        row("English", "0-English.xml", "[A-Za-z]", R"([\p{Han}ぁ-ゖァ-ヺ가-힣\p{Cyrillic}])");
    row("Simplified Chinese", "1-简体中文.xml", R"(\p{Han})", "[ぁ-ゖァ-ヺ設備數開關時間鍵記錄傳輸讀請標離線擇顯電單]");
    // "宏" is the mainland's word for a macro.
    row("Traditional Chinese", "2-繁体中文.xml", R"(\p{Han})",
        "[ぁ-ゖァ-ヺ设备开关时间键记录传输读请标离线择显电单宏]");
    row("Korean", "3-Korea.xml", "[가-힣]", R"([\p{Han}ぁ-ゖァ-ヺ\p{Cyrillic}])");
    // A Latin letter inside a Cyrillic word looks right and breaks searching and line breaking.
    row("Russian", "4-Russia.xml", R"(\p{Cyrillic})",
        R"([\p{Han}ぁ-ゖァ-ヺ가-힣]|[A-Za-z]\p{Cyrillic}|\p{Cyrillic}[A-Za-z])");
    row("Japanese", "5-Japanese.xml", R"([ぁ-ゖァ-ヺ\p{Han}])", "[가-힣设备开关时间键记录传输读请标离线择显电单]");
}

void TestLanguageFiles::complete()
{
    QFETCH(QString, file);
    const Document document = read(file);
    QCOMPARE(document.error, QString());
    QCOMPARE(document.root, QStringLiteral("Total"));

    QStringList problems;
    const QStringList expected = expectedPaths();
    for (const QString &path : expected) {
        const int count = document.order.count(path);
        if (count != 1)
            problems << QStringLiteral("%1 stands %2 times").arg(path).arg(count);
    }
    for (const QString &path : document.order) {
        if (!expected.contains(path))
            problems << QStringLiteral("%1 is read by nothing").arg(path);
    }
    for (auto entry = document.text.cbegin(); entry != document.text.cend(); ++entry) {
        const QString &text = entry.value();
        if (text.trimmed().isEmpty())
            problems << QStringLiteral("%1 is empty").arg(entry.key());
        else if (text != text.trimmed() && !contains(prefixes, entry.key()))
            problems << QStringLiteral("%1 has blanks at its ends").arg(entry.key());
        if (text.contains(QChar::ReplacementCharacter))
            problems << QStringLiteral("%1 was damaged by a wrong encoding").arg(entry.key());
    }
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1String("; "))));
}

void TestLanguageFiles::translated()
{
    QFETCH(QString, file);
    const QString language = QString::fromLatin1(QTest::currentDataTag());
    const Document english = read(QStringLiteral("Language/0-English.xml"));
    const Document document = read(file);
    QVERIFY(!english.text.isEmpty() && !document.text.isEmpty());

    QStringList problems;
    for (auto entry = document.text.cbegin(); entry != document.text.cend(); ++entry) {
        if (entry.value() == english.text.value(entry.key()) &&
            !maySayItInEnglish(language, entry.key(), entry.value()))
            problems << QStringLiteral("%1 is still English: %2").arg(entry.key(), entry.value());
    }
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1String("; "))));
}

void TestLanguageFiles::script()
{
    QFETCH(QString, file);
    QFETCH(QString, own);
    QFETCH(QString, foreign);
    const QString language = QString::fromLatin1(QTest::currentDataTag());
    const QRegularExpression ownPattern(own);
    const QRegularExpression foreignPattern(foreign);
    QVERIFY2(ownPattern.isValid() && foreignPattern.isValid(), qPrintable(foreignPattern.errorString()));
    const Document document = read(file);
    QVERIFY(!document.text.isEmpty());

    QStringList problems;
    for (auto entry = document.text.cbegin(); entry != document.text.cend(); ++entry) {
        if (!maySayItInEnglish(language, entry.key(), entry.value()) && !entry.value().contains(ownPattern))
            problems << QStringLiteral("%1 has no letter of the language: %2").arg(entry.key(), entry.value());
        const QRegularExpressionMatch match = foreignPattern.match(entry.value());
        if (match.hasMatch())
            problems << QStringLiteral("%1 holds \"%2\"").arg(entry.key(), match.captured());
    }
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1String("; "))));
}

/** The program compares, joins and searches some texts; these must fit each other within a language. */
void TestLanguageFiles::wording()
{
    QFETCH(QString, file);
    const Document document = read(file);
    const auto text = [&document](const char *path) { return document.text.value(QLatin1String(path)); };

    // The button page finds the rows of a deleted macro by the macro page's copy of the prefix.
    QCOMPARE(text("Macro/MacroReal"), text("Buttoninterface/Macro_"));
    for (const auto &paths : sameFunction) {
        QCOMPARE(text(paths[1]), text(paths[0]));
        QCOMPARE(text(paths[2]), text(paths[0]));
    }

    // A row tells its function by its text alone, so no two functions read alike.
    const QStringList skipped = words(noFunction);
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

    // The number of milliseconds is put in front of the unit.
    for (int number = 1; number <= 20; ++number)
        QVERIFY(!document.text.value(QStringLiteral("Buttoninterface/S%1").arg(number))
                     .contains(QRegularExpression(QStringLiteral("\\d"))));

    // The instruction names the button to press; the progress text goes on with ": 35%"; a failure is told by its text.
    QVERIFY(text("Match/textEdit").contains(text("Match/MatchButton")));
    QVERIFY(!QStringLiteral(".。:：").contains(text("Progress/UpdateNotMove").right(1)));
    QVERIFY(text("Progress/UpDateFail") != text("Progress/UpDateSuccess"));

    // The same release in every language.
    const QRegularExpression version(QStringLiteral("v\\d+(\\.\\d+){3}$"));
    const QString english =
        read(QStringLiteral("Language/0-English.xml")).text.value(QStringLiteral("FormSetting/label"));
    QVERIFY(version.match(english).hasMatch());
    QCOMPARE(version.match(text("FormSetting/label")).captured(), version.match(english).captured());
}

/** The maker's name in English and Chinese, and the two addresses that the settings page opens in the browser. */
void TestLanguageFiles::companyLinks()
{
    const Document document = read(QStringLiteral("Language/Net.xml"));
    QCOMPARE(document.error, QString());
    QCOMPARE(document.root, QStringLiteral("Profile"));
    for (const char *name : {"English/CompanyName", "Chinese/CompanyName"})
        QVERIFY2(!document.text.value(QLatin1String(name)).trimmed().isEmpty(), name);
    for (const char *address : {"Web/CompanyWebcn", "Web/CompanyWeben"}) {
        const QUrl url(document.text.value(QLatin1String(address)), QUrl::StrictMode);
        QVERIFY2(url.isValid() && url.scheme() == QLatin1String("https") && !url.host().isEmpty(), address);
    }
    // A language's own entry and the common one are both read; the later must not change what the earlier set.
    QCOMPARE(document.text.value(QStringLiteral("English/CompanyWeben")),
             document.text.value(QStringLiteral("Web/CompanyWeben")));
    QCOMPARE(document.text.value(QStringLiteral("Chinese/CompanyWebcn")),
             document.text.value(QStringLiteral("Web/CompanyWebcn")));
}

QTEST_GUILESS_MAIN(TestLanguageFiles)
#include "tst_languagefiles.moc"
