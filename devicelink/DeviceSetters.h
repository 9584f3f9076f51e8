#pragma once

#include "devicelink/FlashDataMap.h"

/**
 * The device setters: one function a setting of the mouse. Each tests that the mouse answers, writes the field in the
 * working record and hands the record to the library, which sends what changed. Call them on the GUI thread only.
 *
 * All return true if the change was sent. With the mouse offline they leave the record alone, open the offline prompt
 * unless a page is applying a record, and return false. Those of a button's slot do nothing and return false, too,
 * until the mouse has told its record. Names are those of the fields; ranges stand at the fields.
 */

/** The test of every setter without a write, the offline prompt included. */
bool TestDeviceOnline();

bool SetReportRate(std::uint8_t code);
bool SetDpiCurrentLevel(std::uint8_t index);
/** Number of levels in use, 1 to 8. */
bool SetDpiLevelCount(std::uint8_t count);
bool SetLod(std::uint8_t value);
bool SetDebounceTime(std::uint8_t milliseconds);
bool SetMotionSync(std::uint8_t on);
bool SetStopCloseTime(std::uint8_t tenSeconds);
bool SetStraightLine(std::uint8_t on);
bool SetRippeControl(std::uint8_t on);
bool SetLightRippeControl(std::uint8_t on);
bool SetPerformance(std::uint8_t on);
bool SetPerformanceTime(std::uint8_t tenSeconds);
bool SetSensorMode(std::uint8_t mode);
/** Codes and flags of level 0 to 7; another level changes nothing and returns false. */
bool SetDpiLevelCode(int level, std::uint8_t x, std::uint8_t y, std::uint8_t flags);
/** Colour of level 0 to 7; another level changes nothing and returns false. */
bool SetDpiLevelColor(int level, std::uint8_t red, std::uint8_t green, std::uint8_t blue);
/**
 * Writes `a` to level indexB and `b` to level indexA, makes `current` the active level and the last one, all in one
 * update, so that the mouse never holds half of the exchange.
 */
bool SetDpiLevelPair(const DpiLevel &a, const DpiLevel &b, int indexA, int indexB, std::uint8_t current);
/** 0 switches the indicator off and keeps its effect for later; 1 steady, 2 breathing. */
bool SetDpiLedMode(int mode);
bool SetDpiLedBrightness(std::uint8_t value);
bool SetDpiLedSpeed(std::uint8_t value);
/** 0 switches the light off and keeps its effect for later; 1 to 5 the effect. */
bool SetLightMode(int mode);
bool SetLightColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
bool SetLightSpeed(std::uint8_t value);
bool SetLightBrightness(std::uint8_t value);
/** Function of slot 0 to 15. */
bool SetKeyFunction(int slot, std::uint8_t type, std::uint8_t param1, std::uint8_t param2);
/** Function and key sequence of slot 0 to 15 in one update. */
bool SetKeySequence(int slot, const KeyFunction &function, const KeySequence &sequence);
/** Function and macro of slot 0 to 15 in one update. */
bool SetMacro(int slot, const KeyFunction &function, const MacroSlot &macro);
