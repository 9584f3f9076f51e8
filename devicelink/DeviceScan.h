#pragma once

#include "devicelink/DeviceAllInfo.h"

#include <QList>

#include <functional>

/** Quiet time of the bus before a scan, in ms: a receiver shows up as several interfaces, one after the other. */
constexpr int usbQuietTime = 600;

/** Paths of the devices with these ids; at most five a product id, more mice than anyone has on one desk. */
using PathFinder = std::function<QStringList(const QString &vid, const QString &pid)>;

/** Finds by the library's own choice of interface: what the chooser lists. */
QStringList findDefaultPaths(const QString &vid, const QString &pid);
/** Finds the interface that carries the settings of a device in use. */
QStringList findLinkPaths(const QString &vid, const QString &pid);

/** An entry for each path of each product id of the product file, cable first; not yet identified. */
QList<DeviceAllInfo> findEntries(const PathFinder &finder);

/**
 * The scan while a device is selected. Known devices are kept only if they are of the selected model; what can't be
 * told apart stays in the list. `DevicePath` is set to the selected path when it is still there.
 */
QList<DeviceAllInfo> scanDevices();
