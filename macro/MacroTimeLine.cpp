#include "macro/MacroTimeLine.h"

#include "macro/MacroTables.h"
#include "productdata/Theme.h"
#include "ui/PageFont.h"
#include "ui/RgbText.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace {

// Pixels, from the top: the head with count and length, the bars, and the scale under them.
constexpr int headHeight = 20;
constexpr int scaleHeight = 16;
constexpr qreal highestBar = 26;
constexpr qreal laneGap = 2;
/** A key that goes down and up at once is still to be seen and hit. */
constexpr qreal narrowestBar = 3;
/** Milliseconds of a macro without a delay. */
constexpr qint64 nominalLength = 1000;
/** Between two numbers of the scale. */
constexpr int tickDistance = 90;
constexpr qreal corner = 2;
/** Of 255: how much of a key's colour fills its bar. */
constexpr int fill = 110;

QColor colour(Theme::Colour key) { return colourOf(Theme::rgb(key)); }

/** The step between two ticks: 1, 2 or 5 times a power of ten, so that some tickDistance pixels lie between them. */
qint64 tickStep(qint64 length, int width)
{
    qint64 step = 1;
    for (int turn = 0; step * width < length * tickDistance; ++turn)
        step = turn % 3 == 1 ? step / 2 * 5 : step * 2;
    return step;
}

} // namespace

MacroTimeLine::MacroTimeLine(QWidget *parent)
    : QWidget(parent), words(colour(Theme::Colour::LabelColor)), keys(colour(Theme::Colour::SliderColor)),
      mouseButtons(colour(Theme::Colour::ButtonColor))
{
    setFont(PageFont::small());
}

void MacroTimeLine::setRows(const MacroRows &rows)
{
    shown = rows;
    isComputed = false;
    update();
}

void MacroTimeLine::setCurrentRow(int row)
{
    currentRow = row;
    update();
}

void MacroTimeLine::setWarningText(const QString &text) { warningText = text; }

void MacroTimeLine::setWarningPicture(const QPixmap &picture)
{
    warning = picture;
    update();
}

const MacroTimes &MacroTimeLine::times()
{
    if (!isComputed) {
        computed = macroTimes(shown);
        isComputed = true;
    }
    return computed;
}

QRect MacroTimeLine::chart() const { return rect().adjusted(0, headHeight, -1, -scaleHeight); }

QRectF MacroTimeLine::place(const MacroBar &bar)
{
    const QRect room = chart();
    const qreal lane = std::min(highestBar, (room.height() - laneGap) / std::max(1, times().lanes) - laneGap);
    const qreal perMs = qreal(room.width()) / (times().length > 0 ? times().length : nominalLength);
    const qreal width = std::max(narrowestBar, (bar.to - bar.from) * perMs);
    const qreal left = std::min(room.left() + bar.from * perMs, room.right() - width);
    return {left, room.top() + laneGap + bar.lane * (lane + laneGap), width, lane};
}

const MacroBar *MacroTimeLine::barAt(QPoint position)
{
    // From the end: of two that lie on each other the later one is on top.
    const QVector<MacroBar> &bars = times().bars;
    const auto found = std::find_if(bars.rbegin(), bars.rend(), [&](const MacroBar &bar) {
        return place(bar).adjusted(-1, -1, 1, 1).contains(position);
    });
    return found != bars.rend() ? &*found : nullptr;
}

QString MacroTimeLine::unreleasedKeys()
{
    QStringList names;
    for (const MacroBar &bar : times().bars) {
        if (!bar.isLetGo)
            names += KeyTable::name(KeyTable::find(bar.code, bar.kind));
    }
    return names.join(QStringLiteral(", "));
}

void MacroTimeLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintHead(painter);
    paintScale(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const MacroBar &bar : times().bars)
        paintBar(painter, bar);
}

