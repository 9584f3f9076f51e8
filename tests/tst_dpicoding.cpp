#include "productdata/ConfigStore.h"
#include "sensor/DpiCoding.h"
#include "sensor/MarkerDrag.h"
#include "support/SensorModel.h"
#include "support/TestHome.h"

#include <QRandomGenerator>
#include <QRegularExpression>

namespace {

DpiRangeTable table(const QString &list)
{
    DpiRangeTable read;
    if (!parseDpiRange(list.split(','), read))
        qFatal("bad range %s", qPrintable(list));
    return read;
}

SensorCoding coding(const QString &sensor, const QString &range, const DriverSensor &driver = {})
{
    return {sensor, driver, table(range)};
}

/** "key=value key=value": what was read of a file of sensor facts. */
QString keysOf(const DriverSensor &driver)
{
    QStringList all;
    for (int index = 0; index < driver.DriverKeys.size(); ++index)
        all << driver.DriverKeys.at(index) + '=' + QString::number(driver.DriverValues.at(index));
    return all.join(' ');
}

const QString q1Range = QStringLiteral("50,10000,50,10100,26000,100,0x00");
const QString q2Range = QStringLiteral("100,6200,100,6400,12400,200,0x11");
const QString twoMeetingRows = QStringLiteral("50,1000,50,1000,2000,100,0x00");
const QString fourRows = QStringLiteral("50,2000,50,2100,4000,100,4100,8000,100,8200,16000,200,0x33");

} // namespace

/** The rules that turn a DPI value into the bytes of a level and back, and those of the marker. */
class DpiCodingTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void known_data();
    void known();
    void everyValueOfTheSlider_data();
    void everyValueOfTheSlider();
    void shippedSensorsAreCoveredInFull();
    void snapping_data();
    void snapping();
    void stepping_data();
    void stepping();
    void badRange_data();
    void badRange();
    void sensorFile_data();
    void sensorFile();
    void rubbishFile();
    void features();
    void marker_data();
    void marker();
    void everyMarkerJumpEndsOnALevel();
};

void DpiCodingTest::known_data()
{
    QTest::addColumn<QString>("sensor");
    QTest::addColumn<QString>("range");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("dpi");
    QTest::addColumn<int>("currentFlags");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("decoded");
    const QByteArray keys = "#define SENSOR_77_DPI_400\t0x20\n#define SENSOR_77_DPI_800\t0x21\n";
    QTest::newRow("plain") << "" << q1Range << QByteArray() << 1600 << 0 << 31 << 0 << 1600;
    QTest::newRow("ten bits") << "3395" << q1Range << QByteArray() << 15000 << 0 << 43 << 0x44 << 15000;
    QTest::newRow("ten bits, the end") << "3395" << q1Range << QByteArray() << 26000 << 0 << 7 << 0x88 << 26000;
    QTest::newRow("eight bits are cut off") << "3212" << q1Range << QByteArray() << 15000 << 0 << 43 << 0 << 2200;
    QTest::newRow("keys") << "77" << q2Range << keys << 800 << 0 << 0x21 << 0 << 800;
    QTest::newRow("keys, doubled above the first row")
        << "77"
        << "50,700,50,800,1600,100,0x11" << keys << 800 << 0 << 0x20 << 0x11 << 800;
    QTest::newRow("no such key") << "77" << q2Range << keys << 600 << 0 << 12 << 0 << 0;
    QTest::newRow("no such key, wide steps held before") << "77" << q2Range << keys << 600 << 0x22 << 6 << 0 << 0;
    QTest::newRow("keys of another sensor") << "78" << q1Range << keys << 800 << 0 << 15 << 0 << 800;
    QTest::newRow("wide steps above the first row")
        << "A9"
        << "50,1000,50,1100,3000,100,0x22" << QByteArray() << 1100 << 0 << 10 << 0x22 << 1100;
    QTest::newRow("wide steps, still in the first row")
        << "A9"
        << "50,1000,50,1100,3000,100,0x22" << QByteArray() << 1000 << 0 << 19 << 0 << 1000;
    QTest::newRow("four rows: second") << "A9" << fourRows << QByteArray() << 2100 << 0 << 41 << 0 << 2100;
    QTest::newRow("four rows: third") << "A9" << fourRows << QByteArray() << 4100 << 0 << 40 << 0x22 << 4100;
    QTest::newRow("four rows: fourth") << "A9" << fourRows << QByteArray() << 16000 << 0 << 159 << 0x11 << 16000;
    QTest::newRow("four rows: above all") << "A9" << fourRows << QByteArray() << 16200 << 0 << 80 << 0x33 << 16200;
}

