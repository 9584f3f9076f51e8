/**
 * A link as a whole, with its threads, between a program that wants all sorts of things and a device that does what the
 * input says: it answers or doesn't, refuses, lies, tells what nobody asked, leaves the bus, turns into another mouse.
 * Whatever that was, a device that is honest from then on gets the record which is handed over last, soon.
 */
#include "FuzzInput.h"
#include "Require.h"
#include "portwire/link/Link.h"
#include "portwire/virtual/DeviceModels.h"
#include "portwire/virtual/VirtualEndpoint.h"
#include "portwire/virtual/VirtualMouse.h"

#include <QtGlobal>

#include <cstring>
#include <thread>

using namespace portwire;

namespace {

constexpr std::chrono::seconds patience{4};

/** The device, its firmware model behind it. Shared by all threads. */
class HostileBus : public Bus
{
public:
    explicit HostileBus(FuzzInput behaviour) : input(behaviour)
    {
        mouse.announce = [this](const FirmwarePacket &packet) { say(packet.build()); };
    }

    std::vector<DeviceNode> enumerate() override { return {}; }
    void setChangeNotice(std::function<void()>) override {}
    std::unique_ptr<Endpoint> open(const std::string &) override
    {
        const std::lock_guard lock(mutex);
        inbox = std::make_shared<Inbox>();
        ++timesOpen;
        return std::make_unique<Opened>(*this, inbox);
    }

    /** From now on it does what a mouse does, and looks for no other one. */
    void behave()
    {
        const std::lock_guard lock(mutex);
        input.rest();
        say(FirmwarePacket{6, 0, 0, 0, {2}}.build());
    }
    bool holds(const FlashDataMap &record)
    {
        const std::lock_guard lock(mutex);
        const auto bytes = mouse.flash().record();
        return std::memcmp(bytes.data(), &record, sizeof record) == 0;
    }
    bool isClosed() const { return timesOpen == 0; }

private:
    struct Opened : Endpoint
    {
        Opened(HostileBus &ofBus, std::shared_ptr<Inbox> itsInbox) : bus(ofBus), inbox(std::move(itsInbox)) {}
        ~Opened() override { --bus.timesOpen; }
        bool send(const Report &report) override { return !inbox->isShut() && bus.receive(report); }
        bool waitForReport() override { return inbox->wait(); }
        bool takeReport(Report &report) override { return inbox->take(report); }
        std::chrono::milliseconds answerTime() const override { return std::chrono::milliseconds(0); }
        void close() override { inbox->shut(); }
        HostileBus &bus;
        const std::shared_ptr<Inbox> inbox;
    };

    void say(Report report)
    {
        if (inbox)
            inbox->push(std::move(report));
    }

    FirmwarePacket honestAnswer(const FirmwarePacket &request)
    {
        if (request.code == 3)
            return request.answer({1, address, 2, 3});
        if (request.code == 5)
            return request.refusal(); // it looks for no other mouse, and so never says that it has stopped
        return mouse.answer(request);
    }

    bool receive(const Report &report)
    {
        const std::lock_guard lock(mutex);
        const auto request = FirmwarePacket::parse(report);
        require(request.has_value(), "a request is a whole report");
        FirmwarePacket answer;
        switch (input.byte() % 24) {
        case 1:
            return true;
        case 2:
            answer = request->refusal();
            break;
        case 3:
            answer = request->offline();
            break;
        case 4:
            answer = request->batchLost();
            break;
        case 5:
            say(input.bytes());
            return true;
        case 6:
            answer = honestAnswer(*request);
            answer.data.resize(input.byte() % 55);
            break;
        case 7:
            say(FirmwarePacket{input.byte(), input.byte(), input.word(), input.byte(), input.bytes()}.build());
            answer = honestAnswer(*request);
            break;
        case 8:
            mouse.changeProfile(input.byte() % 4);
            answer = honestAnswer(*request);
            break;
        case 9:
            mouse.connectionLost();
            inbox->shut();
            return false;
        case 10:
            address = input.byte();
            say(FirmwarePacket{6, 0, 0, 0, {3}}.build());
            answer = honestAnswer(*request);
            break;
        case 11:
            answer = request->answer(input.bytes());
            break;
        default:
            answer = honestAnswer(*request);
        }
        say(answer.build());
        return true;
    }

