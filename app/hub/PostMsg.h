#pragma once

#include "devicelink/DeviceAllInfo.h"
#include "devicelink/FlashDataMap.h"

#include <QObject>

#include <utility>

struct DongleRGB;

/**
 * The hub through which pages, dialogs, the connect thread and the report callback talk to each other. It holds no data
 * and has no slots.
 *
 * Signals marked "blocking" are connected with Qt::BlockingQueuedConnection: the emitter stands still until the page on
 * the GUI thread is done. That orders the page updates, and it lets the record travel by value without being a meta
 * type. Emit them with postBlocking(), and never on the GUI thread, which would wait for itself.
 */
class PostMsg : public QObject
{
    Q_OBJECT
public:
    /** Emits a signal that has default connections. */
    template<typename... Parameters, typename... Arguments>
    void post(void (PostMsg::*signal)(Parameters...), Arguments &&...arguments)
    {
        (this->*signal)(std::forward<Arguments>(arguments)...);
    }

    /**
     * Emits a blocking signal; returns when its receivers are done. Not on the GUI thread, which would stand still for
     * ever: there a debug build ends with an assertion, any other logs it and emits nothing.
     */
    template<typename... Parameters, typename... Arguments>
    void postBlocking(void (PostMsg::*signal)(Parameters...), Arguments &&...arguments)
    {
        if (refusesHere())
            return;
        (this->*signal)(std::forward<Arguments>(arguments)...);
    }

Q_SIGNALS:
    void SigChangeMainDialog(int index); ///< 0 the chooser, 1 the device window
    void SigChangeSize(int index);       ///< 0, 2 to the tray; 1, 3 exit; 0 and 1 from the device window
    void SigUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable); ///< blocking
    void SigUpDataLightUIButton(FlashDataMap DataMap);                       ///< blocking
    void SigUpDataLightLight(FlashDataMap DataMap);                          ///< blocking
    void SigUpDataLightSensor(FlashDataMap DataMap);                         ///< blocking
    void SigUpDataLightUIA(FlashDataMap DataMap);                            ///< GUI-thread twin of the light record
    void SigUpDataSensorUIB(FlashDataMap DataMap);                           ///< GUI-thread twin of the sensor record
    void SigUpDataButtonUIC(FlashDataMap DataMap);                           ///< GUI-thread twin of the button record
    void SigButtonToMacro(FlashDataMap DataMap, int KeyNumer);
    void SigSelectMouseInfo(DeviceAllInfo SelectInfo);
    void SigMouseOffLineo(int index); ///< 0 the offline text, 1 the time-out text of the prompt
    void SigMainPageChange();
    void SigSecondPageChange();
    void SigUpPageLight();
    void SigAddMacroButton();
    void SigDeleteMacroButton(QString MacroName);
    void SigMacroDownLoadData(QString MacroName, int index);
    void SigUpDataMacro(QString MacroName, int index);
    void SigUpDataParam(int index);             ///< wait after 0 a connect, 1 a re-read
    void SigUpDataReportRate(int index);        ///< blocking
    void SigUpDataDPI(int index);               ///< blocking
    void SigUpDataDPILed(FlashDataMap DataMap); ///< blocking
    void SigTimerStop();
    void SigButtonEnable(int index);
    void SigLabelText(int index, QString Text);
    void SigLabelTextB(QString Text, QString TextA);
    void SigCloseUpdate();
    void SigProgress(int index, int value);
    void SigBattery(bool IsCharg, int Number, bool IsText); ///< blocking
    void SigAutoRepair(int index);
    void SigAutoRepairProgress(int index);
    void SigChangeLanguage(int index);
    void SigLanguageSameA(int index); ///< the chooser's list follows the settings page
    void SigLanguageSameB(int index); ///< the settings page's list follows the chooser
    void SigCloseOffOnline();
    void SigSetMacroPage();
    void SigStartRecord(int index);
    void SigUpDateButton(bool IsHide);
    void SigMacroRename(QString Rename, QString Name);
    void SigSetver(int index); ///< version display step 0, 4 or 6
    void SigCloseProgress();
    void SigRGBValue(DongleRGB *Rgb);   ///< blocking
    void SigLongRangeMode(bool Select); ///< blocking
    void SigForm();                     ///< blocking
    void SigFormB();
    void SigEnterKey();
    void SigFormReset(); ///< blocking
    void SigHideModel(int index);
    void SigContinue(int index);
    void SigMouseIndex(int index); ///< 0 the model with `MID` 1, 1 the one with `MID` 2

private:
    static bool refusesHere();

    friend PostMsg *postMsg();
    PostMsg() = default;
};

/** The one hub, created at first use on the GUI thread and never destroyed: callbacks may outlive every window. */
PostMsg *postMsg();
