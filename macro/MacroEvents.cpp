#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "macro/Macro.h"
#include "macro/MacroTables.h"
#include "macro/RowEditing.h"
#include "macro/RowList.h"
#include "macro/addKey.h"
#include "ui/AddDelayTime.h"
#include "ui/ExeIsRun.h"
#include "ui/KeyNumberLimit.h"

#include <QCheckBox>
#include <QDebug>
#include <QListWidget>
#include <QSpinBox>

// What a user can do with the rows of a macro: edit and record them.

namespace {

constexpr QPoint promptOffset(-100, -50);
constexpr QPoint entryOffset(-50, -70);

} // namespace

void Macro::open(Prompt &prompt, QPoint offset)
{
    if (Wait::isEnding())
        return;
    prompt.centreOn(this, offset);
    prompt.exec();
}

bool Macro::refusesWhileRecording()
{
    if (!isRecordingShown)
        return false;
    ExeIsRun prompt;
    prompt.showPleaseStop();
    open(prompt, promptOffset);
    return true;
}

void Macro::openLimit()
{
    KeyNumberLimit prompt;
    open(prompt, promptOffset);
}

/** The key that the user enters; nothing if cancelled, and if another macro came on show meanwhile. */
std::optional<MacroKey> Macro::askKey()
{
    const QString name = shown;
    addKey prompt;
    open(prompt, entryOffset);
    const MacroKey *key =
        prompt.Confirmed && !prompt.KeyText.isEmpty() && shown == name ? KeyTable::find(prompt.KeyText) : nullptr;
    return key ? std::optional<MacroKey>(*key) : std::nullopt;
}

/** The delay in ms that the user enters; nothing as with askKey(). */
std::optional<int> Macro::askDelay()
{
    const QString name = shown;
    AddDelayTime prompt;
    open(prompt, entryOffset);
    return prompt.confirmed() && shown == name ? std::optional<int>(prompt.delay()) : std::nullopt;
}

// Editing ------------------------------------------------------------------------------------------------------------

void Macro::edit(const RowEditing::Edited &edited)
{
    if (eventCount(edited.rows) > maximumMacroEvents) {
        openLimit();
        return;
    }
    rowList->edit(edited.rows, edited.current);
    eventsEdited();
}

void Macro::on_ChooseEvent_activated(int index)
{
    if (index < 1 || index > int(MacroTables::eventChoices.size()) || refusesWhileRecording() || !hasRowsToEdit())
        return;
    const MacroTables::EventChoice &choice = MacroTables::eventChoices[std::size_t(index - 1)];
    switch (choice.insertion) {
    case MacroTables::Insertion::Press:
        insertKey(MacroRow::Action::Press);
        break;
    case MacroTables::Insertion::Release:
        insertKey(MacroRow::Action::Release);
        break;
    case MacroTables::Insertion::Delay:
        insertDelay();
        break;
    case MacroTables::Insertion::MouseButton:
        edit(RowEditing::insertPressAndRelease(rowList->rows(), rowList->current(),
                                               KeyTable::find(choice.button, KeyKind::mouseButton)));
        break;
    }
}

void Macro::insertKey(MacroRow::Action action)
{
    if (const std::optional<MacroKey> key = askKey())
        edit(RowEditing::insertEvent(rowList->rows(), rowList->current(), MacroRow::event(*key, action)));
}

void Macro::insertDelay()
{
    const std::optional<int> delay = askDelay();
    const auto edited =
        delay ? RowEditing::applyDelay(rowList->rows(), rowList->current(), std::uint32_t(*delay)) : std::nullopt;
    if (edited)
        edit(*edited);
}

void Macro::on_Amend_clicked()
{
    const int at = rowList->current();
    if (refusesWhileRecording() || at < 0)
        return;
    const MacroRow before = rowList->rows().at(at);
    std::optional<MacroRow> after;
    if (!before.isEvent()) {
        if (const std::optional<int> delay = askDelay())
            after = MacroRow::delay(std::uint32_t(*delay));
    } else if (const std::optional<MacroKey> key = askKey()) {
        after = MacroRow::event(*key, before.action);
    }
    if (!after || at != rowList->current() || rowList->rows().at(at) != before)
        return; // or the rows are others by now
    rowList->replace(at, *after);
    setSaveable(true);
}

void Macro::on_listWidgetKey_itemChanged(QListWidgetItem *) { EventsChanged = true; }

void Macro::on_DeleteKey_clicked()
{
    if (refusesWhileRecording() || !hasRowsToEdit())
        return;
    const MacroRows rows = rowList->rows();
    const auto edited = RowEditing::remove(rows, rowList->current());
    if (!edited)
        return;
    // Clearing a short list doesn't count as new rows: a save leaves the mouse what it has.
    const bool hadChanges = EventsChanged;
    edit(*edited);
    if (edited->rows.isEmpty())
        EventsChanged = hadChanges;
}

void Macro::takeBack()
{
    if (!isRecordingShown && rowList->undo())
        eventsEdited();
}

// Recording ----------------------------------------------------------------------------------------------------------

void Macro::on_StartRecord_clicked()
{
    if (currentName().isEmpty()) {
        ExeIsRun prompt;
        prompt.showNoMacroSelected();
        open(prompt, promptOffset);
        return;
    }
    if (shown != currentName())
        on_listWidgetHong_clicked({});
    postMsg()->post(&PostMsg::SigStartRecord, 0);
    isRecordingShown = true;
    EventsChanged = true;
    recorder.begin();
    const bool isInstalled = hook.install(
        [this](unsigned virtualKey, bool down, bool repeat) { UpdateCapslockTip(int(virtualKey), down, repeat); });
    if (!isInstalled)
        qWarning() << "the system gave no keyboard hook: nothing can be recorded";
    form.showRecording(true);
    MacroRecording = true;
    rowList->edit({}, -1);
    setFocus(); // the keys that are recorded are pressed in this window as well, and no control may have them
}

void Macro::on_StopRecord_clicked()
{
    endRecording();
    setSaveable(true);
}

void Macro::endRecording()
{
    hook.remove();
    const MacroRows rows = rowList->rows();
    if (isRecordingShown && !rows.isEmpty() && !rows.last().isEvent())
        rowList->dropLast(); // the pause before a key that no macro can hold
    isRecordingShown = false;
    MacroRecording = false;
    postMsg()->post(&PostMsg::SigStartRecord, 1);
    form.showRecording(false);
    rowsChanged();
}

void Macro::SlotSetMacroPage()
{
    endRecording();
    saved.reset(); // what is still to be sent was meant for the mouse that is left
    setSaveable(false);
}

void Macro::UpdateCapslockTip(int virtualKey, bool down, bool)
{
    if (!MacroRecording) {
        recorder.restartClock();
        return;
    }
    const bool isFixed = !form.AutoInsertDelay->isChecked();
    rowList->append(
        recorder.take(virtualKey, down, isFixed ? std::optional<int>(form.DelayTime->value()) : std::nullopt));
    if (!recorder.isFull())
        return;
    MacroRecording = false;
    hook.remove(); // before the prompt, whose keys are nobody's events
    openLimit();
}
