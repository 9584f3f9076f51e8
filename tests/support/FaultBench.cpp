#include "support/FaultBench.h"

#include "app/ChooserList.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/Worker.h"
#include "devicelink/WorkingRecord.h"
#include "support/Screen.h"
#include "ui/Prompt.h"

#include <QDeadlineTimer>

#include <algorithm>

FaultBench::FaultBench(const std::function<void()> &prepare)
{
    VirtualMice::restoreScene();
    if (prepare)
        prepare();
    Program::forgetDevice();
    shown = std::make_unique<Program>();
    beat.restart();
}

void FaultBench::hand(const QStringList &words)
{
    beat.aside([&] { VirtualMice::tell(words); });
}

void FaultBench::spoil(const QString &id, const QString &kind, int count, int after)
{
    hand({"fault", id, kind, QString::number(count), QString::number(after)});
}

FlashDataMap FaultBench::held()
{
    FlashDataMap record{};
    beat.aside([&] { record = VirtualMice::record("q1"); });
    return record;
}

bool FaultBench::openQ1()
{
    const auto isListed = [this] {
        const QList<DeviceAllInfo> &devices = ChooserDevices();
        return shown->entryCount() == devices.size() &&
               std::any_of(devices.begin(), devices.end(),
                           [](const DeviceAllInfo &each) { return each.DeviceKind == 1; });
    };
    if (!waitFor(isListed))
        return false;
    shown->click(shown->pictureOf("q1"));
    return true;
}

void FaultBench::dismiss(const QString &className)
{
    if (Prompt *const prompt = Program::prompt(className))
        QTest::keyClick(prompt, Qt::Key_Escape);
}

bool FaultBench::goBack()
{
    shown->click("UpArrow");
    return waitFor([this] { return !shown->isDeviceWindowShown(); });
}

QString FaultBench::unsettled(bool isCorded)
{
    if (!shown->isDeviceWindowShown())
        return QStringLiteral("the device window has gone");
    if (shown->isPromptShown())
        return QStringLiteral("a prompt is up");
    if (!LinkUp || OfflineWaiting || ReconnectRequested || isConnecting() || isDispatching())
        return QStringLiteral("a connect is under way");
    const FlashDataMap inMouse = held();
    if (inMouse != WorkingRecord::instance().copy())
        return QStringLiteral("the working record isn't what the mouse holds");
    return screenDifferences(shown->window(), inMouse, isCorded).join(QStringLiteral("; "));
}

QString FaultBench::settle(int milliseconds)
{
    QString left;
    const bool isSettled = waitFor(
        [&] {
            left = unsettled();
            return left.isEmpty();
        },
        milliseconds);
    return isSettled ? QString() : left;
}

QString FaultBench::settleInTime()
{
    const QString left = settle();
    return left.isEmpty() ? beat.complaint() : left;
}

QString FaultBench::connectQ1() { return openQ1() ? settle() : QStringLiteral("the Q1 isn't on the chooser"); }

bool FaultBench::waitFor(const std::function<bool()> &condition, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (true) {
        bool isMet = false;
        beat.aside([&] { isMet = condition(); });
        if (isMet || deadline.hasExpired())
            return isMet;
        QTest::qWait(3);
    }
}

void FaultBench::measureHealthyTurn()
{
    beat.restart();
    if (!connectQ1().isEmpty())
        qFatal("there is no connection even without a fault");
    for (const char *page : pageButtons) {
        shown->click(page);
        QTest::qWait(10);
    }
    for (const int language : {4, 0}) {
        postMsg()->post(&PostMsg::SigChangeLanguage, language);
        QTest::qWait(10);
    }
    Heartbeat::setHealthyTurn(beat.longest());
    qInfo("longest turn without a fault: %lld ms, allowed with one: %lld ms", beat.longest(), beat.allowed());
    goBack();
    beat.restart();
}
