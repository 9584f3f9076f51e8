#pragma once

namespace platform {

/**
 * False under Wayland, where the compositor alone decides where a window stands and which one has the keyboard, and
 * tells no program that its window was minimised or brought back. True everywhere else.
 */
bool windowsRuleThemselves();

} // namespace platform