void DpiCodingTest::known()
{
    QFETCH(int, dpi);
    QFETCH(QString, sensor);
    QFETCH(QString, range);
    QFETCH(QByteArray, file);
    QFETCH(int, currentFlags);
    const SensorCoding sensorFacts = coding(sensor, range, parseDriverSensor(file));
    const DpiCode coded = encodeDpi(sensorFacts, dpi, static_cast<std::uint8_t>(currentFlags));
    QTEST(int(coded.code), "code");
    QTEST(int(coded.flags), "flags");
    QTEST(decodeDpi(sensorFacts, coded), "decoded");
}

void DpiCodingTest::everyValueOfTheSlider_data()
{
    QTest::addColumn<QString>("sensor");
    QTest::addColumn<QString>("range");
    QTest::addColumn<int>("values"); ///< different ones that the slider can reach
    QTest::newRow("Q1") << ConfigStore::instance()->value("Drive1", "Sensor")
                        << ConfigStore::instance()->valueList("Drive1", "DPIRange").join(',') << 200 + 160;
    QTest::newRow("Q2") << ConfigStore::instance()->value("Drive2", "Sensor")
                        << ConfigStore::instance()->valueList("Drive2", "DPIRange").join(',') << 62 + 31;
    QTest::newRow("wide steps") << "A9"
                                << "50,1000,50,1100,12000,100,0x22" << 20 + 110;
    QTest::newRow("doubled") << "A9"
                             << "50,1000,50,1100,12000,100,0x11" << 20 + 110;
    QTest::newRow("four rows") << "A9" << fourRows << 40 + 20 + 40 + 40;
}

void DpiCodingTest::everyValueOfTheSlider()
{
    QFETCH(QString, sensor);
    QFETCH(QString, range);
    const SensorCoding sensorFacts = coding(sensor, range, readDriverSensor());
    QSet<int> reached;
    for (int value = sensorFacts.DpiRange.minimum(); value <= sensorFacts.DpiRange.maximum(); ++value) {
        const int dpi = Snap(sensorFacts.DpiRange, value).value;
        reached << dpi;
        const DpiCode coded = encodeDpi(sensorFacts, dpi, 0);
        QCOMPARE(dpiOnTheMouse(sensor, coded.code, coded.flags), dpi);
        QCOMPARE(decodeDpi(sensorFacts, coded), dpi);
        QCOMPARE(coded.flags >> 4, coded.flags & 0x0F); // both axes alike
    }
    QTEST(int(reached.size()), "values");
}

void DpiCodingTest::shippedSensorsAreCoveredInFull()
{
    const DriverSensor driver = readDriverSensor();
    QCOMPARE(driver.DriverKeys.size(), 124);
    QCOMPARE(driver.DriverValues.size(), 124);
    for (int dpi = 100; dpi <= 12400; dpi += 100)
        QCOMPARE(driver.code(QStringLiteral("SENSOR_3311_DPI_%1").arg(dpi)), dpi / 100 + 3);
    QVERIFY(!driver.hasKeysOf("3395"));
    for (int feature = 0; feature < DriverSensor::featureCount; ++feature)
        QVERIFY2(driver.supports(DriverSensor::Feature(feature), "3395"), qPrintable(QString::number(feature)));
    QVERIFY(driver.supports(DriverSensor::Ripple, "3311") && driver.supports(DriverSensor::LiftOff, "3311"));
    QVERIFY(!driver.supports(DriverSensor::SensorModeSelection, "3311"));
    QVERIFY(!driver.supports(DriverSensor::FixLine, "3311") && !driver.supports(DriverSensor::MotionSync, "3311"));
}

