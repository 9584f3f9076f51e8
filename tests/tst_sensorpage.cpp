#include "sensor/DpiCoding.h"
#include "support/PageBench.h"
#include "support/Rows.h"
#include "support/Screen.h"
#include "support/SensorWidgets.h"
#include "support/TestHome.h"

#include <QCheckBox>
#include <QListView>
#include <QRandomGenerator>

using namespace SensorWidgets;

namespace {

/** Receiver classes as a device tells them. */
constexpr int receiver1K = 0;
constexpr int receiver4K = 1;
constexpr int cable = 2;
constexpr int receiver2K = 4;

} // namespace

/** The page as a whole: what it shows of a record, what exists for which sensor, the rule of the sensor mode. */
class SensorPageTest : public PageBench
{
    Q_OBJECT
private Q_SLOTS:
    void recordsShow();
    void features_data();
    void features();
    void ratesAndModes_data();
    void ratesAndModes();
    void cordedCannotBeChosen();
    void recordsAreNotTrusted_data();
    void recordsAreNotTrusted();
    void reportsAreNotTrusted();
    void reset_data();
    void reset();

private:
    void select(int modelIndex, int receiverClass, int kind = 0);
    /** Index of the chosen rate, and a digit for each rate: 1 if it is offered. */
    QString shownRates() const;
    /** "LP", "Corded disabled": the sensor mode, and whether it can be changed. */
    QString mode() const;
    /** Texts of the levels that show; the active one has a star. */
    QString levels() const;
    QPoint range() const
    {
        return {find<QSlider>("horizontalSliderC")->minimum(), find<QSlider>("horizontalSliderC")->maximum()};
    }
};

void SensorPageTest::select(int modelIndex, int receiverClass, int kind)
{
    DeviceAllInfo info = SelectInfo().get();
    info.ModelIndex = modelIndex;
    info.DeviceKind = std::uint8_t(kind ? kind : modelIndex + 1);
    info.ReceiverClass = std::uint8_t(receiverClass);
    info.IsCorded = isCordedClass(info.ReceiverClass);
    SelectInfo().set(info);
}

QString SensorPageTest::shownRates() const
{
    QString chosen;
    QString offered;
    for (std::size_t index = 0; index < rates.size(); ++index) {
        if (find<QToolButton>(rates[index].button)->isChecked())
            chosen += QString::number(index);
        offered += isShown(rates[index].button) ? '1' : '0';
    }
    return chosen + " of " + offered;
}

QString SensorPageTest::mode() const
{
    const auto *const box = find<QComboBox>("ModelChoose");
    return box->currentText() + (box->isEnabled() ? "" : " disabled");
}

QString SensorPageTest::levels() const
{
    QStringList texts;
    for (const char *name : cards) {
        if (isShown(name))
            texts << find<QToolButton>(name)->text() + (find<QToolButton>(name)->isChecked() ? "*" : "");
    }
    return texts.join(' ');
}

