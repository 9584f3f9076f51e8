#pragma once

#include <QtGlobal>

class QAbstractButton;
class QLabel;
class QString;

/**
 * Texts that grow with the language in places that don't: the letters shrink a little, so that nothing is cut off. They
 * do when the text can be seen, for the room that it has then; until that the widget just holds it.
 */
namespace FittedText {

/**
 * Sets the text in the largest font size that fits between margins of `margin` pixels, from `points` down, behind
 * the label's indent. In a label that wraps words the margins then grow until the lines are of like length; a
 * WordLabel keeps words of Chinese, Japanese and Korean whole.
 */
void set(QLabel *label, const QString &text, qreal points, int margin);
/** Sets the text of a button, which stands in one line; one too long even when small ends in an ellipsis. */
void set(QAbstractButton *button, const QString &text, qreal points);

} // namespace FittedText
