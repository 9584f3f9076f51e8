#include "support/ButtonControls.h"

#include "app/hub/PostMsg.h"
#include "productdata/UserFolders.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QTest>

#include <cstring>

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

/** One of two macros, each a tap of the key A, from its file. */
FlashDataMap assignMacro(Window window, FlashDataMap held)
{
    constexpr int slot = 5;
    const QDir folder(UserFolders::path(UserFolders::Folder::MacroPage));
    const QByteArray name = std::strncmp(held.MacroSlots[slot].Name, "Jump", 30) == 0 ? "Leap" : "Jump";
    QFile file(folder.filePath(name + ".ini"));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no macro file");
    file.write("3\n0x04 1 0\n10ms\n0x04 1 1\n");
    file.close();
    postMsg()->post(&PostMsg::SigAddMacroButton);
    Hand::press(window, page, "BackMusic");
    Hand::press(window, page, "DPI_10");
    const auto macros = window->findChild<QWidget *>("MacroListWidget")->findChildren<QAbstractButton *>();
    for (QAbstractButton *button : macros) {
        if (button->text() == name) {
            QTest::mouseClick(button, Qt::LeftButton);
            break;
        }
    }
    held.KeyFunctions[slot] = {6, slot, 3};
    held.MacroSlots[slot] = {4, {}, 2, {{0, 1, 4, 10}, {1, 1, 4, 0}}};
    std::memcpy(held.MacroSlots[slot].Name, name.constData(), 4);
    return held;
}

} // namespace

const std::vector<Control> &buttonControls()
{
    static const std::vector<Control> all = {
        {"ButtonMain", "button function",
         ofMenu("BackKey", 2, {nullptr, "MidKey", {1, 4, 0}, 0}, {nullptr, "DPI_5", {0, 0, 0}, 0})},
        {"ButtonMain", "DPI lock",
         ofMenu("StartPause", 4, {"DPI_4", "VolumeUp_11", {10, 1, 0}, 0}, {"DPI_4", "VolumeUp_24", {10, 19, 0}, 0})},
        {"ButtonMain", "consumer key",
         ofMenu("TopMusic", 3, {"DPI_12", "Mute", {5, 0, 0}, 0xB7}, {"DPI_12", "VolumeUp", {5, 0, 0}, 0xE2})},
        {"ButtonMain", "macro", assignMacro},
        {"ButtonMain", "debounce",
         [](Window window, FlashDataMap held) {
             held.DebounceTime = held.DebounceTime == 4 ? 7 : 4;
             Hand::choose(window, page, "Debunce", held.DebounceTime);
             return held;
         }},
    };
    return all;
}
