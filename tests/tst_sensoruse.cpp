#include "app/hub/PostMsg.h"
#include "productdata/UserSettings.h"
#include "sensor/Sensor.h"
#include "support/ConnectedMouse.h"
#include "support/SensorPageView.h"
#include "support/SomeRecord.h"
#include "support/TestHome.h"
#include "support/TextFit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QListView>
#include <QSignalSpy>
#include <QToolButton>

#include <memory>

/** The page in the user's hands: its own controls before a virtual mouse, and its languages. */
class SensorUseTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void userChoosesARate();
    void cordedCannotBeChosen();
    void pageControlsReachTheFlash();
    void offlineClickPromptsOnce();
    void languages_data();
    void languages();
    void hiddenIndicatorStaysHidden();

private:
    template<typename Widget>
    Widget *find(const QString &name) const
    {
        return view->find<Widget>(name);
    }
    void show(const FlashDataMap &record) { page->SlotUpDataSenSorUIB(record); }

    std::unique_ptr<Sensor> page;
    std::unique_ptr<SensorPageView> view;
};

void SensorUseTest::init()
{
    UserSettings::instance()->setLanguage(0);
    VirtualMice::restoreScene();
    page = std::make_unique<Sensor>();
    view = std::make_unique<SensorPageView>(*page);
    page->show();
    ConnectedMouse::select(0);
    QVERIFY(ConnectedMouse::read(true));
}

void SensorUseTest::cleanup()
{
    ConnectedMouse::forget();
    page.reset();
}

void SensorUseTest::userChoosesARate()
{
    const QString slow = VirtualMice::record("q1").SensorMode == 1 ? "HP" : "LP";
    const QPair<const char *, int> steps[] = {{"Button4000HZ", 32}, {"Button500HZ", 2}, {"Button2000HZ", 16},
                                              {"Button125HZ", 8},   {"Button250HZ", 4}, {"Button1000HZ", 1}};
    for (const auto &step : steps) {
        QTest::mouseClick(find<QToolButton>(step.first), Qt::LeftButton);
        QTRY_COMPARE(int(VirtualMice::record("q1").ReportRate), step.second);
        QCOMPARE(view->mode(), step.second >= 16 ? QStringLiteral("Corded disabled") : slow);
    }
    QVERIFY(ConnectedMouse::isWritten("q1"));
}

void SensorUseTest::cordedCannotBeChosen()
{
    FlashDataMap record = VirtualMice::record("q1");
    record.ReportRate = 1;
    record.SensorMode = 0;
    WorkingRecord::instance().updateAndSend([&](FlashDataMap &held) { held = record; });
    QVERIFY(ConnectedMouse::isWritten("q1"));
    show(record);
    auto *const box = find<QComboBox>("ModelChoose");
    QCOMPARE(box->count(), 3);
    QVERIFY(qobject_cast<QListView *>(box->view())->isRowHidden(2));
    for (Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_End, Qt::Key_PageDown}) {
        QTest::keyClick(box, key);
        QCOMPARE(box->currentIndex(), 1);
    }
    QTRY_COMPARE(int(VirtualMice::record("q1").SensorMode), 1);
    box->setCurrentIndex(2); // as nobody can
    QVERIFY(ConnectedMouse::isWritten("q1"));
    QCOMPARE(int(VirtualMice::record("q1").SensorMode), 1);
}

