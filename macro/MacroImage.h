#pragma once

#include "devicelink/FlashDataMap.h"
#include "macro/MacroRows.h"

#include <QStringList>

/** Buttons of a record, each with a macro of its own. */
constexpr int macroSlotCount = sizeof(FlashDataMap::MacroSlots) / sizeof(MacroSlot);

/** A macro as a mouse keeps it: 592 bytes a button. What a mouse says is trusted in nothing, counts least of all. */
namespace MacroImage {

/** Puts the name into an image, cut to the 30 bytes that it has, and nothing of an older name behind it. */
void setName(MacroSlot &image, const QString &name);

/** The name in an image: all 30 bytes as text of the local 8-bit encoding, without NUL characters. */
QString name(const MacroSlot &image);

/**
 * The image of a macro. Each delay goes with the event before it; of two events without a delay between them the second
 * counts. No rows count as one event that presses nothing.
 */
MacroSlot make(const QString &name, const MacroRows &rows);

/** The image of the macro in a file; nothing if there is no such file or it can't be opened. */
std::optional<MacroSlot> makeFromFile(const QString &name);

/** The repeat code of the macro in a file; once if it has none. */
int repeatCodeOfFile(const QString &name);

/** The rows of an image: events with the delays between them. */
MacroRows rows(const MacroSlot &image);

/** Brings the file of the macro in a slot to what the mouse holds. A file that holds it already isn't written. */
enum class ReadBack {
    NoFile,    ///< its name is none that a file can have, or the disk didn't take it: the log says
    Unchanged, ///< the file held the same
    Changed,
    Made, ///< there was no such macro on this PC
};
/**
 * The slot, 0 to 15, is one of `KeyType` 6; `KeyParam2` is the repeat code. This writes the whole file in one step, so
 * that nobody else has to. A name that differs from one of `names`, the macros on this PC, only in upper and lower case
 * gets no file: on some systems it would be the other one's.
 */
ReadBack readBack(const FlashDataMap &record, int slot, const QStringList &names);

} // namespace MacroImage
