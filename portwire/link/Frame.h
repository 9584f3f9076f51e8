#pragma once

#include "portwire/bus.h"
#include "portwire/link/ReportCodes.h"

#include <array>
#include <cstddef>
#include <optional>

namespace portwire {

/** Every report has this length, in both directions. */
constexpr std::size_t reportSize = 64;
/** Bytes in front of the payload; the callback gets them as its header. */
constexpr std::size_t headerSize = 8;
/** The most payload bytes of one report. 128 full reports carry exactly one device image. */
constexpr std::size_t maxPayload = 54;

/** A report, taken apart. */
struct Frame
{
    ReportCode code{};
    std::uint8_t sequence = 0;  ///< 1 to 255, an answer repeats that of its request; 0 on an unprompted report
    std::uint16_t selector = 0; ///< address in the device image, or 0
    std::uint8_t flags = 0;     ///< of a request; an AnswerStatus in an answer
    std::vector<std::uint8_t> payload;

    /** The eight bytes in front of the payload, as they stand on the wire. */
    std::array<std::uint8_t, headerSize> header() const;
};

/** The report that carries this frame. A payload of more than maxPayload bytes is cut. */
Report encodeFrame(const Frame &frame);

/** \return nothing unless length, report id, payload length and checksum are all right. */
std::optional<Frame> decodeFrame(const Report &report);

} // namespace portwire
