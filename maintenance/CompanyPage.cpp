#include "maintenance/CompanyPage.h"

#include "productdata/LanguageFile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QUrl>

namespace {

constexpr int english = 0;
constexpr int simplifiedChinese = 1;
/** The last language for which the file holds an address, that of the Chinese page. */
constexpr int lastWithAddress = 4;

/** Name of the element that holds the address for a language; null for one without a page. */
const char *addressElement(int language)
{
    if (language == english)
        return "CompanyWeben";
    return language > english && language <= lastWithAddress ? "CompanyWebcn" : nullptr;
}

} // namespace

CompanyPage readCompanyPageFrom(QIODevice &xml, int language)
{
    CompanyPage page;
    const QString own = language == english             ? QStringLiteral("English")
                        : language == simplifiedChinese ? QStringLiteral("Chinese")
                                                        : QString();
    const auto take = [&](const QString &element, const QString &text) {
        if (element == QLatin1String("CompanyName"))
            page.name = text.trimmed();
        else if (addressElement(language) && element == QLatin1String(addressElement(language)))
            page.address = text.trimmed();
    };
    // What the file says for all languages comes first, so that what it says for this one stands.
    for (const QString &section : {QStringLiteral("Web"), own}) {
        xml.seek(0);
        const QString fault = LanguageFile::readSectionFrom(xml, section, take, QStringLiteral("Profile"));
        if (fault.isEmpty())
            continue;
        qWarning() << "the file of the maker's page is damaged:" << fault;
        break;
    }
    return page;
}

CompanyPage readCompanyPage(int language)
{
    QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/Language/Net.xml"));
    if (file.open(QIODevice::ReadOnly))
        return readCompanyPageFrom(file, language);
    qWarning() << "the file of the maker's page could not be opened:" << file.fileName() << file.errorString();
    return {};
}

bool isWebAddress(const QString &address)
{
    const QUrl url(address, QUrl::StrictMode);
    const bool isWeb = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && isWeb && !url.host().isEmpty();
}
