#include "ui/DeleteConfirm.h"

namespace {
constexpr PromptDescription description{
    "DeleteConfirmA", "DeleteConfirm", "Confirm Delete", {{"NewHong", "确定", PromptPlace::single}}};
}

DeleteConfirm::DeleteConfirm() : ConfirmPrompt(description) {}
