#pragma once

#include <QFont>

/** The letters of the device pages and their controls. */
namespace PageFont {

/** The largest size whose lines fit in the 21 px of a title. */
constexpr qreal points = 9.5;

inline QFont font()
{
    QFont made(QStringLiteral("微软雅黑"));
    made.setPointSizeF(points);
    return made;
}

/** For fields of 20 px, which have a border. */
inline QFont small()
{
    QFont smaller = font();
    smaller.setPointSizeF(8.5);
    return smaller;
}

} // namespace PageFont
