#pragma once

#include "buttons/ButtonForm.h"
#include "buttons/ButtonMacros.h"
#include "buttons/ButtonRows.h"
#include "buttons/FunctionMenu.h"
#include "buttons/MacroList.h"
#include "buttons/MenuKeys.h"
#include "buttons/ProfileActions.h"
#include "devicelink/FlashDataMap.h"

#include <QPointer>
#include <QWidget>

#include <memory>

class Prompt;
class Worker;

/**
 * The button page: gives each button of the mouse a function, by a row for each and a menu of two levels. Each choice
 * goes to the mouse at once; what a row shows comes from the last record. The page also owns the connect thread.
 */
class Buttoninterface : public QWidget
{
    Q_OBJECT
public:
    explicit Buttoninterface(QWidget *parent = nullptr);
    ~Buttoninterface() override;

public Q_SLOTS:
    /** Shows a record while its sender waits, and tells that it did. */
    void SlotUpDataButtonUIButton(FlashDataMap DataMap);
    /** Shows a record: of a cache, or of an imported file. */
    void SlotUpDataButtonUIB(FlashDataMap DataMap);
    /** Fills the profile chooser; without a profile it shows one that can't be chosen. */
    void SlotUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable);
    /** The look of a mouse of which nothing is known but its model. */
    void SlotFormResetButton();
    /** Shows the macros of this PC in the menu. */
    void SlotAddMacroButton();
    /** A macro was deleted: its buttons get their defaults. The text is that of a row, prefix included. */
    void SlotDeleteMacroButton(QString MacroName);
    /** A macro was saved: 0 its events changed, 1 its repeat code. */
    void SlotUpDataMacro(QString MacroName, int index) { buttonMacros.follow(MacroName, index); }
    void SlotMacroRename(QString Rename, QString Name) { buttonMacros.rename(Rename, Name); }
    /** The picture of the model: 0 or 1. */
    void SlotMouseIndex(int index);
    /** Takes the texts of a language, 0 to 5; another index counts as English. */
    void SlotChangeLanguage(int index);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private Q_SLOTS:
    void on_FireKey_clicked() { chooseRow(0); }
    void on_RightKey_clicked() { chooseRow(1); }
    void on_BackKey_clicked() { chooseRow(2); }
    void on_StartPause_clicked() { chooseRow(3); }
    void on_TopMusic_clicked() { chooseRow(4); }
    void on_BackMusic_clicked() { chooseRow(5); }

    void on_Number1_clicked() { chooseNumber(0); }
    void on_Number2_clicked() { chooseNumber(1); }
    void on_Number3_clicked() { chooseNumber(2); }
    void on_Number4_clicked() { chooseNumber(3); }
    void on_Number5_clicked() { chooseNumber(4); }
    void on_Number6_clicked() { chooseNumber(5); }

    // Those that act at the press come with a bool too; in this order the dialog comes first.
    void on_DPI_6_clicked();
    void on_DPI_6_clicked(bool checked);
    void on_DPI_8_clicked();
    void on_DPI_13_clicked() { menu.showList(KeyCatalogue::List::Wheels); }
    void on_DPI_11_clicked() { menu.showList(KeyCatalogue::List::Tilts); }
    void on_DPI_4_clicked() { menu.showList(KeyCatalogue::List::DpiLocks); }
    void on_DPI_9_clicked() { menu.showList(KeyCatalogue::List::Lights); }
    void on_DPI_7_clicked() { menu.showList(KeyCatalogue::List::DpiSteps); }
    void on_DPI_12_clicked() { menu.showList(KeyCatalogue::List::Consumer); }
    void on_DPI_10_clicked();

    void on_LeftKey_3_clicked(bool checked) { assignEntry("LeftKey_3", checked); }
    void on_RightKey_3_clicked(bool checked) { assignEntry("RightKey_3", checked); }
    void on_MidKey_clicked(bool checked) { assignEntry("MidKey", checked); }
    void on_BackKey_2_clicked(bool checked) { assignEntry("BackKey_2", checked); }
    void on_ForWardKey_clicked(bool checked) { assignEntry("ForWardKey", checked); }
    void on_DPI_2_clicked(bool checked) { assignEntry("DPI_2", checked); }
    void on_DPI_3_clicked(bool checked) { assignEntry("DPI_3", checked); }
    void on_DPI_5_clicked(bool checked) { assignEntry("DPI_5", checked); }
    void on_VolumeUp_14_clicked(bool checked) { assignSubEntry("VolumeUp_14", checked); }
    void on_VolumeDown_14_clicked(bool checked) { assignSubEntry("VolumeDown_14", checked); }
    void on_VolumeUp_2_clicked(bool checked) { assignSubEntry("VolumeUp_2", checked); }
    void on_VolumeDown_2_clicked(bool checked) { assignSubEntry("VolumeDown_2", checked); }
    void on_VolumeUp_8_clicked(bool checked) { assignSubEntry("VolumeUp_8", checked); }
    void on_VolumeUp_9_clicked(bool checked) { assignSubEntry("VolumeUp_9", checked); }
    void on_VolumeUp_10_clicked(bool checked) { assignSubEntry("VolumeUp_10", checked); }
    void on_VolumeUp_4_clicked(bool checked) { assignSubEntry("VolumeUp_4", checked); }
    void on_VolumeUp_5_clicked(bool checked) { assignSubEntry("VolumeUp_5", checked); }
    void on_VolumeUp_6_clicked(bool checked) { assignSubEntry("VolumeUp_6", checked); }
    void on_VolumeUp_7_clicked(bool checked) { assignSubEntry("VolumeUp_7", checked); }
    void on_VolumeUp_11_clicked(bool checked) { assignSubEntry("VolumeUp_11", checked); }
    void on_VolumeUp_12_clicked(bool checked) { assignSubEntry("VolumeUp_12", checked); }
    void on_VolumeUp_13_clicked(bool checked) { assignSubEntry("VolumeUp_13", checked); }
    void on_VolumeUp_16_clicked(bool checked) { assignSubEntry("VolumeUp_16", checked); }
    void on_VolumeUp_15_clicked(bool checked) { assignSubEntry("VolumeUp_15", checked); }
    void on_VolumeUp_19_clicked(bool checked) { assignSubEntry("VolumeUp_19", checked); }
    void on_VolumeUp_20_clicked(bool checked) { assignSubEntry("VolumeUp_20", checked); }
    void on_VolumeUp_22_clicked(bool checked) { assignSubEntry("VolumeUp_22", checked); }
    void on_VolumeUp_18_clicked(bool checked) { assignSubEntry("VolumeUp_18", checked); }
    void on_VolumeUp_24_clicked(bool checked) { assignSubEntry("VolumeUp_24", checked); }
    void on_VolumeUp_23_clicked(bool checked) { assignSubEntry("VolumeUp_23", checked); }
    void on_VolumeUp_21_clicked(bool checked) { assignSubEntry("VolumeUp_21", checked); }
    void on_Player_clicked(bool checked) { assignSubEntry("Player", checked); }
    void on_StartPause_2_clicked(bool checked) { assignSubEntry("StartPause_2", checked); }
    void on_BackMusic_2_clicked(bool checked) { assignSubEntry("BackMusic_2", checked); }
    void on_TopMusic_2_clicked(bool checked) { assignSubEntry("TopMusic_2", checked); }
    void on_Mute_clicked(bool checked) { assignSubEntry("Mute", checked); }
    void on_VolumeUp_clicked(bool checked) { assignSubEntry("VolumeUp", checked); }
    void on_VolumeDown_clicked(bool checked) { assignSubEntry("VolumeDown", checked); }
    void on_VolumeDown_4_clicked(bool checked) { assignSubEntry("VolumeDown_4", checked); }
    void on_VolumeDown_5_clicked(bool checked) { assignSubEntry("VolumeDown_5", checked); }
    void on_VolumeDown_6_clicked(bool checked) { assignSubEntry("VolumeDown_6", checked); }
    void on_VolumeDown_3_clicked(bool checked) { assignSubEntry("VolumeDown_3", checked); }
    void on_VolumeDown_8_clicked(bool checked) { assignSubEntry("VolumeDown_8", checked); }
    void on_VolumeDown_9_clicked(bool checked) { assignSubEntry("VolumeDown_9", checked); }
    void on_VolumeDown_7_clicked(bool checked) { assignSubEntry("VolumeDown_7", checked); }
    void on_VolumeDown_10_clicked(bool checked) { assignSubEntry("VolumeDown_10", checked); }
    void on_VolumeDown_12_clicked(bool checked) { assignSubEntry("VolumeDown_12", checked); }
    void on_VolumeDown_13_clicked(bool checked) { assignSubEntry("VolumeDown_13", checked); }
    void on_VolumeDown_11_clicked(bool checked) { assignSubEntry("VolumeDown_11", checked); }

    void slotButtonClicked(bool checked);
    void on_ProjectChoose_activated(int index) { profiles.chooseProfile(form.ProjectChoose, index); }
    void on_Reset_clicked() { profiles.reset(); }
    void on_OutputData_clicked() { profiles.exportProfile(); }
    void on_ImportData_clicked() { profiles.importProfile(); }

private:
    void makeStyles();
    void connectHub();
    void readTexts();
    void applyRecord(const FlashDataMap &record);
    void readBackMacros(const FlashDataMap &record);

    bool isLastLeft(int row) const;
    void keepLastLeft();
    void leaveRow();
    void chooseRow(int row);
    void chooseNumber(int row);
    void openMenuAt(int row);
    void assignEntry(const char *entry, bool checked);
    void assignSubEntry(const char *entry, bool checked);
    bool giveDefault(int row);
    /** Shows a dialog in the page's place for them. \return true if it was confirmed and the page still shows. */
    bool ask(Prompt &prompt);

    ButtonForm form;
    FunctionMenu menu{form};
    MenuKeys keys{form, menu};
    ButtonRows rows{form};
    ButtonMacros buttonMacros{rows};
    MacroList macros;
    ProfileActions profiles{this};
    QString PictureFolder; ///< with a closing slash
    QString ConfigPrefix;
    int language = 0;
    int FireInterval = 10; ///< ms, as last confirmed
    int FireCount = 3;
    bool isBuilt = false;
    bool isMacroListStale = false; ///< asked for while a record was being shown
    QPointer<Prompt> openPrompt;
    std::unique_ptr<Worker> worker;
};