    std::mutex mutex;
    FuzzInput input;
    VirtualMouse mouse{mouseModels[0], &std::chrono::steady_clock::now};
    std::uint8_t address = 1;
    std::shared_ptr<Inbox> inbox;
    std::atomic<int> timesOpen{0};
};

std::mutex currentMutex;
std::shared_ptr<Work> current; ///< of the link that stands; guarded by currentMutex

/** As the program's callback: what comes is what may come, and a whole record is taken. */
void callback(const std::uint8_t *header, int headerLength, const std::uint8_t *payload, std::uint32_t length)
{
    require(headerLength == 8 && length <= imageSize, "a report has a header and a length");
    constexpr std::array codes = {4, 6, 8, 9, 10, 14, 18, 21, 23};
    require(std::find(codes.begin(), codes.end(), header[1]) != codes.end(), "only what was asked for, or may come");
    std::array<std::uint8_t, 64> readable{};
    std::copy_n(payload, readable.size(), readable.begin());
    if (length != imageSize)
        return;
    const std::lock_guard lock(currentMutex);
    if (current)
        current->recordTaken();
}

class Program
{
public:
    explicit Program(HostileBus &onBus)
        : bus(onBus), channels(std::make_shared<Channels>(std::shared_ptr<Bus>(&onBus, [](Bus *) {})))
    {
        startLink(std::make_shared<Work>("fuzzed"));
    }

    void act(FuzzInput &input)
    {
        switch (input.byte() % 10) {
        case 0:
            link->add({Job::Kind::WholeRecord, {ReportCode::ReadFlash}});
            break;
        case 1:
            link->add({Job::Kind::Read, {ReportCode::ReadFlash, 76, 0, {8}}});
            break;
        case 2:
            link->add({Job::Kind::Read, {ReportCode::CurrentConfig}});
            break;
        case 3:
            link->add({Job::Kind::SelectProfile, {ReportCode::SelectConfig, 0, 0, {input.byte()}}});
            break;
        case 4:
            link->add({Job::Kind::FactoryReset, {ReportCode::FactoryReset}});
            break;
        case 5:
            link->add({Job::Kind::Tell, {ReportCode::BatteryCurve, 0, 0, std::vector<std::uint8_t>(42)}});
            break;
        case 6:
            link->add({Job::Kind::Tell, {ReportCode::EnterPairing, 0, 0, {input.byte()}}, true});
            break;
        case 7:
            link->end();
            link->work()->passOn();
            startLink(link->work());
            break;
        default: {
            const FlashDataMap previous = record;
            reinterpret_cast<std::uint8_t *>(&record)[input.word() % 956] = input.byte();
            link->update(record, previous);
        }
        }
    }

    /** What is meant whole reaches a mouse that behaves, after all that was before it. */
    void finish()
    {
        bus.behave();
        // Whoever paired has left, and another link takes over.
        link->end();
        link->work()->passOn();
        startLink(link->work());
        // Counts that no array has are cut on the way.
        for (KeySequence &sequence : record.KeySequences)
            sequence = {};
        const auto end = std::chrono::steady_clock::now() + patience;
        while (!bus.holds(record)) {
            require(std::chrono::steady_clock::now() < end, "a record reaches the mouse");
            link->replace(record);
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        link->end();
        startLink(nullptr);
        channels.reset();
        while (!bus.isClosed() || !lastLink.expired())
            std::this_thread::yield();
    }

private:
    void startLink(const std::shared_ptr<Work> &work)
    {
        {
            const std::lock_guard lock(currentMutex);
            current = work;
        }
        link = work ? Link::start(channels, "fuzzed", callback, work) : nullptr;
        if (link)
            lastLink = link;
    }

    HostileBus &bus;
    std::shared_ptr<Channels> channels;
    std::shared_ptr<Link> link;
    std::weak_ptr<Link> lastLink;
    FlashDataMap record{};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // What the link gives up and drops goes to the log, and there is much of it.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const std::size_t half = size / 2;
    HostileBus bus(FuzzInput(data, half));
    Program program(bus);
    FuzzInput wishes(data + half, size - half);
    while (!wishes.isEmpty())
        program.act(wishes);
    program.finish();
    return 0;
}
