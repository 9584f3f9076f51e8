#pragma once

#include "ui/ChoicePrompt.h"

/** Asks before the factory settings come back, or whatever else the caller makes its text. */
class ContainReset : public ChoicePrompt
{
    Q_OBJECT
public:
    ContainReset();

    /** Asks this instead; the text stays through a change of language. */
    void setLabelText(const QString &text) { showText(text); }
};
