#pragma once

#include <QList>
#include <QStringList>

#include <functional>
#include <utility>

class ButtonForm;
class QToolButton;

/** The macros of this PC as buttons in their small list. */
class MacroList
{
public:
    /** `onMade` gets each new button, to connect it. */
    MacroList(ButtonForm &ofForm, std::function<void(QToolButton *)> onMade)
        : form(ofForm), connectButton(std::move(onMade))
    {
    }

    /** The macros of these names in this order. Buttons of macros that stay are kept: there may be thousands. */
    void show(const QStringList &names);
    /** Makes the buttons that wait for the list to open. */
    void complete();

    bool isEmpty() const { return names.isEmpty(); }
    /** Index of a macro in the list, -1 without one. */
    int indexOf(const QString &macro) const { return names.indexOf(macro); }
    /** The button at an index; null without one. */
    QToolButton *button(int index);

private:
    QToolButton *make(const QString &name);
    void drop(QToolButton *button);
    void addFillers();
    void resizeContent();

    ButtonForm &form;
    std::function<void(QToolButton *)> connectButton;
    QStringList names;
    QStringList built;                 ///< names of the macros that have their button
    QList<QToolButton *> MacroButtons; ///< one for each macro, then the fillers
};
