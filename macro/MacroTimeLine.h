#pragma once

#include "macro/MacroTimes.h"

#include <QColor>
#include <QPixmap>
#include <QWidget>

/**
 * A macro to look at: keys as bars over milliseconds, mouse buttons in a colour of their own, the selected row lit. It
 * tells the length, and warns of keys that are never let go. Nothing is computed while it is hidden.
 */
class MacroTimeLine : public QWidget
{
    Q_OBJECT
public:
    explicit MacroTimeLine(QWidget *parent = nullptr);

    void setRows(const MacroRows &rows);
    void setCurrentRow(int row);
    /** The text of the warning, with %1 for the names of the keys. */
    void setWarningText(const QString &text);
    /** The sign of the warning. */
    void setWarningPicture(const QPixmap &picture);

Q_SIGNALS:
    /** A bar was clicked; the row is that of its press, or of its release without one. */
    void rowClicked(int row);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool event(QEvent *event) override;

private:
    const MacroTimes &times();
    QRect chart() const;
    QRectF place(const MacroBar &bar);
    const MacroBar *barAt(QPoint position);
    QString unreleasedKeys();

    void paintScale(QPainter &painter);
    void paintBar(QPainter &painter, const MacroBar &bar);
    void paintHead(QPainter &painter);

    MacroRows shown;
    MacroTimes computed;
    bool isComputed = false;
    int currentRow = -1;
    const QColor words;
    const QColor keys;
    const QColor mouseButtons;
    QString warningText;
    QPixmap warning;
};
