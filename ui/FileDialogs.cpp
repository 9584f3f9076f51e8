#include "ui/FileDialogs.h"

#include "app/hub/PostMsg.h"
#include "productdata/Theme.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QListView>
#include <QPushButton>
#include <QSplitter>
#include <QStandardPaths>
#include <QTreeView>

#include <iterator>

namespace {

/** %1 text, %2 ground of a field, %3 the accent, %4 the dialog, %5 and %6 a button's face, %7 its edge, %8 chosen. */
const char *const darkStyle =
    "QDialog{background-color: rgb(%4);}QLabel{color: rgb(%1);}"
    "QLineEdit,QComboBox,QAbstractItemView{color: rgb(%1);background-color: rgb(%2);border: 1px solid rgb(%7);"
    "selection-background-color: rgb(%8);selection-color: rgb(%1);padding: 2px;}"
    "QLineEdit:focus,QComboBox:focus,QAbstractItemView:focus{border: 1px solid rgb(%3);}"
    "QHeaderView::section{color: rgb(%1);background-color: rgb(%5);border: 0px;padding: 4px;}"
    "QPushButton{color: rgb(%1);background-color: rgb(%5);border: 1px solid rgb(%7);border-radius: 4px;"
    "padding: 5px 14px;}QPushButton:hover,QToolButton:hover{background-color: rgb(%6);}"
    "QPushButton:focus,QPushButton:default{border: 1px solid rgb(%3);}"
    "QToolButton{background-color: rgb(%7);border: 1px solid rgb(%7);border-radius: 4px;padding: 2px;}"
    "QSplitter::handle{background-color: rgb(%4);}QScrollBar:horizontal{height: 8px;border: 0px;background: rgb(%2);}"
    "QScrollBar::handle:horizontal{background: rgb(%7);border-radius: 3px;margin: 1px;min-width: 24px;}"
    "QScrollBar::add-line,QScrollBar::sub-line{width: 0px;}";

constexpr QSize dialogSize(860, 480);
/** Places, then name, size, kind and date of a file, as wide as their usual texts; in pixels. */
constexpr int placesWidth = 150;
constexpr int columnWidths[] = {320, 80, 125, 150};

QString lastFolder; // GUI thread only; empty before the first file

/**
 * Where removable disks come up on many a PC; the documents where there is no such place. A dialog takes a folder that
 * doesn't exist for the name of a file, so the last choice is one that does.
 */
QString startFolder()
{
    for (const QString &folder :
         {lastFolder, QStringLiteral("G:"), QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)}) {
        if (!folder.isEmpty() && QDir(folder).exists())
            return folder;
    }
    return QDir::homePath();
}

/** Qt's own widths cut off names and dates, and its pictures come from whatever the desktop has. */
void arrange(const QFileDialog &dialog)
{
    const QList<QPushButton *> buttons = dialog.findChildren<QPushButton *>();
    for (QPushButton *button : buttons)
        button->setIcon({});
    if (auto *const places = dialog.findChild<QListView *>(QStringLiteral("sidebar")))
        places->setIconSize({16, 16});
    if (auto *const halves = dialog.findChild<QSplitter *>(QStringLiteral("splitter")))
        halves->setSizes({placesWidth, dialogSize.width() - placesWidth});
    if (const auto *const files = dialog.findChild<QTreeView *>(QStringLiteral("treeView"))) {
        for (int column = 0; column < int(std::size(columnWidths)); ++column)
            files->header()->resizeSection(column, columnWidths[column]);
    }
}

QString run(QFileDialog &dialog)
{
    using Theme::Colour;
    using Theme::Tone;
    // Qt's own on every system: it takes its look from the program and works without a desktop's services.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setStyleSheet(QString::fromLatin1(darkStyle).arg(
                             Theme::rgb(Colour::ComboxTextColor), Theme::rgb(Colour::ComboxBackGroundColor),
                             Theme::rgb(Colour::SliderColor), Theme::rgb(Tone::Window), Theme::rgb(Tone::Raised),
                             Theme::rgb(Tone::Hover), Theme::rgb(Tone::Edge), Theme::rgb(Colour::ComboxSelectColor)) +
                         Theme::scrollBar());
    dialog.resize(dialogSize);
    arrange(dialog);
    QObject::connect(postMsg(), &PostMsg::SigSecondPageChange, &dialog, &QDialog::reject);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const QString path = dialog.selectedFiles().value(0);
    lastFolder = QFileInfo(path).absolutePath();
    return path;
}

} // namespace

QString FileDialogs::askForSaving(QWidget *page, const QString &filter, const QString &name)
{
    // The window's, not the page's: style sheets of the page would reach its lists and buttons.
    QFileDialog dialog(page->window(), QStringLiteral("FileSave"), startFolder(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QFileInfo(name).suffix());
    dialog.selectFile(name);
    return run(dialog);
}

QString FileDialogs::askForOpening(QWidget *page, const QString &filter)
{
    QFileDialog dialog(page->window(), QStringLiteral("SelectFile"), startFolder(), filter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return run(dialog);
}