/** What a mouse holds is shown, whatever it is and whatever was shown before, and sends nothing to the mouse. */
void SensorPageTest::recordsShow()
{
    using Held = FlashDataMap;
    struct Range
    {
        std::uint8_t Held::*field;
        int from, to;
    };
    constexpr Range ranges[] = {
        {&Held::DpiLevelCount, 1, 8},     {&Held::Lod, 1, 2},          {&Held::SensorMode, 0, 1},
        {&Held::Performance, 0, 1},       {&Held::MotionSync, 0, 1},   {&Held::StraightLine, 0, 1},
        {&Held::RippeControl, 0, 1},      {&Held::LightOn, 0, 1},      {&Held::DpiLedOn, 0, 1},
        {&Held::LightRippeControl, 0, 1}, {&Held::DpiLedMode, 1, 2},   {&Held::DpiLedSpeed, 1, 5},
        {&Held::LightMode, 1, 5},         {&Held::LightSpeed, 0, 9},   {&Held::LightBrightness, 0, 9},
        {&Held::LightRed, 0, 255},        {&Held::LightGreen, 0, 255}, {&Held::LightBlue, 0, 255}};
    QRandomGenerator random(20240501);
    const auto number = [&random](int from, int to) { return std::uint8_t(random.bounded(from, to + 1)); };
    const FlashDataMap before = working();
    for (int round = 0; round < 60; ++round) {
        const bool isCorded = round % 2 == 1;
        select(0, isCorded ? cable : receiver4K);
        FlashDataMap record = before;
        for (const Range &range : ranges)
            record.*range.field = number(range.from, range.to);
        record.DpiCurrentLevel = number(0, record.DpiLevelCount - 1);
        for (DpiLevel &level : record.DpiLevels)
            level = {number(0, 255), 77, 0, number(0, 255), number(0, 255), number(0, 255)};
        record.ReportRate = std::uint8_t(rates[number(0, int(rates.size()) - 1)].code);
        record.PerformanceTime = std::uint8_t(performanceTimes[number(0, 9)]);
        record.DpiLedBrightness = std::uint8_t(indicatorBrightness[number(0, 9)]);
        record.StopCloseTime = std::uint8_t(performanceTimes[number(0, 9)]);
        show(record);
        QCOMPARE(screenDifferences(window.get(), record, isCorded), QStringList());
        QVERIFY(SensorUiLoaded && !SensorUiUpdating && LightUiLoaded && !LightUiUpdating);
    }
    QCOMPARE(working(), before);
    QCOMPARE(held(), before);
}

void SensorPageTest::features_data()
{
    const Rows<int, QString> row("model", "seen");
    row("Q2", 1, "LOD frame, LP disabled, 700 800* 900 1000 of 100 to 12400");
    row("a model that nobody knows", 2, ", LP disabled,  of 50 to 10000");
}

void SensorPageTest::features()
{
    QFETCH(int, model);
    const auto summary = [this] {
        QStringList seen;
        if (find("LOD")->isEnabled())
            seen << "LOD";
        for (const char *name : {"frame", "frame_4", "frame_3", "frameEffect", "TitleButton_3"}) {
            if (isShown(name))
                seen << name;
        }
        return QStringLiteral("%1, %2, %3 of %4 to %5")
            .arg(seen.join(' '), mode(), levels())
            .arg(range().x())
            .arg(range().y());
    };
    if (model == 2)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^DPIRange: "));
    sensorCoding().DpiRange = {};
    select(model, receiver1K);
    show(someRecord());
    QTEST(summary(), "seen");
    // The next model brings back what this one lacks.
    select(0, receiver4K);
    show(someRecord());
    QCOMPARE(summary(), QStringLiteral("LOD frame frame_4 frame_3, HP, 550 600* 650 700 of 50 to 26000"));
}

void SensorPageTest::ratesAndModes_data()
{
    // event: "click", "report", "bulk" of an update of all settings, or none
    const Rows<int, int, int, QString, int, QString> row("model", "receiver", "recordCode", "event", "code", "shown");
    row("2000 Hz on a 1K receiver", 0, receiver1K, 16, "", 0, "4 of 111100 HP");
    row("2K receiver, a rate that it can't carry", 0, receiver2K, 32, "", 0, "5 of 111110 Corded disabled");
    row("class 3 is as 1", 0, 3, 1, "", 0, "3 of 111111 Corded disabled");
    row("a class that says nothing", 0, 9, 2, "", 0, "2 of 111111 Corded disabled");
    row("a code that means nothing", 0, receiver4K, 7, "", 0, "2 of 111111 HP");
    row("4000 Hz of a file, 1K receiver", 0, receiver1K, 32, "bulk", 0, "3 of 111100 HP");
    row("4000 Hz of a file, 4K receiver", 0, receiver4K, 32, "bulk", 0, "5 of 111111 Corded disabled");
    row("2000 Hz clicked on a 2K receiver", 0, receiver2K, 1, "click", 16, "3 of 111110 Corded disabled");
    row("4000 Hz clicked on a 2K receiver", 0, receiver2K, 1, "click", 32, "3 of 111110 HP");
    row("500 Hz clicked on the cable", 0, cable, 1, "click", 2, "3 of 111100 Corded disabled");
    row("clicked for a sensor without modes", 1, receiver4K, 1, "click", 32, "3 of 111111 LP disabled");
    row("the mouse tells 2000 Hz", 0, receiver4K, 1, "report", 16, "4 of 111111 Corded disabled");
    row("the mouse on its cable tells 125 Hz", 0, cable, 1, "report", 8, "0 of 111100 Corded disabled");
    row("a sensor without modes tells 2000 Hz", 1, receiver4K, 1, "report", 16, "4 of 111111 LP disabled");
    row("the mouse tells nonsense", 0, receiver4K, 1, "report", 3, "3 of 111111 HP");
}

