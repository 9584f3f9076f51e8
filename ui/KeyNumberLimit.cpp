#include "ui/KeyNumberLimit.h"

namespace {
constexpr PromptDescription description{
    "LimitA", "Limit", "Macro Key reached the Max limit", {{"NewHong", "确定", PromptPlace::single}}};
}

KeyNumberLimit::KeyNumberLimit() : ConfirmPrompt(description) {}
