#include "macro/Macro.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "productdata/UserFolders.h"
#include "support/ConnectedMouse.h"
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

#include <csignal>
#include <vector>
#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <sys/resource.h>
#endif

namespace {

void clickIn(QWidget *window, const QString &name)
{
    QTest::mouseClick(window->findChild<QWidget *>(name), Qt::LeftButton);
}

void press(QWidget *window, int key) { Keys::press(window, Qt::Key(key)); }
void release(QWidget *window, int key) { Keys::release(window, Qt::Key(key)); }

/** While it lives these files can't be replaced: there is no room, on Windows others have them open. */
class Unwritable
{
public:
#ifdef Q_OS_WIN
    explicit Unwritable(const QStringList &paths)
    {
        for (const QString &path : paths)
            held += CreateFileW(QDir::toNativeSeparators(path).toStdWString().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    ~Unwritable()
    {
        for (const HANDLE each : qAsConst(held))
            CloseHandle(each);
    }

private:
    QVector<HANDLE> held;
#else
    explicit Unwritable(const QStringList &)
    {
        getrlimit(RLIMIT_FSIZE, &usual);
        const rlimit none{0, usual.rlim_max};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~Unwritable() { setrlimit(RLIMIT_FSIZE, &usual); }

private:
    rlimit usual{};
#endif
};

/** Asks the page to send a macro; again when a busy machine let the mouse's answer come too late. */
void send(const QString &name, int slot)
{
    QSignalSpy asleep(postMsg(), &PostMsg::SigMouseOffLineo);
    do {
        asleep.clear();
        postMsg()->post(&PostMsg::SigMacroDownLoadData, name, slot);
    } while (!asleep.isEmpty());
}

} // namespace

/** The macro page as a user works it, with its files and a mouse as the judges. */
class MacroPageTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void aMacroFromNewToFile();
    void names_data();
    void names();
    void edits_data();
    void edits();
    void amend();
    void seventyEventsAtMost();
    void repeatModes();
    void noRoom();
    void renameAndDelete();
    void contextMenu();
    void rightClickKeepsRows();
    void undo();
    void recording();
    void recordingKeepsWhatIsDown();
    void recordingStopsAtTheLimit();
    void exportAndImport();
    void savedRowsReachTheMouse();
    void readBack();
    void language();
    void timeLine();

private:
    template<typename Widget>
    Widget *find(const char *name) const
    {
        auto *widget = page->findChild<Widget *>(name);
        if (!widget)
            qFatal("no %s", name);
        return widget;
    }
    QListWidget *macros() const { return find<QListWidget>("listWidgetHong"); }
    QListWidget *list() const { return find<QListWidget>("listWidgetKey"); }
    bool isSaveable() const { return find<QToolButton>("Save")->isEnabled(); }
    void click(const char *name) const { clickIn(page.get(), name); }
    /** "A+ 10ms A-", from the texts and types of the items. */
    QString rows() const;
    QString macroNames() const;
    void select(const QString &name, Qt::MouseButton button = Qt::LeftButton) const;
    /** The macro with these rows, selected. */
    void given(const QString &name, const MacroRows &rows, int repeat = 1);
    void given(const QString &name, const char *text, int repeat = 1) { given(name, MacroText::rows(text), repeat); }
    void choose(int index) const { Q_EMIT find<QComboBox>("ChooseEvent")->activated(index); }
    /** What to do with the prompts that come next, in order; each is named in `prompts` when it shows. */
    void answer(std::function<void(QWidget *)> action) { answers += std::move(action); }
    void answerName(const QString &name);
    void answerKey(int key);
    bool eventFilter(QObject *object, QEvent *event) override;

    std::unique_ptr<Macro> page;
    QVector<std::function<void(QWidget *)>> answers;
    QStringList prompts;
};

void MacroPageTest::init()
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

void MacroPageTest::cleanup()
{
    qApp->removeEventFilter(this);
    QVERIFY(answers.isEmpty());
    page.reset();
    MacroRecording = false;
}

bool MacroPageTest::eventFilter(QObject *object, QEvent *event)
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

void MacroPageTest::answerName(const QString &name)
{
    answer([name](QWidget *prompt) {
        QTest::keyClicks(prompt->findChild<QLineEdit *>(), name);
        clickIn(prompt, "NewHong");
    });
}

void MacroPageTest::answerKey(int key)
{
    answer([key](QWidget *prompt) {
        press(prompt, key);
        release(prompt, key);
        clickIn(prompt, "NewHong");
    });
}

QString MacroPageTest::rows() const
{
    QStringList words;
    for (int at = 0; at < list()->count(); ++at) {
        const QListWidgetItem *item = list()->item(at);
        words += item->text() + (item->text().contains("ms") ? "" : item->type() == 0 ? "+" : "-");
    }
    return words.join(' ');
}

QString MacroPageTest::macroNames() const
{
    QStringList all;
    for (int at = 0; at < macros()->count(); ++at)
        all += macros()->item(at)->text();
    return all.join(' ');
}

void MacroPageTest::select(const QString &name, Qt::MouseButton button) const
{
    const QListWidgetItem *item = macros()->findItems(name, Qt::MatchExactly).value(0);
    QTest::mouseClick(macros()->viewport(), button, {}, macros()->visualItemRect(item).center());
}

void MacroPageTest::given(const QString &name, const MacroRows &content, int repeat)
{
    QVERIFY(MacroFile::write(name, {repeat, content}));
    if (macros()->findItems(name, Qt::MatchExactly).isEmpty())
        macros()->addItem(name);
    select(name);
    QCOMPARE(list()->count(), content.size());
}

void MacroPageTest::aMacroFromNewToFile()
{
    answerName("jump");
    click("NewHong");
    QCOMPARE(macroNames(), "jump");
    QVERIFY(MacroFile::exists("jump") && !MacroFile::read("jump")->repeat && !isSaveable());
    for (const int key : {Qt::Key_A, Qt::Key_Return}) { // Enter and Space are answers like any other key
        answerKey(key);
        choose(1);
    }
    choose(8);
    QCOMPARE(rows(), "A+ 10ms Enter+ 10ms " + MouseButtonNames::current().names[3] + "+ 10ms " +
                         MouseButtonNames::current().names[3] + "-");
    find<QCheckBox>("ReUntilLoose")->click();
    QSignalSpy told(postMsg(), &PostMsg::SigUpDataMacro);
    click("Save");
    QCOMPARE(told, (QList<QVariantList>{{"jump", 0}, {"jump", 1}}));
    QFile file(MacroFile::path("jump"));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text) && !isSaveable());
    QCOMPARE(file.readAll(), QByteArray("254\n0x04 1 0\n10ms\n0x28 1 0\n10ms\n0x08 4 0\n10ms\n0x08 4 1\n"));
}

