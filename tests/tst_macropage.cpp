#include "macro/Macro.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "productdata/UserFolders.h"
#include "support/Child.h"
#include "support/ConnectedMouse.h"
#include "support/Files.h"
#include "support/Keys.h"
#include "support/MacroText.h"
#include "support/TestHome.h"
#include "ui/Prompt.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QSpinBox>
#include <QToolButton>

namespace {

using Keys::press;
using Keys::release;

/** The rows of a macro's file; the left button of the mouse is "L". */
QString inFile(const QString &name)
{
    return MacroText::of(MacroFile::read(name)->rows).replace(MouseButtonNames::current().names[0], "L");
}

} // namespace

/** The macro page as a user works it, with its files and a mouse as the judges. */
class MacroPageTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        QDir(UserFolders::path(UserFolders::Folder::MacroPage)).removeRecursively();
        UserFolders::prepare();
        page = std::make_unique<Macro>();
        page->show();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        qApp->installEventFilter(this);
        answers.clear();
        prompts.clear();
    }
    void cleanup()
    {
        qApp->removeEventFilter(this);
        QVERIFY(answers.isEmpty());
        page.reset();
        MacroRecording = false;
    }
    void aMacroFromNewToFile();
    void names();
    void edits();
    void amendRefused();
    void seventyEventsAtMost();
    void repeatModes();
    void failedSave();
    void renameAndDelete();
    void contextMenu();
    void rightClickKeepsRows();
    void undo();
    void recording();
    void exportAndImport();
    void savedRowsReachTheMouse();
    void readBack();
    void timeLine();

private:
    template<typename Widget>
    Widget *find(const char *name) const
    {
        return childOf<Widget>(page.get(), name);
    }
    QListWidget *macros() const { return find<QListWidget>("listWidgetHong"); }
    QListWidget *list() const { return find<QListWidget>("listWidgetKey"); }
    bool isSaveable() const { return find<QToolButton>("Save")->isEnabled(); }
    void click(const char *name) const { clickChild(page.get(), name); }
    /** As inFile(), from the texts and types of the items. */
    QString rows() const
    {
        QStringList words;
        for (int at = 0; at < list()->count(); ++at) {
            const QListWidgetItem *item = list()->item(at);
            words += item->text() + (item->text().contains("ms") ? "" : item->type() == 0 ? "+" : "-");
        }
        return words.join(' ').replace(MouseButtonNames::current().names[0], "L");
    }
    QString macroNames() const
    {
        QStringList all;
        for (int at = 0; at < macros()->count(); ++at)
            all += macros()->item(at)->text();
        return all.join(' ');
    }
    void select(const QString &name, Qt::MouseButton button = Qt::LeftButton) const
    {
        const QListWidgetItem *item = macros()->findItems(name, Qt::MatchExactly).value(0);
        QTest::mouseClick(macros()->viewport(), button, {}, macros()->visualItemRect(item).center());
    }
    /** The macro with these rows, selected. */
    void given(const QString &name, const MacroRows &content, int repeat = 1)
    {
        QVERIFY(MacroFile::write(name, {repeat, content}));
        if (macros()->findItems(name, Qt::MatchExactly).isEmpty())
            macros()->addItem(name);
        select(name);
        QCOMPARE(list()->count(), content.size());
    }
    void given(const QString &name, const QString &text, int repeat = 1) { given(name, MacroText::rows(text), repeat); }
    void choose(int index) const { Q_EMIT find<QComboBox>("ChooseEvent")->activated(index); }
    void takeBack() const { QTest::keyClick(page->windowHandle(), Qt::Key_Z, Qt::ControlModifier); }
    /**
     * What a user enters into the prompts that come next, in order, and the button that follows. Each prompt is named
     * in `prompts` when it shows; one that nobody has an answer for is closed.
     */
    void answer(const std::function<void(QWidget *prompt)> &enter = {}, const char *button = "NewHong")
    {
        answers += [enter, button](QWidget *prompt) {
            if (enter)
                enter(prompt);
            clickChild(prompt, button);
        };
    }
    void answerName(const QString &name)
    {
        answer([name](QWidget *prompt) { QTest::keyClicks(prompt->findChild<QLineEdit *>(), name); });
    }
    void answerKey(Qt::Key key)
    {
        answer([key](QWidget *prompt) { Keys::click(prompt, key); });
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *prompt = qobject_cast<Prompt *>(object);
        if (event->type() == QEvent::Show && prompt) {
            prompts += prompt->metaObject()->className();
            const auto action = answers.isEmpty() ? [](QWidget *shown) { shown->close(); } : answers.takeFirst();
            QTimer::singleShot(0, prompt, [prompt, action] {
                if (QTest::qWaitForWindowActive(prompt))
                    action(prompt);
            });
        }
        return false;
    }

    std::unique_ptr<Macro> page;
    QVector<std::function<void(QWidget *)>> answers;
    QStringList prompts;
};

