#include "ui/LineBreaks.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextBoundaryFinder>
#include <QVector>

#include <algorithm>
#include <limits>

namespace {

// How bad it looks to end a line there. No dictionary: the scripts themselves and a few common words tell enough.
constexpr int behindPunctuation = 0;
constexpr int behindBlank = 3;
constexpr int behindParticle = 5;
constexpr int besideQuote = 5;
constexpr int besideWord = 7;
constexpr int scriptsMeet = 9;
constexpr int insideWord = 14;
/** The same scale: what a line costs that is as much longer than the mean as the place is wide, by the square of it. */
constexpr qreal raggedness = 60;

/** Japanese particles, and Chinese words of one character that end or begin a group of words. */
const QString particles = QStringLiteral("はがをにでとへもかの的了后後时時");
const QString groupEnds = QStringLiteral("或和与與并並前");
const QString groupBegins = QStringLiteral("请請然但是或和与與在将將已无無才先再");

QChar::Script scriptOf(QChar letter)
{
    constexpr ushort longVowel = 0x30fc; // which two scripts share, and katakana uses
    return letter.unicode() == longVowel ? QChar::Script_Katakana : letter.script();
}

bool isHiragana(QChar letter) { return scriptOf(letter) == QChar::Script_Hiragana; }

bool isWrittenWithoutBlanks(QChar letter)
{
    const QChar::Script script = scriptOf(letter);
    return script == QChar::Script_Han || script == QChar::Script_Hiragana || script == QChar::Script_Katakana ||
           script == QChar::Script_Hangul;
}

/** What the end of a line before the character at `at` costs. */
int costAt(const QString &text, int at)
{
    const QChar after = text.at(at);
    const bool isBlank = text.at(at - 1).isSpace();
    const QChar before = text.at(at > 1 && isBlank ? at - 2 : at - 1);
    if (before.isPunct() || isBlank) {
        if (particles.contains(after)) // it belongs to the quote or the foreign word before
            return insideWord;
        const bool isNumber = before.isDigit() || after.isDigit(); // of a unit, or of what it counts
        return before.isPunct() ? behindPunctuation : isNumber ? scriptsMeet : behindBlank;
    }
    if (particles.contains(before) && !isHiragana(after))
        return behindParticle;
    if (after.isPunct())
        return besideQuote;
    if ((isHiragana(before) && !isHiragana(after)) || groupEnds.contains(before) || groupBegins.contains(after))
        return besideWord;
    return scriptOf(before) == scriptOf(after) || isHiragana(after) ? insideWord : scriptsMeet;
}

/** A place in a text where a line may end. */
struct Place
{
    int at;
    int cost;
};

QVector<Place> places(const QString &text)
{
    QVector<Place> found{{0, 0}};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, text);
    while (finder.toNextBoundary() > 0 && finder.position() < text.size())
        found += {finder.position(), costAt(text, finder.position())};
    found += {text.size(), 0};
    return found;
}

QString trimmedEnd(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

struct Lines
{
    QStringList texts; ///< none if they can't be that few
    bool divideWords = false;
};

/** The best so many lines of a paragraph. */
Lines bestLines(const QString &text, int count, const QFontMetrics &metrics, int width)
{
    const QVector<Place> ends = places(text);
    const auto line = [&](int begin, int end) {
        return trimmedEnd(text.mid(ends.at(begin).at, ends.at(end).at - ends.at(begin).at));
    };
    constexpr qreal impossible = std::numeric_limits<qreal>::max();
    const qreal mean = qreal(metrics.horizontalAdvance(text)) / count;
    // Of the best n lines up to an end: what they cost, and where the last of them begins.
    QVector<QVector<qreal>> costs(count + 1, QVector<qreal>(ends.size(), impossible));
    QVector<QVector<int>> begins(count + 1, QVector<int>(ends.size(), 0));
    costs[0][0] = 0;
    for (int end = 1; end < ends.size(); ++end) {
        for (int begin = end - 1; begin >= 0; --begin) {
            const int advance = metrics.horizontalAdvance(line(begin, end));
            if (advance >= width)
                break;
            const qreal beside = (advance - mean) / width;
            const qreal cost = ends.at(end).cost + raggedness * beside * beside;
            for (int number = 1; number <= count; ++number) {
                const qreal before = costs[number - 1][begin];
                if (before != impossible && before + cost < costs[number][end]) {
                    costs[number][end] = before + cost;
                    begins[number][end] = begin;
                }
            }
        }
    }
    Lines best;
    if (costs[count].last() == impossible)
        return best;
    for (int number = count, end = ends.size() - 1; number > 0; end = begins[number][end], --number) {
        best.texts.prepend(line(begins[number][end], end));
        best.divideWords = best.divideWords || ends.at(end).cost == insideWord;
    }
    return best;
}

/** As few lines as there can be, or one more where that saves a word. */
QStringList linesOf(const QString &text, const QFontMetrics &metrics, int width)
{
    constexpr int most = 8; // more has no place that such texts stand in
    for (int count = 2; count < most; ++count) {
        const Lines few = bestLines(text, count, metrics, width);
        if (few.texts.isEmpty())
            continue;
        const Lines more = few.divideWords ? bestLines(text, count + 1, metrics, width) : Lines();
        return more.texts.isEmpty() || more.divideWords ? few.texts : more.texts;
    }
    return {text};
}

} // namespace

QString LineBreaks::inWords(const QString &text, const QFontMetrics &metrics, int width)
{
    QStringList result;
    const QStringList paragraphs = text.split(QLatin1Char('\n'));
    for (const QString &paragraph : paragraphs) {
        const bool isMeant = std::any_of(paragraph.begin(), paragraph.end(), isWrittenWithoutBlanks);
        if (isMeant && metrics.horizontalAdvance(paragraph) >= width)
            result += linesOf(paragraph, metrics, width);
        else
            result += paragraph;
    }
    return result.join(QLatin1Char('\n'));
}
