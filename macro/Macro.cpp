#include "macro/Macro.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/WorkingRecord.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "macro/MacroTimeLine.h"
#include "macro/RowList.h"
#include "productdata/Theme.h"
#include "productdata/UserSettings.h"
#include "ui/FileDialogs.h"
#include "ui/MyConmboBox.h"
#include "ui/PageFont.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QSpinBox>
#include <QToolButton>

#include <utility>

namespace {
const QString exportFilter = QStringLiteral("File(*.ini)");
}

Macro::Macro(QWidget *parent)
    : QWidget(parent), askExportPath([this](const QString &name) {
          return FileDialogs::askForSaving(this, exportFilter, name + QStringLiteral(".ini"));
      }),
      askImportPath([this](const QString &) { return FileDialogs::askForOpening(this, exportFilter); })
{
    setObjectName(QStringLiteral("Macro"));
    setFixedSize(883, 630);
    setFont(PageFont::font());
    form.build(this);
    setStyles();
    rowList = new RowList(form.listWidgetKey, Theme::pictureFolder("Macro"), this);
    form.listWidgetHong->addItems(MacroFile::names());
    setSaveable(false);
    SlotChangeLanguage(UserSettings::instance()->language());
    connectWidgets();
    rowsChanged();

    connect(postMsg(), &PostMsg::SigChangeLanguage, this, &Macro::SlotChangeLanguage);
    connect(postMsg(), &PostMsg::SigButtonToMacro, this, &Macro::SlotButtonToMacro);
    connect(postMsg(), &PostMsg::SigMacroDownLoadData, this, &Macro::SlotMacroDownLoadData);
    connect(postMsg(), &PostMsg::SigSetMacroPage, this, &Macro::SlotSetMacroPage);
    connect(postMsg(), &PostMsg::SigMouseOffLineo, this, [this] { isRefused = true; });
    // A device that is pulled takes the page away without a word to it. What was recorded until then can be saved.
    connect(postMsg(), &PostMsg::SigSecondPageChange, this, [this] {
        if (isRecordingShown)
            on_StopRecord_clicked();
    });
}

Macro::~Macro() = default;

void Macro::connectWidgets()
{
    QMetaObject::connectSlotsByName(this);
    connect(form.repeatGroup, &QButtonGroup::idToggled, this, [this](int, bool checked) {
        if (checked)
            repeatEdited();
    });
    connect(rowList, &RowList::changed, this, &Macro::rowsChanged);
    connect(rowList, &RowList::deleteWanted, this, &Macro::on_DeleteKey_clicked);
    connect(rowList, &RowList::undoWanted, this, &Macro::takeBack);
    for (const QListWidget *list : {form.listWidgetHong, form.listWidgetKey})
        connect(list, &QListWidget::itemSelectionChanged, this, &Macro::showUsable);
    connect(form.listWidgetKey, &QListWidget::currentRowChanged, form.timeLine, &MacroTimeLine::setCurrentRow);
    connect(form.timeLine, &MacroTimeLine::rowClicked, this,
            [this](int row) { form.listWidgetKey->setCurrentRow(row); });
    // The keyboard has no left click.
    connect(form.listWidgetHong, &QListWidget::activated, this, &Macro::on_listWidgetHong_clicked);
}

void Macro::setAskPaths(AskPath exportPath, AskPath importPath)
{
    askExportPath = std::move(exportPath);
    askImportPath = std::move(importPath);
}

void Macro::SlotChangeLanguage(int index)
{
    language = index;
    texts.read(index, form);
    form.timeLine->setWarningText(texts.neverReleased);
    rowList->retranslate();
}

// Which macro --------------------------------------------------------------------------------------------------------

QStringList Macro::names() const
{
    QStringList all;
    for (int at = 0; at < form.listWidgetHong->count(); ++at)
        all += form.listWidgetHong->item(at)->text();
    return all;
}

QString Macro::currentName() const
{
    const QListWidgetItem *item = form.listWidgetHong->currentItem();
    return item && item->isSelected() ? item->text() : QString(); // see RowList::current()
}

