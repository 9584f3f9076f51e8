#pragma once

#include "ui/ChoicePrompt.h"

/** Asks before a mouse is paired anew with its receiver. */
class RePair : public ChoicePrompt
{
    Q_OBJECT
public:
    RePair();
};
