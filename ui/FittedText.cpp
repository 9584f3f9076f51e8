#include "ui/FittedText.h"

#include "ui/LineBreaks.h"
#include "ui/WordLabel.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QStyle>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

/** Below this many points letters can't be read. */
constexpr qreal smallest = 7;
constexpr qreal step = 0.5;
/** Pixels by which a text that wraps gets less room at a time, to find where it would need another line. */
constexpr int narrowing = 4;
/** Pixels on each side of a button's text that its frame takes. */
constexpr int buttonMargin = 5;

/** Pixels beside the text of a button: its frame, or the box in front of it. */
int besideText(const QAbstractButton *button)
{
    if (!qobject_cast<const QCheckBox *>(button))
        return 2 * buttonMargin;
    return button->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, button) +
           button->style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, button);
}

template<typename Fits>
QFont fittingFont(QFont font, qreal points, Fits fits)
{
    font.setPointSizeF(points);
    while (points > smallest && !fits(QFontMetrics(font))) {
        points -= step;
        font.setPointSizeF(points);
    }
    return font;
}

/** Gives a label its letters and margins for the text that it holds. */
void fit(QLabel *label, qreal points, int margin)
{
    const QString text = label->text();
    const int indent = std::max(0, label->indent());
    QRect room = label->rect().adjusted(margin + indent, 0, -margin, 0);
    const int flags = int(label->alignment()) | (label->wordWrap() ? Qt::TextWordWrap : 0);
    auto *const wordLabel = label->wordWrap() ? qobject_cast<WordLabel *>(label) : nullptr;
    const int width = room.width();
    const auto lines = [&](const QFontMetrics &metrics) {
        return wordLabel ? LineBreaks::inWords(text, metrics, width) : text;
    };
    const auto needs = [&](const QFontMetrics &metrics) { return metrics.boundingRect(room, flags, lines(metrics)); };
    label->setFont(fittingFont(label->font(), points, [&](const QFontMetrics &metrics) {
        const QRect needed = needs(metrics);
        return needed.width() <= room.width() && needed.height() <= room.height();
    }));
    const QString divided = lines(label->fontMetrics());
    if (divided != text) {
        label->setContentsMargins(room.left() - indent, 0, label->width() - 1 - room.right(), 0);
        wordLabel->setLines(text, divided);
        return;
    }

    const QFontMetrics metrics = label->fontMetrics();
    const int height = needs(metrics).height();
    QRect balanced = room;
    while (label->wordWrap() && room.width() > narrowing) {
        room.adjust(narrowing / 2, 0, -narrowing / 2, 0);
        const QRect needed = needs(metrics);
        if (needed.height() > height || needed.width() > room.width())
            break;
        balanced = room;
    }
    label->setContentsMargins(balanced.left() - indent, 0, label->width() - 1 - balanced.right(), 0);
}

/** The same for a button, whose text is cut where even small letters are too wide. */
void fit(QAbstractButton *button, qreal points)
{
    const QString text = button->text();
    const int room = button->width() - besideText(button);
    // An ampersand marks the key of the next letter and takes no room itself; measured, it costs a little, no more.
    button->setFont(fittingFont(button->font(), points,
                                [&](const QFontMetrics &metrics) { return metrics.horizontalAdvance(text) <= room; }));
    button->setText(QFontMetrics(button->font()).elidedText(text, Qt::ElideRight, room, Qt::TextShowMnemonic));
}

/**
 * Fits a text when its widget comes into sight. Measuring takes most of a change of language, and at the start loads a
 * font for each size; most texts stand on pages that don't show.
 */
class FitAtShow : public QObject
{
public:
    static void fit(QWidget *widget, std::function<void()> operation)
    {
        FitAtShow *const later = of(widget);
        later->due = std::move(operation);
        if (widget->isVisible())
            later->fitNow();
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && due)
            fitNow();
        return QObject::eventFilter(watched, event);
    }

private:
    explicit FitAtShow(QWidget *widget) : QObject(widget) { widget->installEventFilter(this); }

    static FitAtShow *of(QWidget *widget)
    {
        for (QObject *child : widget->children()) {
            if (auto *const found = dynamic_cast<FitAtShow *>(child))
                return found;
        }
        return new FitAtShow(widget);
    }

    void fitNow() { std::exchange(due, nullptr)(); }

    std::function<void()> due;
};

} // namespace

void FittedText::set(QLabel *label, const QString &text, qreal points, int margin)
{
    label->setText(text);
    FitAtShow::fit(label, [=] { fit(label, points, margin); });
}

void FittedText::set(QAbstractButton *button, const QString &text, qreal points)
{
    button->setText(text);
    FitAtShow::fit(button, [=] { fit(button, points); });
}
