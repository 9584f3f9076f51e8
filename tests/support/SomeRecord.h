#pragma once

#include "devicelink/FlashDataMap.h"

/** A record like none that a page starts with. */
inline FlashDataMap someRecord()
{
    FlashDataMap record{};
    record.ReportRate = 2;
    record.DpiLevelCount = 4;
    record.DpiCurrentLevel = 1;
    record.Lod = 2;
    record.MotionSync = 1;
    record.StraightLine = 1;
    record.RippeControl = 1;
    record.Performance = 1;
    record.PerformanceTime = 180;
    record.SensorMode = 1;
    for (int level = 0; level < 8; ++level)
        record.DpiLevels[level] = {std::uint8_t(10 + level), 77, 0, std::uint8_t(level), 128, 255};
    record.DpiLedOn = 1;
    record.DpiLedMode = 2;
    record.DpiLedSpeed = 4;
    record.DpiLedBrightness = 150;
    return record;
}
