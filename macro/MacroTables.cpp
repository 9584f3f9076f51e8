#include "macro/MacroTables.h"

#include "ui/FittedText.h"
#include "ui/PageFont.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace {
/** Points of the two headings over the lists. */
constexpr qreal headingSize = 12;
} // namespace

void MacroTables::setText(MacroForm &form, const Text &text, const QString &words)
{
    if (text.label) {
        const bool isHeading = text.label == &MacroForm::label || text.label == &MacroForm::label_2;
        FittedText::set(form.*text.label, words, isHeading ? headingSize : PageFont::points, 0);
        return;
    }
    QAbstractButton *button = text.button ? static_cast<QAbstractButton *>(form.*text.button)
                              : text.box  ? static_cast<QAbstractButton *>(form.*text.box)
                                          : form.*text.recordButton;
    FittedText::set(button, words, PageFont::points);
}
