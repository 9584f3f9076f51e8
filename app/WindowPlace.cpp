#include "app/WindowPlace.h"

#include "platform/WindowSystem.h"
#include "productdata/UserSettings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

const QString section = QStringLiteral("Window");
const QString leftKey = QStringLiteral("Left"); // pixels, as the next
const QString topKey = QStringLiteral("Top");

} // namespace

void WindowPlace::restore(QWidget &window)
{
    bool isLeft = false;
    bool isTop = false;
    const int left = UserSettings::instance()->read(section, leftKey).toInt(&isLeft);
    const int top = UserSettings::instance()->read(section, topKey).toInt(&isTop);
    // The numbers come from a file: none may be so large that its sum with a width has no meaning.
    constexpr int farthest = 1 << 20;
    const auto isNear = [](int number) { return -farthest <= number && number <= farthest; };
    if (!isLeft || !isTop || !isNear(left) || !isNear(top) || !platform::windowsRuleThemselves())
        return;
    const QRect place(QPoint(left, top), window.size());
    const QList<QScreen *> screens = QGuiApplication::screens();
    const bool isInSight = std::any_of(screens.begin(), screens.end(), [&place](const QScreen *screen) {
        return screen->availableGeometry().contains(place.center());
    });
    if (isInSight)
        window.move(place.topLeft());
}

void WindowPlace::keep(const QWidget &window)
{
    if (window.isMinimized() || !platform::windowsRuleThemselves())
        return;
    const QString left = QString::number(window.x());
    const QString top = QString::number(window.y());
    UserSettings *const settings = UserSettings::instance();
    if (settings->read(section, leftKey) == left && settings->read(section, topKey) == top)
        return;
    settings->write(section, leftKey, left);
    settings->write(section, topKey, top);
}
