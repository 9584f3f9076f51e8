// The window out of sight, minimised or in the tray, and its way back.

#include "app/Dialog.h"
#include "app/DialogChange.h"
#include "app/DialogMain.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/ReportLink.h"
#include "platform/WindowSystem.h"

#include <QCursor>
#include <QMenu>
#include <QMouseEvent>
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
    if (WindowAway)
        return;
    if (!DeviceEntered) {
        chooser->tellDuplicates();
        return;
    }
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
            return;
        }
        qWarning("the window isn't minimised, and there is no tray to put it in: it stays");
        comeBackUntold();
    });
}

void DialogMain::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    windowHandle()->installEventFilter(this);
}

bool DialogMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == windowHandle()) {
        if (event->type() == QEvent::Expose && windowHandle()->isExposed() && isAwayUntold)
            comeBackUntold();
        if (!platform::tellsOfMoving())
            takePlaceOf(event);
    }
    return QDialog::eventFilter(watched, event);
}

/**
 * Not every compositor tells a program of X11 where it has moved its window, but the mouse comes with its place in the
 * window and on the screen, both from the display. What a widget gets is counted by Qt from where it thinks the window
 * is. Without this, lists would open where the window was.
 */
void DialogMain::takePlaceOf(const QEvent *event)
{
    QPoint place;
    if (event->type() == QEvent::Enter) {
        const auto *const enter = static_cast<const QEnterEvent *>(event);
        place = enter->globalPos() - enter->pos();
    } else if (event->type() == QEvent::MouseButtonPress) {
        const auto *const press = static_cast<const QMouseEvent *>(event);
        place = press->globalPos() - press->pos();
    } else {
        return;
    }
    // Not move(), which leaves room for a frame, and some compositors tell of one that nobody sees.
    if (place != geometry().topLeft())
        setGeometry(QRect(place, size()));
}

void DialogMain::comeBackUntold()
{
    isAwayUntold = false;
    setWindowState(windowState() & ~Qt::WindowMinimized); // what Qt may believe
    setAway(false);
    ReportLink::tellProgramStatus();
}
