#pragma once

#include <array>
#include <cstdint>

/** What `ReceiverClass` of a device says of the way to the mouse. */
namespace ReceiverClasses {

constexpr std::uint8_t receiver1K = 0;
constexpr std::uint8_t receiver4K = 1;
constexpr std::uint8_t receiver2K = 4;

/** A class that a device may tell. The others mean a mouse on its cable of which nothing more is known. */
struct Kind
{
    std::uint8_t receiverClass;
    int rate;      ///< of the receiver in kHz; 0 for a mouse on its cable
    int rateClass; ///< what report rates are offered: 0 up to 1000 Hz, 1 up to 4000 Hz, 2 up to 2000 Hz
};

constexpr std::array<Kind, 5> kinds = {{
    {receiver1K, 1, 0},
    {receiver4K, 4, 1},
    {2, 0, 0},
    {3, 0, 1},
    {receiver2K, 2, 2},
}};

/** The kind of a class; one on its cable that offers no rates of its own, -1, if it isn't in the table. */
constexpr Kind kindOf(std::uint8_t receiverClass)
{
    for (const Kind &kind : kinds) {
        if (kind.receiverClass == receiverClass)
            return kind;
    }
    return {receiverClass, 0, -1};
}

} // namespace ReceiverClasses