void DpiCodingTest::snapping_data()
{
    QTest::addColumn<QString>("range");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("snapped");
    QTest::addColumn<int>("pageStep");
    QTest::newRow("on a step") << q1Range << 1600 << 1600 << 50;
    QTest::newRow("down to the step") << q1Range << 1649 << 1600 << 50;
    QTest::newRow("last of the first row") << q1Range << 10000 << 10000 << 50;
    QTest::newRow("the gap jumps up") << q1Range << 10001 << 10100 << 100;
    QTest::newRow("the gap's end too") << q1Range << 10099 << 10100 << 100;
    QTest::newRow("second row") << q1Range << 10199 << 10100 << 100;
    QTest::newRow("the end") << q1Range << 26000 << 26000 << 100;
    QTest::newRow("of the value itself, not from Min") << "70,1000,50,0x00" << 99 << 50 << 50;
    QTest::newRow("above all rows") << q1Range << 26001 << 26001 << 0;
    QTest::newRow("below all rows") << q1Range << 49 << 49 << 0;
    QTest::newRow("where rows meet the lower one counts") << twoMeetingRows << 1000 << 1000 << 50;
}

void DpiCodingTest::snapping()
{
    QFETCH(QString, range);
    QFETCH(int, value);
    const SnappedDpi found = Snap(table(range), value);
    QTEST(found.value, "snapped");
    QTEST(found.pageStep, "pageStep");
}

void DpiCodingTest::stepping_data()
{
    QTest::addColumn<QString>("range");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("up");
    QTest::addColumn<int>("down");
    QTest::newRow("inside") << q1Range << 1600 << 1650 << 1550;
    QTest::newRow("the first") << q1Range << 50 << 100 << 0;
    QTest::newRow("last of the first row") << q1Range << 10000 << 10100 << 9950;
    QTest::newRow("in the gap") << q1Range << 10050 << 10100 << 10100;
    QTest::newRow("first of the second row") << q1Range << 10100 << 10200 << 10000;
    QTest::newRow("past the end") << q1Range << 26000 << 26100 << 25900;
    QTest::newRow("outside") << q1Range << 30000 << 30000 << 30000;
    QTest::newRow("where rows meet") << twoMeetingRows << 1000 << 1100 << 950;
}

void DpiCodingTest::stepping()
{
    QFETCH(QString, range);
    QFETCH(int, value);
    QTEST(stepUp(table(range), value), "up");
    QTEST(stepDown(table(range), value), "down");
}

void DpiCodingTest::badRange_data()
{
    QTest::addColumn<QString>("list");
    QTest::newRow("none") << "";
    QTest::newRow("flags alone") << "0x00";
    QTest::newRow("half a row") << "50,100,0x00";
    QTest::newRow("five rows") << "1,2,1,3,4,1,5,6,1,7,8,1,9,10,1,0x00";
    QTest::newRow("a step of 0") << "50,10000,0,0x00";
    QTest::newRow("a negative step") << "50,10000,-50,0x00";
    QTest::newRow("letters") << "50,many,50,0x00";
    QTest::newRow("flags that are none") << "50,10000,50,x";
    QTest::newRow("Min above Max") << "1000,50,50,0x00";
    QTest::newRow("falling rows") << "10100,26000,100,50,10000,50,0x00";
    QTest::newRow("overlapping rows") << "50,1000,50,900,2000,50,0x00";
    QTest::newRow("beyond an int") << "50,99999999999,50,0x00";
}

void DpiCodingTest::badRange()
{
    QFETCH(QString, list);
    DpiRangeTable held = table(q2Range);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^DPIRange: "));
    QVERIFY(!parseDpiRange(list.split(','), held));
    QCOMPARE(held.DpiRangeCount, 2);
    QCOMPARE(held.DpiRangeFlags, 0x11);
    QCOMPARE(held.minimum(), 100);
    QCOMPARE(held.maximum(), 12400);
}

