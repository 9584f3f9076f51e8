#pragma once

#include "devicelink/DeviceAllInfo.h"

#include <QMutex>

#include <atomic>

/**
 * The one pairing that can be under way. The report callback of the library is a plain function and may run when the
 * dialog has gone, so what it touches lives here.
 *
 * A pairing ends once: by a status of the receiver, on a thread of the library, or by the dialog, on the GUI thread.
 * The lock decides who comes first; for the other one it is over then, and nothing is left to do.
 */
namespace PairingState {

enum State {
    Idle = 0,
    Pairing = 1,
    Success = 2,
    Failed = 3,
};

/** Nothing runs, and the connect logic goes on if a pairing held it up: before a dialog, and after it. */
void reset();

/**
 * A pairing begins. The device window's connect logic stands still until it ends.
 * \return true if the report link has to be started, and listen() called then; false if the pairing runs already and
 * the receiver is only asked again.
 */
bool begin();

/** The report link stands: what it says from now on counts. The one before may have told the end of the last pairing.
 */
void listen();

/**
 * Ends the pairing if it runs, and lets the connect logic go on unless `isGone`: without its receiver there is nothing
 * to go on with.
 * \return false if it was over already.
 */
bool end(State result, bool isGone = false);

State state();
/** The library is in pairing, `PairRunning`. */
bool isRunning();

/** The report callback of a pairing: its first payload byte of code 6 tells how it goes. */
void onReport(const std::uint8_t *header, int headerLength, const std::uint8_t *payload, std::uint32_t payloadLength);

} // namespace PairingState
