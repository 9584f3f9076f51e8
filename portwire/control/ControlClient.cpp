#include "portwire/control/ControlClient.h"

#include "portwire/control/StateFolder.h"

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocalSocket>

namespace portwire {

namespace {

/** Reads until there is a whole answer. \return false if it doesn't come in time. */
bool readAnswer(QLocalSocket &socket, const QDeadlineTimer &deadline, QByteArray &answer, QJsonObject &head)
{
    int lineEnd = -1;
    while (true) {
        answer += socket.readAll();
        if (lineEnd < 0) {
            lineEnd = answer.indexOf('\n');
            if (lineEnd >= 0)
                head = QJsonDocument::fromJson(answer.left(lineEnd)).object();
        }
        if (lineEnd >= 0 && answer.size() - lineEnd - 1 >= head.value(QLatin1String("size")).toInt()) {
            answer = answer.mid(lineEnd + 1);
            return true;
        }
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())) && socket.bytesAvailable() == 0)
            return false;
    }
}

} // namespace

ControlClient::ControlClient(int timeoutMs) : socketPath(controlSocket()), timeout(timeoutMs) {}

ControlClient::Reply ControlClient::call(const QStringList &words) const
{
    const QDeadlineTimer deadline(timeout);
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (!socket.waitForConnected(timeout))
        return {{}, QStringLiteral("no program with a virtual bus is running (%1)").arg(socket.errorString())};
    socket.write(QJsonDocument(QJsonArray::fromStringList(words)).toJson(QJsonDocument::Compact) + '\n');
    socket.flush();
    Reply reply;
    QJsonObject head;
    if (!readAnswer(socket, deadline, reply.output, head))
        return {{}, QStringLiteral("the program didn't answer in time")};
    reply.error = head.value(QLatin1String("error")).toString();
    return reply;
}

} // namespace portwire