void MacroPageTest::names_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("macros");
    QTest::addColumn<QString>("prompt"); // behind the question
    for (const QStringList &row : QVector<QStringList>{{"Jump", "Roll Jump", ""},
                                                       {"roLL", "Roll", "SameMacro"},
                                                       {"nul", "Roll", "SameMacro"},
                                                       {"../a*", "Roll", "SameMacro"}, // the name would be ..a
                                                       {"a/\\b|<>", "Roll ab", ""}})
        QTest::addRow("%s", qPrintable(row[0])) << row[0] << row[1] << row[2];
}

void MacroPageTest::names()
{
    QFETCH(QString, typed);
    QFETCH(QString, prompt);
    given("Roll", "A+");
    answerName(typed);
    if (!prompt.isEmpty())
        answer([](QWidget *same) { clickIn(same, "NewHong"); });
    click("NewHong");
    QTEST(macroNames(), "macros");
    QCOMPARE(prompts, prompt.isEmpty() ? QStringList("QuestionDialog") : QStringList({"QuestionDialog", prompt}));
    QCOMPARE(MacroFile::names().size(), macros()->count());
}

void MacroPageTest::edits_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("current");
    QTest::addColumn<QString>("edit"); ///< a key goes down, the left button as L, 300 ms, or what is chosen goes
    QTest::addColumn<QString>("after");
    const auto row = [](const char *before, int current, const char *edit, const char *after) {
        QTest::addRow("%s at %d of %s", edit, current, before) << before << current << edit << after;
    };
    const char five[] = "A+ 1ms A- 2ms C+";
    row("", -1, "B+", "B+");
    row("", -1, "L", "L+ 10ms L-");
    for (const int none : {-1, 4}) {
        row(five, none, "B+", "A+ 1ms A- 2ms C+ 10ms B+");
        row(five, none, "L", "A+ 1ms A- 2ms C+ 10ms L+ 10ms L-");
    }
    for (const int first : {0, 1}) {
        row(five, first, "B+", "A+ 1ms B+ 10ms A- 2ms C+");
        row(five, first, "L", "A+ 1ms L+ 10ms L- 10ms A- 2ms C+");
    }
    row(five, 2, "B+", "A+ 1ms A- 2ms B+ 10ms C+");
    row(five, 2, "L", "A+ 1ms A- 10ms L+ 10ms L- 2ms C+");
    for (const int before : {-1, 0})
        row("A+ 1ms A- C+", before, "300ms", "A+ 1ms A- C+");
    for (const int pause : {1, 2})
        row("A+ 1ms A- C+", pause, "300ms", "A+ 300ms A- C+");
    row("A+ 1ms A- C+", 3, "300ms", "A+ 1ms A- 300ms C+");
    row("A+ 1ms A-", -1, "Del", "");
    row(five, -1, "Del", five);
    row(five, 1, "Del", "A- 2ms C+");
    row(five, 2, "Del", "A+ 1ms C+");
    row(five, 4, "Del", "A+ 1ms A-");
    row("A+ B+ C+ D+", 1, "Del", "A+ C+ D+");
}

