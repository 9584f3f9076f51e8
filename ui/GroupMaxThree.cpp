#include "ui/GroupMaxThree.h"

namespace {
constexpr PromptDescription description{
    "MaxThree", "MaxThree", "  Key can only have up to three buttons", {{"NewHong", "确定", PromptPlace::single}}};
}

GroupMaxThree::GroupMaxThree() : ConfirmPrompt(description) {}
