#pragma once

#include "portwire/portwire.h"

#include <QByteArray>

#include <functional>

/**
 * The report link: which device's reports go to which callback. There is one at a time, and it changes on two threads:
 * the connect thread starts it, the GUI thread ends it. One lock orders these, so that a link that nobody wants any
 * more isn't started after its end.
 *
 * The library waits for no callback when a link ends. So a report may still be on its way through the pages when its
 * link has gone and the next one stands. Each start and each end begins a new generation: a report notes the one that
 * it came in with, and what it would do to the link or to the mouse it does only while that one lasts.
 */
namespace ReportLink {

/** Sends the reports of a path to `callback`, in place of the link before. */
void start(const QByteArray &path, PortwireReportCallback callback);

/**
 * The same if `wanted()` still holds, looked at and done in one: no end of the link can come between. `wanted` runs
 * under the lock, and may hand the library what belongs to this very link.
 * \return true if the link was started.
 */
bool startIf(const std::function<bool()> &wanted, const QByteArray &path, PortwireReportCallback callback);

/** Ends the link without waiting. A report that is being shown may still run; see above. */
void end();

/** Number of the present generation. */
unsigned generation();

/** True as long as the link of that generation stands. It may end the next moment; see whileCurrent(). */
bool isCurrent(unsigned generation);

/** True if a link was ended, and not only replaced, since that generation: the mouse of then is nobody's business. */
bool hasEndedSince(unsigned generation);

/**
 * Does `work` if the link of that generation still stands; no start or end comes between. `work` must not wait, emit a
 * blocking signal, start or end a link.
 * \return true if it was done.
 */
bool whileCurrent(unsigned generation, const std::function<void()> &work);

/**
 * Tells the mouse whether its settings are before the user's eyes: `DeviceEntered` and not `WindowAway`. Call it after
 * a change of either, and at the start of a link. Looks and tells in one, so that the last to tell has looked last.
 */
void tellProgramStatus();

} // namespace ReportLink
