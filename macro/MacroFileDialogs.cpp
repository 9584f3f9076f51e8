#include "macro/MacroFileDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>

namespace {

const QString filter = QStringLiteral("File(*.ini)");

/** Where removable disks come up on many a PC; the documents where there is no such place. */
QString startFolder()
{
    const QString disk = QStringLiteral("G:");
    return QDir(disk).exists() ? disk : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString run(QFileDialog &dialog)
{
    // Qt's own on every system: it takes its letters from the program and works without a desktop's services.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

QString askForExport(QWidget *page, const QString &name)
{
    // The window's, not the page's: style sheets of the page would reach its lists and buttons.
    QFileDialog dialog(page->window(), QStringLiteral("FileSave"), startFolder(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("ini"));
    dialog.selectFile(name + QStringLiteral(".ini"));
    return run(dialog);
}

QString askForImport(QWidget *page)
{
    QFileDialog dialog(page->window(), QStringLiteral("SelectFile"), startFolder(), filter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return run(dialog);
}
