#pragma once

#include "maintenance/FirmwareRun.h"
#include "maintenance/SettingForm.h"
#include "portwire/portwire.h"

#include <QHash>
#include <QString>
#include <QWidget>

class QAbstractButton;

/**
 * The settings page: the versions of mouse and receiver, and what belongs to the program or the receiver and not to the
 * mouse: language, start with the system, long range, what the receiver's light tells.
 */
class FormSetting : public QWidget
{
    Q_OBJECT
public:
    explicit FormSetting(QWidget *parent = nullptr);

public Q_SLOTS:
    /** Takes the texts of a language, 0 to 5, and the maker's page for it. */
    void SlotChangeLanguage(int index);
    /** Shows another language in the list, without changing to it. */
    void SlotLanguageSameB(int index);
    /** Shows what the receiver's light tells, where the receiver and the product have such a light. */
    void SlotRGBValue(DongleRGB *Rgb);
    void SlotLongRangeMode(bool Select);
    /** Shows the sections that the selected device has. */
    void SlotForm();
    void SlotFormB();
    /** Shows what is known without a device. */
    void SlotFormResetForm();
    /**
     * A step of the version display: 0 show the versions, 1 and 2 hide the message of receiver and mouse, 3 the usual
     * texts of the update buttons, 4 all of 1 to 3, 5 first 4 and then 0, 6 no versions.
     */
    void SetVer(int step);
    /** A new version of the selected device: 0 the receiver's, 1 the mouse's. */
    void SlotLabelText(int index, QString Text);
    /** Version of the receiver; the second text is "true" if a newer firmware is at hand. */
    void SlotLabelTextB(QString Text, QString TextA);
    /** The update of one device was confirmed; see FirmwareRun. */
    void SlotContinue(int index) { run.SlotContinue(index); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void on_comboBox_activated(int index);
    void on_checkBox_clicked(bool checked);
    void on_checkBox_2_toggled(bool checked);
    void on_ReUntil_toggled(bool checked) { chooseLight(1, checked); }
    void on_ReUntil_2_toggled(bool checked) { chooseLight(2, checked); }
    void on_ReUntil_3_toggled(bool checked) { chooseLight(3, checked); }
    void on_pushButton_clicked();
    void on_pushButton_2_clicked();
    void on_pushButton_3_clicked();
    void SlotScroolChange(int value);
    void on_Mouse_clicked() { run.press(FirmwareRun::Mouse); }
    void on_Receive_clicked() { run.press(FirmwareRun::Receiver); }

private:
    void setStyles();
    void connectHub();
    void applyText(const QString &element, const QString &text);
    void showCompanyPage(int language);
    void showUsualUpdateTexts();
    void showVersions();
    void connectRun();
    void showMessage(FirmwareRun::Device device);
    void showUpToDate(FirmwareRun::Device device);
    QPushButton *updateButton(FirmwareRun::Device device) const;
    void showUpdateButton(QPushButton *button, bool isOffered);
    void forgetDevice();
    void showLongRangeSilently(bool on);
    void showLightSilently(int mode);
    void chooseLight(int mode, bool checked);

    SettingForm form;
    QHash<QString, QString> texts; ///< of the language, by element: those that are shown only at times
    QString companyAddress;
    FirmwareRun run;
    QHash<QObject *, QAbstractButton *> captions; ///< what belongs to a button: a click on it is one on the button
    bool isUpdating = false;                      ///< a control is set to what the receiver told
};
