#include "ui/QuestiondialogB.h"

namespace {
constexpr PromptDescription description{"QuestionB", "QuestionB", "  Do not insert multiple identical devices"};
}

QuestiondialogB::QuestiondialogB() : Prompt(description) {}
