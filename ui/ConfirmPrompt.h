#pragma once

#include "ui/Prompt.h"

/** A prompt that is confirmed by the button `NewHong`. */
class ConfirmPrompt : public Prompt
{
    Q_OBJECT
public Q_SLOTS:
    virtual void on_NewHong_clicked();

protected:
    explicit ConfirmPrompt(const PromptDescription &description, const char *element = "label");
};
