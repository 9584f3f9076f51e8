#include "app/Dialog.h"

#include "app/ConnectWait.h"
#include "app/ModelNames.h"
#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "buttons/Buttoninterface.h"
#include "devicelink/DeviceCache.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "lighting/LampLight.h"
#include "macro/Macro.h"
#include "maintenance/FormSetting.h"
#include "platform/CrashDump.h"
#include "portwire/portwire.h"
#include "productdata/LanguageFile.h"
#include "productdata/Theme.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "sensor/Sensor.h"
#include "ui/ChangeSheet.h"
#include "ui/LateStyle.h"
#include "ui/PageFocus.h"
#include "ui/UpDataParam.h"
#include "ui_Dialog.h"

#include <QButtonGroup>

#include <utility>

namespace {

/** Below this percentage the gauge turns red. */
constexpr int lowBattery = 16;
/** How far above the middle the wait prompt stands, in pixels. */
constexpr QPoint promptOffset(0, -20);

QString batteryStyle(int percent)
{
    const QString colour = percent < lowBattery ? QStringLiteral("152, 43, 34") : QStringLiteral("0, 255, 153");
    return QStringLiteral("#progressBar{border: none;background-color: transparent;}"
                          "#progressBar::chunk {background-color: rgb(%1);}")
        .arg(colour);
}

} // namespace

Dialog::Dialog(QWidget *parent) : QWidget(parent), ui(std::make_unique<Ui::Dialog>())
{
    ui->setupUi(this);
    makePages();
    wait = std::make_unique<UpDataParam>();
    wait->setTimeUp([this] { onWaitOver(); });
    setUpTheme();
    ui->label->hide();
    ui->SetButton->hide();

    pageButtons = new QButtonGroup(this);
    pageButtons->setExclusive(true);
    for (QToolButton *button : {ui->ButtonMain, ui->MacroButton, ui->LightsButton, ui->SensorButton, ui->FormSetting})
        pageButtons->addButton(button);
    connect(ui->MinButton, &QToolButton::clicked, this, &Dialog::WindowMin);
    ui->ButtonMain->setChecked(true);
    setFixedSize(size());
    platform::installCrashDump(UserFolders::path(UserFolders::Folder::Exception).toStdString());
    ui->stackedWidgetDialog->setCurrentWidget(buttonPage);
    givePagesTheFocus(*ui->stackedWidgetDialog);
    connectHub();
    SlotChangeLanguage(UserSettings::instance()->language());
}

Dialog::~Dialog() = default;

void Dialog::makePages()
{
    buttonPage = new Buttoninterface(ui->stackedWidgetDialog);
    lightPage = new LampLight(ui->stackedWidgetDialog);
    macroPage = new Macro(ui->stackedWidgetDialog);
    sensorPage = new Sensor(ui->stackedWidgetDialog);
    settingPage = new ::FormSetting(ui->stackedWidgetDialog);
    for (QWidget *page : std::initializer_list<QWidget *>{buttonPage, sensorPage, macroPage, lightPage, settingPage})
        ui->stackedWidgetDialog->addWidget(page);
}

void Dialog::setUpTheme()
{
    const QString folder = Theme::pictureFolder("Dialog");
    new LateStyle(ui->frame_2,
                  Theme::frameBackground(folder, QStringLiteral("frame_2"), QStringLiteral("BackGround.png")));
    const auto pageButton = [&folder](QToolButton *button, const QString &name, const QString &checked) {
        new LateStyle(button, Theme::pageButton(folder, name + ".png", name + "Hover.png", name + checked + ".png",
                                                name + "Disabled.png") +
                                  Theme::toolTip());
    };
    const QString checked = QStringLiteral("Checked");
    pageButton(ui->ButtonMain, QStringLiteral("Home"), checked);
    pageButton(ui->SensorButton, QStringLiteral("Sensor"), checked);
    pageButton(ui->MacroButton, QStringLiteral("Macro"), checked);
    pageButton(ui->LightsButton, QStringLiteral("Light"), checked);
    pageButton(ui->FormSetting, QStringLiteral("Setting"), QStringLiteral("Click"));
    const auto toolButton = [&folder](QToolButton *button, const QString &name) {
        new LateStyle(button, Theme::toolButton(folder, name + ".png", name + "Hover.png", name + "Click.png") +
                                  Theme::toolTip());
    };
    toolButton(ui->UpArrow, QStringLiteral("PageChange"));
    toolButton(ui->MinButton, QStringLiteral("Min"));
    toolButton(ui->CloseButton, QStringLiteral("Close"));

    ui->BatteryButtonC->setPixmap(QPixmap(folder + "Battery.png"));
    ui->label->setPixmap(QPixmap(folder + "Charg.png"));
    ui->progressBar->setStyleSheet(batteryStyle(100));
    ui->label_2->setStyleSheet(Theme::namedLabel(QStringLiteral("label_2")));
    ui->label_3->setStyleSheet(Theme::namedLabel(QStringLiteral("label_3")));
    ui->label_2->setFont(QFont(QStringLiteral("微软雅黑"), 8));
    ui->label_3->setFont(QFont(QStringLiteral("微软雅黑"), 14));
}

