#include "sensor/DpiCoding.h"
#include "sensor/MarkerDrag.h"
#include "sensor/SensorDPI.h"
#include "support/PageBench.h"
#include "support/Rows.h"
#include "support/Screen.h"
#include "support/SensorWidgets.h"
#include "support/TestHome.h"

#include <QColorDialog>
#include <QListView>
#include <QMouseEvent>
#include <QRandomGenerator>
#include <QSet>

using namespace SensorWidgets;

namespace {

/** Receiver classes as a device tells them. */
constexpr int receiver1K = 0;
constexpr int receiver4K = 1;
constexpr int cable = 2;
constexpr int receiver2K = 4;

} // namespace

/**
 * The page as a whole: what it shows of a record, what exists for which sensor, the rule of the sensor mode. And its
 * DPI editor, driven with the mouse; what the virtual mouse then does is what counts.
 */
class SensorPageTest : public PageBench
{
    Q_OBJECT
private Q_SLOTS:
    void recordsShow();
    void features();
    void ratesAndModes_data();
    void ratesAndModes();
    void cordedCannotBeChosen();
    void recordsAreNotTrusted_data();
    void recordsAreNotTrusted();
    void reportsAreNotTrusted();
    void reset_data();
    void reset();
    void barChoosesALevelAndOpensTheColours();
    void firstChangeAfterChoosing();
    void markerDrag_data();
    void markerDrag();
    void exchangeIsOneUpdate();
    void offline();
    void draggedSlider();

private:
    void select(int modelIndex, int receiverClass, int kind = 0)
    {
        DeviceAllInfo info = SelectInfo().get();
        info.ModelIndex = modelIndex;
        info.DeviceKind = std::uint8_t(kind ? kind : modelIndex + 1);
        info.ReceiverClass = std::uint8_t(receiverClass);
        info.IsCorded = isCordedClass(info.ReceiverClass);
        SelectInfo().set(info);
    }
    /** Index of the chosen rate, and a digit for each rate: 1 if it is offered. */
    QString shownRates() const
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
    /** "LP", "Corded disabled": the sensor mode, and whether it can be changed. */
    QString mode() const
    {
        const auto *const box = find<QComboBox>("ModelChoose");
        return box->currentText() + (box->isEnabled() ? "" : " disabled");
    }
    /** Texts of the levels that show; the active one has a star. */
    QString levels() const
    {
        QStringList texts;
        for (const char *name : cards) {
            if (isShown(name))
                texts << find<QToolButton>(name)->text() + (find<QToolButton>(name)->isChecked() ? "*" : "");
        }
        return texts.join(' ');
    }
    QPoint range() const { return {slider()->minimum(), slider()->maximum()}; }
    QToolButton *card(int level) const { return find<QToolButton>(cards[std::size_t(level)]); }
    QToolButton *bar(int level) const { return find<QToolButton>(card(level)->objectName() + 'A'); }
    QSlider *slider() const { return find<QSlider>("horizontalSliderC"); }
    QPoint marker() const { return find("label_8")->pos(); }
    int shownDpi() const { return find<QSpinBox>("spinBoxA")->value(); }
    int dpiOfTheMouse() const { return mouse()["dpi"].toInt(); }
    void press(QWidget *widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    /** So many levels in use, in the mouse and on the page: level n has (21 + n) * 50 DPI and the colour n, 2n, 3n. */
    void setLevels(int count, int active)
    {
        FlashDataMap record = held();
        record.DpiLevelCount = std::uint8_t(count);
        record.DpiCurrentLevel = std::uint8_t(active);
        for (int level = 0; level < 8; ++level)
            record.DpiLevels[level] = {std::uint8_t(20 + level), std::uint8_t(20 + level), 0,
                                       std::uint8_t(level),      std::uint8_t(2 * level),  std::uint8_t(3 * level)};
        hold(record);
    }
    /** A change that goes to the mouse; choosing a level swallows the one behind it. */
    void arm()
    {
        const int value = slider()->value();
        slider()->setValue(value == slider()->maximum() ? slider()->minimum() : slider()->maximum());
        slider()->setValue(value);
    }
    /** Takes the marker at `from` and lets it go at `to`, in coordinates of the editor. */
    void dragMarker(QPoint from, QPoint to)
    {
        auto *const editor = find("frameDpi");
        const auto send = [editor](QEvent::Type type, QPoint point, Qt::MouseButton button, Qt::MouseButtons buttons) {
            // What the window system sees is the child under the pointer; where the event ends is the program's affair.
            QWidget *const under = type == QEvent::MouseMove ? nullptr : editor->childAt(point);
            QWidget *const receiver = under ? under : editor;
            QMouseEvent event(type, receiver->mapFrom(editor, point), editor->mapToGlobal(point), button, buttons,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(receiver, &event);
        };
        send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        for (int part = 1; part <= 20; ++part)
            send(QEvent::MouseMove, from + (to - from) * part / 20, Qt::NoButton, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    }
};

/** What a mouse holds is shown, whatever it is and whatever was shown before, and sends nothing to the mouse. */
void SensorPageTest::recordsShow()
{
    using Held = FlashDataMap;
    constexpr std::tuple<std::uint8_t Held::*, int, int> ranges[] = {
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
        for (const auto &[field, from, to] : ranges)
            record.*field = number(from, to);
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

/** What exists for a model; the next one brings back what this one lacks. */
void SensorPageTest::features()
{
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
    const auto seen = {"LOD frame frame_4 frame_3, HP, 550 600* 650 700 of 50 to 26000",
                       "LOD frame, LP disabled, 700 800* 900 1000 of 100 to 12400",
                       ", LP disabled,  of 50 to 10000"}; // a model that nobody knows
    for (const int model : {1, 0, 2, 0}) {
        if (model == 2)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^DPIRange: "));
        sensorCoding().DpiRange = {};
        select(model, model == 0 ? receiver4K : receiver1K);
        show(someRecord());
        QCOMPARE(summary(), QString(seen.begin()[model]));
    }
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

// The DPI editor ------------------------------------------------------------------------------------------------------

void SensorPageTest::barChoosesALevelAndOpensTheColours()
{
    setLevels(6, 1);
    FlashDataMap expected = held();
    press(bar(3));
    expected.DpiCurrentLevel = 3;
    QTRY_COMPARE(held(), expected);
    QCOMPARE(card(3)->size() - card(1)->size(), QSize(14, 14));
    auto *const dialog = find<QColorDialog>("");
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->currentColor(), QColor(3, 6, 9));
    dialog->setCurrentColor(QColor(10, 200, 30));
    dialog->accept();
    expected.DpiLevels[3].Red = 10;
    expected.DpiLevels[3].Green = 200;
    expected.DpiLevels[3].Blue = 30;
    QTRY_COMPARE(held(), expected);
    find<SensorDPI>("frameDpi")->SetColor(QColor());
    QVERIFY(bar(3)->styleSheet().contains("rgb(10,200,30)") && bar(3)->styleSheet().contains("MaxB.png"));
    press(bar(0));
    QCOMPARE(dialog->currentColor(), QColor(0, 0, 0));
    QVERIFY(isWritten()); // a click that the mouse hasn't got yet would count more than its own level
    // With its level, its page or its record gone it would colour another level, or one of another mouse.
    VirtualMice::tell({"dpi", id, "2"});
    QTRY_VERIFY(!dialog->isVisible());
    QTRY_VERIFY(bar(2)->isChecked());
    press(bar(0));
    show(held());
    QVERIFY(!dialog->isVisible());
    press(bar(0));
    QVERIFY(dialog->isVisible());
    sensor->hide();
    QVERIFY(!dialog->isVisible());
    sensor->show();
    QCOMPARE(sensor->findChildren<QColorDialog *>().size(), 1);
    expected.DpiCurrentLevel = 0;
    QTRY_COMPARE(held(), expected);
}

/** Two levels alike: choosing the other one changes no value, so the next change shows on its card only. */
void SensorPageTest::firstChangeAfterChoosing()
{
    setLevels(6, 1);
    arm();
    slider()->setValue(1277); // level 4 has 1250
    QCOMPARE(card(1)->text(), QStringLiteral("1250"));
    press(card(1));
    QCOMPARE(slider()->value(), 1250); // choosing a level brings the slider back to it
    press(card(4));
    QTRY_COMPARE(int(held().DpiCurrentLevel), 4);
    slider()->setValue(2000);
    QCOMPARE(card(4)->text(), QStringLiteral("2000"));
    QCOMPARE(shownDpi(), 2000);
    QVERIFY(isWritten());
    QCOMPARE(dpiOfTheMouse(), 1250);
    slider()->setValue(2050);
    QTRY_COMPARE(dpiOfTheMouse(), 2050);
    // While all settings are replaced the page sends nothing of its own.
    const FlashDataMap before = working();
    const FlagScope bulk(BulkUpdateActive);
    slider()->setValue(2100);
    QCOMPARE(working(), before);
}

void SensorPageTest::markerDrag_data()
{
    const Rows<int, int, QPoint, int> row("count", "from", "place", "to");
    row("one to the right", 8, 1, QPoint(118 + 100, 170), 2);
    row("five to the left", 8, 6, QPoint(573 - 440, 170), 1);
    row("beyond the last level it goes back", 3, 1, QPoint(118 + 180, 170), 1);
    row("off the right end", 8, 6, QPoint(710, 170), 6);
    row("out of the frame", 8, 3, QPoint(500, 300), 3);
}

void SensorPageTest::markerDrag()
{
    QFETCH(int, count);
    QFETCH(int, from);
    QFETCH(QPoint, place);
    QFETCH(int, to);
    setLevels(count, from);
    dragMarker({50, 170}, {300, 170}); // a press beside it moves nothing
    FlashDataMap expected = held();
    expected.DpiCurrentLevel = std::uint8_t(to);
    dragMarker(MarkerDrag::mark(from) + QPoint(5, 12), place);
    QTRY_COMPARE(held(), expected);
    QCOMPARE(screenDifferences(window.get(), expected), QStringList());
    QVERIFY(qAbs(marker().x() - MarkerDrag::mark(to).x()) <= 1);
    QCOMPARE(marker().y(), MarkerDrag::mark(to).y());
    QVERIFY(isWritten());
}

/** At no moment does the mouse hold half of the exchange. */
void SensorPageTest::exchangeIsOneUpdate()
{
    setLevels(8, 7);
    const FlashDataMap before = held();
    find<QComboBox>("ChooseEvent")->setCurrentIndex(1);
    const FlashDataMap after = working();
    FlashDataMap now = before;
    QVERIFY(QTest::qWaitFor([&] { return (now = held()) != before; }));
    QCOMPARE(now, after);
    click("ReduceLevelA"); // what comes next isn't swallowed: no slider has moved
    QTRY_COMPARE(dpiOfTheMouse(), 28 * 50 - 50);
}

/** One prompt for one deed of the user, and a record as it was. */
void SensorPageTest::offline()
{
    setLevels(6, 3);
    VirtualMice::tell({"sleep", id});
    const FlashDataMap before = working();
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    press(bar(1));
    QCOMPARE(prompts.count(), 1);
    show(before);
    dragMarker(MarkerDrag::mark(3) + QPoint(5, 12), {300 + 100, 170});
    QCOMPARE(prompts.count(), 2);
    QCOMPARE(working(), before);
    QCOMPARE(held(), before);

    // While the prompt shows, the mouse comes back and the page is filled anew; the click behind it must not write.
    VirtualMice::tell({"wake", id});
    show(before);
    arm();
    QVERIFY(isWritten());
    for (QToolButton *choice : {card(1), bar(1)}) {
        VirtualMice::tell({"sleep", id});
        const auto connection = connect(postMsg(), &PostMsg::SigMouseOffLineo, this, [&] {
            VirtualMice::tell({"wake", id});
            show(before);
        });
        press(choice);
        disconnect(connection);
        QVERIFY(card(3)->isChecked());
        QCOMPARE(card(3)->text(), QString::number(24 * 50));
        QCOMPARE(slider()->value(), 24 * 50);
        QVERIFY(isWritten());
        QCOMPARE(held(), before);
    }
}

/** A drag with the mouse: the number follows, the value is sent when the handle is let go, and the last one arrives. */
void SensorPageTest::draggedSlider()
{
    slider()->setValue(5000);
    const int range = slider()->maximum() - slider()->minimum();
    const int handle = (slider()->width() - 5) * (5000 - slider()->minimum()) / range + 2;
    QTest::mousePress(slider(), Qt::LeftButton, {}, {handle, 10});
    QSet<int> seen;
    for (int x = handle; x <= 400; x += 5) {
        QMouseEvent move(QEvent::MouseMove, QPointF(x, 10), slider()->mapToGlobal(QPoint(x, 10)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(slider(), &move);
        QCOMPARE(shownDpi(), Snap(sensorCoding().DpiRange, slider()->sliderPosition()).value);
        seen << shownDpi();
    }
    QVERIFY(seen.size() > 40);
    QVERIFY(dpiOfTheMouse() < 6000);
    QTest::mouseRelease(slider(), Qt::LeftButton, {}, {400, 10});
    QTRY_COMPARE(dpiOfTheMouse(), shownDpi());
    QVERIFY(shownDpi() > 17000 && shownDpi() < 20000);
    QCOMPARE(card(held().DpiCurrentLevel)->text(), QString::number(shownDpi()));
    QVERIFY(isWritten());
}

HALVARION_TEST_MAIN(SensorPageTest)
#include "tst_sensorpage.moc"
