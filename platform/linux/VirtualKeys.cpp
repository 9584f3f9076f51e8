#include "VirtualKeys.h"

namespace {

struct NamedKey
{
    int key; // Qt::Key
    unsigned virtualKey;
};

struct ModifierKey
{
    quint32 symbol; // X11 keysym
    quint32 place;  // scan code of the X11 and Wayland platforms: the kernel's code plus 8
    unsigned virtualKey;
};

struct PlacedKey
{
    quint32 place;
    unsigned virtualKey;
};

constexpr unsigned noVirtualKey = 255;

// Qt has one key code for both sides; the symbol tells them apart.
constexpr ModifierKey modifierKeys[] = {
    {0xffe1, 50, 160},  // Shift_L
    {0xffe2, 62, 161},  // Shift_R
    {0xffe3, 37, 162},  // Control_L
    {0xffe4, 105, 163}, // Control_R
    {0xffe9, 64, 164},  // Alt_L
    {0xffea, 108, 165}, // Alt_R
    {0xffe7, 64, 164},  // Meta_L, what many layouts make of Shift and Alt_L
    {0xffe8, 108, 165}, // Meta_R
    {0xfe03, 108, 165}, // ISO_Level3_Shift, the AltGr key
    {0xffeb, 133, 91},  // Super_L
    {0xffec, 134, 92},  // Super_R
};

// Keys whose meaning is the same on every layout. The modifiers stand here for events without native codes.
constexpr NamedKey namedKeys[] = {
    {Qt::Key_Backspace, 8},
    {Qt::Key_Tab, 9},
    {Qt::Key_Backtab, 9},
    {Qt::Key_Clear, 12},
    {Qt::Key_Return, 13},
    {Qt::Key_Enter, 13},
    {Qt::Key_Pause, 19},
    {Qt::Key_CapsLock, 20},
    {Qt::Key_Escape, 27},
    {Qt::Key_Space, 32},
    {Qt::Key_PageUp, 33},
    {Qt::Key_PageDown, 34},
    {Qt::Key_End, 35},
    {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},
    {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},
    {Qt::Key_Down, 40},
    {Qt::Key_Print, 44},
    {Qt::Key_SysReq, 44},
    {Qt::Key_Insert, 45},
    {Qt::Key_Delete, 46},
    {Qt::Key_Help, 47},
    {Qt::Key_Menu, 93},
    {Qt::Key_Sleep, 95},
    {Qt::Key_NumLock, 144},
    {Qt::Key_ScrollLock, 145},
    {Qt::Key_Shift, 160},
    {Qt::Key_Control, 162},
    {Qt::Key_Alt, 164},
    {Qt::Key_AltGr, 165},
    {Qt::Key_Meta, 91},
    {Qt::Key_Super_L, 91},
    {Qt::Key_Super_R, 92},
    {Qt::Key_Back, 166},
    {Qt::Key_Forward, 167},
    {Qt::Key_Refresh, 168},
    {Qt::Key_Stop, 169},
    {Qt::Key_Search, 170},
    {Qt::Key_Favorites, 171},
    {Qt::Key_HomePage, 172},
    {Qt::Key_VolumeMute, 173},
    {Qt::Key_VolumeDown, 174},
    {Qt::Key_VolumeUp, 175},
    {Qt::Key_MediaNext, 176},
    {Qt::Key_MediaPrevious, 177},
    {Qt::Key_MediaStop, 178},
    {Qt::Key_MediaPlay, 179},
    {Qt::Key_MediaTogglePlayPause, 179},
    {Qt::Key_LaunchMail, 180},
    {Qt::Key_LaunchMedia, 181},
};

constexpr NamedKey keypadKeys[] = {
    {Qt::Key_Asterisk, 106}, {Qt::Key_Plus, 107},  {Qt::Key_Minus, 109},
    {Qt::Key_Period, 110},   {Qt::Key_Comma, 110}, {Qt::Key_Slash, 111},
};

// What the keys of the main block give without Shift on a US keyboard; other layouts move them about.
constexpr NamedKey symbolKeys[] = {
    {Qt::Key_Semicolon, 186},   {Qt::Key_Equal, 187},     {Qt::Key_Plus, 187},         {Qt::Key_Comma, 188},
    {Qt::Key_Minus, 189},       {Qt::Key_Period, 190},    {Qt::Key_Slash, 191},        {Qt::Key_QuoteLeft, 192},
    {Qt::Key_BracketLeft, 219}, {Qt::Key_Backslash, 220}, {Qt::Key_BracketRight, 221}, {Qt::Key_Apostrophe, 222},
};

// The same keys and the digits with Shift.
constexpr NamedKey shiftedKeys[] = {
    {Qt::Key_ParenRight, 48},  {Qt::Key_Exclam, 49},    {Qt::Key_At, 50},          {Qt::Key_NumberSign, 51},
    {Qt::Key_Dollar, 52},      {Qt::Key_Percent, 53},   {Qt::Key_AsciiCircum, 54}, {Qt::Key_Ampersand, 55},
    {Qt::Key_Asterisk, 56},    {Qt::Key_ParenLeft, 57}, {Qt::Key_Colon, 186},      {Qt::Key_Less, 188},
    {Qt::Key_Underscore, 189}, {Qt::Key_Greater, 190},  {Qt::Key_Question, 191},   {Qt::Key_AsciiTilde, 192},
    {Qt::Key_BraceLeft, 219},  {Qt::Key_Bar, 220},      {Qt::Key_BraceRight, 221}, {Qt::Key_QuoteDbl, 222},
};

// The main block by place, with the codes of a US keyboard.
constexpr PlacedKey placedKeys[] = {
    {49, 192}, {10, '1'}, {11, '2'}, {12, '3'}, {13, '4'}, {14, '5'}, {15, '6'}, {16, '7'}, {17, '8'}, {18, '9'},
    {19, '0'}, {20, 189}, {21, 187}, {24, 'Q'}, {25, 'W'}, {26, 'E'}, {27, 'R'}, {28, 'T'}, {29, 'Y'}, {30, 'U'},
    {31, 'I'}, {32, 'O'}, {33, 'P'}, {34, 219}, {35, 221}, {38, 'A'}, {39, 'S'}, {40, 'D'}, {41, 'F'}, {42, 'G'},
    {43, 'H'}, {44, 'J'}, {45, 'K'}, {46, 'L'}, {47, 186}, {48, 222}, {51, 220}, {52, 'Z'}, {53, 'X'}, {54, 'C'},
    {55, 'V'}, {56, 'B'}, {57, 'N'}, {58, 'M'}, {59, 188}, {60, 190}, {61, 191}, {94, 226},
};

template<std::size_t Count>
unsigned find(const NamedKey (&table)[Count], int key)
{
    for (const NamedKey &row : table) {
        if (row.key == key)
            return row.virtualKey;
    }
    return 0;
}

unsigned findPlace(quint32 place)
{
    for (const PlacedKey &row : placedKeys) {
        if (row.place == place)
            return row.virtualKey;
    }
    return 0;
}

bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_AltGr ||
           key == Qt::Key_Meta || key == Qt::Key_Super_L || key == Qt::Key_Super_R;
}

