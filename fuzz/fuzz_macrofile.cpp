/** A macro file of any bytes, under any name. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "macro/RepeatCode.h"
#include "productdata/UserFolders.h"

#include <QDirIterator>

namespace {

/** Files below the home folder, wherever they are. */
int fileCount()
{
    QDirIterator files(FuzzHome::instance().path(), QDir::Files | QDir::Hidden | QDir::System,
                       QDirIterator::Subdirectories);
    int count = 0;
    for (; files.hasNext(); files.next())
        ++count;
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const int before = [] {
        FuzzHome::instance();
        UserFolders::prepare();
        return fileCount();
    }();
    FuzzInput input(data, size);
    const QString name = QString::fromUtf8(input.text());
    const MacroContent content = MacroFile::parse(input.rest());
    require(eventCount(content.rows) <= maximumMacroEvents, "no more events than a mouse keeps");
    require(content.rows.size() <= 2 * maximumMacroEvents, "nor rows");
    require(!content.repeat || *content.repeat == RepeatCode::normalised(*content.repeat), "a repeat code");

    const MacroSlot image = MacroImage::make(name, content.rows);
    require(image.EventCount >= 1 && image.EventCount <= maximumMacroEvents, "an image of some events");
    require(image.NameLength <= sizeof image.Name, "a name that fits");
    require(MacroFile::parse(MacroFile::serialise({1, MacroImage::rows(image)})).rows == MacroImage::rows(image),
            "what comes out of a mouse is a file");

    if (MacroFile::write(name, content)) {
        require(MacroFile::isFileName(name) && QFile::exists(MacroFile::path(name)), "a name of a file");
        require(fileCount() == before + 1, "one file, in its folder");
        require(MacroFile::remove(name), "it can be deleted");
    }
    require(fileCount() == before, "nothing else was made");
    return 0;
}
