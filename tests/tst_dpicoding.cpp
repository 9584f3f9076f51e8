#include "sensor/DpiCoding.h"
#include "sensor/MarkerDrag.h"
#include "support/Rows.h"
#include "support/SensorModel.h"
#include "support/TestHome.h"

namespace {

DpiRangeTable table(const QString &list)
{
    DpiRangeTable read;
    if (!parseDpiRange(list.split(','), read))
        qFatal("bad range %s", qPrintable(list));
    return read;
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
    void steps_data();
    void steps();
    void sensorFile_data();
    void sensorFile();
    void everyMarkerJumpEndsOnALevel();
};

void DpiCodingTest::known_data()
{
    // expected: code, flags, and what they decode to
    const Rows<QString, QString, int, int, QList<int>> row("sensor", "range", "dpi", "currentFlags", "expected");
    row("eight bits are cut off", "3212", q1Range, 15000, 0, {43, 0, 2200});
    row("keys", "77", q2Range, 800, 0, {0x21, 0, 800});
    row("keys, doubled above the first row", "77", "50,700,50,800,1600,100,0x11", 800, 0, {0x20, 0x11, 800});
    row("no such key", "77", q2Range, 600, 0, {12, 0, 0});
    row("no such key, wide steps held before", "77", q2Range, 600, 0x22, {6, 0, 0});
    row("keys of another sensor", "78", q1Range, 800, 0, {15, 0, 800});
    row("four rows: above all", "A9", fourRows, 16200, 0, {80, 0x33, 16200});
}

void DpiCodingTest::known()
{
    QFETCH(QString, sensor);
    QFETCH(QString, range);
    QFETCH(int, dpi);
    QFETCH(int, currentFlags);
    const SensorCoding coding = {
        sensor, parseDriverSensor("#define SENSOR_77_DPI_400\t0x20\n#define SENSOR_77_DPI_800\t0x21\n"), table(range)};
    const DpiCode coded = encodeDpi(coding, dpi, static_cast<std::uint8_t>(currentFlags));
    QTEST((QList<int>{coded.code, coded.flags, decodeDpi(coding, coded)}), "expected");
}

void DpiCodingTest::everyValueOfTheSlider_data()
{
    // values: different ones that the slider can reach
    const Rows<QString, QString, int> row("sensor", "range", "values");
    row("Q1", "3395", q1Range, 360);
    row("Q2", "3311", q2Range, 93);
    // Of sensors that no shipped mouse has.
    row("wide steps", "A9", "50,1000,50,1100,12000,100,0x22", 20 + 110);
    row("doubled", "A9", "50,1000,50,1100,12000,100,0x11", 20 + 110);
    row("four rows", "A9", fourRows, 40 + 20 + 40 + 40);
}

/** Every DPI value is what the sensor then runs at; the step buttons walk through all. */
void DpiCodingTest::everyValueOfTheSlider()
{
    QFETCH(QString, sensor);
    QFETCH(QString, range);
    const SensorCoding coding = {sensor, readDriverSensor(), table(range)};
    QSet<int> reached;
    for (int value = coding.DpiRange.minimum(); value <= coding.DpiRange.maximum(); ++value) {
        const int dpi = Snap(coding.DpiRange, value).value;
        reached << dpi;
        const DpiCode coded = encodeDpi(coding, dpi, 0);
        QCOMPARE(dpiOnTheMouse(sensor, coded.code, coded.flags), dpi);
        QCOMPARE(decodeDpi(coding, coded), dpi);
        QCOMPARE(coded.flags >> 4, coded.flags & 0x0F); // both axes alike
    }
    QTEST(int(reached.size()), "values");
    int steps = 1;
    for (int dpi = coding.DpiRange.minimum(); stepUp(coding.DpiRange, dpi) <= coding.DpiRange.maximum(); ++steps)
        dpi = stepUp(coding.DpiRange, dpi);
    QCOMPARE(steps, reached.size());
}

void DpiCodingTest::steps_data()
{
    // expected: snapped, step of the page keys, one up, one down
    const Rows<QString, int, QList<int>> row("range", "value", "expected");
    const QString meeting = QStringLiteral("50,1000,50,1000,2000,100,0x00");
    row("between two steps", q1Range, 1649, {1600, 50, 1699, 1599});
    row("the first", q1Range, 50, {50, 50, 100, 0});
    row("last of the first row", q1Range, 10000, {10000, 50, 10100, 9950});
    row("the gap jumps up", q1Range, 10001, {10100, 100, 10100, 10100});
    row("first of the second row", q1Range, 10100, {10100, 100, 10200, 10000});
    row("the end", q1Range, 26000, {26000, 100, 26100, 25900});
    row("of the value itself, not from Min", "70,1000,50,0x00", 99, {50, 50, 149, 49});
    row("where rows meet", meeting, 1000, {1000, 50, 1100, 950});
}

void DpiCodingTest::steps()
{
    QFETCH(QString, range);
    QFETCH(int, value);
    const DpiRangeTable rows = table(range);
    const SnappedDpi snapped = Snap(rows, value);
    QTEST((QList<int>{snapped.value, snapped.pageStep, stepUp(rows, value), stepDown(rows, value)}), "expected");
}

void DpiCodingTest::sensorFile_data()
{
    const Rows<QByteArray, QString, QString> row("text", "keys", "ripple");
    row("Windows line ending", "#define A_DPI_5\t0x1F\r\n", "A_DPI_5=31", "");
    row("two tabs before the decimal", "#define A\t\t12 //x\n", "A=12", "");
    row("file order", "#define B\t2\n#define A\t1 //x\n", "B=2 A=1", "");
    row("a last line without ending", "#define A\t0x1F", "", "");
    row("a comment with a blank", "#define A\t12 // x\n", "", "");
    row("no tab", "#define A 12\n#define B\n", "", "");
    row("no define", "#undef A\t0x12\n", "", "");
    row("no number", "#define A\t0xZZ\n#define B\t-1 //x\n#define C\t3\n", "C=3", "");
    row("feature", "#define SUPPORT_RIPPLE\t3395,3311\r\n", "", "3395,3311");
    row("feature on the last line", "#define SUPPORT_RIPPLE\t3395", "", "3395");
    row("feature without a value", "#define SUPPORT_RIPPLE\n", "", "");
    row("the first name that occurs", "#define SUPPORT_FIXLINE_SUPPORT_RIPPLE\t1\n", "", "1");
}

void DpiCodingTest::sensorFile()
{
    QFETCH(QByteArray, text);
    const DriverSensor driver = parseDriverSensor(text);
    QTEST(keysOf(driver), "keys");
    QTEST(driver.Support[DriverSensor::Ripple], "ripple");
    const QString ripple = driver.Support[DriverSensor::Ripple];
    QCOMPARE(driver.supports(DriverSensor::Ripple, "339"), ripple.startsWith("3395")); // also inside a longer name
    QVERIFY(!driver.supports(DriverSensor::Ripple, "") && !driver.supports(DriverSensor::LiftOff, "3395"));
}

/** Wherever it is let go, the marker ends within a pixel of the mark of a level in use. */
void DpiCodingTest::everyMarkerJumpEndsOnALevel()
{
    using MarkerDrag::Drop;
    for (const auto &[x, levels] : {std::pair(195, 0), {196, 1}, {247, 1}, {248, 0}}) // 78 to 129 pixels are one level
        QCOMPARE(MarkerDrag::dropAt({x, 170}, {x - 10, 160, 30, 30}, 1, 7).jump.levels, levels);
    QCOMPARE(MarkerDrag::dropAt({200, 170}, {300, 160, 30, 30}, 1, 7).drop, Drop::Missed);
    int moves = 0;
    for (int last = 0; last < MarkerDrag::levelCount; ++last) {
        for (int active = 0; active <= last; ++active) {
            for (int x = -10; x < 740; ++x) {
                const MarkerDrag::Result result = MarkerDrag::dropAt({x, 170}, {x, 170, 30, 30}, active, last);
                if (result.drop != Drop::Moved)
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
