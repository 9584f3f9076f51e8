/**
 * What a device sends: any bytes, or reports with a good checksum and anything inside, before, between and instead of
 * the answers to requests. The firmware models' own reading of a report is the second opinion.
 */
#include "FuzzInput.h"
#include "Require.h"
#include "portwire/link/Reception.h"
#include "portwire/link/StatusPayload.h"
#include "portwire/virtual/FirmwarePacket.h"

#include <deque>

using namespace portwire;

namespace {

enum Control : std::uint8_t {
    withChecksum = 0x01,
    withSequence = 0x02, ///< of the request that is under way
    behindRequest = 0x04,
    ask = 0x08,
};

struct Device
{
    std::deque<Report> arriving;
    std::deque<std::pair<Report, std::uint8_t>> answers; ///< and their Control bits
    std::uint8_t sequence = 0;                           ///< of the last request
};

/** An endpoint whose device has said all that it will ever say. */
class SpentEndpoint : public Endpoint
{
public:
    explicit SpentEndpoint(Device &toSpend) : device(toSpend) {}

    bool send(const Report &request) override
    {
        const auto asked = decodeFrame(request);
        require(asked.has_value(), "a request is a whole report");
        device.sequence = asked->sequence;
        for (; !device.answers.empty(); device.answers.pop_front()) {
            auto &[report, control] = device.answers.front();
            auto answer = FirmwarePacket::parse(report);
            if (answer && (control & withSequence))
                answer->sequence = asked->sequence;
            device.arriving.push_back(answer ? answer->build() : report);
        }
        return true;
    }
    bool waitForReport() override { return !device.arriving.empty(); }
    bool takeReport(Report &report) override
    {
        if (device.arriving.empty())
            return false;
        report = device.arriving.front();
        device.arriving.pop_front();
        return true;
    }
    void close() override {}

private:
    Device &device;
};

/** Both sides read a report alike, and what was read can be sent on. */
void readReport(const Report &report)
{
    const auto frame = decodeFrame(report);
    const auto packet = FirmwarePacket::parse(report);
    require(frame.has_value() == packet.has_value(), "both sides take the same reports");
    if (!frame)
        return;
    require(static_cast<std::uint8_t>(frame->code) == packet->code && frame->sequence == packet->sequence &&
                frame->selector == packet->address && frame->flags == packet->flags && frame->payload == packet->data,
            "both sides read a report alike");
    const auto again = decodeFrame(encodeFrame(*frame));
    require(again && again->header() == frame->header() && again->payload == frame->payload,
            "a frame comes through a report");
}

class Listener : public ReportListener
{
public:
    void arrived(const Frame &frame) override;
    void wentAway() override { ++timesGone; }
    bool hasEnded() const override { return false; }
    int timesGone = 0;
};

void Listener::arrived(const Frame &frame)
{
    require(frame.sequence == 0 && isUnprompted(frame.code), "what comes unprompted may do so");
    // The callback may read 64 bytes of a payload.
    std::array<std::uint8_t, 64> payload{};
    std::copy(frame.payload.begin(), frame.payload.end(), payload.begin());
    std::array<std::uint8_t, 4> battery{};
    std::array<std::uint8_t, 7> flags{};
    decodeBattery(payload.data(), battery.data());
    decodeChangedFlags(payload.data(), flags.data());
    require(battery[0] <= 100 && battery[1] <= 1, "a battery state is one");
    require(std::all_of(flags.begin(), flags.end(), [](std::uint8_t flag) { return flag <= 1; }), "flags are flags");
}

void request(const Device &device, Reception &reception, FuzzInput &input)
{
    const Request question{static_cast<ReportCode>(input.byte()), input.word(), input.byte(), input.bytes()};
    const auto answer = reception.ask(question, std::chrono::milliseconds(0));
    if (!answer)
        return;
    require(answer->code == question.code && answer->selector == question.selector &&
                answer->sequence == device.sequence,
            "an answer is one to its request");
    require(answer->flags != static_cast<std::uint8_t>(AnswerStatus::Done) ||
                answer->payload.size() >= leastAnswer(question),
            "a good answer is long enough");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    Device device;
    Reception reception(std::make_unique<SpentEndpoint>(device), std::make_shared<Statistics>());
    const auto listener = std::make_shared<Listener>();
    reception.setListener(listener);
    while (!input.isEmpty()) {
        const std::uint8_t control = input.byte();
        Report report;
        if (control & withChecksum)
            report = FirmwarePacket{input.byte(), input.byte(), input.word(), input.byte(), input.bytes()}.build();
        else
            report = input.bytes();
        readReport(report);
        if (control & behindRequest)
            device.answers.emplace_back(report, control);
        else
            device.arriving.push_back(report);
        if (control & ask)
            request(device, reception, input);
    }
    reception.run();
    require(reception.isGone() && listener->timesGone == 1, "the device has gone");
    return 0;
}
