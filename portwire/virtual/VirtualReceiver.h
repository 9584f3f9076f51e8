#pragma once

#include "portwire/virtual/BootLoader.h"
#include "portwire/virtual/DeviceModels.h"
#include "portwire/virtual/FirmwarePacket.h"

#include <array>
#include <chrono>
#include <functional>
#include <optional>

namespace portwire {

/** Firmware model of a receiver: what it answers by itself. What isn't for it goes on to its mouse. */
class VirtualReceiver
{
public:
    /** What outlasts a loss of power. */
    struct Stored
    {
        std::array<std::uint8_t, 10> light{1, 0, 0, 0, 0, 0, 0, 0, 0, 0}; ///< byte 0 is the mode
        bool isLongRange = false;
    };

    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    /** How long it looks for a mouse. */
    static constexpr std::chrono::seconds pairingTime{30};

    /** \param ofModel outlives it */
    VirtualReceiver(const ReceiverModel &ofModel, Clock clock)
        : model(ofModel), now(std::move(clock)), loader(ofModel.version)
    {
    }

    /** Whether a request with this code is for the receiver, whatever its mouse does. */
    static bool isAskedAlone(std::uint8_t code);

    /** The answer to a request that is for the receiver; who it is and whether its mouse is online says the bus. */
    FirmwarePacket answer(const FirmwarePacket &request);

    bool isPairing() const { return pairingStatus == 1; }
    /** True once a pairing has gone on for as long as the receiver has patience. */
    bool isPairingOver() const { return isPairing() && now() >= pairingUntil; }
    void endPairing(bool isPaired);
    /** It was pulled out: what it was doing is forgotten. */
    void losePower();

    /** Its mode is changed by restart() alone. */
    BootLoader &bootLoader() { return loader; }
    const BootLoader &bootLoader() const { return loader; }
    /** Starts again, in boot mode or with the firmware that it has. */
    void restart(bool isIntoBoot);

    /* Another program on the PC sets it, and it tells. */
    bool changeLight(int mode); ///< 0 to 3; false if there is no such mode or no light
    void changeLongRange(bool isOn);

    const Stored &content() const { return stored; }
    void setContent(const Stored &content) { stored = content; }

    /** Called with each unprompted report. */
    std::function<void(const FirmwarePacket &)> announce;
    /** Called after each change of what is stored. */
    std::function<void()> storedChanged;

private:
    FirmwarePacket light(const FirmwarePacket &request) const;
    FirmwarePacket setLight(const FirmwarePacket &request);
    FirmwarePacket setLongRange(const FirmwarePacket &request);
    FirmwarePacket enterPairing(const FirmwarePacket &request);
    FirmwarePacket leavePairing(const FirmwarePacket &request);

    void setPairingStatus(std::uint8_t status);

    const ReceiverModel &model;
    Clock now;
    BootLoader loader;
    Stored stored;
    std::uint8_t pairingStatus = 0; ///< 0 none yet, 1 goes on, 2 failed, 3 paired
    std::chrono::steady_clock::time_point pairingUntil{};
};

} // namespace portwire
