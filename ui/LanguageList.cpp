#include "ui/LanguageList.h"

#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"

#include <QComboBox>

void fillLanguageList(QComboBox &list)
{
    list.clear();
    for (int index = 0; index < LanguageFile::languageCount; ++index)
        list.addItem(LanguageFile::nativeName(index));
    const int language = UserSettings::instance()->language();
    list.setCurrentIndex(language >= 0 && language < LanguageFile::languageCount ? language : 0);
}
