#pragma once

#include <array>

/** The sensor page from outside: what its widgets are called, and the bytes behind what they offer. */
namespace SensorWidgets {

constexpr std::array<const char *, 8> cards = {"BlueButton",      "BrightRedButton",  "RedButton",
                                               "YellowButton",    "GreenButton",      "PurpleButton",
                                               "LightBlueButton", "LightYellowButton"};

struct Rate
{
    const char *button;
    int code;
};
constexpr std::array<Rate, 6> rates = {{{"Button125HZ", 8},
                                        {"Button250HZ", 4},
                                        {"Button500HZ", 2},
                                        {"Button1000HZ", 1},
                                        {"Button2000HZ", 16},
                                        {"Button4000HZ", 32}}};

/** Times that the list offers, in units of 10 s. */
constexpr std::array<int, 10> performanceTimes = {3, 6, 30, 60, 90, 120, 150, 180, 210, 240};
constexpr std::array<int, 10> indicatorBrightness = {16, 30, 60, 90, 128, 150, 180, 210, 230, 255};

} // namespace SensorWidgets
