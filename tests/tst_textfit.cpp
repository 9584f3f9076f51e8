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
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/TextFit.h"

/** No text of any of the six languages is wider or higher than its widget, on every window and prompt there is. */
class TextFitTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void fits_data();
    void fits();
    void theCheckFindsALongText();
};

namespace {

/** The repair with each of its texts. */
struct AnyRepair : UpDateRepair
{
    using Prompt::showElement;
};

} // namespace

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
