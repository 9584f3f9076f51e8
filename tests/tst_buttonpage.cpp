#include "app/TextSetup.h"
#include "devicelink/DeviceCache.h"
#include "macro/MacroFile.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "support/ButtonBench.h"
#include "support/Keys.h"
#include "support/ProductCopy.h"
#include "support/TestHome.h"
#include "ui/MyConmboBox.h"

#include <QLineEdit>

namespace {

struct TestRow
{
    const char *name;
    int slot;
};
constexpr TestRow testRows[] = {{"FireKey", 0},    {"RightKey", 1}, {"BackKey", 2},
                                {"StartPause", 4}, {"TopMusic", 3}, {"BackMusic", 5}};

/** Entry, the entry that opens its list, the bytes of its function, and what the pressed button does. */
constexpr const char *functions[] = {
    "LeftKey_3 - 1 1 0 button 1",
    "RightKey_3 - 1 2 0 button 2",
    "MidKey - 1 4 0 button 4",
    "BackKey_2 - 1 8 0 button 8",
    "ForWardKey - 1 16 0 button 16",
    "DPI_5 - 0 0 0",
    "DPI_2 - 7 0 0 rate",
    "VolumeUp_14 DPI_13 11 1 0 wheel 1",
    "VolumeDown_14 DPI_13 11 2 0 wheel -1",
    "VolumeUp_2 DPI_11 3 1 0 tilt -1",
    "VolumeDown_2 DPI_11 3 2 0 tilt 1",
    "VolumeUp_8 DPI_7 2 1 0 dpi",
    "VolumeUp_9 DPI_7 2 2 0 dpi",
    "VolumeUp_10 DPI_7 2 3 0 dpi",
};

/** DPI locks: entry and DPI. */
constexpr const char *locks[] = {"VolumeUp_11 100", "VolumeUp_12 200",  "VolumeUp_13 300",  "VolumeUp_16 400",
                                 "VolumeUp_15 500", "VolumeUp_19 600",  "VolumeUp_20 700",  "VolumeUp_22 800",
                                 "VolumeUp_18 900", "VolumeUp_24 1000", "VolumeUp_23 1100", "VolumeUp_21 1200"};

/** Entry and usage of the HID consumer page. */
constexpr const char *consumerKeys[] = {
    "Player 183",        "StartPause_2 cd",   "BackMusic_2 b5",   "TopMusic_2 b6",    "Mute b7",
    "VolumeUp e2",       "VolumeDown e9",     "VolumeDown_4 ea",  "VolumeDown_5 18a", "VolumeDown_6 192",
    "VolumeDown_3 194",  "VolumeDown_8 223",  "VolumeDown_9 221", "VolumeDown_7 225", "VolumeDown_10 224",
    "VolumeDown_12 226", "VolumeDown_13 227", "VolumeDown_11 22a"};

KeySequence consumerBytes(int usage)
{
    const auto code = static_cast<std::uint16_t>(usage);
    return {2, {}, {{0, 2, code, 10}, {1, 2, code, 10}}};
}

struct Choice
{
    QString entry;
    QString opener; ///< the entry that opens its list
    KeyFunction function;
    int usage;    ///< of a consumer key
    QString does; ///< the beginning of what the mouse tells
};

QList<Choice> choicesOf(int model)
{
    QList<Choice> all;
    const auto byte = [](const QString &text) { return static_cast<std::uint8_t>(text.toInt()); };
    for (const char *line : functions) {
        const QStringList parts = QString(line).split(' ');
        const KeyFunction function{byte(parts[2]), byte(parts[3]), byte(parts[4])};
        all << Choice{parts[0], parts[1] == "-" ? QString() : parts[1], function, 0, parts.mid(5).join(' ')};
    }
    for (const char *line : locks) {
        const QStringList parts = QString(line).split(' ');
        const int dpi = parts[1].toInt();
        const auto code = static_cast<std::uint8_t>(model == 0 ? dpi / 50 - 1 : dpi / 100 + 3);
        all << Choice{parts[0], "DPI_4", {10, code, 0}, 0, "dpi " + parts[1]};
    }
    for (const char *line : consumerKeys) {
        const QStringList parts = QString(line).split(' ');
        const int usage = parts[1].toInt(nullptr, 16);
        all << Choice{parts[0], "DPI_12", {5, 0, 0}, usage, QString("consumer %1").arg(usage)};
    }
    return all;
}

} // namespace

