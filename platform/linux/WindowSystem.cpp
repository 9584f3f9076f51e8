#include "platform/WindowSystem.h"

#include <QGuiApplication>

bool platform::windowsRuleThemselves()
{
    // The plug-in's name, since a program on a Wayland desktop may well be one of X11; there is "wayland-egl" as well.
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}
