#include "buttons/ButtonForm.h"

#include "buttons/PlainTextButton.h"
#include "sensor/DebounceTime.h"
#include "ui/FormParts.h"
#include "ui/MyConmboBox.h"
#include "ui/MyToolButton.h"
#include "ui/SmoothPicture.h"

#include <QButtonGroup>
#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

using namespace KeyCatalogue;

namespace {

// Pixels of the page, on a grid of 8.
constexpr QRect picturePlace(115, 12, 432, 356);
constexpr QSize numberSize(38, 38);
/** Of the discs, on the picture of the mouse, in the order of the rows. */
constexpr std::array<QPoint, rowCount> numberPlaces = {
    {{100, 180}, {30, 120}, {110, 110}, {210, 170}, {270, 150}, {180, 70}}};
constexpr QRect chooserPlace(638, 40, 205, 30);
constexpr QRect importPlace(638, 86, 98, 28);
constexpr QRect exportPlace(745, 86, 98, 28);
constexpr QRect resetPlace(638, 122, 205, 28);

// Pixels of the strip. Its columns end 8 px above the edge of the panel.
constexpr QSize pageSize(883, 630);
constexpr int columnTop = 4;
constexpr QRect rowAreaPlace(40, columnTop, 344, 240);
constexpr QRect listPlace(417, columnTop, 205, 240);
constexpr QRect smallListPlace(638, columnTop, 205, 240);

// Pixels of a column.
constexpr int rowPitch = 41;
constexpr QRect firstRowNumber(0, 1, 28, 32);
constexpr QRect firstRow(36, 1, 298, 32);
constexpr QSize entrySize(174, 22);
constexpr int entryPitch = 25;
constexpr QPoint firstEntry(5, 8); // leaves room for the scroll bar of a long list
constexpr QRect debouncePlace(0, 0, 205, 72);

constexpr int textPoints = 9;
constexpr int numberPoints = 10;

QFont fontOf(int points) { return QFont(QStringLiteral("微软雅黑"), points); }

template<typename Button>
Button *addButton(QWidget *parent, const char *name, const QRect &place, const char *text, bool isCheckable)
{
    auto *button = addPlaced<Button>(parent, name, place);
    button->setText(QString::fromUtf8(text));
    button->setFont(fontOf(textPoints));
    button->setCheckable(isCheckable);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

QScrollArea *makeList(const char *name)
{
    auto *area = new QScrollArea;
    area->setObjectName(QLatin1String(name));
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    return area;
}

/** A list of entries in a fixed order, as high as those that are shown need. */
class EntryColumn
{
public:
    explicit EntryColumn(QScrollArea *shownIn) : area(shownIn), content(new QWidget)
    {
        content->resize(smallListPlace.width(), 2 * firstEntry.y());
        area->setWidget(content);
    }
    template<typename Button>
    QToolButton *add(const char *name, const char *text, bool isHidden = false)
    {
        auto *button = addButton<Button>(content, name, {at, entrySize}, text, true);
        if (isHidden) {
            button->hide();
        } else {
            content->resize(content->width(), at.y() + entrySize.height() + firstEntry.y());
            at.ry() += entryPitch;
        }
        return button;
    }

private:
    QScrollArea *area;
    QWidget *content;
    QPoint at = firstEntry;
};

QButtonGroup *makeGroup(QWidget *page)
{
    auto *group = new QButtonGroup(page);
    group->setExclusive(true);
    return group;
}

/** Looks as if the mouse were over it. */
void showHovered(QWidget *widget, bool isHovered)
{
    widget->setAttribute(Qt::WA_UnderMouse, isHovered);
    widget->update();
}

} // namespace

void ButtonForm::build(QWidget *parent)
{
    RowGroup = makeGroup(parent);
    EntryGroup = makeGroup(parent);
    SubEntryGroup = makeGroup(parent);
    NumberGroup = makeGroup(parent);

    buildNumbers(parent);
    groupBox = addPlaced<QFrame>(parent, "groupBox", {0, stripTop, pageSize.width(), columnTop + listPlace.height()});
    buildRows();
    buildLists();
    buildIdlePage();
    buildProfile(parent);
    linkHover();
}

void ButtonForm::buildNumbers(QWidget *parent)
{
    widget = addPlaced<SmoothPicture<QWidget>>(parent, "widget", picturePlace);
    for (int row = 0; row < rowCount; ++row) {
        const auto index = std::size_t(row);
        numbers[index] = addButton<PlainTextButton>(widget, KeyCatalogue::rows[index].number,
                                                    {numberPlaces[index], numberSize}, "", true);
        numbers[index]->setText(QString::number(row + 1));
        NumberGroup->addButton(numbers[index], row);
    }
}

void ButtonForm::buildRows()
{
    rowArea = makeList("rowArea");
    rowArea->setParent(groupBox);
    rowArea->setGeometry(rowAreaPlace);
    auto *content = new QWidget;
    content->setObjectName(QStringLiteral("rowList"));
    content->resize(rowAreaPlace.size());
    rowArea->setWidget(content);
    for (int row = 0; row < rowCount; ++row) {
        const KeyCatalogue::Row &entry = KeyCatalogue::rows[std::size_t(row)];
        auto *label = addPlaced<QLabel>(content, entry.numberLabel, firstRowNumber.translated(0, row * rowPitch));
        label->setText(QString::number(row + 1));
        label->setFont(fontOf(numberPoints));
        label->setAlignment(Qt::AlignCenter);
        rows[std::size_t(row)] =
            addButton<PlainTextButton>(content, entry.name, firstRow.translated(0, row * rowPitch), entry.text, true);
        // The keyboard comes to the rows as to one control: the group leaves the key Tab to the one that had it last.
        rows[std::size_t(row)]->setFocusPolicy(Qt::TabFocus);
        RowGroup->addButton(rows[std::size_t(row)], row);
    }
}

void ButtonForm::buildLists()
{
    stackedWidget = addPlaced<QStackedWidget>(groupBox, "stackedWidget", listPlace);
    page = addPlaced<QWidget>(nullptr, "page", {});
    stackedWidget->addWidget(page);
    page_2 = makeList("page_2");
    stackedWidget->addWidget(page_2);
    EntryColumn column(page_2);
    for (const Entry &each : KeyCatalogue::entries) {
        // What asks in a dialog acts at the press.
        const bool asks = each.action == Action::AskFireKey || each.action == Action::AskCombination;
        QToolButton *const button = asks ? column.add<MyToolButton>(each.name, each.text)
                                         : column.add<QToolButton>(each.name, each.text, each.isHidden);
        EntryGroup->addButton(button);
        entries.insert(button->objectName(), button);
    }

    stackedWidget_2 = addPlaced<QStackedWidget>(groupBox, "stackedWidget_2", smallListPlace);
    for (const ListPage &each : listPages) {
        QWidget *&made = lists[std::size_t(each.list)];
        if (each.list == List::Idle) {
            made = addPlaced<QWidget>(nullptr, each.name, {});
        } else {
            auto *area = makeList(each.name);
            made = area;
            if (each.list == List::Macros) {
                MacroListWidget = addPlaced<QWidget>(nullptr, "MacroListWidget", {0, 0, 205, 220});
                area->setWidget(MacroListWidget);
            }
        }
        stackedWidget_2->addWidget(made);
    }
    for (const ListPage &each : listPages) {
        auto *area = qobject_cast<QScrollArea *>(lists[std::size_t(each.list)]);
        if (!area || each.list == List::Macros)
            continue;
        EntryColumn small(area);
        for (const SubEntry &sub : subEntries) {
            if (sub.list != each.list)
                continue;
            QToolButton *const button = small.add<QToolButton>(sub.name, sub.text);
            SubEntryGroup->addButton(button);
            entries.insert(button->objectName(), button);
        }
    }
}

void ButtonForm::buildIdlePage()
{
    groupBox_2 = addPlaced<QFrame>(lists[std::size_t(List::Idle)], "groupBox_2", debouncePlace);
    label_3 = addPlaced<QLabel>(groupBox_2, "label_3", {0, 0, debouncePlace.width(), 24});
    label_3->setFont(fontOf(textPoints));
    DebunceButton = new DebounceTime(groupBox_2);
    DebunceButton->setObjectName(QStringLiteral("DebunceButton"));
    // Its title stands in label_3, so it gets the room of the list alone.
    DebunceButton->setGeometry(0, 32, 205, 30);
}

void ButtonForm::buildProfile(QWidget *parent)
{
    ProjectChoose = addPlaced<MyConmboBox>(parent, "ProjectChoose", chooserPlace);
    ProjectChoose->setFont(fontOf(textPoints));
    // The page comes up without a control that has the keyboard: an arrow key would change the profile.
    ProjectChoose->setFocusPolicy(Qt::ClickFocus);
    DebunceButton->findChild<QComboBox *>()->setFocusPolicy(Qt::ClickFocus);
    ImportData = addButton<QToolButton>(parent, "ImportData", importPlace, "导入", false);
    OutputData = addButton<QToolButton>(parent, "OutputData", exportPlace, "导出", false);
    Reset = addButton<QToolButton>(parent, "Reset", resetPlace, "恢复出厂", false);
}

/** A row and its number on the mouse light up together, and the number of the chosen row stays lit. */
void ButtonForm::linkHover()
{
    for (int row = 0; row < rowCount; ++row) {
        PlainTextButton *const button = rows[std::size_t(row)];
        PlainTextButton *const number = numbers[std::size_t(row)];
        QObject::connect(button, &PlainTextButton::hovered, number, [number](bool on) { showHovered(number, on); });
        QObject::connect(number, &PlainTextButton::hovered, button, [button](bool on) { showHovered(button, on); });
        QObject::connect(button, &QToolButton::toggled, number, [this, number](bool on) {
            if (on)
                number->setChecked(true);
            else if (number->isChecked())
                uncheckAll(NumberGroup);
        });
    }
}

int ButtonForm::checkedRow() const { return RowGroup->checkedId(); }

void ButtonForm::uncheckAll(QButtonGroup *group)
{
    group->setExclusive(false);
    const QList<QAbstractButton *> buttons = group->buttons();
    for (QAbstractButton *button : buttons)
        button->setChecked(false);
    group->setExclusive(true);
}
