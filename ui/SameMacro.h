#pragma once

#include "ui/ConfirmPrompt.h"

/** A macro of that name is there already. */
class SameMacro : public ConfirmPrompt
{
    Q_OBJECT
public:
    SameMacro();
};
