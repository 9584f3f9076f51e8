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
    updateToolTip();
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

void PlainTextButton::resizeEvent(QResizeEvent *event)
{
    QToolButton::resizeEvent(event);
    updateToolTip();
}

void PlainTextButton::changeEvent(QEvent *event)
{
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateToolTip();
}

void PlainTextButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.text = fittingText().replace(QLatin1Char('&'), QLatin1String("&&"));
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
}
