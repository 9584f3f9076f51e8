#pragma once

#include "macro/MacroRows.h"

#include <QElapsedTimer>
#include <QSet>

/** Turns the key changes of a recording into the rows to append. It knows neither hook nor widget. */
class MacroRecorder
{
public:
    /** A recording starts: nothing came before the first key. */
    void begin();

    /**
     * The rows of a key change, none for an auto-repeat and for a key that no macro can hold. `virtualKey` is a Windows
     * virtual-key code. `fixedDelay`, in ms, stands for the time since the event before where it is given.
     */
    MacroRows take(int virtualKey, bool isDown, std::optional<int> fixedDelay);

    /** Time that passes while nothing is taken is no pause. */
    void restartClock() { EventClock.start(); }

    /** The window lost the keyboard: what was down will not be seen to come up. */
    void forgetHeldKeys() { heldKeys.clear(); }

    /** As many events came as a mouse can keep. */
    bool isFull() const { return RecordedEvents >= maximumMacroEvents; }

private:
    /**
     * All keys that are down, not just the last one: with A down, B down, A up, B up, B down the last press would pass
     * for a repeat of B's first otherwise, and only its release would be kept.
     */
    QSet<int> heldKeys;
    QElapsedTimer EventClock;
    bool FirstEvent = true; ///< the next key gets no delay row before it
    int RecordedEvents = 0;
};
