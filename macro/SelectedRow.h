#pragma once

#include <QStyledItemDelegate>

/** The selected row of a list: white letters on lime, which only a dark rim makes readable. */
class SelectedRow : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
