#include "portwire/virtual/ButtonPlayer.h"

#include <algorithm>

namespace portwire {

namespace {

using Type = HidEvent::Type;

constexpr int slots = 16;

/** What a button goes through when it switches the rate; the higher ones depend on the receiver. */
constexpr std::uint8_t rates[] = {8, 4, 2, 1};

} // namespace

std::vector<HidEvent> ButtonPlayer::press(int slot)
{
    events.clear();
    now = 0;
    if (slot < 0 || slot >= slots)
        return events;
    mouse.wake();
    const std::uint8_t *function = mouse.flash().keyFunction(static_cast<std::size_t>(slot));
    const int type = function[0];
    const std::uint8_t first = function[1];
    const int second = function[2];
    switch (type) {
    case 1:
        pressAndRelease(Type::MouseButton, first);
        break;
    case 2:
        stepDpi(first);
        break;
    case 3:
        events.push_back({now, Type::Tilt, true, first == 1 ? -1 : 1});
        break;
    case 4:
        fire(first, second);
        break;
    case 5:
        playSequence(slot);
        break;
    case 6:
        playMacro(first < slots ? first : slot, second);
        break;
    case 7:
        switchRate();
        break;
    case 8:
        switchLight(first);
        break;
    case 9:
        mouse.changeProfile((mouse.activeProfile() + 1) % static_cast<int>(VirtualMouse::profileCount));
        events.push_back({now, Type::Profile, true, mouse.activeProfile()});
        break;
    case 10:
        lockDpi(first);
        break;
    case 11:
        events.push_back({now, Type::Wheel, true, first == 1 ? 1 : -1});
        break;
    default:
        break;
    }
    return events;
}

void ButtonPlayer::pressAndRelease(Type type, int code)
{
    events.push_back({now, type, true, code});
    events.push_back({now, type, false, code});
}

/** 1 goes round, 2 up, 3 down; up and down end at the last level in use. */
void ButtonPlayer::stepDpi(int direction)
{
    const int count = mouse.flash().levelCount();
    int level = mouse.flash().currentLevel();
    if (direction == 1)
        level = (level + 1) % count;
    else
        level = std::clamp(direction == 2 ? level + 1 : level - 1, 0, count - 1);
    mouse.changeLevel(level);
    events.push_back({now, Type::Dpi, true, mouse.flash().dpi(mouse.sensor())});
}

/** Left clicks. A count of 0 means for as long as the button is held, so once for a short press. */
void ButtonPlayer::fire(int intervalMs, int count)
{
    for (int shot = 0; shot < std::max(count, 1); ++shot) {
        pressAndRelease(Type::MouseButton, 1);
        now += intervalMs;
    }
}

void ButtonPlayer::playSequence(int slot)
{
    const std::uint8_t *sequence = mouse.flash().keySequence(static_cast<std::size_t>(slot));
    for (std::size_t i = 0; i < std::min<std::size_t>(sequence[0], 6); ++i)
        playEvent(sequence + 1 + 5 * i);
}

/** 1 to 250 times; the codes above stop when the button is let go or pressed again, so a short press plays once. */
void ButtonPlayer::playMacro(int slot, int repeatCode)
{
    const std::uint8_t *macro = mouse.flash().macro(static_cast<std::size_t>(slot));
    const int times = repeatCode >= 1 && repeatCode <= 250 ? repeatCode : 1;
    for (int time = 0; time < times; ++time) {
        for (std::size_t i = 0; i < std::min<std::size_t>(macro[31], 70); ++i)
            playEvent(macro + 32 + 5 * i);
    }
}

void ButtonPlayer::playEvent(const std::uint8_t *event)
{
    static constexpr Type types[4] = {Type::Modifier, Type::Key, Type::Consumer, Type::MouseButton};
    const int head = event[0] + 256 * event[1];
    const int code = head / 8 % 1024;
    if (code != 0)
        events.push_back({now, types[head / 2 % 4], head % 2 == 0, code});
    now += head / 8192 + 8 * event[2] + 2048 * event[3] + 524288 * event[4];
}

void ButtonPlayer::switchRate()
{
    const auto *const current = std::find(std::begin(rates), std::end(rates), mouse.flash().bytes[flash::reportRate]);
    const bool isLast = current == std::end(rates) || current + 1 == std::end(rates);
    mouse.changeRate(isLast ? rates[0] : current[1]);
    events.push_back({now, Type::ReportRate, true, mouse.flash().rateHz()});
}

/** 0 everything, 1 the DPI indicator, 3 the light, 4 its next effect. */
void ButtonPlayer::switchLight(int which)
{
    const bool isOn = mouse.flash().light().isOn;
    if (which == 0 || which == 3)
        mouse.changeLight(!isOn, mouse.flash().light().mode);
    if (which == 4)
        mouse.changeLight(true, mouse.flash().light().mode % 5 + 1);
    if (which == 0 || which == 3 || which == 4)
        events.push_back({now, Type::Light, true, mouse.flash().light().isOn});
    if (which == 0 || which == 1) {
        mouse.changeIndicator(which == 0 ? !isOn : mouse.flash().bytes[flash::indicatorOn] == 0);
        events.push_back({now, Type::Indicator, true, mouse.flash().bytes[flash::indicatorOn] != 0});
    }
}

/** Another DPI for as long as the button is held. */
void ButtonPlayer::lockDpi(std::uint8_t code)
{
    events.push_back({now, Type::Dpi, true, dpiOfCode(mouse.sensor(), code, 0)});
    events.push_back({now, Type::Dpi, true, mouse.flash().dpi(mouse.sensor())});
}

} // namespace portwire
