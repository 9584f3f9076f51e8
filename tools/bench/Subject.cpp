#include "bench/Subject.h"

#include "bench/Screen.h"

#include <QFile>

#include <chrono>
#include <ctime>
#include <thread>

namespace {

/** Nothing of the start changes the picture any more after this long, in seconds. */
constexpr double restAfterStart = 0.6;
/** Seconds after a click until the page is painted, whatever the machine is doing. */
constexpr double afterClick = 0.5;
/** Where the pointer lights up nothing. */
constexpr QPoint aside(600, 690);

void handle(const QStringList &arguments)
{
    if (QProcess::execute(QStringLiteral("xdotool"), arguments) != 0)
        qFatal("xdotool failed: %s", qPrintable(arguments.join(' ')));
}

} // namespace

void rest(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }

Subject::Subject(Screen &display, const QString &executable) : screen(display)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    screen.forget();
    const double begin = Screen::now();
    process.start(executable, QStringList());
    window = screen.waitForWindow(windowSize, 20);
    const double painted = window ? screen.waitForPicture(window, windowSize, restAfterStart) : 0;
    if (painted <= 0)
        qFatal("%s shows no window", qPrintable(executable));
    start = (painted - begin) * 1000;
    screen.moveToCorner(window);
    rest(afterClick);
}

Subject::~Subject()
{
    screen.close(window);
    if (!process.waitForFinished(10000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        qFatal("%s does not end as it should", qPrintable(process.program()));
}

double Subject::residentMemory() const
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process.processId()));
    if (status.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("VmRSS:"))
                return line.simplified().split(' ').value(1).toDouble() / 1024;
        }
    }
    qFatal("the memory of %s can't be read", qPrintable(process.program()));
}

double Subject::processorTime() const
{
    clockid_t clock{};
    timespec used{};
    if (clock_getcpuclockid(pid_t(process.processId()), &clock) != 0 || clock_gettime(clock, &used) != 0)
        qFatal("the processor time of %s can't be read", qPrintable(process.program()));
    return double(used.tv_sec) + double(used.tv_nsec) * 1e-9;
}

double Subject::processorUse(double seconds) const
{
    const double usedBefore = processorTime();
    const double before = Screen::now();
    rest(seconds);
    return (processorTime() - usedBefore) / (Screen::now() - before) * 100;
}

void Subject::click(QPoint place) const
{
    const auto text = [](int number) { return QString::number(number); };
    handle({"mousemove", text(place.x()), text(place.y()), "sleep", "0.05", "click", "1", "sleep", "0.05", "mousemove",
            text(aside.x()), text(aside.y())});
    rest(afterClick);
}

void Subject::press(const QStringList &keys) const
{
    handle(QStringList{"key", "--delay", "40"} + keys);
    rest(afterClick);
}

void Subject::clickToChange(QPoint place) const
{
    const QByteArray before = screen.lines(window, windowSize);
    click(place);
    if (screen.lines(window, windowSize) == before)
        qFatal("a click at %d,%d changed nothing", place.x(), place.y());
}
