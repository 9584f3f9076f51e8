#include "sensor/DpiCoding.h"
#include "support/DpiBench.h"
#include "support/SensorModel.h"
#include "support/TestHome.h"

#include <QMouseEvent>
#include <QSet>
#include <QSlider>

/** The value of a level, from the slider and the step buttons to what the sensor then runs at. */
class DpiValuesTest : public DpiBench
{
    Q_OBJECT
private Q_SLOTS:
    void everyValueReachesTheSensor_data();
    void everyValueReachesTheSensor();
    void draggedSlider();
    void stepButtons_data();
    void stepButtons();
};

void DpiValuesTest::everyValueReachesTheSensor_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("values");
    QTest::newRow("Q1") << 0 << 360;
    QTest::newRow("Q2") << 1 << 93;
}

/** Every DPI value that the slider can reach is what the sensor then runs at. A round gives one to each level. */
void DpiValuesTest::everyValueReachesTheSensor()
{
    QFETCH(int, model);
    QFETCH(int, values);
    connectModel(model);
    const auto *const slider = find<QSlider>("horizontalSliderC");
    QList<int> reachable;
    for (int dpi = slider->minimum(); dpi <= slider->maximum(); dpi += 50) {
        if (Snap(sensorCoding().DpiRange, dpi).value == dpi)
            reachable << dpi;
    }
    QCOMPARE(reachable.size(), values);
    const int levels = held().DpiLevelCount;
    for (int first = 0; first < values; first += levels) {
        const QList<int> round = reachable.mid(first, levels);
        for (int level = 0; level < round.size(); ++level) {
            click(card(level));
            arm();
            setSlider(round.at(level));
            QCOMPARE(shownDpi(), round.at(level));
        }
        QVERIFY(ConnectedMouse::isWritten(id));
        QCOMPARE(dpiOfTheMouse(), round.last());
        const FlashDataMap flash = held();
        for (int level = 0; level < round.size(); ++level) {
            const DpiLevel &stored = flash.DpiLevels[level];
            QCOMPARE(dpiOnTheMouse(sensorCoding().SensorName, stored.CodeX, stored.Flags), round.at(level));
            QCOMPARE(stored.CodeY, stored.CodeX);
        }
    }
}

/** A drag with the mouse: the number follows, the value is sent when the handle is let go, and the last one arrives. */
void DpiValuesTest::draggedSlider()
{
    auto *const slider = find<QSlider>("horizontalSliderC");
    setSlider(5000);
    const int handle = (slider->width() - 5) * (5000 - slider->minimum()) / (slider->maximum() - slider->minimum()) + 2;
    QTest::mousePress(slider, Qt::LeftButton, {}, {handle, 10});
    QSet<int> seen;
    for (int x = handle; x <= 400; x += 5) {
        QMouseEvent move(QEvent::MouseMove, QPointF(x, 10), slider->mapToGlobal(QPoint(x, 10)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(slider, &move);
        QCOMPARE(shownDpi(), Snap(sensorCoding().DpiRange, slider->sliderPosition()).value);
        seen << shownDpi();
    }
    QVERIFY(seen.size() > 40);
    const int before = dpiOfTheMouse();
    QTest::mouseRelease(slider, Qt::LeftButton, {}, {400, 10});
    QTRY_COMPARE(dpiOfTheMouse(), shownDpi());
    QVERIFY(shownDpi() > 17000 && shownDpi() < 20000 && before < 6000);
    QCOMPARE(card(held().DpiCurrentLevel)->text(), QString::number(shownDpi()));
    QVERIFY(ConnectedMouse::isWritten(id));
}

void DpiValuesTest::stepButtons_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("from");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("to");
    QTest::newRow("up") << 0 << 1600 << "AddLevelA" << 1650;
    QTest::newRow("down") << 0 << 1600 << "ReduceLevelA" << 1550;
    QTest::newRow("up over the gap") << 0 << 10000 << "AddLevelA" << 10100;
    QTest::newRow("down over the gap") << 0 << 10100 << "ReduceLevelA" << 10000;
    QTest::newRow("up at the end") << 0 << 26000 << "AddLevelA" << 26000;
    QTest::newRow("down at the start") << 0 << 50 << "ReduceLevelA" << 50;
    QTest::newRow("Q2 up over the gap") << 1 << 6200 << "AddLevelA" << 6400;
    QTest::newRow("Q2 up in the upper row") << 1 << 6400 << "AddLevelA" << 6600;
    QTest::newRow("Q2 down at the start") << 1 << 100 << "ReduceLevelA" << 100;
}

void DpiValuesTest::stepButtons()
{
    QFETCH(int, model);
    QFETCH(int, from);
    QFETCH(QString, button);
    QFETCH(int, to);
    connectModel(model);
    arm();
    setSlider(from);
    QTRY_COMPARE(dpiOfTheMouse(), from);
    click(find<QToolButton>(button));
    QCOMPARE(shownDpi(), to);
    QTRY_COMPARE(dpiOfTheMouse(), to);
    QVERIFY(ConnectedMouse::isWritten(id));
}

HALVARION_TEST_MAIN(DpiValuesTest)
#include "tst_dpivalues.moc"
