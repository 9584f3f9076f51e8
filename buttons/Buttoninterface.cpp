#include "buttons/Buttoninterface.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "buttons/PlainTextButton.h"
#include "devicelink/DeviceCache.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/Worker.h"
#include "devicelink/WorkingRecord.h"
#include "macro/MacroFile.h"
#include "portwire/portwire.h"
#include "productdata/ConfigStore.h"
#include "productdata/LanguageFile.h"
#include "productdata/Theme.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "sensor/DebounceTime.h"
#include "ui/ChangeSheet.h"
#include "ui/MyConmboBox.h"
#include "ui/Prompt.h"

#include <QDir>
#include <QLabel>
#include <QMouseEvent>
#include <QSignalBlocker>

using namespace KeyCatalogue;

namespace {

/** Milliseconds that a mouse debounces its buttons for, out of the box. */
constexpr int factoryDebounce = 8;
/** The language files say the unit of the debounce times once for two items, the last ones. */
constexpr int debounceElements = 20;
/** Where the page's dialogs stand, from its middle. */
constexpr QPoint dialogOffset(-50, -70);

/** Points of the list of functions: these languages need more letters for the same words. */
int entryPoints(int language) { return language == 4 ? 6 : language == 5 ? 7 : 9; }
constexpr int japanese = 5;

} // namespace

Buttoninterface::Buttoninterface(QWidget *parent)
    : QWidget(parent), macros(form,
                              [this](QToolButton *button) {
                                  connect(button, &QToolButton::clicked, this, &Buttoninterface::slotButtonClicked);
                                  keys.watch(button);
                              }),
      PictureFolder(Theme::pictureFolder("Buttoninterface"))
{
    setObjectName(QStringLiteral("ButtonPage"));
    setFixedSize(883, 630);
    form.build(this);
    for (PlainTextButton *row : form.rows)
        keys.watch(row);
    for (QToolButton *entry : qAsConst(form.entries))
        keys.watch(entry);
    connect(postMsg(), &PostMsg::SigChangeLanguage, this, &Buttoninterface::SlotChangeLanguage);
    connect(postMsg(), &PostMsg::SigMouseIndex, this, &Buttoninterface::SlotMouseIndex);
    QDir().mkpath(UserFolders::path(UserFolders::Folder::MainPage));
    macros.show(MacroFile::names(MacroFile::XmlRule::SkipFirst));
    makeStyles();
    QMetaObject::connectSlotsByName(this);
    connectHub();
    worker = std::make_unique<Worker>();
    menu.close();
    SlotChangeLanguage(UserSettings::instance()->language());
    SlotUpDataConfigUI(0, 0, false);
    isBuilt = true;
}

Buttoninterface::~Buttoninterface()
{
    StopUsbChanged();
    worker.reset();
}

void Buttoninterface::connectHub()
{
    PostMsg *const hub = postMsg();
    connect(hub, &PostMsg::SigUpDataLightUIButton, this, &Buttoninterface::SlotUpDataButtonUIButton,
            Qt::BlockingQueuedConnection);
    connect(hub, &PostMsg::SigUpDataButtonUIC, this, &Buttoninterface::SlotUpDataButtonUIB);
    connect(hub, &PostMsg::SigUpDataConfigUI, this, &Buttoninterface::SlotUpDataConfigUI, Qt::BlockingQueuedConnection);
    // Another mouse may sleep and tell none; the profile of the mouse before isn't its.
    connect(hub, &PostMsg::SigSelectMouseInfo, this, [this] { SlotUpDataConfigUI(0, 0, false); });
    connect(hub, &PostMsg::SigFormReset, this, &Buttoninterface::SlotFormResetButton, Qt::BlockingQueuedConnection);
    connect(hub, &PostMsg::SigAddMacroButton, this, &Buttoninterface::SlotAddMacroButton);
    connect(hub, &PostMsg::SigDeleteMacroButton, this, &Buttoninterface::SlotDeleteMacroButton);
    connect(hub, &PostMsg::SigUpDataMacro, this, &Buttoninterface::SlotUpDataMacro);
    connect(hub, &PostMsg::SigMacroRename, this, &Buttoninterface::SlotMacroRename);
    // What was chosen is the left mouse's and not the next one's.
    connect(hub, &PostMsg::SigSecondPageChange, this, &Buttoninterface::leaveRow);
}

// Records ------------------------------------------------------------------------------------------------------------

void Buttoninterface::SlotUpDataButtonUIButton(FlashDataMap DataMap)
{
    ButtonUiLoaded = false;
    applyRecord(DataMap);
    ButtonUiLoaded = true;
}

void Buttoninterface::SlotUpDataButtonUIB(FlashDataMap DataMap) { applyRecord(DataMap); }

void Buttoninterface::applyRecord(const FlashDataMap &record)
{
    {
        const FlagScope updating(ButtonUiUpdating);
        rows.show(record);
        readBackMacros(record);
        form.DebunceButton->setIndexSilently(record.DebounceTime);
    }
    if (menu.state() != FunctionMenu::State::Closed && isLastLeft(form.checkedRow()))
        leaveRow(); // it wasn't when its list opened: another profile, or another mouse
    if (std::exchange(isMacroListStale, false))
        SlotAddMacroButton();
}

/** A macro that the mouse plays is one of this PC too: the macro page makes its file. */
void Buttoninterface::readBackMacros(const FlashDataMap &record)
{
    for (int slot = 0; slot < rows.slotCount(); ++slot) {
        if (record.KeyFunctions[slot].KeyType == MacroType)
            postMsg()->post(&PostMsg::SigButtonToMacro, record, slot);
    }
}

