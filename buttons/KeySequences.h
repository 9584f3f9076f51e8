#pragma once

#include "devicelink/FlashDataMap.h"

#include <QString>
#include <QStringList>

/** Key combinations and consumer keys as the events that a mouse plays, and back to the text of a combination. */
namespace KeySequences {

constexpr int maximumKeys = 3; ///< press and release of each fill the six events
constexpr std::uint8_t modifierKind = 0;
constexpr std::uint8_t keyboardKind = 1;
constexpr std::uint8_t consumerKind = 2;

/** The KeyFunction of every sequence; what it plays stands in the slot's KeySequence. */
constexpr KeyFunction sequenceFunction = {5, 0, 0};

/** Code and kind of a key. */
struct Key
{
    std::uint16_t code;
    std::uint8_t kind;
};

/**
 * The names of a combination's text such as "Ctrl+Shift+A", empty ones included. "Num+" is one key although it holds
 * the separator: "Num" alone is the name of no key.
 */
QStringList keyNames(const QString &combination);

/** The key of a name; one that no table holds presses nothing. Upper and lower case don't matter: pasted text has its
 * own. */
Key KeyNameToEvent(const QString &name);

/**
 * The name of a stored key, or an empty one. Only the low byte of the code counts. Unlike in a macro, modifiers have no
 * side, and where a code is both a usage and a modifier bit, most go by the code alone: 64 is "Alt", never "F7".
 */
QString EventKeyName(int code, int kind);

/**
 * Makes the sequence of a combination: the keys go down in the order of the text and come up in the opposite order. Of
 * more than three keys the first three count.
 */
void KeyCombinationToSequence(const QString &combination, KeySequence &sequence);

/** The text of a stored combination. */
QString combinationText(const KeySequence &sequence);

/** The sequence of a key of the HID consumer page. */
KeySequence consumerSequence(std::uint16_t usage);
bool isConsumerKey(const KeySequence &sequence);

} // namespace KeySequences
