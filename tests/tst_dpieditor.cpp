#include "sensor/DpiCoding.h"
#include "sensor/MarkerDrag.h"
#include "sensor/SensorDPI.h"
#include "support/PageBench.h"
#include "support/Rows.h"
#include "support/Screen.h"
#include "support/SensorWidgets.h"
#include "support/TestHome.h"

#include <QColorDialog>
#include <QMouseEvent>
#include <QSet>

/** The DPI editor on the page, driven with the mouse; what the virtual mouse then does is what counts. */
class DpiEditorTest : public PageBench
{
    Q_OBJECT
private Q_SLOTS:
    void barChoosesALevelAndOpensTheColours();
    void firstChangeAfterChoosing();
    void markerDrag_data();
    void markerDrag();
    void exchangeIsOneUpdate();
    void offline();
    void offlineChoiceInterruptedByARefill();
    void draggedSlider();

private:
    QToolButton *card(int level) const { return find<QToolButton>(SensorWidgets::cards[std::size_t(level)]); }
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

// Levels -------------------------------------------------------------------------------------------------------------

void DpiEditorTest::barChoosesALevelAndOpensTheColours()
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
void DpiEditorTest::firstChangeAfterChoosing()
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

// The marker ---------------------------------------------------------------------------------------------------------

void DpiEditorTest::markerDrag_data()
{
    const Rows<int, int, QPoint, int> row("count", "from", "place", "to");
    row("one to the right", 8, 1, QPoint(118 + 100, 170), 2);
    row("five to the left", 8, 6, QPoint(573 - 440, 170), 1);
    row("beyond the last level it goes back", 3, 1, QPoint(118 + 180, 170), 1);
    row("off the right end", 8, 6, QPoint(710, 170), 6);
    row("out of the frame", 8, 3, QPoint(500, 300), 3);
}

void DpiEditorTest::markerDrag()
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
void DpiEditorTest::exchangeIsOneUpdate()
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

// Offline and silent -------------------------------------------------------------------------------------------------

/** One prompt for one deed of the user, and a record as it was. */
void DpiEditorTest::offline()
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
}

/** While the prompt shows, the mouse comes back and the page is filled anew; the click behind it must not write. */
void DpiEditorTest::offlineChoiceInterruptedByARefill()
{
    setLevels(6, 3);
    arm();
    QVERIFY(isWritten());
    const FlashDataMap before = held();
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

// The value of a level -----------------------------------------------------------------------------------------------

/** A drag with the mouse: the number follows, the value is sent when the handle is let go, and the last one arrives. */
void DpiEditorTest::draggedSlider()
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

HALVARION_TEST_MAIN(DpiEditorTest)
#include "tst_dpieditor.moc"
