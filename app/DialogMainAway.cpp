// The window out of sight, minimised or in the tray, and its way back.

#include "app/Dialog.h"
#include "app/DialogMain.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/ReportLink.h"
#include "platform/WindowSystem.h"

#include <QCursor>
#include <QMenu>
#include <QTimer>
#include <QWindow>
#include <QWindowStateChangeEvent>

#include <utility>

namespace {

/** Milliseconds until Qt has surely noticed that a window was minimised; it gives a compositor a tenth of that. */
constexpr int minimiseTime = 1000;

} // namespace

/** While the window is away no prompt opens over what the user does instead. */
void DialogMain::setAway(bool isAway)
{
    WindowAway = isAway;
    if (!isAway)
        QTimer::singleShot(0, this, &DialogMain::openWhatIsDue); // this may be an event of the window itself
}

void DialogMain::openWhatIsDue()
{
    if (WindowAway || !DeviceEntered)
        return;
    deviceWindow->windowCameBack();
    if (const auto index = std::exchange(dueNotice, std::nullopt); index && OfflineWaiting)
        SlotMouseOffLine(*index);
}

void DialogMain::toTray()
{
    setAway(true);
    ReportLink::tellProgramStatus();
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        showMinimized(); // without a tray a hidden window would be lost
        watchUntilBack();
        return;
    }
    hide();
    // Made anew at each trip: the texts are those of the present language.
    trayMenu = std::make_unique<QMenu>();
    trayMenu->addAction(mainText, this, &DialogMain::slotActionMain);
    trayMenu->addSeparator();
    trayMenu->addAction(exitText, this, &DialogMain::slotActionExitApp);
    tray->setContextMenu(trayMenu.get());
    tray->show();
}

void DialogMain::fromTray()
{
    showNormal();
    raise();
    activateWindow();
    tray->hide();
    setAway(false);
}

void DialogMain::on_activatedSysTrayIcon(QSystemTrayIcon::ActivationReason reason)
{
    switch (reason) {
    case QSystemTrayIcon::Context:
        if (trayMenu)
            trayMenu->popup(QCursor::pos());
        break;
    case QSystemTrayIcon::DoubleClick:
        fromTray();
        break;
    case QSystemTrayIcon::Trigger:
        slotActionMain();
        break;
    default:
        break;
    }
}

void DialogMain::slotActionMain()
{
    fromTray();
    ReportLink::tellProgramStatus();
}

/** The desktop's own ways to minimise the window and to bring it back tell nobody but the window. */
void DialogMain::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    const bool wasMinimized = static_cast<QWindowStateChangeEvent *>(event)->oldState() & Qt::WindowMinimized;
    if (wasMinimized == isMinimized())
        return;
    setAway(isMinimized());
    ReportLink::tellProgramStatus();
}

/**
 * Some window managers don't minimise at all, and would leave the user with a window that opens no prompt any more. A
 * Wayland compositor tells neither that it minimised a window nor that it brought one back; but it asks a window for
 * pictures only while somebody can see it, and Qt takes one that isn't asked for hidden.
 */
void DialogMain::watchUntilBack()
{
    isAwayUntold = false;
    update(); // so that there is a picture to be asked for
    QTimer::singleShot(Wait::scaled(minimiseTime), this, [this] {
        if (!WindowAway)
            return;
        if (platform::tellsOfMinimising()) {
            if (platform::isMinimised(winId()))
                return;
        } else if (!windowHandle()->isExposed()) {
            isAwayUntold = true;
            windowHandle()->installEventFilter(this);
            return;
        }
        qWarning("the window isn't minimised, and there is no tray to put it in: it stays");
        comeBackUntold();
    });
}

bool DialogMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == windowHandle() && event->type() == QEvent::Expose && windowHandle()->isExposed() && isAwayUntold)
        comeBackUntold();
    return QDialog::eventFilter(watched, event);
}

void DialogMain::comeBackUntold()
{
    isAwayUntold = false;
    setWindowState(windowState() & ~Qt::WindowMinimized); // what Qt may believe
    setAway(false);
    ReportLink::tellProgramStatus();
}
