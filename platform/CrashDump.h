#pragma once

#include <string>

namespace platform {

/**
 * From now on an unhandled fault of any thread leaves "<folder>/yyyy_MM_dd_hh_mm_ss.dmp", named by the local time, and
 * ends the process without a message. The folder is made when it is missing, a file of that name is replaced.
 *
 * Call it once, on the GUI thread. `folder` is UTF-8; a relative one is taken from the current folder of this moment.
 * What can't be written is lost silently: the process ends all the same.
 */
void installCrashDump(const std::string &folder);

} // namespace platform
