/** A macro in the flash of a mouse, of any bytes, that comes back as a file. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "productdata/UserFolders.h"

#include <QByteArray>

#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzHome::instance();
    UserFolders::prepare();
    FuzzInput input(data, size);
    FlashDataMap record{};
    const int slot = input.byte() % macroSlotCount;
    record.KeyFunctions[slot] = {6, std::uint8_t(slot), input.byte()};
    QByteArray bytes(sizeof(MacroSlot), '\0');
    const QByteArray name = input.text().left(int(sizeof(MacroSlot::Name)));
    bytes.replace(1, name.size(), name);
    bytes[0] = static_cast<char>(input.byte());
    bytes[31] = static_cast<char>(input.byte());
    const QByteArray events = input.rest().left(bytes.size() - 32);
    bytes.replace(32, events.size(), events);
    std::memcpy(&record.MacroSlots[slot], bytes.constData(), sizeof(MacroSlot));

    const QString macro = MacroImage::name(record.MacroSlots[slot]);
    using MacroImage::ReadBack;
    const ReadBack first = MacroImage::readBack(record, slot, {});
    require(first == ReadBack::NoFile || first == ReadBack::Made, "an empty folder");
    require(first == ReadBack::NoFile || MacroFile::names(MacroFile::XmlRule::SkipFirst).size() <= 1, "one file");
    if (first == ReadBack::NoFile)
        return 0;
    require(MacroImage::readBack(record, slot, {macro}) == ReadBack::Unchanged, "the file holds what the mouse does");
    const std::optional<MacroSlot> again = MacroImage::makeFromFile(macro);
    require(again && MacroImage::name(*again) == macro, "the name comes back");
    const MacroRows rows = MacroImage::rows(record.MacroSlots[slot]);
    require(rows.isEmpty() || MacroImage::rows(*again) == rows, "so do the rows");
    require(MacroFile::remove(macro), "it can be deleted");
    return 0;
}
