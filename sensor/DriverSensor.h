#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <array>

/** What the file of sensor facts beside the executable, driver_sensor.h, tells of all sensors. */
struct DriverSensor
{
    /** What a sensor may have or lack. */
    enum Feature { SensorModeSelection, LiftOff, Ripple, FixLine, MotionSync, MousepadCalibration };
    static constexpr int featureCount = 6;

    QStringList DriverKeys;                    ///< names such as SENSOR_3311_DPI_800, in file order
    QList<int> DriverValues;                   ///< the DPI code of each key; as long as DriverKeys
    std::array<QString, featureCount> Support; ///< for each feature, a text that lists the sensors that have it

    /** True if the list of the feature names the sensor. A name counts wherever it occurs, also inside a longer one. */
    bool supports(Feature feature, const QString &sensorName) const;
    /** True if the sensor has DPI codes of its own here. */
    bool hasKeysOf(const QString &sensorName) const;
    /** DPI code of a key of exactly this name, -1 without one. */
    int code(const QString &key) const;
    /** DPI value of the first key of the sensor that has this code; 0 without one, or if its number is out of range. */
    int dpi(const QString &sensorName, int wantedCode) const;
};

/** Reads the text of such a file. Lines of another form are skipped. */
DriverSensor parseDriverSensor(const QByteArray &text);

/** Reads the file beside the executable. Without it there are no keys and no features. */
DriverSensor readDriverSensor();
