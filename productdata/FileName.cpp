#include "productdata/FileName.h"

#include <algorithm>
#include <array>

namespace {

/** Devices of Windows; a file can't have their names there, whatever its extension. */
constexpr std::array<const char *, 6> devices = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
/** Devices that have a digit behind the name. */
constexpr std::array<const char *, 2> numberedDevices = {"COM", "LPT"};

bool isDeviceDigit(QChar digit)
{
    // Windows takes the three superscripts for their digits, and has no device 0.
    return (digit >= QLatin1Char('1') && digit <= QLatin1Char('9')) || digit == QChar(0xb9) || digit == QChar(0xb2) ||
           digit == QChar(0xb3);
}

bool isDevice(const QString &name)
{
    const QString stem = name.section(QLatin1Char('.'), 0, 0).trimmed();
    const auto is = [&stem](const char *device) {
        return stem.compare(QLatin1String(device), Qt::CaseInsensitive) == 0;
    };
    const auto isNumbered = [&stem](const char *device) {
        return stem.size() == 4 && stem.startsWith(QLatin1String(device), Qt::CaseInsensitive) &&
               isDeviceDigit(stem.at(3));
    };
    return std::any_of(devices.begin(), devices.end(), is) ||
           std::any_of(numberedDevices.begin(), numberedDevices.end(), isNumbered);
}

} // namespace

bool FileName::isCharacter(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        // The replacement character stands for bytes that were no text.
        return character != QChar(QChar::ReplacementCharacter) && !QStringLiteral("/\\:*?\"<>|").contains(character);
    }
}

bool FileName::isPortable(const QString &name)
{
    // Systems hide what starts with a dot; that takes care of "." and ".." as well.
    if (name.isEmpty() || name.startsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char('.')) ||
        name.endsWith(QLatin1Char(' ')))
        return false;
    return std::all_of(name.begin(), name.end(), isCharacter) && name.isValidUtf16() && !isDevice(name);
}
