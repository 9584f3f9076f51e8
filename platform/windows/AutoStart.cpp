#include "platform/AutoStart.h"

#include "ProgramName.h"
#include "platform/Registry.h"

#include <algorithm>

namespace {

constexpr char runKey[] = R"(HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run)";

} // namespace

bool platform::startsWithSystem() { return !registryText(runKey, programName).empty(); }

bool platform::setStartsWithSystem(bool on, const std::string &executable)
{
    if (!on)
        return removeRegistryValue(runKey, programName);
    std::string path = executable;
    std::replace(path.begin(), path.end(), '/', '\\');
    return !path.empty() && setRegistryText(runKey, programName, path);
}
