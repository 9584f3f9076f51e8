#pragma once

#include "ui/ConfirmPrompt.h"

/** Something runs that leaves no room for what was asked: at first a copy of the program, else a macro matter. */
class ExeIsRun : public ConfirmPrompt
{
    Q_OBJECT
public:
    /** The program runs already. */
    ExeIsRun();

    /** Recording was asked for, and no macro is selected. */
    void showNoMacroSelected() { showElement("label_2"); }
    /** A macro command came during a recording. */
    void showPleaseStop() { showElement("PleaseStop"); }
};
