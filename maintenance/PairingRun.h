#pragma once

#include "devicelink/DeviceAllInfo.h"

#include <QPoint>

class QWidget;

/**
 * Runs the pairing dialog and puts back what it took: the report link, the watch of the bus, and the connect logic,
 * which stands still while `DeviceWindowOpen` is down. GUI thread only.
 */
namespace PairingRun {

/**
 * For the selected receiver, over the device window. Afterwards the pages show what the mouse behind the receiver
 * holds, which may be another one than before; one of another model leads back to the chooser.
 */
void onDevicePage(const QWidget *caller, QPoint offset = {});

/** For a receiver of the chooser. The caller scans anew afterwards: the receiver may have another mouse. */
void onChooser(const QWidget *caller, const DeviceAllInfo &receiver);

} // namespace PairingRun
