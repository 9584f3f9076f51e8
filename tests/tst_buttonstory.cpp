#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "support/MacroText.h"
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
    void macroFromMouseToBothPages();

private:
    QString backText() const { return program->find<QToolButton>("BackKey")->text(); }
    static FlashDataMap held() { return VirtualMice::record("q1"); }

    std::unique_ptr<Program> program;
};

void ButtonStoryTest::macroFromMouseToBothPages()
{
    VirtualMice::restoreScene();
    // A mouse from another PC: its macro becomes a file, which is in the list.
    FlashDataMap foreign = held();
    foreign.KeyFunctions[2] = {6, 2, 1};
    foreign.MacroSlots[2] = MacroImage::make("Jump", MacroText::rows("A+ 10ms A-"));
    VirtualMice::flash("q1", foreign);
    // A busy machine can keep a device from answering the scan in its time.
    for (int tries = 0; !program || (tries < 5 && !program->connectMouse("q1")); ++tries) {
        program.reset();
        program = std::make_unique<Program>();
    }
    QTRY_COMPARE(backText(), QString("Macro: Jump"));
    QCOMPARE(MacroText::of(MacroFile::read("Jump")->rows), QString("A+ 10ms A-"));

    // Changed, the button follows; renamed, it is renamed in the mouse.
    program->click("MacroButton");
    auto *const macros = program->find<QListWidget>("listWidgetHong");
    QTest::mouseClick(macros->viewport(), Qt::LeftButton, {}, macros->visualItemRect(macros->item(0)).center());
    Q_EMIT program->find<QComboBox>("ChooseEvent")->activated(5);
    program->click("Save");
    QTRY_COMPARE(int(held().MacroSlots[2].EventCount), 4);
    QVERIFY(VirtualMice::tell({"press", "q1", "2"}).contains("\"code\":2"));
    program->whenShown("QuestionDialog", [] {
        Program::prompt("QuestionDialog")->findChild<QLineEdit *>()->setText("Leap");
        Program::clickIn("QuestionDialog", "NewHong");
    });
    QVERIFY(QMetaObject::invokeMethod(program->find("Macro"), "RenameMacro"));
    QTRY_COMPARE(QByteArray(held().MacroSlots[2].Name), QByteArray("Leap"));

    // Deleted, it leaves the button to its own function.
    program->whenShown("DeleteConfirm", [] { Program::clickIn("DeleteConfirm", "NewHong"); });
    program->click("DeleteHong");
    QTRY_COMPARE(int(held().KeyFunctions[2].KeyType), 1);
    program->click("ButtonMain");
    QCOMPARE(backText(), QString("Middle button"));
}

HALVARION_TEST_MAIN(ButtonStoryTest)
#include "tst_buttonstory.moc"
