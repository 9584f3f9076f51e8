#pragma once

#include <QtGlobal>

class QWidget;

/**
 * How the program ends. The connect thread or a report callback may stand in a blocking signal, waiting for this
 * thread, at any moment. So nothing they wait for is destroyed before they were let go:
 *
 * 1. begin(): waits end and no prompt opens from here on; no new USB changes, no new connects; 200 ms of event loop for
 *    reports under way; the link ends; the event loop is told to quit. Prompts that are open run in event loops of
 * their own, which quit with it.
 * 2. The event loops unwind to the start of the program.
 * 3. finish(): serves events until the connect thread has finished its pass, ends the link that this pass may have
 *    started, serves events until the running report is done, and only then deletes the windows.
 */
namespace Ending {

/** Starts the end of the program. A second call does nothing. GUI thread only. */
void begin(QWidget *window);

/** Deletes the top window after everything that could wait for it. Call it when the event loop is over. */
void finish(QWidget *window);

} // namespace Ending
