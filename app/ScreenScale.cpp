#include "app/ScreenScale.h"

#include "platform/ScreenScale.h"

#include <QApplication>

namespace {

/** The top window's, in pixels at 100 %. */
constexpr QSize windowSize(1020, 700);
const char *const furtherFactor = "QT_SCALE_FACTOR";

} // namespace

void useScreenScale()
{
    const double part = platform::scalingThatFits(windowSize.width(), windowSize.height());
    if (part <= 0)
        return;
    // The windows are laid out in pixels and the text in points, which alone would grow, out of its widgets.
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    // 150 % on a screen of 1080 lines is usual, and a little too much. The window can't be made smaller by hand.
    if (part < 1 && !qEnvironmentVariableIsSet(furtherFactor))
        qputenv(furtherFactor, QByteArray::number(part, 'f', 4));
}
