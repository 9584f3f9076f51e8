#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

/**
 * A panel as large as its widget, from a picture whose edges keep their size. Between its left and right edge the
 * picture is the same in each column, so a strip of it is stretched to the height and kept, and painted side by side. A
 * style sheet stretches all of it each time that it paints, which takes some two thirds of what the whole rest of a
 * page costs.
 */
class Panel : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    /** \param file loaded when the panel is drawn for the first time */
    void setPicture(const QString &file) { picture = file; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString picture;
    QPixmap strip; ///< both edges and some of what lies between them
};