void DpiCodingTest::sensorFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("ripple");
    QTest::newRow("hexadecimal") << QByteArray("#define A_DPI_5\t0x1F\n") << "A_DPI_5=31"
                                 << "";
    QTest::newRow("Windows line ending") << QByteArray("#define A_DPI_5\t0x1F\r\n") << "A_DPI_5=31"
                                         << "";
    QTest::newRow("decimal with a comment") << QByteArray("#define A_DPI_5\t12 //0x0C\n") << "A_DPI_5=12"
                                            << "";
    QTest::newRow("two tabs before the decimal") << QByteArray("#define A\t\t12 //x\n") << "A=12"
                                                 << "";
    QTest::newRow("file order") << QByteArray("#define B\t2\n#define A\t1 //x\n") << "B=2 A=1"
                                << "";
    QTest::newRow("a last line without ending") << QByteArray("#define A\t0x1F") << ""
                                                << "";
    QTest::newRow("a comment with a blank") << QByteArray("#define A\t12 // x\n") << ""
                                            << "";
    QTest::newRow("no tab") << QByteArray("#define A 12\n#define B\n") << ""
                            << "";
    QTest::newRow("no define") << QByteArray("#undef A\t0x12\n") << ""
                               << "";
    QTest::newRow("no number") << QByteArray("#define A\t0xZZ\n#define B\t-1 //x\n#define C\t3\n") << "C=3"
                               << "";
    QTest::newRow("feature") << QByteArray("#define SUPPORT_RIPPLE\t3395,3311\r\n") << ""
                             << "3395,3311";
    QTest::newRow("feature on the last line") << QByteArray("#define SUPPORT_RIPPLE\t3395") << ""
                                              << "3395";
    QTest::newRow("feature without a value") << QByteArray("#define SUPPORT_RIPPLE\n") << ""
                                             << "";
    QTest::newRow("the first name that occurs") << QByteArray("#define SUPPORT_FIXLINE_SUPPORT_RIPPLE\t1\n") << ""
                                                << "1";
}

void DpiCodingTest::sensorFile()
{
    QFETCH(QByteArray, text);
    const DriverSensor driver = parseDriverSensor(text);
    QTEST(keysOf(driver), "keys");
    QTEST(driver.Support[DriverSensor::Ripple], "ripple");
}

/** Whatever the file holds, what is read stays in step and what was meant is still found. */
void DpiCodingTest::rubbishFile()
{
    QRandomGenerator random(20240501);
    constexpr char letters[] = "#define \t\n\r/0x19AISUPPORT_\0\xff\x80";
    const QByteArray alphabet(letters, sizeof letters - 1);
    for (int round = 0; round < 2000; ++round) {
        QByteArray text;
        for (int length = random.bounded(300); length > 0; --length)
            text += alphabet.at(random.bounded(alphabet.size()));
        text += "\n#define SENSOR_77_DPI_400\t0x20\n";
        const DriverSensor driver = parseDriverSensor(text);
        QCOMPARE(driver.DriverKeys.size(), driver.DriverValues.size());
        QCOMPARE(driver.code("SENSOR_77_DPI_400"), 0x20);
        QCOMPARE(driver.dpi("77", 0x20), 400);
    }
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a line of 5000000 bytes"));
    const DriverSensor driver = parseDriverSensor(QByteArray(4999999, ' ') + "\n#define A\t0x20\n");
    QCOMPARE(keysOf(driver), QStringLiteral("A=32"));
}

void DpiCodingTest::features()
{
    const DriverSensor driver = parseDriverSensor("#define SUPPORT_RIPPLE\t3395pro,PAW\n");
    QVERIFY(driver.supports(DriverSensor::Ripple, "3395pro"));
    QVERIFY2(driver.supports(DriverSensor::Ripple, "3395"), "a name inside a longer one counts");
    QVERIFY2(!driver.supports(DriverSensor::Ripple, "paw"), "the case counts");
    QVERIFY2(!driver.supports(DriverSensor::Ripple, ""), "no sensor has no features");
    QVERIFY(!driver.supports(DriverSensor::LiftOff, "3395"));
}

