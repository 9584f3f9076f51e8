#include "ui/LeftButtonOnly.h"

namespace {
constexpr PromptDescription description{"ButtonOnly", "ButtonOnly", "Left button must be retained"};
}

LeftButtonOnly::LeftButtonOnly() : Prompt(description) {}
