#pragma once

#include "devicelink/FlashDataMap.h"

class QString;

/**
 * A profile file holds the whole record of a mouse: three byte arrays, each behind its length in four bytes with the
 * high one first. The vendor mark (12 bytes: "Velko", a NUL, six without meaning), the name of the sensor (12, NUL
 * terminated), and the 10,428 bytes of the record.
 */

/** What ReadProfile() made of a file; the numbers are those of the prompt that tells it. */
enum ProfileResult {
    ProfileAccepted = 0,
    ProfileUnreadable = 1, ///< can't be opened, or isn't a profile of this maker
    ProfileOfAnother = 2,  ///< of another sensor, or with more DPI levels than the selected model has
};

/** Writes a record for the selected model, in place of an older file in one step. Failures go to the log. */
void WriteProfile(const QString &path, const FlashDataMap &record);

/**
 * Reads a profile for the selected model. Nothing in the file is trusted: no length is copied by, no more than the
 * beginning of a large file is read. `record` stays as it was unless the file is accepted. What isn't goes to the log.
 */
ProfileResult ReadProfile(const QString &path, FlashDataMap &record);
