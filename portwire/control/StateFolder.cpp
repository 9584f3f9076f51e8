#include "portwire/control/StateFolder.h"

#include <QCryptographicHash>
#include <QStandardPaths>

namespace portwire {

QString stateFolder()
{
    const QString chosen = qEnvironmentVariable("PORTWIRE_FOLDER");
    return !chosen.isEmpty()
               ? chosen
               : QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/portwire");
}

QString controlSocket()
{
#ifdef Q_OS_WIN
    // The name of a pipe is no path, and pipes of all users lie in one folder: told apart by the user's folder. Only
    // this user may open it, as on the other systems.
    const QByteArray folder = stateFolder().toCaseFolded().toUtf8();
    const QByteArray mark = QCryptographicHash::hash(folder, QCryptographicHash::Sha256).left(8).toHex();
    return QStringLiteral("portwire-") + QString::fromLatin1(mark);
#else
    return stateFolder() + QStringLiteral("/control.sock");
#endif
}

} // namespace portwire
