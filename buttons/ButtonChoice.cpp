// What a click means: rows, entries of the two lists, and the dialogs that some of them open.

#include "buttons/ButtonDefaults.h"
#include "buttons/Buttoninterface.h"
#include "buttons/FireKey.h"
#include "buttons/GroupKey.h"
#include "buttons/KeySequences.h"
#include "buttons/PlainTextButton.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/WorkingRecord.h"
#include "ui/LeftButtonOnly.h"
#include "ui/MakeMacro.h"

#include <algorithm>

using namespace KeyCatalogue;

namespace {

/** Width of the rows' scroll bar with the menu open; the first row keeps the one of the closed menu. */
constexpr int openRowBar = 0;
constexpr int closedRowBar = 10;

const SubEntry &subEntry(const char *name)
{
    return *std::find_if(subEntries.begin(), subEntries.end(),
                         [name](const SubEntry &entry) { return qstrcmp(entry.name, name) == 0; });
}

const Entry &entryOf(const char *name)
{
    return *std::find_if(entries.begin(), entries.end(),
                         [name](const Entry &entry) { return qstrcmp(entry.name, name) == 0; });
}

} // namespace

// Rows ---------------------------------------------------------------------------------------------------------------

/** True if no other row is the left button: a mouse without one could hardly be given it back. */
bool Buttoninterface::isLastLeft(int row) const
{
    const QString left = form.entry("LeftKey_3")->text();
    int count = 0;
    for (int each = 0; each < rowCount; ++each)
        count += rows.text(each) == left;
    return count == 1 && row >= 0 && rows.text(row) == left;
}

void Buttoninterface::keepLastLeft()
{
    leaveRow();
    LeftButtonOnly prompt;
    ask(prompt);
}

/** Nothing is chosen, so that the next choice can't be meant for this row. */
void Buttoninterface::leaveRow()
{
    menu.uncheckRows();
    menu.close();
}

void Buttoninterface::chooseRow(int row)
{
    if (isLastLeft(row)) {
        keepLastLeft();
        return;
    }
    menu.setRowBar(row == 0 ? closedRowBar : openRowBar);
    openMenuAt(row);
}

void Buttoninterface::chooseNumber(int row)
{
    TestDeviceOnline();
    form.rows[std::size_t(row)]->setChecked(true);
    // The list that another row has opened would give it away.
    if (menu.state() != FunctionMenu::State::Closed && isLastLeft(row))
        keepLastLeft();
}

void Buttoninterface::openMenuAt(int row)
{
    const std::optional<KeyFunction> function = rows.functionOf(row);
    const std::optional<Place> place =
        function ? KeyFunctionText::placeOf(*function, rows.sequenceOf(row)) : std::nullopt;
    if (!place) {
        menu.open(nullptr, nullptr, 0);
        return;
    }
    QToolButton *small = nullptr;
    int smallPlace = 0;
    if (function->KeyType == MacroType) {
        const QString text = rows.text(row);
        const int macro = text.startsWith(rows.MacroPrefix) ? macros.indexOf(text.mid(rows.MacroPrefix.size())) : -1;
        small = macros.button(macro);
        smallPlace = macro + 1;
    } else if (const SubEntry *const entry =
                   KeyFunctionText::subEntryOf(*function, rows.sequenceOf(row), rows.words())) {
        small = form.entry(entry->name);
        const auto isBefore = [entry](const SubEntry &other) { return other.list == entry->list && &other < entry; };
        smallPlace = int(std::count_if(subEntries.begin(), subEntries.end(), isBefore));
    }
    menu.open(&*place, small, smallPlace);
}

// Entries ------------------------------------------------------------------------------------------------------------

void Buttoninterface::assignEntry(const char *name, bool checked)
{
    if (!checked)
        return;
    menu.uncheckSmall();
    const int row = form.checkedRow();
    if (row >= 0)
        rows.assign(row, entryOf(name).function, form.entry(name)->text());
    menu.close();
}

void Buttoninterface::assignSubEntry(const char *name, bool checked)
{
    if (!checked)
        return;
    const SubEntry &entry = subEntry(name);
    const QString text = form.entry(name)->text();
    const int row = form.checkedRow();
    if (row < 0) {
        // Nothing to change; the menu closes all the same.
    } else if (entry.type == KeySequenceType) {
        rows.assignSequence(row, KeySequences::consumerSequence(entry.value), text);
    } else if (entry.type == DpiLock) {
        const auto code = static_cast<std::uint8_t>(rows.dpiCode(entry.value));
        rows.assign(row, {DpiLock, code, 0}, KeyFunctionText::dpiLockText(rows.words(), text));
    } else {
        rows.assign(row, {entry.type, static_cast<std::uint8_t>(entry.value), 0}, text);
    }
    menu.close();
}