void SensorUseTest::pageControlsReachTheFlash()
{
    auto *const performance = find<QCheckBox>("Performance");
    auto *const time = find<QComboBox>("PerformanceOpen");
    const QPoint onTheBox(8, performance->height() / 2);
    if (performance->isChecked())
        QTest::mouseClick(performance, Qt::LeftButton, {}, onTheBox);
    QTRY_COMPARE(int(VirtualMice::record("q1").Performance), 0);
    QVERIFY(!time->isEnabled());
    QTest::mouseClick(performance, Qt::LeftButton, {}, onTheBox);
    QTRY_COMPARE(int(VirtualMice::record("q1").Performance), 1);
    QVERIFY(time->isEnabled());
    time->setFocus();
    QTest::keyClick(time, Qt::Key_Home);
    const int times[] = {3, 6, 30, 60, 90, 120, 150, 180, 210, 240};
    for (int index = 0; index < 10; ++index) {
        while (time->currentIndex() < index)
            QTest::keyClick(time, Qt::Key_Down);
        QTRY_COMPARE(int(VirtualMice::record("q1").PerformanceTime), times[index]);
    }
    auto *const lift = find<QComboBox>("LOD");
    const int other = 1 - lift->currentIndex();
    QTest::keyClick(lift, other ? Qt::Key_Down : Qt::Key_Up);
    QTRY_COMPARE(int(VirtualMice::record("q1").Lod), other + 1);
    QVERIFY(ConnectedMouse::isWritten("q1"));
}

void SensorUseTest::offlineClickPromptsOnce()
{
    VirtualMice::tell({"sleep", "q1"});
    const FlashDataMap held = WorkingRecord::instance().copy();
    const QString modeBefore = view->mode();
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    QSignalSpy rules(postMsg(), &PostMsg::SigHideModel);
    const char *const other = held.ReportRate == 32 ? "Button500HZ" : "Button4000HZ";
    QTest::mouseClick(find<QToolButton>(other), Qt::LeftButton);
    QCOMPARE(prompts.count(), 1);
    QCOMPARE(rules.count(), 0);
    QVERIFY(find<QToolButton>(other)->isChecked());
    QCOMPARE(view->mode(), modeBefore);
    auto *const lift = find<QComboBox>("LOD");
    QTest::keyClick(lift, lift->currentIndex() ? Qt::Key_Up : Qt::Key_Down);
    QCOMPARE(prompts.count(), 2);
    const FlashDataMap after = WorkingRecord::instance().copy();
    QVERIFY(std::memcmp(&held, &after, sizeof held) == 0);
}

void SensorUseTest::languages_data()
{
    QTest::addColumn<int>("language");
    for (int language = 0; language < 6; ++language)
        QTest::addRow("%d", language) << language;
}

void SensorUseTest::languages()
{
    QFETCH(int, language);
    show(someRecord());
    postMsg()->post(&PostMsg::SigChangeLanguage, 7); // beyond the list: English
    QCOMPARE(find<QLabel>("label_5")->text(), QStringLiteral("Sensor settings"));
    QCOMPARE(find<QComboBox>("PerformanceOpen")->itemText(9), QStringLiteral("40 min"));
    QCOMPARE(find<QComboBox>("Model")->itemText(2), QStringLiteral("Breathing"));
    QCOMPARE(find<QFrame>("frame_3")->findChild<QLabel *>("label")->text(), QStringLiteral("Motion Sync"));
    QVERIFY(find<QComboBox>("ModelChoose")->toolTip().startsWith("LP"));
    postMsg()->post(&PostMsg::SigChangeLanguage, language);
    QCOMPARE(language == 0, find<QLabel>("label_5")->text() == "Sensor settings");
    QCOMPARE(textsThatDoNotFit(page.get()), QStringList());
    QCOMPARE(find<QComboBox>("PerformanceOpen")->currentIndex(), 7);

    UserSettings::instance()->setLanguage(language);
    const Sensor later;
    QCOMPARE(later.findChild<QLabel *>("label_5")->text(), find<QLabel>("label_5")->text());
}

void SensorUseTest::hiddenIndicatorStaysHidden()
{
    show(someRecord());
    QVERIFY(!view->isShown("frameEffect") && !view->isShown("TitleButton_3"));
    QCOMPARE(find<QWidget>("frameEffect")->pos(), QPoint(80, 456));
    QVERIFY(view->isShown("TitleButton_4") && view->isShown("frameDpi"));
}

HALVARION_TEST_MAIN(SensorUseTest)
#include "tst_sensoruse.moc"
