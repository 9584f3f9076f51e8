#pragma once

#include "ui/ConfirmPrompt.h"

class QProgressBar;

/**
 * How the update behind the buttons of the settings page goes. It can't be closed while that runs. To confirm a failure
 * leads back to the chooser, to confirm a success goes on with the other device if there is an update for it.
 */
class Progress : public ConfirmPrompt
{
    Q_OBJECT
public:
    Progress();

public Q_SLOTS:
    /**
     * Shows `value` percent on the bar. `code`: 0 the text with that number; 1 failed; 2 done; 3 takes the button away;
     * 4 as at the beginning.
     */
    void SlotProgress(int value, int code);
    /** Closes it unless an update runs: the device isn't shown any more. */
    void SlotCloseProgress();
    void on_NewHong_clicked() override;
    void on_CloseButton_clicked() override;
    /** Escape is no other way out than the close button. */
    void reject() override { on_CloseButton_clicked(); }

protected:
    void applyText(const QString &element, const QString &text) override;

private:
    enum class Shown { Percent, Failed, Succeeded };

    void tell(Shown what);
    void showPercent(int value);
    void leave();

    QProgressBar *bar;
    Shown shown = Shown::Percent;
    int percent = 0;
    QString UpdateNotMove;
    QString UpDateFail;
    QString UpDateSuccess;
};
