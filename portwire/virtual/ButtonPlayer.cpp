#include "portwire/virtual/ButtonPlayer.h"

#include "portwire/virtual/ReportRates.h"

#include <algorithm>

namespace portwire {

namespace {

using Type = HidEvent::Type;

/** Longest debounce time that a mouse knows, in ms; a greater number is none. */
constexpr int longestDebounce = 20;

constexpr int shortestFireInterval = 10;
constexpr int mostShots = 3;

template<int... values>
bool isOneOf(int, int first, int second)
{
    return ((first == values) || ...) && second == 0;
}

bool isFire(int, int intervalMs, int count) { return intervalMs >= shortestFireInterval && count <= mostShots; }

bool isOwnMacro(int slot, int ofSlot, int) { return slot == ofSlot; }

bool isAnyCode(int, int, int second) { return second == 0; }

} // namespace

/** What a type of key function does, and which parameters it has; with others the button does nothing. */
struct ButtonPlayer::Function
{
    std::uint8_t type;
    bool (*isKnown)(int slot, int first, int second);
    void (ButtonPlayer::*press)(int slot, int first, int second);
};

const ButtonPlayer::Function ButtonPlayer::functions[] = {
    {1, isOneOf<1, 2, 4, 8, 16>, &ButtonPlayer::holdButton},
    {2, isOneOf<1, 2, 3>, &ButtonPlayer::stepDpi},
    {3, isOneOf<1, 2>, &ButtonPlayer::tilt},
    {4, isFire, &ButtonPlayer::fire},
    {5, isOneOf<0>, &ButtonPlayer::playSequence},
    {6, isOwnMacro, &ButtonPlayer::playMacro},
    {7, isOneOf<0>, &ButtonPlayer::switchRate},
    {8, isOneOf<0, 1, 3, 4>, &ButtonPlayer::switchLight},
    {9, isOneOf<0>, &ButtonPlayer::switchProfile},
    {10, isAnyCode, &ButtonPlayer::lockDpi},
    {11, isOneOf<1, 2>, &ButtonPlayer::turnWheel},
};

std::vector<HidEvent> ButtonPlayer::play(const std::vector<ButtonPress> &presses)
{
    mouse.wake();
    std::vector<Edge> edges;
    for (const ButtonPress &press : presses) {
        edges.push_back({press.downMs, true, press.slot, press.upMs - press.downMs});
        edges.push_back({press.upMs, false, press.slot, 0});
    }
    std::stable_sort(edges.begin(), edges.end(), [](const Edge &a, const Edge &b) { return a.atMs < b.atMs; });
    auto edge = edges.begin();
    for (int step = 0; step < mostSteps;) {
        const auto run = std::min_element(runs.begin(), runs.end(),
                                          [](const ButtonRun &a, const ButtonRun &b) { return a.due() < b.due(); });
        // The hand comes first: an event that is due when its button is let go is one too many.
        if (edge != edges.end() && (run == runs.end() || edge->atMs <= run->due())) {
            now = edge->atMs;
            handle(*edge++);
        } else if (run != runs.end()) {
            now = run->due();
            if (!run->step(events))
                runs.erase(run);
            ++step;
        } else {
            break;
        }
    }
    return std::move(events);
}

void ButtonPlayer::handle(const Edge &edge)
{
    const auto slot = static_cast<std::size_t>(edge.slot);
    if (!edge.isDown) {
        if (isDown[slot])
            buttonUp(edge.slot);
        isDown[slot] = false;
        return;
    }
    const int debounce = mouse.flash().bytes[flash::debounceTime];
    if (debounce <= longestDebounce && edge.heldMs < debounce)
        return;
    isDown[slot] = true;
    bool isFree = true;
    for (ButtonRun &run : runs)
        isFree = run.buttonDown(edge.slot) && isFree;
    if (isFree)
        start(edge.slot);
}

void ButtonPlayer::buttonUp(int slot)
{
    for (ButtonRun &run : runs) {
        if (run.slot() == slot)
            run.buttonUp(now);
    }
    if (int &code = buttons[static_cast<std::size_t>(slot)]; code != 0) {
        emit(Type::MouseButton, code, false);
        code = 0;
    }
    const auto lock = std::find_if(locks.begin(), locks.end(), [&](const Lock &held) { return held.slot == slot; });
    if (lock != locks.end()) {
        locks.erase(lock);
        emit(Type::Dpi, dpi());
    }
}

void ButtonPlayer::start(int slot)
{
    const std::uint8_t *key = mouse.flash().keyFunction(static_cast<std::size_t>(slot));
    for (const Function &function : functions) {
        if (function.type == key[0] && function.isKnown(slot, key[1], key[2]))
            return (this->*function.press)(slot, key[1], key[2]);
    }
}

void ButtonPlayer::emit(Type type, int code, bool isPress) { events.push_back({now, type, isPress, code}); }

void ButtonPlayer::add(std::optional<ButtonRun> run)
{
    if (run)
        runs.push_back(std::move(*run));
}

/** What counts now: that of the lock that was pressed last, or of the level. */
int ButtonPlayer::dpi() const { return locks.empty() ? mouse.flash().dpi(mouse.sensor()) : locks.back().dpi; }

void ButtonPlayer::holdButton(int slot, int code, int)
{
    buttons[static_cast<std::size_t>(slot)] = code;
    emit(Type::MouseButton, code);
}

/** 1 goes round, 2 up, 3 down; up and down end at the last level in use. */
void ButtonPlayer::stepDpi(int, int direction, int)
{
    const int count = mouse.flash().levelCount();
    int level = mouse.flash().currentLevel();
    if (direction == 1)
        level = (level + 1) % count;
    else
        level = std::clamp(direction == 2 ? level + 1 : level - 1, 0, count - 1);
    mouse.changeLevel(level);
    emit(Type::Dpi, dpi());
}

void ButtonPlayer::tilt(int, int direction, int) { emit(Type::Tilt, direction == 1 ? -1 : 1); }

void ButtonPlayer::fire(int slot, int intervalMs, int count) { add(ButtonRun::fire(slot, intervalMs, count, now)); }

void ButtonPlayer::playSequence(int slot, int, int) { add(ButtonRun::sequence(mouse.flash(), slot, now)); }

void ButtonPlayer::playMacro(int slot, int, int repeatCode)
{
    add(ButtonRun::macro(mouse.flash(), slot, repeatCode, now));
}

/** The next faster one that gets through, or the slowest. */
void ButtonPlayer::switchRate(int, int, int)
{
    const int hertz = mouse.flash().rateHz();
    const auto *const faster =
        std::find_if(std::begin(reportRates), std::end(reportRates), [&](const ReportRate &rate) {
            return hertz != 0 && rate.hertz > hertz && rate.hertz <= mostHertz;
        });
    mouse.changeRate(faster == std::end(reportRates) ? reportRates[0].code : faster->code);
    emit(Type::ReportRate, mouse.flash().rateHz());
}

/** 0 everything, 1 the DPI indicator, 3 the light, 4 its next effect. */
void ButtonPlayer::switchLight(int, int which, int)
{
    constexpr int effects = 5;
    const LightState light = mouse.flash().light();
    if (which == 4)
        mouse.changeLight(true, light.mode % effects + 1);
    else if (which != 1)
        mouse.changeLight(!light.isOn, light.mode);
    if (which != 1)
        emit(Type::Light, mouse.flash().light().isOn);
    if (which == 0 || which == 1) {
        mouse.changeIndicator(which == 0 ? !light.isOn : mouse.flash().bytes[flash::indicatorOn] == 0);
        emit(Type::Indicator, mouse.flash().bytes[flash::indicatorOn] != 0);
    }
}

void ButtonPlayer::switchProfile(int, int, int)
{
    mouse.changeProfile((mouse.activeProfile() + 1) % static_cast<int>(VirtualMouse::profileCount));
    emit(Type::Profile, mouse.activeProfile());
}

/** Another DPI for as long as the button is held. */
void ButtonPlayer::lockDpi(int slot, int code, int)
{
    if (!hasCode(mouse.sensor(), static_cast<std::uint8_t>(code)))
        return;
    locks.push_back({slot, dpiOfCode(mouse.sensor(), static_cast<std::uint8_t>(code), 0)});
    emit(Type::Dpi, dpi());
}

void ButtonPlayer::turnWheel(int, int direction, int) { emit(Type::Wheel, direction == 1 ? 1 : -1); }

} // namespace portwire
