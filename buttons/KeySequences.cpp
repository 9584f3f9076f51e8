#include "buttons/KeySequences.h"

#include "macro/KeyTable.h"

#include <algorithm>
#include <array>

namespace {

using namespace KeySequences;

constexpr std::uint32_t eventDelay = 10; // ms
constexpr QLatin1Char separator('+');

/** Modifiers as a combination names them. */
struct Modifier
{
    const char *name;
    std::uint8_t code;
};

constexpr std::array<Modifier, 4> modifiers = {{{"Ctrl", 1}, {"Shift", 2}, {"Alt", 4}, {"Win", 8}}};

/** Codes whose name isn't that of the key table, by kind; null where the kind makes no difference. */
struct ReadName
{
    std::uint8_t code;
    const char *asKey;      ///< kind 1
    const char *asModifier; ///< kind 0
    const char *otherwise;
};

constexpr std::array<ReadName, 10> readNames = {{
    {1, "Ctrl", "Ctrl", "Ctrl"},
    {2, "Shift", "Shift", "Shift"},
    {4, "A", "Alt", ""},
    {8, "E", "Win", ""},
    {16, "M", "M", "M"},
    {32, "3", "Shift", ""},
    {40, "Enter", "Enter", "Enter"},
    {64, "Alt", "Alt", "Alt"},
    {88, "Enter", "Enter", "Enter"},
    {128, "Win", "Win", "Win"},
}};

KeyEvent eventOf(const Key &key, bool isRelease)
{
    return {static_cast<std::uint8_t>(isRelease ? 1 : 0), key.kind, key.code, eventDelay};
}

} // namespace

QStringList KeySequences::keyNames(const QString &combination)
{
    QStringList names;
    const QStringList parts = combination.split(separator);
    for (int part = 0; part < parts.size(); ++part) {
        const bool isNumPlus = part + 1 < parts.size() && parts.at(part + 1).isEmpty() &&
                               parts.at(part).compare(QLatin1String("Num"), Qt::CaseInsensitive) == 0;
        names += isNumPlus ? parts.at(part) + separator : parts.at(part);
        if (isNumPlus)
            ++part;
    }
    return names;
}

KeySequences::Key KeySequences::KeyNameToEvent(const QString &name)
{
    const auto is = [&name](const char *known) {
        return name.compare(QString::fromUtf8(known), Qt::CaseInsensitive) == 0;
    };
    for (const Modifier &modifier : modifiers) {
        if (is(modifier.name))
            return {modifier.code, modifierKind};
    }
    for (const MacroKey &key : KeyTable::keys()) {
        if (key.kind == KeyKind::keyboard && is(key.name))
            return {key.code, keyboardKind};
    }
    return {0, keyboardKind};
}

QString KeySequences::EventKeyName(int code, int kind)
{
    const int low = code & 0xFF;
    for (const ReadName &read : readNames) {
        if (read.code == low)
            return QString::fromLatin1(kind == keyboardKind   ? read.asKey
                                       : kind == modifierKind ? read.asModifier
                                                              : read.otherwise);
    }
    return KeyTable::name(KeyTable::find(low, KeyKind::keyboard));
}

void KeySequences::KeyCombinationToSequence(const QString &combination, KeySequence &sequence)
{
    const QStringList names = keyNames(combination);
    const int count = std::min(names.size(), maximumKeys);
    sequence = {};
    sequence.EventCount = static_cast<std::uint8_t>(2 * count);
    for (int index = 0; index < count; ++index) {
        const Key key = KeyNameToEvent(names.at(index));
        sequence.Events[index] = eventOf(key, false);
        sequence.Events[2 * count - 1 - index] = eventOf(key, true);
    }
}

QString KeySequences::combinationText(const KeySequence &sequence)
{
    // The count comes from the mouse; there are never more keys than the events have room for.
    const int count = std::min<int>(sequence.EventCount / 2, std::size(sequence.Events));
    QStringList names;
    for (int index = 0; index < count; ++index)
        names += EventKeyName(sequence.Events[index].Code, sequence.Events[index].Kind);
    return names.join(separator);
}

KeySequence KeySequences::consumerSequence(std::uint16_t usage)
{
    const Key key{usage, consumerKind};
    KeySequence sequence{};
    sequence.EventCount = 2;
    sequence.Events[0] = eventOf(key, false);
    sequence.Events[1] = eventOf(key, true);
    return sequence;
}

bool KeySequences::isConsumerKey(const KeySequence &sequence) { return sequence.Events[0].Kind == consumerKind; }
