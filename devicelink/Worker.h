#pragma once

#include "devicelink/DeviceAllInfo.h"
#include "devicelink/FlashDataMap.h"

#include <QThread>
#include <QTimer>

#include <atomic>
#include <optional>

/**
 * The thread with one job: connect the selected device. Each start is one pass through `run` on private copies of the
 * state; everything else of the object lives on the GUI thread. Its timer polls for a mouse that went to sleep.
 *
 * Two connects never overlap: starting a running thread does nothing. A request that comes in that moment is not lost,
 * it is served when the thread has finished.
 */
class Worker : public QThread
{
    Q_OBJECT
public:
    explicit Worker(QObject *parent = nullptr);
    /** Stops the polling, lets a pass that stands in a blocking signal finish, and waits for it. */
    ~Worker() override;

    /** Asks for a connect: sets `ConnectPending` and starts the thread. GUI thread only. */
    void request();
    /** Stops the polling, or starts it anew. */
    void setPolling(bool isRunning);

public Q_SLOTS:
    void SlotSelectMouseInfo(DeviceAllInfo SelectInfo);
    void SlotMainPageChange();
    void SlotCheckOnline();

protected:
    void run() override;

private:
    struct Connection
    {
        QString path;
        std::uint8_t receiverClass = 0;
        bool operator==(const Connection &other) const
        {
            return path == other.path && receiverClass == other.receiverClass;
        }
    };

    bool connectDevice(const DeviceAllInfo &selected, const QByteArray &path);
    void announceOnline();
    void showCache();
    void startAgainIfRequested();

    QTimer checkTimer;
    std::optional<Connection> lastConnection; ///< only `run` touches it
    /** A selection follows an ended link: whatever the last connect was, the next one is not the same. */
    std::atomic<bool> isNewSelection{true};
    std::atomic<unsigned> requests{0};
    std::atomic<unsigned> served{0};
};

/** Asks the program's `Worker` for a connect; without one nothing happens. GUI thread only. */
void requestConnect();

/** Lets the poll for a mouse that went to sleep stand still, or run again. GUI thread only. */
void setOnlinePolling(bool isRunning);

/** True while a connect runs. */
bool isConnecting();
