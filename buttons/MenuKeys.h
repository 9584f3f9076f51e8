#pragma once

#include <QObject>
#include <QPointer>

class ButtonForm;
class FunctionMenu;
class QToolButton;
class QWidget;

/**
 * The keyboard on the rows and in the menu: Up and Down move, Return and Space choose as a click does, Left and Right
 * go from list to list, Escape closes one and at last leaves the rows. The keyboard goes where a choice leads: into the
 * list that opened, or back to the row whose menu closed.
 *
 * A choice is made when its key is let go. One that is still down would go on into the dialog that it opened, where
 * every key is an entry.
 */
class MenuKeys : public QObject
{
public:
    MenuKeys(ButtonForm &ofForm, FunctionMenu &ofMenu) : form(ofForm), menu(ofMenu) {}

    /** From now on these keys work on a row or on an entry of a list. */
    void watch(QToolButton *button);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *list(int level) const;
    int levelOf(const QToolButton &button) const;
    bool press(QToolButton *button, int key);
    void enter(int level);
    void step(const QToolButton &from, int steps);
    void choose(QToolButton *button);
    void close(int level);

    ButtonForm &form;
    FunctionMenu &menu;
    QPointer<QToolButton> held; ///< the one whose key is down
};
