#pragma once

#include "buttons/KeyCatalogue.h"
#include "sensor/DriverSensor.h"

#include <QString>

#include <functional>
#include <optional>

/** What a stored function is called on the page. */
namespace KeyFunctionText {

/** What of a record belongs to one slot. */
struct Stored
{
    KeyFunction function;
    KeySequence sequence;
    const MacroSlot &macro;
};

/** What the texts are made of. */
struct Words
{
    std::function<QString(const char *entry)> textOf; ///< text of an entry, by its object name
    QString macroPrefix;
    const DriverSensor &driver;
    QString sensorName;
};

/** The small-list entry of a function that the mouse holds; null for one that no list offers. */
const KeyCatalogue::SubEntry *subEntryOf(const KeyFunction &function, const KeySequence &sequence, const Words &words);

/** Where the menu shows a function; nothing for an unknown type or mouse button. */
std::optional<KeyCatalogue::Place> placeOf(const KeyFunction &function, const KeySequence &sequence);

/**
 * The text of a row. Nothing for a type or a parameter that no table holds: the row then keeps what it shows, since a
 * newer mouse may know more than this program.
 */
std::optional<QString> rowText(const Stored &stored, const Words &words);

/** The text of a row that plays a macro. */
QString macroText(const Words &words, const QString &macro);
/** The text of a row with a DPI lock. */
QString dpiLockText(const Words &words, const QString &dpi);

} // namespace KeyFunctionText
