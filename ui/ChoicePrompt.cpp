#include "ui/ChoicePrompt.h"

#include <QToolButton>

ChoicePrompt::ChoicePrompt(const PromptDescription &description) : Prompt(description)
{
    connect(button("OK"), &QToolButton::clicked, this, &ChoicePrompt::on_OK_clicked);
    connect(button("Cancel"), &QToolButton::clicked, this, &ChoicePrompt::on_Cancel_clicked);
}

void ChoicePrompt::on_OK_clicked() { accept(); }

void ChoicePrompt::on_Cancel_clicked() { reject(); }
