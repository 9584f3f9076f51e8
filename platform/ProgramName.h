#pragma once

namespace platform {

/** The application's name as the system keeps it: the start-up entry and the settings folder are named after it. */
inline constexpr char programName[] = "halvarion";

} // namespace platform
