#pragma once

#include <QLineEdit>

/** A line edit that shows what the program sets and takes nothing from the user, though it can have the keyboard. */
class MyLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    explicit MyLineEdit(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
};
