/** A cache file in the user's folder, of any length and content. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "devicelink/DeviceCache.h"
#include "productdata/UserFolders.h"

#include <cstring>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QString name = deviceCacheName(18, 1);
    static const QString path = [] {
        FuzzHome::instance();
        UserFolders::prepare();
        return UserFolders::path(UserFolders::Folder::DeviceInfo) + QLatin1Char('/') + name;
    }();

    FuzzInput input(data, size);
    // The length of the file, mostly about right; the one inside the file; a few of its bytes.
    constexpr int usual = 4 + static_cast<int>(flashDataMapSize);
    const int length = input.byte() % 2 == 0 ? usual + static_cast<std::int8_t>(input.byte()) : input.word();
    QByteArray content(std::max(length, 4), '\0');
    input.patch(content);
    const auto told = static_cast<std::uint32_t>(input.byte() % 2 == 0 ? int{flashDataMapSize} : input.number());
    for (int i = 0; i < 4; ++i)
        content[i] = static_cast<char>(told >> (24 - 8 * i));
    content.truncate(std::max(length, 0));
    FuzzHome::write(path, content);

    FlashDataMap record{};
    std::memset(&record, 0xA5, sizeof record);
    const FlashDataMap before = record;
    const bool isRead = LoadDeviceCache(name, record);
    require(isRead == (content.size() == usual && told == flashDataMapSize), "only a whole file is taken");
    require(isRead || std::memcmp(&record, &before, sizeof record) == 0, "a damaged file leaves the record");
    require(contentOf(path) == content, "reading changes nothing");
    if (isRead) {
        SaveDeviceCache(name, record);
        require(contentOf(path) == content, "the file of a record is the file that it came from");
    }
    return 0;
}
