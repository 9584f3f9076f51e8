#include "buttons/KeyFunctionText.h"

#include "buttons/DpiLockCode.h"
#include "buttons/KeySequences.h"
#include "macro/MacroImage.h"

#include <algorithm>

using namespace KeyCatalogue;

namespace {

bool isSubEntry(const SubEntry &entry, const KeyFunction &function, const KeySequence &sequence,
                const KeyFunctionText::Words &words)
{
    if (entry.type != function.KeyType)
        return false;
    switch (entry.type) {
    case KeySequenceType:
        // The mouse answers by the low byte alone.
        return KeySequences::isConsumerKey(sequence) && (entry.value & 0xFF) == (sequence.Events[0].Code & 0xFF);
    case DpiLock:
        return entry.value == DpiLockCode::CodeToDpi(function.KeyParam1, words.driver, words.sensorName);
    default:
        return entry.value == function.KeyParam1;
    }
}

} // namespace

const SubEntry *KeyFunctionText::subEntryOf(const KeyFunction &function, const KeySequence &sequence,
                                            const Words &words)
{
    const auto *const found = std::find_if(subEntries.begin(), subEntries.end(), [&](const SubEntry &entry) {
        return isSubEntry(entry, function, sequence, words);
    });
    return found != subEntries.end() ? found : nullptr;
}

std::optional<Place> KeyFunctionText::placeOf(const KeyFunction &function, const KeySequence &sequence)
{
    if (function.KeyType >= TypeCount)
        return {};
    if (function.KeyType == KeySequenceType && !KeySequences::isConsumerKey(sequence))
        return combinationPlace;
    if (function.KeyType != MouseButton)
        return places[function.KeyType];
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const KeyFunction &assigned = entries[index].function;
        if (assigned.KeyType == MouseButton && assigned.KeyParam1 == function.KeyParam1)
            return Place{entries[index].name, List::Idle, int(index)};
    }
    return {};
}

std::optional<QString> KeyFunctionText::rowText(const Stored &stored, const Words &words)
{
    const KeyFunction &function = stored.function;
    const std::optional<Place> place = placeOf(function, stored.sequence);
    if (!place)
        return {};
    switch (function.KeyType) {
    case MacroType:
        return macroText(words, MacroImage::name(stored.macro));
    case DpiLock:
        return dpiLockText(words,
                           QString::number(DpiLockCode::CodeToDpi(function.KeyParam1, words.driver, words.sensorName)));
    case KeySequenceType:
        if (!KeySequences::isConsumerKey(stored.sequence))
            return KeySequences::combinationText(stored.sequence);
        [[fallthrough]];
    case DpiStep:
    case Tilt:
    case LightToggle:
    case Wheel:
        if (const SubEntry *const entry = subEntryOf(function, stored.sequence, words))
            return words.textOf(entry->name);
        return {};
    default:
        return words.textOf(place->entry);
    }
}

QString KeyFunctionText::macroText(const Words &words, const QString &macro) { return words.macroPrefix + macro; }

QString KeyFunctionText::dpiLockText(const Words &words, const QString &dpi)
{
    return words.textOf(places[DpiLock].entry) + QLatin1Char('-') + dpi;
}
