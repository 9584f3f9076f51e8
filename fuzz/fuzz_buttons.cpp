/**
 * The text of a key combination, typed or pasted, and the buttons of any record: what is sent to a mouse keeps to its
 * room, and every stored function has a text or none.
 */
#include "FuzzInput.h"
#include "Require.h"
#include "buttons/KeyFunctionText.h"
#include "buttons/KeySequences.h"

#include <array>
#include <cstring>

namespace {

void typeCombination(FuzzInput &input)
{
    KeySequence sequence{};
    KeySequences::KeyCombinationToSequence(QString::fromUtf8(input.rest()), sequence);
    const int count = sequence.EventCount;
    require(count >= 2 && count <= 6 && count % 2 == 0, "a combination has one to three keys");
    for (int index = 0; index < count; ++index) {
        const KeyEvent &event = sequence.Events[index];
        const KeyEvent &other = sequence.Events[count - 1 - index];
        require(event.Action == (index < count / 2 ? 0 : 1), "keys go down before they come up");
        require(event.Kind <= 1 && event.Code <= 0xFF, "a key is one of the keyboard");
        require(event.Code == other.Code && event.Kind == other.Kind, "what goes down comes up");
    }
    const QString shown = KeySequences::combinationText(sequence);
    KeySequence again{};
    KeySequences::KeyCombinationToSequence(shown, again);
    require(KeySequences::combinationText(again) == shown, "a text that was read says the same keys again");
}

void showRecord(FuzzInput &input)
{
    DriverSensor driver;
    driver.DriverKeys = QStringList{QStringLiteral("SENSOR_3311_DPI_800")};
    driver.DriverValues = {11};
    const KeyFunctionText::Words words{[](const char *entry) { return QString::fromLatin1(entry); },
                                       QStringLiteral("Macro: "), driver,
                                       input.byte() % 2 ? QStringLiteral("3311") : QStringLiteral("3395")};
    std::array<std::uint8_t, sizeof(KeyFunction) + sizeof(KeySequence) + sizeof(MacroSlot)> bytes{};
    input.patch(bytes);
    KeyFunction function{};
    KeySequence sequence{};
    MacroSlot macro{};
    std::memcpy(&function, bytes.data(), sizeof function);
    std::memcpy(&sequence, bytes.data() + sizeof function, sizeof sequence);
    std::memcpy(&macro, bytes.data() + sizeof function + sizeof sequence, sizeof macro);
    const auto text = KeyFunctionText::rowText({function, sequence, macro}, words);
    const auto place = KeyFunctionText::placeOf(function, sequence);
    require(!text || place, "what has a text stands in the menu");
    require(function.KeyType < KeyCatalogue::TypeCount || !place, "an unknown type has no place");
    require(!text || !text->contains(QChar(QChar::Null)), "a text ends where it ends");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    if (input.byte() % 2)
        typeCombination(input);
    else
        showRecord(input);
    return 0;
}