void MacroPageTest::aMacroFromNewToFile()
{
    answerName("jump");
    click("NewHong");
    QCOMPARE(macroNames(), "jump");
    QVERIFY(MacroFile::exists("jump") && !MacroFile::read("jump")->repeat && !isSaveable());
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Return}) { // Enter and Space are answers like any other key
        answerKey(key);
        choose(1);
    }
    choose(8);
    postMsg()->post(&PostMsg::SigChangeLanguage, 1); // what is on show stays savable in other words
    QCOMPARE(rows(), "A+ 10ms Enter+ 10ms 后退键+ 10ms 后退键-");
    QCOMPARE(find<QToolButton>("NewHong")->text() + find<QToolButton>("NewHong")->toolTip(), "新建宏");
    find<QCheckBox>("ReUntilLoose")->click();
    QSignalSpy told(postMsg(), &PostMsg::SigUpDataMacro);
    click("Save");
    QCOMPARE(told, (QList<QVariantList>{{"jump", 0}, {"jump", 1}}));
    QVERIFY(!isSaveable());
    QCOMPARE(Files::content(MacroFile::path("jump")).replace("\r\n", "\n"),
             QByteArray("254\n0x04 1 0\n10ms\n0x28 1 0\n10ms\n0x08 4 0\n10ms\n0x08 4 1\n"));
}

void MacroPageTest::names()
{
    given("Roll", "A+");
    for (const char *taken : {"roLL", "nul", "../a*"}) { // the last one as ..a
        answerName(taken);
        answer();
        click("NewHong");
    }
    QVERIFY(prompts.filter("SameMacro").size() == 3 && macroNames() == "Roll");
    answerName("a/\\b|<>");
    click("NewHong");
    QCOMPARE(macroNames(), "Roll ab");
    QCOMPARE(MacroFile::names(), QStringList({"ab", "Roll"}));
}

void MacroPageTest::edits()
{
    const char five[] = "A+ 1ms A- 2ms C+";
    const char three[] = "A+ 1ms A- C+";
    // Rows, the current one or several that are the same, an insertion with the left button as L, and the rows after
    // it; F5 takes the place of the row, Del removes it.
    const std::tuple<const char *, QList<int>, QString, QString> edits[] = {
        {"", {-1}, "B+", "B+"},
        {"", {-1}, "L", "L+ 10ms L-"},
        {five, {-1, 4}, "B+", "A+ 1ms A- 2ms C+ 10ms B+"},
        {five, {-1, 4}, "L", "A+ 1ms A- 2ms C+ 10ms L+ 10ms L-"},
        {five, {0, 1}, "B+", "A+ 1ms B+ 10ms A- 2ms C+"},
        {five, {0, 1}, "L", "A+ 1ms L+ 10ms L- 10ms A- 2ms C+"},
        {five, {2}, "B+", "A+ 1ms A- 2ms B+ 10ms C+"},
        {five, {2}, "L", "A+ 1ms A- 10ms L+ 10ms L- 2ms C+"},
        {three, {-1, 0}, "300ms", three},
        {three, {1, 2}, "300ms", "A+ 300ms A- C+"},
        {three, {3}, "300ms", "A+ 1ms A- 300ms C+"},
        {"A+ 1ms A-", {2}, "F5", "A+ 1ms F5-"},
        {"A+ 1ms A-", {-1}, "Del", ""},
        {five, {-1}, "Del", five},
        {five, {1}, "Del", "A- 2ms C+"},
        {five, {2}, "Del", "A+ 1ms C+"},
        {five, {4}, "Del", "A+ 1ms A-"},
        {"A+ B+ C+ D+", {1}, "Del", "A+ C+ D+"}};
    for (const auto &[before, currentRows, edit, after] : edits) {
        for (const int current : currentRows) {
            cleanup();
            init(); // a page of its own
            given("m", before);
            list()->setCurrentRow(current);
            list()->setFocus();
            if (edit == "B+" || edit == "F5") {
                answerKey(edit == "B+" ? Qt::Key_B : Qt::Key_F5);
                edit == "B+" ? choose(1) : click("Amend");
            } else if (edit == "L") {
                choose(4);
            } else if (edit == "Del") {
                press(page.get(), Qt::Key_Delete);
            } else {
                answer([](QWidget *prompt) { prompt->findChild<QSpinBox *>()->setValue(300); });
                choose(3);
            }
            const bool isChange = before != after;
            const QString name = QString("%1 at %2 of %3: ").arg(edit).arg(current).arg(before);
            QCOMPARE(name + rows(), name + after);
            QVERIFY2(isSaveable() == isChange, qPrintable(name));
            QSignalSpy told(postMsg(), &PostMsg::SigUpDataMacro);
            click("Save");
            // An emptied list isn't told to the mouse.
            QVERIFY2(told.isEmpty() == (!isChange || after.isEmpty()), qPrintable(name));
            QCOMPARE(name + inFile("m"), name + after);
        }
    }
}

