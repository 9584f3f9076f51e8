#include "app/TextSetup.h"
#include "buttons/GroupKey.h"
#include "buttons/KeySequences.h"
#include "devicelink/DeviceCache.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "support/ButtonBench.h"
#include "support/Keys.h"
#include "support/MacroText.h"
#include "support/ProductCopy.h"
#include "support/PromptDriver.h"
#include "support/Rows.h"
#include "support/TestHome.h"
#include "ui/MyConmboBox.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QScopeGuard>

namespace {

/** Rows and their slots. */
constexpr std::pair<const char *, int> testRows[] = {{"FireKey", 0},    {"RightKey", 1}, {"BackKey", 2},
                                                     {"StartPause", 4}, {"TopMusic", 3}, {"BackMusic", 5}};

/**
 * Entry, the entry that opens its list, the bytes of its function, and what the mouse tells when the button is pressed:
 * of a DPI lock the DPI, for which each sensor has its own code, of a consumer key the usage.
 */
constexpr char choices[] = // `lock` and `media` stand for what the entries of their lists have in common
    "LeftKey_3 - 1 1 0 button 1, RightKey_3 - 1 2 0 button 2, MidKey - 1 4 0 button 4, BackKey_2 - 1 8 0 button 8, "
    "ForWardKey - 1 16 0 button 16, DPI_5 - 0 0 0, DPI_2 - 7 0 0 rate, VolumeUp_14 DPI_13 11 1 0 wheel 1, "
    "VolumeDown_14 DPI_13 11 2 0 wheel -1, VolumeUp_2 DPI_11 3 1 0 tilt -1, VolumeDown_2 DPI_11 3 2 0 tilt 1, "
    "VolumeUp_8 DPI_7 2 1 0 dpi, VolumeUp_9 DPI_7 2 2 0 dpi, VolumeUp_10 DPI_7 2 3 0 dpi, VolumeUp_11 lock 100, "
    "VolumeUp_12 lock 200, VolumeUp_13 lock 300, VolumeUp_16 lock 400, VolumeUp_15 lock 500, VolumeUp_19 lock 600, "
    "VolumeUp_20 lock 700, VolumeUp_22 lock 800, VolumeUp_18 lock 900, VolumeUp_24 lock 1000, VolumeUp_23 lock 1100, "
    "VolumeUp_21 lock 1200, Player media 0x183, StartPause_2 media 0xcd, BackMusic_2 media 0xb5, "
    "TopMusic_2 media 0xb6, Mute media 0xb7, VolumeUp media 0xe2, VolumeDown media 0xe9, VolumeDown_4 media 0xea, "
    "VolumeDown_5 media 0x18a, VolumeDown_6 media 0x192, VolumeDown_3 media 0x194, VolumeDown_8 media 0x223, "
    "VolumeDown_9 media 0x221, VolumeDown_7 media 0x225, VolumeDown_10 media 0x224, VolumeDown_12 media 0x226, "
    "VolumeDown_13 media 0x227, VolumeDown_11 media 0x22a";

} // namespace

/** Each choice of the page by real clicks; the mouse's flash and its buttons tell what it did. */
class ButtonPageTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { setUpFonts(); }
    void init()
    {
        UserSettings::instance()->setLanguage(0);
        VirtualMice::restoreScene();
        QDir(UserFolders::path(UserFolders::Folder::MacroPage)).removeRecursively();
        UserFolders::prepare();
        LoadFileName().set({});
    }
    void everyFunctionOnEveryButton_data();
    void everyFunctionOnEveryButton();
    void storedFunctionIsShown();
    void lastLeftButtonStays();
    void combinationAndFireKey();
    void sleepingMouseKeepsItsRows();
    void keyboard();
    void pressBesideTheMenus();
    void languageGivesRowsNewWords();
    void macroOnButtons();
    void deletedMacroGivesDefaults();
    void factoryLookAndProfiles();
    void combinationsOfKeys();
    void typedCombinations();
    void waysOutOfACombination();
};

void ButtonPageTest::everyFunctionOnEveryButton_data()
{
    const Rows<int, int> row("model", "row");
    for (int at = 0; at < 12; ++at)
        row(qPrintable(QString("q%1 %2").arg(1 + at / 6).arg(testRows[at % 6].first)), at / 6, at % 6);
}

