#pragma once

#include "devicelink/DeviceAllInfo.h"

class QWidget;

/**
 * What is offered for a receiver that doesn't hear its mouse: the two may have firmware of different age, or have to be
 * paired. GUI thread only.
 */
namespace MismatchCheck {

/**
 * Asks the user and does what he confirms: pairing, or an update of the receiver. A receiver whose mouse was never seen
 * on this PC is paired without a question.
 *
 * The caller scans anew afterwards: the receiver may have a mouse now, and nobody has looked at the bus meanwhile.
 * \param page over which the prompts stand
 */
void run(const QWidget *page, const DeviceAllInfo &receiver);

} // namespace MismatchCheck