void MacroPageTest::amendRefused()
{
    given("m", "A+ 1ms A-");
    list()->setCurrentRow(2);
    for (const char *refusal : {"NewHong_2", "CloseButton"}) {
        answer([](QWidget *prompt) { press(prompt, Qt::Key_Escape); }, refusal); // a key like others
        click("Amend");
    }
    QCOMPARE(rows(), "A+ 1ms A-");
    answer([this](QWidget *) { given("other", "B+ 2ms B-"); }); // the rows are another macro's when it returns
    list()->setCurrentRow(1);
    click("Amend");
    QCOMPARE(rows(), "B+ 2ms B-");
    QCOMPARE(prompts, QStringList({"addKey", "addKey", "AddDelayTime"}));
}

void MacroPageTest::seventyEventsAtMost()
{
    given("m", "");
    click("StartRecord");
    answer([](QWidget *prompt) { press(prompt, Qt::Key_X); });
    for (int event = 0; event < 90; ++event)
        event % 2 ? release(page.get(), Qt::Key_A) : press(page.get(), Qt::Key_A);
    QVERIFY(!MacroRecording && find<QWidget>("StopRecord")->isVisible());
    click("StopRecord");
    click("Save");
    QCOMPARE(eventCount(MacroFile::read("m")->rows), 70);
    list()->setCurrentRow(138);
    click("DeleteKey");
    choose(5);
    QCOMPARE(list()->count(), 137);
    for (int attempt = 0; attempt < 2; ++attempt) {
        answerKey(Qt::Key_B);
        choose(2);
        QCOMPARE(list()->count(), 139);
    }
    QCOMPARE(prompts, QStringList({"KeyNumberLimit", "KeyNumberLimit", "addKey", "addKey", "KeyNumberLimit"}));
}

void MacroPageTest::repeatModes()
{
    for (const int code : {1, 250, 253, 254, 255}) {
        given("m", "A+", code);
        given("other", "A+", 7);
        select("m");
        find<QSpinBox>("NumberEdit")->setValue(code % 250 + 1);
        QVERIFY(isSaveable());
        click("Save");
        QCOMPARE(*MacroFile::read("m")->repeat, code <= 250 ? code % 250 + 1 : code);
    }
    click("ReUntilLabel"); // its text counts as the box
    QFile(MacroFile::path("m")).resize(0);
    select("m");
    QVERIFY(find<QCheckBox>("ReUntil")->isChecked() && list()->count() == 0); // an empty file says nothing
}

void MacroPageTest::failedSave()
{
    const QString name(249, 'n'); // which leaves no room for the name of the file that replaces it
    Files::put(MacroFile::path(name), "1\n0x04 1 0\n");
    macros()->addItem(name);
    select(name);
    choose(4);
    click("Save");
    QVERIFY(inFile(name) == "A+" && isSaveable());
}

