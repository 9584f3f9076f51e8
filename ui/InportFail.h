#pragma once

#include "ui/ConfirmPrompt.h"

#include <atomic>

/** A profile file was not taken over. */
class InportFail : public ConfirmPrompt
{
    Q_OBJECT
public:
    InportFail();

    /** Why the last file was refused, for the next prompt: 1 it can't be read or is no profile, 2 another model's. */
    static void setImportStatus(int status) { ImportStatus = status; }

private:
    static inline std::atomic<int> ImportStatus{0};
};
