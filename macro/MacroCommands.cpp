#include "app/hub/PostMsg.h"
#include "macro/Macro.h"
#include "macro/MacroExportFile.h"
#include "macro/MacroFile.h"
#include "macro/RepeatCode.h"
#include "macro/RowList.h"
#include "productdata/SafeFile.h"
#include "ui/DeleteConfirm.h"
#include "ui/QuestionDialog.h"
#include "ui/SameMacro.h"

#include <QCursor>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QListWidget>
#include <QMenu>

// What a user can do with a whole macro.

namespace {

constexpr QPoint promptOffset(-100, -50);

} // namespace

/** Asks for the name of a macro; empty if cancelled, and if it is taken, which the user is told. */
QString Macro::askName()
{
    QuestionDialog question;
    open(question, promptOffset);
    QString name = question.name();
    if (name.isEmpty() || !isTaken(name))
        return name;
    SameMacro same;
    open(same, promptOffset);
    return {};
}

void Macro::CreateMewMacro()
{
    if (refusesWhileRecording())
        return;
    const QString name = askName();
    if (name.isEmpty() || !MacroFile::create(name))
        return;
    addRow(name, form.listWidgetHong->count());
    form.listWidgetHong->setCurrentRow(form.listWidgetHong->count() - 1);
    load(name);
    form.showRepeatCode(RepeatCode::once);
}

void Macro::RenameMacro()
{
    const QString before = currentName();
    if (before.isEmpty() || refusesWhileRecording())
        return;
    const QString name = askName();
    QListWidgetItem *item = itemOf(before);
    if (name.isEmpty() || !item)
        return;
    item->setText(name);
    MacroFile::rename(before, name); // the list shows the new name also if the file can't follow
    if (shown == before)
        shown = name;
    const bool isBeingSaved = saved && saved->name == before;
    if (isBeingSaved)
        saved->name = name;
    postMsg()->post(&PostMsg::SigMacroRename, before, name);
    // Who was told of the save will look for the old name, and find no button that carries it.
    if (isBeingSaved && saved)
        tellSaved(true, true);
}

void Macro::DeleteMacro()
{
    if (refusesWhileRecording())
        return;
    const QString name = currentName();
    if (name.isEmpty())
        return;
    DeleteConfirm question;
    open(question, promptOffset);
    if (!question.confirmed())
        return;
    MacroFile::remove(name);
    postMsg()->post(&PostMsg::SigDeleteMacroButton, texts.MacroPagePrefix + name);
    delete itemOf(name);
    showNothing();
}

void Macro::on_listWidgetHong_customContextMenuRequested(const QPoint &position)
{
    // Stays until the next one: an action's prompt runs an event loop, and Qt looks at the menu once more behind it.
    menu = std::make_unique<QMenu>(this);
    if (form.listWidgetHong->itemAt(position)) {
        menu->addAction(texts.exportMacro, this, &Macro::ExPortMacro);
        menu->addAction(texts.renameMacro, this, &Macro::RenameMacro);
        menu->addAction(texts.deleteMacro, this, &Macro::DeleteMacro);
    } else {
        menu->addAction(texts.newMacro, this, &Macro::CreateMewMacro);
        menu->addAction(texts.importMacro, this, &Macro::InPortMacro);
    }
    menu->popup(QCursor::pos());
}

void Macro::ExPortMacro()
{
    const QString name = currentName();
    if (name.isEmpty() || refusesWhileRecording())
        return;
    const MacroRows rows = rowList->rows();
    const QString path = askExportPath(name);
    if (!path.isEmpty())
        replaceFile(path, MacroExportFile::write(name, form.repeatCode(), rows, rowList->iconBytes()));
}

/** Nothing is made before the whole file has been read, so that a damaged one leaves no half of a macro. */
void Macro::InPortMacro()
{
    if (refusesWhileRecording())
        return;
    const QString path = askImportPath(QString());
    QFile file(path);
    if (path.isEmpty() || !QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return;
    const QByteArray content = file.read(MacroExportFile::mostBytes);
    const std::optional<MacroExportFile::Header> header = MacroExportFile::readHeader(content);
    const QString name = header ? MacroFile::fitting(header->name) : QString();
    if (!name.isEmpty() && isTaken(name)) {
        qWarning() << "a macro can't be imported under this name:" << name;
        SameMacro same;
        open(same, promptOffset);
        return;
    }
    const auto rows = MacroExportFile::readRows(content, MacroTexts::mouseButtonsOfAllLanguages());
    if (name.isEmpty() || !header->isMacro || !rows) {
        qWarning() << "this is no whole export of a macro:" << path;
        return;
    }
    MacroContent imported{header->repeat, {}};
    for (const MacroExportFile::Row &row : *rows)
        imported.rows += row.row;
    if (!MacroFile::write(name, imported))
        return;
    showNothing();
    addRow(name, form.listWidgetHong->count());
    form.listWidgetHong->setCurrentRow(form.listWidgetHong->count() - 1);
    shown = name;
    rowList->show(*rows);
}