void MacroPageTest::renameAndDelete()
{
    given("b", "B+");
    given("a", "A+");
    QSignalSpy renamed(postMsg(), &PostMsg::SigMacroRename);
    QSignalSpy deleted(postMsg(), &PostMsg::SigDeleteMacroButton);
    answerName("a"); // the current one counts as well
    page->RenameMacro();
    answerName("c");
    page->RenameMacro();
    QCOMPARE(renamed, (QList<QVariantList>{{"a", "c"}}));
    QCOMPARE(MacroFile::names(), QStringList({"b", "c"}));
    answer({}, "CloseButton");
    click("DeleteHong");
    QCOMPARE(macroNames(), "b c");
    answer();
    click("DeleteHong");
    QCOMPARE(deleted, (QList<QVariantList>{{"Macro: c"}}));
    QVERIFY(macroNames() == "b" && list()->count() == 0 && macros()->currentRow() == -1);
    for (const char *button : {"DeleteHong", "Amend", "DeleteKey"}) // nothing is selected
        QVERIFY(!find<QToolButton>(button)->isEnabled());
}

void MacroPageTest::contextMenu()
{
    given("m", "A+");
    page->setAskPaths([this](const QString &name) { return prompts += "export " + name, QString(); },
                      [this](const QString &) { return prompts += "import", QString(); });
    const QPoint overRow = macros()->visualItemRect(macros()->item(0)).center();
    for (const auto &[place, entries] : {std::pair(overRow, 3), std::pair(overRow + QPoint(0, 200), 2)}) {
        for (int entry = 0; entry < entries; ++entry) {
            Q_EMIT macros()->customContextMenuRequested(place);
            const QPointer<QWidget> menu = QApplication::activePopupWidget();
            QVERIFY(menu && menu->actions().size() == entries);
            for (int step = 0; step <= entry; ++step)
                QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
            QVERIFY(menu); // Qt looks at it behind the event loop of the prompt
        }
    }
    QCOMPARE(prompts, QStringList({"export m", "QuestionDialog", "DeleteConfirm", "QuestionDialog", "import"}));
}

void MacroPageTest::rightClickKeepsRows()
{
    given("b", "B+");
    given("a", "A+ 1ms A-");
    list()->setCurrentRow(1);
    answer();
    click("Amend");
    select("b", Qt::RightButton);
    QVERIFY(macros()->currentItem()->text() == "b" && rows() == "A+ 10ms A-" && isSaveable());
    click("Save");
    QVERIFY(inFile("a") == "A+ 10ms A-" && inFile("b") == "B+");
    // With nothing on show an insertion is meant for the macro that is selected, behind its own rows.
    answer();
    click("DeleteHong");
    select("a", Qt::RightButton);
    choose(4);
    QVERIFY(rows().startsWith("A+ 10ms A- 10ms "));
    QFile::remove(MacroFile::path("a"));
    click("Save");
    QVERIFY(!MacroFile::exists("a")); // what was deleted doesn't come back
}

void MacroPageTest::undo()
{
    given("m", "A+ 1ms A-");
    QStringList states;
    for (int edit = 0; edit < 60; ++edit) {
        states += rows();
        list()->setCurrentRow(0);
        edit % 3 == 2 ? click("DeleteKey") : choose(4);
    }
    list()->setFocus();
    for (; !states.isEmpty(); states.removeLast()) {
        takeBack();
        QCOMPARE(rows(), states.last());
    }
    takeBack();
    QVERIFY(isSaveable() && prompts.isEmpty());
    given("other", "B+");
    takeBack();
    QCOMPARE(rows(), "B+"); // the edits were another macro's
}

