#pragma once

#include <QString>

#include <array>
#include <cstdint>

/** One USB interface that a scan found. Copied by value. */
struct DeviceAllInfo
{
    QString Path;                   ///< from a finder, the handle for all library calls; empty means no device
    QString Vid;                    ///< the vendor id text it was searched with
    QString Pid;                    ///< the entry of the product id lists that found it
    std::uint8_t Cid = 0;           ///< company id
    std::uint8_t DeviceKind = 0;    ///< model id, compared with `MID` of the `Drive<n>` sections
    std::uint8_t ReceiverClass = 0; ///< 0 = 1K, 4 = 2K, 1 = 4K receiver; any other value: the mouse on its cable
    int ModelIndex = 0;             ///< n for the section `Drive<n+1>`; `DeviceTotal` for an unknown model
    bool Online = false;            ///< the mouse behind this path answers
    bool IsCorded = false;          ///< `ReceiverClass` isn't that of a receiver
    QString UsbVersion;             ///< "v", major in decimal, ".", minor in hexadecimal
    QString MouseVersion;           ///< as `UsbVersion`; empty until the mouse has told it
    /** Identifies the mouse; on its cable it shows the same bytes as its receiver. All zero when not known. */
    std::array<std::uint8_t, 3> UsbAddress{};
    bool HasUsbAddress = false; ///< `UsbAddress` was read
};
