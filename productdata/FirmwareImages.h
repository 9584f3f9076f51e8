#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>

#include <cstdint>
#include <optional>

/**
 * The firmware images that lie in the folder "bin" beside the executable, and which of them a device gets. Everything
 * here goes by the header of an image; what follows the header is between the library and the device.
 */
namespace FirmwareImages {

/** What an image is for, as its header says it. */
enum Target {
    MouseTarget = 210,
    ReceiverTarget = 211,
};

constexpr int headerSize = 728;
/** No image is larger, in bytes: some hundred times what fits into a device. */
constexpr qint64 largestFile = qint64{64} * 1024 * 1024;

/** The fields of a header that decide. */
struct Header
{
    std::uint32_t version = 0; ///< low byte the minor number, the rest the major one
    int target = 0;
    int cid = 0;
    int mid = 0;
    QString modelName;
};

/** The header at the beginning of a file; none if there are too few bytes for it. */
std::optional<Header> readHeader(const QByteArray &bytes);

/** "v", the major number in decimal, ".", the minor number in hexadecimal without padding. */
QString versionText(std::uint32_t version);

/** What an image must be for. One without a name is met by none. */
struct Request
{
    int target = 0;
    QString modelName; ///< in full
    int cid = -1;
    int mid = -1;
};

/** For the mouse of a model, an index as in ModelData. */
Request mouseRequest(int modelIndex);
/** For a receiver sold with that model. \param updateClass its rate in kHz, 1, 2 or 4; without a name for others */
Request receiverRequest(int modelIndex, int updateClass);

/** The folder of the images. */
inline QString folder() { return QCoreApplication::applicationDirPath() + QStringLiteral("/bin"); }

/**
 * What a search does with an image that is meant for the device, by the versions of both. Versions are compared as
 * decimal numbers, so 1.10 is 1.1 and older than 1.9, and what isn't a number, as with a hexadecimal minor, is 0.
 */
enum class Verdict {
    Take,
    Skip, ///< the device has this very version
    Stop, ///< it is older than what the device has: whatever comes behind it isn't looked at
};
/** Both texts with or without their "v". An empty one for the device takes any image. */
Verdict judge(const QString &deviceVersion, const QString &imageVersion);

/**
 * Selects the last image, in the order of the file names, that is meant for the device and that no older one comes
 * before. A file that can't be read as it was found, because it is too large or changes meanwhile, counts as if it
 * were not there; the log says so.
 * \param deviceVersion an empty one takes any image
 * \param selected gets the one whole file, or nothing
 * \return true if one was selected.
 */
bool FindImage(const Request &request, const QString &deviceVersion, QList<QByteArray> &selected,
               const QString &in = folder());

/**
 * True if FindImage would select something newer. Only the headers are read. Nothing is newer than a version that isn't
 * known.
 */
bool CheckUpdate(const Request &request, const QString &deviceVersion, const QString &in = folder());

} // namespace FirmwareImages
