#pragma once

#include "portwire/link/Link.h"
#include "portwire/virtual/VirtualBus.h"
#include "support/ReportCollector.h"
#include "support/TappedBus.h"

#include <QSemaphore>
#include <QTest>

#include <cstring>

/** The parts of the library by themselves: a virtual bus with a tap, and what a link on it does. */
namespace LinkTest {

using namespace portwire;
using First = ReportCollector<1>; ///< of the first link
using Second = ReportCollector<2>;
using Packet = TappedBus::Packet;
using Replacement = TappedBus::Replacement;

inline bool isSame(const FlashDataMap &a, const FlashDataMap &b) { return std::memcmp(&a, &b, sizeof a) == 0; }

/** A Q1 on a 4K receiver, and a link to it. */
struct LinkBench
{
    /** \param answerTime another one than the device's */
    explicit LinkBench(std::optional<std::chrono::milliseconds> answerTime = {})
    {
        tapped->answerTime = answerTime;
        bus->add("q1", "4k", mouse);
        startLink(First::callback);
    }
    ~LinkBench()
    {
        link->end();
        tapped->letGo();
    }

    void startLink(PortwireReportCallback callback)
    {
        link = Link::start(channels, path, callback, std::make_shared<Work>(path));
    }

    void readAll() { link->add({Job::Kind::WholeRecord, {ReportCode::ReadFlash}}); }

    /** The record as the callback got it; the link knows the mouse afterwards. */
    std::optional<FlashDataMap> awaitRecord()
    {
        const auto report = First::await(8, 0, imageSize);
        if (!report)
            return std::nullopt;
        DeviceImage image;
        std::copy(report->payload.begin(), report->payload.end(), image.begin());
        FlashDataMap read{};
        decodeImage(image, read);
        link->work()->recordTaken();
        return read;
    }

    /** Reads the mouse as the program does. */
    const FlashDataMap &read()
    {
        readAll();
        return record = awaitRecord().value();
    }

    /** Turns the mouse to a profile by hand and reads it. */
    void enter(int profile)
    {
        bus->changeProfile(mouse, profile);
        awaitDelivered(); // what comes late of the profile before, or of the bench before
        First::reset();
        read();
        awaitDelivered();
        link->work()->recordTaken(); // the link reads another profile of its own accord as well
    }

    /** Waits until the first callback has had all that was read until now. */
    void awaitDelivered()
    {
        First::reset();
        link->add({Job::Kind::Read, {ReportCode::Battery}});
        First::await(4);
    }

    /** From now on the mouse answers nothing but its profile, as if it slept; what it does by itself is told. */
    void holdUp()
    {
        tapped->replaceAnswers([](const Packet &request) -> Replacement {
            const bool isAnswered = request.code == 1 || request.code == 3 || request.code == 14;
            return isAnswered ? std::nullopt : Replacement{{request.offline()}};
        });
    }

    /** Does something and waits until the device is asked for this. */
    bool awaitRequest(int code, const std::function<void()> &act)
    {
        QSemaphore asked;
        tapped->before(code, 1, [&] { asked.release(); });
        act();
        return asked.tryAcquire(1, 10000);
    }

    /** Waits until all is done that was asked for until now. */
    bool awaitDone()
    {
        return awaitRequest(23, [this] { link->add({Job::Kind::Tell, {ReportCode::LongRange}}); });
    }

    void change(const FlashDataMap &to)
    {
        link->update(to, record);
        record = to;
    }

    FlashDataMap flash()
    {
        std::vector<std::uint8_t> bytes;
        bus->record(mouse, bytes);
        FlashDataMap held{};
        std::memcpy(&held, bytes.data(), sizeof held);
        return held;
    }

    bool awaitInFlash(const FlashDataMap &wanted)
    {
        // Long enough for a machine that is busy with something else; nothing here takes a tenth of it.
        return QTest::qWaitFor([&] { return isSame(flash(), wanted); }, 10000);
    }

    std::string mouse;
    const std::string path = "virtual/receiver/q1-4k";
    const std::shared_ptr<VirtualBus> bus = VirtualBus::create();
    const std::shared_ptr<TappedBus> tapped = std::make_shared<TappedBus>(bus);
    const std::shared_ptr<Channels> channels = std::make_shared<Channels>(tapped);
    std::shared_ptr<Link> link;
    FlashDataMap record{};
};

/** A record of which every write report that there is must carry something. */
inline FlashDataMap changedEverywhere(FlashDataMap record)
{
    record.LightRed = 99;
    for (std::size_t slot = 0; slot < 16; ++slot) {
        record.MacroSlots[slot].NameLength = 30;
        std::memset(record.MacroSlots[slot].Name, 'a' + static_cast<int>(slot), 30);
        record.MacroSlots[slot].EventCount = 70;
        for (int i = 0; i < 70; ++i)
            record.MacroSlots[slot].Events[i] = {0, 1, static_cast<std::uint16_t>(4 + i),
                                                 70000u + static_cast<std::uint32_t>(slot)};
    }
    return record;
}

} // namespace LinkTest
