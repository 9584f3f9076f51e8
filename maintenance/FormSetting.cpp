#include "maintenance/FormSetting.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/DeviceWatch.h"
#include "devicelink/ReceiverClasses.h"
#include "devicelink/ReceiverLight.h"
#include "devicelink/SelectedDevice.h"
#include "maintenance/CompanyPage.h"
#include "maintenance/PairingRun.h"
#include "platform/AutoStart.h"
#include "platform/MouseSettings.h"
#include "productdata/ConfigStore.h"
#include "productdata/UserSettings.h"
#include "ui/MyConmboBox.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDebug>
#include <QDesktopServices>
#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QUrl>

namespace {

/** What the product file says of a section of this page for the selected model. */
enum class Section { LongRange = 0, Light = 1 };

bool isOffered(Section section)
{
    const QStringList defaults = ConfigStore::instance()->valueList(selectedSection(), QStringLiteral("Adveanced"));
    return defaults.value(int(section)).trimmed() != QLatin1String("-1");
}

/** True if the selected device is a receiver whose light tells something. */
bool hasReceiverLight()
{
    const DeviceAllInfo selected = SelectInfo().get();
    return !selected.IsCorded && selected.ReceiverClass == ReceiverClasses::receiver4K && isOffered(Section::Light);
}

/** How far from the middle of the page the pairing dialog stands, in pixels. */
constexpr QPoint pairingOffset(-70, -30);

const QString autoStart = QStringLiteral("AutoStart");
const QString autoStartKey = QStringLiteral("Enable");

} // namespace

FormSetting::FormSetting(QWidget *parent)
    : QWidget(parent), run(this, [this](FirmwareRun::Device device) {
          return (device == FirmwareRun::Mouse ? form.label_7 : form.label_5)->text();
      })
{
    setObjectName(QStringLiteral("FormSettingPage"));
    form.build(this);
    for (QWidget *unused : std::initializer_list<QWidget *>{form.Receive, form.Mouse, form.pushButton_4, form.NewLabel})
        unused->hide();
    connectRun();
    for (const FirmwareRun::Device device : {FirmwareRun::Receiver, FirmwareRun::Mouse})
        showMessage(device);
    setStyles();
    SlotChangeLanguage(UserSettings::instance()->language());
    form.checkBox->setChecked(UserSettings::instance()->read(autoStart, autoStartKey).toInt() != 0);

    captions = {{form.label_10, form.checkBox},
                {form.textEdit->viewport(), form.checkBox_2},
                {form.textEdit_2->viewport(), form.lightModes[0]},
                {form.textEdit_3->viewport(), form.lightModes[1]},
                {form.textEdit_4->viewport(), form.lightModes[2]}};
    for (auto caption = captions.keyBegin(); caption != captions.keyEnd(); ++caption)
        (*caption)->installEventFilter(this);
    form.pushButton_3->installEventFilter(this);
    connect(form.scrollArea->verticalScrollBar(), &QScrollBar::valueChanged, this, &FormSetting::SlotScroolChange);
    QMetaObject::connectSlotsByName(this);
    connectHub();
}

void FormSetting::connectHub()
{
    PostMsg *const hub = postMsg();
    connect(hub, &PostMsg::SigChangeLanguage, this, &FormSetting::SlotChangeLanguage);
    connect(hub, &PostMsg::SigLanguageSameB, this, &FormSetting::SlotLanguageSameB);
    connect(hub, &PostMsg::SigRGBValue, this, &FormSetting::SlotRGBValue, Qt::BlockingQueuedConnection);
    connect(hub, &PostMsg::SigLongRangeMode, this, &FormSetting::SlotLongRangeMode, Qt::BlockingQueuedConnection);
    connect(hub, &PostMsg::SigForm, this, &FormSetting::SlotForm, Qt::BlockingQueuedConnection);
    connect(hub, &PostMsg::SigFormB, this, &FormSetting::SlotFormB);
    connect(hub, &PostMsg::SigFormReset, this, &FormSetting::SlotFormResetForm, Qt::BlockingQueuedConnection);
    connect(hub, &PostMsg::SigSetver, this, &FormSetting::SetVer);
    connect(hub, &PostMsg::SigLabelText, this, &FormSetting::SlotLabelText);
    connect(hub, &PostMsg::SigLabelTextB, this, &FormSetting::SlotLabelTextB);
    connect(hub, &PostMsg::SigSelectMouseInfo, this, &FormSetting::forgetDevice);
}

