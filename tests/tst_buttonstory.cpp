#include "macro/MacroFile.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "ui/Prompt.h"

#include <QListWidget>

#include <memory>

/** A macro through the whole program: two pages, its file, and the mouse that plays it. */
class ButtonStoryTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void macroFromPageToMouseAndBack();

private:
    bool startAndConnect();
    void answer(const char *prompt, const QString &text = {});
    void selectMacro(const QString &name);
    void chooseEvent(int index) { Q_EMIT program->find<QComboBox>("ChooseEvent")->activated(index); }
    QString backText() const { return program->find<QToolButton>("BackKey")->text(); }
    QStringList shownMacros() const
    {
        QStringList names;
        const auto buttons = program->find("MacroListWidget")->findChildren<QToolButton *>();
        for (const QToolButton *button : buttons) {
            if (!button->isHidden())
                names << button->text();
        }
        return names;
    }
    static int heldEvents() { return VirtualMice::record("q1").MacroSlots[2].EventCount; }
    static QByteArray heldName() { return VirtualMice::record("q1").MacroSlots[2].Name; }
    static int heldType() { return VirtualMice::record("q1").KeyFunctions[2].KeyType; }

    std::unique_ptr<Program> program;
};

/** Starts the program and opens the Q1. A busy machine can keep a device from answering the scan in its time. */
bool ButtonStoryTest::startAndConnect()
{
    for (int tries = 0; tries < 5; ++tries) {
        program.reset();
        program = std::make_unique<Program>();
        if (program->connectMouse("q1"))
            return true;
    }
    return false;
}

/** What to do with the prompt of this class that comes next: give it a text, if there is one, and confirm. */
void ButtonStoryTest::answer(const char *prompt, const QString &text)
{
    program->whenShown(prompt, [prompt, text] {
        Prompt *const shown = Program::prompt(prompt);
        if (shown && !text.isEmpty())
            shown->findChild<QLineEdit *>()->setText(text);
        Program::clickIn(prompt, "NewHong");
    });
}

void ButtonStoryTest::selectMacro(const QString &name)
{
    auto *const list = program->find<QListWidget>("listWidgetHong");
    QListWidgetItem *const item = list->findItems(name, Qt::MatchExactly).value(0);
    QVERIFY(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
}

void ButtonStoryTest::macroFromPageToMouseAndBack()
{
    VirtualMice::restoreScene();
    QVERIFY(startAndConnect());
    // Made and saved on its page, and chosen on the button page: the mouse plays it.
    program->click("MacroButton");
    answer("QuestionDialog", "Jump");
    program->click("NewHong");
    chooseEvent(5);
    program->click("Save");
    program->click("ButtonMain");
    program->click("BackKey");
    program->click("DPI_10");
    program->window()->findChild<QWidget *>("MacroListWidget")->findChild<QToolButton *>()->click();
    QCOMPARE(backText(), QString("Macro: Jump"));
    QTRY_COMPARE(heldEvents(), 2);
    QVERIFY(VirtualMice::tell({"press", "q1", "2"}).contains("\"code\":2"));

    // Changed, it follows; renamed, it is renamed in the mouse.
    program->click("MacroButton");
    selectMacro("Jump");
    chooseEvent(4);
    program->click("Save");
    QTRY_COMPARE(heldEvents(), 4);
    answer("QuestionDialog", "Leap");
    QVERIFY(QMetaObject::invokeMethod(program->find("Macro"), "RenameMacro"));
    QTRY_COMPARE(heldName(), QByteArray("Leap"));
    QCOMPARE(backText(), QString("Macro: Leap"));

    // On another PC it comes out of the mouse as a file and stands in both lists.
    program.reset();
    QVERIFY(MacroFile::remove("Leap"));
    QVERIFY(startAndConnect());
    QTRY_COMPARE(backText(), QString("Macro: Leap"));
    QCOMPARE(MacroFile::read("Leap")->rows.size(), 7);
    QCOMPARE(shownMacros(), QStringList("Leap"));
    program->click("MacroButton");
    selectMacro("Leap");

    // Deleted, it leaves the button to its own function.
    answer("DeleteConfirm");
    program->click("DeleteHong");
    QTRY_COMPARE(heldType(), 1);
    QCOMPARE(backText(), QString("Middle button"));
    program->click("ButtonMain");
    QCOMPARE(shownMacros(), QStringList());
}

HALVARION_TEST_MAIN(ButtonStoryTest)
#include "tst_buttonstory.moc"
