/** The device image and the record, both ways, against the firmware models' own reading of the same bytes. */
#include "FuzzInput.h"
#include "Require.h"
#include "portwire/link/ImageCodec.h"
#include "portwire/link/WriteQueue.h"
#include "portwire/virtual/FirmwareFlash.h"

#include <cstring>

using namespace portwire;

namespace {

using RecordBytes = std::array<std::uint8_t, flashDataMapSize>;

RecordBytes bytesOf(const FlashDataMap &record)
{
    RecordBytes bytes;
    std::memcpy(bytes.data(), &record, bytes.size());
    return bytes;
}

/** Whoever walks a record by its counts stays inside of it. */
void requireCounts(const FlashDataMap &record)
{
    for (const KeySequence &sequence : record.KeySequences)
        require(sequence.EventCount <= std::size(sequence.Events), "a key sequence stays in its array");
    for (const MacroSlot &macro : record.MacroSlots) {
        require(macro.EventCount <= std::size(macro.Events), "a macro stays in its array");
        require(macro.NameLength <= sizeof macro.Name, "a name stays in its array");
    }
}

void readImage(const FirmwareFlash &flash)
{
    FlashDataMap record{};
    std::memset(&record, 0xA5, sizeof record); // a byte that isn't filled shows
    decodeImage(flash.bytes, record);
    requireCounts(record);
    const auto other = flash.record();
    const RecordBytes bytes = bytesOf(record);
    require(std::equal(bytes.begin(), bytes.end(), other.begin(), other.end()), "both read an image alike");

    DeviceImage written = flash.bytes;
    encodeImage(record, written);
    FlashDataMap again{};
    decodeImage(written, again);
    require(bytesOf(again) == bytes, "a record that came from an image goes through another one");
}

void writeRecord(const RecordBytes &bytes)
{
    FlashDataMap record{};
    std::memcpy(&record, bytes.data(), sizeof record);
    DeviceImage image{};
    encodeImage(record, image);
    FlashDataMap read{};
    decodeImage(image, read);
    requireCounts(read);
    FirmwareFlash mouse;
    mouse.setRecord(bytes);
    const auto other = mouse.record();
    const RecordBytes own = bytesOf(read);
    require(std::equal(own.begin(), own.end(), other.begin(), other.end()), "both write a record alike");
    DeviceImage again{};
    encodeImage(read, again);
    require(again == image, "an image holds what a mouse can hold of a record");
}

/** What is queued reaches a mouse that reports anything at all, in writes that it takes. */
void queueRecord(FuzzInput &input, DeviceImage mouse)
{
    WriteQueue queue;
    FlashDataMap previous{};
    decodeImage(mouse, previous);
    FlashDataMap record = previous;
    RecordBytes bytes = bytesOf(record);
    input.patch(bytes);
    std::memcpy(&record, bytes.data(), sizeof record);
    if (input.byte() % 2 == 1) {
        std::vector<std::uint8_t> all(mouse.begin(), mouse.end());
        queue.merge(0, all.data(), all.size(), queue.serial());
        queue.setGiven(true);
    }
    queue.update(record, previous);
    const std::uint64_t before = input.byte() % 2 == 0 ? 0 : queue.serial();
    const std::size_t address = input.word();
    auto reported = input.bytes();
    queue.merge(address, reported.data(), reported.size(), before);

    std::optional<WriteQueue::Clock::time_point> due;
    const auto batch = queue.take(true, {}, due);
    require(batch.has_value() == (queue.size() > 0), "what is queued is taken");
    for (const WriteQueue::Write &write : batch ? batch->writes : std::vector<WriteQueue::Write>{}) {
        require(!write.bytes.empty() && write.bytes.size() <= 54, "a write fits a report");
        require(write.address + write.bytes.size() <= mouse.size(), "a write stays in the image");
        std::copy(write.bytes.begin(), write.bytes.end(), mouse.begin() + write.address);
    }
    if (!reported.empty())
        return; // the mouse has told of a change of its own, which isn't part of the record
    DeviceImage wanted{};
    encodeImage(record, wanted);
    decodeImage(wanted, record);
    decodeImage(mouse, previous);
    require(bytesOf(record) == bytesOf(previous), "the mouse holds the record");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    FirmwareFlash flash = FirmwareFlash::factory(*findMouseModel(input.byte() % 2 == 0 ? "q1" : "q2"));
    input.patch(flash.bytes);
    readImage(flash);
    RecordBytes bytes{};
    input.patch(bytes);
    writeRecord(bytes);
    queueRecord(input, flash.bytes);
    return 0;
}
