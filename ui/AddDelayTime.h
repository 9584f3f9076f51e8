#pragma once

#include "ui/ConfirmPrompt.h"

class QSpinBox;

/** Asks for a delay between two events of a macro. */
class AddDelayTime : public ConfirmPrompt
{
    Q_OBJECT
public:
    AddDelayTime();

    /** The delay in milliseconds, 10 to 65535. It counts only if confirmed(). */
    int delay() const;

public Q_SLOTS:
    void on_NewHong_clicked() override;
    void on_NewHong_2_clicked();

private:
    QSpinBox *spinBox;
};
