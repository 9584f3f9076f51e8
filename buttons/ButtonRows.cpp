#include "buttons/ButtonRows.h"

#include "buttons/ButtonForm.h"
#include "buttons/DpiLockCode.h"
#include "buttons/KeySequences.h"
#include "buttons/PlainTextButton.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/SelectedDevice.h"
#include "productdata/ConfigStore.h"

#include <algorithm>

using namespace KeyCatalogue;

namespace {

QString modelValue(const char *key) { return ConfigStore::instance()->value(selectedSection(), QLatin1String(key)); }

std::uint8_t byteOf(int value) { return static_cast<std::uint8_t>(value); }

} // namespace

void ButtonRows::show(const FlashDataMap &record)
{
    SensorName = modelValue("Sensor");
    const int count = std::clamp(modelValue("KeyNumber").toInt(), 0, rowCount);
    SlotTypes.clear();
    SlotParam1.clear();
    SlotParam2.clear();
    for (int slot = 0; slot < count; ++slot) {
        const KeyFunction &function = record.KeyFunctions[slot];
        SlotTypes += function.KeyType;
        SlotParam1 += function.KeyParam1;
        SlotParam2 += function.KeyParam2;
        sequences[std::size_t(slot)] = record.KeySequences[slot];
    }
    const KeyFunctionText::Words shown = words();
    for (int row = 0; row < rowCount; ++row) {
        const int slot = slotOf(row);
        if (slot >= count)
            continue;
        const KeyFunctionText::Stored stored{record.KeyFunctions[slot], record.KeySequences[slot],
                                             record.MacroSlots[slot]};
        if (const std::optional<QString> known = KeyFunctionText::rowText(stored, shown))
            setText(row, *known);
    }
}

void ButtonRows::showFactory()
{
    SlotTypes.fill(0, rowCount);
    SlotParam1.fill(0, rowCount);
    SlotParam2.fill(0, rowCount);
    sequences = {};
    for (const Row &row : rows) {
        SlotTypes[row.slot] = row.factory.KeyType;
        SlotParam1[row.slot] = row.factory.KeyParam1;
    }
}

std::optional<KeyFunction> ButtonRows::functionOf(int row) const
{
    const int slot = slotOf(row);
    if (slot >= SlotTypes.size())
        return {};
    return KeyFunction{byteOf(SlotTypes.at(slot)), byteOf(SlotParam1.at(slot)), byteOf(SlotParam2.at(slot))};
}

QString ButtonRows::text(int row) const { return form.rows[std::size_t(row)]->text().remove(QChar(QChar::Null)); }

void ButtonRows::setText(int row, const QString &text) { form.rows[std::size_t(row)]->setPlainText(text); }

bool ButtonRows::hasMacro(int row, const QString &macro) const
{
    // With the prefix: a key combination can read like the name of a macro.
    return text(row) == MacroPrefix + macro;
}

bool ButtonRows::assign(int row, const KeyFunction &function, const QString &text)
{
    if (!SetKeyFunction(slotOf(row), function.KeyType, function.KeyParam1, function.KeyParam2))
        return false;
    remember(row, function, text);
    return true;
}

bool ButtonRows::assignSequence(int row, const KeySequence &sequence, const QString &text)
{
    if (!SetKeySequence(slotOf(row), KeySequences::sequenceFunction, sequence))
        return false;
    sequences[std::size_t(slotOf(row))] = sequence;
    remember(row, KeySequences::sequenceFunction, text);
    return true;
}

bool ButtonRows::assignMacro(int row, const KeyFunction &function, const MacroSlot &image, const QString &macro)
{
    if (!SetMacro(slotOf(row), function, image))
        return false;
    remember(row, function, MacroPrefix + macro);
    return true;
}

void ButtonRows::remember(int row, const KeyFunction &function, const QString &text)
{
    const int slot = slotOf(row);
    if (slot < SlotTypes.size()) {
        SlotTypes[slot] = function.KeyType;
        SlotParam1[slot] = function.KeyParam1;
        SlotParam2[slot] = function.KeyParam2;
    }
    setText(row, text);
}

KeyFunctionText::Words ButtonRows::words() const
{
    return {[this](const char *entry) { return form.entry(entry)->text(); }, MacroPrefix, driver, SensorName};
}

int ButtonRows::dpiCode(int dpi) const { return DpiLockCode::DpiToCode(dpi, driver, SensorName); }
