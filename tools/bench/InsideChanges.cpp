#include "bench/Inside.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/WorkingRecord.h"
#include "support/Program.h"
#include "support/VirtualMice.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QJsonDocument>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include <cstring>
#include <functional>

namespace {

using Judged = Figure::Judged;

constexpr int changes = 1000;
constexpr int bursts = 5;
constexpr int burstLength = 10000;

constexpr double aimedMedian = 0.1;
constexpr double aimedPercentile99 = 0.5;

struct Control
{
    const char *key;
    const char *title;
    const char *page; ///< the button that brings it up
    std::function<void(int)> change;
};

bool isWritten()
{
    const FlashDataMap held = VirtualMice::record(QStringLiteral("q1"));
    const FlashDataMap wanted = WorkingRecord::instance().copy();
    return std::memcmp(&held, &wanted, sizeof held) == 0;
}

void waitUntilWritten()
{
    if (!QTest::qWaitFor(isWritten))
        qFatal("the mouse does not hold what the program shows");
}

double reportsWritten()
{
    const QJsonObject counts = QJsonDocument::fromJson(VirtualMice::tell({"stats"})).object();
    if (!counts.contains("written"))
        qFatal("the bus does not tell how many reports wrote");
    return counts["written"].toDouble();
}

/** One figure for the middle, one for the slow end. */
QVector<Figure> measureChange(const char *key, const QString &title, const std::function<void(int)> &change)
{
    Figure middle{QLatin1String(key), title, "ms", {}, {}, Judged::Median, aimedMedian};
    const double before = reportsWritten();
    for (int number = 0; number < changes; ++number) {
        middle.samples << Inside::timeOf([&] { change(number); });
        Inside::serveEvents();
    }
    waitUntilWritten();
    if (reportsWritten() <= before)
        qFatal("%s: nothing was written", key);
    Figure end = middle;
    end.key += QStringLiteral("Slow");
    end.title += QStringLiteral(", slow end");
    end.judged = Judged::Percentile99;
    end.atMost = aimedPercentile99;
    return {middle, end};
}

/** The newest value of an address is all that counts; every one between may be left out. */
QVector<Figure> measureBurst()
{
    Figure written{"burst", "10,000 changes of one field: reports written", "", {}, {}, Judged::Nothing, 0};
    Figure time{"burstTime", "10,000 changes of one field: until in the flash", "ms", {}, {}, Judged::Nothing, 0};
    for (int burst = 0; burst < bursts; ++burst) {
        const double before = reportsWritten();
        time.samples << Inside::timeOf([burst] {
            for (int number = 0; number < burstLength; ++number)
                SetLightSpeed(static_cast<std::uint8_t>((number + burst) % 10));
            waitUntilWritten();
        });
        written.samples << reportsWritten() - before;
        const int last = (burstLength - 1 + burst) % 10;
        if (VirtualMice::record(QStringLiteral("q1")).LightSpeed != last)
            qFatal("the last of many changes has not reached the mouse");
    }
    return {written, time};
}

} // namespace

QVector<Figure> Inside::measureChanges(Program &program)
{
    QVector<Figure> figures = measureChange("setter", QStringLiteral("a setter by itself"), [](int number) {
        SetLightRippeControl(static_cast<std::uint8_t>(number % 2));
    });
    const auto press = [](QAbstractButton *button) { return [button](int) { button->click(); }; };
    const auto turn = [](auto *control, int count) {
        return [control, count](int number) { control->setValue(control->minimum() + number % count); };
    };
    auto *const lift = program.find<QComboBox>(QStringLiteral("LOD"));
    const Control controls[] = {
        {"changeSwitch", "a switch with its setter", "SensorButton",
         press(program.find<QAbstractButton>(QStringLiteral("MotionSync_2")))},
        {"changeList", "a list with its setter", "SensorButton",
         [lift](int number) { lift->setCurrentIndex(number % 2); }},
        {"changeSlider", "a slider with its setter", "LightsButton",
         turn(program.find<QSlider>(QStringLiteral("horizontalLight")), 10)},
        {"changeColour", "a colour number with its setter", "LightsButton",
         turn(program.find<QSpinBox>(QStringLiteral("RSpinBox")), 200)},
    };
    for (const Control &control : controls) {
        program.click(QLatin1String(control.page));
        serveEvents();
        figures += measureChange(control.key, QLatin1String(control.title), control.change);
    }
    figures += measureBurst();
    return figures;
}
