#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

/**
 * A panel as large as its widget, from a picture whose edges keep their size. It is kept as it was drawn: to stretch
 * the picture takes some two thirds of what the whole rest of a page costs, and a style sheet does it each time.
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
    QPixmap drawn;
};
