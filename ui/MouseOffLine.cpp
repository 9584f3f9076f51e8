#include "ui/MouseOffLine.h"

#include "app/hub/PostMsg.h"

namespace {
constexpr PromptDescription description{"MouseOffLineA",
                                        "MouseOffLine",
                                        "   The mouse is offline. Please move first",
                                        {{"NewHong", "确认", PromptPlace::single}}};
}

MouseOffLine::MouseOffLine() : ConfirmPrompt(description, promptIndex == 1 ? "Timeout" : "label")
{
    connect(postMsg(), &PostMsg::SigCloseOffOnline, this, &MouseOffLine::on_CloseButton_clicked);
}
