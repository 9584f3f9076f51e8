#include "macro/Macro.h"
#include "macro/MacroExportFile.h"
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
#include <QDataStream>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QSpinBox>
#include <QToolButton>
#include <QtEndian>

namespace {

using Keys::press;
using Keys::release;

/** The rows of a macro's file; the left button of the mouse is "L". */
QString inFile(const QString &name)
{
    return MacroText::of(MacroFile::read(name)->rows).replace(MouseButtonNames::current().names[0], "L");
}

QString macroFolder(const QString &file = {}) { return UserFolders::path(UserFolders::Folder::MacroPage) + '/' + file; }

template<typename Value>
QByteArray streamed(const Value &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes;
}

} // namespace

/**
 * The macro page as a user works it, with its files and a mouse as the judges; and what a macro is in its four forms,
 * and becomes of damaged ones.
 */
class MacroPageTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        QDir(macroFolder()).removeRecursively();
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
    void keys();
    void fileOfText();
    void hugeFiles();
    void names();
    void lists();
    void image();
    void foreignExports();

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
    for (const char *taken : {"B", "nul", "../a*"}) { // the last one as ..a
        answerName(taken);
        click("NewHong");
    }
    answerName("a"); // the current one counts as well
    page->RenameMacro();
    QCOMPARE(prompts.filter("SameMacro").size(), 4);
    answerName("c/\\|<>");
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

    Files::put(ask({}), Files::content(ask({})).replace(20, 6, "../abc"));
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
    older.MacroSlots[3] = MacroImage::make("news", MacroText::rows("Z+")); // of another macro, in the same record
    QCOMPARE(save("I+", [&] { postMsg()->post(&PostMsg::SigButtonToMacro, older, 3); }), "I+");
    QCOMPARE(save("C+", [this] { given("other", "D+"); }), "I+");
    QCOMPARE(save("E+", [] { postMsg()->post(&PostMsg::SigSetMacroPage); }), "I+");
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
    QVERIFY(MacroText::of(MacroImage::rows(ConnectedMouse::settled("q1").MacroSlots[2])).startsWith("G+"));
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

// Macros without the page ---------------------------------------------------------------------------------------------

void MacroPageTest::keys()
{
    const QString left = MouseButtonNames::current().names[0], middle = MouseButtonNames::current().names[2];
    const std::pair<int, QString> names[] = {
        {32, "3,RShift,,"},       {4, "A,LAlt,," + middle},   {64, "F7,RAlt,F7,"}, {1, "LCtrl,LCtrl,LCtrl," + left},
        {128, "RWin,RWin,RWin,"}, {88, "Enter,Enter,Enter,"}, {5, "B,B,B,"},       {260, ",,,"}}; // isn't 4
    for (const auto &[code, expected] : names) {
        QStringList found;
        for (const int kind : {1, 0, 3, 4})
            found += KeyTable::name(KeyTable::findInMouse(code, kind));
        QCOMPARE(found.join(','), expected);
    }
    QStringList all;
    for (const int key : {48, 57, 65, 90, 112, 123, 96, 105, 192, 220, 12, 160, 165, 92, 46, 110, 11, 173, 255}) {
        const MacroKey *found = KeyTable::findVirtualKey(key);
        all += found ? KeyTable::name(*found) : QStringLiteral("none");
    }
    QCOMPARE(all.join(' '), QStringLiteral("0 9 A Z F1 F12 Num0 Num9 ` \\  LShift RAlt RWin Del Num. none none none"));
}

