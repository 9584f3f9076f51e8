#pragma once

#include "portwire/bus.h"
#include "portwire/virtual/ButtonPlayer.h"
#include "portwire/virtual/Fault.h"
#include "portwire/virtual/Scene.h"
#include "portwire/virtual/VirtualEndpoint.h"

namespace portwire {

/** What a device on the virtual bus is and does now. */
struct DeviceDescription
{
    std::string id;
    std::string model;
    bool isReceiver;
    std::string product; ///< product id; of a mouse that of its cable; in boot mode of its node there
    std::string path;    ///< of the receiver, or of the mouse's cable; there whether plugged or not
    bool isInBoot;
    std::uint16_t firmware; ///< version, major high; in boot mode that of the last one that ran
    bool isPlugged;         ///< the receiver, or the mouse's cable
    bool isAwake;           ///< the mouse; for a receiver the mouse that is paired with it
    bool isCorded;
    bool isProgramShown;                 ///< the mouse was told that the program is in front
    int curveValues;                     ///< of the battery curve that the mouse was given
    std::string partner;                 ///< the paired mouse of a receiver, the receiver of a mouse; empty for none
    std::array<std::uint8_t, 3> address; ///< of the mouse
    int batteryPercent;                  ///< of the mouse, -1 for a receiver without one
    bool isCharging;
    int dpi, rateHz, level, profile;
    LightState light;
    int receiverLightMode;
    bool isLongRange;                  ///< of the receiver
    bool isPairing;                    ///< it looks for its partner
    std::chrono::microseconds latency; ///< of what it sends itself
};

/**
 * Mice and receivers as firmware models. All functions may be called from any thread. Those that act on a device give
 * an empty text, or say why they did nothing.
 */
class VirtualBus : public Bus, public std::enable_shared_from_this<VirtualBus>
{
public:
    /** An empty bus. \param time for the mice, to fall asleep by */
    static std::shared_ptr<VirtualBus> create(VirtualMouse::Clock time = &std::chrono::steady_clock::now);

    std::vector<DeviceNode> enumerate() override;
    std::unique_ptr<Endpoint> open(const std::string &path) override;
    void setChangeNotice(std::function<void()> notice) override;

    /** Takes a report for a device and puts what it answers into the inbox. For endpoints. */
    void receive(const std::string &path, const Report &report, Inbox &inbox);
    /** The longest that an answer from there is on its way, cut to what a program may wait for. For endpoints. */
    std::chrono::milliseconds latency(const std::string &path);

    /** A mouse on `cable`, or one with a receiver on `1k`, `2k` or `4k`. \param id the new mouse's */
    std::string add(std::string_view modelName, std::string_view linkName, std::string &id);
    /** A receiver, sold with that model, without a mouse. \param id the receiver's */
    std::string addReceiver(std::string_view linkName, std::string_view modelName, std::string &id);
    /** The mouse looks for a receiver, as after its three buttons were held. */
    std::string startPairing(const std::string &id, std::chrono::seconds patience);
    std::string changeReceiverLight(const std::string &id, int mode);
    std::string changeLongRange(const std::string &id, bool isOn);
    std::string resetByHand(const std::string &id);
    /** A mouse goes with its receiver, a receiver alone. */
    std::string remove(const std::string &id);
    std::string setPlugged(const std::string &id, bool isNowPlugged);
    std::string setAwake(const std::string &id, bool isNowAwake);
    std::string changeLevel(const std::string &id, int level);
    std::string changeRate(const std::string &id, int code);
    std::string changeProfile(const std::string &id, int index);
    std::string setBattery(const std::string &id, int percent, bool isCharging);
    std::string setFault(const std::string &id, FaultKind kind, int count, int after = 0,
                         ReportClass reports = ReportClass::Answers);
    /** The next upgrade of the device ends with a loss of its power, when that much of the file has arrived: 0 to 100
     */
    std::string setPowerLoss(const std::string &id, int percent);
    /** Restarts the device in boot mode. */
    std::string enterBoot(const std::string &id);
    /** \param version major high; -1 leaves it as it is */
    std::string setFirmware(const std::string &id, int version);
    /** How long what the device sends is on its way, up to a second. */
    std::string setLatency(const std::string &id, std::chrono::microseconds latency);
    /** Presses buttons on the mouse's own clock; nothing waits for it. \param events what comes of it */
    std::string play(const std::string &id, const std::vector<ButtonPress> &presses, std::vector<HidEvent> &events);
    /** Another program writes the mouse's active profile. \param bytes 10,428 of them */
    std::string setRecord(const std::string &id, const std::vector<std::uint8_t> &bytes);
    /** The 10,428 bytes that the mouse's active profile means. */
    std::string record(const std::string &id, std::vector<std::uint8_t> &bytes);
    std::vector<DeviceDescription> describe();

