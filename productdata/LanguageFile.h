#pragma once

#include <QString>

#include <functional>

class QIODevice;

/** The language files beside the executable. All text that a user reads comes from them. */
namespace LanguageFile {

/** Number of languages; an index outside 0 to languageCount - 1 counts as 0, English. */
constexpr int languageCount = 6;

/** Full path of the file of a language. */
QString path(int index);
/** Name of a language in itself, for the language lists. */
QString nativeName(int index);

/** Called for each element of the section, in the file's order. */
using Apply = std::function<void(const QString &element, const QString &text)>;

/**
 * Reads one section of the file of a language. Unknown sections are skipped; an element inside the section is handed
 * over whatever its name. What was read before a fault in the file stays applied; the fault goes to the log. On the GUI
 * thread alone.
 * \return false if the file can't be opened or holds a fault.
 */
bool readSection(int index, const QString &section, const Apply &apply);

/**
 * The same from an open file or buffer, whose root element has the given name.
 * \return what is wrong with it and in which line; empty if nothing is.
 */
QString readSectionFrom(QIODevice &xml, const QString &section, const Apply &apply,
                        const QString &root = QStringLiteral("Total"));

} // namespace LanguageFile
