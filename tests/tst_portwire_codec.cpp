#include "portwire/link/Frame.h"
#include "portwire/link/ImageCodec.h"
#include "portwire/link/WriteQueue.h"
#include "portwire/virtual/FirmwareFlash.h"

#include <QtTest>

#include <cstring>
#include <random>
#include <rapidcheck.h>

using namespace portwire;

namespace {

using Random = std::mt19937;

Random anyRandom() { return Random(*rc::gen::arbitrary<std::uint32_t>()); }

std::uint32_t below(Random &random, std::uint32_t limit) { return static_cast<std::uint32_t>(random()) % limit; }

std::uint8_t byteOf(Random &random) { return static_cast<std::uint8_t>(random()); }

void fill(Random &random, void *bytes, std::size_t count)
{
    auto *to = static_cast<std::uint8_t *>(bytes);
    for (std::size_t i = 0; i < count; ++i)
        to[i] = byteOf(random);
}

DeviceImage randomImage(Random &random)
{
    DeviceImage image;
    fill(random, image.data(), image.size());
    return image;
}

std::uint32_t delayOf(Random &random)
{
    constexpr std::uint32_t limits[] = {1, 11, 65536, 100000, maxEventDelayMs + 1};
    return below(random, limits[below(random, 5)]);
}

/** A record with everything in it that pages can put there: full macros, long names, long delays. */
FlashDataMap recordOfPages(Random &random)
{
    FlashDataMap record{};
    fill(random, &record, offsetof(FlashDataMap, KeySequences));
    for (KeySequence &sequence : record.KeySequences) {
        sequence.EventCount = static_cast<std::uint8_t>(below(random, 7));
        for (KeyEvent &event : sequence.Events) {
            event.Action = below(random, 2);
            event.Kind = static_cast<std::uint8_t>(below(random, 3));
            event.Code = static_cast<std::uint16_t>(below(random, 0x400));
            event.DelayMs = delayOf(random);
        }
    }
    for (MacroSlot &macro : record.MacroSlots) {
        macro.NameLength = static_cast<std::uint8_t>(below(random, 31));
        fill(random, macro.Name, macro.NameLength);
        macro.EventCount = static_cast<std::uint8_t>(below(random, 71));
        for (std::uint8_t i = 0; i < macro.EventCount; ++i) {
            constexpr std::uint8_t kinds[] = {0, 1, 4};
            macro.Events[i].Action = below(random, 2);
            macro.Events[i].Kind = kinds[below(random, 3)];
            macro.Events[i].Code = byteOf(random);
            macro.Events[i].DelayMs = delayOf(random);
        }
    }
    return record;
}

bool isSame(const FlashDataMap &a, const FlashDataMap &b) { return std::memcmp(&a, &b, sizeof a) == 0; }

/** What a mouse with this flash says that its record is. */
FlashDataMap accordingToMouse(const DeviceImage &image)
{
    FirmwareFlash flash;
    flash.bytes = image;
    const std::vector<std::uint8_t> bytes = flash.record();
    FlashDataMap record{};
    RC_ASSERT(bytes.size() == sizeof record);
    std::memcpy(&record, bytes.data(), sizeof record);
    return record;
}

WriteQueue::Batch takeNow(WriteQueue &queue)
{
    std::optional<WriteQueue::Clock::time_point> due;
    const auto batch = queue.take(true, {}, due);
    return batch ? *batch : WriteQueue::Batch{};
}

/** Makes the whole image known to a queue. */
FlashDataMap readInto(WriteQueue &queue, const DeviceImage &image)
{
    std::vector<std::uint8_t> bytes(image.begin(), image.end());
    queue.merge(0, bytes.data(), bytes.size(), queue.serial());
    queue.setGiven(true);
    FlashDataMap record{};
    decodeImage(image, record);
    return record;
}

/** Writes what is queued into the image of a mouse. */
void send(WriteQueue &queue, DeviceImage &image)
{
    const auto batch = takeNow(queue);
    for (const WriteQueue::Write &write : batch.writes) {
        RC_ASSERT(!write.bytes.empty() && write.bytes.size() <= maxPayload);
        std::copy(write.bytes.begin(), write.bytes.end(), image.begin() + write.address);
    }
    queue.confirm(batch, {});
}

} // namespace

