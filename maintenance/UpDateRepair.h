#pragma once

#include "maintenance/FirmwareTransfer.h"
#include "ui/ConfirmPrompt.h"

#include <optional>

class QProgressBar;
class QSpinBox;

/** Finishes a firmware update that broke off. One start for each dialog; it can't be closed while the device is
 * written. */
class UpDateRepair : public ConfirmPrompt
{
    Q_OBJECT
public:
    /** For what `UpdateFailInfo` says. */
    UpDateRepair();
    /** For a device that isn't broken: the user was told that it is older than it should be, and has agreed. */
    UpDateRepair(const FirmwareTransfer::Subject &subject, const QByteArray &image);

public Q_SLOTS:
    /** Starts; once that is over, closes. */
    void on_NewHong_clicked() override;
    void on_CloseButton_clicked() override;
    /** Escape is no other way out than the close button. */
    void reject() override { on_CloseButton_clicked(); }
    /** The end: 0 for success. */
    void SlotAutoRepair(int index);
    void SlotAutoRepairProgress(int index);

private:
    void build();
    bool findImage();
    void tellMissing();
    void start();
    void dropEntry();

    std::optional<FirmwareTransfer::Subject> subject;
    QList<QByteArray> SelectedImages;
    const bool isAutomatic;
    bool isOver = false; ///< there is nothing more to start
    bool isBusy = false;
    QSpinBox *spinBox = nullptr;
    QProgressBar *bar = nullptr; ///< the same, to be seen from afar
};
