#include "ui/MakeMacro.h"

namespace {
constexpr PromptDescription description{
    "MakeMacroA", "MakeMacro", "Please create a macro first", {{"NewHong", "确定", PromptPlace::single}}};
}

MakeMacro::MakeMacro() : ConfirmPrompt(description) {}
