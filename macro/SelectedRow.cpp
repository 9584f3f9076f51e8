#include "macro/SelectedRow.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

namespace {
/** Pixels of the rim, half of which lies under the letters. */
constexpr qreal rimWidth = 3;
const QColor rim(20, 24, 28);
} // namespace

void SelectedRow::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (!(option.state & QStyle::State_Selected)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem row(option);
    initStyleOption(&row, index);
    const QStyle *style = row.widget ? row.widget->style() : QApplication::style();
    const QRect place = style->subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget).adjusted(2, 0, -2, 0);
    const QString text = row.fontMetrics.elidedText(row.text, Qt::ElideRight, place.width());
    row.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);

    QPainterPath letters;
    const qreal baseline = place.center().y() + (row.fontMetrics.ascent() - row.fontMetrics.descent()) / 2.0;
    letters.addText(place.left(), baseline, row.font, text);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->strokePath(letters, QPen(rim, rimWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->fillPath(letters, Qt::white);
    painter->restore();
}
