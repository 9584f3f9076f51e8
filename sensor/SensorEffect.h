#pragma once

#include "ui/SliderWithNumber.h"

#include <QFrame>

class MyConmboBox;
class QLabel;

/**
 * The DPI indicator of the mouse: effect (0 off, 1 steady, 2 breathing), breathing speed 1 to 5 and brightness 1 to 10.
 * Steady offers brightness only, breathing speed only; a plain line stands where a slider isn't needed.
 */
class SensorEffect : public QFrame
{
    Q_OBJECT
public:
    explicit SensorEffect(QWidget *parent = nullptr);

    /** The setters below show what a record says, without writing. */
    void setMode(int mode);
    int mode() const;
    /** Speed as the record holds it; outside 1 to 5 the nearest end shows. */
    void setSpeed(int speed);
    /** Brightness as the record holds it, 16 to 255; a value between the ten steps is taken as a position. */
    void setBrightness(int value);
    /** Both sliders answer to the user. */
    void enableSliders();

    /** Text of effect 0 to 2; another index changes nothing. */
    void setItemText(int index, const QString &text);
    void setTitle(const QString &text);
    void setSpeedTitle(const QString &text);
    void setBrightnessTitle(const QString &text);

private Q_SLOTS:
    void on_Model_currentIndexChanged(int index);
    void on_SpeedH_valueChanged(int value);
    void on_SpeedH_sliderMoved(int value);
    void on_LightH_valueChanged(int value);
    void on_LightH_sliderMoved(int value);

private:
    struct Gauge
    {
        QLabel *title;
        SliderWithNumber setting;
    };
    Gauge makeGauge(const char *sliderName, const char *numberName, const char *lineName, int maximum, int top);
    void showMode(int mode);

    QLabel *label;
    MyConmboBox *combo;
    Gauge speed;
    Gauge brightness;
};
