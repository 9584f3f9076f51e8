#pragma once

#include "ui/AddDelayTime.h"
#include "ui/ContainReset.h"
#include "ui/DeleteConfirm.h"
#include "ui/ExeIsRun.h"
#include "ui/GroupMaxThree.h"
#include "ui/InportFail.h"
#include "ui/KeyNumberLimit.h"
#include "ui/LeftButtonOnly.h"
#include "ui/MakeMacro.h"
#include "ui/MouseOffLine.h"
#include "ui/QuestionDialog.h"
#include "ui/QuestiondialogB.h"
#include "ui/RePair.h"
#include "ui/SameMacro.h"
#include "ui/UpDataParam.h"
#include "ui/UpDateWarning.h"

#include <memory>

/** Every prompt there is, for what is tested of each. */
namespace AllPrompts {

using Made = std::unique_ptr<Prompt>;

template<typename Class>
Made make()
{
    return std::make_unique<Class>();
}

struct Row
{
    const char *name;
    const char *section; ///< of the language files
    Made (*make)();
};

inline const Row rows[] = {
    {"QuestionDialog", "Question", make<QuestionDialog>},
    {"AddDelayTime", "AddDelayTime", make<AddDelayTime>},
    {"DeleteConfirm", "DeleteConfirm", make<DeleteConfirm>},
    {"SameMacro", "SameMacro", make<SameMacro>},
    {"MakeMacro", "MakeMacro", make<MakeMacro>},
    {"KeyNumberLimit", "Limit", make<KeyNumberLimit>},
    {"ExeIsRun", "EXEIsRun", make<ExeIsRun>},
    {"LeftButtonOnly", "ButtonOnly", make<LeftButtonOnly>},
    {"GroupMaxThree", "MaxThree", make<GroupMaxThree>},
    {"ContainReset", "ContainReset", make<ContainReset>},
    {"RePair", "RePair", make<RePair>},
    {"QuestiondialogB", "QuestionB", make<QuestiondialogB>},
    {"MouseOffLine", "MouseOffLine", make<MouseOffLine>},
    {"InportFail", "InportFail", make<InportFail>},
    {"UpDataParam", "UpDataParam", make<UpDataParam>},
    {"UpDateWarning", "NewVer", make<UpDateWarning>},
};

} // namespace AllPrompts
