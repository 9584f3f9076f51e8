#include "ui/ExeIsRun.h"

namespace {
constexpr PromptDescription description{
    "DeleteConfirmA", "EXEIsRun", "Confirm Delete", {{"NewHong", "确定", PromptPlace::single}}};
}

ExeIsRun::ExeIsRun() : ConfirmPrompt(description) {}