// Language -----------------------------------------------------------------------------------------------------------

void FormSetting::SlotLanguageSameB(int index) { form.comboBox->setCurrentIndex(index); }

void FormSetting::on_comboBox_activated(int index)
{
    UserSettings::instance()->setLanguage(index);
    postMsg()->post(&PostMsg::SigChangeLanguage, index);
    postMsg()->post(&PostMsg::SigLanguageSameA, index);
}

// What the device has ------------------------------------------------------------------------------------------------

void FormSetting::SlotForm()
{
    const bool isCorded = SelectInfo().get().IsCorded;
    form.showLongRange(!isCorded && isOffered(Section::LongRange));
    form.showLight(false);
    // The receiver was asked before its mouse's record was on the pages, and what it said then is gone from here now.
    QMetaObject::invokeMethod(
        this,
        [this] {
            DongleRGB rgb = DongleRgb().get();
            SlotRGBValue(&rgb);
        },
        Qt::QueuedConnection);
}

void FormSetting::SlotFormB() { SlotForm(); }

void FormSetting::SlotFormResetForm()
{
    form.showLongRange(false);
    form.showLight(false);
    showLongRangeSilently(false);
}

/** Another device was chosen. A receiver says only what differs from this. */
void FormSetting::forgetDevice()
{
    showLongRangeSilently(false);
    DongleRgb().set({});
}

void FormSetting::SlotRGBValue(DongleRGB *Rgb)
{
    const int mode = Rgb->bytes[0];
    if (mode == 0 || !hasReceiverLight())
        return;
    form.showLight(true);
    showLightSilently(mode);
}

void FormSetting::SlotLongRangeMode(bool Select)
{
    if (SelectInfo().get().IsCorded || !isOffered(Section::LongRange))
        return;
    form.showLongRange(true);
    showLongRangeSilently(Select);
}

void FormSetting::showLongRangeSilently(bool on)
{
    const QScopedValueRollback<bool> updating(isUpdating, true);
    form.checkBox_2->setChecked(on);
}

void FormSetting::showLightSilently(int mode)
{
    const QScopedValueRollback<bool> updating(isUpdating, true);
    if (mode >= 1 && mode <= SettingForm::lightModeCount)
        form.lightModes[std::size_t(mode - 1)]->setChecked(true);
}

// Both settings live in the receiver, which tells them only when the mouse has been read. So a change that can't be
// made is taken back before the prompt comes: nothing else would bring the screen and the receiver together again. And
// the library doesn't say whether a setting has arrived, so the receiver is asked.

void FormSetting::on_checkBox_2_toggled(bool checked)
{
    if (!DeviceWritesEnabled || isUpdating)
        return;
    showLongRangeSilently(!checked);
    if (!TestDeviceOnline())
        return;
    const QByteArray path = DevicePath().get();
    UsbFinderC_SetLongRangeMode(path.constData(), checked ? 1 : 0);
    std::uint8_t told = checked ? 0 : 1; // stays if nobody answers
    UsbFinderC_GetLongRangeMode(path.constData(), &told);
    if ((told != 0) == checked)
        showLongRangeSilently(checked);
    else
        postMsg()->post(&PostMsg::SigMouseOffLineo, 0);
}

