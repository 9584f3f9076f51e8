#pragma once

#include "portwire/bus.h"

#include <chrono>
#include <optional>
#include <string_view>

namespace portwire {

/** What may go wrong with a report on its way. */
enum class FaultKind {
    None,
    Drop,    ///< it never arrives
    Stall,   ///< it arrives with the next one, an answer when nobody waits for it any more
    Garbage, ///< it arrives as random bytes
    Short,   ///< it arrives with its end missing
};

/** \return nothing for a name that isn't `drop`, `stall`, `garbage` or `short`. */
FaultKind faultByName(std::string_view name);

/** Which of the reports that pass between the PC and a device. */
enum class ReportClass { Answers, Requests, Announcements };

/** \return nothing for a name that isn't `answers`, `requests` or `announcements`. */
std::optional<ReportClass> reportClassByName(std::string_view name);

/** Spoils the next reports on their way. */
class Fault
{
public:
    /**
     * \param canCutContent also cuts content off a report that is whole otherwise. A receiver or a program can see that
     * there is too little; a mouse that is given less to write can't.
     */
    explicit Fault(bool canCutContent = true) : cutsContent(canCutContent) {}

    /** \param after reports that pass before the first spoiled one, to hit a step in the middle of a dialogue */
    void set(FaultKind newKind, int reports, int after = 0);

    /** The reports that arrive when this one is sent: none, one or more. */
    std::vector<Report> pass(Report report);

private:
    Report shortened(Report report) const;

    bool cutsContent;
    FaultKind kind = FaultKind::None;
    int passing = 0;
    int remaining = 0;
    std::vector<Report> stalled;
    std::uint32_t random = 0x2545F491; ///< any start but 0; the same bytes in each run
};

/** The way between the PC and a device: what is spoiled on it and how long it takes. */
struct Wire
{
    Fault answers{};
    Fault requests{false};
    Fault announcements{};
    std::chrono::microseconds latency{0}; ///< until what the device sends is there

    Fault &fault(ReportClass of);
};

} // namespace portwire
