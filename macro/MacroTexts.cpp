#include "macro/MacroTexts.h"

#include "macro/MacroTables.h"
#include "productdata/LanguageFile.h"
#include "ui/MyConmboBox.h"

#include <QToolButton>

namespace {

const QString section = QStringLiteral("Macro");
constexpr int japanese = 5;

struct KeptText
{
    const char *key;
    QString MacroTexts::*member;
};

constexpr KeptText keptTexts[] = {
    {"Key1", &MacroTexts::exportMacro},
    {"Key2", &MacroTexts::renameMacro},
    {"Key3", &MacroTexts::deleteMacro},
    {"Key4", &MacroTexts::newMacro},
    {"Key5", &MacroTexts::importMacro},
    {"MacroReal", &MacroTexts::MacroPagePrefix},
    {"NoMacro", &MacroTexts::noMacro},
    {"EmptyRows", &MacroTexts::emptyRows},
    {"NeverReleased", &MacroTexts::neverReleased},
};

/** Takes a name of a mouse button. An empty one would be the name of the key that presses nothing. */
void takeButtonName(MouseButtonNames &names, const MacroTables::EventChoice &choice, const QString &text)
{
    if (choice.insertion != MacroTables::Insertion::MouseButton || text.isEmpty())
        return;
    for (std::size_t bit = 0; bit < names.names.size(); ++bit) {
        if (choice.button == 1U << bit)
            names.names[bit] = text;
    }
}

} // namespace

void MacroTexts::read(int language, MacroForm &form)
{
    LanguageFile::readSection(language, section, [&](const QString &element, const QString &text) {
        for (const MacroTables::Text &entry : MacroTables::texts) {
            if (element == QLatin1String(entry.key))
                MacroTables::setText(form, entry, text);
        }
        for (const KeptText &entry : keptTexts) {
            if (element == QLatin1String(entry.key))
                this->*entry.member = text;
        }
        for (int index = 0; index < int(MacroTables::eventChoices.size()); ++index) {
            const MacroTables::EventChoice &choice = MacroTables::eventChoices[std::size_t(index)];
            if (element != QLatin1String(choice.key))
                continue;
            form.ChooseEvent->setItemText(index + 1, text);
            takeButtonName(MouseButtonNames::current(), choice, text);
        }
        // The Japanese word is the longest and the first to be shortened.
        if (element == QLatin1String("NewHong"))
            form.NewHong->setToolTip(language == japanese ? text : QString());
    });
}

QVector<MouseButtonNames> MacroTexts::mouseButtonsOfAllLanguages()
{
    QVector<MouseButtonNames> all{MouseButtonNames::current()};
    for (int language = 0; language < LanguageFile::languageCount; ++language) {
        MouseButtonNames names;
        LanguageFile::readSection(language, section, [&](const QString &element, const QString &text) {
            for (const MacroTables::EventChoice &choice : MacroTables::eventChoices) {
                if (element == QLatin1String(choice.key))
                    takeButtonName(names, choice, text);
            }
        });
        all += names;
    }
    return all;
}
