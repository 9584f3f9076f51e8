/** The user's settings: any bytes as Macro.ini, read, and written over. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"

#include <QRegularExpression>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    // The program writes no text in which an at sign could stand at the beginning of an element.
    static const QRegularExpression element(QStringLiteral("[=,]@|(^|[=,])[ \\t]+@"));
    const QString text = QString::fromUtf8(input.text()).remove(element);
    const QString path = FuzzHome::instance().newFile(input.rest());
    QString enable;
    {
        UserSettings settings(path);
        require(settings.language() >= 0 && settings.language() < LanguageFile::languageCount,
                "a language is one of six");
        settings.readList("Language", "Language");
        enable = settings.read("AutoStart", "Enable");
        settings.setLanguage(4);
        settings.write("Written", "Text", text);
    }
    UserSettings settings(path);
    require(settings.language() == 4, "a chosen language is kept, whatever the file held");
    require(settings.read("Written", "Text") == text, "a text is kept");
    require(settings.read("AutoStart", "Enable") == enable, "what isn't written stays");
    settings.remove("Written", "Text");
    require(settings.read("Written", "Text").isEmpty(), "what is removed is gone");
    QFile::remove(path + ".damaged");
    return 0;
}
