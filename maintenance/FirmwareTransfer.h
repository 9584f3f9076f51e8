#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <cstdint>
#include <optional>

/**
 * The one firmware transfer that can be under way, and what the process knows of it. The callback of the library is a
 * plain function on a thread of the library, and what it touches may outlive every window, so it lives here.
 *
 * A transfer is begun on the GUI thread and ended once, by the library. From the first moment to a good end
 * `UpdateFailInfo` says what is under way: a program that is killed in the middle, or a PC without power, leaves it,
 * and the chooser of the next start offers the repair.
 */
namespace FirmwareTransfer {

/** What has become of the update of a device. */
enum State {
    Nothing = 0,
    Running = 1,
    Success = 2,
    Failure = 3,
    UpToDate = 4,
};

/** Of the run behind the buttons of the settings page; a repair doesn't touch them. */
inline std::atomic<int> MouseUpdate{Nothing};
inline std::atomic<int> DongleUpdate{Nothing};

/** What a transfer is for: enough to find its image once more. */
struct Subject
{
    int target = 0;      ///< as the header of an image says it
    int updateClass = 0; ///< rate in kHz of the receiver, 0 if none was known
    int cid = 0;
    int mid = 0;

    /** Four decimal numbers with commas between. */
    QString text() const;
    /** The reverse; none for anything else than four parts, numbers or not. */
    static std::optional<Subject> fromText(const QString &text);
    /** Index of the model in the product file. */
    int modelIndex() const;
};

/**
 * Both take the image of `subject` and return at once.
 *
 * A run tells its progress by `SigProgress`, at most 25 times a second, and its end by `MouseUpdate` or `DongleUpdate`,
 * which is set to Running here, by `SigProgress` and, after a success, by `SigLabelText`. `HotplugWatchEnabled` is the
 * caller's.
 *
 * A repair tells its progress by `SigAutoRepairProgress`, as often, and its end by `SigAutoRepair` and
 * `SigUpDateButton`, and sets `HotplugWatchEnabled` at both ends.
 */
void startRun(const QByteArray &image, const Subject &subject);
void startRepair(const QByteArray &image, const Subject &subject);

/** Number of devices in boot mode that an image fits. */
int bootDevices(const QByteArray &image);

} // namespace FirmwareTransfer
