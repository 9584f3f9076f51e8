#pragma once

#include "app/ChooserEntry.h"

#include <QWidget>

#include <memory>
#include <vector>

namespace Ui {
class DialogChange;
}
class QuestiondialogB;

/**
 * The device chooser, the first page a user sees: a picture for each mouse or receiver on USB, in pages of three. It
 * lives for the whole process; each scan replaces what it shows.
 */
class DialogChange : public QWidget
{
    Q_OBJECT
public:
    explicit DialogChange(QWidget *parent = nullptr);
    ~DialogChange() override;

    /** Looks for devices at each USB change from now on, and once at once. */
    static void startScanning();
    /** Tells of devices that can't be told apart, if there are any and the window is before the user. */
    void tellDuplicates();

public Q_SLOTS:
    void on_MinButton_clicked();
    void on_CloseButton_clicked();
    void on_RightButton_clicked();
    void on_LeftButton_clicked();
    void on_Repair_clicked();
    void on_comboBox_activated(int index);
    void SlotSameLanguageA(int index);
    void SlotUpDateButton(bool IsHide);
    void SlotEnterKey();
    void slotButtonClicked();
    void ChangeDialogLanguage(int index);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void setUpTheme();
    void scan();
    void rebuild();
    void clearEntries();
    void addPages();
    void showEntry(int index);
    void openEntry(int index);
    bool isLeftByItsMouse(int index) const;
    void checkMismatch(const DeviceAllInfo &receiver);
    void closeDuplicatesNotice();
    void showHint();

    std::unique_ptr<Ui::DialogChange> ui;
    std::vector<ChooserEntry> entries;
    QuestiondialogB *duplicatesNotice = nullptr; ///< while it is open; lives on the stack of its exec
    QString hintText;
    QString repairText;
    QString offlineTip1;
    QString offlineTip2;
    QString unknownTip;
};
