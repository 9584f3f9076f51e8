#pragma once

#include "devicelink/FlashDataMap.h"

#include <array>

/** The buttons of the mouse and the functions that the button page offers for them, as tables. */
namespace KeyCatalogue {

/** Types of a KeyFunction. */
enum Type : std::uint8_t {
    Unassigned,
    MouseButton,     ///< parameter 1: 1 left, 2 right, 4 middle, 8 back, 16 forward
    DpiStep,         ///< parameter 1: 1 cycle, 2 up, 3 down
    Tilt,            ///< parameter 1: 1 left, 2 right
    FireKeyFunction, ///< parameter 1: interval in ms, 10 to 255; parameter 2: count, 0 for as long as it is held
    KeySequenceType, ///< the slot's KeySequence
    MacroType,       ///< parameter 1: the slot itself; parameter 2: repeat code; the slot's MacroSlot
    ReportRateSwitch,
    LightToggle, ///< parameter 1: 0 all lights, 1 DPI indicator, 3 light strip, 4 next effect of the strip
    ProfileSwitch,
    DpiLock, ///< parameter 1: DPI code of the sensor
    Wheel,   ///< parameter 1: 1 up, 2 down
    TypeCount
};

/** A button of the mouse. The object names are also language elements, and say nothing of what a row is. */
struct Row
{
    const char *name;        ///< of the row's button
    const char *numberLabel; ///< of the label with the number before it
    const char *number;      ///< of the disc on the picture of the mouse
    int slot;                ///< in the record
    const char *text;        ///< until a language file or a record says otherwise
    KeyFunction factory;     ///< what it does without any settings
};

/** From the top of the page; the order in which everything that looks for a row goes through them. */
constexpr std::array<Row, 6> rows = {{
    {"FireKey", "label_14", "Number1", 0, "左键", {MouseButton, 1, 0}},
    {"RightKey", "label_9", "Number2", 1, "右键", {MouseButton, 2, 0}},
    {"BackKey", "label_15", "Number3", 2, "中键", {MouseButton, 4, 0}},
    {"StartPause", "label_11", "Number4", 4, "后退键", {MouseButton, 8, 0}},
    {"TopMusic", "label_12", "Number5", 3, "前进键", {MouseButton, 16, 0}},
    {"BackMusic", "label_13", "Number6", 5, "下一曲", {DpiStep, 1, 0}},
}};
constexpr int rowCount = int(rows.size());

/** What stands beside the list of functions, in the order of the stack. */
enum class List { Consumer, Macros, Lights, DpiLocks, Idle, Tilts, DpiSteps, Wheels };

struct ListPage
{
    List list;
    const char *name;
};

constexpr std::array<ListPage, 8> listPages = {{
    {List::Consumer, "page_3"},
    {List::Macros, "page_5"},
    {List::Lights, "page_6"},
    {List::DpiLocks, "page_8"},
    {List::Idle, "page_9"},
    {List::Tilts, "page_4"},
    {List::DpiSteps, "page_7"},
    {List::Wheels, "page_10"},
}};

/** What a click on an entry does. */
enum class Action { Assign, OpenList, AskFireKey, AskCombination };

/** An entry of the list of functions. Its object name is also its language element. */
struct Entry
{
    const char *name;
    const char *text; ///< until a language file says otherwise
    Action action;
    KeyFunction function; ///< what it assigns
    List list;            ///< what it opens
    bool isHidden;        ///< can't be chosen; a record that holds it is shown all the same
};

constexpr std::array<Entry, 17> entries = {{
    {"LeftKey_3", "左键", Action::Assign, {MouseButton, 1, 0}, List::Idle, false},
    {"RightKey_3", "右键", Action::Assign, {MouseButton, 2, 0}, List::Idle, false},
    {"MidKey", "中键", Action::Assign, {MouseButton, 4, 0}, List::Idle, false},
    {"BackKey_2", "后退键", Action::Assign, {MouseButton, 8, 0}, List::Idle, false},
    {"ForWardKey", "前进键", Action::Assign, {MouseButton, 16, 0}, List::Idle, false},
    {"DPI_2", "切换报告率", Action::Assign, {ReportRateSwitch, 0, 0}, List::Idle, false},
    {"DPI_3", "配置切换", Action::Assign, {ProfileSwitch, 0, 0}, List::Idle, true},
    {"DPI_6", "火力键", Action::AskFireKey, {}, List::Idle, false},
    {"DPI_8", "组合键", Action::AskCombination, {}, List::Idle, false},
    {"DPI_5", "待定义按键", Action::Assign, {Unassigned, 0, 0}, List::Idle, false},
    {"DPI_13", "鼠标上/下滚", Action::OpenList, {}, List::Wheels, false},
    {"DPI_11", "鼠标左/右滚", Action::OpenList, {}, List::Tilts, false},
    {"DPI_4", "DPI锁定", Action::OpenList, {}, List::DpiLocks, false},
    {"DPI_9", "开关装饰灯", Action::OpenList, {}, List::Lights, true},
    {"DPI_7", "DPI切换", Action::OpenList, {}, List::DpiSteps, false},
    {"DPI_12", "多媒体功能", Action::OpenList, {}, List::Consumer, false},
    {"DPI_10", "宏定义", Action::OpenList, {}, List::Macros, false},
}};

/** An entry of a small list. */
struct SubEntry
{
    List list;
    const char *name;
    const char *text;
    Type type;
    std::uint16_t value; ///< parameter 1; for a consumer key its usage, for a DPI lock its DPI
    bool isLanguageElement;
};

constexpr std::array<SubEntry, 41> subEntries = {{
    {List::Wheels, "VolumeUp_14", "上滚", Wheel, 1, true},
    {List::Wheels, "VolumeDown_14", "下滚", Wheel, 2, true},
    {List::Tilts, "VolumeUp_2", "左滚", Tilt, 1, true},
    {List::Tilts, "VolumeDown_2", "右滚", Tilt, 2, true},
    {List::DpiSteps, "VolumeUp_8", "DPI循环", DpiStep, 1, true},
    {List::DpiSteps, "VolumeUp_9", "DPI+", DpiStep, 2, false},
    {List::DpiSteps, "VolumeUp_10", "DPI-", DpiStep, 3, false},
    {List::Lights, "VolumeUp_4", "开/关所有装饰灯", LightToggle, 0, true},
    {List::Lights, "VolumeUp_5", "开/关DPI指示灯", LightToggle, 1, true},
    {List::Lights, "VolumeUp_6", "开/关灯带", LightToggle, 3, true},
    {List::Lights, "VolumeUp_7", "循环切换灯带效果", LightToggle, 4, true},
    {List::DpiLocks, "VolumeUp_11", "100", DpiLock, 100, false},
    {List::DpiLocks, "VolumeUp_12", "200", DpiLock, 200, false},
    {List::DpiLocks, "VolumeUp_13", "300", DpiLock, 300, false},
    {List::DpiLocks, "VolumeUp_16", "400", DpiLock, 400, false},
    {List::DpiLocks, "VolumeUp_15", "500", DpiLock, 500, false},
    {List::DpiLocks, "VolumeUp_19", "600", DpiLock, 600, false},
    {List::DpiLocks, "VolumeUp_20", "700", DpiLock, 700, false},
    {List::DpiLocks, "VolumeUp_22", "800", DpiLock, 800, false},
    {List::DpiLocks, "VolumeUp_18", "900", DpiLock, 900, false},
    {List::DpiLocks, "VolumeUp_24", "1000", DpiLock, 1000, false},
    {List::DpiLocks, "VolumeUp_23", "1100", DpiLock, 1100, false},
    {List::DpiLocks, "VolumeUp_21", "1200", DpiLock, 1200, false},
    {List::Consumer, "Player", "播放器", KeySequenceType, 0x0183, true},
    {List::Consumer, "StartPause_2", "播放/暂停", KeySequenceType, 0x00CD, true},
    {List::Consumer, "BackMusic_2", "下一曲", KeySequenceType, 0x00B5, true},
    {List::Consumer, "TopMusic_2", "上一曲", KeySequenceType, 0x00B6, true},
    {List::Consumer, "Mute", "停止播放", KeySequenceType, 0x00B7, true},
    {List::Consumer, "VolumeUp", "静音", KeySequenceType, 0x00E2, true},
    {List::Consumer, "VolumeDown", "音量加", KeySequenceType, 0x00E9, true},
    {List::Consumer, "VolumeDown_4", "音量减", KeySequenceType, 0x00EA, true},
    {List::Consumer, "VolumeDown_5", "邮件", KeySequenceType, 0x018A, true},
    {List::Consumer, "VolumeDown_6", "计算器", KeySequenceType, 0x0192, true},
    {List::Consumer, "VolumeDown_3", "我的电脑", KeySequenceType, 0x0194, true},
    {List::Consumer, "VolumeDown_8", "主页", KeySequenceType, 0x0223, true},
    {List::Consumer, "VolumeDown_9", "搜索", KeySequenceType, 0x0221, true},
    {List::Consumer, "VolumeDown_7", "前进", KeySequenceType, 0x0225, true},
    {List::Consumer, "VolumeDown_10", "后退", KeySequenceType, 0x0224, true},
    {List::Consumer, "VolumeDown_12", "停止网页", KeySequenceType, 0x0226, true},
    {List::Consumer, "VolumeDown_13", "刷新", KeySequenceType, 0x0227, true},
    {List::Consumer, "VolumeDown_11", "收藏夹", KeySequenceType, 0x022A, true},
}};

/** Where the menu shows a function: the entry to check, the list beside it, and how far to scroll. */
struct Place
{
    const char *entry;
    List list;
    int place; ///< steps of the scroll bar; not always the entry's index
};

/** By type; a mouse button and a key combination have their own below. */
constexpr std::array<Place, TypeCount> places = {{
    {"DPI_5", List::Idle, 9},
    {"LeftKey_3", List::Idle, 0},
    {"DPI_7", List::DpiSteps, 13},
    {"DPI_11", List::Tilts, 10},
    {"DPI_6", List::Idle, 7},
    {"DPI_12", List::Consumer, 16},
    {"DPI_10", List::Macros, 15},
    {"DPI_2", List::Idle, 5},
    {"DPI_9", List::Lights, 12},
    {"DPI_3", List::Idle, 6},
    {"DPI_4", List::DpiLocks, 15},
    {"DPI_13", List::Wheels, 10},
}};
constexpr Place combinationPlace = {"DPI_8", List::Idle, 8};

/** Pixels of the scroll bars by step. */
constexpr int scrollStep = 15;

} // namespace KeyCatalogue
