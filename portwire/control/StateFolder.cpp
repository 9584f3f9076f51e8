#include "portwire/control/StateFolder.h"

#include <QStandardPaths>

namespace portwire {

QString stateFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/portwire");
}

QString controlSocket() { return stateFolder() + QStringLiteral("/control.sock"); }

} // namespace portwire