void ButtonPageTest::everyFunctionOnEveryButton()
{
    QFETCH(int, model);
    QFETCH(int, row);
    const auto &[name, slot] = testRows[row];
    ButtonBench bench(model);
    const auto assign = [&](const QString &to, const QString &opener, const QString &entry) {
        ConnectedMouse::untilAnswered([&] {
            bench.click(to);
            if (!opener.isEmpty())
                bench.click(opener);
            bench.click(entry);
        });
    };
    // The first row may change while another one is left.
    if (row == 0)
        assign("RightKey", "", "LeftKey_3");
    FlashDataMap expected = bench.held();
    const QString all = QString(choices).replace("lock", "DPI_4 10 0 0 dpi").replace("media", "DPI_12 5 0 0 consumer");
    for (const QString &choice : all.split(", ")) {
        const QStringList words = choice.split(' ');
        const QString opener = words[1] == "-" ? QString() : words[1];
        const auto byteAt = [&words](int at) { return std::uint8_t(words[at].toInt()); };
        const int told = words.last().toInt(nullptr, 0);
        expected.KeyFunctions[slot] = {byteAt(2), byteAt(3), byteAt(4)};
        if (opener == "DPI_4")
            expected.KeyFunctions[slot].KeyParam1 = std::uint8_t(model == 0 ? told / 50 - 1 : told / 100 + 3);
        if (const auto usage = std::uint16_t(told); opener == "DPI_12")
            expected.KeySequences[slot] = {2, {}, {{0, 2, usage, 10}, {1, 2, usage, 10}}};
        assign(name, opener, words[0]);
        QVERIFY2(QTest::qWaitFor([&] { return bench.held() == expected; }), qPrintable(choice));
        const QString chosen = bench.button(words[0])->text();
        QCOMPARE(bench.button(name)->text(), opener == "DPI_4" ? "DPI lock-" + chosen : chosen);
        QCOMPARE(bench.menu(), QString("page page_9"));
        QVERIFY(bench.button(name)->isChecked());
        const QString sent = bench.pressed(slot).value(0);
        const QString does = words.value(5) + (words.size() > 6 ? QString(" %1").arg(told) : QString());
        QVERIFY2(does.isEmpty() ? sent.isEmpty() : sent.startsWith(does), qPrintable(choice + " told " + sent));
        if (opener.isEmpty() || opener == "DPI_7")
            expected = bench.held(); // the mouse changed its DPI or its rate, and tells the program
        bench.click(name);
        QVERIFY2(!bench.button(words[0])->visibleRegion().isEmpty(), qPrintable(choice));
        QCOMPARE(bench.checkedEntries(), opener.isEmpty() ? QStringList{words[0]} : QStringList({opener, words[0]}));
    }
}

void ButtonPageTest::storedFunctionIsShown()
{
    ButtonBench bench(0);
    const FlashDataMap held = bench.held();
    const char *const kept = "Middle button";
    const std::tuple<const char *, const char *, const char *, const char *> functions[] = {
        {"090000", "", "Switch profile", "page_9"},
        {"080400", "", "Next strip effect", "page_6"},
        {"080200", "", kept, "page_6"}, // light 2 isn't used
        {"0c0100", "", kept, "page_9"}, // neither type 12
        {"010300", "", kept, "page_9"}, // nor two buttons at once
        {"050000", "ff000000 0001ff0100000000 00014000", "+Alt++++", "page_9"},
        {"050000", "02000000 00010000 0a000000", "", "page_9"},
        {"050000", "02000000 000201000a000000", kept, "page_3"},
        {"050000", "02000000 0002b5770a000000", "Next track", "page_3"}, // by its low byte
        {"0ac800", "", "DPI lock-10050", "page_8"}};
    for (const auto &[function, sequence, shown, opened] : functions) {
        FlashDataMap record = held;
        const QByteArray events = QByteArray::fromHex(sequence);
        std::memcpy(&record.KeyFunctions[2], QByteArray::fromHex(function).constData(), sizeof(KeyFunction));
        std::memcpy(&record.KeySequences[2], events.constData(), std::size_t(events.size()));
        bench.page->SlotUpDataButtonUIB(held);
        bench.page->SlotUpDataButtonUIB(record);
        QCOMPARE(bench.button("BackKey")->text(), QString(shown));
        bench.click("BackKey");
        QCOMPARE(bench.menu(), QString("page_2 ") + opened);
    }
}

