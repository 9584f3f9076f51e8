#include "maintenance/UpdateTexts.h"

#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"

namespace {

QString text(const char *section, const char *wanted)
{
    QString found;
    LanguageFile::readSection(UserSettings::instance()->language(), QLatin1String(section),
                              [&found, wanted](const QString &element, const QString &text) {
                                  if (element == QLatin1String(wanted))
                                      found = text;
                              });
    return found;
}

} // namespace

const char *UpdateTexts::messageElement(FirmwareRun::Device device, FirmwareRun::Message message)
{
    if (message == FirmwareRun::Message::SeveralDevices)
        return "SameDevice";
    return device == FirmwareRun::Mouse ? "WiredMode" : "NoDevice";
}

QString UpdateTexts::message(FirmwareRun::Device device, FirmwareRun::Message message)
{
    return message == FirmwareRun::Message::None ? QString() : text("FormSetting", messageElement(device, message));
}

QString UpdateTexts::mouseIsNewer() { return text("DialogChange", "MouseIsNewTips"); }
