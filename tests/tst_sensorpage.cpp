#include "app/hub/PostMsg.h"
#include "devicelink/DeviceSetters.h"
#include "productdata/ConfigStore.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "sensor/DpiCoding.h"
#include "sensor/Sensor.h"
#include "support/ConnectedMouse.h"
#include "support/SensorPageView.h"
#include "support/SomeRecord.h"
#include "support/TestHome.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFrame>
#include <QLabel>
#include <QListView>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QThread>
#include <QToolButton>

#include <functional>
#include <memory>

namespace {

/** Runs something on a thread of its own, as the library does with a report, while this one serves events. */
void runOnThread(const std::function<void()> &work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->start();
    while (!thread->wait(1))
        QCoreApplication::processEvents();
}

/** A device as a scan finds it. */
DeviceAllInfo device(int modelIndex, int receiverClass)
{
    DeviceAllInfo info;
    info.ModelIndex = modelIndex;
    info.DeviceKind = std::uint8_t(modelIndex + 1);
    info.ReceiverClass = std::uint8_t(receiverClass);
    info.IsCorded = isCordedClass(info.ReceiverClass);
    return info;
}

} // namespace

/** The page as a whole: what it shows of a record, what exists for which sensor, the rule of the sensor mode. */
class SensorPageTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void startsWithoutWarnings();
    void everyFieldShows();
    void loadedFlag();
    void performanceTime_data();
    void performanceTime();
    void rates_data();
    void rates();
    void features_data();
    void features();
    void modeRule_data();
    void modeRule();
    void recordsAreNotTrusted_data();
    void recordsAreNotTrusted();
    void reports();
    void bulkUpdateOnASlowReceiver();
    void reset_data();
    void reset();

private:
    template<typename Widget>
    Widget *find(const QString &name) const
    {
        return view->find<Widget>(name);
    }
    void show(const FlashDataMap &record) { page->SlotUpDataSenSorUIB(record); }
    void showDevice(int modelIndex, int receiverClass, const FlashDataMap &record);
    std::unique_ptr<Sensor> page;
    std::unique_ptr<SensorPageView> view;
};

void SensorPageTest::initTestCase() { VirtualMice::restoreScene(); }

void SensorPageTest::init()
{
    UserSettings::instance()->setLanguage(0);
    sensorCoding() = {};
    page = std::make_unique<Sensor>();
    view = std::make_unique<SensorPageView>(*page);
    SelectInfo().set(device(0, 1));
}

void SensorPageTest::cleanup()
{
    ConnectedMouse::forget();
    page.reset();
}

void SensorPageTest::showDevice(int modelIndex, int receiverClass, const FlashDataMap &record)
{
    SelectInfo().set(device(modelIndex, receiverClass));
    show(record);
}

/** A slot whose name fits no widget, a picture or a language file that is missing: all of them would say so. */
void SensorPageTest::startsWithoutWarnings()
{
    static QStringList warnings;
    const QtMessageHandler usual =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) { warnings << text; });
    const Sensor another;
    qInstallMessageHandler(usual);
    QCOMPARE(warnings, QStringList());
}

