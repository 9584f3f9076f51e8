#include "portwire/virtual/Fault.h"

#include "portwire/virtual/FirmwarePacket.h"

#include <algorithm>

namespace portwire {

FaultKind faultByName(std::string_view name)
{
    constexpr std::pair<std::string_view, FaultKind> names[] = {{"drop", FaultKind::Drop},
                                                                {"stall", FaultKind::Stall},
                                                                {"garbage", FaultKind::Garbage},
                                                                {"short", FaultKind::Short}};
    for (const auto &[known, kind] : names) {
        if (known == name)
            return kind;
    }
    return FaultKind::None;
}

std::optional<ReportClass> reportClassByName(std::string_view name)
{
    constexpr std::pair<std::string_view, ReportClass> names[] = {{"answers", ReportClass::Answers},
                                                                  {"requests", ReportClass::Requests},
                                                                  {"announcements", ReportClass::Announcements}};
    for (const auto &[known, reports] : names) {
        if (known == name)
            return reports;
    }
    return std::nullopt;
}

/** In turn a report that is cut off, and, where there is content, a whole report whose content is cut off. */
Report Fault::shortened(Report report) const
{
    auto packet = FirmwarePacket::parse(report);
    if (cutsContent && packet && !packet->data.empty() && remaining % 2 == 0) {
        packet->data.resize(packet->data.size() / 2);
        return packet->build();
    }
    report.resize(report.size() / 2);
    return report;
}

void Fault::set(FaultKind newKind, int reports, int after)
{
    kind = newKind;
    passing = std::max(after, 0);
    remaining = std::max(reports, 0);
}

std::vector<Report> Fault::pass(Report report)
{
    std::vector<Report> arriving = std::move(stalled);
    stalled.clear();
    const FaultKind now = passing == 0 && remaining > 0 ? kind : FaultKind::None;
    int &counted = passing > 0 ? passing : remaining;
    if (counted > 0)
        --counted;
    switch (now) {
    case FaultKind::Drop:
        return arriving;
    case FaultKind::Stall:
        stalled.push_back(std::move(report));
        return arriving;
    case FaultKind::Garbage:
        for (std::uint8_t &byte : report) {
            random ^= random << 13;
            random ^= random >> 17;
            random ^= random << 5;
            byte = static_cast<std::uint8_t>(random);
        }
        break;
    case FaultKind::Short:
        report = shortened(report);
        break;
    case FaultKind::None:
        break;
    }
    arriving.push_back(std::move(report));
    return arriving;
}

Fault &Wire::fault(ReportClass of)
{
    if (of == ReportClass::Requests)
        return requests;
    return of == ReportClass::Announcements ? announcements : answers;
}

} // namespace portwire
