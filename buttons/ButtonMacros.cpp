#include "buttons/ButtonMacros.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "buttons/ButtonRows.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "macro/RepeatCode.h"

using KeyCatalogue::rowCount;

namespace {

/** How long the macro page is given until it is asked for the rows, in ms. */
constexpr int savingTime = 1500;

} // namespace

void ButtonMacros::assign(int row, const QString &macro)
{
    if (!DeviceWritesEnabled)
        return;
    const std::optional<MacroContent> content = MacroFile::read(macro);
    if (!content)
        return;
    const int slot = ButtonRows::slotOf(row);
    const KeyFunction function{KeyCatalogue::MacroType, static_cast<std::uint8_t>(slot),
                               static_cast<std::uint8_t>(content->repeat.value_or(RepeatCode::once))};
    rows.assignMacro(row, function, MacroImage::make(macro, content->rows), macro);
}

void ButtonMacros::follow(const QString &macro, int saved)
{
    const auto isOnAnyRow = [&] {
        for (int row = 0; row < rowCount; ++row) {
            if (rows.hasMacro(row, macro))
                return true;
        }
        return false;
    };
    if (saved == Events) {
        if (!isOnAnyRow())
            return;
        const DeviceAllInfo mouse = SelectInfo().get();
        Wait::serving(savingTime);
        // The user may have gone back to the chooser meanwhile, and on to another mouse. The same one on its cable
        // keeps its address.
        const DeviceAllInfo now = SelectInfo().get();
        const bool isSameMouse = now.ModelIndex == mouse.ModelIndex && now.UsbAddress == mouse.UsbAddress;
        if (Wait::isEnding() || !DeviceEntered || !isSameMouse)
            return;
    }
    // Asked row by row now: in the wait, or in the prompt of a mouse that fell asleep, a row may have got another
    // function, which must stay.
    for (int row = 0; row < rowCount; ++row) {
        if (!rows.hasMacro(row, macro))
            continue;
        if (saved == Events)
            postMsg()->post(&PostMsg::SigMacroDownLoadData, macro, ButtonRows::slotOf(row));
        else if (saved == Repeat)
            sendRepeatCode(row, macro);
    }
}

void ButtonMacros::sendRepeatCode(int row, const QString &macro)
{
    const std::optional<MacroContent> content = MacroFile::read(macro);
    if (!content)
        return;
    const int slot = ButtonRows::slotOf(row);
    const FlashDataMap record = WorkingRecord::instance().copy();
    KeyFunction function = record.KeyFunctions[slot];
    if (function.KeyType != KeyCatalogue::MacroType)
        return; // the row shows what a cache or another mouse held
    function.KeyParam2 = static_cast<std::uint8_t>(content->repeat.value_or(RepeatCode::once));
    rows.assignMacro(row, function, record.MacroSlots[slot], macro);
}

void ButtonMacros::rename(const QString &from, const QString &to)
{
    for (int row = 0; row < rowCount; ++row) {
        if (!rows.hasMacro(row, from))
            continue;
        const int slot = ButtonRows::slotOf(row);
        const FlashDataMap record = WorkingRecord::instance().copy();
        if (record.KeyFunctions[slot].KeyType != KeyCatalogue::MacroType)
            continue;
        MacroSlot image = record.MacroSlots[slot];
        MacroImage::setName(image, to);
        rows.assignMacro(row, record.KeyFunctions[slot], image, to);
    }
}