void MacroPageTest::edits()
{
    QFETCH(QString, before);
    QFETCH(int, current);
    QFETCH(QString, edit);
    QFETCH(QString, after);
    given("m", MacroText::rows(before));
    list()->setCurrentRow(current);
    list()->setFocus();
    if (edit == "B+") {
        answerKey(Qt::Key_B);
        choose(1);
    } else if (edit == "L") {
        choose(4);
    } else if (edit == "Del") {
        press(page.get(), Qt::Key_Delete);
    } else {
        answer([](QWidget *prompt) {
            prompt->findChild<QSpinBox *>()->setValue(300);
            clickIn(prompt, "NewHong");
        });
        choose(3);
    }
    QCOMPARE(rows().replace(MouseButtonNames::current().names[0], "L"), after);
    QCOMPARE(isSaveable(), before != after);
    QSignalSpy told(postMsg(), &PostMsg::SigUpDataMacro);
    click("Save");
    QCOMPARE(!told.isEmpty(), before != after && !after.isEmpty()); // an emptied list isn't told to the mouse
    QCOMPARE(MacroText::of(MacroFile::read("m")->rows).replace(MouseButtonNames::current().names[0], "L"), after);
}

void MacroPageTest::amend()
{
    given("m", "A+ 1ms A-");
    list()->setCurrentRow(2);
    for (const char *refusal : {"NewHong_2", "CloseButton"}) {
        answer([refusal](QWidget *prompt) {
            press(prompt, Qt::Key_Escape); // a key like others
            clickIn(prompt, refusal);
        });
        click("Amend");
    }
    QCOMPARE(rows(), "A+ 1ms A-");
    answerKey(Qt::Key_F5);
    click("Amend");
    list()->setCurrentRow(1);
    answer([](QWidget *prompt) { clickIn(prompt, "NewHong"); });
    click("Amend");
    QCOMPARE(rows(), "A+ 10ms F5-");
    answer([this](QWidget *prompt) { // the rows are another macro's when it returns
        given("other", "B+ 2ms B-");
        clickIn(prompt, "NewHong");
    });
    list()->setCurrentRow(1);
    click("Amend");
    QCOMPARE(rows(), "B+ 2ms B-");
    QCOMPARE(prompts.filter("addKey").size(), 3);
}

