#include "maintenance/CompanyPage.h"
#include "maintenance/FormSetting.h"
#include "productdata/UserSettings.h"
#include "support/Child.h"
#include "support/ConnectedMouse.h"
#include "support/Files.h"
#include "support/TestHome.h"

#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QProcess>
#include <QScrollArea>
#include <QScrollBar>

/** The settings page before a virtual receiver, which tells what a change did. */
class SettingsTest : public QObject
{
    Q_OBJECT
public Q_SLOTS:
    void takeUrl(const QUrl &url) { opened = url.toString(); }

private Q_SLOTS:
    void init();
    void cleanup()
    {
        ConnectedMouse::forget();
        page.reset();
    }
    void sections();
    void receiverSettings();
    void languageAndMakersPage();
    void startWithTheSystem();

private:
    template<typename Widget = QWidget>
    Widget *find(const char *name) const
    {
        return childOf<Widget>(page.get(), name);
    }
    bool isShown(const char *name) const { return find(name)->isVisibleTo(page.get()); }
    bool isChecked(const char *name) const { return find<QAbstractButton>(name)->isChecked(); }
    void click(const char *name) { clickChild(page.get(), name); }
    static QJsonObject receiver() { return VirtualMice::device("q1-4k"); }
    static int lightMode() { return receiver()["light"].toObject()["mode"].toInt(); }
    /** Connects the mouse and waits for what follows its record. */
    void connectMouse(int model = 0, bool corded = false);

    std::unique_ptr<FormSetting> page;
    QString opened;
};

void SettingsTest::init()
{
    VirtualMice::restoreScene();
    UserSettings::instance()->setLanguage(0);
    page = std::make_unique<FormSetting>();
    page->show();
}

void SettingsTest::connectMouse(int model, bool corded)
{
    ConnectedMouse::select(model, corded);
    postMsg()->post(&PostMsg::SigSelectMouseInfo, SelectInfo().get());
    QVERIFY(ConnectedMouse::read(false));
    QTRY_VERIFY(!SelectInfo().get().MouseVersion.isEmpty());
    QCoreApplication::processEvents();
}

void SettingsTest::sections()
{
    for (const auto &[model, link, longRange, light] : {std::tuple(0, "4k", true, true),
                                                        {0, "1k", true, false},
                                                        {0, "cable", false, false},
                                                        {1, "4k", true, false}}) {
        init();
        VirtualMice::tell({"remove", model == 0 ? "q1" : "q2"});
        VirtualMice::add(model == 0 ? "q1" : "q2", link);
        const bool isCorded = QString(link) == "cable";
        connectMouse(model, isCorded);
        for (const char *name : {"TitleButton_6", "label_11", "checkBox_2", "textEdit"})
            QCOMPARE(isShown(name), longRange);
        for (const char *name : {"TitleButton_7", "label_14", "ReUntil", "ReUntil_2", "ReUntil_3", "textEdit_4"})
            QCOMPARE(isShown(name), light);
        QCOMPARE(isChecked("ReUntil"), light);
        const auto versions = [this] {
            return find<QLabel>("label_5")->text() + '/' + find<QLabel>("label_7")->text();
        };
        const QString ofBoth = versions();
        QVERIFY(!ofBoth.endsWith('/') && ofBoth.startsWith('/') == isCorded);
        page->SetVer(6);
        QCOMPARE(versions(), QString("/"));
        page->SetVer(5);
        QCOMPARE(versions(), ofBoth);
        SelectInfo().update([](DeviceAllInfo &info) { info.Online = false; });
        page->SetVer(0);
        QCOMPARE(versions(), ofBoth.section('/', 0, 0) + '/');
        for (const char *name : {"Receive", "Mouse", "pushButton_4", "NewLabel", "label_12", "label_13"})
            QVERIFY(!isShown(name));
        const int above = find("label")->y();
        find<QScrollArea>("scrollArea")->verticalScrollBar()->setValue(1000);
        QCOMPARE(find("label")->y(), above + (light ? 150 : 0)); // of a page no longer than it has to be

        // Without a device both go, and the page is the short one again.
        ConnectedMouse::runOnThread([] { postMsg()->postBlocking(&PostMsg::SigFormReset); });
        QVERIFY(!isShown("checkBox_2") && !isShown("ReUntil"));
        QCOMPARE(find<QScrollArea>("scrollArea")->widget()->height(), 630);
        cleanup();
    }
}

