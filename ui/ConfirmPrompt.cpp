#include "ui/ConfirmPrompt.h"

#include <QToolButton>

ConfirmPrompt::ConfirmPrompt(const PromptDescription &description, const char *element) : Prompt(description, element)
{
    connect(button("NewHong"), &QToolButton::clicked, this, &ConfirmPrompt::on_NewHong_clicked);
}

void ConfirmPrompt::on_NewHong_clicked() { accept(); }
