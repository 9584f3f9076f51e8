#pragma once

#include "portwire/link/Channels.h"
#include "portwire/virtual/VirtualBus.h"

#include <QByteArray>
#include <QStringList>

namespace portwire {

/** What a command gives. */
struct ControlResult
{
    QByteArray output; ///< JSON, but the bytes of a record
    QString error;     ///< empty if it worked
};

/** The commands that drive a virtual bus. */
class ControlCommands
{
public:
    ControlCommands(std::shared_ptr<VirtualBus> onBus, std::shared_ptr<Channels> itsChannels);

    /** \param words the command and its arguments */
    ControlResult run(const QStringList &words);

private:
    const std::shared_ptr<VirtualBus> bus;
    const std::shared_ptr<Channels> channels;
};

} // namespace portwire
