#include "portwire/control/ControlServer.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>

namespace portwire {

namespace {

/** A record in base64 has 14 KB, all else is far shorter; a client that sends more is none of ours. */
constexpr qint64 longestLine = 1 << 15;

/** Whether another process serves this socket, rather than having left it behind. */
bool isServed(const QString &socketPath)
{
    constexpr int connectMs = 100;
    QLocalSocket probe;
    probe.connectToServer(socketPath);
    return probe.waitForConnected(connectMs);
}

QStringList wordsIn(const QByteArray &line)
{
    QStringList words;
    for (const auto &value : QJsonDocument::fromJson(line).array())
        words.append(value.toString());
    return words;
}

QByteArray packed(const ControlResult &result)
{
    QJsonObject head;
    if (result.error.isEmpty())
        head["size"] = result.output.size();
    else
        head["error"] = result.error;
    return QJsonDocument(head).toJson(QJsonDocument::Compact) + '\n' + result.output;
}

} // namespace

ControlServer::ControlServer(std::shared_ptr<VirtualBus> onBus, std::shared_ptr<Channels> itsChannels,
                             const QString &socketPath)
    : commands(std::move(onBus), std::move(itsChannels)), context(new QObject)
{
    thread.setObjectName(QStringLiteral("portwire control"));
    context->moveToThread(&thread);
    thread.start();
    QMetaObject::invokeMethod(
        context, [&] { listen(socketPath); }, Qt::BlockingQueuedConnection);
}

ControlServer::~ControlServer()
{
    // What lives on the thread is deleted there, while it ends.
    context->deleteLater();
    thread.quit();
    thread.wait();
}

void ControlServer::listen(const QString &socketPath)
{
    if (isServed(socketPath)) {
        qWarning("portwire: another process serves %s, this one can't be controlled", qPrintable(socketPath));
        return;
    }
    QLocalServer::removeServer(socketPath);
    server = new QLocalServer(context);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(server, &QLocalServer::newConnection, context, [this] { accept(); });
    if (!server->listen(socketPath))
        qWarning("portwire: can't listen on %s: %s", qPrintable(socketPath), qPrintable(server->errorString()));
}

void ControlServer::accept()
{
    while (QLocalSocket *const client = server->nextPendingConnection()) {
        QObject::connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        QObject::connect(client, &QLocalSocket::readyRead, context, [this, client] { answer(client); });
        if (client->bytesAvailable() > 0)
            answer(client);
    }
}

void ControlServer::answer(QLocalSocket *client)
{
    if (!client->canReadLine()) {
        if (client->bytesAvailable() > longestLine)
            client->abort();
        return;
    }
    client->write(packed(commands.run(wordsIn(client->readLine(longestLine)))));
#ifndef Q_OS_WIN
    client->disconnectFromServer();
#else
    // A pipe that its server lets go of loses what the client hasn't read yet. The client knows from the head how much
    // comes, and lets go of it then.
#endif
}

} // namespace portwire
