#pragma once

#include <QDeadlineTimer>

/**
 * All deliberate waits and timer intervals of the program, so that tests can shorten them together.
 *
 * A wait that serves the event loop lets the user click anything meanwhile: look at each with a second click, the way
 * back and exit in mind. Every one of them ends at once when the program is ending; only the ending itself serves the
 * event loop on, by turns.
 */
namespace Wait {

/** Milliseconds that a wait or timer of `milliseconds` takes now: the same number but in tests, never below 1. */
int scaled(int milliseconds);

/** Waits while the event loop runs. GUI thread only. Returns early when the program ends. */
void serving(int milliseconds);

/**
 * Serves the event loop until `done()` holds or the time is up; looks at it every few milliseconds.
 * \return what `done()` gave last.
 */
template<typename Done>
bool servingUntil(Done done, int milliseconds);

/** Stops this thread without serving anything. */
void standing(int milliseconds);

/** Factor on every wait, above 0; 1 at start. For tests. */
void setScale(double factor);

/** From now on serving waits end at once, and nobody opens a prompt any more: the program is ending. */
void setEnding(bool ending);
bool isEnding();

/** One turn of the event loop, at most `milliseconds` long, unscaled. */
void turn(int milliseconds);

} // namespace Wait

template<typename Done>
bool Wait::servingUntil(Done done, int milliseconds)
{
    const QDeadlineTimer deadline(scaled(milliseconds));
    while (!done()) {
        if (deadline.hasExpired() || isEnding())
            return false;
        turn(5);
    }
    return true;
}
