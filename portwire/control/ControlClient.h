#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QString>
#include <QStringList>

namespace portwire {

/**
 * Sends commands to the virtual bus of a running program, over the local socket in the state folder of the same user.
 * Waits for the answer without an event loop, so that it works on any thread, also in the process of the bus.
 */
class ControlClient
{
public:
    struct Reply
    {
        QByteArray output; ///< JSON, but for `record` the bytes themselves
        QString error;     ///< empty if the command worked

        bool isGood() const { return error.isEmpty(); }
        QJsonDocument json() const { return QJsonDocument::fromJson(output); }
    };

    /** The socket is that of the environment at this moment. \param timeoutMs for a whole call */
    explicit ControlClient(int timeoutMs = 5000);

    /** \param words the command and its arguments, as in `portwirectl` */
    Reply call(const QStringList &words) const;

private:
    const QString socketPath;
    const int timeout;
};

} // namespace portwire
