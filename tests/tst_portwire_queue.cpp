#include "portwire/link/WriteQueue.h"
#include "portwire/virtual/FirmwareFlash.h"

#include <QtTest>

using namespace portwire;

namespace {

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

} // namespace

class tst_portwire_queue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void queueKeepsTheNewestValue();
    void levelsTravelTogether();
    void readingDoesNotUndoAChange();
    void changingAddressIsHeldBack();
};

void tst_portwire_queue::queueKeepsTheNewestValue()
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

void tst_portwire_queue::levelsTravelTogether()
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

void tst_portwire_queue::readingDoesNotUndoAChange()
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

void tst_portwire_queue::changingAddressIsHeldBack()
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

QTEST_GUILESS_MAIN(tst_portwire_queue)
#include "tst_portwire_queue.moc"
