#pragma once

#include <QStringList>

#include <array>
#include <cstdint>

/** The times that lists of the pages offer, 10 s to 40 min, as the record holds them: in units of 10 s. */
namespace TenSecondTimes {

struct Time
{
    std::uint8_t tenSeconds;
    const char *text; ///< UTF-8; shown until a language file says otherwise
};

constexpr std::array<Time, 11> times = {{
    {1, "10秒"},
    {3, "30秒"},
    {6, "1分钟"},
    {30, "5分钟"},
    {60, "10分钟"},
    {90, "15分钟"},
    {120, "20分钟"},
    {150, "25分钟"},
    {180, "30分钟"},
    {210, "35分钟"},
    {240, "40分钟"},
}};

/** Where in the table a list begins: the idle time has all of it, full performance lasts 30 s at least. */
enum First { idleTime = 0, fullPerformance = 1 };

constexpr int itemCount(First first) { return static_cast<int>(times.size()) - first; }

/** What the record holds for an item of a list, which must be one. */
constexpr std::uint8_t valueOf(First first, int item)
{
    return times[static_cast<std::size_t>(first + item)].tenSeconds;
}

/** Item of a value of the record, -1 for one that the list doesn't have. */
constexpr int itemOf(First first, int tenSeconds)
{
    for (int item = 0; item < itemCount(first); ++item) {
        if (valueOf(first, item) == tenSeconds)
            return item;
    }
    return -1;
}

inline QStringList texts(First first)
{
    QStringList items;
    for (int item = 0; item < itemCount(first); ++item)
        items.append(QString::fromUtf8(times[static_cast<std::size_t>(first + item)].text));
    return items;
}

} // namespace TenSecondTimes