void SensorPageTest::everyFieldShows()
{
    QVERIFY(QFileInfo(UserFolders::path(UserFolders::Folder::SensorPage)).isDir());
    show(someRecord());
    QCOMPARE(view->rate(), 2);
    QCOMPARE(view->mode(), QStringLiteral("HP"));
    QCOMPARE(find<QComboBox>("LOD")->currentIndex(), 1);
    QVERIFY(find<QComboBox>("LOD")->isEnabled());
    for (const char *name : {"RippeControl_2", "StraightLine_2", "MotionSync_2", "Performance"})
        QVERIFY2(find<QAbstractButton>(name)->isChecked(), name);
    QCOMPARE(find<QComboBox>("PerformanceOpen")->currentIndex(), 7);
    QVERIFY(find<QComboBox>("PerformanceOpen")->isEnabled());
    QCOMPARE(find<QComboBox>("Model")->currentIndex(), 2);
    QCOMPARE(find<QSlider>("SpeedH")->value(), 4);
    QCOMPARE(find<QSlider>("LightH")->value(), 6);
    // Levels behind the count keep their values; the code of the other axis isn't shown.
    QCOMPARE(view->levels(), QStringLiteral("550 600* 650 700"));
    QCOMPARE(find<QToolButton>("LightYellowButton")->text(), QStringLiteral("900"));
    QCOMPARE(find<QComboBox>("ChooseEvent")->count(), 8);
    QCOMPARE(find<QComboBox>("ChooseEvent")->currentText(), QStringLiteral("4"));
    const auto *const slider = find<QSlider>("horizontalSliderC");
    QCOMPARE(QPoint(slider->minimum(), slider->maximum()), QPoint(50, 26000));
    QCOMPARE(slider->value(), 600);
    QCOMPARE(find<QSpinBox>("spinBoxA")->value(), 600);
    QCOMPARE(find<QLabel>("label_8")->pos(), QPoint(118, 154));
    QVERIFY(find<QToolButton>("BrightRedButtonA")->styleSheet().contains("rgb(1,128,255)"));
    QVERIFY(!find<QToolButton>("BrightRedButtonA")->grab().toImage().isNull());

    FlashDataMap off = someRecord();
    off.RippeControl = off.StraightLine = off.MotionSync = off.Performance = off.DpiLedOn = 0;
    off.Lod = 1;
    show(off);
    for (const char *name : {"RippeControl_2", "StraightLine_2", "MotionSync_2", "Performance"})
        QVERIFY2(!find<QAbstractButton>(name)->isChecked(), name);
    QVERIFY(!find<QComboBox>("PerformanceOpen")->isEnabled());
    QCOMPARE(find<QComboBox>("LOD")->currentIndex(), 0);
    QCOMPARE(find<QComboBox>("Model")->currentIndex(), 0);
}

void SensorPageTest::loadedFlag()
{
    SensorUiLoaded = false;
    show(someRecord());
    QVERIFY(!SensorUiLoaded);
    runOnThread([] { postMsg()->postBlocking(&PostMsg::SigUpDataLightSensor, someRecord()); });
    QVERIFY(SensorUiLoaded);
    show(someRecord());
    QVERIFY(SensorUiLoaded && !SensorUiUpdating);
    QCOMPARE(view->levels(), QStringLiteral("550 600* 650 700"));
}

void SensorPageTest::performanceTime_data()
{
    QTest::addColumn<int>("time");
    QTest::addColumn<int>("index");
    const int times[] = {3, 6, 30, 60, 90, 120, 150, 180, 210, 240};
    for (int index = 0; index < 10; ++index)
        QTest::addRow("%d s", times[index] * 10) << times[index] << index;
    QTest::newRow("one that the list doesn't have") << 4 << 5;
}

void SensorPageTest::performanceTime()
{
    QFETCH(int, time);
    find<QComboBox>("PerformanceOpen")->setCurrentIndex(5);
    FlashDataMap record = someRecord();
    record.PerformanceTime = std::uint8_t(time);
    show(record);
    QTEST(find<QComboBox>("PerformanceOpen")->currentIndex(), "index");
}

void SensorPageTest::rates_data()
{
    QTest::addColumn<int>("receiver");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("shown");
    const int codes[] = {8, 4, 2, 1, 16, 32};
    for (int index = 0; index < 6; ++index)
        QTest::addRow("4K receiver, code %d", codes[index]) << 1 << codes[index] << index << "111111";
    QTest::newRow("1K receiver") << 0 << 1 << 3 << "111100";
    QTest::newRow("2K receiver") << 4 << 16 << 4 << "111110";
    QTest::newRow("2K receiver, a rate that it can't carry") << 4 << 32 << 5 << "111110";
    QTest::newRow("class 3 is as 1") << 3 << 1 << 3 << "111111";
    QTest::newRow("on its cable 4000 Hz shows as 1000") << 2 << 32 << 3 << "111100";
    QTest::newRow("on its cable 2000 Hz too") << 2 << 16 << 3 << "111100";
    QTest::newRow("on its cable 500 Hz is 500") << 2 << 2 << 2 << "111100";
    QTest::newRow("a code that means nothing") << 1 << 7 << 0 << "111111";
    QTest::newRow("a class that says nothing") << 9 << 2 << 2 << "111111";
}

