#pragma once

#include <atomic>

/**
 * What the program knows about the device, as process-wide flags: library callbacks are plain functions and outlive
 * windows. They are atomic because several threads write them; docs/architecture.md has a table of who writes which.
 * Each is read and written alone: nothing may rely on two of them changing together.
 */

inline std::atomic<bool> ConnectPending{false};       ///< `Worker::run` has work to do
inline std::atomic<bool> DeviceWindowOpen{false};     ///< connects may run; a pairing takes it down for its run
inline std::atomic<bool> DeviceEntered{false};        ///< the user is in the device window, until he starts to leave
inline std::atomic<bool> WindowAway{false};           ///< the window is in the tray or minimised: nobody looks
inline std::atomic<bool> DeviceOnline{false};         ///< last result of the online test for the selected path
inline std::atomic<bool> PreviousOnline{false};       ///< `DeviceOnline` at the last finished connect
inline std::atomic<bool> LinkUp{false};               ///< the last connect found the device, or a record arrived
inline std::atomic<bool> OfflineWaiting{false};       ///< polling for the mouse to come back
inline std::atomic<bool> ReconnectRequested{false};   ///< a connect is to start at the next poll
inline std::atomic<bool> RereadPending{false};        ///< the next connect is a re-read
inline std::atomic<bool> BulkUpdateActive{false};     ///< an import or reset runs; pages send nothing on their own
inline std::atomic<bool> HotplugWatchEnabled{true};   ///< false while a firmware update runs
inline std::atomic<bool> UpdateRunning{false};        ///< a firmware update, from the press of its button to its end
inline std::atomic<bool> FirmwareUnderWay{false};     ///< an image is on its way into a device: nobody scans the bus
inline std::atomic<bool> MouseUpdateAvailable{false}; ///< last answers of the check for newer firmware
inline std::atomic<bool> DongleUpdateAvailable{false};
inline std::atomic<bool> DeviceWritesEnabled{false}; ///< widget handlers send only while it is true
inline std::atomic<bool> MacroRecording{false};      ///< a macro recording takes all keys

inline std::atomic<bool> SensorUiUpdating{false}; ///< the page is applying a record
inline std::atomic<bool> LightUiUpdating{false};
inline std::atomic<bool> ButtonUiUpdating{false};
inline std::atomic<bool> SensorUiLoaded{false}; ///< the page has applied a whole record
inline std::atomic<bool> LightUiLoaded{false};
inline std::atomic<bool> ButtonUiLoaded{false};

/** Receiver rate in kHz of the device that was clicked: 4, 2, 1; 0 for a mouse on its cable. */
inline std::atomic<int> ReceiverRate{0};

/** True while any page is applying a record: controls then change without the user. */
inline bool anyPageUpdating() { return SensorUiUpdating || LightUiUpdating || ButtonUiUpdating; }
/** True when the three device pages have applied a whole record. */
inline bool allPagesLoaded() { return SensorUiLoaded && LightUiLoaded && ButtonUiLoaded; }
inline void clearPagesLoaded()
{
    SensorUiLoaded = false;
    LightUiLoaded = false;
    ButtonUiLoaded = false;
}

/** Sets a flag for the life of a block; afterwards it is what it was. */
class FlagScope
{
public:
    explicit FlagScope(std::atomic<bool> &held, bool during = true) : flag(held), before(held.exchange(during)) {}
    ~FlagScope() { flag = before; }
    FlagScope(const FlagScope &) = delete;
    FlagScope &operator=(const FlagScope &) = delete;

private:
    std::atomic<bool> &flag;
    bool before;
};