void Dialog::connectHub()
{
    PostMsg *const hub = postMsg();
    connect(hub, &PostMsg::SigChangeLanguage, this, &Dialog::SlotChangeLanguage);
    connect(hub, &PostMsg::SigSecondPageChange, this, &Dialog::SlotSecondDialog);
    connect(hub, &PostMsg::SigUpDataParam, this, &Dialog::SlotUpDataParam);
    connect(hub, &PostMsg::SigStartRecord, this, &Dialog::SlotStartRecord);
    connect(hub, &PostMsg::SigMouseIndex, this, &Dialog::SlotMouseIndex);
    connect(hub, &PostMsg::SigBattery, this, &Dialog::SlotBattery, Qt::BlockingQueuedConnection);
}

// Pages --------------------------------------------------------------------------------------------------------------

void Dialog::on_ButtonMain_clicked()
{
    postMsg()->post(&PostMsg::SigAddMacroButton);
    ui->stackedWidgetDialog->setCurrentWidget(buttonPage);
}

void Dialog::on_SensorButton_clicked() { ui->stackedWidgetDialog->setCurrentWidget(sensorPage); }

void Dialog::on_MacroButton_clicked() { ui->stackedWidgetDialog->setCurrentWidget(macroPage); }

void Dialog::on_LightsButton_clicked() { ui->stackedWidgetDialog->setCurrentWidget(lightPage); }

void Dialog::on_FormSetting_clicked() { ui->stackedWidgetDialog->setCurrentWidget(settingPage); }

/** Icons say little to who meets them first: what each opens, as a hint and for a screen reader. */
void Dialog::SlotChangeLanguage(int index)
{
    const QList<QAbstractButton *> icons = pageButtons->buttons() << ui->UpArrow;
    LanguageFile::readSection(index, QStringLiteral("Dialog"), [&](const QString &element, const QString &text) {
        for (QAbstractButton *icon : icons) {
            if (icon->objectName() != element)
                continue;
            icon->setToolTip(text);
            icon->setAccessibleName(text);
        }
    });
}

void Dialog::SlotStartRecord(int index)
{
    if (index != 0 && index != 1)
        return;
    const QList<QAbstractButton *> buttons = pageButtons->buttons();
    for (QAbstractButton *button : buttons)
        button->setEnabled(index == 1);
}

// Leaving ------------------------------------------------------------------------------------------------------------

void Dialog::saveRecord() { SaveDeviceCache(SaveFileName().get(), WorkingRecord::instance().copy()); }

void Dialog::on_UpArrow_clicked()
{
    if (!DeviceEntered.exchange(false))
        return; // a second click while the first one's wait serves the event loop
    DeviceWindowOpen = false;
    DeviceWritesEnabled = false; // a click during the wait is no change any more; the change of the page ends this
    ReportLink::tellProgramStatus();
    saveRecord();
    ui->ButtonMain->setChecked(true);
    Wait::serving(100);
    if (Wait::isEnding())
        return;
    ReportLink::end();
    postMsg()->post(&PostMsg::SigChangeMainDialog, 0);
    postMsg()->post(&PostMsg::SigSetMacroPage);
    ui->stackedWidgetDialog->setCurrentWidget(buttonPage);
}

void Dialog::WindowClosed()
{
    saveRecord();
    postMsg()->post(&PostMsg::SigChangeSize, 1);
}

void Dialog::on_CloseButton_clicked() { WindowClosed(); }

void Dialog::WindowMin() { postMsg()->post(&PostMsg::SigChangeSize, 0); }

void Dialog::SlotSecondDialog()
{
    closeWait();
    ui->ButtonMain->setChecked(true);
    ui->stackedWidgetDialog->setCurrentWidget(buttonPage);
}

// What the device tells ----------------------------------------------------------------------------------------------

void Dialog::SlotBattery(bool IsCharg, int Number, bool IsText)
{
    ui->label->setVisible(IsCharg);
    ui->progressBar->setValue(Number);
    ui->label_2->setText(QString::number(Number) + (IsText ? QStringLiteral("%") : QString()));
    changeSheet(ui->progressBar, batteryStyle(Number));
}

void Dialog::SlotMouseIndex(int index)
{
    if (const QString name = ModelNames::of(index); !name.isEmpty())
        ui->label_3->setText(name);
}

void Dialog::SlotUpDataParam(int index)
{
    // The request was queued by the connect thread; the user may have gone back, or the program may be ending.
    if (!DeviceEntered || Wait::isEnding())
        return;
    if (index == 1)
        wait->setRereadMark(true);
    if (isWaitOpen)
        wait->startWaiting(); // a second connect during the wait, as when the cable comes: the time starts anew
    else if (WindowAway)
        isWaitDue = true; // a profile button pressed in a game: the record comes all the same, and without a prompt
    else
        openWait();
}

void Dialog::openWait()
{
    wait->startWaiting();
    wait->centreOn(this, promptOffset);
    isWaitOpen = true;
    wait->exec();
    isWaitOpen = false;
    tellNotice();
}

void Dialog::windowCameBack()
{
    if (std::exchange(isWaitDue, false) && !allPagesLoaded())
        openWait();
}

void Dialog::onWaitOver()
{
    notice = ConnectWait::onTimeUp(*wait);
    // One prompt inside the event loop of another could not be opened again when the mouse is back.
    if (!isWaitOpen)
        tellNotice();
}

void Dialog::tellNotice()
{
    if (notice)
        postMsg()->post(&PostMsg::SigMouseOffLineo, *std::exchange(notice, std::nullopt));
}

/** The device has left: nobody waits for its record any more. */
void Dialog::closeWait()
{
    isWaitDue = false;
    wait->stopWaiting();
    wait->close();
}
