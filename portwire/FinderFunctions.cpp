#include "portwire/Library.h"
#include "portwire/portwire.h"

#include <QThreadStorage>

#include <algorithm>
#include <cstring>

using namespace portwire;

namespace {

/** Where a device speaks the wire protocol; its other interfaces are the operating system's. */
constexpr int defaultInterface = 1;
constexpr int defaultCollection = 5;

/** Ids are compared without regard to the case of their digits. */
bool isSameId(const char *wanted, const std::string &id)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c; };
    const std::size_t length = wanted ? std::strlen(wanted) : 0;
    return length == id.size() &&
           std::equal(id.begin(), id.end(), wanted, [&](char a, char b) { return lower(a) == lower(b); });
}

struct Found
{
    std::vector<std::string> paths;
    std::vector<const char *> pointers; ///< to the paths, and a null behind them
};

template<typename Filter>
const char *const *findPaths(const char *vid, const char *pid, int *count, Filter accepts)
{
    // Each thread has its own, so that a scan on one doesn't pull the paths away under another. Not thread_local: when
    // a thread ends on Windows, mingw's runtime gives the memory of such objects back before it destroys them.
    static QThreadStorage<Found> found;
    auto &[paths, pointers] = found.localData();
    paths.clear();
    pointers.clear();
    const std::size_t most = count ? static_cast<std::size_t>(std::max(*count, 0)) : 0;
    for (const DeviceNode &node : Library::instance().devices().bus().enumerate()) {
        if (paths.size() < most && isSameId(vid, node.vendorId) && isSameId(pid, node.productId) && accepts(node))
            paths.push_back(node.path);
    }
    for (const std::string &path : paths)
        pointers.push_back(path.c_str());
    if (count)
        *count = static_cast<int>(paths.size());
    pointers.push_back(nullptr);
    return pointers.data();
}

/** Asks the device; nothing if the path isn't on the bus, nobody answers or the answer isn't Done. */
std::optional<Frame> askDevice(const char *path, ReportCode code, std::vector<std::uint8_t> payload = {})
{
    if (!path)
        return std::nullopt;
    return Library::instance().devices().ask(path, {code, 0, 0, std::move(payload)});
}

std::uint16_t littleEndian(const std::vector<std::uint8_t> &bytes)
{
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

} // namespace

const char *const *UsbFinderC_FindHidDevicesByDefaultDeviceId(const char *vid, const char *pid, int *count)
{
    return UsbFinderC_FindHidDevicesByDeviceId(vid, pid, defaultInterface, defaultCollection, count);
}

const char *const *UsbFinderC_FindHidDevicesByDeviceId(const char *vid, const char *pid, int interfaceId, int deviceId,
                                                       int *count)
{
    return findPaths(vid, pid, count, [=](const DeviceNode &node) {
        return node.interfaceId == interfaceId && node.deviceId == deviceId;
    });
}

void UsbFinderC_GetUsbDeviceAttribute(const char *path, uint8_t *out12)
{
    if (!out12)
        return;
    std::fill_n(out12, 12, std::uint8_t{0});
    const auto nodes = Library::instance().devices().bus().enumerate();
    const auto node = std::find_if(nodes.begin(), nodes.end(),
                                   [path](const DeviceNode &candidate) { return path && candidate.path == path; });
    if (node == nodes.end())
        return;
    const auto put = [out12](int at, unsigned long value) {
        out12[at] = static_cast<std::uint8_t>(value & 0xFF);
        out12[at + 1] = static_cast<std::uint8_t>(value >> 8 & 0xFF);
    };
    put(0, 12); // the size of the structure, then vendor, product and version
    put(4, std::strtoul(node->vendorId.c_str(), nullptr, 16));
    put(6, std::strtoul(node->productId.c_str(), nullptr, 16));
    put(8, node->usbVersion);
}

void UsbFinderC_GetDeviceInfo(const char *path, uint8_t *out3)
{
    if (!out3)
        return;
    std::fill_n(out3, 3, std::uint8_t{0});
    if (const auto answer = askDevice(path, ReportCode::DeviceInfo))
        std::copy_n(answer->payload.begin(), 3, out3);
}

int UsbFinderC_GetDeviceOnLine(const char *path)
{
    const auto answer = askDevice(path, ReportCode::Online);
    return answer && answer->payload[0] == 1;
}

void UsbFinderC_GetDeviceOnLineWithUsbAddress(const char *path, uint8_t *out10)
{
    if (!out10)
        return;
    std::fill_n(out10, 10, std::uint8_t{0});
    if (const auto answer = askDevice(path, ReportCode::Online))
        std::copy_n(answer->payload.begin(), 4, out10 + 6);
}

uint16_t UsbFinderC_GetVersion(const char *path)
{
    const auto answer = askDevice(path, ReportCode::MouseVersion);
    return answer ? littleEndian(answer->payload) : std::uint16_t{0};
}

int UsbFinderC_GetSlaveVersion(const char *path, uint16_t *out)
{
    const auto answer = askDevice(path, ReportCode::ReceiverVersion);
    if (!answer || !out)
        return 0;
    *out = littleEndian(answer->payload);
    return 1;
}

void UsbFinderC_GetLongRangeMode(const char *path, uint8_t *out)
{
    if (const auto answer = askDevice(path, ReportCode::LongRange); answer && out)
        *out = answer->payload[0];
}

void UsbFinderC_SetLongRangeMode(const char *path, int on)
{
    askDevice(path, ReportCode::SetLongRange, {static_cast<std::uint8_t>(on ? 1 : 0)});
}

void UsbFinderC_Get4KDongleRGBValue(const char *path, struct DongleRGB *rgb)
{
    if (const auto answer = askDevice(path, ReportCode::ReceiverLight); answer && rgb)
        std::copy_n(answer->payload.begin(), sizeof rgb->bytes, rgb->bytes);
}

void UsbFinderC_Set4KDongleRGB(const char *path, const struct DongleRGB *rgb)
{
    if (rgb)
        askDevice(path, ReportCode::SetReceiverLight, {std::begin(rgb->bytes), std::end(rgb->bytes)});
}