/** By the symbol, which follows keys that the user has exchanged; by the place where there is no symbol. */
unsigned findModifier(const QKeyEvent &event)
{
    for (const ModifierKey &row : modifierKeys) {
        if (event.nativeVirtualKey() ? event.nativeVirtualKey() == row.symbol
                                     : isModifier(event.key()) && event.nativeScanCode() == row.place)
            return row.virtualKey;
    }
    return 0;
}

/** Runs of keys with runs of codes. */
unsigned findInRange(int key, bool keypad)
{
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        return static_cast<unsigned>(key - Qt::Key_0) + (keypad ? 96u : 48u);
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return static_cast<unsigned>(key - Qt::Key_A) + 65u;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return static_cast<unsigned>(key - Qt::Key_F1) + 112u;
    return 0;
}

} // namespace

unsigned platform::virtualKey(const QKeyEvent &event)
{
    const int key = event.key();
    const bool keypad = event.modifiers() & Qt::KeypadModifier;
    const bool shift = event.modifiers() & Qt::ShiftModifier;
    unsigned found = findModifier(event);
    if (!found && keypad)
        found = find(keypadKeys, key);
    if (!found)
        found = findInRange(key, keypad);
    if (!found)
        found = find(namedKeys, key);
    // A shifted symbol says little about its key on an unknown layout ("/" is Shift and 7 in German), its place does;
    // so does the place of a letter that isn't Latin.
    if (!found && !shift)
        found = find(symbolKeys, key);
    if (!found)
        found = findPlace(event.nativeScanCode());
    if (!found)
        found = find(shiftedKeys, key);
    if (!found)
        found = find(symbolKeys, key);
    return found ? found : noVirtualKey;
}
