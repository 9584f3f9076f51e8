#pragma once

#include "portwire/bus.h"

#include <string_view>

namespace portwire {

/** What may go wrong with an answer on its way. */
enum class FaultKind {
    None,
    Drop,    ///< it never arrives
    Stall,   ///< it arrives with the next answer, when nobody waits for it any more
    Garbage, ///< it arrives as random bytes
    Short,   ///< it arrives with its end missing
};

/** \return nothing for a name that isn't `drop`, `stall`, `garbage` or `short`. */
FaultKind faultByName(std::string_view name);

/** Spoils the next answers of a device. */
class Fault
{
public:
    /** \param after answers that pass before the first spoiled one, to hit a step in the middle of a dialogue */
    void set(FaultKind newKind, int answers, int after = 0);

    /** The reports that arrive when the device sends this answer: none, one or more. */
    std::vector<Report> pass(Report answer);

private:
    Report shortened(Report answer) const;

    FaultKind kind = FaultKind::None;
    int passing = 0;
    int remaining = 0;
    std::vector<Report> stalled;
    std::uint32_t random = 0x2545F491; ///< any start but 0; the same bytes in each run
};

} // namespace portwire