void MacroPageTest::fileOfText()
{
    const std::tuple<const char *, QByteArray, int, const char *> texts[] = {
        {"never saved", "", 0, ""},
        {"both line ends", "254\r\n0x2B 1 0\r\n10ms\n0x2B 1 1\n", 254, "Tab+ 10ms Tab-"},
        {"code and kind", "1\n0x01 0 0\n0x20 1 0\n0x20 0 1\n0x00 1 0\n0x01 1 0\n", 1, "LCtrl+ 3+ RShift- + +"},
        {"repeat too high", "251\n", 1, ""},
        {"repeat in words", "often 254\n", 1, ""},
        {"action untold", "253\n0x04 1 7\n5ms\n0x04 1 1", 253, "A? 5ms A?"},
        {"damaged lines", "1\n\n0x04 1\n0x04 1 0 0\nxyz\n-5ms\n0x2b 1 0\n\xff\xfe 1 0\n", 1, "0ms 0ms + +"},
        {"a long pause", "1\n0x04 1 0\n70000ms\n4294967295ms\n4294967296ms\n", 1, "A+ 70000ms 4294967295ms 0ms"}};
    for (const auto &[name, text, repeat, rows] : texts) { // a repeat of 0 is none
        Files::put(macroFolder("m.ini"), text);
        const std::optional<MacroContent> content = MacroFile::read("m");
        QVERIFY2(content && MacroImage::makeFromFile("m") && MacroText::of(content->rows) == rows, name);
        QCOMPARE(content->repeat.value_or(0), repeat);
        QCOMPARE(MacroImage::repeatCodeOfFile("m"), content->repeat.value_or(1));
    }
    QVERIFY(!MacroImage::makeFromFile("gone"));
}

void MacroPageTest::hugeFiles()
{
    const std::tuple<QByteArray, int, int> files[] = {{"0x04 1 0\n5ms\n", 50000, 139},
                                                      {QByteArray(1 << 20, 'x'), 100, 0},
                                                      {"\n", 4 << 20, 0},
                                                      {QByteArray(1 << 20, ' ') + "\n0x04 1 0\n", 1, 1}};
    for (const auto &[line, count, rows] : files) {
        Files::put(macroFolder("m.ini"), "1\n" + line.repeated(count));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(MacroFile::read("m")->rows.size(), rows);
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    }
}

