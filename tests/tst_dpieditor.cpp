#include "app/hub/PostMsg.h"
#include "sensor/MarkerDrag.h"
#include "sensor/SensorDPI.h"
#include "support/DpiBench.h"
#include "support/TestHome.h"

#include <QColorDialog>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QSlider>
#include <QToolButton>

/** The DPI editor on the page, driven with the mouse; what the virtual mouse then does is what counts. */
class DpiEditorTest : public DpiBench
{
    Q_OBJECT
private Q_SLOTS:
    void cardChoosesALevel();
    void barChoosesALevelAndOpensTheColours();
    void firstChangeAfterChoosing();
    void markerDrag_data();
    void markerDrag();
    void markerLeavesTheFrame();
    void fewerLevels_data();
    void fewerLevels();
    void exchangeIsOneUpdate();
    void offline_data();
    void offline();
    void offlineChoiceInterruptedByARefill();
    void silentWhileUpdating_data();
    void silentWhileUpdating();
    void selectedLevelStandsOut();
};

// Levels -------------------------------------------------------------------------------------------------------------

void DpiEditorTest::cardChoosesALevel()
{
    setLevels(6, 1);
    for (int level : {4, 0, 5}) {
        click(card(level));
        QTRY_COMPARE(int(held().DpiCurrentLevel), level);
        QCOMPARE(dpiOfTheMouse(), (21 + level) * 50);
        QCOMPARE(shownDpi(), (21 + level) * 50);
        QCOMPARE(find<QSlider>("horizontalSliderC")->value(), shownDpi());
        QCOMPARE(marker(), MarkerDrag::mark(level));
        QVERIFY(bar(level)->isChecked());
    }
    // Choosing changed no value on the way.
    for (int level = 0; level < 8; ++level)
        QCOMPARE(int(held().DpiLevels[level].CodeX), 20 + level);
    QVERIFY(ConnectedMouse::isWritten(id));
    // A click on the chosen one brings the slider back to it.
    setSlider(1337);
    QCOMPARE(card(5)->text(), QStringLiteral("1300"));
    click(card(5));
    QCOMPARE(find<QSlider>("horizontalSliderC")->value(), 1300);
}

void DpiEditorTest::barChoosesALevelAndOpensTheColours()
{
    setLevels(6, 1);
    click(bar(3));
    QTRY_COMPARE(int(held().DpiCurrentLevel), 3);
    auto *const dialog = find<QColorDialog>("");
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->currentColor(), QColor(3, 6, 9));
    dialog->setCurrentColor(QColor(10, 200, 30));
    dialog->accept();
    QTRY_COMPARE(int(held().DpiLevels[3].Green), 200);
    QCOMPARE(int(held().DpiLevels[3].Red), 10);
    QCOMPARE(int(held().DpiLevels[3].Blue), 30);
    QVERIFY(bar(3)->styleSheet().contains("rgb(10,200,30)"));
    find<SensorDPI>("frameDpi")->SetColor(QColor());
    QVERIFY(bar(3)->styleSheet().contains("MaxB.png"));
    QVERIFY(ConnectedMouse::isWritten(id));
    QCOMPARE(int(held().DpiLevels[3].Green), 200);
    click(bar(0));
    QCOMPARE(dialog->currentColor(), QColor(0, 0, 0));
    // With its page or its record gone it would colour a level of another mouse.
    page->SlotUpDataSenSorUIB(held());
    QVERIFY(!dialog->isVisible());
    click(bar(0));
    QVERIFY(dialog->isVisible());
    page->hide();
    QVERIFY(!dialog->isVisible());
    QCOMPARE(page->findChildren<QColorDialog *>().size(), 1);
    QVERIFY(ConnectedMouse::isWritten(id));
}

/** Two levels alike: choosing the other one changes no value, so the next change shows on its card only. */
void DpiEditorTest::firstChangeAfterChoosing()
{
    setLevels(6, 1);
    arm();
    setSlider(1250); // as level 4 has it
    click(card(4));
    QTRY_COMPARE(int(held().DpiCurrentLevel), 4);
    setSlider(2000);
    QCOMPARE(card(4)->text(), QStringLiteral("2000"));
    QCOMPARE(shownDpi(), 2000);
    QVERIFY(ConnectedMouse::isWritten(id));
    QCOMPARE(dpiOfTheMouse(), 1250);
    setSlider(2050);
    QTRY_COMPARE(dpiOfTheMouse(), 2050);
}

// The marker ---------------------------------------------------------------------------------------------------------

void DpiEditorTest::markerDrag_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("to");
    QTest::newRow("one to the right") << 8 << 1 << 118 + 100 << 2;
    QTest::newRow("five to the left") << 8 << 6 << 573 - 440 << 1;
    QTest::newRow("from the first to the last") << 8 << 0 << 27 + 640 << 7;
    QTest::newRow("between two levels it goes back") << 8 << 1 << 118 + 60 << 1;
    QTest::newRow("beyond the last level it goes back") << 3 << 1 << 118 + 180 << 1;
    QTest::newRow("to the last of three") << 3 << 0 << 27 + 200 << 2;
    QTest::newRow("off the right end") << 8 << 6 << 710 << 6;
}

