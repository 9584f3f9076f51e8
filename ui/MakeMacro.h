#pragma once

#include "ui/ConfirmPrompt.h"

/** A macro was asked for and there is none yet. */
class MakeMacro : public ConfirmPrompt
{
    Q_OBJECT
public:
    MakeMacro();
};
