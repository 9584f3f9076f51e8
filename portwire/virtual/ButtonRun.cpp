#include "portwire/virtual/ButtonRun.h"

#include <algorithm>
#include <limits>

namespace portwire {

namespace {

using Type = HidEvent::Type;

constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();

/** A report needs its time, so that a list without delays isn't repeated without end in no time. */
constexpr std::int64_t shortestRoundMs = 1;

bool isOneBit(int code, int most) { return code > 0 && code <= most && (code & (code - 1)) == 0; }

/** Whether the report of this type has a place for the code. */
bool isSendable(Type type, int code)
{
    switch (type) {
    case Type::Modifier:
        return isOneBit(code, 0x80);
    case Type::MouseButton:
        return isOneBit(code, 0x10);
    case Type::Key:
        return code <= 0xFF;
    default:
        return true;
    }
}

} // namespace

std::optional<ButtonRun> ButtonRun::sequence(const FirmwareFlash &flash, int slot, std::int64_t now)
{
    ButtonRun run(slot, End::Rounds, now);
    const std::uint8_t *from = flash.keySequence(static_cast<std::size_t>(slot));
    run.read(from + flash::sequenceEvents, std::min<std::size_t>(from[0], flash::mostSequenceEvents));
    run.waitsToRelease = true;
    return run.steps.empty() ? std::nullopt : std::optional(std::move(run));
}

std::optional<ButtonRun> ButtonRun::macro(const FirmwareFlash &flash, int slot, int repeatCode, std::int64_t now)
{
    constexpr int mostRounds = 250;
    constexpr std::pair<int, End> endings[] = {{253, End::AnyPress}, {254, End::LetGo}, {255, End::OwnPress}};
    const auto *const ending = std::find_if(std::begin(endings), std::end(endings),
                                            [&](const auto &known) { return known.first == repeatCode; });
    const bool isCounted = repeatCode >= 1 && repeatCode <= mostRounds;
    if (!isCounted && ending == std::end(endings))
        return std::nullopt;
    ButtonRun run(slot, isCounted ? End::Rounds : ending->second, now);
    run.rounds = repeatCode;
    const std::uint8_t *from = flash.macro(static_cast<std::size_t>(slot));
    run.read(from + flash::macroEvents, std::min<std::size_t>(from[flash::macroEventCount], flash::mostMacroEvents));
    return run.steps.empty() ? std::nullopt : std::optional(std::move(run));
}

ButtonRun ButtonRun::fire(int slot, int intervalMs, int count, std::int64_t now)
{
    ButtonRun run(slot, count == 0 ? End::LetGoAfterRound : End::Rounds, now);
    run.rounds = count;
    const int downMs = intervalMs / 2;
    run.steps = {{Type::MouseButton, true, 1, downMs}, {Type::MouseButton, false, 1, intervalMs - downMs}};
    return run;
}

/** Events of the flash: bit 0 release, 2 bits kind, 10 bits code, 27 bits delay. */
void ButtonRun::read(const std::uint8_t *from, std::size_t count)
{
    static constexpr Type types[4] = {Type::Modifier, Type::Key, Type::Consumer, Type::MouseButton};
    for (const std::uint8_t *event = from; event < from + count * flash::eventSize; event += flash::eventSize) {
        const int head = event[0] + 256 * event[1];
        const Type type = types[head / 2 % 4];
        const int code = head / 8 % 1024;
        const int delay = head / 8192 + 8 * event[2] + 2048 * event[3] + 524288 * event[4];
        steps.push_back({type, head % 2 == 0, isSendable(type, code) ? code : 0, delay});
    }
}

bool ButtonRun::isHeldBack() const { return waitsToRelease && isHeld && !steps[next].isPress; }

std::int64_t ButtonRun::due() const { return isHeldBack() ? never : dueMs; }

bool ButtonRun::isOver() const
{
    if (!hasBegun)
        return false;
    return isStopped || (!isHeld && (end == End::LetGo || (end == End::LetGoAfterRound && next == 0)));
}

bool ButtonRun::step(std::vector<HidEvent> &events)
{
    if (isOver()) {
        letAllGo(events);
        return false;
    }
    hasBegun = true;
    const Step &now = steps[next];
    const auto isSame = [&](const Step &other) { return other.type == now.type && other.code == now.code; };
    if (now.code != 0) {
        events.push_back({dueMs, now.type, now.isPress, now.code});
        down.erase(std::remove_if(down.begin(), down.end(), isSame), down.end());
        if (now.isPress)
            down.push_back(now);
    }
    dueMs += now.delayMs;
    if (!now.isPress)
        waitsToRelease = false;
    if (++next < steps.size())
        return true;
    if (end == End::Rounds && --rounds <= 0)
        return false;
    next = 0;
    roundBegan = dueMs = std::max(dueMs, roundBegan + shortestRoundMs);
    return true;
}

void ButtonRun::letAllGo(std::vector<HidEvent> &events)
{
    for (auto key = down.rbegin(); key != down.rend(); ++key)
        events.push_back({dueMs, key->type, false, key->code});
}

bool ButtonRun::buttonDown(int slot)
{
    const bool isOwn = slot == button;
    isStopped = isStopped || end == End::AnyPress || (end == End::OwnPress && isOwn);
    isHeld = isHeld || isOwn;
    return !isOwn;
}

void ButtonRun::buttonUp(std::int64_t now)
{
    if (isHeldBack())
        dueMs = std::max(dueMs, now);
    isHeld = false;
}

} // namespace portwire
