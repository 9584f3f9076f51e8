#include "macro/RowPainter.h"

#include "macro/MacroTables.h"
#include "productdata/Theme.h"
#include "ui/RgbText.h"

#include <QIcon>
#include <QPainter>
#include <QPainterPath>

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

    QRect place = option.rect.adjusted(margin, 0, -margin, 0);
    const QIcon picture = index.data(Qt::DecorationRole).value<QIcon>();
    if (!picture.isNull()) {
        QPixmap drawn = picture.pixmap(pictureSize);
        if (isSelected)
            drawn = inOneColour(drawn, rim);
        painter->drawPixmap(place.left(), place.top() + (rowHeight - pictureSize) / 2, drawn);
        place.setLeft(place.left() + pictureSize + pictureGap);
    }
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
