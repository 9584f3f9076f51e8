#include "ui/RePair.h"

namespace {
constexpr PromptDescription description{"RePairA",
                                        "RePair",
                                        "        Do you need to pair again",
                                        {{"OK", "确定", PromptPlace::left}, {"Cancel", "取消", PromptPlace::right}}};
}

RePair::RePair() : ChoicePrompt(description) {}