void SensorPageTest::rates()
{
    QFETCH(int, receiver);
    QFETCH(int, code);
    FlashDataMap record = someRecord();
    record.ReportRate = 8;
    showDevice(0, 1, record);
    record.ReportRate = std::uint8_t(code);
    showDevice(0, receiver, record);
    QTEST(view->rate(), "button");
    QTEST(view->ratesShown(), "shown");
}

void SensorPageTest::features_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("receiver");
    QTest::addColumn<QString>("seen");
    QTest::addColumn<QString>("modeSeen");
    QTest::addColumn<QString>("levelsSeen");
    QTest::addColumn<QPoint>("range");
    QTest::newRow("Q1") << 0 << 1 << "lod ripple line sync"
                        << "HP"
                        << "550 600* 650 700" << QPoint(50, 26000);
    QTest::newRow("Q1 on its cable") << 0 << 2 << "lod ripple line sync"
                                     << "Corded disabled"
                                     << "550 600* 650 700" << QPoint(50, 26000);
    QTest::newRow("Q2") << 1 << 0 << "lod ripple"
                        << "LP disabled"
                        << "700 800* 900 1000" << QPoint(100, 12400);
    QTest::newRow("a model that nobody knows") << 2 << 0 << ""
                                               << "LP disabled"
                                               << "" << QPoint(50, 10000);
}

void SensorPageTest::features()
{
    QFETCH(int, model);
    QFETCH(int, receiver);
    if (model == 2)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^DPIRange: "));
    showDevice(model, receiver, someRecord());
    QStringList seen;
    if (find<QComboBox>("LOD")->isEnabled())
        seen << "lod";
    const QPair<const char *, const char *> switches[] = {
        {"frame", "ripple"}, {"frame_4", "line"}, {"frame_3", "sync"}};
    for (const auto &entry : switches) {
        if (view->isShown(entry.first))
            seen << entry.second;
    }
    QTEST(seen.join(' '), "seen");
    QTEST(view->mode(), "modeSeen");
    QTEST(view->levels(), "levelsSeen");
    const auto *const slider = find<QSlider>("horizontalSliderC");
    QTEST(QPoint(slider->minimum(), slider->maximum()), "range");
    // The next model brings back what this one lacks.
    showDevice(0, 1, someRecord());
    QVERIFY(view->isShown("frame") && view->isShown("frame_4") && view->isShown("frame_3"));
    QCOMPARE(view->mode(), QStringLiteral("HP"));
}

void SensorPageTest::modeRule_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("receiver");
    QTest::addColumn<int>("recordCode");
    QTest::addColumn<QString>("event"); ///< "click" or "report"
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, int model, int receiver, int before, const char *event, int code,
                        const char *after) {
        QTest::newRow(name) << model << receiver << before << event << code << after;
    };
    row("a record with 4000 Hz on a 4K receiver", 0, 1, 32, "", 0, "Corded disabled");
    row("a record with 2000 Hz on a 2K receiver", 0, 4, 16, "", 0, "Corded disabled");
    row("a record with 2000 Hz on a 1K receiver", 0, 0, 16, "", 0, "HP");
    row("a record with 1000 Hz on the cable", 0, 2, 1, "", 0, "Corded disabled");
    row("4000 Hz clicked on a 4K receiver", 0, 1, 1, "click", 32, "Corded disabled");
    row("2000 Hz clicked on a 2K receiver", 0, 4, 1, "click", 16, "Corded disabled");
    row("4000 Hz on a 2K receiver", 0, 4, 1, "click", 32, "HP");
    row("back to 1000 Hz", 0, 1, 32, "click", 1, "HP");
    row("500 Hz on the cable changes nothing", 0, 2, 1, "click", 2, "Corded disabled");
    row("a sensor without modes", 1, 1, 1, "click", 32, "LP disabled");
    row("the mouse tells 2000 Hz", 0, 1, 1, "report", 16, "Corded disabled");
    row("the mouse tells 125 Hz", 0, 1, 32, "report", 8, "HP");
    row("the mouse on its cable tells 2000 Hz", 0, 2, 1, "report", 16, "Corded disabled");
    row("a sensor without modes tells 2000 Hz", 1, 1, 1, "report", 16, "LP disabled");
    row("the mouse tells nonsense", 0, 1, 1, "report", 3, "HP");
}

