#pragma once

#include "ui/Prompt.h"

/** Two identical devices are plugged in, and nothing tells them apart. */
class QuestiondialogB : public Prompt
{
    Q_OBJECT
public:
    QuestiondialogB();
};
