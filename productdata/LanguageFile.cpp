#include "productdata/LanguageFile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QObject>
#include <QXmlStreamReader>

#include <array>

namespace {

struct Language
{
    const char *file;
    const char *nativeName;
};

constexpr std::array<Language, LanguageFile::languageCount> languages = {{
    {"/Language/0-English.xml", "English"},
    {"/Language/1-简体中文.xml", "简体中文"},
    {"/Language/2-繁体中文.xml", "繁體中文"},
    {"/Language/3-Korea.xml", "한국어"},
    {"/Language/4-Russia.xml", "Русский"},
    {"/Language/5-Japanese.xml", "日本語"},
}};

const Language &language(int index)
{
    return languages[index >= 0 && index < LanguageFile::languageCount ? static_cast<std::size_t>(index) : 0U];
}

void readElements(QXmlStreamReader &reader, const LanguageFile::Apply &apply)
{
    while (reader.readNextStartElement()) {
        const QString element = reader.name().toString();
        // A text with elements of its own isn't one of ours; the text around them is taken and they are skipped.
        const QString text = reader.readElementText(QXmlStreamReader::SkipChildElements);
        if (!reader.hasError())
            apply(element, text);
    }
}

} // namespace

QString LanguageFile::path(int index)
{
    return QCoreApplication::applicationDirPath() + QString::fromUtf8(language(index).file);
}

QString LanguageFile::nativeName(int index) { return QString::fromUtf8(language(index).nativeName); }

bool LanguageFile::readSection(int index, const QString &section, const Apply &apply)
{
    QFile file(path(index));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning() << "a language file could not be opened:" << file.fileName() << file.errorString();
        return false;
    }
    const QString fault = readSectionFrom(file, section, apply);
    if (!fault.isEmpty())
        qWarning() << "a language file is damaged:" << file.fileName() << fault;
    return fault.isEmpty();
}

QString LanguageFile::readSectionFrom(QIODevice &xml, const QString &section, const Apply &apply, const QString &root)
{
    QXmlStreamReader reader(&xml);
    if (reader.readNextStartElement()) {
        if (reader.name() == root) {
            while (reader.readNextStartElement()) {
                if (reader.name() == section)
                    readElements(reader, apply);
                else
                    reader.skipCurrentElement();
            }
        } else {
            reader.raiseError(QObject::tr("Not a labels file"));
        }
    }
    if (!reader.hasError())
        return {};
    return QStringLiteral("line %1: %2").arg(QString::number(reader.lineNumber()), reader.errorString());
}