void SensorPageTest::modeRule()
{
    QFETCH(int, model);
    QFETCH(int, receiver);
    QFETCH(int, recordCode);
    QFETCH(QString, event);
    QFETCH(int, code);
    FlashDataMap record = someRecord();
    record.ReportRate = std::uint8_t(recordCode);
    WorkingRecord::instance().update([&](FlashDataMap &held) { held = record; });
    DeviceWritesEnabled = true;
    showDevice(model, receiver, record);
    if (event == "click") {
        // What a click leaves behind once the mouse has taken it.
        WorkingRecord::instance().update([=](FlashDataMap &held) { held.ReportRate = std::uint8_t(code); });
        postMsg()->post(&PostMsg::SigHideModel, code >= 16 ? 1 : 0);
    } else if (event == "report") {
        runOnThread([=] { postMsg()->postBlocking(&PostMsg::SigUpDataReportRate, code); });
    }
    QTEST(view->mode(), "after");
    // The record keeps the user's choice through all of it.
    QCOMPARE(int(WorkingRecord::instance().copy().SensorMode), 1);
}

void SensorPageTest::recordsAreNotTrusted_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("active");
    QTest::addColumn<QString>("shown");
    QTest::newRow("no levels") << 0 << 0 << 0 << "550*";
    QTest::newRow("nine levels") << 0 << 9 << 0 << "550* 600 650 700 750 800 850 900";
    QTest::newRow("255 levels") << 0 << 255 << 7 << "550 600 650 700 750 800 850 900*";
    QTest::newRow("more levels than the model has") << 1 << 8 << 4 << "700 800 900 1000 1100*";
    QTest::newRow("a level beyond the count") << 0 << 3 << 6 << "550 600 650";
    QTest::newRow("a level beyond all") << 0 << 3 << 8 << "550* 600 650";
    QTest::newRow("a level far beyond all") << 0 << 3 << 255 << "550* 600 650";
}

/** Bytes that mean nothing show what can be shown, and nothing goes to the mouse. */
void SensorPageTest::recordsAreNotTrusted()
{
    QFETCH(int, model);
    QFETCH(int, count);
    QFETCH(int, active);
    VirtualMice::restoreScene();
    ConnectedMouse::select(model);
    QVERIFY(ConnectedMouse::read(true));
    FlashDataMap record = someRecord();
    record.DpiCurrentLevel = 0;
    show(record);
    const FlashDataMap held = WorkingRecord::instance().copy();
    record.DpiLevelCount = std::uint8_t(count);
    record.DpiCurrentLevel = std::uint8_t(active);
    record.Lod = 0;
    record.SensorMode = 200;
    record.ReportRate = 255;
    record.PerformanceTime = 255;
    record.DpiLedMode = 9;
    record.DpiLedBrightness = 3;
    record.DpiLedSpeed = 0;
    show(record);
    QTEST(view->levels(), "shown");
    page->grab();
    record.Lod = 255;
    std::memset(record.DpiLevels, 0xFF, sizeof record.DpiLevels);
    show(record);
    page->grab();
    const FlashDataMap after = WorkingRecord::instance().copy();
    QVERIFY(std::memcmp(&held, &after, sizeof held) == 0);
}

void SensorPageTest::reports()
{
    DeviceWritesEnabled = true;
    show(someRecord());
    runOnThread([] { postMsg()->postBlocking(&PostMsg::SigUpDataDPI, 3); });
    QCOMPARE(view->levels(), QStringLiteral("550 600 650 700*"));
    QCOMPARE(find<QLabel>("label_8")->pos(), QPoint(300, 154));
    QCOMPARE(find<QSlider>("horizontalSliderC")->value(), 700);
    QVERIFY(DeviceWritesEnabled);
    for (int level : {-1, 8, 255})
        page->SlotUpDataDPI(level);
    QCOMPARE(view->levels(), QStringLiteral("550 600 650 700*"));
    FlashDataMap indicator = someRecord();
    indicator.DpiLedMode = 1;
    indicator.DpiLedSpeed = 2;
    indicator.DpiLedBrightness = 255;
    runOnThread([=] { postMsg()->postBlocking(&PostMsg::SigUpDataDPILed, indicator); });
    QCOMPARE(find<QComboBox>("Model")->currentIndex(), 1);
    QCOMPARE(find<QSlider>("SpeedH")->value(), 2);
    QCOMPARE(find<QSlider>("LightH")->value(), 10);
    indicator.DpiLedOn = 0;
    indicator.DpiLedBrightness = 16;
    page->SlotUpDataDPILed(indicator);
    QCOMPARE(find<QComboBox>("Model")->currentIndex(), 0);
    QCOMPARE(find<QSlider>("LightH")->value(), 1);
}