/** The rates that the receiver carries, the one that shows, and the mode that follows from it. */
void SensorPageTest::ratesAndModes()
{
    QFETCH(int, model);
    QFETCH(int, receiver);
    QFETCH(int, recordCode);
    QFETCH(QString, event);
    QFETCH(int, code);
    FlashDataMap record = someRecord();
    show(record);
    record.ReportRate = std::uint8_t(recordCode);
    WorkingRecord::instance().update([&](FlashDataMap &working) { working = record; });
    select(model, receiver);
    const FlagScope bulk(BulkUpdateActive, event == "bulk");
    show(record);
    if (event == "click") {
        // What a click leaves behind once the mouse has taken it.
        WorkingRecord::instance().update([=](FlashDataMap &working) { working.ReportRate = std::uint8_t(code); });
        postMsg()->post(&PostMsg::SigHideModel, code >= 16 ? 1 : 0);
    } else if (event == "report") {
        ConnectedMouse::runOnThread([=] { postMsg()->postBlocking(&PostMsg::SigUpDataReportRate, code); });
    }
    QTEST(shownRates() + ' ' + mode(), "shown");
    // The record keeps the user's choice through all of it.
    QCOMPARE(int(working().SensorMode), 1);
}

void SensorPageTest::cordedCannotBeChosen()
{
    FlashDataMap record = someRecord();
    record.SensorMode = 0;
    hold(record);
    auto *const box = find<QComboBox>("ModelChoose");
    QVERIFY(qobject_cast<QListView *>(box->view())->isRowHidden(2));
    for (Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_End, Qt::Key_PageDown}) {
        QTest::keyClick(box, key);
        QCOMPARE(box->currentIndex(), 1);
    }
    box->setCurrentIndex(2); // as nobody can
    record.SensorMode = 1;
    QTRY_COMPARE(held(), record);
    QCOMPARE(working(), record);
    // A rate that the mouse didn't take changes no mode.
    show(record);
    VirtualMice::tell({"sleep", id});
    click("Button4000HZ");
    QVERIFY(find<QToolButton>("Button4000HZ")->isChecked());
    QCOMPARE(mode(), QStringLiteral("HP"));
}

void SensorPageTest::recordsAreNotTrusted_data()
{
    const Rows<int, int, int, QString> row("model", "count", "active", "shown");
    row("no levels", 0, 0, 0, "550*");
    row("255 levels", 0, 255, 7, "550 600 650 700 750 800 850 900*");
    row("more levels than the model has", 1, 8, 4, "700 800 900 1000 1100*");
    row("a level beyond the count", 0, 3, 6, "550 600 650");
    row("a level beyond all", 0, 3, 255, "550* 600 650");
}