void ButtonPageTest::lastLeftButtonStays()
{
    ButtonBench bench(0);
    const auto leave = [](QWidget *prompt) { QTest::keyClick(prompt, Qt::Key_Escape); };
    bench.inDialog(leave);
    bench.click("FireKey");
    QVERIFY(bench.menu() == "page page_9" && !bench.button("FireKey")->isChecked());
    bench.click("RightKey");
    bench.inDialog(leave);
    bench.click("Number1"); // nor by its number, with the list of another row
    QVERIFY(bench.menu() == "page page_9" && !bench.button("FireKey")->isChecked());
    const FlashDataMap oneLeft = bench.held();
    for (const char *button : {"BackMusic", "LeftKey_3", "FireKey"})
        bench.click(button); // without a prompt, which would stand here for ever
    bench.inDialog(leave);
    bench.click("DPI_10"); // a list of macros without a macro
    QCOMPARE(bench.menu(), QString("page_2 page_9"));
    bench.page->SlotUpDataButtonUIB(oneLeft); // the profile changed meanwhile
    QVERIFY(bench.menu() == "page page_9" && !bench.button("FireKey")->isChecked());
}

void ButtonPageTest::combinationAndFireKey()
{
    ButtonBench bench(0);
    const auto open = [&](const char *entry, const std::function<void(QWidget *)> &act) {
        bench.inDialog(act);
        bench.click(entry);
    };
    bench.click("TopMusic");
    open("DPI_8", [](QWidget *dialog) {
        QTest::mouseClick(dialog->findChild<QWidget *>("Ctrl"), Qt::LeftButton, {}, {8, 12});
        Keys::click(dialog, Qt::Key_Escape);
        clickChild(dialog, "NewHong");
    });
    QCOMPARE(bench.button("TopMusic")->text(), QString("Ctrl+Esc"));
    QCOMPARE(bench.menu(), QString("page_2 page_9"));
    QCOMPARE(bench.pressed(3), QStringList({"modifier 1", "key 41"}));

    open("DPI_6", [](QWidget *dialog) {
        QTest::keyClicks(dialog->focusWidget(), "2551");     // takes the place of the time, up to 255
        dialog->findChild<QSpinBox *>("Count")->setValue(9); // three at most
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    QCOMPARE(bench.button("TopMusic")->text(), QString("Fire key"));
    QCOMPARE(bench.pressed(3).size(), 3);

    // The next time it begins with what the row has; refusing changes nothing, the entry that was pressed included.
    QString seen;
    bench.click("TopMusic");
    open("DPI_6", [&seen](QWidget *dialog) {
        seen = dialog->findChild<QSpinBox *>("Time")->text() + ' ' + dialog->findChild<QSpinBox *>("Count")->text();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    QCOMPARE(seen, QString("255 ms 3"));
    open("DPI_8", [](QWidget *dialog) { clickChild(dialog, "NewHong_2"); });
    QCOMPARE(bench.checkedEntries(), QStringList("DPI_6"));
    QCOMPARE(bytesOf(bench.held().KeyFunctions[3]), QByteArray::fromHex("04ff03"));
    // A dialog goes with the page: the device was pulled.
    open("DPI_8", [&bench](QWidget *) { bench.page->hide(); });
    QVERIFY(!QApplication::activeModalWidget());
}

void ButtonPageTest::sleepingMouseKeepsItsRows()
{
    ButtonBench bench(0);
    QVERIFY(MacroFile::write("Jump", {}));
    postMsg()->post(&PostMsg::SigAddMacroButton);
    VirtualMice::tell({"sleep", "q1"});
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    const auto refused = [&](const char *list, const QString &entry) {
        bench.click("BackKey");
        if (list)
            bench.click(list);
        entry == "Jump" ? bench.clickMacro(entry) : bench.click(entry);
        return bench.button("BackKey")->text() == "Middle button" && bench.menu() == "page page_9" &&
               prompts.takeFirst() == QVariantList{0} && prompts.isEmpty();
    };
    QVERIFY(refused(nullptr, "RightKey_3") && refused("DPI_12", "Mute") && refused("DPI_10", "Jump"));
    QVERIFY(refused(nullptr, "DPI_6")); // without its dialog, which would stand here for ever
    bench.click("Number4");
    QCOMPARE(prompts.size(), 1);
    QVERIFY(bench.button("StartPause")->isChecked());
}

void ButtonPageTest::keyboard()
{
    ButtonBench bench(0);
    bench.page->setFocus();
    const auto type = [&](std::initializer_list<int> keys) { // and where the keyboard is then
        for (const int key : keys)
            QTest::keyClick(bench.page->windowHandle(), Qt::Key(key));
        return bench.menu() + ' ' + bench.page->focusWidget()->objectName();
    };
    using namespace Qt;
    QCOMPARE(type({Key_Tab, Key_Down, Key_Up, Key_Up, Key_Down, Key_Down}), QString("page page_9 BackKey"));
    QVERIFY(bench.button("Number3")->underMouse()); // lit, as its row is
    QCOMPARE(type({Key_Return}), QString("page_2 page_9 MidKey"));
    for (int steps = 0; steps < 11; ++steps)
        type({Key_Down});
    QCOMPARE(type({Key_Space}), QString("page_2 page_3 Player"));
    QVERIFY(!bench.button("Player")->visibleRegion().isEmpty());
    QCOMPARE(type({Key_Down, Key_Left}), QString("page_2 page_3 DPI_12"));
    QCOMPARE(type({Key_Right, Key_Down, Key_Return}), QString("page page_9 BackKey"));
    QCOMPARE(bench.button("BackKey")->text(), QString("Play/Pause"));
    QCOMPARE(bench.pressed(2), QStringList("consumer 205"));
    QCOMPARE(type({Key_Space, Key_Right, Key_Escape}), QString("page_2 page_9 DPI_12"));
    QCOMPARE(type({Key_Escape}), QString("page page_9 BackKey"));
    QVERIFY(!bench.button("BackKey")->isChecked());
    QCOMPARE(type({Key_Escape}), QString("page page_9 ButtonPage"));
    type({Key_Tab, Key_Return, Key_Up, Key_Up, Key_Up, Key_Up, Key_Up, Key_Up});
    // Nothing opens while the key is down: it would be an entry of the dialog as well.
    QTest::keyPress(bench.page->windowHandle(), Key_Return);
    bench.inDialog([](QWidget *dialog) {
        Keys::click(dialog, Key_A);
        clickChild(dialog, "NewHong");
    });
    QTest::keyRelease(bench.page->windowHandle(), Key_Return);
    QCOMPARE(type({}), QString("page_2 page_9 DPI_8"));
    QCOMPARE(bench.button("BackKey")->text(), QString("A"));
    bench.click("TopMusic");
    QCOMPARE(bench.page->focusWidget(), bench.page.get());
}

void ButtonPageTest::pressBesideTheMenus()
{
    ButtonBench bench(0);
    const auto press = [&](const QString &widget, const QPoint &at) {
        QTest::mouseClick(widget.isEmpty() ? bench.page.get() : bench.find<QWidget>(widget), Qt::LeftButton, {}, at);
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
    const FlashDataMap held = bench.held();
    postMsg()->post(&PostMsg::SigChangeLanguage, 4);
    // Without a cache the rows keep their words.
    QCOMPARE(bench.button("BackMusic")->text(), QString("Unassigned"));
    LoadFileName().set("Device_CID12_MID01.bin");
    SaveDeviceCache(LoadFileName().get(), held);
    postMsg()->post(&PostMsg::SigChangeLanguage, 5);
    QCOMPARE(bench.button("BackMusic")->text(), bench.button("DPI_5")->text());
    QVERIFY(bench.button("BackMusic")->text() != "Unassigned");
    QVERIFY(!bench.button("ImportData")->toolTip().isEmpty());
}

void ButtonPageTest::macroOnButtons()
{
    ButtonBench bench(0);
    QVERIFY(MacroFile::write("A", {254, MacroText::rows("A+ 70000ms A-")}));
    QVERIFY(MacroFile::write("B & b", {}));
    postMsg()->post(&PostMsg::SigAddMacroButton);
    const auto choose = [&](const QString &row, const QString &macro) {
        bench.click(row);
        bench.click("DPI_10");
        bench.clickMacro(macro);
    };
    // The same name as the text of a combination on another row.
    FlashDataMap record = bench.held();
    record.KeyFunctions[5] = {5, 0, 0};
    record.KeySequences[5] = {2, {}, {{0, 1, 4, 10}, {1, 1, 4, 10}}};
    record.KeyFunctions[1] = {6, 1, 1};
    QVector<int> readBack; // the macro page makes files of the mouse's macros
    connect(postMsg(), &PostMsg::SigButtonToMacro, bench.page.get(),
            [&](const FlashDataMap &told, int slot) { readBack += told == record ? slot : -1; });
    bench.hold(record);
    QCOMPARE(readBack, QVector<int>{1});
    QCOMPARE(bench.button("BackMusic")->text(), QString("A"));

    choose("BackKey", "A");
    choose("TopMusic", "A");
    choose("StartPause", "B & b");
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
    postMsg()->post(&PostMsg::SigUpDataMacro, QString("on no button"), 0);
    QCOMPARE(wanted, QList<QVariantList>({{"A", 3}}));
    QVERIFY(MacroFile::write("A", {7, {}}));
    postMsg()->post(&PostMsg::SigUpDataMacro, QString("A"), 1);
    postMsg()->post(&PostMsg::SigMacroRename, QString("A"), QString("Ä"));
    MacroSlot followed = record.MacroSlots[3];
    MacroImage::setName(followed, "Ä");
    QCOMPARE(bytesOf(bench.held().MacroSlots[3]), bytesOf(followed));
    QCOMPARE(bytesOf(bench.held().KeyFunctions[3]), QByteArray::fromHex("060307"));
    QCOMPARE(bytesOf(bench.held().KeyFunctions[5]), QByteArray::fromHex("050000"));
    QCOMPARE(bench.button("TopMusic")->text(), QString("Macro: Ä"));
}

/** In a copy of the product, other functions are those of the factory. */
void ButtonPageTest::deletedMacroGivesDefaults()
{
    if (!ProductCopy::isCopy()) {
        ProductCopy copy;
        copy.change("usersetting/Config.ini", [](QByteArray content) {
            // Of slots 1, 2 and 5; nobody knows what the second one is. Slot 4 keeps its own.
            for (const QByteArray parameter :
                 {"KeyParam2=0x05,0x00,0xCD", "KeyParam3=0x05,0x00", "KeyParam6=0x05,0x00,0x00,Ctrl+Shift+A"}) {
                const int line = content.indexOf(parameter.left(10));
                content.replace(line, content.indexOf('\n', line) - line, parameter);
            }
            return content;
        });
        const ProductCopy::Result result = copy.run(QTest::currentTestFunction());
        QVERIFY2(result.exitCode == 0, result.log.constData());
        return;
    }
    ButtonBench bench(0);
    FlashDataMap record = bench.held();
    for (const int slot : {1, 2, 4, 5}) {
        record.KeyFunctions[slot] = {6, std::uint8_t(slot), 1};
        record.KeySequences[slot].EventCount = 6;
        std::memcpy(record.MacroSlots[slot].Name, "Old", 3);
    }
    bench.hold(record);
    postMsg()->post(&PostMsg::SigDeleteMacroButton, QString("Macro: Old"));
    QCOMPARE(bench.menu(), QString("page page_9"));
    for (const auto &[row, slot, text, function, events] :
         {std::tuple("RightKey", 1, "Play/Pause", "050000", 2), std::tuple("BackKey", 2, "Macro: Old", "060201", 6),
          std::tuple("StartPause", 4, "Back button", "010800", 0),
          std::tuple("BackMusic", 5, "Ctrl+Shift+A", "050000", 6)}) {
        QCOMPARE(bench.button(row)->text(), QString(text));
        QCOMPARE(bytesOf(bench.held().KeyFunctions[slot]).toHex(), QByteArray(function));
        QCOMPARE(int(bench.held().KeySequences[slot].EventCount), events);
    }
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
    QVERIFY(profiles->currentText() == "Profile 1" && !profiles->isEnabled());
}

void ButtonPageTest::combinationsOfKeys()
{
    // Text, what its events are by action, kind and code, and what is read of them.
    const std::tuple<const char *, const char *, const char *> combinations[] = {
        {"Ctrl+C", "000001 000106 010106 010001", "Ctrl+C"},
        {"Shift+Ctrl+Num+", "000002 000001 000157 010157 010001 010002", "Shift+Ctrl+Num+"},
        {"Alt+Win", "000004 000008 010008 010004", "Alt+Win"},
        {"", "000100 010100", ""},
        {"Ctrl+Num++A", "000001 000157 000104 010104 010157 010001", "Ctrl+Num++A"},
        {"CTRL+backspace", "000001 00012a 01012a 010001", "Ctrl+BackSpace"},
        {"A+B+C+D", "000104 000105 000106 010106 010105 010104", "A+B+C"},
        {"LCtrl+none", "000100 000100 010100 010100", "+"},
        {"F7", "000140 010140", "Alt"}}; // the mouse's code 64 is the right Alt key
    for (const auto &[text, events, readBack] : combinations) {
        KeySequence sequence{};
        KeySequences::KeyCombinationToSequence(text, sequence);
        QByteArray made;
        for (int index = 0; index < sequence.EventCount; ++index) {
            const KeyEvent &event = sequence.Events[index];
            QCOMPARE(int(event.DelayMs), 10);
            for (const int part : {int(event.Action), int(event.Kind), int(event.Code)})
                made += char(part);
        }
        QCOMPARE(made.toHex(), QByteArray(events).replace(' ', ""));
        QCOMPARE(KeySequences::combinationText(sequence), QString(readBack));
    }
}

void ButtonPageTest::typedCombinations()
{
    using namespace Qt;
    // Boxes, keys with 0 for a pause, the line that shows, and what comes of it.
    const std::tuple<const char *, QList<int>, const char *, const char *> entries[] = {
        {"Ctrl", {Key_A, Key_B}, "A+B", "Ctrl+A+B"},
        {"Shift Ctrl Alt", {Key_A}, "A", "too many"}, // four in all
        {"Alt Ctrl Shift", {}, "", "Shift+Ctrl+Alt"}, // in their order
        {"", {}, "", ""},
        {"", {Key_A, Key_A, Key_B, Key_A}, "A+B", "A+B"},
        {"", {Key_A, Key_B, Key_C, Key_D}, "D", "D"}, // the fourth begins anew
        {"", {Key_F1, Key_F}, "F1", "F1"},            // part of a name
        {"Win", {Key_A, Key_B, 0, Key_B}, "B", "Win+B"},
        {"", {Key_Escape, Key_Return, Key_Tab}, "Esc+Enter+Tab", "Esc+Enter+Tab"},
        {"", {Key_Shift, Key_Control, Key_VolumeUp, Key_X}, "X", "X"},
        {"", {Key_Exclam, Key_F12}, "1+F12", "1+F12"}};
    const auto cutAgain = qScopeGuard([] { Wait::setScale(shortWaits); });
    for (const auto &[boxes, keys, line, result] : entries) {
        GroupKey dialog;
        auto *const edit = dialog.findChild<QLineEdit *>("lineEdit");
        QString shown;
        const bool isTooMany = result == QString("too many"); // which a prompt over the dialog says
        // A busy machine takes longer from key to key than a pause that is cut.
        Wait::setScale(keys.contains(0) ? shortWaits : 1.0);
        PromptDriver::execAnd(dialog, [&, &boxes = boxes, &keys = keys] {
            for (const QString &box : QString(boxes).split(' ', SkipEmptyParts))
                QTest::mouseClick(dialog.findChild<QCheckBox *>(box), LeftButton, {}, {8, 12});
            for (const int key : keys) {
                if (key == 0)
                    QTest::qWait(Wait::scaled(3000)); // two seconds are the limit
                else
                    Keys::click(&dialog, Qt::Key(key));
            }
            shown = edit->text();
            if (isTooMany)
                ButtonBench::inDialog([&dialog](QWidget *prompt) {
                    QTest::keyClick(prompt, Key_Return);
                    QTimer::singleShot(0, &dialog, [&dialog] { dialog.reject(); });
                });
            clickChild(&dialog, "NewHong");
        });
        QCOMPARE(shown, QString(line));
        QCOMPARE(isTooMany ? "too many" : dialog.keyText(), QString(result));
        QVERIFY(dialog.confirmed() != isTooMany && (!isTooMany || edit->text().isEmpty()));
    }
}

void ButtonPageTest::waysOutOfACombination()
{
    QLineEdit elsewhere;
    for (const char *button : {"NewHong", "NewHong_2", "CloseButton"}) {
        GroupKey dialog;
        PromptDriver::execAnd(dialog, [&] {
            for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F12, Qt::Key_Return})
                QTest::keyClick(&dialog, key); // three entries that are no way out
            QVERIFY(dialog.isVisible());
            Keys::click(&dialog, Qt::Key_Q);
            clickChild(&dialog, button);
        });
        QCOMPARE(dialog.confirmed(), button == QString("NewHong"));
        // The hook is gone: what is typed elsewhere is no entry.
        elsewhere.show();
        QVERIFY(QTest::qWaitForWindowActive(&elsewhere));
        Keys::click(&elsewhere, Qt::Key_W);
        QCOMPARE(dialog.findChild<QLineEdit *>("lineEdit")->text(), QString("Q"));
    }
    QCOMPARE(elsewhere.text(), QString("www"));
}

HALVARION_TEST_MAIN(ButtonPageTest)
#include "tst_buttonpage.moc"
