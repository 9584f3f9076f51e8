#pragma once

#include <QColor>
#include <QString>

/** A colour as "red,green,blue", the form that style sheets and the product data have it in. */
QString rgbText(const QColor &colour);

/** The colour of such a text; an invalid one for any other text. */
QColor colourOf(const QString &rgb);
