#pragma once

#include <cstdint>

namespace portwire {

struct ReportRate
{
    std::uint8_t code;
    int hertz;
};

/** What a mouse can report at, the slowest first. */
constexpr ReportRate reportRates[] = {{8, 125}, {4, 250}, {2, 500}, {1, 1000}, {16, 2000}, {32, 4000}};

/** \return 0 for a code without a meaning. */
constexpr int hertzOfCode(std::uint8_t code)
{
    for (const ReportRate &rate : reportRates) {
        if (rate.code == code)
            return rate.hertz;
    }
    return 0;
}

} // namespace portwire
