#pragma once

#include "devicelink/FlashDataMap.h"

#include <QWidget>

#include <memory>

struct SensorForm;

/**
 * The sensor page: DPI levels, report rate, sensor mode, lift-off distance, indicator and switches.
 *
 * It keeps no settings of its own. Each record that arrives refills it, and decides with the product data of the model
 * which controls exist; while it is filled, nothing is written.
 *
 * The controls inside its frames write for themselves. The page has no second handler for them, though a slot named
 * after them would reach them here too: one click would then ask the mouse twice, and an absent mouse would prompt
 * twice. What a new rate means for the sensor mode reaches the page as SigHideModel.
 */
class Sensor : public QWidget
{
    Q_OBJECT
public:
    explicit Sensor(QWidget *parent = nullptr);
    ~Sensor() override;

public Q_SLOTS:
    /** A whole record was read: refills the page and tells that it has. */
    void SlotUpDataSenSorUISensor(FlashDataMap DataMap);
    /** Refills the page. */
    void SlotUpDataSenSorUIB(FlashDataMap DataMap);
    /** Back to how the page looks without a device. */
    void SlotFormReset();
    /** The mouse tells a rate code: 8, 4, 2, 1, 16 or 32. */
    void SlotUpDataReportRate(int code);
    /** The mouse tells its active level, 0 to 7. */
    void SlotUpDataDPI(int level);
    /** The mouse tells its indicator. */
    void SlotUpDataDPILed(FlashDataMap DataMap);
    /** The user chose a rate: 0 up to 1000 Hz, 1 above. */
    void SlotHideModel(int high);
    void SlotChangeLanguage(int index);

private Q_SLOTS:
    void on_Performance_toggled(bool checked);
    void on_Performance_clicked(bool checked);
    void on_PerformanceOpen_currentIndexChanged(int index);
    void on_ModelChoose_currentIndexChanged(int index);

private:
    void connectHub();

    std::unique_ptr<SensorForm> form;
};
