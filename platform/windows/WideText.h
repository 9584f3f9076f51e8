#pragma once

#include <string>
#include <windows.h>

namespace platform {

/** UTF-8 to the UTF-16 of the system calls. What isn't UTF-8 becomes U+FFFD. */
inline std::wstring wideText(const std::string &text)
{
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), length);
    return wide;
}

/** UTF-16 to UTF-8. */
inline std::string narrowText(const std::wstring &wide)
{
    const int units = static_cast<int>(wide.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, text.data(), length, nullptr, nullptr);
    return text;
}

} // namespace platform