void MacroPageTest::recording()
{
    click("StartRecord");
    QCOMPARE(prompts, QStringList("ExeIsRun"));
    given("m", "A+ 1ms A-");
    QSignalSpy told(postMsg(), &PostMsg::SigStartRecord);
    find<QCheckBox>("DefaultDelay")->click();
    find<QSpinBox>("DelayTime")->setValue(25);
    click("StartRecord");
    QVERIFY(MacroRecording && list()->count() == 0 && !find<QWidget>("DelayTime")->isVisible());
    QWidget *const window = page.get();
    for (const Qt::Key key :
         {Qt::Key_Space, Qt::Key_Tab, Qt::Key_Return, Qt::Key_Delete, Qt::Key_VolumeUp, Qt::Key_Z}) {
        press(window, key);
        press(window, key);
        release(window, key);
    }
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_B}) // both are down, and the second one again
        press(window, key);
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_B})
        release(window, key);
    press(window, Qt::Key_B);
    press(window, Qt::Key_VolumeUp); // a pause, and then no key that a macro can hold
    prompts.clear();
    for (const char *button : {"NewHong", "DeleteHong", "Amend", "DeleteKey", "Save"})
        click(button);
    QCOMPARE(prompts.filter("ExeIsRun").size(), 4 + int(isSaveable()));
    click("StopRecord");
    QCOMPARE(rows().remove("25ms "), "Space+ Space- Tab+ Tab- Enter+ Enter- Del+ Del- Z+ Z- A+ B+ A- B- B+");
    QCOMPARE(list()->count(), 29);
    QCOMPARE(told, (QList<QVariantList>{{0}, {1}}));
    QVERIFY(!MacroRecording && isSaveable() && find<QWidget>("DelayTime")->isVisible() && macros()->isEnabled());
    QCOMPARE(inFile("m"), "A+ 1ms A-"); // until it is saved
    press(window, Qt::Key_Q);
    QCOMPARE(list()->count(), 29);
    list()->setFocus();
    takeBack();
    QCOMPARE(rows(), "A+ 1ms A-");
    click("StartRecord");
    postMsg()->post(&PostMsg::SigSetMacroPage);
    QVERIFY(!MacroRecording && find<QWidget>("StartRecord")->isVisible() && !isSaveable());
}

void MacroPageTest::exportAndImport()
{
    given("七十", MacroText::many(70), 253);
    const auto ask = [](const QString &) { return QDir::home().filePath("out.ini"); };
    page->setAskPaths(ask, ask);
    page->ExPortMacro();
    page->InPortMacro();
    QCOMPARE(prompts, QStringList("SameMacro"));
    answer();
    click("DeleteHong");
    postMsg()->post(&PostMsg::SigChangeLanguage, 4); // the file has the English names of the buttons
    page->InPortMacro();
    QVERIFY(macroNames() == "七十" && macros()->currentRow() == 0);
    QVERIFY(MacroFile::read("七十")->rows == MacroText::many(70) && *MacroFile::read("七十")->repeat == 253);
    QCOMPARE(list()->count(), 139);
    QVERIFY(!list()->item(0)->icon().isNull() && !isSaveable());

    QFile file(ask({}));
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek(20);
    file.write("../abc");
    file.flush();
    page->InPortMacro(); // a name that is a path
    QVERIFY(macroNames() == "七十" && MacroFile::names() == QStringList("七十"));
}

