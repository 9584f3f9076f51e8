#include "platform/MouseSettings.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

namespace {

struct SettingsProgram
{
    const char *desktop; // as in XDG_CURRENT_DESKTOP
    const char *program;
    const char *arguments; // separated by blanks
};

constexpr SettingsProgram settingsPrograms[] = {
    {"GNOME", "gnome-control-center", "mouse"},
    {"Unity", "unity-control-center", "mouse"},
    {"KDE", "systemsettings", "kcm_mouse"},
    {"KDE", "systemsettings5", "kcm_mouse"},
    {"KDE", "kcmshell6", "kcm_mouse"},
    {"KDE", "kcmshell5", "kcm_mouse"},
    {"XFCE", "xfce4-mouse-settings", ""},
    {"X-Cinnamon", "cinnamon-settings", "mouse"},
    {"MATE", "mate-mouse-properties", ""},
    {"LXQt", "lxqt-config-input", ""},
    {"LXDE", "lxinput", ""},
    {"Budgie", "budgie-control-center", "mouse"},
    {"UKUI", "ukui-control-center", "-m mouse"},
    {"DDE", "dde-control-center", "-m mouse"},
};

bool start(const SettingsProgram &candidate)
{
    const QString program = QStandardPaths::findExecutable(QLatin1String(candidate.program));
    return !program.isEmpty() &&
           QProcess::startDetached(
               program, QString::fromLatin1(candidate.arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

} // namespace

bool platform::openSystemMouseSettings()
{
    // The running desktop's own program first: several desktops may be installed, and another's changes nothing here.
    const QStringList desktops =
        QString::fromLocal8Bit(qgetenv("XDG_CURRENT_DESKTOP")).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const SettingsProgram &candidate : settingsPrograms) {
        if (desktops.contains(QLatin1String(candidate.desktop), Qt::CaseInsensitive) && start(candidate))
            return true;
    }
    for (const SettingsProgram &candidate : settingsPrograms) {
        if (start(candidate))
            return true;
    }
    qWarning("no program for the mouse settings is installed");
    return false;
}
