#pragma once

#include "ui/ConfirmPrompt.h"

/** The macro holds as many events as a mouse can keep. */
class KeyNumberLimit : public ConfirmPrompt
{
    Q_OBJECT
public:
    KeyNumberLimit();
};
