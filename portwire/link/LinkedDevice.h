#pragma once

#include "portwire/link/Channels.h"
#include "portwire/link/Work.h"

namespace portwire {

/** An answer, if there is one. */
struct Answer
{
    Outcome outcome;
    Frame frame{};
};

/**
 * The device of a link: open while it is on the bus, and opened again when it is back. Used by the thread of the link,
 * and before that starts.
 */
class LinkedDevice
{
public:
    LinkedDevice(std::shared_ptr<Channels> onChannels, std::string path, std::shared_ptr<Work> work);

    /** Opens the device, if it is there. \param listener gets its reports from now on, also when it is opened again */
    void open(const std::shared_ptr<ReportListener> &listener);

    const std::string &path() const { return devicePath; }
    /** Opens the device again if it was away and is back. \return whether it is open now */
    bool reopen();

    /** How long an answer of it may take, also while it is away. */
    std::chrono::milliseconds answerTime() const { return channel ? channel->answerTime() : Endpoint::usualAnswerTime; }

    /**
     * Asks the device; nothing more once the listener has ended. While it is away it counts as a mouse that is: it may
     * be another one when it is back, so it is only opened again where that is looked at.
     * \param isStillMeant asked before the request is repeated; false gives Outdated
     */
    Answer ask(const Request &request, const std::function<bool()> &isStillMeant = {});
    /** Takes what it has sent unprompted until now. */
    void takeArrived();

private:
    const std::shared_ptr<Channels> channels;
    const std::string devicePath;
    const std::shared_ptr<Work> work;
    std::weak_ptr<ReportListener> listener;
    std::shared_ptr<Channel> channel;
};

} // namespace portwire
