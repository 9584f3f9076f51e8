#pragma once

#include "portwire/portwire.h"

#include <QElapsedTimer>
#include <QMutex>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>

/**
 * The one callback that the report link has: every reply and every unprompted report of the mouse ends here, on a
 * thread of the library, one at a time. It decodes the report, updates the working record and the device state, asks
 * for what follows, and tells the pages through the hub, where most signals block it until the GUI thread is done.
 */
void dispatchReport(const std::uint8_t *header, int headerLength, const std::uint8_t *payload,
                    std::uint32_t payloadLength);

/** Sends the reports of a path to the dispatcher, in place of the link before. */
void startReportLink(const char *path);
/**
 * The same if `wanted()` still holds, looked at and done in one: no end of the link can come between.
 * \return true if the link was started.
 */
bool startReportLinkIf(const std::function<bool()> &wanted, const char *path);
/**
 * Ends the link without waiting, and with it what a factory reset had still to do. A report that is being shown may
 * still run; it no longer changes the link state.
 */
void endReportLink();
/** True while a report is being handled. */
bool isDispatching();

/** State of the receiver's light; written by the dispatcher and the settings page. */
extern DongleRGB DongleRgb;
/** `Option` key of the same name: 1 puts a percent sign behind the battery number. */
inline std::atomic<int> ShowBatteryValue{0};

/** Lets one re-read through in 3000 ms: a mouse announces a change of many settings as many changes. */
class StatusGate
{
public:
    void start();
    /** True, and the time starts anew, if the last opening is more than 3000 ms ago. */
    bool open();

private:
    QMutex mutex;
    QElapsedTimer timer;
};
StatusGate &statusGate();
