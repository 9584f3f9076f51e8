#pragma once

#include "ui/ConfirmPrompt.h"

/** A key combination has too many keys. */
class GroupMaxThree : public ConfirmPrompt
{
    Q_OBJECT
public:
    GroupMaxThree();
};
