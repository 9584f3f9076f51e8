#pragma once

#include <array>
#include <cstdint>

/** How long full performance may last, in units of 10 s: 30 s to 40 min, in the order of the list. */
constexpr std::array<std::uint8_t, 10> performanceTimes = {3, 6, 30, 60, 90, 120, 150, 180, 210, 240};

/** Item of a time of the record, -1 for a time that the list doesn't have. */
constexpr int performanceTimeIndex(int tenSeconds)
{
    for (std::size_t index = 0; index < performanceTimes.size(); ++index) {
        if (performanceTimes[index] == tenSeconds)
            return static_cast<int>(index);
    }
    return -1;
}