QListWidgetItem *Macro::itemOf(const QString &name) const
{
    return form.listWidgetHong->findItems(name, Qt::MatchFixedString | Qt::MatchCaseSensitive).value(0);
}

bool Macro::isTaken(const QString &name) const { return MacroFile::isTaken(name, names()) || MacroFile::exists(name); }

/** Reads the macro from its file. Edits of the rows before, if they are the same macro's, can be taken back. */
void Macro::load(const QString &name)
{
    const bool isSame = std::exchange(shown, name) == name;
    const std::optional<MacroContent> content = MacroFile::read(name);
    const MacroRows rows = content ? content->rows : MacroRows();
    if (isSame && EventsChanged)
        rowList->edit(rows, -1);
    else
        rowList->show(rows);
    if (content && content->repeat)
        form.showRepeatCode(*content->repeat);
    EventsChanged = false;
    RepeatChanged = false;
    setSaveable(false);
}

void Macro::showNothing()
{
    form.listWidgetHong->setCurrentRow(-1);
    shown.clear();
    rowList->show(MacroRows());
    EventsChanged = false;
    RepeatChanged = false;
    setSaveable(false);
}

void Macro::addRow(const QString &name, int at) { form.listWidgetHong->insertItem(at, name); }

void Macro::on_listWidgetHong_clicked(const QModelIndex &) { load(currentName()); }

/** True with a macro whose rows can be edited: one that was only selected by the right button is read now. */
bool Macro::hasRowsToEdit()
{
    if (shown.isEmpty() && !currentName().isEmpty())
        load(currentName());
    return !shown.isEmpty();
}

void Macro::rowsChanged()
{
    form.timeLine->setRows(rowList->rows());
    const bool isEmpty = form.listWidgetKey->count() == 0;
    const QString &advice = shown.isEmpty() ? texts.noMacro : texts.emptyRows;
    form.showHint(isEmpty && !isRecordingShown ? advice : QString());
    showUsable();
}

/** Greys out what would do nothing. While keys are recorded each says that, so none is grey. */
void Macro::showUsable()
{
    const bool hasMacro = !shown.isEmpty() || !currentName().isEmpty();
    form.DeleteHong->setEnabled(isRecordingShown || !currentName().isEmpty());
    form.Amend->setEnabled(isRecordingShown || rowList->current() >= 0);
    form.DeleteKey->setEnabled(isRecordingShown ||
                               (hasMacro && RowEditing::remove(rowList->rows(), rowList->current())));
}

// Saving -------------------------------------------------------------------------------------------------------------

void Macro::setSaveable(bool isSaveable) { form.Save->setEnabled(isSaveable); }

void Macro::eventsEdited()
{
    EventsChanged = true;
    setSaveable(true);
}

void Macro::repeatEdited()
{
    if (shown.isEmpty())
        return; // it is nobody's; the next selected macro shows its own
    RepeatChanged = true;
    setSaveable(true);
}

void Macro::on_NumberEdit_valueChanged(int) { repeatEdited(); }

/**
 * The file is replaced in one step, so there is nothing to wait for before it is written: no moment in which it is
 * empty, and none in which another macro could be selected.
 *
 * The listeners do wait, and the user goes on meanwhile. What they are handed is what was saved, not what the list has
 * become; a record that the mouse sends in between is older than the file and leaves it alone.
 */
void Macro::on_Save_clicked()
{
    if (refusesWhileRecording())
        return;
    setSaveable(false);
    if (shown.isEmpty() || !MacroFile::exists(shown))
        return; // a file that was deleted doesn't come back
    const QString name = shown;
    const MacroRows rows = rowList->rows();
    if (!MacroFile::write(name, {form.repeatCode(), rows})) {
        setSaveable(true); // there is room another time, perhaps
        return;
    }
    const bool hasNewRows = std::exchange(EventsChanged, false);
    const bool hasNewRepeat = std::exchange(RepeatChanged, false);
    saved = Saved{name, rows};
    tellSaved(hasNewRows, hasNewRepeat);
}

