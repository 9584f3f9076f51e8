#pragma once

#include "ui/ConfirmPrompt.h"

/** Tells why firmware isn't updated; what it says is up to the caller. */
class UpDateWarning : public ConfirmPrompt
{
    Q_OBJECT
public:
    UpDateWarning();

    /** Says this; the text stays through a change of language. */
    void setLabelText(const QString &text) { showText(text); }
};
