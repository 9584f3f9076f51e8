#include "app/DialogChange.h"

#include "app/ChooserList.h"
#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceScan.h"
#include "portwire/portwire.h"
#include "productdata/LanguageFile.h"
#include "productdata/ModelData.h"
#include "productdata/Theme.h"
#include "productdata/UserSettings.h"
#include "ui/ComboStyle.h"
#include "ui/LanguageList.h"
#include "ui/LateStyle.h"
#include "ui/QuestiondialogB.h"
#include "ui/mytoolButtonEnter.h"
#include "ui_DialogChange.h"

#include <QTimer>

#include <array>

namespace {

constexpr int entriesPerPage = 3;

struct Place
{
    int left = 0;
    QPoint status;
    QPoint receiver;
};

/** Where the entries of a page with one, two or three of them stand. */
constexpr std::array<std::array<Place, entriesPerPage>, entriesPerPage> places = {{
    {{{305, {530, 20}, {312, 10}}, {}, {}}},
    {{{135, {360, 20}, {142, 10}}, {445, {665, 20}, {452, 10}}, {}}},
    {{{0, {225, 20}, {7, 10}}, {300, {525, 20}, {307, 10}}, {600, {825, 20}, {607, 10}}}},
}};

DialogChange *theChooser = nullptr; // GUI thread only; a library callback has no object

} // namespace

DialogChange::DialogChange(QWidget *parent) : QWidget(parent), ui(std::make_unique<Ui::DialogChange>())
{
    theChooser = this;
    ui->setupUi(this);
    setUpTheme();
    ui->LeftButton->hide();
    ui->RightButton->hide();
    ui->Repair->setVisible(!ModelData::updateFailInfo().isEmpty());
    hintText = ui->label_2->text();
    fillLanguageList(*ui->comboBox);

    connect(postMsg(), &PostMsg::SigLanguageSameA, this, &DialogChange::SlotSameLanguageA);
    connect(postMsg(), &PostMsg::SigUpDateButton, this, &DialogChange::SlotUpDateButton);
    connect(postMsg(), &PostMsg::SigEnterKey, this, &DialogChange::SlotEnterKey);
    connect(postMsg(), &PostMsg::SigChangeLanguage, this, &DialogChange::ChangeDialogLanguage);
    ChangeDialogLanguage(UserSettings::instance()->language());
    startScanning();
}

DialogChange::~DialogChange() { theChooser = nullptr; }

void DialogChange::setUpTheme()
{
    const QString folder = Theme::pictureFolder("DialogChange");
    ui->frameChange->setStyleSheet(
        Theme::frameBackground(folder, QStringLiteral("frameChange"), QStringLiteral("BackGround.png")));
    const auto threePictures = [&folder](QToolButton *button, const char *name, const QString &more = {}) {
        const QString base = QLatin1String(name);
        new LateStyle(button,
                      Theme::toolButton(folder, base + QStringLiteral(".png"), base + QStringLiteral("Hover.png"),
                                        base + QStringLiteral("Click.png")) +
                          more);
    };
    threePictures(ui->CloseButton, "Close");
    threePictures(ui->MinButton, "Min");
    threePictures(ui->LeftButton, "Left");
    threePictures(ui->RightButton, "Right");
    threePictures(ui->Repair, "Repair", Theme::toolTip());
    ui->label_2->setStyleSheet(Theme::namedLabel(QStringLiteral("label_2")));
    ui->label_3->setStyleSheet(Theme::namedLabel(QStringLiteral("label_3")));
    const QFont hintFont(QStringLiteral("微软雅黑"), 14);
    ui->label_2->setFont(hintFont);
    ui->label_3->setFont(hintFont);

    ui->stackedWidget->setStyleSheet(Theme::toolTip()); // of the pictures that say why a device doesn't answer
    styleCombo(ui->comboBox, "DialogChange");
}

void DialogChange::startScanning()
{
    StartUsbChanged(
        [] {
            if (theChooser)
                theChooser->scan();
        },
        Wait::scaled(usbQuietTime));
}

// Scan and rebuild ---------------------------------------------------------------------------------------------------

void DialogChange::scan()
{
    // A device that is being repaired comes and goes by itself; who repaired it scans when that is over.
    if (FirmwareUnderWay)
        return;
    showHint();
    ChooserList::scan();
    rebuild();
}

void DialogChange::showHint()
{
    const bool repair = !ModelData::updateFailInfo().isEmpty();
    ui->Repair->setVisible(repair);
    ui->label_2->setText(repair && !repairText.isEmpty() ? repairText : hintText);
}

void DialogChange::clearEntries()
{
    entries.clear();
    while (QWidget *const page = ui->stackedWidget->widget(0)) {
        ui->stackedWidget->removeWidget(page);
        // A scan can run inside an event of one of these buttons, while a prompt of it serves the event loop.
        page->hide();
        page->deleteLater();
    }
}

void DialogChange::rebuild()
{
    clearEntries();
    ui->LeftButton->hide();
    ui->RightButton->hide();
    QList<DeviceAllInfo> &devices = ChooserDevices();
    const bool empty = devices.isEmpty();
    for (DeviceAllInfo &device : devices)
        refreshOnline(device);
    DuplicateDevices = ChooserList::hasDuplicates(devices);
    const bool nothingToClick = empty || DuplicateDevices;
    ui->label_2->setVisible(nothingToClick);
    ui->label_3->setVisible(!nothingToClick);
    if (DuplicateDevices)
        QTimer::singleShot(0, this, &DialogChange::tellDuplicates);
    else
        closeDuplicatesNotice();
    if (nothingToClick)
        return;
    ChooserList::hideReceivers(devices);
    addPages();
}

