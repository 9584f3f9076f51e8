#pragma once

#include "macro/KeyTable.h"

#include <QString>
#include <QVector>

class MacroForm;

/** The texts of the macro page in the language of the user, those that no widget shows all the time among them. */
struct MacroTexts
{
    QString exportMacro;
    QString renameMacro;
    QString deleteMacro;
    QString newMacro;
    QString importMacro;
    QString noMacro;         ///< what to do without a macro
    QString emptyRows;       ///< what to do with a macro without rows
    QString neverReleased;   ///< a warning, with %1 for keys
    QString MacroPagePrefix; ///< what stands before a macro's name on the button page

    /** Reads a language into this, the widgets and the names of the mouse buttons. */
    void read(int language, MacroForm &form);

    /** The names of the mouse buttons in all languages, those on show first. */
    static QVector<MouseButtonNames> mouseButtonsOfAllLanguages();
};
