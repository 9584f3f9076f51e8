#include "ui/RgbText.h"

#include <QStringList>

QString rgbText(const QColor &colour)
{
    return QStringLiteral("%1,%2,%3").arg(colour.red()).arg(colour.green()).arg(colour.blue());
}

QColor colourOf(const QString &rgb)
{
    const QStringList parts = rgb.split(QLatin1Char(','));
    return parts.size() == 3 ? QColor(parts.at(0).toInt(), parts.at(1).toInt(), parts.at(2).toInt()) : QColor();
}
