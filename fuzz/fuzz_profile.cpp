/** A profile file of any length and content. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "buttons/ProfileFile.h"

#include <QDataStream>

#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QString path = FuzzHome::instance().path(QStringLiteral("profile.bin"));
    FuzzInput input(data, size);
    // Three arrays, mostly with the usual content; each has the length that it says, or another.
    QByteArray record(int{flashDataMapSize}, '\0');
    input.patch(record);
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    for (const QByteArray &usual :
         {QByteArray("Velko\0\0\0\0\0\0\0", 12), QByteArray("3395\0\0\0\0\0\0\0\0", 12), record}) {
        const int kind = input.byte() % 4;
        const QByteArray bytes = kind == 1 ? input.text() : usual;
        stream << (kind == 2 ? std::uint32_t(input.number()) : std::uint32_t(bytes.size()));
        stream.writeRawData(bytes.constData(), bytes.size());
    }
    FuzzHome::write(path, content.left(content.size() - input.byte()) + input.rest());

    FlashDataMap read{};
    std::memset(&read, 0xA5, sizeof read);
    const FlashDataMap before = read;
    const ProfileResult result = ReadProfile(path, read);
    require(result == ProfileAccepted || std::memcmp(&read, &before, sizeof read) == 0,
            "a refused file leaves the record");
    require(result != ProfileAccepted || read.DpiLevelCount <= 8, "the model has eight levels");
    if (result == ProfileAccepted) {
        WriteProfile(path, read);
        FlashDataMap again{};
        require(ReadProfile(path, again) == ProfileAccepted && std::memcmp(&read, &again, sizeof read) == 0,
                "what was written is read");
    }
    return 0;
}
