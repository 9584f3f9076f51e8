#include "buttons/PlainTextButton.h"

#include <QEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include <algorithm>

namespace {

/** Pixels on each side of the text. */
constexpr int margin = 6;

/** One line: a name from a mouse may hold anything. */
QString inOneLine(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar letter) { return !letter.isPrint(); }, QLatin1Char(' '));
    return text;
}

} // namespace

void PlainTextButton::setPlainText(const QString &given)
{
    setText(given);
    setShortcut({});
}

QString PlainTextButton::fittingText() const
{
    return fontMetrics().elidedText(inOneLine(text()), Qt::ElideRight, width() - 2 * margin);
}

void PlainTextButton::updateToolTip()
{
    const QString line = inOneLine(text());
    // A name with a tag in it is to be read, not obeyed.
    setToolTip(fittingText() == line ? QString() : QStringLiteral("<qt>%1</qt>").arg(line.toHtmlEscaped()));
}

void PlainTextButton::enterEvent(QEvent *event)
{
    QToolButton::enterEvent(event);
    Q_EMIT hovered(true);
}

void PlainTextButton::leaveEvent(QEvent *event)
{
    QToolButton::leaveEvent(event);
    Q_EMIT hovered(false);
}

void PlainTextButton::focusInEvent(QFocusEvent *event)
{
    QToolButton::focusInEvent(event);
    Q_EMIT hovered(true);
}

void PlainTextButton::focusOutEvent(QFocusEvent *event)
{
    QToolButton::focusOutEvent(event);
    Q_EMIT hovered(false);
}

bool PlainTextButton::event(QEvent *event)
{
    // Only now: measuring a text loads the font that has its letters, and few texts are ever pointed at.
    if (event->type() == QEvent::ToolTip)
        updateToolTip();
    return QToolButton::event(event);
}

void PlainTextButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.text = fittingText().replace(QLatin1Char('&'), QLatin1String("&&"));
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
}
