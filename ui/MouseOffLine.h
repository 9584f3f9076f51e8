#pragma once

#include "ui/ConfirmPrompt.h"

#include <atomic>

/** The mouse doesn't answer. Closes by itself when it answers again. */
class MouseOffLine : public ConfirmPrompt
{
    Q_OBJECT
public:
    MouseOffLine();

    /** Which text the next prompt shows: 0 the mouse is offline, 1 it didn't answer in time. */
    static void setPromptIndex(int index) { promptIndex = index; }

private:
    static inline std::atomic<int> promptIndex{0};
};
