#pragma once

#include "devicelink/FlashDataMap.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstring>

/** The virtual bus as tests use it: the hand that plugs the cable, and the judge who asks the mouse what it holds. */
namespace VirtualMice {

/** Runs a command of portwirectl, such as {"sleep", "q1"}; a failure ends the test program. \return what it prints. */
QByteArray tell(const QStringList &words);
/** What `portwirectl stats` counts under this name. */
int count(const char *what);
/** All devices on the bus. */
QList<QJsonObject> devices();
/** One device; empty if there is none of this id. */
QJsonObject device(const QString &id);
/** Id of the plugged receiver that carries the mouse at this address, or empty. */
QString receiverOf(const QString &mouse);
/** What the mouse holds in its flash. */
FlashDataMap record(const QString &id);
/** Another program puts this into the mouse's flash, whatever it says. */
void flash(const QString &id, const FlashDataMap &record);
/** What the mouse sends when a button is held for 50 ms of its own time; objects as `portwirectl press` prints. */
QList<QJsonObject> press(const QString &id, int slot);
/** Adds a device and gives its id. */
QString add(const QString &model, const QString &link);
/** The default scene, both mice awake with factory settings, each device as slow as a real one; whatever came before.
 */
void restoreScene();

} // namespace VirtualMice

/** A record or a part of it. */
template<typename Part>
QByteArray bytesOf(const Part &part)
{
    return QByteArray(reinterpret_cast<const char *>(&part), sizeof part);
}

inline bool operator==(const FlashDataMap &one, const FlashDataMap &other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
}
inline bool operator!=(const FlashDataMap &one, const FlashDataMap &other) { return !(one == other); }