void MacroTimeLine::paintHead(QPainter &painter)
{
    QRect head(0, 0, width(), headHeight - 2);
    painter.setPen(words);
    painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("%1 / %2").arg(eventCount(shown)).arg(maximumMacroEvents));
    painter.drawText(head, Qt::AlignRight | Qt::AlignVCenter, durationText(times().length));
    const QString unreleased = unreleasedKeys();
    if (unreleased.isEmpty())
        return;
    head.setLeft(96);
    painter.drawPixmap(head.left(), (head.height() - warning.height()) / 2, warning);
    head.setLeft(head.left() + warning.width() + 6);
    head.setRight(width() - 96);
    painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(warningText.arg(unreleased), Qt::ElideRight, head.width()));
}

void MacroTimeLine::paintScale(QPainter &painter)
{
    const QRect room = chart();
    QColor line = words;
    line.setAlpha(40);
    // Something to hold on to where there is nothing to show yet.
    const qint64 length = times().length > 0 ? times().length : nominalLength;
    const qint64 step = tickStep(length, room.width());
    for (qint64 at = 0; at <= length; at += step) {
        const int x = room.left() + int(at * room.width() / length);
        painter.setPen(line);
        painter.drawLine(x, room.top(), x, room.bottom());
        painter.setPen(words);
        const QString number = at == 0 ? QStringLiteral("0") : durationText(at);
        if (x + fontMetrics().horizontalAdvance(number) <= room.right())
            painter.drawText(x + 2, height() - 4, number);
    }
    painter.setPen(line);
    painter.drawLine(room.bottomLeft(), room.bottomRight());
}

void MacroTimeLine::paintBar(QPainter &painter, const MacroBar &bar)
{
    const QRectF body = place(bar);
    const bool isDelayBehind = currentRow > 0 && currentRow < shown.size() && !shown.at(currentRow).isEvent() &&
                               (bar.pressRow == currentRow - 1 || bar.releaseRow == currentRow - 1);
    const bool isLit = currentRow >= 0 && (bar.pressRow == currentRow || bar.releaseRow == currentRow || isDelayBehind);
    const bool isMouse = bar.kind == KeyKind::mouseButton;
    const QColor ink = isLit ? QColor::fromRgba(MacroTables::selectedColour) : isMouse ? mouseButtons : keys;
    QColor face = ink;
    face.setAlpha(isLit ? 200 : fill);
    QPen edge(ink);
    if (!bar.isLetGo)
        edge.setStyle(Qt::DashLine);
    painter.setPen(edge);
    painter.setBrush(face);
    painter.drawRoundedRect(body.adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    const QString name = KeyTable::name(KeyTable::find(bar.code, bar.kind));
    if (fontMetrics().horizontalAdvance(name) + 6 > body.width() || fontMetrics().height() > body.height() + 4)
        return;
    painter.setPen(isLit ? Qt::black : Qt::white);
    painter.drawText(body, Qt::AlignCenter, name);
}

void MacroTimeLine::mousePressEvent(QMouseEvent *event)
{
    const MacroBar *bar = event->button() == Qt::LeftButton ? barAt(event->pos()) : nullptr;
    if (!bar) {
        QWidget::mousePressEvent(event);
        return;
    }
    Q_EMIT rowClicked(bar->pressRow >= 0 ? bar->pressRow : bar->releaseRow);
}

bool MacroTimeLine::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const QString unreleased = unreleasedKeys();
    if (const MacroBar *bar = barAt(help->pos())) {
        QToolTip::showText(help->globalPos(),
                           QStringLiteral("%1\n%2 + %3")
                               .arg(KeyTable::name(KeyTable::find(bar->code, bar->kind)), durationText(bar->from),
                                    durationText(bar->to - bar->from)),
                           this);
    } else if (help->pos().y() < headHeight && !unreleased.isEmpty()) {
        QToolTip::showText(help->globalPos(), warningText.arg(unreleased), this);
    } else {
        QToolTip::hideText();
    }
    return true;
}
