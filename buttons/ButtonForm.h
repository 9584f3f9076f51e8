#pragma once

#include "buttons/KeyCatalogue.h"

#include <QHash>
#include <QString>

#include <array>

class DebounceTime;
class MyConmboBox;
class PlainTextButton;
class QButtonGroup;
class QFrame;
class QLabel;
class QScrollArea;
class QStackedWidget;
class QToolButton;
class QWidget;

/** The widgets of the button page. The page owns them all. */
class ButtonForm
{
public:
    /**
     * The lower part of the page: rows, list and small list stand in it side by side. Its left edge is the page's, so
     * that a place in it is a place of the page `stripTop` pixels higher.
     */
    static constexpr int stripTop = 340;

    /** Makes the widgets as children of the page, with their places and default texts. Call it once. */
    void build(QWidget *page);

    QToolButton *entry(const char *name) const { return entries.value(QLatin1String(name)); }
    /** Index of the row whose button is checked, -1 without one. */
    int checkedRow() const;
    /** Takes the check from all buttons of an exclusive group. */
    static void uncheckAll(QButtonGroup *group);

    QWidget *widget = nullptr; ///< the picture of the mouse
    std::array<PlainTextButton *, KeyCatalogue::rowCount> numbers{};
    QFrame *groupBox = nullptr;
    QScrollArea *rowArea = nullptr;
    std::array<PlainTextButton *, KeyCatalogue::rowCount> rows{};
    QStackedWidget *stackedWidget = nullptr;
    QWidget *page = nullptr;       ///< no list
    QScrollArea *page_2 = nullptr; ///< the list of functions
    QStackedWidget *stackedWidget_2 = nullptr;
    std::array<QWidget *, KeyCatalogue::listPages.size()> lists{}; ///< in the order of KeyCatalogue::List
    QWidget *MacroListWidget = nullptr;
    QHash<QString, QToolButton *> entries; ///< of all lists, by object name
    QFrame *groupBox_2 = nullptr;
    QLabel *label_3 = nullptr;
    DebounceTime *DebunceButton = nullptr;
    MyConmboBox *ProjectChoose = nullptr;
    QToolButton *Reset = nullptr;
    QToolButton *ImportData = nullptr;
    QToolButton *OutputData = nullptr;

    QButtonGroup *RowGroup = nullptr; ///< ids are row indexes here and in NumberGroup
    QButtonGroup *EntryGroup = nullptr;
    QButtonGroup *SubEntryGroup = nullptr;
    QButtonGroup *NumberGroup = nullptr;

private:
    void buildNumbers(QWidget *parent);
    void buildRows();
    void buildLists();
    void buildIdlePage();
    void buildProfile(QWidget *parent);
    void linkHover();
};
