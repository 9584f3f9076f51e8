#include "portwire/control/ControlCommands.h"

#include "portwire/control/ControlJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace portwire {

namespace {

struct Context
{
    VirtualBus &bus;
    Statistics &statistics;
    const QStringList &arguments; ///< without the command itself
};

QByteArray line(const QJsonObject &object) { return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n'; }

ControlResult failure(const QString &error) { return {{}, error}; }

QString text(const std::string &value) { return QString::fromStdString(value); }

/** The device as it is now, as the answer to a command that changed it. */
ControlResult deviceOrFailure(const Context &context, const std::string &error)
{
    if (!error.empty())
        return failure(text(error));
    for (const DeviceDescription &device : context.bus.describe()) {
        if (text(device.id) == context.arguments[0])
            return {line(toJson(device)), {}};
    }
    return {line({}), {}};
}

std::string idOf(const Context &context) { return context.arguments[0].toStdString(); }

/** A whole number, or -1, which no command takes. */
int numberAt(const Context &context, int index, int otherwise = -1)
{
    if (index >= context.arguments.size())
        return otherwise;
    bool isNumber = false;
    const int number = context.arguments[index].toInt(&isNumber);
    return isNumber ? number : -1;
}

ControlResult devices(const Context &context)
{
    QJsonArray all;
    for (const DeviceDescription &device : context.bus.describe())
        all.append(toJson(device));
    return {QJsonDocument(all).toJson(), {}};
}

ControlResult record(const Context &context)
{
    std::vector<std::uint8_t> bytes;
    const std::string error = context.bus.record(idOf(context), bytes);
    if (!error.empty())
        return failure(text(error));
    return {QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size())), {}};
}

ControlResult add(const Context &context)
{
    std::string id;
    const bool isReceiver = context.arguments[0] == QLatin1String("receiver");
    if (isReceiver != (context.arguments.size() == 3))
        return failure(QStringLiteral("usage: add MODEL LINK, or add receiver CLASS MODEL"));
    const std::string first = context.arguments[isReceiver ? 1 : 0].toStdString();
    const std::string second = context.arguments[isReceiver ? 2 : 1].toStdString();
    const std::string error =
        isReceiver ? context.bus.addReceiver(first, second, id) : context.bus.add(first, second, id);
    return error.empty() ? ControlResult{line({{"id", text(id)}}), {}} : failure(text(error));
}

ControlResult remove(const Context &context)
{
    const std::string error = context.bus.remove(idOf(context));
    return error.empty() ? ControlResult{line({{"id", context.arguments[0]}}), {}} : failure(text(error));
}

ControlResult plug(const Context &context)
{
    return deviceOrFailure(context, context.bus.setPlugged(idOf(context), true));
}

ControlResult unplug(const Context &context)
{
    return deviceOrFailure(context, context.bus.setPlugged(idOf(context), false));
}

ControlResult sleep(const Context &context)
{
    return deviceOrFailure(context, context.bus.setAwake(idOf(context), false));
}

ControlResult wake(const Context &context)
{
    return deviceOrFailure(context, context.bus.setAwake(idOf(context), true));
}

ControlResult dpi(const Context &context)
{
    return deviceOrFailure(context, context.bus.changeLevel(idOf(context), numberAt(context, 1)));
}

ControlResult rate(const Context &context)
{
    return deviceOrFailure(context, context.bus.changeRate(idOf(context), numberAt(context, 1)));
}

ControlResult profile(const Context &context)
{
    return deviceOrFailure(context, context.bus.changeProfile(idOf(context), numberAt(context, 1)));
}

ControlResult battery(const Context &context)
{
    const bool isCharging = context.arguments.size() > 2;
    if (isCharging && context.arguments[2] != QLatin1String("charging"))
        return failure(QStringLiteral("the last word can only be 'charging'"));
    return deviceOrFailure(context, context.bus.setBattery(idOf(context), numberAt(context, 1), isCharging));
}