void DpiEditorTest::markerDrag()
{
    QFETCH(int, count);
    QFETCH(int, from);
    QFETCH(int, x);
    QFETCH(int, to);
    setLevels(count, from);
    const FlashDataMap before = held();
    dragMarker(MarkerDrag::mark(from) + QPoint(5, 12), {x, 170});
    QTRY_COMPARE(int(held().DpiCurrentLevel), to);
    QVERIFY(qAbs(marker().x() - MarkerDrag::mark(to).x()) <= 1);
    QCOMPARE(marker().y(), 154);
    QVERIFY(card(to)->isChecked());
    QCOMPARE(shownDpi(), (21 + to) * 50);
    FlashDataMap expected = before;
    expected.DpiCurrentLevel = std::uint8_t(to);
    QVERIFY(ConnectedMouse::isWritten(id));
    QVERIFY(same(held(), expected));
}

void DpiEditorTest::markerLeavesTheFrame()
{
    setLevels(8, 3);
    dragMarker(MarkerDrag::mark(3) + QPoint(10, 10), {500, 300});
    QCOMPARE(marker(), MarkerDrag::mark(3));
    // A press beside it moves nothing.
    dragMarker({50, 170}, {300, 170});
    QCOMPARE(marker(), MarkerDrag::mark(3));
    QCOMPARE(int(held().DpiCurrentLevel), 3);
}

// The number of levels -----------------------------------------------------------------------------------------------

void DpiEditorTest::fewerLevels_data()
{
    QTest::addColumn<int>("active");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("expectedActive");
    QTest::newRow("the active level stays") << 1 << 3 << 1;
    QTest::newRow("the active level is the last") << 2 << 3 << 2;
    QTest::newRow("the active level gives way") << 4 << 3 << 2;
    QTest::newRow("down to one") << 5 << 1 << 0;
    QTest::newRow("more") << 1 << 8 << 1;
}

void DpiEditorTest::fewerLevels()
{
    QFETCH(int, active);
    QFETCH(int, count);
    QFETCH(int, expectedActive);
    setLevels(6, active);
    const FlashDataMap before = held();
    find<QComboBox>("ChooseEvent")->setCurrentIndex(count - 1);
    QTRY_COMPARE(int(held().DpiLevelCount), count);
    QVERIFY(ConnectedMouse::isWritten(id));
    FlashDataMap expected = before;
    expected.DpiLevelCount = std::uint8_t(count);
    expected.DpiCurrentLevel = std::uint8_t(expectedActive);
    std::swap(expected.DpiLevels[active], expected.DpiLevels[expectedActive]);
    QVERIFY(same(held(), expected));
    // The mouse runs as before: the level took its value along, and its colour.
    QCOMPARE(dpiOfTheMouse(), (21 + active) * 50);
    QCOMPARE(shownDpi(), (21 + active) * 50);
    QCOMPARE(card(expectedActive)->text(), QString::number((21 + active) * 50));
    QVERIFY(card(expectedActive)->isChecked() && bar(expectedActive)->isChecked());
    QVERIFY(bar(expectedActive)
                ->styleSheet()
                .contains(QStringLiteral("rgb(%1,%2,%3)").arg(active).arg(2 * active).arg(3 * active)));
    QCOMPARE(marker(), MarkerDrag::mark(expectedActive));
    for (int level = 0; level < 8; ++level)
        QCOMPARE(card(level)->isVisible(), level < count);
    // What the page shows is what a new read gives.
    QStringList shown;
    for (int level = 0; level < 8; ++level)
        shown << card(level)->text();
    page->SlotUpDataSenSorUIB(held());
    for (int level = 0; level < 8; ++level)
        QCOMPARE(card(level)->text(), shown.at(level));
}

/** At no moment does the mouse hold half of the exchange. */
void DpiEditorTest::exchangeIsOneUpdate()
{
    setLevels(8, 7);
    const FlashDataMap before = held();
    find<QComboBox>("ChooseEvent")->setCurrentIndex(1);
    const FlashDataMap after = WorkingRecord::instance().copy();
    QVERIFY(!same(before, after));
    FlashDataMap now = before;
    const QDeadlineTimer deadline(5000);
    while (!same(now, after) && !deadline.hasExpired()) {
        now = held();
        QVERIFY(same(now, before) || same(now, after));
    }
    QVERIFY(same(now, after));
    QCOMPARE(dpiOfTheMouse(), 28 * 50);
}

// Offline and silent -------------------------------------------------------------------------------------------------

void DpiEditorTest::offline_data()
{
    QTest::addColumn<QString>("what");
    QTest::newRow("card") << "card";
    QTest::newRow("bar") << "bar";
    QTest::newRow("step up") << "AddLevelA";
    QTest::newRow("step down") << "ReduceLevelA";
    QTest::newRow("slider") << "slider";
    QTest::newRow("marker") << "marker";
    QTest::newRow("fewer levels") << "count";
    QTest::newRow("fewer levels with an exchange") << "exchange";
    QTest::newRow("colour") << "colour";
}

