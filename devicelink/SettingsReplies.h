#pragma once

struct Report;

/** Handles a report of code 8: puts a group of settings, or the whole record, in the working record and shows it. */
void onSettings(const Report &report);

/** Reads the whole record once the factory reset is done that `report` tells of; its keys and macros are cleared. */
void readAfterReset(const Report &report);