/** One event a line. */
ControlResult play(const Context &context, const std::vector<ButtonPress> &presses)
{
    std::vector<HidEvent> events;
    const std::string error = context.bus.play(idOf(context), presses, events);
    if (!error.empty())
        return failure(text(error));
    QByteArray lines;
    for (const HidEvent &event : events)
        lines += line(toJson(event));
    return {lines, {}};
}

ControlResult press(const Context &context)
{
    constexpr int usualMs = 50;
    return play(context, {{numberAt(context, 1), 0, numberAt(context, 2, usualMs)}});
}

ControlResult play(const Context &context)
{
    static const QRegularExpression form(QStringLiteral("\\A(\\d{1,9}):(\\d{1,9})-(\\d{1,9})\\z"));
    std::vector<ButtonPress> presses;
    for (const QString &word : context.arguments.mid(1)) {
        const QRegularExpressionMatch match = form.match(word);
        if (!match.hasMatch())
            return failure(QStringLiteral("'%1' isn't of the form SLOT:DOWN-UP").arg(word));
        presses.push_back({match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt()});
    }
    return play(context, presses);
}

/** The record comes in base64: what is read is the client's business. */
ControlResult flash(const Context &context)
{
    const auto decoded =
        QByteArray::fromBase64Encoding(context.arguments[1].toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    const QByteArray &bytes = *decoded;
    return deviceOrFailure(context, context.bus.setRecord(idOf(context), {bytes.begin(), bytes.end()}));
}

ControlResult fault(const Context &context)
{
    if (context.arguments[1] == QLatin1String("powerloss") && context.arguments.size() == 3)
        return deviceOrFailure(context, context.bus.setPowerLoss(idOf(context), numberAt(context, 2)));
    const FaultKind kind = faultByName(context.arguments[1].toStdString());
    const int count = numberAt(context, 2, 1);
    const int after = numberAt(context, 3, 0);
    if (kind == FaultKind::None)
        return failure(QStringLiteral("the kind is none of drop, stall, garbage, short, powerloss PERCENT"));
    if (count < 0 || after < 0)
        return failure(QStringLiteral("the number of reports isn't a number"));
    const auto reports = reportClassByName(context.arguments.value(4, QStringLiteral("answers")).toStdString());
    if (!reports)
        return failure(QStringLiteral("the reports are none of answers, requests, announcements"));
    return deviceOrFailure(context, context.bus.setFault(idOf(context), kind, count, after, *reports));
}

ControlResult pairing(const Context &context)
{
    constexpr int usual = 30;
    constexpr int most = 3600;
    const int seconds = numberAt(context, 1, usual);
    if (seconds < 1 || seconds > most)
        return failure(QStringLiteral("the time is not within 1 to 3600 seconds"));
    return deviceOrFailure(context, context.bus.startPairing(idOf(context), std::chrono::seconds(seconds)));
}

ControlResult receiverLight(const Context &context)
{
    return deviceOrFailure(context, context.bus.changeReceiverLight(idOf(context), numberAt(context, 1)));
}

ControlResult longRange(const Context &context)
{
    const int on = numberAt(context, 1);
    if (on != 0 && on != 1)
        return failure(QStringLiteral("long range is 0 or 1"));
    return deviceOrFailure(context, context.bus.changeLongRange(idOf(context), on == 1));
}

ControlResult resetButton(const Context &context)
{
    return deviceOrFailure(context, context.bus.resetByHand(idOf(context)));
}

ControlResult boot(const Context &context) { return deviceOrFailure(context, context.bus.enterBoot(idOf(context))); }

/** Versions are written as the program shows them: major decimal, minor hexadecimal. */
ControlResult firmware(const Context &context)
{
    static const QRegularExpression form(QStringLiteral("\\Av?(\\d{1,3})\\.([0-9a-fA-F]{1,2})\\z"));
    if (context.arguments.size() < 2)
        return deviceOrFailure(context, context.bus.setFirmware(idOf(context), -1));
    const QRegularExpressionMatch match = form.match(context.arguments[1]);
    if (!match.hasMatch())
        return failure(QStringLiteral("'%1' isn't a version such as 1.c").arg(context.arguments[1]));
    const int version = match.captured(1).toInt() * 256 + match.captured(2).toInt(nullptr, 16);
    return deviceOrFailure(context, context.bus.setFirmware(idOf(context), version));
}

ControlResult latency(const Context &context)
{
    bool isNumber = false;
    const double milliseconds = context.arguments[1].toDouble(&isNumber);
    constexpr double most = 1000;
    if (!isNumber || !(milliseconds >= 0 && milliseconds <= most))
        return failure(QStringLiteral("the latency is not within 0 to 1000 ms"));
    const std::chrono::microseconds wanted(static_cast<int>(milliseconds * 1000));
    return deviceOrFailure(context, context.bus.setLatency(idOf(context), wanted));
}

ControlResult stats(const Context &context)
{
    const Statistics &counts = context.statistics;
    const auto number = [](const std::atomic<std::uint64_t> &value) { return static_cast<double>(value.load()); };
    return {line({{"sent", number(counts.sent)},
                  {"written", number(counts.written)},
                  {"received", number(counts.received)},
                  {"repeated", number(counts.repeated)},
                  {"dropped", number(counts.dropped)}}),
            {}};
}

struct Command
{
    const char *name;
    const char *arguments;
    int least;
    int most;
    ControlResult (*run)(const Context &context);
};

/** Of a command that takes any number; the line that brings them has its bound. */
constexpr int mostArguments = std::numeric_limits<int>::max();

constexpr Command commands[] = {
    {"devices", "", 0, 0, devices},
    {"record", "ID", 1, 1, record},
    {"add", "MODEL LINK, or add receiver CLASS MODEL", 2, 3, add},
    {"remove", "ID", 1, 1, remove},
    {"plug", "ID", 1, 1, plug},
    {"unplug", "ID", 1, 1, unplug},
    {"sleep", "ID", 1, 1, sleep},
    {"wake", "ID", 1, 1, wake},
    {"press", "ID SLOT [MS]", 2, 3, press},
    {"play", "ID SLOT:DOWN-UP...", 2, mostArguments, play},
    {"flash", "ID RECORD", 2, 2, flash},
    {"dpi", "ID LEVEL", 2, 2, dpi},
    {"rate", "ID CODE", 2, 2, rate},
    {"profile", "ID N", 2, 2, profile},
    {"battery", "ID PERCENT [charging]", 2, 3, battery},
    {"fault", "ID KIND [N [AFTER [REPORTS]]]", 2, 5, fault},
    {"pairing", "ID [SECONDS]", 1, 2, pairing},
    {"receiver-light", "ID MODE", 2, 2, receiverLight},
    {"long-range", "ID 0|1", 2, 2, longRange},
    {"reset-button", "ID", 1, 1, resetButton},
    {"boot", "ID", 1, 1, boot},
    {"firmware", "ID [VERSION]", 1, 2, firmware},
    {"latency", "ID MS", 2, 2, latency},
    {"stats", "", 0, 0, stats},
};

} // namespace

ControlCommands::ControlCommands(std::shared_ptr<VirtualBus> onBus, std::shared_ptr<Channels> itsChannels)
    : bus(std::move(onBus)), channels(std::move(itsChannels))
{
}

ControlResult ControlCommands::run(const QStringList &words)
{
    if (words.isEmpty())
        return failure(QStringLiteral("no command"));
    const Command *const command = std::find_if(std::begin(commands), std::end(commands), [&](const Command &known) {
        return words[0] == QLatin1String(known.name);
    });
    if (command == std::end(commands))
        return failure(QStringLiteral("there is no command '%1'").arg(words[0]));
    const QStringList arguments = words.mid(1);
    if (arguments.size() < command->least || arguments.size() > command->most) {
        const QString usual =
            QStringLiteral("%1 %2").arg(QLatin1String(command->name), QLatin1String(command->arguments));
        return failure(QStringLiteral("usage: ") + usual.trimmed());
    }
    return command->run({*bus, channels->statistics(), arguments});
}

} // namespace portwire
