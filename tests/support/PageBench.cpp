#include "support/PageBench.h"

void PageBench::init()
{
    VirtualMice::restoreScene();
    if (!window) {
        window = std::make_unique<QWidget>();
        sensor = new Sensor(window.get());
        light = new LampLight(window.get());
        (page == lightPage ? static_cast<QWidget *>(light) : sensor)->raise();
        window->resize(sensor->size());
        window->show();
    }
    connectModel(0);
}

void PageBench::connectModel(int model)
{
    id = model == 0 ? "q1" : "q2";
    ConnectedMouse::select(model);
    LightUiLoaded = false;
    QVERIFY(ConnectedMouse::read(true));
    QTRY_VERIFY(LightUiLoaded);
}

void PageBench::hold(const FlashDataMap &record)
{
    WorkingRecord::instance().updateAndSend([&](FlashDataMap &working) { working = record; });
    QVERIFY(isWritten());
    show(record);
}

void PageBench::show(const FlashDataMap &record)
{
    ConnectedMouse::runOnThread([&record] {
        postMsg()->postBlocking(&PostMsg::SigUpDataLightSensor, record);
        postMsg()->postBlocking(&PostMsg::SigUpDataLightLight, record);
    });
}

FlashDataMap PageBench::someRecord() const
{
    FlashDataMap record = held();
    record.ReportRate = 2;
    record.DpiLevelCount = 4;
    record.DpiCurrentLevel = 1;
    record.Lod = 2;
    record.MotionSync = 1;
    record.StraightLine = 1;
    record.RippeControl = 1;
    record.Performance = 1;
    record.PerformanceTime = 180;
    record.SensorMode = 1;
    record.StopCloseTime = 30;
    for (int level = 0; level < 8; ++level)
        record.DpiLevels[level] = {std::uint8_t(10 + level), std::uint8_t(10 + level), 0,
                                   std::uint8_t(level),      std::uint8_t(2 * level),  std::uint8_t(3 * level)};
    record.DpiLedOn = 1;
    record.DpiLedMode = 2;
    record.DpiLedSpeed = 4;
    record.DpiLedBrightness = 150;
    record.LightOn = 1;
    record.LightMode = 3;
    record.LightRed = 10;
    record.LightGreen = 20;
    record.LightBlue = 30;
    record.LightSpeed = 4;
    record.LightBrightness = 4;
    return record;
}