/** Each choice of the page by real clicks; the mouse's flash and its buttons tell what it did. */
class ButtonPageTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void everyFunctionOnEveryButton_data();
    void everyFunctionOnEveryButton();
    void storedFunctionIsShown_data();
    void storedFunctionIsShown();
    void lastLeftButtonStays();
    void combinationAndFireKey();
    void sleepingMouseKeepsItsRows();
    void pressBesideTheMenus();
    void languageGivesRowsNewWords();
    void macroOnButtons();
    void deletedMacroGivesDefaults_data();
    void deletedMacroGivesDefaults();
    void deleteInCopy();
    void factoryLookAndProfiles();
};

void ButtonPageTest::initTestCase()
{
    setUpFonts();
    UserFolders::prepare();
}

void ButtonPageTest::init()
{
    UserSettings::instance()->setLanguage(0);
    VirtualMice::restoreScene();
    QDir(UserFolders::path(UserFolders::Folder::MacroPage)).removeRecursively();
    LoadFileName().set({});
}

void ButtonPageTest::everyFunctionOnEveryButton_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("row");
    for (int model = 0; model < 2; ++model) {
        for (int row = 0; row < 6; ++row)
            QTest::addRow("q%d %s", model + 1, testRows[row].name) << model << row;
    }
}

void ButtonPageTest::everyFunctionOnEveryButton()
{
    QFETCH(int, model);
    QFETCH(int, row);
    const TestRow &tested = testRows[row];
    ButtonBench bench(model);
    // On a machine that is busy with others the mouse may miss the time for its answer. The program then says so and
    // leaves the button alone, and a user tries again.
    QSignalSpy offline(postMsg(), &PostMsg::SigMouseOffLineo);
    const auto assign = [&](const QString &name, const Choice &choice) {
        do {
            offline.clear();
            bench.click(name);
            if (!choice.opener.isEmpty())
                bench.click(choice.opener);
            bench.click(choice.entry);
        } while (!offline.isEmpty());
    };
    // The first row may change while another one is left.
    if (row == 0)
        assign("RightKey", {"LeftKey_3", {}, {}, 0, {}});
    QVERIFY(bench.isWritten());
    FlashDataMap expected = bench.held();
    const QList<Choice> all = choicesOf(model);
    for (const Choice &choice : all) {
        expected.KeyFunctions[tested.slot] = choice.function;
        if (choice.usage != 0)
            expected.KeySequences[tested.slot] = consumerBytes(choice.usage);
        assign(tested.name, choice);
        QVERIFY2(bench.comesToHold(expected), qPrintable(choice.entry));
        const QString chosen = bench.button(choice.entry)->text();
        QCOMPARE(bench.button(tested.name)->text(), choice.opener == "DPI_4" ? "DPI lock-" + chosen : chosen);
        QCOMPARE(bench.menu(), QString("page page_9"));
        QVERIFY(bench.button(tested.name)->isChecked());
        const QStringList sent = bench.pressed(tested.slot);
        QVERIFY2(choice.does.isEmpty() ? sent.isEmpty() : sent.value(0).startsWith(choice.does),
                 qPrintable(choice.entry + ": " + sent.join(", ")));
        if (choice.opener.isEmpty() || choice.opener == "DPI_7") {
            // The mouse changed its DPI or its rate, and tells the program.
            QVERIFY(bench.isWritten());
            expected = bench.held();
        }
        bench.click(tested.name);
        QVERIFY2(!bench.button(choice.entry)->visibleRegion().isEmpty(), qPrintable(choice.entry));
        QCOMPARE(bench.checkedEntries(),
                 choice.opener.isEmpty() ? QStringList{choice.entry} : QStringList({choice.opener, choice.entry}));
    }
}