void Buttoninterface::on_DPI_10_clicked()
{
    macros.complete();
    menu.showList(macros.isEmpty() ? List::Idle : List::Macros);
    if (!macros.isEmpty())
        return;
    MakeMacro prompt;
    ask(prompt);
}

void Buttoninterface::slotButtonClicked(bool)
{
    const auto *const button = qobject_cast<PlainTextButton *>(sender());
    const int row = form.checkedRow();
    if (button && row >= 0)
        buttonMacros.assign(row, button->text());
    menu.close();
}

// Dialogs ------------------------------------------------------------------------------------------------------------

void Buttoninterface::on_DPI_6_clicked()
{
    if (!ButtonUiUpdating && !TestDeviceOnline()) {
        menu.close();
        return;
    }
    const int row = form.checkedRow();
    ::FireKey dialog;
    const std::optional<KeyFunction> present = row >= 0 ? rows.functionOf(row) : std::nullopt;
    if (present && rows.text(row) == form.entry("DPI_6")->text()) {
        dialog.setTime(present->KeyParam1);
        dialog.setCount(present->KeyParam2);
    }
    if (ask(dialog)) {
        FireInterval = dialog.interval();
        FireCount = dialog.repeats();
        on_DPI_6_clicked(true);
    } else if (row >= 0 && menu.state() != FunctionMenu::State::Closed) {
        openMenuAt(row); // the press has checked the entry, and the row is still what it was
    }
}

void Buttoninterface::on_DPI_6_clicked(bool checked)
{
    if (!checked)
        return;
    menu.uncheckSmall();
    const int row = form.checkedRow();
    if (row >= 0)
        rows.assign(row,
                    {FireKeyFunction, static_cast<std::uint8_t>(FireInterval), static_cast<std::uint8_t>(FireCount)},
                    form.entry("DPI_6")->text());
    menu.close();
}

void Buttoninterface::on_DPI_8_clicked()
{
    GroupKey dialog;
    const bool isConfirmed = ask(dialog);
    const int row = form.checkedRow();
    if (!isConfirmed) {
        if (row >= 0 && menu.state() != FunctionMenu::State::Closed)
            openMenuAt(row);
        return;
    }
    if (row < 0) { // left meanwhile, by its device or a record
        menu.close();
        return;
    }
    menu.showList(List::Idle);
    menu.uncheckSmall();
    KeySequence sequence{};
    KeySequences::KeyCombinationToSequence(dialog.keyText(), sequence);
    rows.assignSequence(row, sequence, dialog.keyText());
    // Unlike after the other choices the list stays: a combination is often tried more than once.
    menu.showEntries();
    menu.setRowBar(closedRowBar);
    menu.showList(List::Idle);
}

// Deleted macros -----------------------------------------------------------------------------------------------------

void Buttoninterface::SlotDeleteMacroButton(QString MacroName)
{
    MacroName.remove(QChar(QChar::Null));
    QVector<int> cleared;
    for (int row = 0; row < rowCount; ++row) {
        // Looked at one by one: the prompt of a mouse that fell asleep serves the event loop.
        if (rows.text(row) != MacroName)
            continue;
        form.rows[std::size_t(row)]->setChecked(true);
        if (giveDefault(row))
            cleared += ButtonRows::slotOf(row);
    }
    menu.uncheckRows();
    menu.close();
    WorkingRecord::instance().updateAndSend([&cleared](FlashDataMap &record) {
        for (const int slot : qAsConst(cleared))
            record.KeySequences[slot] = {};
    });
}

/** \return true if the row has its factory function now, so that no key sequence of the slot is of use any more. */
bool Buttoninterface::giveDefault(int row)
{
    const KeyFunction &factory = KeyCatalogue::rows[std::size_t(row)].factory;
    if (const std::optional<Place> place = KeyFunctionText::placeOf(factory, {}))
        form.entry(place->entry)->setChecked(true);
    const ButtonDefaults::Default given = ButtonDefaults::ofSlot(ButtonRows::slotOf(row));
    switch (given.kind) {
    case ButtonDefaults::Default::Factory: {
        const MacroSlot noMacro{};
        return rows.assign(row, factory,
                           KeyFunctionText::rowText({factory, {}, noMacro}, rows.words()).value_or(QString()));
    }
    case ButtonDefaults::Default::Sequence:
        rows.assignSequence(row, given.sequence,
                            given.consumerKey ? form.entry(given.consumerKey->name)->text() : given.combination);
        return false;
    case ButtonDefaults::Default::Untouched:
        return false;
    }
    return false;
}
