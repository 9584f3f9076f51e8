#pragma once

#include <QFile>
#include <QHash>
#include <QStringList>
#include <QXmlStreamReader>

/** A language file, read apart from the program's reader. */
struct LanguageDocument
{
    explicit LanguageDocument(const QString &path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            error = file.errorString();
            return;
        }
        QXmlStreamReader reader(&file);
        reader.readNextStartElement();
        root = reader.name().toString();
        while (reader.readNextStartElement()) {
            const QString section = reader.name().toString();
            order << section;
            while (reader.readNextStartElement()) {
                const QString element = section + QLatin1Char('/') + reader.name();
                order << element;
                text[element] = reader.readElementText();
            }
        }
        // readNextStartElement stops at the root's end; what stands behind it must be well formed too.
        while (!reader.atEnd())
            reader.readNext();
        if (reader.hasError())
            error = QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
    }

    QString error;
    QString root;
    QStringList order;            ///< "Section" and "Section/element", in the file's order, repeats included
    QHash<QString, QString> text; ///< by "Section/element"
};
