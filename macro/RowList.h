#pragma once

#include "macro/MacroExportFile.h"
#include "macro/MacroRows.h"

#include <QIcon>
#include <QObject>

#include <deque>

class QListWidget;
class QListWidgetItem;

/**
 * The rows of the selected macro in their list widget. An item holds the row itself beside its text and picture, so
 * that a language change or a macro button's name can't make another key of it.
 *
 * It remembers the rows before each edit, to take edits back.
 */
class RowList : public QObject
{
    Q_OBJECT
public:
    /** `pictures` is a folder with a closing slash. */
    RowList(QListWidget *listWidget, const QString &pictures, QObject *parent);

    MacroRows rows() const;
    /** The row that is selected, -1 for none. */
    int current() const;

    /** Shows the rows of a macro that has just been selected: there is no edit to take back. */
    void show(const MacroRows &rows);
    /** Shows rows as another user's pictures show them. */
    void show(const QVector<MacroExportFile::Row> &rows);
    /** Shows the rows after an edit, which can be taken back. */
    void edit(const MacroRows &rows, int current);
    /** Changes one row in place, which can be taken back; the list tells it as a change of the item. */
    void replace(int at, const MacroRow &row);
    /** Rows of a recording: only its start, the emptying of the list, can be taken back. */
    void append(const MacroRows &rows);
    /** Takes the last row away, as a part of the recording that made it. */
    void dropLast();
    /** Takes the last edit back. \return false if there is none left. */
    bool undo();
    /** Reads the names of keys anew. */
    void retranslate();

    const MacroExportFile::Icons &iconBytes() const { return bytes; }

Q_SIGNALS:
    /** The rows are others, for whatever reason. */
    void changed();
    void deleteWanted();
    void undoWanted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct State
    {
        MacroRows rows;
        int current;
    };

    void fill(const MacroRows &rows, int current);
    void remember();
    QListWidgetItem *makeItem(const MacroRow &row) const;
    const QIcon &icon(const MacroRow &row) const;

    QListWidget *const list;
    const QIcon press;
    const QIcon release;
    const QIcon delay;
    const MacroExportFile::Icons bytes;
    std::deque<State> before; ///< the newest at the end
};
