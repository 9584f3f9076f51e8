#pragma once

#include <QString>

class ButtonRows;

/**
 * Macros on buttons: assigned from their files, and followed when they are saved, renamed or deleted. Which rows play a
 * macro is told by their texts.
 */
class ButtonMacros
{
public:
    /** What of a macro was saved. */
    enum Saved { Events = 0, Repeat = 1 };

    explicit ButtonMacros(ButtonRows &ofRows) : rows(ofRows) {}

    /** Puts the macro of a file on a row. Without the file, or with a mouse that doesn't answer, nothing changes. */
    void assign(int row, const QString &macro);
    /**
     * Brings a saved macro to all rows that play it. For changed events this waits, serving the event loop, until the
     * file is on the disk and the macro page has its rows.
     */
    void follow(const QString &macro, int saved);
    void rename(const QString &from, const QString &to);

private:
    void sendRepeatCode(int row, const QString &macro);

    ButtonRows &rows;
};
