#pragma once

#include "devicelink/FlashDataMap.h"
#include "macro/MacroForm.h"
#include "macro/MacroRecorder.h"
#include "macro/MacroTexts.h"
#include "macro/RowEditing.h"
#include "platform/KeyboardHook.h"

#include <QModelIndex>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class Prompt;
class QListWidgetItem;
class QMenu;
class RowList;

/**
 * The macro page: the macros on this PC, the rows of one of them, recording, and saving. It never decides what a mouse
 * button does: it tells through the hub what changed, and sends an image when it is asked to.
 *
 * A prompt and the hub's listeners run event loops in which the user can select, delete or leave. So whoever comes back
 * from one looks again which macro is meant.
 */
class Macro : public QWidget
{
    Q_OBJECT
public:
    explicit Macro(QWidget *parent = nullptr);
    ~Macro() override;

    /** Asks the user for the path of a file, given a name to propose; empty when cancelled. */
    using AskPath = std::function<QString(const QString &proposed)>;
    void setAskPaths(AskPath exportPath, AskPath importPath);

public Q_SLOTS:
    /** Takes the texts of a language, 0 to 5; another index counts as English. */
    void SlotChangeLanguage(int index);
    /** The mouse holds a macro in this slot: it takes the mouse's form on this PC as well. */
    void SlotButtonToMacro(FlashDataMap record, int slot);
    /** Sends the rows on show to a slot of the mouse, if they are those of this macro. */
    void SlotMacroDownLoadData(QString name, int slot);
    /** The user leaves the device window: ends a recording. */
    void SlotSetMacroPage();

    /** A key change from the hook: virtual key, down, repeat. */
    void UpdateCapslockTip(int virtualKey, bool down, bool repeat);

    void CreateMewMacro();
    void InPortMacro();
    void ExPortMacro();
    void RenameMacro();
    void DeleteMacro();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private Q_SLOTS:
    void on_NewHong_clicked() { CreateMewMacro(); }
    void on_DeleteHong_clicked() { DeleteMacro(); }
    void on_Amend_clicked();
    void on_DeleteKey_clicked();
    void on_StartRecord_clicked();
    void on_StopRecord_clicked();
    void on_Save_clicked();
    void on_ChooseEvent_activated(int index);
    void on_listWidgetHong_clicked(const QModelIndex &index);
    void on_listWidgetHong_customContextMenuRequested(const QPoint &position);
    void on_listWidgetKey_itemChanged(QListWidgetItem *item);
    void on_listWidgetKey_itemDoubleClicked(QListWidgetItem *) { on_Amend_clicked(); }
    void on_NumberEdit_valueChanged(int value);
    void on_NumberEdit_editingFinished() {}
    void on_ReUntilLoose_released() {}
    void on_ReUntilClick_released() {}
    void on_ReNumber_released() {}
    void on_AutoInsertDelay_released() {}

private:
    /** What a save hands over, kept until its listeners are done. */
    struct Saved
    {
        QString name;
        MacroRows rows;
    };

    void connectWidgets();
    void setStyles();

    QStringList names() const;
    QString currentName() const;
    QListWidgetItem *itemOf(const QString &name) const;
    bool isTaken(const QString &name) const;
    void load(const QString &name);
    void showNothing();
    void showUsable();
    void addRow(const QString &name, int at);
    bool hasRowsToEdit();
    void setSaveable(bool isSaveable);
    void eventsEdited();
    void repeatEdited();
    void takeBack();
    void tellSaved(bool hasNewRows, bool hasNewRepeat);
    void edit(const RowEditing::Edited &edited);

    QString askName();
    std::optional<MacroKey> askKey();
    std::optional<int> askDelay();
    void open(Prompt &prompt, QPoint offset);
    void openLimit();
    bool refusesWhileRecording();
    void insertKey(MacroRow::Action action);
    void insertDelay();
    void endRecording();
    void rowsChanged();

    MacroForm form;
    MacroTexts texts;
    int language = 0;
    RowList *rowList = nullptr;
    QString shown;              ///< macro whose rows the list shows, empty for none; a right click selects another one
    bool EventsChanged = false; ///< rows that the file doesn't hold
    bool RepeatChanged = false;
    std::optional<Saved> saved; ///< while the listeners of a save run, and until the user leaves
    int savesUnderWay = 0;      ///< one can begin while the listeners of another wait
    bool isRefused = false;     ///< the mouse didn't take what it was told since the first of them began

    std::unique_ptr<QMenu> menu; ///< of the list of macros, made anew at each right click
    MacroRecorder recorder;
    platform::KeyboardHook hook;
    bool isRecordingShown = false; ///< from start to stop; the event limit ends `MacroRecording` before

    AskPath askExportPath;
    AskPath askImportPath;
};
