#pragma once

#include "maintenance/FirmwareTransfer.h"
#include "productdata/FirmwareImages.h"

#include <QList>
#include <QObject>
#include <QTimer>

#include <array>
#include <functional>
#include <memory>

class Progress;
class QWidget;

/**
 * The firmware update behind the two buttons of the settings page, step by step once a second: look for an image and
 * for devices in boot mode, count the devices, write, wait for the end. One object in the process, for both devices.
 *
 * It knows nothing of the page: it tells by signals what is to be shown, and asks for the versions that the page shows.
 *
 * While a run goes on nobody acts on changes of the bus, since its device leaves and comes back. The run ends by its
 * last step alone, which puts that back. Until the transfer begins the user may leave the device window, and that ends
 * it, too; afterwards `Progress` stands before everything. The program may end in any step: the steps then stop, and
 * what was begun stays noted for the repair.
 */
class FirmwareRun : public QObject
{
    Q_OBJECT
public:
    enum Device { Receiver = 0, Mouse = 1 };
    Q_ENUM(Device)

    /** What stands beside the version of a device after an update that could not be made. */
    enum class Message { None = 0, NoDevice = 1, SeveralDevices = 2 };

    /** \param shownVersion version text of the device on the page, empty if none is known */
    FirmwareRun(QWidget *page, std::function<QString(Device)> shownVersion);
    ~FirmwareRun() override;

    /** A press of the update button of a device. */
    void press(Device device);
    /** Looks for newer firmware of the selected device, for `MouseUpdateAvailable` and `DongleUpdateAvailable`. */
    void check();
    /** Takes back that a device has the latest firmware: another device, another try. */
    void reset();
    /** What stands beside the version of a device now. */
    Message message(Device device) const { return sides[device].message; }
    void setMessage(Device device, Message message);

public Q_SLOTS:
    /** The user has confirmed the success of one device: the other one follows if it was offered an update. */
    void SlotContinue(int index);

Q_SIGNALS:
    void messageChanged(FirmwareRun::Device device);
    /** The device has the latest firmware; its button says so. */
    void foundUpToDate(FirmwareRun::Device device);
    void offered(FirmwareRun::Device device, bool isOffered);
    /** Whether the buttons can be pressed. */
    void buttonsEnabled(bool areEnabled);

private Q_SLOTS:
    void onDongleCheckTimer() { step(Receiver); }
    void onMouseCheckTimer() { step(Mouse); }

private:
    /** What there is twice; the members of the mouse's are its `MouseLatestVersion`, `MouseCheckTimerEnable` and so on.
     */
    struct Side
    {
        std::atomic<int> &state;
        std::atomic<bool> &isAvailable;
        bool LatestVersion = false;
        bool CheckTimerEnable = false;
        Message message = Message::None;
        QTimer CheckTimer{};
    };

    void step(Device device);
    bool findMouseImage();
    bool findReceiverImage(int ofClass, const QString &version);
    void selectImage(Device device);
    void lookForReceivers();
    void countDevices(Device device);
    bool findFinalImage(Device device);
    void start(Device device);
    void endUpToDate(Device device);
    void refuse(Device device, Message message);
    void finish(Device device);
    void end(Device device);
    void abandon();

    QWidget *const page;
    const std::function<QString(Device)> shownVersion;
    std::array<Side, 2> sides;
    std::unique_ptr<Progress> progress; ///< made for the first run
    int UpdateStep = 4;
    int UpdateClass = 0;
    int modelIndex = 0;        ///< of the device that was selected at the press
    bool ContinuedRun = false; ///< begun by SlotContinue: there is no button beside which a message would be seen
    bool isContinuing = false; ///< SlotContinue came before the last step of the run
    bool hasStarted = false;   ///< this run has given an image to the library
    QList<QByteArray> receiverPaths;
    std::array<int, 3> bootCounts{}; ///< receivers in boot mode, as `receiverClasses` has them
    QList<QByteArray> SelectedImages;
};