void MacroPageTest::savedRowsReachTheMouse()
{
    VirtualMice::restoreScene();
    ConnectedMouse::select(0);
    QVERIFY(ConnectedMouse::read(false));
    // The listener waits, as the button page does, and the user goes on.
    std::function<void()> meanwhile;
    const auto listening = connect(postMsg(), &PostMsg::SigUpDataMacro, page.get(), [&](const QString &name, int) {
        meanwhile();
        ConnectedMouse::untilAnswered([&name] { postMsg()->post(&PostMsg::SigMacroDownLoadData, name, 2); });
    });
    const auto save = [&](const char *rows, const std::function<void()> &then) {
        given("m", rows);
        meanwhile = then;
        list()->setCurrentRow(-1);
        choose(4);
        click("Save");
        return MacroText::of(MacroImage::rows(ConnectedMouse::settled("q1").MacroSlots[2])).section(' ', 0, 0);
    };
    QCOMPARE(save("A+", [this] { click("StartRecord"); }), "A+");
    click("StopRecord");
    FlashDataMap older{};
    older.MacroSlots[2] = MacroImage::make("m", MacroText::rows("Z+"));
    QCOMPARE(save("B+", [&] { postMsg()->post(&PostMsg::SigButtonToMacro, older, 2); }), "B+");
    QCOMPARE(inFile("m").section(' ', 0, 0), "B+");
    QCOMPARE(save("C+", [this] { given("other", "D+"); }), "B+");
    QCOMPARE(save("E+", [] { postMsg()->post(&PostMsg::SigSetMacroPage); }), "B+");
    answerName("renamed");
    QCOMPARE(save("F+", [this] { answers.isEmpty() ? void() : page->RenameMacro(); }), "F+");
    QCOMPARE(MacroImage::name(VirtualMice::record("q1").MacroSlots[2]), "renamed");
    disconnect(listening);
    // One that sleeps takes nothing, and tells the older rows when it wakes: what is on show is still to be saved.
    connect(postMsg(), &PostMsg::SigUpDataMacro, page.get(),
            [](const QString &name, int) { postMsg()->post(&PostMsg::SigMacroDownLoadData, name, 2); });
    VirtualMice::tell({"sleep", "q1"});
    given("renamed", "G+");
    choose(4);
    click("Save");
    postMsg()->post(&PostMsg::SigButtonToMacro, VirtualMice::record("q1"), 2);
    QVERIFY(inFile("renamed").startsWith("F+") && isSaveable());
    VirtualMice::tell({"wake", "q1"});
    ConnectedMouse::untilAnswered([this] { click("Save"); });
    QCOMPARE(MacroText::of(MacroImage::rows(ConnectedMouse::settled("q1").MacroSlots[2])).section(' ', 0, 0), "G+");
    QVERIFY(inFile("renamed").startsWith("G+") && !isSaveable());
    ConnectedMouse::forget();
}

void MacroPageTest::readBack()
{
    FlashDataMap record{};
    const auto hold = [&record](int slot, const QString &name, const QString &rows, std::uint8_t repeat) {
        record.MacroSlots[slot] = MacroImage::make(name, MacroText::rows(rows));
        record.KeyFunctions[slot] = {6, std::uint8_t(slot), repeat};
        postMsg()->post(&PostMsg::SigButtonToMacro, record, slot);
    };
    QSignalSpy added(postMsg(), &PostMsg::SigAddMacroButton);
    given("b", "B+");
    given("a", "A+", 5);
    hold(0, "new", "C+ 10ms C-", 254);
    QCOMPARE(macroNames(), "b a new");
    QVERIFY(macros()->currentRow() == -1 && list()->count() == 0 && added.size() == 1);
    hold(1, "b", "D+", 250);
    QCOMPARE(inFile("b"), "D+");
    select("a");
    choose(4); // an edit that isn't saved
    const QString edited = rows();
    hold(2, "a", "E+", 3);
    QVERIFY(rows() == edited && isSaveable());
    hold(0, "new", "C+ 10ms C-", 254);
    select("a");
    QCOMPARE(rows(), "E+");
    hold(2, "a", "E+", 3); // nothing that this PC doesn't have
    QCOMPARE(rows(), "E+");
    for (const char *hostile : {"../../evil", "B", ""}) {
        record.MacroSlots[3] = MacroSlot{};
        std::memcpy(record.MacroSlots[3].Name, hostile, std::strlen(hostile));
        record.MacroSlots[3].EventCount = 255;
        postMsg()->post(&PostMsg::SigButtonToMacro, record, 3);
    }
    QVERIFY(macroNames() == "b a new" && MacroFile::names().size() == 3 && added.size() == 1);
}

void MacroPageTest::timeLine()
{
    given("m", "A+ 100ms LShift+ 50ms A- 850ms B+");
    QWidget *const line = find<QWidget>("timeLine");
    const auto rowAt = [=](double part, int y) {
        QTest::mouseClick(line, Qt::LeftButton, {}, QPoint(int(part * (line->width() - 2)), y));
        return list()->currentRow();
    };
    QCOMPARE(rowAt(0.07, 30), 0); // A, to 150 of 1000 ms
    QCOMPARE(rowAt(0.5, 60), 2);  // the key that is never let go, in the second lane
    const QImage warned = line->grab({96, 0, 200, 20}).toImage();
    given("n", "A+ 100ms LShift+ 50ms A- 850ms LShift-");
    QVERIFY(line->grab({96, 0, 200, 20}).toImage() != warned);
}

HALVARION_TEST_MAIN(MacroPageTest)
#include "tst_macropage.moc"
