#pragma once

#include "portwire/link/Link.h"
#include "portwire/link/Upgrades.h"

namespace portwire {

/**
 * What the C functions work on: the devices of the bus, the one report link and the upgrades.
 *
 * Made at first use and never destroyed, as are its threads: a callback may stand still in the program while the
 * process ends, and nothing here may wait for it or fall away under it.
 */
class Library
{
public:
    static Library &instance();

    Channels &devices() { return *channels; }
    Upgrades &upgrades() { return upgradesOfBus; }

    void startLink(const char *path, PortwireReportCallback callback);
    void endLink();
    /** \return nothing while there is no link. */
    std::shared_ptr<Link> link();

    /** The program's record has these values now and they are to reach the mouse. */
    void update(const FlashDataMap &record);
    /** As update(), but all values are meant, also those that the program had before. */
    void replace(const FlashDataMap &record);
    /** The program's record was filled with these values. */
    void noteRecord(const FlashDataMap &record);

    /** To be sent first at the next start of a link: a curve belongs to a model, and the program sets it before. */
    void setBatteryCurve(std::vector<std::uint8_t> curve);

private:
    Library();
    void leavePairing(const Link &ended);

    const std::shared_ptr<Channels> channels;
    Upgrades upgradesOfBus;
    std::mutex mutex;
    std::shared_ptr<Link> current;
    std::vector<std::uint8_t> batteryCurve;
    FlashDataMap lastRecord{};
};

} // namespace portwire
