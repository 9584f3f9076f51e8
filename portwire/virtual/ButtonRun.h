#pragma once

#include "portwire/virtual/FirmwareFlash.h"
#include "portwire/virtual/HidEvent.h"

#include <optional>
#include <vector>

namespace portwire {

/**
 * A list of timed events that a button has started: a key sequence, a macro or the fire key. It works on a copy, so
 * that a change of the flash in the middle, another profile for one, doesn't mix two lists.
 */
class ButtonRun
{
public:
    /** \return nothing for a list without events. \param now ms on the time line */
    static std::optional<ButtonRun> sequence(const FirmwareFlash &flash, int slot, std::int64_t now);
    /** \param repeatCode as in the second parameter of a macro button; nothing for one without a meaning */
    static std::optional<ButtonRun> macro(const FirmwareFlash &flash, int slot, int repeatCode, std::int64_t now);
    /** Left clicks. \param intervalMs from one to the next \param count 0 for as long as the button is held */
    static ButtonRun fire(int slot, int intervalMs, int count, std::int64_t now);

    int slot() const { return button; }
    /** When the next event is due; never, in effect, while a key sequence waits for its button. */
    std::int64_t due() const;
    /** Plays the event that is due. \return false when that was the last. */
    bool step(std::vector<HidEvent> &events);

    /** Some button goes down. \return false if that was meant for this run and is to do nothing else. */
    bool buttonDown(int slot);
    /** The run's own button goes up. */
    void buttonUp(std::int64_t now);

private:
    struct Step
    {
        HidEvent::Type type;
        bool isPress;
        int code; ///< 0 for nothing
        std::int64_t delayMs;
    };
    enum class End {
        Rounds,          ///< when it was played so many times
        LetGo,           ///< after the event that runs when the button is let go
        LetGoAfterRound, ///< likewise, but what was begun is finished
        OwnPress,        ///< when its button is pressed again
        AnyPress,        ///< when any button is pressed
    };

    ButtonRun(int slot, End how, std::int64_t now) : button(slot), end(how), dueMs(now), roundBegan(now) {}
    void read(const std::uint8_t *from, std::size_t count);
    bool isHeldBack() const;
    bool isOver() const;
    void letAllGo(std::vector<HidEvent> &events);

    int button;
    End end;
    std::int64_t dueMs;
    std::int64_t roundBegan;
    std::vector<Step> steps;
    std::size_t next = 0;
    int rounds = 1;              ///< that are left
    bool waitsToRelease = false; ///< in front of the first release, until the button is let go
    bool isHeld = true;
    bool isStopped = false;
    bool hasBegun = false;
    std::vector<Step> down; ///< what was pressed and not let go yet
};

} // namespace portwire