void MacroPageTest::names()
{
    QStringList bad = {"",    ".",     "..",    "../x",   "a/b",  "a\\b",     "a:b",    "C:", "nul",
                       "con", "LPT9 ", "x.",    "x ",     ".x",   "a\nb",     "a*",     "a?", "a\"",
                       "a<b", "a|b",   "a\x7f", "Com1.x", "COM¹", "aux .txt", "CONOUT$"};
    bad << QString("a\0b").insert(1, QChar(0)) << QString(QChar(0xd83d)) << QString::fromUtf8("\xff\xfe");
    for (const QString &name : qAsConst(bad)) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no file can be made"));
        const bool isWritten = MacroFile::write(name, {1, MacroText::rows("A+")});
        QVERIFY2(!isWritten && !MacroFile::isFileName(name) && MacroFile::isTaken(name, {}) && !MacroFile::read(name),
                 qPrintable(name));
    }
    QCOMPARE(QDir(macroFolder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
    const QStringList good{"%s", "-rf", "a", "com10", "Console", "O'Neil & [x]", "x.ini", "~", "宏 1", "🙂"};
    for (const QString &name : good) {
        QVERIFY2(MacroFile::isFileName(name) && !MacroFile::isTaken(name, {"b"}), qPrintable(name));
        QVERIFY2(MacroFile::write(name, {1, MacroText::rows("A+")}) && MacroFile::read(name), qPrintable(name));
    }
    QCOMPARE(MacroFile::names().size(), good.size());
    QVERIFY(MacroFile::isTaken("a", {"A"})); // whatever the case
}

void MacroPageTest::lists()
{
    for (const char *file : {"b.ini", "A.ini", "xml1.ini", "zxml.ini", "c", "b.ini.abcDEF", "d.ini.abcDEF.ini"})
        Files::put(macroFolder(file), "1\n");
    QDir(macroFolder()).mkdir("folder.ini");
#ifdef Q_OS_WIN // has no links that a program follows by itself
    QDir(macroFolder()).mkdir("link.ini");
#else
    QFile::link("/etc/hostname", macroFolder("link.ini"));
#endif
    QCOMPARE(MacroFile::names(), QStringList({"A", "b", "c", "d.ini.abcDEF"}));
    QCOMPARE(MacroFile::names(MacroFile::XmlRule::SkipFirst), QStringList({"A", "b", "c", "d.ini.abcDEF", "zxml"}));
    QVERIFY(!MacroFile::read("link") && !MacroFile::read("folder") && !MacroFile::read("gone"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no file can be made|is not replaced"));
    QVERIFY(!MacroFile::write("link", {1, {}}));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("could not be renamed"));
    QVERIFY(!MacroFile::rename("A", "b") && !MacroFile::create("b"));
    QVERIFY(MacroFile::rename("A", "z") && MacroFile::remove("b") && MacroFile::create("b"));
    QVERIFY(!MacroFile::read("b")->repeat);
}

void MacroPageTest::image()
{
    const QString thirty = "abcdefghijklmnopqrstuvwxyz1234";
    MacroSlot made = MacroImage::make(thirty, {});
    QCOMPARE(MacroImage::name(made), thirty);
    MacroImage::setName(made, "宏宏宏宏宏宏宏宏宏a宏"); // the last one would be cut
    const int han = QString("宏").toLocal8Bit().size(); // three bytes; in a code page of Windows one or two
    QCOMPARE(int(made.NameLength), han == 3 ? 28 : 10 * han + 1);
    MacroImage::setName(made, "ab");
    QVERIFY(std::memcmp(made.Name, QByteArray(30, '\0').replace(0, 2, "ab").constData(), 30) == 0);
    QCOMPARE(int(MacroImage::make("x", MacroText::rows("A+ 5ms") + MacroText::many(200)).EventCount), 70);
}

void MacroPageTest::foreignExports()
{
    const auto text = [](const char *word) { return streamed(QString::fromUtf8(word)); };
    QPixmap picture(24, 24);
    picture.fill(Qt::red);
    const QByteArray a = text("A"), icon = streamed(QIcon(picture));
    const QByteArray none = streamed(QIcon());
    const QByteArray press("\0\0\0\2\x30\0", 6);
    const QByteArray delay = text("20ms") + none;
    const QByteArray good = a + icon + press + delay + a + none + QByteArray("\0\0\0\2\x31\0", 6);
    QByteArray chunk = icon;
    qToBigEndian<quint32>(0xfffffff0, chunk.data() + chunk.indexOf("IHDR") - 4);
    const std::tuple<const char *, int, QByteArray, const char *> exports[] = {
        {"whole", 3, good, "A+ 20ms A-"},
        {"count below zero", -1, good, ""},
        {"cut in a row", 3, good.chopped(1), "damaged"},
        {"unknown key, foreign mark", 1, text("Käse") + none + QByteArray("\0\0\0\2??", 6), "-"},
        {"text of 4 GB", 1, QByteArray("\xff\xff\xff\xfe", 4) + good, "damaged"},
        {"chunk of 4 GB", 3, a + chunk + press, "damaged"},
        {"engine of a plug-in", 3, a + text("svg") + QByteArray(64, '\0'), "damaged"},
        {"too many events", 200000, (a + none + press + delay).repeated(2000), "139"}};
    for (const auto &[name, count, rows, expected] : exports) {
        QByteArray content = MacroExportFile::write("x", 1, {}, {});
        qToBigEndian<qint32>(count, content.data() + content.size() - 4);
        const auto read = MacroExportFile::readRows(content + rows, {MouseButtonNames::current()});
        MacroRows found;
        for (const MacroExportFile::Row &row : read.value_or(QVector<MacroExportFile::Row>()))
            found += row.row;
        const QString words = !read              ? QStringLiteral("damaged")
                              : found.size() > 3 ? QString::number(found.size())
                                                 : MacroText::of(found);
        QVERIFY2(words == expected, name);
    }
}

HALVARION_TEST_MAIN(MacroPageTest)
#include "tst_macropage.moc"
