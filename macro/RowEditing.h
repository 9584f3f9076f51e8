#pragma once

#include "macro/MacroRows.h"

/**
 * The edits that a user can make in the rows of a macro, as functions from rows to rows. Each keeps events and delays
 * in turn where they were so before. `current` is the row that is selected, -1 for none.
 */
namespace RowEditing {

struct Edited
{
    MacroRows rows;
    int current; ///< the row that is selected afterwards: the next insertion goes behind this one
};

/** Inserts one event and a delay that keeps it apart. */
Edited insertEvent(const MacroRows &rows, int current, const MacroRow &event);

/** Inserts the press and the release of a key. */
Edited insertPressAndRelease(const MacroRows &rows, int current, const MacroKey &key);

/** Sets the delay at the current row, or before it if that is an event; nothing where no delay can be. */
std::optional<Edited> applyDelay(const MacroRows &rows, int current, std::uint32_t milliseconds);

/** Deletes the current event with a delay beside it, or the other way round. Without a current row it does nothing. */
std::optional<Edited> remove(const MacroRows &rows, int current);

} // namespace RowEditing
