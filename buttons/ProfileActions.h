#pragma once

#include "devicelink/FlashDataMap.h"

class MyConmboBox;
class QWidget;
class Prompt;
class UpDataParam;

/**
 * What the controls at the edge of the button page do with all settings at once: choose a stored profile, bring back
 * the factory's settings, save everything to a file, take a file over.
 *
 * Each of them shows prompts, in whose event loops anything may happen to the device. What was begun for one mouse is
 * done to that mouse or not at all, and a prompt whose device has gone closes. One action runs at a time.
 */
class ProfileActions
{
public:
    /** \param caller the page; the prompts stand over it; it outlives this */
    explicit ProfileActions(QWidget *caller) : page(caller) {}

    /** The user chose a stored profile, 0 to 3. With the mouse asleep the list goes back to what it showed. */
    void chooseProfile(MyConmboBox *list, int index);
    /** Asks, then sets the active profile to what the factory gave it. Returns when the pages show that. */
    void reset();
    /** Asks for a file and writes to it what the pages show; needs no device that answers, but one that once did. */
    void exportProfile();
    /** Asks for a file and brings it to the mouse and the pages. Returns when that is done. */
    void importProfile();

    /** The record of a file becomes that of the mouse and of every page, at once. The mouse gets what it lacks. */
    static void takeOver(const FlashDataMap &record);

private:
    void run(Prompt &prompt);
    void runWait(UpDataParam &wait);

    QWidget *const page;
};
