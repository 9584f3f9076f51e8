#pragma once

#include "portwire/link/LinkedDevice.h"

namespace portwire {

/**
 * What takes more than one request. None of them waits longer than each request does.
 */
namespace ProtocolSteps {

/**
 * Reads the device image as the payload of one answer. It starts over while the mouse tells of changes, and ends when
 * its epoch does: the chunks could belong to two profiles. Neither goes on for ever.
 * \param step takes what was known when the reading began that came to something
 */
Answer readImage(LinkedDevice &device, const Work &work, Work::Step &step);

/** What became of a batch. */
struct Written
{
    Outcome outcome;
    const WriteQueue::Write *last = nullptr; ///< the write that decided it, nothing when all is done
};

/** Writes a batch, for as long as its epoch lasts. */
Written write(LinkedDevice &device, const Work &work, const Work::Step &step);

/**
 * Whether the mouse answers something else than this code. \param attempt which request is tried: a mouse that ignores
 * one may ignore two
 */
bool answersAnother(LinkedDevice &device, ReportCode than, unsigned attempt);

} // namespace ProtocolSteps

} // namespace portwire
