#include "app/DialogMain.h"

#include "app/ChooserList.h"
#include "app/Dialog.h"
#include "app/DialogChange.h"
#include "app/Ending.h"
#include "app/WindowPlace.h"
#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceScan.h"
#include "devicelink/DeviceWatch.h"
#include "devicelink/ReportLink.h"
#include "maintenance/MismatchCheck.h"
#include "maintenance/PairingRun.h"
#include "platform/Registry.h"
#include "platform/WindowSystem.h"
#include "portwire/portwire.h"
#include "productdata/LanguageFile.h"
#include "productdata/ModelData.h"
#include "productdata/Theme.h"
#include "productdata/UserSettings.h"
#include "ui/MouseOffLine.h"
#include "ui/PageFocus.h"
#include "ui/QtTexts.h"
#include "ui_DialogMain.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QWindow>

#include <utility>

namespace {

constexpr int chooserPage = 0;
constexpr int devicePage = 1;
constexpr QPoint promptOffset(0, -20);

} // namespace

DialogMain::DialogMain(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::DialogMain>())
{
    ui->setupUi(this);
    connect(postMsg(), &PostMsg::SigChangeLanguage, this, &DialogMain::SlotChangeLanguage);
    takeInstallersLanguage();
    new QtTexts(this);
    chooser = new DialogChange(ui->stackedWidget);
    deviceWindow = new Dialog(ui->stackedWidget);
    ui->stackedWidget->addWidget(chooser);
    ui->stackedWidget->addWidget(deviceWindow);
    ui->stackedWidget->setCurrentIndex(chooserPage);
    givePagesTheFocus(*ui->stackedWidget);
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint);
    setFixedSize(size());
    WindowPlace::restore(*this);

    connect(postMsg(), &PostMsg::SigChangeMainDialog, this, &DialogMain::SlotChangeMainDialog);
    connect(postMsg(), &PostMsg::SigChangeSize, this, &DialogMain::SlotChangeSize);
    connect(postMsg(), &PostMsg::SigMouseOffLineo, this, &DialogMain::SlotMouseOffLine);
    connect(postMsg(), &PostMsg::SigUpPageLight, this, &DialogMain::SlotUpPageLight);

    const QIcon logo(Theme::pictureFolder("Dialog") + QStringLiteral("Logo.png"));
    setWindowIcon(logo);
    tray = std::make_unique<QSystemTrayIcon>();
    tray->setIcon(logo);
    tray->setToolTip(QStringLiteral("Halvarion"));
    connect(tray.get(), &QSystemTrayIcon::activated, this, &DialogMain::on_activatedSysTrayIcon);
    SlotChangeLanguage(UserSettings::instance()->language());
}

DialogMain::~DialogMain() = default;

/** The installer asked for a language once; from then on the choice is the user's. */
void DialogMain::takeInstallersLanguage()
{
    const QString left = QString::fromStdString(platform::registryText(ModelData::installerKey, "LanguageIndex"));
    if (left.toInt() != 0)
        UserSettings::instance()->setLanguage(left.toInt());
    platform::removeRegistryValue(ModelData::installerKey, "LanguageIndex");
}

void DialogMain::SlotChangeMainDialog(int index)
{
    DeviceWritesEnabled = true;
    if (index == chooserPage) {
        ui->stackedWidget->setCurrentIndex(chooserPage);
        if (DeviceEntered.exchange(false))
            Dialog::saveRecord(); // the device has gone; who goes back by himself has saved it
        DeviceWindowOpen = false;
        postMsg()->post(&PostMsg::SigMainPageChange);
        ReportLink::end();
        postMsg()->post(&PostMsg::SigCloseProgress);
        postMsg()->post(&PostMsg::SigSecondPageChange);
        // The device that was offline isn't shown any more; its prompt would stand over the chooser.
        postMsg()->post(&PostMsg::SigCloseOffOnline);
        DialogChange::startScanning();
    } else if (index == devicePage) {
        ui->stackedWidget->setCurrentIndex(devicePage);
        DeviceEntered = true; // before the watch, which looks at once and may lead back
        StartUsbChanged(deviceWatch, Wait::scaled(usbQuietTime));
    }
}

void DialogMain::SlotUpPageLight() {}

// Exit ---------------------------------------------------------------------------------------------------------------

void DialogMain::SlotChangeSize(int index)
{
    if (index == 0 || index == 2)
        toTray();
    else if (index == 1 || index == 3)
        leave();
}

