#pragma once

#include "devicelink/FlashDataMap.h"
#include "support/Heartbeat.h"
#include "support/Program.h"

#include <QStringList>

#include <array>
#include <functional>
#include <memory>

/** What can happen to an answer, as portwirectl names it. */
constexpr std::array<const char *, 4> faultKinds = {"drop", "stall", "garbage", "short"};

/** Buttons of the pages of the device window. */
constexpr std::array<const char *, 5> pageButtons = {"SensorButton", "LightsButton", "MacroButton", "FormSetting",
                                                     "ButtonMain"};

/**
 * The whole program before the virtual bus, with a watch on the GUI thread. What the test does with the bus goes
 * through here, so that it isn't taken for time that the program kept the user waiting.
 */
class FaultBench
{
public:
    /** Puts up the default scene, lets `prepare` change it, and starts the program. */
    explicit FaultBench(const std::function<void()> &prepare = {});

    Program &program() { return *shown; }
    Heartbeat &heartbeat() { return beat; }

    /** A command to the virtual bus. */
    void hand(const QStringList &words);
    /** Spoils `count` answers of a device after `after` good ones. */
    void spoil(const QString &id, const QString &kind, int count, int after = 0);
    FlashDataMap held();

    /** Clicks the picture of the Q1 on the chooser; false if it doesn't come up. */
    bool openQ1();

    /**
     * Waits until no prompt is up, nothing is under way, and both pages show what the mouse holds.
     * \return what is still in the way; empty when all is well.
     */
    QString settle(int milliseconds = 8000);
    /** As settle(); says also if the GUI thread left the user waiting since its heartbeat was restarted. */
    QString settleInTime();
    /** Opens the Q1 and settles. */
    QString connectQ1();
    /** The present state, as settle() judges it. */
    QString unsettled(bool isCorded = false);

    /** Waits for a condition of the test's own, which isn't counted as the program's time. */
    bool waitFor(const std::function<bool()> &condition, int milliseconds = 8000);

    /** Walks the pages and the languages with nothing wrong, to know how fast this build is. Once a process. */
    void measureHealthyTurn();

private:
    std::unique_ptr<Program> shown;
    Heartbeat beat;
};
