#pragma once

#include "portwire/link/Reception.h"

namespace portwire {

class WriteQueue;

/** Something to ask of the device of a link, and what becomes of the answer. */
struct Job
{
    enum class Kind {
        Tell,          ///< the answer is for the link only
        Read,          ///< the answer goes to the callback
        WholeRecord,   ///< reads the device image
        SelectProfile, ///< from its answer on the mouse holds something else
        FactoryReset,  ///< likewise; its answer goes to the callback
        AskAddress,    ///< whose device this is
        AskProfile,    ///< which profile the queued writes would reach
    };
    Kind kind = Kind::Tell;
    Request request{};
    bool isForReceiver = false; ///< the receiver answers it alone: neither a sleeping mouse nor writes are in the way

    std::uint64_t number = 0; ///< given by Work::add()
    int timesIgnored = 0;     ///< while the mouse answered other requests
    int timesOutdated = 0;    ///< answers that were of a profile which the mouse had left by the time of their delivery
    std::shared_ptr<WriteQueue> writesBehind{}; ///< what is handed over after an order that changes all

    static Job wholeRecord() { return {Kind::WholeRecord, {ReportCode::ReadFlash}}; }

    /** The user meant it for one mouse: it outlives a link. */
    bool isOrder() const { return kind == Kind::SelectProfile || kind == Kind::FactoryReset; }
    bool isRead() const { return kind == Kind::Read || kind == Kind::WholeRecord; }
    bool isCheck() const { return kind == Kind::AskAddress || kind == Kind::AskProfile; }
};

/** What came of a request. */
enum class Outcome {
    Done,
    MouseOffline, ///< or there is no device
    NoAnswer,
    Refused,
    BatchLost,
    Outdated, ///< given up in the middle: the mouse has another profile, or the link has ended
};

} // namespace portwire
