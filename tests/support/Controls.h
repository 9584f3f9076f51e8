#pragma once

#include "devicelink/FlashDataMap.h"

#include <QString>

#include <functional>
#include <vector>

class QWidget;

/** Something that a user sets on the sensor page or the lighting page. */
struct Control
{
    /** Changes it on the pages of a window, away from what the mouse holds. \return what the mouse must hold then. */
    using Change = std::function<FlashDataMap(const QWidget *window, FlashDataMap held)>;

    const char *pageButton; ///< of the device window, to show its page
    const char *name;
    Change change;
};

/** All that is offered, for a Q1 whose active level is below 10000 DPI. */
const std::vector<Control> &controls();

/** What a user does with a widget of a page. */
namespace Hand {

void choose(const QWidget *window, const QString &page, const QString &list, int index);
void press(const QWidget *window, const QString &page, const QString &button);
void slide(const QWidget *window, const QString &page, const QString &slider, int value);

} // namespace Hand
