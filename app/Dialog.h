#pragma once

#include <QWidget>

#include <memory>
#include <optional>

namespace Ui {
class Dialog;
}
class Buttoninterface;
class FormSetting;
class LampLight;
class Macro;
class QButtonGroup;
class Sensor;
class UpDataParam;

/**
 * The device window: the page buttons, the model name and the battery gauge, and below them the five device pages. It
 * is made once, before any device is selected; another device only brings new data to the same pages.
 */
class Dialog : public QWidget
{
    Q_OBJECT
public:
    explicit Dialog(QWidget *parent = nullptr);
    ~Dialog() override;

    /** Keeps the record of the device for when its mouse sleeps. */
    static void saveRecord();
    /** The window is before the user again: a wait that began meanwhile shows if the record has not come. */
    void windowCameBack();

public Q_SLOTS:
    void WindowClosed();
    void WindowMin();
    void on_ButtonMain_clicked();
    void on_SensorButton_clicked();
    void on_MacroButton_clicked();
    void on_LightsButton_clicked();
    void on_UpArrow_clicked();
    void on_FormSetting_clicked();
    void on_CloseButton_clicked();
    void SlotSecondDialog();
    void SlotUpDataParam(int index);
    void SlotStartRecord(int index);
    void SlotBattery(bool IsCharg, int Number, bool IsText);
    void SlotMouseIndex(int index);
    void SlotChangeLanguage(int index);

private:
    void makePages();
    void setUpTheme();
    void connectHub();
    void openWait();
    void onWaitOver();
    void tellNotice();
    void closeWait();

    std::unique_ptr<Ui::Dialog> ui;
    Buttoninterface *buttonPage = nullptr;
    LampLight *lightPage = nullptr;
    Macro *macroPage = nullptr;
    Sensor *sensorPage = nullptr;
    ::FormSetting *settingPage = nullptr;
    QButtonGroup *pageButtons = nullptr;
    std::unique_ptr<UpDataParam> wait;
    bool isWaitOpen = false;   ///< the event loop of the wait prompt runs
    bool isWaitDue = false;    ///< it would have opened, but the window was away
    std::optional<int> notice; ///< what the last wait has to tell, for the moment when its event loop has ended
};
