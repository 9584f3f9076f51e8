#include "ui/UpDateWarning.h"

namespace {
constexpr PromptDescription description{
    "NewVerA", "NewVer", "有新的固件版本", {{"NewHong", "确定", PromptPlace::single}}};
}

UpDateWarning::UpDateWarning() : ConfirmPrompt(description) {}