void Buttoninterface::SlotFormResetButton()
{
    const FlagScope updating(ButtonUiUpdating);
    const int model = ConfigStore::instance()->number(selectedSection(), QStringLiteral("MID"));
    if (model == 1 || model == 2)
        postMsg()->post(&PostMsg::SigMouseIndex, model - 1);
    menu.close();
    rows.showFactory();
    form.DebunceButton->setIndexSilently(factoryDebounce);
}

void Buttoninterface::SlotMouseIndex(int index)
{
    if (index != 0 && index != 1)
        return;
    changeSheet(form.widget, QStringLiteral("#widget{border:0px;background-position:center;"
                                            "background-repeat:no-repeat;background-image: url(%1mouse%2.png);}")
                                 .arg(PictureFolder)
                                 .arg(index));
}

void Buttoninterface::SlotAddMacroButton()
{
    // A record with several new macros asks for each; once behind it is enough.
    if (ButtonUiUpdating)
        isMacroListStale = true;
    else
        macros.show(MacroFile::names(MacroFile::XmlRule::SkipAll));
}

// Profiles -----------------------------------------------------------------------------------------------------------

void Buttoninterface::SlotUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable)
{
    const QSignalBlocker quiet(form.ProjectChoose);
    form.ProjectChoose->clear();
    for (int profile = 1; profile <= std::max(ToTalItem, 1); ++profile)
        form.ProjectChoose->addItem(ConfigPrefix + QString::number(profile));
    form.ProjectChoose->setEnabled(ItemEnable);
    if (ToTalItem >= 1)
        form.ProjectChoose->setCurrentIndex(SelectIndex);
}

// Texts --------------------------------------------------------------------------------------------------------------

void Buttoninterface::SlotChangeLanguage(int index)
{
    language = index;
    readTexts();
    if (!isBuilt)
        return;
    // The rows get their words anew. A mouse that doesn't answer was shown from its cache. Nothing is read back from
    // macros here: the language doesn't make the mouse's form of one any newer.
    FlashDataMap cached{};
    if (rows.hasFunctions() && LoadDeviceCache(LoadFileName().get(), cached)) {
        const FlagScope updating(ButtonUiUpdating);
        rows.show(LinkUp ? WorkingRecord::instance().copy() : cached);
    }
    const QSignalBlocker quiet(form.ProjectChoose);
    for (int item = 0; item < form.ProjectChoose->count(); ++item)
        form.ProjectChoose->setItemText(item, ConfigPrefix + QString::number(item + 1));
}

void Buttoninterface::readTexts()
{
    const QFont entryFont(QStringLiteral("微软雅黑"), entryPoints(language));
    for (const Entry &entry : entries)
        form.entry(entry.name)->setFont(entryFont);
    QHash<QString, QString> texts;
    LanguageFile::readSection(language, QStringLiteral("Buttoninterface"),
                              [&texts](const QString &element, const QString &text) { texts.insert(element, text); });
    const auto apply = [&texts](const char *element, auto take) {
        const auto text = texts.constFind(QLatin1String(element));
        if (text != texts.constEnd())
            take(*text);
    };
    for (const Entry &entry : entries)
        apply(entry.name, [&](const QString &text) { form.entry(entry.name)->setText(text); });
    for (const SubEntry &entry : subEntries) {
        if (entry.isLanguageElement)
            apply(entry.name, [&](const QString &text) { form.entry(entry.name)->setText(text); });
    }
    // Once a row has shown what a mouse does, its text says that and no longer what rows do by default.
    for (int row = 0; row < rowCount && !rows.hasFunctions(); ++row)
        apply(KeyCatalogue::rows[std::size_t(row)].name, [&](const QString &text) { rows.setText(row, text); });
    for (QToolButton *button : {form.Reset, form.ImportData, form.OutputData})
        apply(button->objectName().toLatin1().constData(), [&](const QString &text) {
            button->setText(text);
            button->setToolTip(language == japanese && button != form.Reset ? text : QString());
        });
    apply("checkBox", [this](const QString &text) { form.label_3->setText(text); });
    apply("Macro_", [this](const QString &text) { rows.MacroPrefix = text; });
    apply("Config", [this](const QString &text) { ConfigPrefix = text; });
    for (int item = 0; item < DebounceTime::itemCount; ++item) {
        const QString element = QStringLiteral("S%1").arg(std::min(item + 1, debounceElements));
        apply(element.toLatin1().constData(), [&](const QString &unit) {
            form.DebunceButton->setItemText(item, QString::number(item) + QLatin1Char(' ') + unit);
        });
    }
}

void Buttoninterface::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange && isBuilt)
        SlotChangeLanguage(language);
    QWidget::changeEvent(event);
}

// Window -------------------------------------------------------------------------------------------------------------

void Buttoninterface::mousePressEvent(QMouseEvent *event)
{
    setFocus();
    if (event->button() == Qt::LeftButton)
        menu.pressBeside(event->pos());
    QWidget::mousePressEvent(event);
}

/** The user can't leave the page with a dialog open, but the device can, and the program can end. */
void Buttoninterface::hideEvent(QHideEvent *event)
{
    if (openPrompt)
        openPrompt->reject();
    QWidget::hideEvent(event);
}

bool Buttoninterface::ask(Prompt &prompt)
{
    if (Wait::isEnding())
        return false;
    prompt.centreOn(this, dialogOffset);
    openPrompt = &prompt;
    prompt.exec();
    openPrompt.clear();
    return prompt.confirmed() && !Wait::isEnding();
}
