#include "macro/MacroRecorder.h"

#include <algorithm>
#include <limits>

void MacroRecorder::begin()
{
    heldKeys.clear();
    FirstEvent = true;
    RecordedEvents = 0;
}

MacroRows MacroRecorder::take(int virtualKey, bool isDown, std::optional<int> fixedDelay)
{
    if (isDown && heldKeys.contains(virtualKey))
        return {};
    if (isDown)
        heldKeys.insert(virtualKey);
    else
        heldKeys.remove(virtualKey);

    MacroRows rows;
    if (!FirstEvent) {
        constexpr qint64 longest = std::numeric_limits<std::uint32_t>::max();
        const qint64 delay = fixedDelay ? *fixedDelay : EventClock.elapsed();
        rows += MacroRow::delay(static_cast<std::uint32_t>(std::clamp<qint64>(delay, 0, longest)));
    }
    EventClock.start();
    const MacroKey *key = KeyTable::findVirtualKey(virtualKey);
    FirstEvent = !key; // the delay before an unknown key serves the next key, so that events and delays take turns
    if (key) {
        ++RecordedEvents;
        rows += MacroRow::event(*key, isDown ? MacroRow::Action::Press : MacroRow::Action::Release);
    }
    return rows;
}
