#include "ui/InportFail.h"

namespace {
constexpr PromptDescription description{
    "InportFailA", "InportFail", "Config does not match the device", {{"NewHong", "确定", PromptPlace::single}}};
}

InportFail::InportFail() : ConfirmPrompt(description, ImportStatus == 2 ? "label_1" : "label") {}