    /** Everything at once. */
    Scene scene();
    void setScene(const Scene &scene);
    /** \param notice called after each change of what scene() gives, with the bus locked: it must not wait or call back
     */
    void setSceneNotice(std::function<void()> notice);

private:
    struct Mouse
    {
        std::string id;
        const MouseModel *model;
        VirtualMouse device;
        Wire wire{};

        std::string path() const; ///< of its cable, in the mode in which it is
        std::string_view product() const;
        std::array<std::uint8_t, 3> address() const;
    };
    struct Receiver
    {
        std::string id;
        const MouseModel *mouseModel; ///< of the mouse that it had last; at first the one that it was sold with
        const ReceiverModel *model;
        VirtualReceiver device;
        std::string pairedMouse{};
        bool isPlugged = true;
        Wire wire{};

        std::string path() const; ///< in the mode in which it is
        std::string_view product() const;
    };
    struct Opened
    {
        std::string path;
        std::weak_ptr<Inbox> inbox;
    };

    explicit VirtualBus(VirtualMouse::Clock time) : clock(std::move(time)) {}

    std::vector<DeviceNode> nodes() const;
    Mouse *findMouse(const std::string &id);
    Receiver *findReceiver(const std::string &id);
    Receiver *receiverOf(const Mouse &mouse);
    Mouse *reachedBy(const Receiver &receiver);
    Wire *findWire(const std::string &id);
    bool isIdFree(const std::string &id);

    Mouse &addMouse(const std::string &id, const MouseModel &model);
    Receiver &addReceiver(const std::string &id, const MouseModel &mouseModel, const ReceiverModel &model);
    void settlePairings();
    void pair(Receiver &receiver, Mouse &mouse);
    void plugReceiver(Receiver &receiver, bool isNowPlugged);
    void plugMouse(Mouse &mouse, bool isNowPlugged);

    /** A mouse at its cable, or a receiver, with its mouse when that is to answer. */
    struct Addressee
    {
        Mouse *mouse = nullptr;
        Receiver *receiver = nullptr;
    };
    Addressee addressee(const std::string &path, std::uint8_t code);
    static Wire &wireOf(const Addressee &to);
    Addressee findDevice(const std::string &id);
    static BootLoader &loaderOf(const Addressee &device);
    static BootLoader::Identity identityOf(const Addressee &of);
    std::optional<FirmwarePacket> answerOf(const Addressee &to, const FirmwarePacket &request);
    bool followLoader(const Addressee &of);
    void restart(const Addressee &device, bool isIntoBoot);
    FirmwarePacket answerAtCable(Mouse &mouse, const FirmwarePacket &request);
    FirmwarePacket answerAtReceiver(Receiver &receiver, const FirmwarePacket &request);
    void announce(const std::string &path, const FirmwarePacket &packet, Wire &wire);
    void shut(const std::string &path);
    void noteChange();
    void notify();

    template<typename Action>
    std::string onRunningMouse(const std::string &id, Action action);
    template<typename Action>
    std::string onMouse(const std::string &id, Action action);

    DeviceDescription describe(Mouse &mouse);
    DeviceDescription describe(Receiver &receiver);

    std::mutex mutex;
    const VirtualMouse::Clock clock;
    std::vector<std::unique_ptr<Mouse>> mice;
    std::vector<std::unique_ptr<Receiver>> receivers;
    std::vector<Opened> opened;
    std::function<void()> sceneNotice;
    std::mutex noticeMutex; ///< apart from the other: the notice is called with the bus free
    std::function<void()> changeNotice;
};

} // namespace portwire
