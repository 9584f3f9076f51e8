#pragma once

#include <QObject>
#include <QTranslator>

/**
 * Qt's own words, those of its file and colour dialogs and of the menus of entry fields, in the language of the program
 * while this lives. They come with Qt and not with the program: beside it where it was installed as a whole, else where
 * the system keeps them, else they are English.
 */
class QtTexts : public QObject
{
public:
    explicit QtTexts(QObject *parent = nullptr);

private:
    /** Takes the words of a language, 0 to 5; another index counts as English. */
    void load(int language);

    QTranslator translator; ///< its end takes it away from the application
};
