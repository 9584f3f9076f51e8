#include "buttons/MenuKeys.h"

#include "buttons/ButtonForm.h"
#include "buttons/FunctionMenu.h"
#include "buttons/PlainTextButton.h"
#include "ui/MyToolButton.h"

#include <QApplication>
#include <QFrame>
#include <QKeyEvent>
#include <QScrollArea>
#include <QStackedWidget>

#include <algorithm>

namespace {

/** Levels of the menu, from left to right. */
enum Level { Rows, Entries, SmallEntries };

/** What stays in sight above and below the button that has the keyboard, in px. */
constexpr int sightMargin = 8;

bool chooses(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space; }

/** What can be chosen of a list, from its top; buttons of macros are made in another order than they stand in. */
QList<QToolButton *> buttonsOf(const QWidget &list)
{
    QList<QToolButton *> buttons = list.findChildren<QToolButton *>(QString(), Qt::FindDirectChildrenOnly);
    buttons.erase(std::remove_if(buttons.begin(), buttons.end(),
                                 [](const QToolButton *button) { return button->isHidden() || !button->isEnabled(); }),
                  buttons.end());
    std::sort(buttons.begin(), buttons.end(),
              [](const QToolButton *one, const QToolButton *other) { return one->y() < other->y(); });
    return buttons;
}

void giveFocus(QToolButton *button)
{
    for (QWidget *parent = button->parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto *const area = qobject_cast<QScrollArea *>(parent))
            area->ensureWidgetVisible(button, 0, sightMargin);
    }
    button->setFocus(Qt::TabFocusReason);
}

} // namespace

void MenuKeys::watch(QToolButton *button) { button->installEventFilter(this); }

bool MenuKeys::eventFilter(QObject *watched, QEvent *event)
{
    auto *const button = qobject_cast<QToolButton *>(watched);
    if (event->type() == QEvent::MouseButtonPress && form.groupBox->isAncestorOf(QApplication::focusWidget()))
        form.groupBox->parentWidget()->setFocus(); // who has gone on to the mouse is done with the keys
    if (!button || (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease))
        return QObject::eventFilter(watched, event);
    const auto *const key = static_cast<QKeyEvent *>(event);
    if (event->type() == QEvent::KeyPress && !chooses(key->key()))
        return press(button, key->key());
    if (!chooses(key->key()))
        return false;
    if (key->isAutoRepeat())
        return true;
    const bool isPress = event->type() == QEvent::KeyPress;
    const bool isChosen = !isPress && held == button;
    held = isPress ? button : nullptr;
    button->setDown(isPress);
    if (isChosen)
        choose(button);
    return true;
}

/** A key that chooses nothing. \return true if it means something here. */
bool MenuKeys::press(QToolButton *button, int key)
{
    const int level = levelOf(*button);
    switch (key) {
    case Qt::Key_Up:
        step(*button, -1);
        return true;
    case Qt::Key_Down:
        step(*button, 1);
        return true;
    case Qt::Key_Left:
        enter(level - 1);
        return true;
    case Qt::Key_Right:
        enter(level + 1);
        return true;
    case Qt::Key_Escape:
        close(level);
        return true;
    default:
        return false;
    }
}

/** The widget whose children are the buttons of a level; null while it doesn't show. */
QWidget *MenuKeys::list(int level) const
{
    const FunctionMenu::State state = menu.state();
    if (level == Rows)
        return form.rowArea->widget();
    if (level == Entries && state != FunctionMenu::State::Closed)
        return form.page_2->widget();
    if (level == SmallEntries && state == FunctionMenu::State::SmallListOpen)
        return qobject_cast<QScrollArea *>(form.stackedWidget_2->currentWidget())->widget();
    return nullptr;
}

int MenuKeys::levelOf(const QToolButton &button) const
{
    const QWidget *const parent = button.parentWidget();
    return parent == form.rowArea->widget() ? Rows : parent == form.page_2->widget() ? Entries : SmallEntries;
}

/** To the checked button of a level, or its first, if there is one. */
void MenuKeys::enter(int level)
{
    const QWidget *const shown = list(level);
    const QList<QToolButton *> buttons = shown ? buttonsOf(*shown) : QList<QToolButton *>();
    if (buttons.isEmpty())
        return;
    const auto checked =
        std::find_if(buttons.begin(), buttons.end(), [](const QToolButton *button) { return button->isChecked(); });
    giveFocus(checked != buttons.end() ? *checked : buttons.first());
}

void MenuKeys::step(const QToolButton &from, int steps)
{
    const QList<QToolButton *> buttons = buttonsOf(*from.parentWidget());
    const int to = buttons.indexOf(const_cast<QToolButton *>(&from)) + steps;
    if (to >= 0 && to < buttons.size())
        giveFocus(buttons.at(to));
}

/** The dialog of a choice may see the page go, and a list of macros new buttons. */
void MenuKeys::choose(QToolButton *button)
{
    const int level = levelOf(*button);
    if (auto *const asking = qobject_cast<MyToolButton *>(button))
        asking->act();
    else
        button->click();
    if (!form.groupBox->isVisible())
        return;
    const bool isClosed = menu.state() == FunctionMenu::State::Closed;
    if (!isClosed)
        enter(level + 1);
    else if (level != Rows || form.checkedRow() >= 0)
        enter(Rows);
}

void MenuKeys::close(int level)
{
    if (level == SmallEntries) {
        menu.showList(KeyCatalogue::List::Idle);
        enter(Entries);
        return;
    }
    const int row = form.checkedRow();
    menu.uncheckRows();
    menu.close();
    if (row >= 0)
        giveFocus(form.rows[std::size_t(row)]);
    else
        form.groupBox->parentWidget()->setFocus(); // there was nothing to close, so the user is done with the rows
}