/** One prompt for one deed of the user, and a record as it was. */
void DpiEditorTest::offline()
{
    QFETCH(QString, what);
    setLevels(6, 3);
    arm();
    QVERIFY(ConnectedMouse::isWritten(id));
    VirtualMice::tell({"sleep", id});
    const FlashDataMap before = WorkingRecord::instance().copy();
    const int value = shownDpi();
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    if (what == "card")
        click(card(1));
    else if (what == "bar")
        click(bar(1));
    else if (what == "slider")
        setSlider(1633);
    else if (what == "marker")
        dragMarker(MarkerDrag::mark(3) + QPoint(5, 12), {300 + 100, 170});
    else if (what == "count")
        find<QComboBox>("ChooseEvent")->setCurrentIndex(4);
    else if (what == "exchange")
        find<QComboBox>("ChooseEvent")->setCurrentIndex(1);
    else if (what == "colour")
        find<SensorDPI>("frameDpi")->SetColor(Qt::red);
    else
        click(find<QToolButton>(what));
    QCOMPARE(prompts.count(), 1);
    QCOMPARE(prompts.first().first().toInt(), 0);
    QVERIFY(same(WorkingRecord::instance().copy(), before));
    if (what == "slider")
        QCOMPARE(shownDpi(), 1633); // unsnapped: nothing was done with it
    else if (what.endsWith("LevelA"))
        QCOMPARE(shownDpi(), value);
    else if (what == "card")
        QVERIFY(card(1)->isChecked());
    QVERIFY(same(VirtualMice::record(id), before));
}

/** While the prompt shows, the mouse comes back and the page is filled anew; the click behind it must not write. */
void DpiEditorTest::offlineChoiceInterruptedByARefill()
{
    setLevels(6, 3);
    arm();
    QVERIFY(ConnectedMouse::isWritten(id));
    const FlashDataMap before = held();
    for (QToolButton *choice : {card(1), bar(1)}) {
        VirtualMice::tell({"sleep", id});
        const auto connection = connect(postMsg(), &PostMsg::SigMouseOffLineo, this, [&] {
            VirtualMice::tell({"wake", id});
            page->SlotUpDataSenSorUIB(before);
        });
        click(choice);
        disconnect(connection);
        QVERIFY(card(3)->isChecked());
        QCOMPARE(card(3)->text(), QString::number(24 * 50));
        QCOMPARE(find<QSlider>("horizontalSliderC")->value(), 24 * 50);
        QVERIFY(ConnectedMouse::isWritten(id));
        QVERIFY(same(held(), before));
    }
}

void DpiEditorTest::silentWhileUpdating_data()
{
    QTest::addColumn<QString>("flag");
    QTest::newRow("writes are off") << "writes";
    QTest::newRow("a record is being shown") << "updating";
    QTest::newRow("a bulk update runs") << "bulk";
}

void DpiEditorTest::silentWhileUpdating()
{
    QFETCH(QString, flag);
    setLevels(6, 3);
    arm();
    QVERIFY(ConnectedMouse::isWritten(id));
    const FlashDataMap before = held();
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    const FlagScope set(flag == "writes" ? DeviceWritesEnabled
                        : flag == "bulk" ? BulkUpdateActive
                                         : SensorUiUpdating,
                        flag != "writes");
    setSlider(1700);
    setSlider(1750);
    QCOMPARE(shownDpi(), 1750);
    if (flag != "bulk") {
        card(1)->setChecked(true);
        find<SensorDPI>("frameDpi")->SetColor(Qt::red);
        find<QComboBox>("ChooseEvent")->setCurrentIndex(0);
    }
    QVERIFY(same(WorkingRecord::instance().copy(), before));
    QVERIFY(ConnectedMouse::isWritten(id));
    QCOMPARE(prompts.count(), 0);
}

void DpiEditorTest::selectedLevelStandsOut()
{
    setLevels(8, 0);
    for (int chosen : {0, 5, 7}) {
        click(card(chosen));
        for (int level = 0; level < 8; ++level) {
            const bool isChosen = level == chosen;
            const QRect rest(15 + 91 * level, 99, 54, 56);
            const QRect barRest(17 + 91 * level, 141, 50, 12);
            QCOMPARE(card(level)->geometry(), isChosen ? QRect(rest.topLeft() - QPoint(7, 7), QSize(68, 70)) : rest);
            QCOMPARE(bar(level)->geometry(),
                     isChosen ? QRect(barRest.topLeft() + QPoint(-8, 6), QSize(66, 14)) : barRest);
            QCOMPARE(bar(level)->styleSheet().contains("MaxB.png"), isChosen);
        }
    }
    // The colour is really painted: the middle of a bar is of its level's colour.
    const QImage picture = bar(7)->grab().toImage();
    find<SensorDPI>("frameDpi")->SetColor(QColor(250, 5, 5));
    const QColor middle = bar(7)->grab().toImage().pixelColor(33, 7);
    QVERIFY(middle.red() > 200 && middle.green() < 60 && middle.blue() < 60);
    QVERIFY(picture.pixelColor(33, 7) != middle);
}

HALVARION_TEST_MAIN(DpiEditorTest)
#include "tst_dpieditor.moc"
