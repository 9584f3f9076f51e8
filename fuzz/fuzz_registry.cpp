/** The file of registry values in the user's config folder: any bytes, read, and written over. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "platform/Registry.h"

#include <QDirIterator>

namespace {

const char key[] = "HKEY_CURRENT_USER\\Software\\Velko\\Velko\\Mouse Drive Test";

QString registryFile()
{
    FuzzHome &home = FuzzHome::instance();
    platform::setRegistryText(key, "a", "b"); // makes the file, wherever the system wants it
    QDirIterator files(home.path(), {"registry.ini"}, QDir::Files, QDirIterator::Subdirectories);
    require(files.hasNext(), "the values have a file in the home folder");
    return files.next();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QString path = registryFile();
    FuzzInput input(data, size);
    const std::string name = "MouseVer" + input.text().toStdString();
    const std::string text = input.text().toStdString();
    FuzzHome::write(path, input.rest());

    const std::string other = platform::registryText(key, "UpdateFailInfo");
    require(platform::setRegistryText(key, name, text), "a value can be stored");
    require(platform::registryText(key, name) == text, "a value is kept");
    require(platform::registryText(key, "UpdateFailInfo") == other, "another value stays");
    require(platform::removeRegistryValue(key, name), "a value can be removed");
    require(platform::registryText(key, name).empty(), "what is removed is gone");
    require(platform::registryText(key, "UpdateFailInfo") == other, "another value stays");
    return 0;
}