void FormSetting::chooseLight(int mode, bool checked)
{
    if (!checked || !DeviceWritesEnabled || isUpdating)
        return;
    DongleRGB rgb = DongleRgb().get();
    showLightSilently(rgb.bytes[0]);
    if (!TestDeviceOnline())
        return;
    const QByteArray path = DevicePath().get();
    rgb.bytes[0] = std::uint8_t(mode);
    UsbFinderC_Set4KDongleRGB(path.constData(), &rgb);
    DongleRGB told{};
    UsbFinderC_Get4KDongleRGBValue(path.constData(), &told);
    if (told.bytes[0] != mode) {
        postMsg()->post(&PostMsg::SigMouseOffLineo, 0);
        return;
    }
    showLightSilently(mode);
    DongleRgb().set(rgb);
}

// Versions -----------------------------------------------------------------------------------------------------------

void FormSetting::SetVer(int step)
{
    if (step == 6) {
        form.label_5->clear();
        form.label_7->clear();
        return;
    }
    if (step == 1 || step == 4 || step == 5)
        run.setMessage(FirmwareRun::Receiver, FirmwareRun::Message::None);
    if (step == 2 || step == 4 || step == 5)
        run.setMessage(FirmwareRun::Mouse, FirmwareRun::Message::None);
    if (step >= 3 && step <= 5)
        showUsualUpdateTexts();
    if (step == 4 || step == 5)
        run.reset();
    if (step == 0 || step == 5)
        showVersions();
    if (step == 0)
        run.check();
}

void FormSetting::showVersions()
{
    const DeviceAllInfo selected = SelectInfo().get();
    form.label_5->setText(selected.IsCorded ? pairedReceiverVersion() : selected.UsbVersion);
    form.label_7->setText(selected.Online ? selected.MouseVersion : QString());
}

void FormSetting::SlotLabelText(int index, QString Text)
{
    if (index != 0 && index != 1)
        return;
    (index == 0 ? form.label_5 : form.label_7)->setText(Text);
    SelectInfo().update(
        [index, &Text](DeviceAllInfo &selected) { (index == 0 ? selected.UsbVersion : selected.MouseVersion) = Text; });
}

void FormSetting::SlotLabelTextB(QString Text, QString TextA)
{
    form.label_5->setText(Text);
    showUpdateButton(form.Receive, TextA == QLatin1String("true"));
}

// The rest -----------------------------------------------------------------------------------------------------------

void FormSetting::on_checkBox_clicked(bool checked)
{
    const std::string program = QCoreApplication::applicationFilePath().toStdString();
    const bool isStored = platform::setStartsWithSystem(checked, program);
    if (!isStored)
        qWarning() << "the start with the system could not be set to" << checked;
    // What is shown is what the next log-in does.
    const bool starts = isStored == checked;
    UserSettings::instance()->write(autoStart, autoStartKey, starts ? QStringLiteral("1") : QStringLiteral("0"));
    form.checkBox->setChecked(starts);
}

void FormSetting::on_pushButton_clicked() { platform::openSystemMouseSettings(); }

void FormSetting::on_pushButton_2_clicked() { PairingRun::onDevicePage(this, pairingOffset); }

void FormSetting::on_pushButton_3_clicked()
{
    if (!isWebAddress(companyAddress) || !QDesktopServices::openUrl(QUrl(companyAddress)))
        qWarning() << "the maker's page could not be opened:" << companyAddress;
}

void FormSetting::SlotScroolChange(int value) { form.followScroll(value); }

bool FormSetting::eventFilter(QObject *watched, QEvent *event)
{
    // The hint says what the button could not.
    if (watched == form.pushButton_3 && event->type() == QEvent::ToolTip)
        form.pushButton_3->setToolTip(form.pushButton_3->text() == companyAddress ? QString() : companyAddress);
    QAbstractButton *const button = captions.value(watched);
    if (button && event->type() == QEvent::MouseButtonRelease) {
        const auto *const mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::LeftButton && static_cast<QWidget *>(watched)->rect().contains(mouse->pos()))
            button->click();
    }
    return QWidget::eventFilter(watched, event);
}
