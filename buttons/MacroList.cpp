#include "buttons/MacroList.h"

#include "buttons/ButtonForm.h"
#include "buttons/PlainTextButton.h"

#include <QButtonGroup>
#include <QSet>
#include <QVBoxLayout>

namespace {

constexpr QSize macroSize(174, 22);
constexpr QSize fillerSize(174, 23);
constexpr int margin = 8;
constexpr int leftMargin = 5; // leaves room for the scroll bar
constexpr int spacing = 3;
constexpr int points = 9;
/** A short list is filled up to this many buttons, which nobody sees. */
constexpr int filledCount = 7;
constexpr QSize leastContent(205, 220);
/** A longer list gets its buttons when it opens: to style thousands takes longer than the whole start may. */
constexpr int atOnce = 100;

} // namespace

void MacroList::show(const QStringList &wanted)
{
    names = wanted;
    if (names.size() <= atOnce || built.size() > atOnce)
        complete();
}

QToolButton *MacroList::button(int index)
{
    complete();
    return MacroButtons.value(index);
}

void MacroList::complete()
{
    if (names == built)
        return;
    const QSet<QString> stays(names.begin(), names.end());
    QList<QToolButton *> kept;
    for (int index = 0; index < MacroButtons.size(); ++index) {
        if (index < built.size() && stays.contains(built.at(index)))
            kept += MacroButtons.at(index);
        else
            drop(MacroButtons.at(index));
    }
    auto *layout = qobject_cast<QVBoxLayout *>(form.MacroListWidget->layout());
    if (!layout) {
        layout = new QVBoxLayout(form.MacroListWidget);
        layout->setContentsMargins(leftMargin, margin, 0, margin);
        layout->setSpacing(spacing);
        layout->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    }
    MacroButtons.clear();
    // Both lists are sorted alike, so the buttons that stay come in the order of the new list.
    int next = 0;
    for (const QString &name : qAsConst(names)) {
        if (next < kept.size() && kept.at(next)->text() == name) {
            MacroButtons += kept.at(next++);
            continue;
        }
        QToolButton *const made = make(name);
        layout->insertWidget(MacroButtons.size(), made);
        MacroButtons += made;
    }
    // What came out of order was made anew.
    for (; next < kept.size(); ++next)
        drop(kept.at(next));
    built = names;
    addFillers();
    resizeContent();
}

QToolButton *MacroList::make(const QString &name)
{
    auto *button = new PlainTextButton(form.MacroListWidget);
    button->setCheckable(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setFont(QFont(QStringLiteral("微软雅黑"), points));
    button->setFixedSize(macroSize);
    button->setPlainText(name);
    form.SubEntryGroup->addButton(button);
    connectButton(button);
    return button;
}

/** Takes a button out of the list. It may stand in its own click, so it goes when the event loop is back. */
void MacroList::drop(QToolButton *button)
{
    form.SubEntryGroup->removeButton(button);
    form.MacroListWidget->layout()->removeWidget(button);
    button->hide();
    button->deleteLater();
}

void MacroList::addFillers()
{
    if (names.isEmpty())
        return;
    while (MacroButtons.size() < filledCount) {
        auto *filler = new QToolButton(form.MacroListWidget);
        filler->setMinimumSize(fillerSize);
        filler->setEnabled(false);
        filler->hide();
        form.MacroListWidget->layout()->addWidget(filler);
        MacroButtons += filler;
    }
}

void MacroList::resizeContent()
{
    const int height = 2 * margin + names.size() * (macroSize.height() + spacing) - spacing;
    form.MacroListWidget->resize(leastContent.expandedTo({leastContent.width(), height}));
    form.MacroListWidget->layout()->activate();
}
