#include "buttons/FunctionMenu.h"

#include "buttons/ButtonForm.h"
#include "ui/ChangeSheet.h"

#include <QButtonGroup>
#include <QFrame>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QToolButton>

namespace {

using KeyCatalogue::List;

constexpr int closedRowBar = 10; // px

/** The steps rarely end exactly at the entry, so it is brought into sight where they miss it. */
void scrollTo(QScrollArea *area, int place, QToolButton *button)
{
    area->verticalScrollBar()->setValue(KeyCatalogue::scrollStep * place);
    if (button && !button->isHidden())
        area->ensureWidgetVisible(button, 0, 0);
}

} // namespace

FunctionMenu::State FunctionMenu::state() const
{
    if (form.stackedWidget->currentWidget() == form.page)
        return State::Closed;
    const bool isIdle = form.stackedWidget_2->currentIndex() == int(List::Idle);
    return isIdle ? State::ListOpen : State::SmallListOpen;
}

void FunctionMenu::close()
{
    form.stackedWidget->setCurrentWidget(form.page);
    setRowBar(closedRowBar);
    showList(List::Idle);
}

void FunctionMenu::showEntries() { form.stackedWidget->setCurrentWidget(form.page_2); }

void FunctionMenu::showList(List list) { form.stackedWidget_2->setCurrentIndex(int(list)); }

void FunctionMenu::open(const KeyCatalogue::Place *entry, QToolButton *small, int smallPlace)
{
    ButtonForm::uncheckAll(form.EntryGroup);
    uncheckSmall();
    showEntries();
    showList(entry ? entry->list : List::Idle);
    if (!entry)
        return;
    QToolButton *const button = form.entry(entry->entry);
    button->setChecked(true);
    scrollTo(form.page_2, entry->place, button);
    auto *const area = qobject_cast<QScrollArea *>(form.stackedWidget_2->currentWidget());
    if (!small || !area)
        return;
    small->setChecked(true);
    scrollTo(area, smallPlace, small);
}

void FunctionMenu::uncheckSmall() { ButtonForm::uncheckAll(form.SubEntryGroup); }

void FunctionMenu::uncheckRows() { ButtonForm::uncheckAll(form.RowGroup); }

void FunctionMenu::pressBeside(const QPoint &position)
{
    // The rows and lists know their places in the strip.
    const QPoint inStrip = position - QPoint(0, ButtonForm::stripTop);
    const bool isInStrip = form.groupBox->geometry().contains(position);
    const bool isInRows = form.rowArea->geometry().contains(inStrip);
    const bool isInList = form.stackedWidget->geometry().contains(inStrip);
    const bool isInSmallList = form.stackedWidget_2->geometry().contains(inStrip);

    if (state() == State::SmallListOpen && !isInStrip)
        close();
    if (state() == State::ListOpen && !isInRows && !isInList)
        close();

    switch (state()) {
    case State::Closed:
        if (!isInRows || isInList)
            uncheckRows();
        break;
    case State::ListOpen:
        if (!isInStrip) {
            uncheckRows();
            close();
        }
        break;
    case State::SmallListOpen:
        if (!isInRows && !isInList && !isInSmallList) {
            uncheckRows();
            close();
        }
        break;
    }
    // The lower edge of the picture lies under the strip.
    if (form.widget->geometry().contains(position) && !isInStrip) {
        uncheckRows();
        close();
    }
}

void FunctionMenu::setRowBar(int pixels)
{
    changeSheet(form.rowArea->verticalScrollBar(), QStringLiteral("QScrollBar {width:%1px;}").arg(pixels));
}
