#pragma once

#include "maintenance/FirmwareRun.h"

#include <QString>

/** Texts of the language file that are shown in other places than that of their section, in the user's language. */
namespace UpdateTexts {

/** Why an update can't be made; empty for Message::None. */
QString message(FirmwareRun::Device device, FirmwareRun::Message message);
/** Element of the section `FormSetting` that says so. */
const char *messageElement(FirmwareRun::Device device, FirmwareRun::Message message);
/** The question whether a receiver that is older than its mouse is to be updated. */
QString mouseIsNewer();

} // namespace UpdateTexts
