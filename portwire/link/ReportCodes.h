#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace portwire {

/** What a report is. Requests and their answers carry the same code. */
enum class ReportCode : std::uint8_t {
    DeviceInfo = 1,
    ProgramStatus = 2,
    Online = 3,
    Battery = 4,
    EnterPairing = 5,
    PairingStatus = 6,
    WriteFlash = 7,
    ReadFlash = 8,
    FactoryReset = 9,
    StatusChanged = 10, ///< only ever unprompted
    BatteryCurve = 11,
    LeavePairing = 12,
    CurrentConfig = 14,
    SelectConfig = 15,
    MouseVersion = 18,
    SetReceiverLight = 20,
    ReceiverLight = 21,
    SetLongRange = 22,
    LongRange = 23,
    ReceiverVersion = 24,
    FirmwareInfo = 25,
    EnterBoot = 26,
    UpgradeBegin = 27, ///< this and the rest are for a device in boot mode
    UpgradeBlock = 28,
    UpgradeVerify = 29,
    Restart = 30,
};

/**
 * What a device may say without being asked. Anything else that comes unprompted is dropped: a "factory reset is done"
 * that nobody ordered would make the program clear what the mouse still has.
 */
constexpr std::array unpromptedCodes = {ReportCode::PairingStatus, ReportCode::StatusChanged, ReportCode::ReceiverLight,
                                        ReportCode::LongRange};

constexpr bool isUnprompted(ReportCode code)
{
    for (const ReportCode each : unpromptedCodes) {
        if (each == code)
            return true;
    }
    return false;
}

/** Payload bytes that an answer with the status Done has. A read of the flash or of the firmware info has as many as it
 * asked for. */
struct AnswerLength
{
    ReportCode code;
    std::size_t bytes;
};
constexpr AnswerLength answerLengths[] = {
    {ReportCode::DeviceInfo, 3},      {ReportCode::Online, 4},         {ReportCode::Battery, 4},
    {ReportCode::PairingStatus, 1},   {ReportCode::CurrentConfig, 1},  {ReportCode::SelectConfig, 1},
    {ReportCode::MouseVersion, 2},    {ReportCode::ReceiverLight, 10}, {ReportCode::LongRange, 1},
    {ReportCode::ReceiverVersion, 2}, {ReportCode::UpgradeBegin, 1},   {ReportCode::UpgradeBlock, 3},
    {ReportCode::UpgradeVerify, 1},
};

/** Status of an answer, at the place of a request's flags. */
enum class AnswerStatus : std::uint8_t {
    Done = 0,
    MouseOffline = 1, ///< the receiver or USB side answers for a mouse that sleeps, is elsewhere or doesn't exist
    Refused = 2,      ///< not understood, or out of range
    BatchLost = 3,    ///< the mouse has lost the reports before this one of the batch: send all of it again
};

/** Flags of WriteFlash: a batch takes effect as a whole, with its last report. */
constexpr std::uint8_t firstOfBatch = 0x01;
constexpr std::uint8_t lastOfBatch = 0x02;

} // namespace portwire
