#include "platform/Registry.h"

#include "WideText.h"

#include <cstring>
#include <vector>

namespace {

/** A key's root and the path below it. */
struct KeyPath
{
    HKEY root = nullptr; // null when the root isn't known
    std::wstring path;
};

KeyPath keyPath(const std::string &key)
{
    static const struct
    {
        const char *name;
        HKEY root;
    } roots[] = {
        {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
        {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
        {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
        {"HKEY_USERS", HKEY_USERS},
    };
    const std::size_t end = key.find('\\');
    for (const auto &row : roots) {
        if (end != std::string::npos && key.compare(0, end, row.name) == 0)
            return {row.root, platform::wideText(key.substr(end + 1))};
    }
    return {};
}

struct Value
{
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

Value read(const KeyPath &key, const std::wstring &name)
{
    Value value;
    HKEY handle = nullptr;
    if (!key.root || RegOpenKeyExW(key.root, key.path.c_str(), 0, KEY_QUERY_VALUE, &handle) != ERROR_SUCCESS)
        return value;
    DWORD size = 256; // bytes; grows until the value fits, which may change its size meanwhile
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        value.data.resize(size);
        status = RegQueryValueExW(handle, name.c_str(), nullptr, &value.type, value.data.data(), &size);
    }
    RegCloseKey(handle);
    if (status != ERROR_SUCCESS)
        return {};
    value.data.resize(size);
    return value;
}

/** The texts of the registry need not be terminated, and may have an odd number of bytes. */
std::string textOf(const Value &value)
{
    std::wstring text(value.data.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.data.data(), text.size() * sizeof(wchar_t));
    return platform::narrowText(text.substr(0, text.find(L'\0')));
}

template<typename Number>
std::string numberOf(const Value &value)
{
    Number number = 0;
    if (value.data.size() != sizeof number)
        return {};
    std::memcpy(&number, value.data.data(), sizeof number);
    return std::to_string(number);
}

} // namespace

std::string platform::registryText(const std::string &key, const std::string &value)
{
    const Value stored = read(keyPath(key), wideText(value));
    switch (stored.type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
        return textOf(stored);
    case REG_DWORD:
        return numberOf<DWORD>(stored);
    case REG_QWORD:
        return numberOf<ULONGLONG>(stored);
    default:
        return {};
    }
}

bool platform::setRegistryText(const std::string &key, const std::string &value, const std::string &text)
{
    const KeyPath path = keyPath(key);
    HKEY handle = nullptr;
    if (!path.root || RegCreateKeyExW(path.root, path.path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE,
                                      nullptr, &handle, nullptr) != ERROR_SUCCESS)
        return false;
    const std::wstring wide = wideText(text);
    const auto size = static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)); // the terminator belongs to the value
    const LSTATUS status =
        RegSetValueExW(handle, wideText(value).c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>(wide.c_str()), size);
    RegCloseKey(handle);
    return status == ERROR_SUCCESS;
}

bool platform::removeRegistryValue(const std::string &key, const std::string &value)
{
    const KeyPath path = keyPath(key);
    if (!path.root)
        return false;
    HKEY handle = nullptr;
    LSTATUS status = RegOpenKeyExW(path.root, path.path.c_str(), 0, KEY_SET_VALUE, &handle);
    if (status == ERROR_SUCCESS) {
        status = RegDeleteValueW(handle, wideText(value).c_str());
        RegCloseKey(handle);
    }
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}
