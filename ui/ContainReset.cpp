#include "ui/ContainReset.h"

#include <QKeySequence>
#include <QToolButton>

namespace {
constexpr PromptDescription description{"ContainResetA",
                                        "ContainReset",
                                        " Is need to restore the default settings",
                                        {{"OK", "确定", PromptPlace::left}, {"Cancel", "取消", PromptPlace::right}}};
}

ContainReset::ContainReset() : ChoicePrompt(description)
{
    // A text that says "&R" would take the shortcut away again, so it comes after the texts.
    button("OK")->setShortcut(QKeySequence(Qt::Key_Return));
}
