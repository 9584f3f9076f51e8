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

/** Every prompt there is, with each of its texts, for what is tested of each. */
namespace AllPrompts {

using Made = std::unique_ptr<Prompt>;

template<typename Class>
Made make()
{
    return std::make_unique<Class>();
}

/** One whose text a setting of the whole process chooses, which is put back at once. */
template<typename Class, auto choose, auto chosen, auto usual>
Made choosing()
{
    choose(chosen);
    Made prompt = make<Class>();
    choose(usual);
    return prompt;
}

/** One whose text its caller chooses. */
template<void (ExeIsRun::*choose)()>
Made saying()
{
    auto prompt = std::make_unique<ExeIsRun>();
    (prompt.get()->*choose)();
    return prompt;
}

struct Row
{
    const char *name;
    const char *section; ///< of the language files
    Made (*make)();
    const char *text = "label"; ///< element of the text
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
    {"ExeIsRun, no macro", "EXEIsRun", saying<&ExeIsRun::showNoMacroSelected>, "label_2"},
    {"ExeIsRun, recording", "EXEIsRun", saying<&ExeIsRun::showPleaseStop>, "PleaseStop"},
    {"MouseOffLine, timeout", "MouseOffLine", choosing<MouseOffLine, MouseOffLine::setPromptIndex, 1, 0>, "Timeout"},
    {"InportFail, unfit", "InportFail", choosing<InportFail, InportFail::setImportStatus, 2, 1>, "label_1"},
    {"UpDataParam, import", "UpDataParam", choosing<UpDataParam, UpDataParam::setImportRunning, true, false>,
     "label_1"},
};

} // namespace AllPrompts
