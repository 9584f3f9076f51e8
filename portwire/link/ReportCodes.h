#pragma once

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
    CurrentConfig = 14,
    SelectConfig = 15,
    MouseVersion = 18,
    SetReceiverLight = 20,
    ReceiverLight = 21,
    SetLongRange = 22,
    LongRange = 23,
    ReceiverVersion = 24,
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
