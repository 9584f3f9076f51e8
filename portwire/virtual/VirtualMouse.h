#pragma once

#include "portwire/virtual/BootLoader.h"
#include "portwire/virtual/FirmwareFlash.h"
#include "portwire/virtual/FirmwarePacket.h"

#include <chrono>
#include <functional>
#include <optional>

namespace portwire {

/** What a status report can say; more than one at a time. */
enum StatusFlag : std::uint8_t {
    dpiLevelChanged = 0x01,
    reportRateChanged = 0x02,
    wholeRecordChanged = 0x04,
    indicatorChanged = 0x08,
    lightChanged = 0x20,
    batteryChanged = 0x40,
};

/**
 * Firmware model of a mouse: four stored profiles, battery, sleep. It knows the wire protocol and its own flash and
 * nothing of the program. Not safe for use by several threads at a time; the bus sees to that.
 */
class VirtualMouse
{
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    static constexpr std::size_t profileCount = 4;

    /** What outlasts a loss of power. */
    struct Stored
    {
        std::array<FirmwareFlash, profileCount> profiles;
        std::uint8_t activeProfile = 0;
    };

    /** A mouse fresh from the factory, awake. \param ofModel outlives it */
    VirtualMouse(const MouseModel &ofModel, Clock clock);

    /** The answer to a request; the mouse must be awake. */
    FirmwarePacket answer(const FirmwarePacket &request);
    /** The link to the PC broke off: a batch of writes that isn't complete is forgotten. */
    void connectionLost();

    /** Its mode is changed by restart() alone. */
    BootLoader &bootLoader() { return loader; }
    const BootLoader &bootLoader() const { return loader; }
    /** Starts again, in boot mode or with the firmware that it has. Its memory but the flash is lost. */
    void restart(bool isIntoBoot);

    bool isAwake(); ///< false as soon as the idle time has passed, and in boot mode
    void sleep();
    void wake();

    bool isCorded() const { return corded; }
    /** Plugs or pulls the cable. Power comes with it: the mouse wakes up and doesn't fall asleep by itself. */
    void setCorded(bool isNowCorded);

    /* What a hand does on the mouse. It wakes up, tells the PC, and false is returned if there is no such thing. */
    bool changeLevel(int level);        ///< 0 to the number of levels in use less 1
    bool changeRate(std::uint8_t code); ///< as in ReportRate of the record
    bool changeProfile(int index);      ///< 0 to 3

    /** All three buttons held for three seconds: it looks for a receiver and hears none. False on its cable. */
    bool lookForReceiver(std::chrono::seconds patience);
    bool isLooking() const { return awake && !corded && now() < lookingUntil; }
    /** It has found one, or the same again. */
    void receiverFound();
    /** The factory's settings for the active profile. */
    void resetByHand();

    void changeLight(bool isOn, int mode);
    void changeIndicator(bool isOn);

    int batteryPercent() const { return percent; }
    bool isCharging() const { return charging; }
    bool setBattery(int newPercent, bool isNowCharging); ///< 0 to 100; false if out of range

    const FirmwareFlash &flash() const { return stored.profiles[stored.activeProfile]; }
    int activeProfile() const { return stored.activeProfile; }
    Sensor sensor() const { return model.sensor; }
    bool isProgramShown() const { return programShown; }
    /** Number of values of the battery curve that it was given, 0 before. */
    int curveValues() const { return static_cast<int>(batteryCurve.size() / 2); }

    /** Another program on the PC has written all of the active profile. */
    void setRecord(const std::array<std::uint8_t, FirmwareFlash::recordSize> &record);

    const Stored &content() const { return stored; }
    void setContent(const Stored &content);

    /** Called with each unprompted report. */
    std::function<void(const FirmwarePacket &)> announce;
    /** Called after each change of what is stored. */
    std::function<void()> storedChanged;

private:
    FirmwareFlash &active() { return stored.profiles[stored.activeProfile]; }
    void tell(std::uint8_t statusFlags);
    void touched();
    void changed();
    FirmwarePacket read(const FirmwarePacket &request) const;
    FirmwarePacket write(const FirmwarePacket &request);
    FirmwarePacket selectProfile(const FirmwarePacket &request);

    const MouseModel &model;
    Clock now;

    BootLoader loader;
    Stored stored;
    /** Writes of a batch whose last report hasn't come yet. */
    std::vector<FirmwarePacket> staged;
    std::vector<std::uint8_t> batteryCurve;

    bool awake = true;
    bool corded = false;
    std::uint8_t changedOnCable = 0; ///< flags of all announcements since the cable was plugged
    std::chrono::steady_clock::time_point lookingUntil{};
    bool programShown = false;
    int percent = 80;
    bool charging = false;
    std::chrono::steady_clock::time_point lastUse;
};

} // namespace portwire
