#include "maintenance/Progress.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "maintenance/TransferBar.h"

#include <QFrame>
#include <QProgressBar>
#include <QToolButton>

namespace {

constexpr PromptDescription description{
    "ProgressA", "Progress", "", {{"NewHong", "确定", PromptPlace::single}}, {0, 26, 301, 52}};

constexpr QRect barPlace{30, 86, 240, 8};

} // namespace

Progress::Progress() : ConfirmPrompt(description), bar(addTransferBar(frame(), barPlace))
{
    connect(postMsg(), &PostMsg::SigProgress, this, &Progress::SlotProgress);
    connect(postMsg(), &PostMsg::SigCloseProgress, this, &Progress::SlotCloseProgress);
    loadLanguage();
    SlotProgress(0, 4);
}

void Progress::applyText(const QString &element, const QString &text)
{
    if (element == QLatin1String("UpdateNotMove"))
        UpdateNotMove = text;
    else if (element == QLatin1String("UpDateFail"))
        UpDateFail = text;
    else if (element == QLatin1String("UpDateSuccess"))
        UpDateSuccess = text;
    // The button's own name stands in other sections.
    Prompt::applyText(element == QLatin1String("Confirm") ? QStringLiteral("NewHong") : element, text);
    tell(shown);
}

void Progress::tell(Shown what)
{
    shown = what;
    if (what == Shown::Percent)
        showText(QStringLiteral("%1: %2%").arg(UpdateNotMove).arg(percent));
    else
        showText(what == Shown::Failed ? UpDateFail : UpDateSuccess);
}

void Progress::showPercent(int value)
{
    percent = value;
    tell(Shown::Percent);
}

void Progress::SlotProgress(int value, int code)
{
    QToolButton *const confirm = button("NewHong");
    // While a run goes on there is no way out; its last step comes a moment behind the end that is told here.
    offerClosing(!UpdateRunning || code == 1 || code == 2);
    bar->setValue(code == 2 ? bar->maximum() : code == 4 ? 0 : value);
    switch (code) {
    case 0:
        showPercent(value);
        break;
    case 1:
    case 2:
        tell(code == 1 ? Shown::Failed : Shown::Succeeded);
        confirm->show();
        confirm->setFocus(); // Enter and Return press it from now on
        break;
    case 4:
        showPercent(0);
        confirm->hide();
        break;
    case 3:
        confirm->hide();
        break;
    default:
        break;
    }
}

void Progress::SlotCloseProgress()
{
    if (UpdateRunning)
        return;
    accept();
    SlotProgress(0, 4);
}

void Progress::on_NewHong_clicked()
{
    // Return presses a hidden button, too.
    if (!button("NewHong")->isHidden())
        leave();
}

void Progress::on_CloseButton_clicked()
{
    if (!UpdateRunning)
        leave();
}

void Progress::leave()
{
    const bool hasFailed = shown == Shown::Failed;
    accept();
    SlotProgress(0, 4);
    if (hasFailed)
        postMsg()->post(&PostMsg::SigChangeMainDialog, 0);
    else
        postMsg()->post(&PostMsg::SigContinue, 0);
}
