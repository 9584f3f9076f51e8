#include "macro/RowPainter.h"

#include "macro/MacroTables.h"
#include "productdata/Theme.h"
#include "ui/RgbText.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

namespace {

// Pixels.
constexpr int rowHeight = 26;
constexpr int margin = 10;
constexpr int pictureSize = 16;
constexpr int pictureGap = 10;
/** Of the rim, half of which lies under the letters. */
constexpr qreal rimWidth = 2.5;

// Of a list that can't be used now; the letters stay readable on the ground of the selected row.
constexpr qreal disabledOpacity = 0.45;
constexpr qreal disabledTextOpacity = 0.75;

/** The lines of a picture in another colour. */
QPixmap inOneColour(QPixmap picture, const QColor &colour)
{
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), colour);
    return picture;
}

/** What a row's picture leaves to its text. */
QRect textPlace(const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const bool hasPicture = !index.data(Qt::DecorationRole).value<QIcon>().isNull();
    return option.rect.adjusted(margin + (hasPicture ? pictureSize + pictureGap : 0), 0, -margin, 0);
}

} // namespace

RowPainter::RowPainter(QObject *parent) : QStyledItemDelegate(parent), rim(colourOf(Theme::rgb(Theme::Tone::Window))) {}

QSize RowPainter::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const { return {margin, rowHeight}; }

void RowPainter::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isEnabled = option.state & QStyle::State_Enabled;
    painter->save();
    painter->setOpacity(isEnabled ? 1 : disabledOpacity);
    if (isSelected)
        painter->fillRect(option.rect, QColor::fromRgba(MacroTables::selectedColour));

    const QIcon picture = index.data(Qt::DecorationRole).value<QIcon>();
    if (!picture.isNull()) {
        QPixmap drawn = picture.pixmap(pictureSize);
        if (isSelected)
            drawn = inOneColour(drawn, rim);
        painter->drawPixmap(option.rect.left() + margin, option.rect.top() + (rowHeight - pictureSize) / 2, drawn);
    }
    const QRect place = textPlace(option, index);
    const QString text =
        option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, place.width(), Qt::TextSingleLine);
    painter->setOpacity(isEnabled ? 1 : disabledTextOpacity);
    painter->setPen(Qt::white);
    painter->setFont(option.font);
    if (isSelected) {
        QPainterPath letters;
        const qreal baseline =
            place.top() + (place.height() + option.fontMetrics.ascent() - option.fontMetrics.descent()) / 2.0;
        letters.addText(place.left(), baseline, option.font, text);
        painter->setRenderHint(QPainter::Antialiasing);
        painter->strokePath(letters, QPen(rim, rimWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->fillPath(letters, Qt::white);
    } else {
        painter->drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    }
    painter->restore();
}

bool RowPainter::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                           const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QString text = index.data().toString();
    const bool isWhole = option.fontMetrics.horizontalAdvance(text) <= textPlace(option, index).width();
    // A name with a tag in it is to be read, not obeyed.
    const QString whole = QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());
    QToolTip::showText(event->globalPos(), isWhole ? QString() : whole, view);
    return true;
}
