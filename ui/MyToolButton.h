#pragma once

#include <QToolButton>

/**
 * A tool button that acts at the press: a left press checks it and emits clicked(false), a left double click checks it
 * and emits clicked(true). Other mouse buttons do nothing.
 */
class MyToolButton : public QToolButton
{
    Q_OBJECT
public:
    explicit MyToolButton(QWidget *parent = nullptr) : QToolButton(parent) {}

    /** What a left press does; click() would emit clicked(true). */
    void act();

Q_SIGNALS:
    void doubleClicked(); ///< never emitted; clicked(true) tells a double click

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void act(bool isDouble);
};
