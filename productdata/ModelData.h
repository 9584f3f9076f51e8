#pragma once

#include "productdata/ConfigStore.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/** What the product file says of the product as a whole and of each model. Nothing is cached between reads. */
namespace ModelData {

/** Number of models, also the model index of an unknown device; 0 without a product file. Never above 64. */
int deviceTotal(const ConfigStore &store = *ConfigStore::instance());
/** Company id that a device must report; no value when the key is missing or isn't a byte. */
std::optional<int> companyId(const ConfigStore &store = *ConfigStore::instance());
/** Section of a model, "Drive" and the index plus 1. */
QString section(int modelIndex);
/** `MID` of a model; 0 without one. */
int modelId(int modelIndex, const ConfigStore &store = *ConfigStore::instance());
/** Index of the model with this `MID`, or `deviceTotal()`. */
int modelIndexOf(int deviceKind, const ConfigStore &store = *ConfigStore::instance());

/** The ids to search for: one vendor and four lists of products. */
struct UsbIds
{
    QString vid;
    QStringList usbPids;       ///< mice on their cable
    QStringList wirelessPids;  ///< 1K receivers
    QStringList wireless2Pids; ///< 2K receivers
    QStringList wireless4Pids; ///< 4K receivers

    /** All products in the order of a scan: cable, 1K, 2K, 4K. */
    QStringList allPids() const { return usbPids + wirelessPids + wireless2Pids + wireless4Pids; }
};
UsbIds usbIds(const ConfigStore &store = *ConfigStore::instance());

/** Registry key of the values that survive a reinstallation of the program. */
extern const char *const registryKey;
/** Registry key in which an installer leaves the language. */
extern const char *const installerKey;

/** Text of the registry value "UpdateFailInfo": non-empty while a firmware update hasn't finished. */
QString updateFailInfo();
/** Remembers what firmware update hasn't finished; empty for none. May be called from any thread. */
void storeUpdateFailInfo(const QString &info);
/** The last seen firmware version of a model; empty if none was ever seen on this PC. */
QString mouseVersion(int modelIndex);
/** Remembers the last seen firmware version of a model. */
void storeMouseVersion(int modelIndex, const QString &version);

} // namespace ModelData
