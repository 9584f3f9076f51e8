/**
 * portwire.h - talk to wireless mice and their receivers.
 *
 * Paths are C strings that a finder gave; they are the handle of a device for every other call. An unknown path is
 * answered like a device that doesn't answer. All functions may be called from any thread, from inside a callback too,
 * unless said otherwise; none waits for a device longer than three times its answer time, some 30 ms.
 *
 * Reads of the report link (UsbServer_Read...) return at once; what they ask for arrives as a report at the callback of
 * UsbServerC_Start. That callback runs on a thread of the library, one report at a time, never on the GUI thread.
 */
#pragma once

#include <stdint.h>

#if defined(_WIN32)
#ifdef PORTWIRE_BUILD
#define PORTWIRE_API __declspec(dllexport)
#else
#define PORTWIRE_API __declspec(dllimport)
#endif
#else
#define PORTWIRE_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** The 10,428-byte record of all settings; devicelink/FlashDataMap.h has its fields. */
struct FlashDataMap;

/** State of a receiver's light: byte 0 is the mode (0 none, 1 to 3), the others are passed back as they came. */
struct DongleRGB
{
    uint8_t bytes[10];
};

/**
 * A report. header[1] is the report code, header[3] and header[4] select the group of settings for code 8. The
 * pointers are valid for the length of the call.
 */
typedef void (*PortwireReportCallback)(const uint8_t *header, int headerLength, const uint8_t *payload,
                                       uint32_t payloadLength);

/** The bus changed. Always called on the thread that runs the Qt event loop of the application. */
typedef void (*PortwireChangeCallback)(void);

/** A firmware image file in memory, its header of 728 bytes included. Nothing is read behind length. */
struct FirmwareImage
{
    const uint8_t *data;
    uint32_t length; /**< bytes */
};

/**
 * How an upgrade goes on. message[0] is 7. With 1 in message[1], message[2] is the progress in percent, 0 to 100; it
 * begins again at 0 when the device has to. With 2 in message[1] the upgrade has ended: message[2] is 1 for success and
 * anything else for failure. Called on a thread of the library, one message at a time; message lives for the length of
 * the call.
 */
typedef void (*PortwireUpgradeCallback)(const uint8_t *message, int length);

/* Finding devices ------------------------------------------------------------------------------------------------ */

/**
 * Paths of the devices with these ids, hexadecimal texts of 4 digits. count enters as the most that are wanted and
 * leaves as the number found. The array belongs to the library and stays valid until the next finder call on this
 * thread.
 */
PORTWIRE_API const char *const *UsbFinderC_FindHidDevicesByDefaultDeviceId(const char *vid, const char *pid,
                                                                           int *count);
/** The same for an interface and a device number. */
PORTWIRE_API const char *const *UsbFinderC_FindHidDevicesByDeviceId(const char *vid, const char *pid, int interfaceId,
                                                                    int deviceId, int *count);
/** 12 bytes; the little-endian u16 at byte 8 is the version of the USB device, major high. All zero when unknown. */
PORTWIRE_API void UsbFinderC_GetUsbDeviceAttribute(const char *path, uint8_t *out12);
/** 3 bytes: company id, model id, receiver class (0 = 1K, 4 = 2K, 1 = 4K receiver, else the mouse on its cable). */
PORTWIRE_API void UsbFinderC_GetDeviceInfo(const char *path, uint8_t *out3);
/** Non-zero if the mouse behind this path answers now. */
PORTWIRE_API int UsbFinderC_GetDeviceOnLine(const char *path);
/** 10 bytes; byte 6 is 1 if the mouse answers now, bytes 7 to 9 are its address. */
PORTWIRE_API void UsbFinderC_GetDeviceOnLineWithUsbAddress(const char *path, uint8_t *out10);
/** Firmware version of the mouse, major high; 0 when it doesn't answer. */
PORTWIRE_API uint16_t UsbFinderC_GetVersion(const char *path);
/** Firmware version of the receiver; 0 and out untouched when there is none. */
PORTWIRE_API int UsbFinderC_GetSlaveVersion(const char *path, uint16_t *out);
/** Writes non-zero when the mode is on, 0 or nothing otherwise. */
PORTWIRE_API void UsbFinderC_GetLongRangeMode(const char *path, uint8_t *out);
PORTWIRE_API void UsbFinderC_SetLongRangeMode(const char *path, int on);
PORTWIRE_API void UsbFinderC_Get4KDongleRGBValue(const char *path, struct DongleRGB *rgb);
PORTWIRE_API void UsbFinderC_Set4KDongleRGB(const char *path, const struct DongleRGB *rgb);

/* The report link ------------------------------------------------------------------------------------------------ */

/**
 * Sends the reports of that device to callback; replaces the link and the callback before it at once, without waiting
 * for one that is running. The same function is never entered a second time before it has come back, also not for the
 * link that replaces its own. samePath is the device once more. Writes and orders (SetCurrentConfig, SetClearSetting)
 * that the link before couldn't deliver are delivered by this one, if it is the same device with the same mouse.
 */
