#pragma once

#include <QDialog>
#include <QPoint>
#include <QString>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

namespace Ui {
class DialogMain;
}
class Dialog;
class DialogChange;
class MouseOffLine;
class QMenu;

/**
 * The one top-level window: the chooser and the device window in a stack, the tray icon, the keys of the whole program
 * and the way out.
 */
class DialogMain : public QDialog
{
    Q_OBJECT
public:
    explicit DialogMain(QWidget *parent = nullptr);
    ~DialogMain() override;

public Q_SLOTS:
    void SlotChangeMainDialog(int index);
    void SlotChangeSize(int index);
    void SlotMouseOffLine(int index);
    void SlotUpPageLight();
    void on_activatedSysTrayIcon(QSystemTrayIcon::ActivationReason reason);
    void slotActionMain();
    void slotActionExitApp();
    void SlotChangeLanguage(int index);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void takeInstallersLanguage();
    void setAway(bool isAway);
    void openWhatIsDue();
    void pairByKey();
    void toTray();
    void fromTray();
    void watchUntilBack();
    void takePlaceOf(const QEvent *event);
    void comeBackUntold();
    void leaveFromHere();
    void leave();

    std::unique_ptr<Ui::DialogMain> ui;
    DialogChange *chooser = nullptr;
    Dialog *deviceWindow = nullptr;
    std::unique_ptr<QSystemTrayIcon> tray;
    std::unique_ptr<QMenu> trayMenu;
    MouseOffLine *offlinePrompt = nullptr; ///< while it is open; lives on the stack of its exec
    std::optional<int> dueNotice; ///< index of the offline prompt that would have opened while the window was away
    QString mainText;
    QString exitText;
    bool isAwayUntold = false; ///< minimised by a compositor that won't tell when the window is back
    QPoint dragOffset;         ///< from the window's place to the mouse at the press; (0, 0) means no drag
};
