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

/** In turn a report that is cut off, and, where there is content, a whole report whose content is cut off. */
Report Fault::shortened(Report answer) const
{
    auto packet = FirmwarePacket::parse(answer);
    if (packet && !packet->data.empty() && remaining % 2 == 0) {
        packet->data.resize(packet->data.size() / 2);
        return packet->build();
    }
    answer.resize(answer.size() / 2);
    return answer;
}

void Fault::set(FaultKind newKind, int answers, int after)
{
    kind = newKind;
    passing = std::max(after, 0);
    remaining = std::max(answers, 0);
}

std::vector<Report> Fault::pass(Report answer)
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
        stalled.push_back(std::move(answer));
        return arriving;
    case FaultKind::Garbage:
        for (std::uint8_t &byte : answer) {
            random ^= random << 13;
            random ^= random >> 17;
            random ^= random << 5;
            byte = static_cast<std::uint8_t>(random);
        }
        break;
    case FaultKind::Short:
        answer = shortened(answer);
        break;
    case FaultKind::None:
        break;
    }
    arriving.push_back(std::move(answer));
    return arriving;
}

} // namespace portwire