/** What is clicked is in the receiver, what it holds and tells on the page; neither without a mouse that answers. */
void SettingsTest::receiverSettings()
{
    connectMouse();
    for (const char *text : {"textEdit_2", "textEdit_4", "textEdit"}) // counts as the control beside it
        QTest::mouseClick(find<QAbstractScrollArea>(text)->viewport(), Qt::LeftButton);
    QVERIFY(lightMode() == 3 && receiver()["longRange"].toBool());
    connectMouse();
    QVERIFY(isChecked("ReUntil_3") && isChecked("checkBox_2"));
    // Set by another program, as the receiver tells of its own accord.
    VirtualMice::tell({"receiver-light", "q1-4k", "1"});
    VirtualMice::tell({"long-range", "q1-4k", "0"});
    QTRY_VERIFY(isChecked("ReUntil") && !isChecked("checkBox_2"));
    DeviceWritesEnabled = false;
    click("ReUntil_2");
    QCOMPARE(lightMode(), 1);
    DeviceWritesEnabled = true;

    VirtualMice::tell({"sleep", "q1"});
    page->SlotForm(); // shows again what the receiver holds
    QTRY_VERIFY(isChecked("ReUntil"));
    // The screen has gone back to what the receiver holds before the prompt opens.
    QStringList whilePrompt;
    connect(postMsg(), &PostMsg::SigMouseOffLineo, page.get(),
            [&] { whilePrompt << QString::number(isChecked("checkBox_2")) + QString::number(isChecked("ReUntil")); });
    click("checkBox_2");
    click("ReUntil_2");
    QCOMPARE(whilePrompt, QStringList({"01", "01"}));
    // The mouse answers, but what is set gets lost on the way to the receiver.
    VirtualMice::tell({"wake", "q1"});
    for (const char *control : {"checkBox_2", "ReUntil_3"}) {
        VirtualMice::tell({"fault", "q1-4k", "drop", "99", "1", "requests"});
        click(control);
        VirtualMice::tell({"fault", "q1-4k", "drop", "0", "0", "requests"});
    }
    QCOMPARE(whilePrompt.size(), 4);
    QVERIFY(lightMode() == 1 && !receiver()["longRange"].toBool());

    // Receivers tell only what is on, so nothing of the one before may stay.
    page->SlotLongRangeMode(true);
    connectMouse(1);
    QVERIFY(isShown("checkBox_2") && !isChecked("checkBox_2") && !isShown("ReUntil"));
}

/** The maker's page is that of the language. */
void SettingsTest::languageAndMakersPage()
{
    QDesktopServices::setUrlHandler("https", this, "takeUrl");
    const QSignalSpy others(postMsg(), &PostMsg::SigLanguageSameA);
    for (const auto &[language, address] :
         {std::pair(0, "https://velko.example/en"), {4, "https://velko.example"}, {5, ""}}) {
        Q_EMIT find<QComboBox>("comboBox")->activated(language);
        QCOMPARE(UserSettings::instance()->language(), language);
        QCOMPARE(others.last().value(0).toInt(), language);
        QCOMPARE(isShown("pushButton_3"), *address != '\0');
        opened.clear();
        click("pushButton_3");
        QCOMPARE(opened, QString(address));
    }
    QDesktopServices::unsetUrlHandler("https");

    // What the file says for the language counts more than what it says for all; only web addresses are opened.
    const QByteArray web = "<Profile><Web><CompanyWeben> https://b.example </CompanyWeben></Web>%</Profile>";
    const QByteArray own = "<English><CompanyWeben>http://a.example</CompanyWeben></English>";
    QStringList read;
    for (QByteArray file : {web, QByteArray(web).replace("%", own), web.left(50)}) {
        QBuffer buffer(&file);
        buffer.open(QIODevice::ReadOnly);
        read << readCompanyPageFrom(buffer, 0).address;
    }
    QCOMPARE(read, QStringList({"https://b.example", "http://a.example", ""}));
    QVERIFY(isWebAddress(read[1]));
    for (const char *other : {"file:///etc/passwd", "mailto:a@velko.example", "https:///", "velko.example", ""})
        QVERIFY(!isWebAddress(other));
}

void SettingsTest::startWithTheSystem()
{
#ifdef Q_OS_WIN
    QSKIP("the entry is a value of the registry there, at which tst_platform_windows looks");
#endif
    const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/autostart";
    const QString entry = folder + "/halvarion.desktop";
    const auto is = [&](bool on) {
        return QFile::exists(entry) == on && isChecked("checkBox") == on &&
               UserSettings::instance()->read("AutoStart", "Enable") == (on ? "1" : "0");
    };
    click("label_10"); // counts as the box
    QVERIFY(is(true));
    QCOMPARE(QProcess::execute("desktop-file-validate", {entry}), 0);
    QVERIFY(FormSetting().findChild<QCheckBox *>("checkBox")->isChecked());
    click("checkBox");
    QVERIFY(is(false));
    // Where the entry can't be written the box says so.
    QVERIFY(QDir(folder).removeRecursively());
    Files::put(folder, "mine");
    click("checkBox");
    QVERIFY(is(false) && QFile::remove(folder));
}

HALVARION_TEST_MAIN(SettingsTest)
#include "tst_settings.moc"