void MacroPageTest::seventyEventsAtMost()
{
    given("m", MacroText::many(69));
    choose(5);
    QCOMPARE(list()->count(), 137);
    answerKey(Qt::Key_B);
    choose(2);
    QCOMPARE(list()->count(), 139);
    answerKey(Qt::Key_B);
    choose(2);
    QCOMPARE(list()->count(), 139);
    QCOMPARE(prompts, QStringList({"KeyNumberLimit", "addKey", "addKey", "KeyNumberLimit"}));
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
    QTest::mouseClick(find<QWidget>("ReUntilLabel"), Qt::LeftButton); // its text counts as the box
    QFile(MacroFile::path("m")).resize(0);
    select("m");
    QVERIFY(find<QCheckBox>("ReUntil")->isChecked() && list()->count() == 0); // an empty file says nothing
}

void MacroPageTest::noRoom()
{
    given("m", "A+");
    const QString exported = QDir::home().filePath("m.bin");
    page->setAskPaths([&](const QString &) { return exported; }, {});
    page->ExPortMacro();
    const qint64 whole = QFileInfo(exported).size();
    choose(4);
    {
        const Unwritable unwritable({exported, MacroFile::path("m")});
        click("Save");
        page->ExPortMacro();
    }
    QVERIFY(whole > 0 && QFileInfo(exported).size() == whole);
    QVERIFY(MacroFile::read("m")->rows == MacroText::rows("A+") && isSaveable());
    click("Save");
    QVERIFY(MacroFile::read("m")->rows.size() == 5 && !isSaveable());
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
    list()->setCurrentRow(0);
    answerKey(Qt::Key_B);
    click("Amend");
    click("Save");
    QVERIFY(MacroFile::read("c")->rows == MacroText::rows("B+"));

    answer([](QWidget *prompt) { clickIn(prompt, "CloseButton"); });
    click("DeleteHong");
    QCOMPARE(macroNames(), "b c");
    answer([](QWidget *prompt) { clickIn(prompt, "NewHong"); });
    click("DeleteHong");
    QCOMPARE(deleted, (QList<QVariantList>{{"Macro: c"}}));
    QCOMPARE(macroNames(), "b");
    QCOMPARE(rows() + QString::number(macros()->currentRow()), "-1");
    click("DeleteHong"); // nothing is selected
    QCOMPARE(MacroFile::names(), QStringList("b"));
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
    answer([](QWidget *prompt) { clickIn(prompt, "NewHong"); });
    click("Amend");
    select("b", Qt::RightButton);
    QCOMPARE(macros()->currentItem()->text(), "b");
    QCOMPARE(rows(), "A+ 10ms A-");
    QVERIFY(isSaveable());
    click("Save");
    QVERIFY(MacroFile::read("a")->rows == MacroText::rows("A+ 10ms A-"));
    QVERIFY(MacroFile::read("b")->rows == MacroText::rows("B+"));
    // With nothing on show an insertion is meant for the macro that is selected, behind its own rows.
    answer([](QWidget *prompt) { clickIn(prompt, "NewHong"); });
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
    const auto takeBack = [this] { QTest::keyClick(page->windowHandle(), Qt::Key_Z, Qt::ControlModifier); };
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
    for (const int key : {Qt::Key_Space, Qt::Key_Tab, Qt::Key_Return, Qt::Key_Delete, Qt::Key_VolumeUp, Qt::Key_Z}) {
        press(window, key);
        press(window, key);
        release(window, key);
    }
    prompts.clear();
    for (const char *button : {"NewHong", "DeleteHong", "Amend", "DeleteKey", "Save"})
        click(button);
    QCOMPARE(prompts.filter("ExeIsRun").size(), 4 + int(isSaveable()));
    click("StopRecord");
    QCOMPARE(rows(),
             "Space+ 25ms Space- 25ms Tab+ 25ms Tab- 25ms Enter+ 25ms Enter- 25ms Del+ 25ms Del- 25ms Z+ 25ms Z-");
    QCOMPARE(told, (QList<QVariantList>{{0}, {1}}));
    QVERIFY(!MacroRecording && isSaveable() && find<QWidget>("DelayTime")->isVisible() && macros()->isEnabled());
    QVERIFY(MacroFile::read("m")->rows == MacroText::rows("A+ 1ms A-")); // until it is saved
    press(window, Qt::Key_Q);
    QCOMPARE(list()->count(), 19);
    list()->setFocus();
    QTest::keyClick(page->windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(rows(), "A+ 1ms A-");
}

void MacroPageTest::recordingKeepsWhatIsDown()
{
    given("m", "");
    find<QCheckBox>("DefaultDelay")->click();
    click("StartRecord");
    QWidget *const window = page.get();
    press(window, Qt::Key_A);
    press(window, Qt::Key_B);
    release(window, Qt::Key_A);
    release(window, Qt::Key_B);
    press(window, Qt::Key_B);
    press(window, Qt::Key_VolumeUp); // a pause, and then no key that a macro can hold
    postMsg()->post(&PostMsg::SigSetMacroPage);
    QVERIFY(!MacroRecording && find<QWidget>("StartRecord")->isVisible() && !isSaveable());
    QCOMPARE(rows().section(' ', 0, 8), "A+ 10ms B+ 10ms A- 10ms B- 10ms B+");
}

void MacroPageTest::recordingStopsAtTheLimit()
{
    given("m", "");
    click("StartRecord");
    answer([](QWidget *prompt) {
        press(prompt, Qt::Key_X);
        clickIn(prompt, "NewHong");
    });
    for (int event = 0; event < 90; ++event)
        event % 2 ? release(page.get(), Qt::Key_A) : press(page.get(), Qt::Key_A);
    QCOMPARE(prompts, QStringList("KeyNumberLimit"));
    QCOMPARE(list()->count(), 139);
    QVERIFY(!MacroRecording && find<QWidget>("StopRecord")->isVisible());
    click("StopRecord");
    click("Save");
    QCOMPARE(eventCount(MacroFile::read("m")->rows), 70);
}

void MacroPageTest::exportAndImport()
{
    given("七十", MacroText::many(70), 253);
    const auto ask = [](const QString &) { return QDir::home().filePath("out.ini"); };
    page->setAskPaths(ask, ask);
    page->ExPortMacro();
    page->InPortMacro();
    QCOMPARE(prompts, QStringList("SameMacro"));
    answer([](QWidget *prompt) { clickIn(prompt, "NewHong"); });
    click("DeleteHong");
    postMsg()->post(&PostMsg::SigChangeLanguage, 4); // the file has the English names of the buttons
    page->InPortMacro();
    QCOMPARE(macroNames(), "七十");
    QCOMPARE(macros()->currentRow(), 0);
    QVERIFY(MacroFile::read("七十")->rows == MacroText::many(70) && *MacroFile::read("七十")->repeat == 253);
    QCOMPARE(list()->count(), 139);
    QVERIFY(!list()->item(0)->icon().isNull() && !isSaveable());
    postMsg()->post(&PostMsg::SigChangeLanguage, 0);

    QFile file(ask({}));
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek(20);
    file.write("../abc");
    file.flush();
    page->InPortMacro(); // a name that is a path
    page->setAskPaths({}, [](const QString &) { return QString("/dev/zero"); });
    page->InPortMacro();
    QCOMPARE(macroNames(), "七十");
    QCOMPARE(MacroFile::names(), QStringList("七十"));
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
        send(name, 2);
    });
    const auto save = [&](const char *rows, const std::function<void()> &then) {
        given("m", rows);
        meanwhile = then;
        list()->setCurrentRow(-1);
        choose(4);
        click("Save");
        if (!ConnectedMouse::isWritten("q1"))
            qFatal("the mouse did not get it");
        return MacroText::of(MacroImage::rows(VirtualMice::record("q1").MacroSlots[2])).section(' ', 0, 0);
    };
    QCOMPARE(save("A+", [this] { click("StartRecord"); }), "A+");
    click("StopRecord");
    FlashDataMap older{};
    older.MacroSlots[2] = MacroImage::make("m", MacroText::rows("Z+"));
    QCOMPARE(save("B+", [&] { postMsg()->post(&PostMsg::SigButtonToMacro, older, 2); }), "B+");
    QCOMPARE(MacroText::of(MacroFile::read("m")->rows).section(' ', 0, 0), "B+");
    QCOMPARE(save("C+", [this] { given("other", "D+"); }), "B+");
    QCOMPARE(save("E+", [] { postMsg()->post(&PostMsg::SigSetMacroPage); }), "B+");
    answerName("renamed");
    QCOMPARE(save("F+", [this] { answers.isEmpty() ? void() : page->RenameMacro(); }), "F+");
    QCOMPARE(MacroImage::name(VirtualMice::record("q1").MacroSlots[2]), "renamed");
    disconnect(listening);
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
    QCOMPARE(macros()->currentRow(), -1);
    QCOMPARE(list()->count() + added.size(), 1);
    hold(1, "b", "D+", 250);
    QCOMPARE(MacroText::of(MacroFile::read("b")->rows), "D+");
    select("a");
    choose(4); // an edit that isn't saved
    const QString edited = rows();
    hold(2, "a", "E+", 3);
    QCOMPARE(rows(), edited);
    QVERIFY(isSaveable());
    hold(0, "new", "C+ 10ms C-", 254);
    select("a");
    QCOMPARE(rows(), "E+");
    hold(2, "a", "E+", 3); // nothing that this PC doesn't have
    QCOMPARE(rows(), "E+");
    std::vector<const char *> hostiles{"../../evil", "con", "B", "", "x/y"};