void ButtonPageTest::storedFunctionIsShown_data()
{
    QTest::addColumn<QByteArray>("function");
    QTest::addColumn<QByteArray>("sequence");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("opened");
    const auto row = [](const char *name, const KeyFunction &function, const char *sequence, const QString &shown,
                        const QString &opened) {
        QTest::newRow(name) << bytesOf(function) << QByteArray::fromHex(sequence) << shown << opened;
    };
    const QString kept = "Middle button";
    row("profile", {9, 0, 0}, "", "Switch profile", "page_2 page_9");
    row("all lights", {8, 0, 0}, "", "All lights on/off", "page_2 page_6");
    row("strip effect", {8, 4, 0}, "", "Next strip effect", "page_2 page_6");
    row("light 2 isn't used", {8, 2, 0}, "", kept, "page_2 page_6");
    row("unknown type", {12, 1, 0}, "", kept, "page_2 page_9");
    row("unknown button", {1, 3, 0}, "", kept, "page_2 page_9");
    row("fire key", {4, 20, 0}, "", "Fire key", "page_2 page_9");
    row("Ctrl+C", {5, 0, 0}, "04000000 000001000a000000 000106000a000000 010106000a000000 010001000a000000", "Ctrl+C",
        "page_2 page_9");
    row("counts and codes from elsewhere", {5, 0, 0}, "ff000000 0001ff0100000000 00014000", "+Alt++++",
        "page_2 page_9");
    row("no key", {5, 0, 0}, "02000000 00010000 0a000000", "", "page_2 page_9");
    row("unknown consumer key", {5, 0, 0}, "02000000 000201000a000000", kept, "page_2 page_3");
    row("consumer key by its low byte", {5, 0, 0}, "02000000 0002b5770a000000", "Next track", "page_2 page_3");
    row("DPI lock", {10, 200, 0}, "", "DPI lock-10050", "page_2 page_8");
}

void ButtonPageTest::storedFunctionIsShown()
{
    QFETCH(QByteArray, function);
    QFETCH(QByteArray, sequence);
    QFETCH(QString, shown);
    QFETCH(QString, opened);
    ButtonBench bench(0);
    FlashDataMap record = bench.held();
    std::memcpy(&record.KeyFunctions[2], function.constData(), sizeof(KeyFunction));
    std::memcpy(&record.KeySequences[2], sequence.constData(), std::size_t(sequence.size()));
    bench.page->SlotUpDataButtonUIB(record);
    QCOMPARE(bench.button("BackKey")->text(), shown);
    QVERIFY(!ButtonUiUpdating);
    bench.click("BackKey");
    QCOMPARE(bench.menu(), opened);
}

void ButtonPageTest::lastLeftButtonStays()
{
    ButtonBench bench(0);
    int prompts = 0;
    QTimer answer;
    connect(&answer, &QTimer::timeout, [&] {
        if (QWidget *const prompt = QApplication::activeModalWidget()) {
            ++prompts;
            QTest::keyClick(prompt, Qt::Key_Escape);
        }
    });
    answer.start(5);
    bench.click("FireKey");
    QCOMPARE(prompts, 1);
    QCOMPARE(bench.menu(), QString("page page_9"));
    QVERIFY(!bench.button("FireKey")->isChecked());
    for (const char *button : {"BackMusic", "LeftKey_3", "FireKey"})
        bench.click(button);
    QCOMPARE(prompts, 1);
    bench.click("DPI_10"); // a list of macros without a macro
    QCOMPARE(prompts, 2);
    QCOMPARE(bench.menu(), QString("page_2 page_9"));
}

