#include "ui/LanguageList.h"

#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"

#include <QComboBox>

void fillLanguageList(QComboBox &list)
{
    list.clear();
    for (int index = 0; index < LanguageFile::languageCount; ++index)
        list.addItem(LanguageFile::nativeName(index));
    list.setCurrentIndex(UserSettings::instance()->language());
}