PORTWIRE_API void UsbServerC_Start(const char *path, const char *samePath, PortwireReportCallback callback);
/** Ends the link. Returns without waiting for a running callback; no new one of that link begins afterwards. */
PORTWIRE_API void UsbServer_Exit(void);
/** Tells the mouse whether the program shows its settings. */
PORTWIRE_API void UsbServer_SetPCDriverStatus(int on);
PORTWIRE_API void UsbServer_ReadAllFlashData(void);
PORTWIRE_API void UsbServer_ReadVersion(void);
PORTWIRE_API void UsbServer_ReadConfig(void);
PORTWIRE_API void UsbServer_ReadBatteryLevel(void);
PORTWIRE_API void UsbServer_ReadDPILed(void);
PORTWIRE_API void UsbServer_ReadLedBar(void);
PORTWIRE_API void UsbServer_ReadCurrentDPI(void);
PORTWIRE_API void UsbServer_ReadReportRate(void);
PORTWIRE_API void UsbServer_ReadDonglePairStatus(void);
/** Selects a stored configuration, 0 to 3. */
PORTWIRE_API void UsbServer_SetCurrentConfig(uint8_t index);
/** Factory reset of the active configuration; report 9 follows. */
PORTWIRE_API void UsbServer_SetClearSetting(void);
/** The battery curve of the model, 21 values. The mouse gets it first thing at the next UsbServerC_Start. */
PORTWIRE_API void UsbServer_SetBatteryOptimizeSection(const int *table21);
/** The receiver looks for a mouse of this maker; reports 6 tell how it goes. The end of the link ends that. */
PORTWIRE_API void UsbServer_EnterDonglePairOnlyCid(uint8_t cid);

/* The record ----------------------------------------------------------------------------------------------------- */

/**
 * Takes the whole record; the fields that differ from what the mouse holds are sent. Returns without waiting. After a
 * change of profile or a factory reset by the program, and at a new link, only the fields that the program has changed
 * since are sent, until it has been given the record of what is active now; after a change of profile on the mouse
 * itself nothing is: a record that is of another profile or of another mouse reaches none.
 */
PORTWIRE_API void ProtocolDataUpdate(const struct FlashDataMap *record);
/** The same for a record of which every field is meant, as one that is imported: all that the mouse may lack is sent.
 */
PORTWIRE_API void ProtocolDataReplace(const struct FlashDataMap *record);
/**
 * Fills the record from the 6,912-byte payload of a whole-record report. What is handed over from then on is taken for
 * a change of that record: a program that hands over on another thread puts it in its place under the lock that orders
 * its hand-overs.
 */
PORTWIRE_API void ProtocolDataParser(const uint8_t *report, struct FlashDataMap *record);
/** Fills the four bytes DpiLedMode to DpiLedOn from an 8-byte payload. */
PORTWIRE_API void BufferToDPILed(const uint8_t *report, uint8_t *dpiLedMode);
/** Fills the seven bytes LightMode to LightOn from a 9-byte payload. */
PORTWIRE_API void BufferToLedBar(const uint8_t *report, uint8_t *lightMode);
/** 4 bytes: percent, non-zero while charging, two reserved. */
PORTWIRE_API void GetDeviceBatteryStatus(const uint8_t *report, uint8_t *out4);
/** 7 flags, one a byte: DPI level, report rate, whole record, indicator, (unused), light, battery. */
PORTWIRE_API void GetDeviceStatusChanged(const uint8_t *report, uint8_t *out7);

/* Changes of the bus, firmware ----------------------------------------------------------------------------------- */

/**
 * Calls callback once before it returns and again after each change, when the bus has been quiet for quietMs. Replaces
 * the callback before. Call it on the GUI thread.
 */
PORTWIRE_API void StartUsbChanged(PortwireChangeCallback callback, int quietMs);
PORTWIRE_API void StopUsbChanged(void);
/**
 * Number of devices in boot mode that this image fits, at out, whatever that was before. 0 for one that is none. A
 * device in boot mode that doesn't answer is waited for three times as long as any other, some 100 ms.
 */
PORTWIRE_API void UsbUpgradeC_FindBootDevices(const struct FirmwareImage *image, int *out);
/**
 * Writes the image into the one device that it fits, in boot mode or in normal mode, and returns at once; the bytes are
 * copied. A mouse is reached by its cable, a receiver by its own plug. Each start ends with exactly one message of the
 * end, unless the application ends before: failure, too, for what isn't an image, for no device or several that it
 * fits, and while another upgrade is going on, which isn't disturbed.
 * \param timeoutMs how long the upgrade may get no further before it fails, in ms
 */
PORTWIRE_API void UsbUpgrade_Start(const struct FirmwareImage *image, PortwireUpgradeCallback callback, int timeoutMs);

#ifdef __cplusplus
}
#endif