class tst_portwire_codec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordSurvivesTheImage();
    void damagedFramesAreRefused();
    void queueBringsTheMouseToTheRecord();
    void partsOfTheUnknownAreWrittenWhole();
    void queueKeepsTheNewestValue();
    void levelsTravelTogether();
    void readingDoesNotUndoAChange();
    void changingAddressIsHeldBack();
};

/** The mouse judges: it has a reading of its own, and so it knows which bytes belong to no field. */
void tst_portwire_codec::recordSurvivesTheImage()
{
    QVERIFY(rc::check("a record that pages make comes back from the image as it was, and the mouse agrees", [] {
        Random random = anyRandom();
        FlashDataMap record = recordOfPages(random);
        DeviceImage image = randomImage(random);
        const auto agree = [&] {
            FirmwareFlash mouse;
            mouse.bytes = image;
            std::array<std::uint8_t, FirmwareFlash::recordSize> given{};
            std::memcpy(given.data(), &record, given.size());
            mouse.setRecord(given);
            encodeImage(record, image);
            RC_ASSERT(mouse.bytes == image);
        };
        agree();
        FlashDataMap back{};
        std::memset(&back, 0xEE, sizeof back);
        decodeImage(image, back);
        RC_ASSERT(isSame(back, record));
        RC_ASSERT(isSame(accordingToMouse(image), record));
        // Kinds that there aren't, and delays that the image has no room for.
        fill(random, record.MacroSlots[3].Events, sizeof record.MacroSlots[3].Events);
        agree();
        record.MacroSlots[3].NameLength = 255;
        encodeImage(record, image);
        RC_ASSERT(image[768 + 3 * 384] == 30);
    }));
}

void tst_portwire_codec::damagedFramesAreRefused()
{
    Report report = encodeFrame({ReportCode::ReadFlash, 1, 0, 0, std::vector<std::uint8_t>(54)});
    for (std::size_t at = 0; at < report.size(); ++at) {
        Report cut(report.begin(), report.begin() + static_cast<std::ptrdiff_t>(at));
        Report damaged = report;
        damaged[at] ^= 0x10;
        QVERIFY(!decodeFrame(cut) && !decodeFrame(damaged));
    }
    // A length beyond the payload is refused whatever the checksum, so also with the right one.
    for (const std::uint8_t length : {55, 56, 255}) {
        report[6] = length;
        for (unsigned sum = 0; sum < 0x10000; ++sum) {
            report[62] = static_cast<std::uint8_t>(sum >> 8);
            report[63] = static_cast<std::uint8_t>(sum);
            QVERIFY(!decodeFrame(report));
        }
    }
}

void tst_portwire_codec::queueBringsTheMouseToTheRecord()
{
    QVERIFY(rc::check("after any changes the mouse holds the record, and only what changed was sent", [] {
        Random random = anyRandom();
        DeviceImage mouse{};
        encodeImage(recordOfPages(random), mouse);
        WriteQueue queue;
        FlashDataMap record = readInto(queue, mouse);
        for (std::uint32_t round = below(random, 4) + 1; round > 0; --round) {
            const FlashDataMap previous = record;
            if (below(random, 2))
                record = recordOfPages(random);
            else
                record.LightRed = byteOf(random);
            queue.update(record, previous);
            if (below(random, 2)) // else the next change comes before this one was sent
                send(queue, mouse);
        }
        send(queue, mouse);
        RC_ASSERT(queue.size() == 0);
        RC_ASSERT(isSame(accordingToMouse(mouse), record));
        queue.update(record, record);
        RC_ASSERT(queue.size() == 0);
    }));
}

void tst_portwire_codec::partsOfTheUnknownAreWrittenWhole()
{
    QVERIFY(rc::check("what replaces something that nobody has read doesn't mix with it", [] {
        Random random = anyRandom();
        FlashDataMap held = recordOfPages(random);
        DeviceImage mouse{};
        encodeImage(held, mouse);
        const FlashDataMap before = recordOfPages(random); // of another mouse
        FlashDataMap record = before;
        for (std::uint8_t *byte : {&(record.KeyFunctions[4] = held.KeyFunctions[5]).KeyParam2, &record.DpiLevels[6].Red,
                                   &record.KeySequences[7].Events[0].Action, &record.MacroSlots[8].Events[0].Action})
            *byte ^= 1;
        WriteQueue queue;
        queue.update(record, before);
        send(queue, mouse);
        held.KeyFunctions[4] = record.KeyFunctions[4];
        held.DpiLevels[6].Red = record.DpiLevels[6].Red;
        held.DpiLevels[6].Green = record.DpiLevels[6].Green;
        held.DpiLevels[6].Blue = record.DpiLevels[6].Blue;
        held.KeySequences[7] = record.KeySequences[7];
        held.MacroSlots[8] = record.MacroSlots[8];
        RC_ASSERT(isSame(accordingToMouse(mouse), held));
    }));
}