/** Bytes that mean nothing show what can be shown. */
void SensorPageTest::recordsAreNotTrusted()
{
    QFETCH(int, model);
    QFETCH(int, count);
    QFETCH(int, active);
    connectModel(model);
    FlashDataMap record = someRecord();
    record.DpiCurrentLevel = 0;
    show(record);
    record.DpiLevelCount = std::uint8_t(count);
    record.DpiCurrentLevel = std::uint8_t(active);
    record.Lod = 0;
    record.SensorMode = 200;
    record.ReportRate = record.PerformanceTime = 255;
    record.DpiLedBrightness = 6; // outside the table: its own position, as far as the slider goes
    record.DpiLedSpeed = 200;
    show(record);
    QTEST(levels(), "shown");
    QCOMPARE(find<QComboBox>("LOD")->currentIndex(), 1);
    QCOMPARE(find<QComboBox>("PerformanceOpen")->currentIndex(), 7);
    QCOMPARE(find<QSlider>("LightH")->value(), 6);
    QCOMPARE(find<QSlider>("SpeedH")->value(), 5);
}

/** Of a change on the mouse only what can be shown is shown, and it isn't written back. */
void SensorPageTest::reportsAreNotTrusted()
{
    FlashDataMap reported = someRecord();
    hold(reported);
    const FlashDataMap before = working();
    for (int level : {3, -1, 8, 255})
        ConnectedMouse::runOnThread([=] { postMsg()->postBlocking(&PostMsg::SigUpDataDPI, level); });
    reported.DpiCurrentLevel = 3;
    reported.DpiLedMode = 1;
    reported.DpiLedSpeed = 2;
    reported.DpiLedBrightness = 255;
    ConnectedMouse::runOnThread([=] { postMsg()->postBlocking(&PostMsg::SigUpDataDPILed, reported); });
    QCOMPARE(screenDifferences(window.get(), reported), QStringList());
    QCOMPARE(working(), before);
    QVERIFY(DeviceWritesEnabled);
}

void SensorPageTest::reset_data()
{
    const Rows<int, int, QString> row("kind", "receiverRate", "shown");
    row("kind 1 on a 4K receiver", 1, 4, "5 of 111111 Corded");
    row("kind 1 on a 2K receiver", 1, 2, "3 of 111100 LP");
    row("kind 2", 2, 4, "3 of 111100 LP");
    row("another kind", 7, 4, "3 of 111111 LP");
}

/** After a factory reset the pages show what the mouse then holds, until that is read; and send none of it. */
void SensorPageTest::reset()
{
    QFETCH(int, kind);
    QFETCH(int, receiverRate);
    FlashDataMap expected = held();
    // What the pages don't touch, and what they take from the product file or have of their own.
    if (kind == 1 && receiverRate == 4)
        expected.ReportRate = 32;
    expected.DpiLedOn = 0;
    expected.LightRippeControl = 1;
    expected.StopCloseTime = 6;
    expected.LightRed = 10;
    expected.LightGreen = 20;
    expected.LightBlue = 30;
    expected.DpiLevels[5].CodeX = 239; // 12000 DPI
    expected.DpiLevels[5].Flags = 0;
    select(1, receiver4K); // a model with another sensor before
    hold(someRecord());
    const FlashDataMap before = working();
    select(0, receiver4K, kind);
    ReceiverRate = receiverRate;
    ConnectedMouse::runOnThread([] { postMsg()->postBlocking(&PostMsg::SigFormReset); });
    QTEST(shownRates() + ' ' + find<QComboBox>("ModelChoose")->currentText(), "shown");
    QCOMPARE(screenDifferences(window.get(), expected).join("; "), QString());
    QVERIFY(sensorCoding().SensorName == "3395" && sensorCoding().DpiRange.maximum() == 26000);
    QCOMPARE(range(), QPoint(100, 26000));
    QVERIFY(isShown("frame") && isShown("frame_4") && isShown("frame_3"));
    QCOMPARE(working(), before);
    QVERIFY(!SensorUiUpdating && !LightUiUpdating);
}

HALVARION_TEST_MAIN(SensorPageTest)
#include "tst_sensorpage.moc"