/**
 * A mouse that sleeps takes nothing, and what it holds comes back over the file with its next record. So what is told
 * to it in vain counts as not saved yet; the offline prompt says why, and the user saves again when it is awake.
 */
void Macro::tellSaved(bool hasNewRows, bool hasNewRepeat)
{
    if (savesUnderWay++ == 0)
        isRefused = false;
    if (hasNewRows)
        postMsg()->post(&PostMsg::SigUpDataMacro, saved->name, 0);
    if (hasNewRepeat && saved)
        postMsg()->post(&PostMsg::SigUpDataMacro, saved->name, 1);
    if (isRefused && saved && saved->name == shown && !isRecordingShown) {
        EventsChanged = EventsChanged || hasNewRows;
        RepeatChanged = RepeatChanged || hasNewRepeat;
        setSaveable(true);
    }
    if (--savesUnderWay == 0)
        saved.reset();
}

// The mouse ----------------------------------------------------------------------------------------------------------

void Macro::SlotMacroDownLoadData(QString name, int slot)
{
    name.remove(QChar(QChar::Null));
    if (savesUnderWay > 0 && !saved)
        return; // the user has left the device meanwhile
    if (name != shown || shown.isEmpty() || !DeviceWritesEnabled || slot < 0 || slot >= macroSlotCount)
        return;
    const MacroRows rows = saved && saved->name == name ? saved->rows : rowList->rows();
    MacroSlot image = MacroImage::make(name, rows);
    if (rows.isEmpty())
        image.EventCount = 0;
    if (!SetMacro(slot, WorkingRecord::instance().copy().KeyFunctions[slot], image))
        isRefused = true;
}

/**
 * What the mouse holds goes to the file, and a macro that is new here to the list. The rows on show, and which macro is
 * selected, are left alone while they hold edits that aren't saved or not yet told, and where nothing came that this PC
 * didn't have; a record comes at every wake of the mouse. Otherwise nothing is selected afterwards.
 */
void Macro::SlotButtonToMacro(FlashDataMap record, int slot)
{
    if (slot < 0 || slot >= macroSlotCount)
        return;
    const QString name = MacroImage::name(record.MacroSlots[slot]);
    if (saved && saved->name == name)
        return; // the mouse hasn't got yet what the user has just saved
    const MacroImage::ReadBack result = MacroImage::readBack(record, slot, names());
    if (result == MacroImage::ReadBack::NoFile)
        return;
    const bool isListed = itemOf(name);
    if (!isListed) {
        const int current = form.listWidgetHong->currentRow();
        addRow(name, current >= 0 ? current + 1 : form.listWidgetHong->count());
    }
    const bool isNews = !isListed || result != MacroImage::ReadBack::Unchanged;
    const bool isBeingTold = saved && saved->name == shown;
    if (isNews && !form.Save->isEnabled() && !isBeingTold && !isRecordingShown)
        showNothing();
    if (!isListed)
        postMsg()->post(&PostMsg::SigAddMacroButton);
}

// Keys and clicks beside the controls --------------------------------------------------------------------------------

void Macro::keyPressEvent(QKeyEvent *event)
{
    // While keys are recorded, and until the user has stopped it, none does anything else in the window.
    if (isRecordingShown || event->key() == Qt::Key_Escape || event->key() == Qt::Key_F12)
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

bool Macro::focusNextPrevChild(bool next) { return !isRecordingShown && QWidget::focusNextPrevChild(next); }

void Macro::mousePressEvent(QMouseEvent *event)
{
    for (QSpinBox *number : {form.DelayTime, form.NumberEdit}) {
        if (number->hasFocus() && !number->geometry().contains(event->pos())) {
            number->clearFocus();
            setFocus();
        }
    }
    QCheckBox *const box = form.boxOf(childAt(event->pos()));
    if (box && event->button() == Qt::LeftButton)
        box->click(); // its text is a label of its own
    else
        QWidget::mousePressEvent(event);
}

void Macro::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        form.setDefaultTexts(); // texts alone, so what is chosen and the numbers stay
        SlotChangeLanguage(language);
    } else if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        recorder.forgetHeldKeys();
    }
}
