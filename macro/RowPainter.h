#pragma once

#include <QColor>
#include <QStyledItemDelegate>

/**
 * Paints the rows of the page's lists: picture and white letters, selected on lime, on which only a dark rim makes
 * white readable.
 */
class RowPainter : public QStyledItemDelegate
{
public:
    explicit RowPainter(QObject *parent);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /** The whole text of a row that has no room for it. */
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    const QColor rim;
};