#ifndef Q_OS_WIN // where the user's code page may have letters of them
    hostiles.push_back("\xff\xfe");
#endif
    for (const char *hostile : hostiles) {
        record.MacroSlots[3] = MacroSlot{};
        std::memcpy(record.MacroSlots[3].Name, hostile, std::strlen(hostile));
        record.MacroSlots[3].EventCount = 255;
        postMsg()->post(&PostMsg::SigButtonToMacro, record, 3);
    }
    QCOMPARE(macroNames(), "b a new");
    QCOMPARE(MacroFile::names(), QStringList({"a", "b", "new"}));
    QCOMPARE(added.size(), 1);
}

void MacroPageTest::language()
{
    given("m", "");
    choose(4);
    postMsg()->post(&PostMsg::SigChangeLanguage, 1);
    QCOMPARE(rows(), "左键+ 10ms 左键-");
    QCOMPARE(find<QToolButton>("NewHong")->text() + find<QToolButton>("NewHong")->toolTip(), "新建宏");
    click("Save");
    QCOMPARE(MacroText::of(MacroFile::read("m")->rows), "左键+ 10ms 左键-");
    postMsg()->post(&PostMsg::SigChangeLanguage, 0);
    QCOMPARE(rows(), MouseButtonNames::current().names[0] + "+ 10ms " + MouseButtonNames::current().names[0] + "-");
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
    QCOMPARE(rowAt(0.5, 30), 2);  // nothing there
    const QImage warned = line->grab({96, 0, 200, 20}).toImage();
    given("n", "A+ 100ms LShift+ 50ms A- 850ms LShift-");
    QVERIFY(line->grab({96, 0, 200, 20}).toImage() != warned);
}

HALVARION_TEST_MAIN(MacroPageTest)
#include "tst_macropage.moc"
