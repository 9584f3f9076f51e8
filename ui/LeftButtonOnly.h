#pragma once

#include "ui/Prompt.h"

/** The last left button can't be given another function. */
class LeftButtonOnly : public Prompt
{
    Q_OBJECT
public:
    LeftButtonOnly();
};
