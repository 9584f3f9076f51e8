#pragma once

#include "portwire/control/ControlCommands.h"

#include <QThread>

class QLocalServer;
class QLocalSocket;

namespace portwire {

/**
 * Serves the commands over a local socket that only the same user can open, on a thread of its own: it answers while
 * the GUI thread waits.
 *
 * One command a connection. The client sends its words as a JSON array on one line. The answer is a JSON object on one
 * line, with either `error`, or `size` and that many bytes of output behind the line.
 */
class ControlServer
{
public:
    /** Listens when it returns; if it can't, the reason is in the log and nothing else happens. */
    ControlServer(std::shared_ptr<VirtualBus> onBus, std::shared_ptr<Channels> itsChannels, const QString &socketPath);
    /** Ends the thread and takes the socket away. */
    ~ControlServer();

private:
    void listen(const QString &socketPath);
    void accept();
    void answer(QLocalSocket *client);

    ControlCommands commands;
    QThread thread;
    QObject *const context;         ///< lives on the thread and is deleted with it
    QLocalServer *server = nullptr; ///< child of context
};

} // namespace portwire
