#pragma once

#include "portwire/virtual/ButtonRun.h"
#include "portwire/virtual/VirtualMouse.h"

namespace portwire {

/** A button that is held for a while; ms on the time line that a play begins. */
struct ButtonPress
{
    int slot; ///< 0 to 15
    std::int64_t downMs;
    std::int64_t upMs; ///< not before it went down
};

/**
 * What the firmware makes of its buttons, by what its flash says, on a time line of its own: a macro of an hour is
 * played in no time. What it does is told in docs/portwire-protocol.md. Changes of the mouse itself are made and
 * reported to the PC.
 */
class ButtonPlayer
{
public:
    /** Events of lists, played or skipped, after which a play ends; a macro that is counted has 250 times 70. */
    static constexpr int mostSteps = 20000;

    /** \param most what the receiver can carry, or the cable */
    ButtonPlayer(VirtualMouse &ofMouse, int mostReportHertz) : mouse(ofMouse), mostHertz(mostReportHertz) {}

    /** Events in the order of their time. \param presses by the time at which they begin; those of one button apart */
    std::vector<HidEvent> play(const std::vector<ButtonPress> &presses);

private:
    struct Edge
    {
        std::int64_t atMs;
        bool isDown;
        int slot;
        std::int64_t heldMs; ///< of a button that goes down: for how long
    };
    struct Function;
    static const Function functions[];

    void handle(const Edge &edge);
    void buttonUp(int slot);
    void start(int slot);
    void emit(HidEvent::Type type, int code, bool isPress = true);
    void add(std::optional<ButtonRun> run);
    int dpi() const;

    void holdButton(int slot, int code, int);
    void stepDpi(int slot, int direction, int);
    void tilt(int slot, int direction, int);
    void fire(int slot, int intervalMs, int count);
    void playSequence(int slot, int, int);
    void playMacro(int slot, int ofSlot, int repeatCode);
    void switchRate(int slot, int, int);
    void switchLight(int slot, int which, int);
    void switchProfile(int slot, int, int);
    void lockDpi(int slot, int code, int);
    void turnWheel(int slot, int direction, int);

    struct Lock
    {
        int slot;
        int dpi;
    };

    VirtualMouse &mouse;
    const int mostHertz;
    std::vector<HidEvent> events;
    std::int64_t now = 0;
    std::vector<ButtonRun> runs;
    std::array<bool, flash::slots> isDown{}; ///< and wasn't swallowed
    std::array<int, flash::slots> buttons{}; ///< the mouse button that it holds down, or 0
    std::vector<Lock> locks;                 ///< the last one counts
};

} // namespace portwire
