#include "support/FaultBench.h"

#include "devicelink/Dispatcher.h"
#include "devicelink/Worker.h"
#include "devicelink/WorkingRecord.h"
#include "support/Screen.h"

#include <QDeadlineTimer>

FaultBench::FaultBench(const std::function<void()> &prepare)
{
    VirtualMice::restoreScene();
    if (prepare)
        prepare();
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
    const QString picture = shown->pictureOf("q1");
    if (!picture.isEmpty())
        shown->click(picture);
    return !picture.isEmpty();
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
    waitFor([&] { return (left = unsettled()).isEmpty(); }, milliseconds);
    return left;
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
    shown->goBack();
    beat.restart();
}
