#pragma once

#include "macro/MacroForm.h"

#include <QString>

#include <array>
#include <cstdint>

/** What the macro page says and offers, as tables. */
namespace MacroTables {

/** What an entry of `ChooseEvent` inserts. */
enum class Insertion { Press, Release, Delay, MouseButton };

struct EventChoice
{
    const char *key;         ///< element of the language file
    const char *defaultText; ///< stands until a language file was read
    Insertion insertion;
    std::uint8_t button; ///< bit of the mouse button
};

/** The entries behind the first one, which is empty. */
constexpr std::array<EventChoice, 8> eventChoices = {{
    {"ChooseEvent1", "按键按下", Insertion::Press, 0},
    {"ChooseEvent2", "按键释放", Insertion::Release, 0},
    {"ChooseEvent3", "延时", Insertion::Delay, 0},
    {"ChooseEvent4", "左键", Insertion::MouseButton, 0x01},
    {"ChooseEvent5", "右键", Insertion::MouseButton, 0x02},
    {"ChooseEvent6", "中键", Insertion::MouseButton, 0x04},
    {"ChooseEvent7", "前进键", Insertion::MouseButton, 0x10},
    {"ChooseEvent8", "后退键", Insertion::MouseButton, 0x08},
}};

/** A text of a label or a button; one of the two members is set. */
struct Text
{
    const char *key;         ///< element of the language file
    const char *defaultText; ///< stands until a language file was read
    QLabel *MacroForm::*label;
    QToolButton *MacroForm::*button;
    QPushButton *MacroForm::*recordButton;
    QCheckBox *MacroForm::*box;
};

constexpr std::array<Text, 16> texts = {{
    {"label", "宏列表", &MacroForm::label, nullptr, nullptr, nullptr},
    {"label_2", "按键列表", &MacroForm::label_2, nullptr, nullptr, nullptr},
    {"label_3", "插入事件", &MacroForm::label_3, nullptr, nullptr, nullptr},
    {"AutoInsertDelay", "", &MacroForm::AutoInsertDelayLabel, nullptr, nullptr, nullptr},
    {"ReUntilClick", "", &MacroForm::ReUntilClickLabel, nullptr, nullptr, nullptr},
    {"ReUntil", "", &MacroForm::ReUntilLabel, nullptr, nullptr, nullptr},
    {"NewHong", "新建宏", nullptr, &MacroForm::NewHong, nullptr, nullptr},
    {"DeleteHong", "删除", nullptr, &MacroForm::DeleteHong, nullptr, nullptr},
    {"Amend", "修改", nullptr, &MacroForm::Amend, nullptr, nullptr},
    {"DeleteKey", "删除", nullptr, &MacroForm::DeleteKey, nullptr, nullptr},
    {"Save", "", nullptr, &MacroForm::Save, nullptr, nullptr},
    {"StartRecord", "开始录制宏", nullptr, nullptr, &MacroForm::StartRecord, nullptr},
    {"StopRecord", "停止录制宏", nullptr, nullptr, &MacroForm::StopRecord, nullptr},
    {"DefaultDelay", "默认延时", nullptr, nullptr, nullptr, &MacroForm::DefaultDelay},
    {"ReUntilLoose", "循环直到按键松开", nullptr, nullptr, nullptr, &MacroForm::ReUntilLoose},
    {"ReNumber", "循环次数", nullptr, nullptr, nullptr, &MacroForm::ReNumber},
}};

/** Puts a text where its row says, in letters that fit. */
void setText(MacroForm &form, const Text &text, const QString &words);

/** What is selected stands on lime, in the lists and on the time line; 0xaarrggbb. */
constexpr unsigned selectedColour = 0xffc0ff00;

/** Milliseconds of the delay that a recording can be given instead of the real one. */
constexpr int leastFixedDelay = 10;
constexpr int mostFixedDelay = 65535;
/** Milliseconds of a delay that the program puts between two events by itself. */
constexpr std::uint32_t insertedDelay = 10;

} // namespace MacroTables
