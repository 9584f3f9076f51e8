#include "ui/QtTexts.h"

#include "app/hub/PostMsg.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserSettings.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace {

/** As Qt calls the languages of the program, in their order. */
constexpr const char *qtLanguages[LanguageFile::languageCount] = {"en", "zh_CN", "zh_TW", "ko", "ru", "ja"};

} // namespace

QtTexts::QtTexts(QObject *parent) : QObject(parent)
{
    load(UserSettings::instance()->language());
    QCoreApplication::installTranslator(&translator);
    connect(postMsg(), &PostMsg::SigChangeLanguage, this, &QtTexts::load);
}

void QtTexts::load(int language)
{
    const bool isKnown = language >= 0 && language < LanguageFile::languageCount;
    const QString name = QStringLiteral("qtbase_") + QLatin1String(qtLanguages[isKnown ? language : 0]);
    if (!translator.load(name, QCoreApplication::applicationDirPath() + QStringLiteral("/translations")))
        translator.load(name, QLibraryInfo::location(QLibraryInfo::TranslationsPath));
}
