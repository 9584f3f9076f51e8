/**
 * bus.h - what the link needs of a bus.
 *
 * A bus lists devices and opens endpoints; an endpoint moves reports, which are bytes of the wire protocol
 * (docs/portwire-protocol.md) and nothing else. Whatever stands behind it, real USB devices or firmware models, the
 * link above can't tell.
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace portwire {

/** The bytes of one report as they cross the wire. */
using Report = std::vector<std::uint8_t>;

/** One interface of a device on the bus. */
struct DeviceNode
{
    std::string path;             ///< unique on the bus; the same device at the same place has the same path again
    std::string vendorId;         ///< 4 hexadecimal digits
    std::string productId;        ///< 4 hexadecimal digits
    int interfaceId = 0;          ///< number of the USB interface
    int deviceId = 0;             ///< number of the collection within the interface
    std::uint16_t usbVersion = 0; ///< version of the USB device, major high
};

/** An open device. All functions may be called from any thread. */
class Endpoint
{
public:
    static constexpr std::chrono::milliseconds usualAnswerTime{10};

    virtual ~Endpoint() = default;

    /** Sends one report to the device. \return false if the device has gone or the endpoint is closed. */
    virtual bool send(const Report &report) = 0;

    /** Waits until there is a report to take. \return false once the device has gone or the endpoint is closed. */
    virtual bool waitForReport() = 0;

    /** Takes the oldest report that has arrived, without waiting. \return false if there is none. */
    virtual bool takeReport(Report &report) = 0;

    /**
     * How long the answer to a request may take before it counts as lost. The default is that of a device which answers
     * within two frames of the bus, with room for a computer that has other things to do.
     */
    virtual std::chrono::milliseconds answerTime() const { return usualAnswerTime; }

    /** Lets go whoever stands in waitForReport(), now and later. */
    virtual void close() = 0;
};

/** A bus with devices. All functions may be called from any thread. */
class Bus
{
public:
    virtual ~Bus() = default;

    /** The devices that are on the bus now, in an order that stays as long as they do. */
    virtual std::vector<DeviceNode> enumerate() = 0;

    /** Opens a device. \return nothing if there is no such device now. */
    virtual std::unique_ptr<Endpoint> open(const std::string &path) = 0;

    /** \param notice called after each device more or less, on any thread. It must not wait. */
    virtual void setChangeNotice(std::function<void()> notice) = 0;
};

} // namespace portwire