void DpiCodingTest::marker_data()
{
    QTest::addColumn<int>("active");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("drop");
    QTest::addColumn<int>("levels");
    QTest::addColumn<int>("pixels");
    using MarkerDrag::Drop;
    const auto row = [](const char *name, int active, int last, int x, Drop drop, int levels = 0, int pixels = 0) {
        QTest::newRow(name) << active << last << x << int(drop) << levels << pixels;
    };
    row("one right, from", 1, 7, 118 + 78, Drop::Moved, 1, 91);
    row("one right, to", 1, 7, 118 + 129, Drop::Moved, 1, 91);
    row("one right, short of it", 1, 7, 118 + 77, Drop::BetweenLevels);
    row("one right, beyond it", 1, 7, 118 + 130, Drop::BetweenLevels);
    row("one left, from", 1, 7, 118 - 51, Drop::Moved, -1, -91);
    row("one left, to", 1, 7, 118 - 102, Drop::Moved, -1, -91);
    row("two right", 2, 7, 209 + 168, Drop::Moved, 2, 182);
    row("two left", 3, 7, 300 - 192, Drop::Moved, -2, -182);
    row("three right", 0, 7, 27 + 317, Drop::Moved, 3, 273);
    row("three left", 6, 7, 573 - 284, Drop::Moved, -3, -273);
    row("four right", 0, 7, 27 + 361, Drop::Moved, 4, 364);
    row("four left", 5, 7, 483 - 369, Drop::Moved, -4, -364);
    row("five right", 0, 7, 27 + 443, Drop::Moved, 5, 455);
    row("five left", 7, 7, 664 - 411, Drop::Moved, -5, -455);
    row("six right", 1, 7, 118 + 538, Drop::Moved, 6, 546);
    row("six left", 7, 7, 664 - 504, Drop::Moved, -6, -546);
    row("seven right", 0, 7, 27 + 669, Drop::Moved, 7, 637);
    row("seven left", 7, 7, 664 - 646, Drop::Moved, -7, -637);
    row("where it was", 3, 7, 300 + 15, Drop::BetweenLevels);
    row("left end", 1, 7, 14, Drop::Missed);
    row("right end", 6, 7, 707, Drop::Missed);
    row("last of eight has no limit of its own", 6, 7, 706, Drop::BetweenLevels);
    row("at the limit of seven levels", 5, 6, 612, Drop::Moved, 1, 91);
    row("beyond the limit of seven levels", 5, 6, 613, Drop::BeyondLastLevel);
    row("beyond the limit of one level", 0, 0, 70, Drop::BeyondLastLevel);
    row("at the limit of one level", 0, 0, 69, Drop::BetweenLevels);
    row("no level is active", -1, 7, 300, Drop::Missed);
}

void DpiCodingTest::marker()
{
    QFETCH(int, active);
    QFETCH(int, last);
    QFETCH(int, x);
    const QPoint point(x, 170);
    const QRect held(x - 10, 160, 30, 30);
    const MarkerDrag::Result result = MarkerDrag::dropAt(point, held, active, last);
    QTEST(int(result.drop), "drop");
    if (result.drop == MarkerDrag::Drop::Moved) {
        QTEST(result.jump.levels, "levels");
        QTEST(result.jump.pixels, "pixels");
    }
    QCOMPARE(MarkerDrag::dropAt(point, held.translated(100, 0), active, last).drop, MarkerDrag::Drop::Missed);
}

/** Wherever it is let go, the marker ends within a pixel of the mark of a level in use. */
void DpiCodingTest::everyMarkerJumpEndsOnALevel()
{
    int moves = 0;
    for (int last = 0; last < MarkerDrag::levelCount; ++last) {
        for (int active = 0; active <= last; ++active) {
            for (int x = -10; x < 740; ++x) {
                const MarkerDrag::Result result = MarkerDrag::dropAt({x, 170}, {x, 170, 30, 30}, active, last);
                if (result.drop != MarkerDrag::Drop::Moved)
                    continue;
                ++moves;
                const int level = active + result.jump.levels;
                QVERIFY2(level >= 0 && level <= last && level != active, qPrintable(QString::number(x)));
                const int end = MarkerDrag::mark(active).x() + result.jump.pixels;
                QVERIFY(qAbs(end - MarkerDrag::mark(level).x()) <= 1);
            }
        }
    }
    QVERIFY(moves > 5000);
}

HALVARION_TEST_MAIN(DpiCodingTest)
#include "tst_dpicoding.moc"
