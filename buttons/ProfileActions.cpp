#include "buttons/ProfileActions.h"

#include "app/ConnectWait.h"
#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "buttons/ProfileFile.h"
#include "devicelink/DeviceCache.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/Worker.h"
#include "devicelink/WorkingRecord.h"
#include "portwire/portwire.h"
#include "productdata/ConfigStore.h"
#include "productdata/FileName.h"
#include "ui/ContainReset.h"
#include "ui/FileDialogs.h"
#include "ui/InportFail.h"
#include "ui/MyConmboBox.h"
#include "ui/UpDataParam.h"

#include <QDate>

#include <optional>

namespace {

/** How far from the middle of the page its prompts stand, in pixels. */
constexpr QPoint promptOffset(-75, -65);
/** What a mouse gets to write a whole record, in ms, before the user goes on. */
constexpr int writingTime = 5 * 500;

const QString filter = QStringLiteral("File(*.bin)");

/** The mouse that was selected when this was made. */
class Target
{
public:
    /** True while it is the selected one, on whatever way, and the user hasn't left it. */
    bool isStillSelected() const
    {
        const DeviceAllInfo now = SelectInfo().get();
        const bool isSameMouse = mouse.HasUsbAddress && now.HasUsbAddress && mouse.UsbAddress == now.UsbAddress &&
                                 mouse.UsbAddress != std::array<std::uint8_t, 3>{};
        return DeviceEntered && !Wait::isEnding() && (now.Path == mouse.Path || isSameMouse);
    }

private:
    const DeviceAllInfo mouse = SelectInfo().get();
};

/** The poll for a mouse that sleeps stands still: it would take the time of a reset for a sleep. */
class PollingPause
{
public:
    PollingPause() { setOnlinePolling(false); }
    ~PollingPause() { setOnlinePolling(true); }
    PollingPause(const PollingPause &) = delete;
    PollingPause &operator=(const PollingPause &) = delete;
};

/**
 * What the pages show. While the selected mouse has yet to tell its record, the working record is that of the mouse
 * before, and a file of it would pass for one of this model. \return nothing if this mouse was never read
 */
std::optional<FlashDataMap> shownRecord()
{
    if (isRecordOfSelected())
        return WorkingRecord::instance().copy();
    FlashDataMap cached{};
    return LoadDeviceCache(LoadFileName().get(), cached) ? std::optional(cached) : std::nullopt;
}

/** Model and date, such as "HALVARION-Q1 2026-11-25.bin". */
QString nameToOffer()
{
    const QString model = ConfigStore::instance()->value(selectedSection(), QStringLiteral("MM"));
    const QString name = (model.isEmpty() ? QStringLiteral("Profile") : model) + QLatin1Char(' ') +
                         QDate::currentDate().toString(Qt::ISODate);
    return (FileName::isPortable(name) ? name : QStringLiteral("Profile")) + QStringLiteral(".bin");
}

} // namespace

void ProfileActions::chooseProfile(MyConmboBox *list, int index)
{
    const bool isOnline = UsbFinderC_GetDeviceOnLine(DevicePath().get().constData()) != 0;
    if (!isOnline && !ButtonUiUpdating) {
        if (list->pressIndex() >= 0)
            list->setCurrentIndex(list->pressIndex());
        postMsg()->post(&PostMsg::SigMouseOffLineo, 0);
        return;
    }
    if (index >= 0 && index <= 255)
        UsbServer_SetCurrentConfig(std::uint8_t(index));
}

void ProfileActions::reset()
{
    if (BulkUpdateActive || !TestDeviceOnline())
        return;
    const Target target;
    ContainReset question;
    run(question);
    if (!question.confirmed() || !target.isStillSelected())
        return;
    std::optional<int> notice;
    {
        const FlagScope bulk(BulkUpdateActive);
        const PollingPause pause;
        clearPagesLoaded(); // what they hold is not yet what the wait is for
        WorkingRecord::instance().sendAgain();
        UsbServer_SetClearSetting();
        UpDataParam wait;
        wait.setRereadMark(true);
        wait.setTimeUp([&] { notice = ConnectWait::onTimeUp(wait); });
        requestConnect();
        runWait(wait);
    }
    if (notice && target.isStillSelected())
        postMsg()->post(&PostMsg::SigMouseOffLineo, *notice);
}

void ProfileActions::exportProfile()
{
    if (!shownRecord()) {
        postMsg()->post(&PostMsg::SigMouseOffLineo, 0);
        return;
    }
    const QString path = FileDialogs::askForSaving(page, filter, nameToOffer());
    const auto record = shownRecord(); // it may have told more meanwhile
    if (!path.isEmpty() && record)
        WriteProfile(path, *record);
}

void ProfileActions::importProfile()
{
    if (BulkUpdateActive || !TestDeviceOnline())
        return;
    const FlagScope bulk(BulkUpdateActive);
    const Target target;
    const QString path = FileDialogs::askForOpening(page, filter);
    if (path.isEmpty() || !target.isStillSelected())
        return;
    UpDataParam::setImportRunning(true);
    UpDataParam wait;
    wait.setImport(path);
    wait.setTimeUp([&] {
        if (!target.isStillSelected())
            return;
        FlashDataMap record{};
        const ProfileResult result = ReadProfile(wait.importPath(), record);
        if (result == ProfileAccepted) {
            takeOver(record);
            Wait::servingUntil([&target] { return !target.isStillSelected(); }, writingTime);
            // The pages show a record in this way when nobody answers, and lock what only a live mouse can take. What
            // the mouse made of the file opens them again.
            if (target.isStillSelected())
                UsbServer_ReadAllFlashData();
        } else {
            InportFail::setImportStatus(result);
            InportFail notice;
            QObject::connect(postMsg(), &PostMsg::SigSecondPageChange, &notice, &QDialog::reject);
            notice.centreOn(&wait);
            notice.exec();
        }
        wait.setImport({});
    });
    runWait(wait);
    UpDataParam::setImportRunning(false);
}

void ProfileActions::run(Prompt &prompt)
{
    QObject::connect(postMsg(), &PostMsg::SigSecondPageChange, &prompt, &QDialog::reject);
    prompt.centreOn(page, promptOffset);
    prompt.exec();
}

void ProfileActions::runWait(UpDataParam &wait)
{
    QObject::connect(postMsg(), &PostMsg::SigSecondPageChange, &wait, &UpDataParam::stopWaiting);
    wait.startWaiting();
    run(wait);
}

void ProfileActions::takeOver(const FlashDataMap &record)
{
    WorkingRecord::instance().replaceAndSend(record);
    postMsg()->post(&PostMsg::SigUpDataLightUIA, record);
    postMsg()->post(&PostMsg::SigUpDataSensorUIB, record);
    postMsg()->post(&PostMsg::SigUpDataButtonUIC, record);
    postMsg()->post(&PostMsg::SigFormB);
}