void tst_portwire_codec::queueKeepsTheNewestValue()
{
    WriteQueue queue;
    FlashDataMap record = readInto(queue, {});
    for (const std::uint8_t value : {1, 200}) {
        record.LightRed = value;
        queue.update(record, record);
    }
    const auto batch = takeNow(queue);
    QCOMPARE(batch.writes.size(), std::size_t{1});
    QCOMPARE(batch.writes[0].bytes, std::vector<std::uint8_t>{200});
    // A change while the batch travels outlives its acknowledgement.
    record.LightRed = 201;
    queue.update(record, record);
    queue.confirm(batch, {});
    QCOMPARE(takeNow(queue).writes.at(0).bytes, std::vector<std::uint8_t>{201});
}

void tst_portwire_codec::levelsTravelTogether()
{
    WriteQueue queue;
    FlashDataMap record = readInto(queue, FirmwareFlash::factory(*findMouseModel("q1")).bytes);
    std::swap(record.DpiLevels[0], record.DpiLevels[7]);
    record.DpiLevelCount = 1;
    record.KeyFunctions[2].KeyType = 6;
    record.MacroSlots[2].EventCount = 1;
    queue.update(record, record);
    const auto writes = takeNow(queue).writes;
    QCOMPARE(writes.size(), std::size_t{3});
    QVERIFY2(writes[0].address >= 768, "the macro goes before the button that plays it");
    QVERIFY(writes[1].address == 1 && writes[1].bytes.size() >= 5 + 8 * 6 - 4);
}

void tst_portwire_codec::readingDoesNotUndoAChange()
{
    WriteQueue queue;
    DeviceImage mouse = FirmwareFlash::factory(*findMouseModel("q1")).bytes;
    FlashDataMap record = readInto(queue, mouse);
    const std::uint64_t readBegan = queue.serial();
    std::vector<std::uint8_t> read(mouse.begin(), mouse.end());
    read[0] = 8; // changed on the mouse
    record.LightRed = 77;
    queue.update(record, record);
    const auto batch = takeNow(queue);
    queue.confirm(batch, {});
    queue.merge(0, read.data(), read.size(), readBegan);
    QCOMPARE(int{read[161]}, 77);
    QCOMPARE(int{read[0]}, 8);
    // The program, not told of the new rate yet, hands over the old one: that is a change.
    queue.update(record, record);
    QCOMPARE(int{takeNow(queue).writes.at(0).address}, 0);
    // What was read after the change counts as it was read.
    std::vector<std::uint8_t> later{33};
    queue.merge(161, later.data(), later.size(), queue.serial());
    QCOMPARE(int{later[0]}, 33);
}

void tst_portwire_codec::changingAddressIsHeldBack()
{
    using std::chrono::milliseconds;
    WriteQueue queue;
    FlashDataMap record = readInto(queue, FirmwareFlash::factory(*findMouseModel("q1")).bytes);
    WriteQueue::Clock::time_point now{};
    int batches = 0;
    // A slider that is dragged for four seconds, a change a millisecond.
    for (int i = 0; i < 4000; ++i, now += milliseconds(1)) {
        record.LightBlue = static_cast<std::uint8_t>(i);
        queue.update(record, record);
        std::optional<WriteQueue::Clock::time_point> due;
        if (const auto batch = queue.take(false, now, due)) {
            queue.confirm(*batch, now);
            ++batches;
        } else {
            QVERIFY(due && *due > now && *due <= now + milliseconds(64));
        }
    }
    QVERIFY2(batches > 10 && batches < 80, qPrintable(QString::number(batches)));
    std::optional<WriteQueue::Clock::time_point> due;
    QVERIFY(queue.take(true, now, due));
    record.Lod = 2; // another address isn't held back, and takes the rest along
    const auto last = queue.take(true, now, due);
    queue.confirm(*last, now);
    queue.update(record, record);
    QVERIFY(queue.take(false, now, due));
}

QTEST_GUILESS_MAIN(tst_portwire_codec)
#include "tst_portwire_codec.moc"
