#include "ui/SameMacro.h"

namespace {
constexpr PromptDescription description{
    "SameMacroA", "SameMacro", "Already have a same name macro", {{"NewHong", "确定", PromptPlace::single}}};
}

SameMacro::SameMacro() : ConfirmPrompt(description) {}