void SensorPageTest::bulkUpdateOnASlowReceiver()
{
    FlashDataMap record = someRecord();
    record.ReportRate = 32;
    const FlagScope bulk(BulkUpdateActive);
    showDevice(0, 0, record);
    QCOMPARE(view->rate(), 3);
    showDevice(0, 1, record);
    QCOMPARE(view->rate(), 5);
}

void SensorPageTest::reset_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("receiverRate");
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("rates");
    QTest::addColumn<QString>("modeText");
    QTest::newRow("kind 1 on a 4K receiver") << 1 << 4 << 5 << "111111"
                                             << "Corded";
    QTest::newRow("kind 1 on a 2K receiver") << 1 << 2 << 3 << "111100"
                                             << "LP";
    QTest::newRow("kind 2") << 2 << 4 << 3 << "111100"
                            << "LP";
    QTest::newRow("another kind") << 7 << 4 << 3 << "111111"
                                  << "LP";
}

void SensorPageTest::reset()
{
    QFETCH(int, kind);
    QFETCH(int, receiverRate);
    DeviceWritesEnabled = true;
    showDevice(1, 1, someRecord()); // a model with another sensor before
    const FlashDataMap held = WorkingRecord::instance().copy();
    DeviceAllInfo info = device(0, 1);
    info.DeviceKind = std::uint8_t(kind);
    SelectInfo().set(info);
    ReceiverRate = receiverRate;
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    runOnThread([] { postMsg()->postBlocking(&PostMsg::SigFormReset); });
    QTEST(view->rate(), "button");
    QTEST(view->ratesShown(), "rates");
    QTEST(find<QComboBox>("ModelChoose")->currentText(), "modeText");
    QCOMPARE(view->levels(), QStringLiteral("400 800 1600* 3200 6400 12000"));
    QCOMPARE(find<QComboBox>("ChooseEvent")->count(), 6);
    const auto *const slider = find<QSlider>("horizontalSliderC");
    QCOMPARE(QList<int>({slider->minimum(), slider->maximum(), slider->value()}), QList<int>({100, 26000, 1600}));
    QCOMPARE(find<QSpinBox>("spinBoxA")->value(), 1600);
    QCOMPARE(find<QLabel>("label_8")->pos(), QPoint(209, 154));
    QVERIFY(find<QToolButton>("RedButtonA")->styleSheet().contains("rgb(0,255,0)"));
    QVERIFY(find<QToolButton>("RedButtonA")->styleSheet().contains("MaxB.png"));
    QVERIFY(!find<QCheckBox>("Performance")->isChecked() && !find<QComboBox>("PerformanceOpen")->isEnabled());
    QCOMPARE(find<QComboBox>("PerformanceOpen")->currentIndex(), 1);
    QCOMPARE(find<QComboBox>("LOD")->currentIndex(), 0);
    QCOMPARE(sensorCoding().SensorName, QStringLiteral("3395"));
    QCOMPARE(sensorCoding().DpiRange.maximum(), 26000);
    QVERIFY(view->isShown("frame") && view->isShown("frame_4") && view->isShown("frame_3"));
    QVERIFY(find<QToolButton>("MotionSync_2")->isChecked() && !find<QToolButton>("StraightLine_2")->isChecked() &&
            !find<QToolButton>("RippeControl_2")->isChecked());
    QCOMPARE(find<QSlider>("SpeedH")->value(), 3);
    QCOMPARE(find<QSlider>("LightH")->value(), 5);
    const FlashDataMap after = WorkingRecord::instance().copy();
    QVERIFY(std::memcmp(&held, &after, sizeof held) == 0);
    QCOMPARE(prompts.count(), 0);
    QVERIFY(!SensorUiUpdating);
}

HALVARION_TEST_MAIN(SensorPageTest)
#include "tst_sensorpage.moc"
