#include "app/DialogMain.h"
#include "app/TextSetup.h"
#include "app/hub/PostMsg.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/TextFit.h"
#include "support/VirtualMice.h"
#include "ui/AddDelayTime.h"
#include "ui/ContainReset.h"
#include "ui/DeleteConfirm.h"
#include "ui/ExeIsRun.h"
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

#include <QLabel>

#include <memory>

/** No text of any of the six languages is wider or higher than its widget, on every window and prompt there is. */
class TextFitTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void fits_data();
    void fits();
    void theCheckFindsALongText();

private:
    template<typename... Prompts>
    static QStringList promptComplaints()
    {
        QStringList complaints;
        const auto check = [&complaints](auto prompt) {
            prompt->show();
            complaints << textsThatDoNotFit(prompt.get());
        };
        (check(std::make_unique<Prompts>()), ...);
        return complaints;
    }
};

void TextFitTest::initTestCase()
{
    setUpFonts();
    VirtualMice::restoreScene();
}

void TextFitTest::fits_data()
{
    QTest::addColumn<int>("language");
    for (int language = 0; language < LanguageFile::languageCount; ++language)
        QTest::newRow(qPrintable(LanguageFile::nativeName(language))) << language;
}

void TextFitTest::fits()
{
    QFETCH(int, language);
    UserSettings::instance()->setLanguage(language);
    QStringList complaints;
    {
        const Program program;
        // Both ways to a language: built in it, and changed to it while alive.
        complaints << textsThatDoNotFit(program.window());
        postMsg()->post(&PostMsg::SigChangeLanguage, (language + 1) % LanguageFile::languageCount);
        postMsg()->post(&PostMsg::SigChangeLanguage, language);
        complaints << textsThatDoNotFit(program.window());
    }
    MouseOffLine::setPromptIndex(1);
    complaints << promptComplaints<MouseOffLine>();
    MouseOffLine::setPromptIndex(0);
    complaints << promptComplaints<AddDelayTime, ContainReset, DeleteConfirm, ExeIsRun, GroupMaxThree, InportFail,
                                   KeyNumberLimit, LeftButtonOnly, MakeMacro, MouseOffLine, QuestionDialog,
                                   QuestiondialogB, RePair, SameMacro, UpDataParam>();
    complaints.removeDuplicates();
    QVERIFY2(complaints.isEmpty(), qPrintable('\n' + complaints.join('\n')));
}

void TextFitTest::theCheckFindsALongText()
{
    QWidget window;
    auto *const label = new QLabel(QStringLiteral("much too long for this"), &window);
    label->setGeometry(0, 0, 40, 20);
    QCOMPARE(textsThatDoNotFit(&window).size(), 1);
    label->setWordWrap(true);
    QCOMPARE(textsThatDoNotFit(&window).size(), 1); // wide enough now, and too high
    label->setGeometry(0, 0, 400, 40);
    QCOMPARE(textsThatDoNotFit(&window), QStringList());
}

HALVARION_TEST_MAIN(TextFitTest)
#include "tst_textfit.moc"
