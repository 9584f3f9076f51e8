#include "devicelink/DeviceSetters.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "portwire/portwire.h"

#include <QDebug>

namespace {

/** The one rule for a mouse that doesn't answer, and the one way to write a field. */
template<typename Change>
bool changeDevice(Change change)
{
    if (!TestDeviceOnline())
        return false;
    WorkingRecord::instance().updateAndSend(change);
    return true;
}

bool changeByte(std::uint8_t FlashDataMap::*field, std::uint8_t value)
{
    return changeDevice([=](FlashDataMap &record) { record.*field = value; });
}

bool inRange(const char *what, int index, int count)
{
    if (index >= 0 && index < count)
        return true;
    qWarning() << what << "out of range:" << index;
    return false;
}

bool isLevel(int level) { return inRange("DPI level", level, 8); }
bool isSlot(int slot) { return inRange("button slot", slot, 16); }

/**
 * A slot is set only once the mouse has told its record: what goes over the record of the mouse before is sent as far
 * as it differs from that, and would mix with what this one has there. It tells it in a moment, when it is awake.
 */
template<typename Change>
bool changeSlot(int slot, Change change)
{
    if (!isSlot(slot) || !TestDeviceOnline() || !isRecordOfSelected())
        return false;
    WorkingRecord::instance().updateAndSend(change);
    return true;
}

} // namespace

bool TestDeviceOnline()
{
    if (UsbFinderC_GetDeviceOnLine(DevicePath().get().constData()))
        return true;
    // A control that changes because a page is being filled is not the user's doing, and must not raise a prompt.
    if (!anyPageUpdating())
        postMsg()->post(&PostMsg::SigMouseOffLineo, 0);
    return false;
}

bool SetReportRate(std::uint8_t code) { return changeByte(&FlashDataMap::ReportRate, code); }
bool SetDpiCurrentLevel(std::uint8_t index) { return changeByte(&FlashDataMap::DpiCurrentLevel, index); }
bool SetDpiLevelCount(std::uint8_t count) { return changeByte(&FlashDataMap::DpiLevelCount, count); }
bool SetLod(std::uint8_t value) { return changeByte(&FlashDataMap::Lod, value); }
bool SetDebounceTime(std::uint8_t milliseconds) { return changeByte(&FlashDataMap::DebounceTime, milliseconds); }
bool SetMotionSync(std::uint8_t on) { return changeByte(&FlashDataMap::MotionSync, on); }
bool SetStopCloseTime(std::uint8_t tenSeconds) { return changeByte(&FlashDataMap::StopCloseTime, tenSeconds); }
bool SetStraightLine(std::uint8_t on) { return changeByte(&FlashDataMap::StraightLine, on); }
bool SetRippeControl(std::uint8_t on) { return changeByte(&FlashDataMap::RippeControl, on); }
bool SetLightRippeControl(std::uint8_t on) { return changeByte(&FlashDataMap::LightRippeControl, on); }
bool SetPerformance(std::uint8_t on) { return changeByte(&FlashDataMap::Performance, on); }
bool SetPerformanceTime(std::uint8_t tenSeconds) { return changeByte(&FlashDataMap::PerformanceTime, tenSeconds); }
bool SetSensorMode(std::uint8_t mode) { return changeByte(&FlashDataMap::SensorMode, mode); }

bool SetDpiLevelCode(int level, std::uint8_t x, std::uint8_t y, std::uint8_t flags)
{
    return isLevel(level) && changeDevice([=](FlashDataMap &record) {
               record.DpiLevels[level].CodeX = x;
               record.DpiLevels[level].CodeY = y;
               record.DpiLevels[level].Flags = flags;
           });
}

bool SetDpiLevelColor(int level, std::uint8_t red, std::uint8_t green, std::uint8_t blue)
{
    return isLevel(level) && changeDevice([=](FlashDataMap &record) {
               record.DpiLevels[level].Red = red;
               record.DpiLevels[level].Green = green;
               record.DpiLevels[level].Blue = blue;
           });
}

bool SetDpiLevelPair(const DpiLevel &a, const DpiLevel &b, int indexA, int indexB, std::uint8_t current)
{
    return isLevel(indexA) && isLevel(indexB) && isLevel(current) && changeDevice([=](FlashDataMap &record) {
               record.DpiLevels[indexB] = a;
               record.DpiLevels[indexA] = b;
               record.DpiCurrentLevel = current;
               record.DpiLevelCount = static_cast<std::uint8_t>(current + 1);
           });
}

bool SetDpiLedMode(int mode)
{
    return changeDevice([=](FlashDataMap &record) {
        record.DpiLedOn = mode != 0;
        if (mode != 0)
            record.DpiLedMode = static_cast<std::uint8_t>(mode);
    });
}

bool SetDpiLedBrightness(std::uint8_t value) { return changeByte(&FlashDataMap::DpiLedBrightness, value); }
bool SetDpiLedSpeed(std::uint8_t value) { return changeByte(&FlashDataMap::DpiLedSpeed, value); }

bool SetLightMode(int mode)
{
    return changeDevice([=](FlashDataMap &record) {
        record.LightOn = mode != 0;
        if (mode != 0)
            record.LightMode = static_cast<std::uint8_t>(mode);
    });
}

bool SetLightColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue)
{
    return changeDevice([=](FlashDataMap &record) {
        record.LightRed = red;
        record.LightGreen = green;
        record.LightBlue = blue;
    });
}

bool SetLightSpeed(std::uint8_t value) { return changeByte(&FlashDataMap::LightSpeed, value); }
bool SetLightBrightness(std::uint8_t value) { return changeByte(&FlashDataMap::LightBrightness, value); }

bool SetKeyFunction(int slot, std::uint8_t type, std::uint8_t param1, std::uint8_t param2)
{
    return changeSlot(slot, [=](FlashDataMap &record) { record.KeyFunctions[slot] = {type, param1, param2}; });
}

bool SetKeySequence(int slot, const KeyFunction &function, const KeySequence &sequence)
{
    return changeSlot(slot, [&](FlashDataMap &record) {
        record.KeyFunctions[slot] = function;
        record.KeySequences[slot] = sequence;
    });
}

bool SetMacro(int slot, const KeyFunction &function, const MacroSlot &macro)
{
    return changeSlot(slot, [&](FlashDataMap &record) {
        record.KeyFunctions[slot] = function;
        record.MacroSlots[slot] = macro;
    });
}
