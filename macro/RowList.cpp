#include "macro/RowList.h"

#include <QDataStream>
#include <QKeyEvent>
#include <QListWidget>
#include <QPixmap>
#include <QScrollBar>
#include <QSignalBlocker>

Q_DECLARE_METATYPE(MacroRow)

namespace {

constexpr std::size_t mostEditsBack = 100;
constexpr int rowRole = Qt::UserRole;

QByteArray streamed(const QIcon &icon)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << icon;
    return bytes;
}

} // namespace

RowList::RowList(QListWidget *listWidget, const QString &pictures, QObject *parent)
    : QObject(parent), list(listWidget), press(pictures + QStringLiteral("MacroDown.png")),
      release(pictures + QStringLiteral("MacroUp.png")),
      delay(pictures + QStringLiteral("MacroTime.png")), bytes{streamed(press), streamed(release), streamed(delay)}
{
    list->installEventFilter(this);
    connect(list, &QListWidget::itemChanged, this, &RowList::changed);
}

MacroRows RowList::rows() const
{
    MacroRows rows;
    rows.reserve(list->count());
    for (int at = 0; at < list->count(); ++at)
        rows += list->item(at)->data(rowRole).value<MacroRow>();
    return rows;
}

int RowList::current() const
{
    // A list that gets the keyboard gives itself a current row, which nobody sees and nobody chose.
    const QListWidgetItem *item = list->currentItem();
    return item && item->isSelected() ? list->currentRow() : -1;
}

const QIcon &RowList::icon(const MacroRow &row) const
{
    return !row.isEvent() ? delay : row.action == MacroRow::Action::Press ? press : release;
}

QListWidgetItem *RowList::makeItem(const MacroRow &row) const
{
    // The type of an item is 1 for a release and 0 for all else.
    const int type = row.isEvent() && row.action == MacroRow::Action::Release ? 1 : 0;
    auto *item = new QListWidgetItem(icon(row), rowText(row), nullptr, type);
    item->setData(rowRole, QVariant::fromValue(row));
    return item;
}

void RowList::fill(const MacroRows &rows, int current)
{
    const int scrolled = list->verticalScrollBar()->value();
    list->clear();
    for (const MacroRow &row : rows) {
        if (!row.isEvent() || row.action != MacroRow::Action::Untold)
            list->addItem(makeItem(row));
    }
    list->verticalScrollBar()->setValue(scrolled);
    list->setCurrentRow(current);
    Q_EMIT changed();
}

void RowList::show(const MacroRows &rows)
{
    before.clear();
    list->scrollToTop();
    fill(rows, -1);
}

void RowList::show(const QVector<MacroExportFile::Row> &rows)
{
    MacroRows plain;
    for (const MacroExportFile::Row &row : rows)
        plain += row.row;
    show(plain);
    const QSignalBlocker quiet(list);
    for (int at = 0; at < rows.size(); ++at) {
        QPixmap picture;
        if (picture.loadFromData(rows.at(at).picture, "PNG"))
            list->item(at)->setIcon(picture);
    }
}

void RowList::remember()
{
    before.push_back({rows(), current()});
    if (before.size() > mostEditsBack)
        before.pop_front();
}

void RowList::edit(const MacroRows &rows, int current)
{
    remember();
    fill(rows, current);
}

void RowList::replace(int at, const MacroRow &row)
{
    remember();
    QListWidgetItem *item = list->item(at);
    {
        const QSignalBlocker quiet(list);
        item->setData(rowRole, QVariant::fromValue(row));
    }
    item->setText(rowText(row));
}

void RowList::append(const MacroRows &rows)
{
    for (const MacroRow &row : rows)
        list->addItem(makeItem(row));
    list->scrollToBottom();
    if (!rows.isEmpty())
        Q_EMIT changed();
}

void RowList::dropLast()
{
    delete list->takeItem(list->count() - 1);
    Q_EMIT changed();
}

bool RowList::undo()
{
    if (before.empty())
        return false;
    const State last = before.back();
    before.pop_back();
    fill(last.rows, last.current);
    return true;
}

void RowList::retranslate()
{
    const QSignalBlocker quiet(list);
    for (int at = 0; at < list->count(); ++at)
        list->item(at)->setText(rowText(list->item(at)->data(rowRole).value<MacroRow>()));
    Q_EMIT changed();
}

/** Keys of the list, not shortcuts: a shortcut's keys would never reach a recording. */
bool RowList::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() == Qt::Key_Delete) {
        Q_EMIT deleteWanted();
        return true;
    }
    if (key->matches(QKeySequence::Undo)) {
        Q_EMIT undoWanted();
        return true;
    }
    return QObject::eventFilter(watched, event);
}