/** Takes the orderly way out as well: ending in the middle of a report would be an accident that waits to happen. */
void DialogMain::slotActionExitApp() { leaveFromHere(); }

/** The exit of the page that shows: the device window's saves the record and tells the mouse that the program goes. */
void DialogMain::leaveFromHere()
{
    if (ui->stackedWidget->currentIndex() == devicePage)
        deviceWindow->WindowClosed(); // comes back as a change of size
    else
        leave();
}

void DialogMain::leave()
{
    DeviceEntered = false;
    WindowPlace::keep(*this);
    ReportLink::tellProgramStatus();
    Ending::begin(this);
}

/** Words of Qt go no further: the pages read their own, and Qt's dialogs are windows that hear of it by themselves. */
bool DialogMain::event(QEvent *event) { return event->type() == QEvent::LanguageChange || QDialog::event(event); }

/** The desktop's own way to close a window (its menu, a logout) is an exit like any other. */
void DialogMain::closeEvent(QCloseEvent *event)
{
    QDialog::closeEvent(event);
    if (!Wait::isEnding())
        leaveFromHere();
}

// Prompts ------------------------------------------------------------------------------------------------------------

void DialogMain::SlotMouseOffLine(int index)
{
    // Nobody polls a device that the user leaves, so the prompt would stand until he closed it, with the way back that
    // he had chosen underneath.
    if (!DeviceEntered)
        return;
    OfflineWaiting = true;
    ReconnectRequested = true;
    if (WindowAway) {
        dueNotice = index;
        return;
    }
    // One is enough, whoever noticed it second. One that was closed may still stand further down the stack.
    if ((offlinePrompt && offlinePrompt->isVisible()) || Wait::isEnding())
        return;
    MouseOffLine::setPromptIndex(index);
    MouseOffLine prompt;
    const QScopedValueRollback<MouseOffLine *> open(offlinePrompt, &prompt);
    prompt.centreOn(this, promptOffset);
    prompt.exec();
}

void DialogMain::SlotChangeLanguage(int index)
{
    LanguageFile::readSection(index, QStringLiteral("DialogMain"), [this](const QString &element, const QString &text) {
        if (element == QLatin1String("MainForm"))
            mainText = text;
        else if (element == QLatin1String("Exit"))
            exitText = text;
    });
}

// Keys and drag ------------------------------------------------------------------------------------------------------

void DialogMain::keyPressEvent(QKeyEvent *event)
{
    if (MacroRecording)
        return; // a recording gets all keys
    switch (event->key()) {
    case Qt::Key_Space:
        if (!event->isAutoRepeat())
            pairByKey();
        break;
    case Qt::Key_Escape: // would close the dialog that this window is
    case Qt::Key_F12:
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // One that is still down, from a list that it closed say, means nothing here. Under Wayland Qt repeats a key by
        // its own clock, and takes one for held when the language has just taken its time to change.
        if (!event->isAutoRepeat())
            postMsg()->post(&PostMsg::SigEnterKey);
        break;
    default:
        // Not QDialog's, which knows keys of its own. NOLINTNEXTLINE(bugprone-parent-virtual-call)
        QWidget::keyPressEvent(event);
    }
}

/** On the chooser only where there is no doubt what is to be paired: one entry, and that a receiver. */
void DialogMain::pairByKey()
{
    if (ui->stackedWidget->currentIndex() == devicePage) {
        PairingRun::onDevicePage(this);
        return;
    }
    const QList<DeviceAllInfo> &devices = ChooserDevices();
    if (devices.size() != 1 || devices.first().IsCorded)
        return;
    const DeviceAllInfo receiver = devices.first();
    MismatchCheck::run(this, receiver);
    if (!DeviceEntered && !Wait::isEnding())
        DialogChange::startScanning();
}

void DialogMain::mousePressEvent(QMouseEvent *event) { dragOffset = event->globalPos() - pos(); }

void DialogMain::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton) || isMaximized() || dragOffset.isNull())
        return;
    if (platform::windowsRuleThemselves()) {
        move(event->globalPos() - dragOffset);
        return;
    }
    dragOffset = {}; // the window system takes the mouse from here to the release, which never comes
    if (!windowHandle()->startSystemMove())
        qWarning("the window system doesn't move the window");
}

void DialogMain::mouseReleaseEvent(QMouseEvent *) { dragOffset = {}; }
