#pragma once

#include <QString>

/** The per-user tree under the home folder. Nothing else in the program invents a folder there. */
namespace UserFolders {

enum class Folder { Log, DeviceInfo, Exception, UserSetting, MainPage, MacroPage, SensorPage };

/** Full path of a folder, without a closing slash. */
QString path(Folder folder);
/** Full path of the per-user settings file. */
QString settingsFile();
/** Makes every folder that is missing and an empty settings file if there is none. Failures go to the log. */
void prepare();
/** Removes the files of a folder that were last changed 8 days ago or earlier; folders stay. */
void prune(Folder folder);

} // namespace UserFolders
