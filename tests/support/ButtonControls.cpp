#include "support/ButtonControls.h"

#include "app/hub/PostMsg.h"
#include "productdata/UserFolders.h"
#include "support/Files.h"

#include <QAbstractButton>
#include <QListWidget>
#include <QTest>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

using Window = const QWidget *;

const char *const page = "ButtonPage";

/** A function of the menu: the entry that opens its list, if there is one, its own entry, and its bytes. */
struct Function
{
    const char *opener;
    const char *entry;
    KeyFunction bytes;
    std::uint16_t usage; ///< of a consumer key
};

Control::Change ofMenu(const char *row, int slot, const Function &one, const Function &other)
{
    return [=](Window window, FlashDataMap held) {
        const bool isOne = std::memcmp(&held.KeyFunctions[slot], &one.bytes, sizeof(KeyFunction)) == 0 &&
                           (one.usage == 0 || held.KeySequences[slot].Events[0].Code == one.usage);
        const Function &next = isOne ? other : one;
        for (const char *button : {row, next.opener, next.entry}) {
            if (button)
                Hand::press(window, page, button);
        }
        held.KeyFunctions[slot] = next.bytes;
        if (next.usage != 0)
            held.KeySequences[slot] = {2, {}, {{0, 2, next.usage, 10}, {1, 2, next.usage, 10}}};
        return held;
    };
}

constexpr int macroSlot = 5;

/** The file of a macro that taps the key A. */
void putTap(const QString &name)
{
    Files::put(UserFolders::path(UserFolders::Folder::MacroPage) + '/' + name + ".ini",
               "3\n0x04 1 0\n10ms\n0x04 1 1\n");
}

/** One of two macros, from its file. */
FlashDataMap assignMacro(Window window, FlashDataMap held)
{
    const QByteArray name = std::strncmp(held.MacroSlots[macroSlot].Name, "Jump", 30) == 0 ? "Leap" : "Jump";
    putTap(name);
    postMsg()->post(&PostMsg::SigAddMacroButton);
    Hand::press(window, page, "BackMusic");
    Hand::press(window, page, "DPI_10");
    const auto macros = window->findChild<QWidget *>("MacroListWidget")->findChildren<QAbstractButton *>();
    for (QAbstractButton *button : macros) {
        if (button->text() == name)
            QTest::mouseClick(button, Qt::LeftButton);
    }
    held.KeyFunctions[macroSlot] = {6, macroSlot, 3};
    held.MacroSlots[macroSlot] = {4, {}, 2, {{0, 1, 4, 10}, {1, 1, 4, 0}}};
    std::memcpy(held.MacroSlots[macroSlot].Name, name.constData(), 4);
    return held;
}

/** Saves the macro of that button with a click behind its tap, of the left or the right button; if it was assigned. */
FlashDataMap saveMacro(Window window, FlashDataMap held)
{
    MacroSlot &macro = held.MacroSlots[macroSlot];
    if (held.KeyFunctions[macroSlot].KeyType != 6)
        return held;
    const QString name = QString::fromUtf8(macro.Name, 4);
    putTap(name);
    auto *const list = window->findChild<QListWidget *>("listWidgetHong");
    if (list->findItems(name, Qt::MatchExactly).isEmpty())
        list->addItem(name);
    const QListWidgetItem *const item = list->findItems(name, Qt::MatchExactly).first();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
    const bool isLeft = macro.EventCount == 4 && macro.Events[2].Code == 1;
    Hand::choose(window, "Macro", "ChooseEvent", isLeft ? 5 : 4);
    Hand::press(window, "Macro", "Save");
    const std::uint16_t button = isLeft ? 2 : 1;
    const MacroEvent events[] = {{0, 1, 4, 10}, {1, 1, 4, 10}, {0, 4, button, 10}, {1, 4, button, 0}};
    std::copy(std::begin(events), std::end(events), macro.Events);
    macro.EventCount = 4;
    return held;
}

} // namespace

const std::vector<Control> &buttonControls()
{
    static const std::vector<Control> all = {
        {"ButtonMain", "button function",
         ofMenu("BackKey", 2, {nullptr, "MidKey", {1, 4, 0}, 0}, {nullptr, "DPI_5", {0, 0, 0}, 0})},
        {"ButtonMain", "consumer key",
         ofMenu("TopMusic", 3, {"DPI_12", "Mute", {5, 0, 0}, 0xB7}, {"DPI_12", "VolumeUp", {5, 0, 0}, 0xE2})},
        {"ButtonMain", "macro", assignMacro},
        {"MacroButton", "macro saved", saveMacro},
        {"ButtonMain", "debounce",
         [](Window window, FlashDataMap held) {
             held.DebounceTime = held.DebounceTime == 4 ? 7 : 4;
             Hand::choose(window, page, "Debunce", held.DebounceTime);
             return held;
         }},
    };
    return all;
}
