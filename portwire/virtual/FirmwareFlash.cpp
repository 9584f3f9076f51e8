#include "portwire/virtual/FirmwareFlash.h"

#include <algorithm>

namespace portwire {

namespace {

struct RateCode
{
    std::uint8_t code;
    int hertz;
};

constexpr RateCode rateCodes[] = {{8, 125}, {4, 250}, {2, 500}, {1, 1000}, {16, 2000}, {32, 4000}};

struct FactoryLevel
{
    int dpi;
    std::uint8_t red, green, blue;
};

struct FactoryModel
{
    std::string_view model;
    Sensor sensor;
    std::uint8_t levelsInUse;
    FactoryLevel levels[8];
};

constexpr FactoryModel factoryModels[] = {
    {"q1",
     Sensor::Sensor3395,
     6,
     {{400, 255, 0, 0},
      {800, 0, 0, 255},
      {1600, 0, 255, 0},
      {3200, 255, 255, 0},
      {6400, 0, 255, 255},
      {26000, 255, 0, 255},
      {12000, 159, 0, 0},
      {18000, 0, 212, 252}}},
    {"q2",
     Sensor::Sensor3311,
     5,
     {{400, 255, 0, 0},
      {800, 0, 0, 255},
      {1600, 0, 255, 0},
      {3200, 255, 255, 0},
      {6400, 0, 255, 255},
      {8000, 255, 0, 255},
      {10000, 159, 0, 0},
      {12400, 0, 212, 252}}},
    {"unknown",
     Sensor::Unknown,
     4,
     {{400, 255, 0, 0},
      {800, 0, 0, 255},
      {1600, 0, 255, 0},
      {3200, 255, 255, 0},
      {3200, 0, 255, 255},
      {3200, 255, 0, 255},
      {3200, 159, 0, 0},
      {3200, 0, 212, 252}}},
};

/** Type and first parameter of the six buttons: left, right, middle, forward, back, DPI cycle. */
constexpr std::uint8_t factoryKeys[6][2] = {{1, 1}, {1, 2}, {1, 4}, {1, 16}, {1, 8}, {2, 1}};

struct FactoryByte
{
    std::size_t at;
    std::uint8_t value;
};

constexpr FactoryByte factoryBytes[] = {
    {0, 1},                                                                    // 1000 Hz
    {4, 2},                                                                    // third level
    {53, 1},                                                                   // lift-off at 1 mm
    {54, 4},                                                                   // ms of debounce
    {55, 1},                                                                   // motion sync
    {56, 60},                                                                  // sleep after 10 minutes
    {61, 6},                                                                   // full performance for a minute
    {76, 1},  {77, 128}, {78, 3},    {79, 1},                                  // indicator steady
    {160, 1}, {161, 0},  {162, 255}, {163, 153}, {164, 7}, {165, 9}, {166, 1}, // light flowing
};

/** Codes of a level without doubling, each value in the sensor's own way. */
void putLevel(std::uint8_t *level, Sensor sensor, const FactoryLevel &value)
{
    int code = value.dpi / 50 - 1;
    int flags = 0;
    if (sensor == Sensor::Sensor3311)
        code = value.dpi / 100 + 3;
    else if (sensor == Sensor::Sensor3395)
        flags = (code / 256) * 0x44;
    level[0] = level[1] = static_cast<std::uint8_t>(code % 256);
    level[2] = static_cast<std::uint8_t>(flags);
    level[3] = value.red;
    level[4] = value.green;
    level[5] = value.blue;
}

/** One event of 5 bytes as the 8 bytes of the record: action, kind, code and delay. */
void exportEvent(const std::uint8_t *in, std::uint8_t *out)
{
    static constexpr std::uint8_t kinds[4] = {0, 1, 2, 4};
    const unsigned low = in[0] + 256u * in[1];
    const unsigned delay = in[1] / 32u + in[2] * 8u + in[3] * 2048u + in[4] * 524288u;
    const unsigned code = low / 8 % 1024;
    out[0] = low % 2;
    out[1] = kinds[low / 2 % 4];
    out[2] = static_cast<std::uint8_t>(code % 256);
    out[3] = static_cast<std::uint8_t>(code / 256);
    for (int i = 0; i < 4; ++i)
        out[4 + i] = static_cast<std::uint8_t>(delay >> (8 * i));
}

} // namespace

FirmwareFlash FirmwareFlash::factory(std::string_view model)
{
    const FactoryModel *found = std::find_if(std::begin(factoryModels), std::end(factoryModels),
                                             [&](const FactoryModel &known) { return known.model == model; });
    if (found == std::end(factoryModels))
        --found;
    FirmwareFlash flash;
    for (const FactoryByte &byte : factoryBytes)
        flash.bytes[byte.at] = byte.value;
    flash.bytes[1] = found->levelsInUse;
    for (std::size_t level = 0; level < 8; ++level)
        putLevel(&flash.bytes[5 + 6 * level], found->sensor, found->levels[level]);
    for (std::size_t key = 0; key < 6; ++key) {
        flash.bytes[96 + 3 * key] = factoryKeys[key][0];
        flash.bytes[97 + 3 * key] = factoryKeys[key][1];
    }
    return flash;
}

int FirmwareFlash::levelCount() const { return std::clamp<int>(bytes[1], 1, 8); }

int FirmwareFlash::currentLevel() const { return std::min<int>(bytes[4], levelCount() - 1); }

int FirmwareFlash::dpi(Sensor sensor) const
{
    const std::uint8_t *level = &bytes[5 + 6 * static_cast<std::size_t>(currentLevel())];
    return dpiOf(sensor, level[0], level[2]);
}

int FirmwareFlash::dpiOf(Sensor sensor, std::uint8_t code, std::uint8_t flags)
{
    int value = 0;
    if (sensor == Sensor::Sensor3311) {
        // The table has the codes 4 to 127; the sensor stays at the end of its range for others.
        value = 100 * (std::clamp<int>(code, 4, 127) - 3);
    } else {
        const int high = sensor == Sensor::Sensor3395 ? flags >> 6 : 0;
        value = (high * 256 + code + 1) * ((flags & 0x22) ? 100 : 50);
    }
    return (flags & 0x11) ? 2 * value : value;
}

int FirmwareFlash::rateHz() const
{
    for (const RateCode &rate : rateCodes) {
        if (rate.code == bytes[0])
            return rate.hertz;
    }
    return 0;
}

int FirmwareFlash::idleSeconds() const { return 10 * bytes[56]; }

LightState FirmwareFlash::light() const
{
    const std::uint8_t *group = &bytes[160];
    return {group[6] != 0, group[0], group[1], group[2], group[3], group[4], group[5]};
}

std::vector<std::uint8_t> FirmwareFlash::record() const
{
    std::vector<std::uint8_t> out(10428, 0);
    const auto copy = [&](std::size_t from, std::size_t to, std::size_t count) {
        std::copy_n(bytes.begin() + static_cast<long>(from), count, out.begin() + static_cast<long>(to));
    };
    copy(0, 0, 2);    // report rate, level count
    copy(4, 2, 1);    // current level
    copy(2, 3, 2);    // the two reserved bytes
    copy(53, 5, 10);  // lift-off to sensor mode
    copy(5, 15, 48);  // levels
    copy(76, 63, 4);  // indicator
    copy(160, 67, 7); // light
    copy(96, 74, 50); // buttons and the gap
    for (std::size_t slot = 0; slot < 16; ++slot) {
        const std::uint8_t *sequence = &bytes[256 + 32 * slot];
        std::uint8_t *keys = &out[124 + 52 * slot];
        keys[0] = std::min<std::uint8_t>(sequence[0], 6);
        for (std::size_t event = 0; event < 6; ++event)
            exportEvent(sequence + 1 + 5 * event, keys + 4 + 8 * event);

        const std::uint8_t *stored = &bytes[768 + 384 * slot];
        std::uint8_t *macro = &out[956 + 592 * slot];
        macro[0] = std::min<std::uint8_t>(stored[0], 30);
        std::copy_n(stored + 1, 30, macro + 1);
        macro[31] = std::min<std::uint8_t>(stored[31], 70);
        for (std::size_t event = 0; event < 70; ++event)
            exportEvent(stored + 32 + 5 * event, macro + 32 + 8 * event);
    }
    return out;
}

} // namespace portwire
