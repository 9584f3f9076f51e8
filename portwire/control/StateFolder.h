#pragma once

#include <QString>

namespace portwire {

/**
 * Where the virtual bus keeps its state: `portwire` in the user's data folder, by the environment of this moment, or
 * what PORTWIRE_FOLDER names. Windows has no variable of its own for the user's folders.
 */
QString stateFolder();

/** The local socket over which `portwirectl` reaches the running program: in the state folder, a pipe on Windows. */
QString controlSocket();

} // namespace portwire
