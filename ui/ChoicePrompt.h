#pragma once

#include "ui/Prompt.h"

/** A prompt that asks: `OK` confirms, `Cancel` refuses. */
class ChoicePrompt : public Prompt
{
    Q_OBJECT
public Q_SLOTS:
    void on_OK_clicked();
    void on_Cancel_clicked();

protected:
    explicit ChoicePrompt(const PromptDescription &description);
};
