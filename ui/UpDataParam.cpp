#include "ui/UpDataParam.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"

namespace {
constexpr PromptDescription description{"UpDataParamA", "UpDataParam", "Please wait, we are updating the setting"};
/** Milliseconds that a record has for its way from mouse to pages before they are asked whether they have it. */
constexpr int waitingTime = 4500;
} // namespace

UpDataParam::UpDataParam() : Prompt(description, ImportRunning ? "label_1" : "label")
{
    // A Return meant for what came before must not end the wait.
    setFocus();
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, this, &UpDataParam::onTimeupDestroy);
}

void UpDataParam::startWaiting() { timer.start(Wait::scaled(waitingTime)); }

void UpDataParam::setImport(const QString &path)
{
    ImportPath = path;
    ImportMode = !path.isEmpty();
}

void UpDataParam::onTimeupDestroy()
{
    const QPointer<UpDataParam> self(this);
    postMsg()->post(&PostMsg::SigSetver, 4);
    // A copy: the operation may serve the event loop, and so meet the next wait.
    if (const auto operation = timeUp)
        operation();
    // Not over a wait that began meanwhile.
    if (self && isVisible() && !isTimeRunning())
        accept();
}