void ButtonPageTest::combinationAndFireKey()
{
    ButtonBench bench(0);
    const auto open = [&](const char *entry, auto act) {
        QTimer::singleShot(20, [&, act] {
            QWidget *const dialog = QApplication::activeModalWidget();
            QVERIFY(dialog);
            act(dialog);
        });
        bench.click(entry);
    };
    bench.click("TopMusic");
    open("DPI_8", [](QWidget *dialog) {
        QTest::mouseClick(dialog->findChild<QWidget *>("Ctrl"), Qt::LeftButton, {}, {8, 12});
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        Keys::click(dialog, Qt::Key_Escape);
        QTest::mouseClick(dialog->findChild<QWidget *>("NewHong"), Qt::LeftButton);
    });
    QCOMPARE(bench.button("TopMusic")->text(), QString("Ctrl+Esc"));
    QCOMPARE(bench.menu(), QString("page_2 page_9"));
    QVERIFY(bench.isWritten());
    QCOMPARE(bench.pressed(3), QStringList({"modifier 1", "key 41"}));

    open("DPI_6", [](QWidget *dialog) {
        dialog->findChild<QSpinBox *>("Time")->setValue(33);
        dialog->findChild<QSpinBox *>("Count")->setValue(2);
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    QCOMPARE(bench.button("TopMusic")->text(), QString("Fire key"));
    QVERIFY(bench.isWritten());
    QCOMPARE(bench.pressed(3).size(), 2);

    // The next time it begins with what the row has; refusing changes nothing, the entry that was pressed included.
    QString seen;
    bench.click("TopMusic");
    open("DPI_6", [&seen](QWidget *dialog) {
        seen = dialog->findChild<QSpinBox *>("Time")->text() + ' ' + dialog->findChild<QSpinBox *>("Count")->text();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    QCOMPARE(seen, QString("33 ms 2"));
    open("DPI_8",
         [](QWidget *dialog) { QTest::mouseClick(dialog->findChild<QWidget *>("NewHong_2"), Qt::LeftButton); });
    QCOMPARE(bench.checkedEntries(), QStringList("DPI_6"));
    QVERIFY(bench.isWritten());
    QCOMPARE(bytesOf(bench.held().KeyFunctions[3]), QByteArray::fromHex("042102"));
    // A dialog goes with the page: the device was pulled.
    open("DPI_8", [&bench](QWidget *) { bench.page->hide(); });
    QVERIFY(!QApplication::activeModalWidget());
}

void ButtonPageTest::sleepingMouseKeepsItsRows()
{
    ButtonBench bench(0);
    QVERIFY(MacroFile::write("Jump", {}));
    postMsg()->post(&PostMsg::SigAddMacroButton);
    bench.click("BackKey");
    VirtualMice::tell({"sleep", "q1"});
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    const auto refused = [&](const char *list, const QString &entry) {
        bench.click("BackKey");
        if (list)
            bench.click(list);
        if (entry == "Jump")
            bench.find<QWidget>("MacroListWidget")->findChild<QToolButton *>()->click();
        else
            bench.click(entry);
        return bench.button("BackKey")->text() == "Middle button" && bench.menu() == "page page_9" &&
               prompts.takeFirst() == QVariantList{0} && prompts.isEmpty();
    };
    QVERIFY(refused(nullptr, "RightKey_3") && refused("DPI_12", "Mute") && refused("DPI_10", "Jump"));
    QVERIFY(refused(nullptr, "DPI_6")); // without its dialog, which would stand here for ever
    bench.click("Number4");
    QCOMPARE(prompts.size(), 1);
    QVERIFY(bench.button("StartPause")->isChecked());
}

void ButtonPageTest::pressBesideTheMenus()
{
    ButtonBench bench(0);
    const auto press = [&](const QString &widget, const QPoint &at) {
        QWidget *const target = widget.isEmpty() ? bench.page.get() : bench.find<QWidget>(widget);
        QTest::mouseClick(target, Qt::LeftButton, {}, at);
        return bench.menu() + (bench.button("BackKey")->isChecked() ? " row" : "");
    };
    // Beside the entries of a list nothing closes; between the rows the menu stays too.
    for (const auto &[widget, at] : {std::pair("widget", QPoint(20, 20)), {"groupBox", {400, 100}}, {"", {860, 100}}}) {
        bench.click("BackKey");
        QCOMPARE(press("page_2", {3, 100}), QString("page_2 page_9 row"));
        QCOMPARE(press("rowList", {34, 20}), QString("page_2 page_9 row"));
        bench.click("DPI_7");
        QCOMPARE(press("page_7", {100, 200}), QString("page_2 page_7 row"));
        QCOMPARE(press(widget, at), QString("page page_9"));
    }
}

void ButtonPageTest::languageGivesRowsNewWords()
{
    ButtonBench bench(0);
    bench.click("BackMusic");
    bench.click("DPI_5");
    QVERIFY(bench.isWritten());
    postMsg()->post(&PostMsg::SigChangeLanguage, 4);
    // Without a cache the rows keep their words.
    QCOMPARE(bench.button("BackMusic")->text(), QString("Unassigned"));
    LoadFileName().set("Device_CID12_MID01.bin");
    SaveDeviceCache(LoadFileName().get(), WorkingRecord::instance().copy());
    postMsg()->post(&PostMsg::SigChangeLanguage, 5);
    QCOMPARE(bench.button("BackMusic")->text(), bench.button("DPI_5")->text());
    QVERIFY(bench.button("BackMusic")->text() != "Unassigned");
    QCOMPARE(bench.find<QLabel>("label_3")->text(), QString("デバウンス時間"));
    QVERIFY(!bench.button("ImportData")->toolTip().isEmpty());
}

void ButtonPageTest::macroOnButtons()
{
    ButtonBench bench(0);
    const MacroKey &a = *KeyTable::find("A");
    const MacroRows tap = {MacroRow::event(a, MacroRow::Action::Press), MacroRow::delay(70000),
                           MacroRow::event(a, MacroRow::Action::Release)};
    QVERIFY(MacroFile::write("A", {254, tap}));
    QVERIFY(MacroFile::write("B & b", {}));
    postMsg()->post(&PostMsg::SigAddMacroButton);
    const auto choose = [&](const QString &row, const QString &macro) {
        bench.click(row);
        bench.click("DPI_10");
        for (auto *each : bench.find<QWidget>("MacroListWidget")->findChildren<QToolButton *>()) {
            if (each->text() == macro)
                each->click();
        }
    };
    // The same name as the text of a combination on another row.
    FlashDataMap record = bench.held();
    record.KeyFunctions[5] = {5, 0, 0};
    record.KeySequences[5] = {2, {}, {{0, 1, 4, 10}, {1, 1, 4, 10}}};
    WorkingRecord::instance().updateAndSend([&](FlashDataMap &working) { working = record; });
    bench.page->SlotUpDataButtonUIB(record);
    QCOMPARE(bench.button("BackMusic")->text(), QString("A"));

    choose("BackKey", "A");
    choose("TopMusic", "A");
    choose("StartPause", "B & b");
    QVERIFY(bench.isWritten());
    record = bench.held();
    QCOMPARE(bytesOf(record.KeyFunctions[3]), QByteArray::fromHex("0603fe"));
    QCOMPARE(bytesOf(record.MacroSlots[3]).left(48), QByteArray::fromHex("0141").leftJustified(31, '\0') + '\x02' +
                                                         QByteArray::fromHex("0001040070110100") +
                                                         QByteArray::fromHex("0101040000000000"));
    QCOMPARE(int(record.MacroSlots[4].EventCount), 1);
    QVERIFY(!bench.pressed(3).isEmpty());
    QCOMPARE(bench.button("StartPause")->text(), QString("Macro: B & b"));
    bench.click("TopMusic");
    QCOMPARE(bench.checkedEntries(), QStringList({"DPI_10", "A"}));

    // A save is followed on the rows that play the macro when its time is up.
    QSignalSpy wanted(postMsg(), &PostMsg::SigMacroDownLoadData);
    QTimer::singleShot(1, [&] {
        bench.click("BackKey");
        bench.click("DPI_5");
    });
    postMsg()->post(&PostMsg::SigUpDataMacro, QString("A"), 0);
    QCOMPARE(wanted, QList<QVariantList>({{"A", 3}}));
    QVERIFY(MacroFile::write("A", {7, {}}));
    postMsg()->post(&PostMsg::SigUpDataMacro, QString("A"), 1);
    postMsg()->post(&PostMsg::SigMacroRename, QString("A"), QString("Ä"));
    QVERIFY(bench.isWritten());
    const QByteArray local = QString("Ä").toLocal8Bit();
    MacroSlot followed = record.MacroSlots[3];
    followed.NameLength = std::uint8_t(local.size());
    std::memcpy(followed.Name, local.constData(), std::size_t(local.size()));
    QCOMPARE(bytesOf(bench.held().MacroSlots[3]), bytesOf(followed));
    QCOMPARE(bytesOf(bench.held().KeyFunctions[3]), QByteArray::fromHex("060307"));
    QCOMPARE(bytesOf(bench.held().KeyFunctions[5]), QByteArray::fromHex("050000"));
    QCOMPARE(bench.button("TopMusic")->text(), QString("Macro: Ä"));
}

void ButtonPageTest::deletedMacroGivesDefaults()
{
    QFETCH(QByteArrayList, parameters);
    QFETCH(QString, left);
    ProductCopy copy;
    copy.change("usersetting/Config.ini", [&parameters](QByteArray content) {
        for (const QByteArray &parameter : parameters) {
            const int line = content.indexOf(parameter.left(10));
            content.replace(line, content.indexOf('\n', line) - line, parameter);
        }
        return content;
    });
    const ProductCopy::Result result = copy.run("deleteInCopy");
    QVERIFY2(result.exitCode == 0, result.log.constData());
    QCOMPARE(result.told, left);
}

void ButtonPageTest::deletedMacroGivesDefaults_data()
{
    QTest::addColumn<QByteArrayList>("parameters");
    QTest::addColumn<QString>("left"); ///< of rows 2 and 6: text, function, and the beginning of the sequence
    QTest::newRow("of the model") << QByteArrayList{"KeyParam2=0x05,0x00,0xCD", "KeyParam6=0x05,0x00,0x00,Ctrl+Shift+A"}
                                  << "Play/Pause 050000 02 | Ctrl+Shift+A 050000 06";
    QTest::newRow("nobody knows") << QByteArrayList{"KeyParam2=0x05,0x00"}
                                  << "Macro: Old 060101 06 | DPI cycle 020100 00";
}

void ButtonPageTest::deleteInCopy()
{
    if (!ProductCopy::isCopy())
        return;
    ButtonBench bench(0);
    FlashDataMap record = bench.held();
    for (const int slot : {1, 5}) {
        record.KeyFunctions[slot] = {6, std::uint8_t(slot), 1};
        record.KeySequences[slot].EventCount = 6;
        std::memcpy(record.MacroSlots[slot].Name, "Old", 3);
    }
    WorkingRecord::instance().updateAndSend([&](FlashDataMap &working) { working = record; });
    bench.page->SlotUpDataButtonUIB(record);
    postMsg()->post(&PostMsg::SigDeleteMacroButton, QString("Macro: Old"));
    QVERIFY(bench.isWritten());
    QCOMPARE(bench.menu(), QString("page page_9"));
    const FlashDataMap held = WorkingRecord::instance().copy();
    QStringList left;
    for (const auto &[row, slot] : {std::pair("RightKey", 1), std::pair("BackMusic", 5)})
        left << bench.button(row)->text() + ' ' + bytesOf(held.KeyFunctions[slot]).toHex() + ' ' +
                    bytesOf(held.KeySequences[slot]).left(1).toHex();
    ProductCopy::tell(left.join(" | "));
}

void ButtonPageTest::factoryLookAndProfiles()
{
    ButtonBench bench(1);
    const auto *const profiles = bench.find<MyConmboBox>("ProjectChoose");
    postMsg()->post(&PostMsg::SigMouseIndex, 0);
    QVERIFY(bench.find<QWidget>("widget")->styleSheet().contains("mouse0.png"));
    bench.page->SlotUpDataConfigUI(4, 2, true);
    QCOMPARE(profiles->currentText(), QString("Profile 3"));
    bench.click("BackKey");
    bench.page->SlotFormResetButton();
    QVERIFY(bench.find<QWidget>("widget")->styleSheet().contains("mouse1.png"));
    QCOMPARE(bench.menu(), QString("page page_9"));
    QCOMPARE(bench.find<QComboBox>("Debunce")->currentIndex(), 8);
    bench.click("TopMusic");
    QCOMPARE(bench.checkedEntries(), QStringList("ForWardKey"));
    bench.page->SlotUpDataConfigUI(0, 0, false);
    QCOMPARE(profiles->currentText(), QString("Profile 1"));
    QVERIFY(!profiles->isEnabled());
}

HALVARION_TEST_MAIN(ButtonPageTest)
#include "tst_buttonpage.moc"
