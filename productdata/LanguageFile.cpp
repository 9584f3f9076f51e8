#include "productdata/LanguageFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QVector>
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

using ApplyFor = std::function<LanguageFile::Apply(const QString &section)>; ///< null for a section to be skipped

QString readFrom(QIODevice &xml, const QString &root, const ApplyFor &applyFor)
{
    QXmlStreamReader reader(&xml);
    if (reader.readNextStartElement()) {
        if (reader.name() == root) {
            while (reader.readNextStartElement()) {
                if (const LanguageFile::Apply apply = applyFor(reader.name().toString()))
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

/**
 * What one file holds. Pages and prompts ask for one section after the other, each of them once in a language; so the
 * file that was asked for last is kept, as long as it is the same on the disk.
 */
struct Content
{
    struct Text
    {
        QString section;
        QString element;
        QString text;
    };

    QString path;
    QDateTime modified;
    qint64 size = -1;
    QVector<Text> texts;
    QString fault; ///< empty if the file is whole
};

/** Null if the file can't be opened. */
const Content *contentOf(const QString &path)
{
    static Content last;
    const QFileInfo present(path);
    if (last.path == path && present.exists() && last.modified == present.lastModified() && last.size == present.size())
        return &last;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning() << "a language file could not be opened:" << path << file.errorString();
        return nullptr;
    }
    last = {path, present.lastModified(), present.size(), {}, {}};
    last.fault = readFrom(file, QStringLiteral("Total"), [](const QString &section) -> LanguageFile::Apply {
        return [section](const QString &element, const QString &text) { last.texts.append({section, element, text}); };
    });
    return &last;
}

} // namespace

QString LanguageFile::path(int index)
{
    return QCoreApplication::applicationDirPath() + QString::fromUtf8(language(index).file);
}

QString LanguageFile::nativeName(int index) { return QString::fromUtf8(language(index).nativeName); }

bool LanguageFile::readSection(int index, const QString &section, const Apply &apply)
{
    const Content *const held = contentOf(path(index));
    if (!held)
        return false;
    const Content content = *held; // shared, not copied: who applies a text may ask for another file
    for (const Content::Text &each : content.texts) {
        if (each.section == section)
            apply(each.element, each.text);
    }
    if (!content.fault.isEmpty())
        qWarning() << "a language file is damaged:" << content.path << content.fault;
    return content.fault.isEmpty();
}

QString LanguageFile::readSectionFrom(QIODevice &xml, const QString &section, const Apply &apply, const QString &root)
{
    return readFrom(xml, root, [&](const QString &each) { return each == section ? apply : Apply(); });
}
