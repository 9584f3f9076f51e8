#pragma once

#include "buttons/KeyCatalogue.h"

#include <QPoint>

class ButtonForm;
class QToolButton;

/**
 * The two-level menu of functions beside the rows: closed, the list of functions, or that and a small list. It opens,
 * closes, and shows what a row has; what a click on an entry means is the page's business.
 */
class FunctionMenu
{
public:
    enum class State { Closed, ListOpen, SmallListOpen };

    explicit FunctionMenu(ButtonForm &ofForm) : form(ofForm) {}

    State state() const;
    /** Neither list shows. The checked row stays. */
    void close();
    /** The list of functions alone. */
    void showEntries();
    /** A small list beside the list of functions. */
    void showList(KeyCatalogue::List list);

    /**
     * Opens the menu at a function: its entry checked and scrolled to, and its small list open.
     * \param entry the place of a KeyFunction; null checks nothing, for a function that no list offers.
     * \param small its button in the small list, or null; \param smallPlace where that stands, in steps of the scroll
     * bar.
     */
    void open(const KeyCatalogue::Place *entry, QToolButton *small, int smallPlace);

    /** No entry of a small list is checked. */
    void uncheckSmall();
    /** No row is checked, so the next choice changes nothing. */
    void uncheckRows();

    /** A press on the page beside all controls, at a place of the page: closes what was left, and lets the row go. */
    void pressBeside(const QPoint &position);

    /** Width of the scroll bar of the rows, which gives way while the menu is open. */
    void setRowBar(int pixels);

private:
    ButtonForm &form;
};
