#pragma once

#include "ui/ConfirmPrompt.h"

/** Asks before a macro is deleted. */
class DeleteConfirm : public ConfirmPrompt
{
    Q_OBJECT
public:
    DeleteConfirm();
};
