#pragma once

#include "portwire/virtual/VirtualBus.h"

#include <QJsonObject>

namespace portwire {

/* What commands print; docs/portwire-protocol.md tells the keys. */
QJsonObject toJson(const DeviceDescription &device);
QJsonObject toJson(const HidEvent &event);

} // namespace portwire
