#pragma once

class QFontMetrics;
class QString;

/** Where the lines of a text end in scripts that write without blanks between words. */
namespace LineBreaks {

/**
 * The text with line feeds where its lines end, for a place of this many pixels. Where Chinese, Japanese or Korean is
 * written, Qt ends a line behind any character; here it ends behind punctuation, a particle or a blank where one is in
 * reach, with lines of like length, as few as may be. A text of other scripts, or one that fits in
 * its line, comes back as it is.
 */
QString inWords(const QString &text, const QFontMetrics &metrics, int width);

} // namespace LineBreaks
