#pragma once

#include "portwire/virtual/FirmwarePacket.h"

#include <array>
#include <string_view>

namespace portwire {

/**
 * Firmware model of what a device keeps beside its firmware: it takes a new one in boot mode, and tells of the one that
 * there is in both modes. It knows nothing of settings.
 */
class BootLoader
{
public:
    static constexpr std::uint8_t mouseTarget = 210;
    static constexpr std::uint8_t receiverTarget = 211;

    /** Which device this is, and so which images it takes. */
    struct Identity
    {
        std::uint8_t target;
        std::uint8_t modelId;
        std::string_view name; ///< up to 64 bytes
        std::uint32_t unit;    ///< no two devices have the same
    };

    /** What outlasts a loss of power. */
    struct Stored
    {
        std::uint16_t version = 0; ///< of the last image that was verified, major high
        bool isActive = false;     ///< in boot mode: there is no firmware that it could start
    };

    /** What the device does once its answer is sent. */
    enum class Next { Stay, EnterBoot, LeaveBoot, LosePower };

    explicit BootLoader(std::uint16_t version) : stored{version, false} {}

    bool isActive() const { return stored.isActive; }
    std::uint16_t version() const { return stored.version; }
    const Stored &content() const { return stored; }
    void setContent(const Stored &content) { stored = content; }
    void setVersion(std::uint16_t version) { stored.version = version; }

    /** Whether a request with this code is for the boot loader, whichever mode the device is in. */
    static bool isAsked(std::uint8_t code) { return code >= 25 && code <= 30; }
    /** The answer to any request in boot mode, or to one of those in normal mode. Nothing if the power goes instead. */
    std::optional<FirmwarePacket> answer(const FirmwarePacket &request, const Identity &identity);
    /** What follows from the answers since the last call. */
    Next takeNext();

    /** The firmware is void from now on, until there is another one. */
    void enter();
    /** The firmware runs. */
    void leave();
    /** Power was away: an image that was begun is forgotten. */
    void losePower() { image = {}; }
    /** The next upgrade loses its power when this much of the file has arrived, 0 to 100. */
    void setPowerLoss(int percent) { powerLossPercent = percent; }

private:
    enum Reason : std::uint8_t {
        fine,
        notAnImage,
        wrongTarget,
        wrongCompany,
        wrongModel,
        wrongName,
        wrongLength,
        wrongChecksum,
        wrongVersion
    };

    static constexpr std::uint32_t headerSize = 728;
    static constexpr std::uint32_t blockSize = 52;
    static constexpr std::uint32_t mostPayload = 524288;

    /** What has arrived of an image. */
    struct Image
    {
        bool isBegun = false;
        bool isVerified = false;
        Reason reason = fine;
        std::uint32_t length = 0; ///< of the file
        std::uint32_t taken = 0;  ///< bytes of it
        std::uint32_t crc = 0xFFFFFFFF;
        std::array<std::uint8_t, headerSize> header{};

        std::uint16_t nextBlock() const { return static_cast<std::uint16_t>((taken + blockSize - 1) / blockSize); }
        std::uint32_t number(std::size_t at) const; ///< four bytes of the header
    };

    FirmwarePacket info(const FirmwarePacket &request, const Identity &identity) const;
    std::optional<FirmwarePacket> begin(const FirmwarePacket &request);
    std::optional<FirmwarePacket> block(const FirmwarePacket &request, const Identity &identity);
    FirmwarePacket verify(const FirmwarePacket &request);
    Reason judgeHeader(const Identity &identity) const;
    void take(std::uint8_t byte);
    bool isPowerGone();

    Stored stored;
    Image image{};
    Next next = Next::Stay;
    int powerLossPercent = -1; ///< none is to come
};

} // namespace portwire