void DialogChange::addPages()
{
    const int count = ChooserDevices().size();
    for (int first = 0; first < count; first += entriesPerPage) {
        auto *const page = new QWidget;
        const int onPage = qMin(entriesPerPage, count - first);
        for (int slot = 0; slot < onPage; ++slot) {
            const Place &place = places[static_cast<std::size_t>(onPage - 1)][static_cast<std::size_t>(slot)];
            entries.emplace_back(page, first + slot, place.left, place.status, place.receiver);
            mytoolButtonEnter *const button = entries.back().button();
            button->setShowDevice([this](int index) { showEntry(index); });
            connect(button, &QToolButton::clicked, this, &DialogChange::slotButtonClicked);
        }
        ui->stackedWidget->addWidget(page);
    }
    ui->stackedWidget->setCurrentIndex(0);
    ui->RightButton->setVisible(count > entriesPerPage);
    for (int index = 0; index < count; ++index)
        showEntry(index);
}

void DialogChange::showEntry(int index)
{
    QList<DeviceAllInfo> &devices = ChooserDevices();
    if (index < 0 || index >= devices.size() || index >= static_cast<int>(entries.size()))
        return;
    DeviceAllInfo &device = devices[index];
    identifyDevice(device);
    refreshOnline(device);
    ChooserEntry &entry = entries[static_cast<std::size_t>(index)];
    entry.show(device);
    entry.setTips(offlineTip1 + QLatin1Char('\n') + offlineTip2, unknownTip);
}

// Devices that can't be told apart -----------------------------------------------------------------------------------

/**
 * Runs apart from the scan: a scan that stood in a prompt would not be called again, and could not see the cause go.
 * And the first scan runs before there is a window to stand over; showEvent comes back to it. The top window does when
 * it has been minimised, which makes no such event.
 */
void DialogChange::tellDuplicates()
{
    if (!DuplicateDevices || duplicatesNotice || !isVisible() || WindowAway || Wait::isEnding())
        return;
    QuestiondialogB notice;
    duplicatesNotice = &notice;
    notice.centreOn(this);
    notice.exec();
    duplicatesNotice = nullptr;
}

void DialogChange::closeDuplicatesNotice()
{
    if (duplicatesNotice)
        duplicatesNotice->close();
}

void DialogChange::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QTimer::singleShot(0, this, &DialogChange::tellDuplicates);
}

// Paging -------------------------------------------------------------------------------------------------------------

void DialogChange::on_RightButton_clicked()
{
    ui->label_2->hide();
    ui->label_3->show();
    const int current = ui->stackedWidget->currentIndex();
    if (current == ui->stackedWidget->count() - 2) {
        ui->RightButton->hide();
        ui->LeftButton->show();
    }
    ui->stackedWidget->setCurrentIndex(current + 1);
}

void DialogChange::on_LeftButton_clicked()
{
    ui->label_2->hide();
    ui->label_3->show();
    const int current = ui->stackedWidget->currentIndex();
    if (current == 1) {
        ui->LeftButton->hide();
        ui->RightButton->show();
    }
    ui->stackedWidget->setCurrentIndex(current - 1);
}

void DialogChange::SlotUpDateButton(bool IsHide)
{
    ui->Repair->setVisible(!IsHide);
    ui->label_2->setText(IsHide ? hintText : repairText);
}

// Window and language ------------------------------------------------------------------------------------------------

void DialogChange::on_MinButton_clicked() { postMsg()->post(&PostMsg::SigChangeSize, 2); }

void DialogChange::on_CloseButton_clicked() { postMsg()->post(&PostMsg::SigChangeSize, 3); }

void DialogChange::on_comboBox_activated(int index)
{
    UserSettings::instance()->setLanguage(index);
    postMsg()->post(&PostMsg::SigChangeLanguage, index);
    postMsg()->post(&PostMsg::SigLanguageSameB, index);
}

void DialogChange::SlotSameLanguageA(int index) { ui->comboBox->setCurrentIndex(index); }

void DialogChange::ChangeDialogLanguage(int index)
{
    LanguageFile::readSection(index, QStringLiteral("DialogChange"),
                              [this](const QString &element, const QString &text) {
                                  if (element == QLatin1String("label_2"))
                                      hintText = text;
                                  else if (element == QLatin1String("label_3"))
                                      ui->label_3->setText(text);
                                  else if (element == QLatin1String("OfflineTips1"))
                                      offlineTip1 = text;
                                  else if (element == QLatin1String("OfflineTips2"))
                                      offlineTip2 = text;
                                  else if (element == QLatin1String("UnknownTips"))
                                      unknownTip = text;
                                  else if (element == QLatin1String("RepairDevice"))
                                      repairText = text;
                              });
    ui->Repair->setToolTip(repairText); // the hint itself shows only where no device does
    showHint();
    for (ChooserEntry &entry : entries)
        entry.setTips(offlineTip1 + QLatin1Char('\n') + offlineTip2, unknownTip);
}
