#pragma once

class MotionSync;
class MyConmboBox;
class QCheckBox;
class QFrame;
class QLabel;
class QListView;
class QString;
class QToolButton;
class QWidget;
class RippeControl;
class SensorDPI;
class SensorEffect;
class SensorLOD;
class SensorRate;
class StraightLine;

/** The widgets of the sensor page. */
struct SensorForm
{
    explicit SensorForm(QWidget *page);

    /**
     * The simple layout has the DPI editor, the rate and the indicator only. The other one shows the rest again but for
     * the switches, which depend on the sensor.
     */
    void setSimple(bool simple);

    QFrame *SenSorPage;
    SensorDPI *frameDpi;
    SensorRate *frameRate;
    SensorLOD *frameLOD;
    SensorEffect *frameEffect;
    RippeControl *frame;
    StraightLine *frame_4;
    MotionSync *frame_3;
    QLabel *label_5;  ///< heading of the sensor settings
    QLabel *label_11; ///< title of the sensor mode
    MyConmboBox *ModelChoose;
    QListView *modelList; ///< the popup of ModelChoose
    QCheckBox *Performance;
    MyConmboBox *PerformanceOpen;
    QToolButton *TitleButton;   ///< before the DPI editor
    QToolButton *TitleButton_2; ///< before the rate
    QToolButton *TitleButton_3; ///< before the indicator
    QToolButton *TitleButton_4; ///< before the sensor settings

private:
    void makeFrames();
    void makeModeControls();
    void makePerformance();
    void makeTitles();
    QString backgroundStyle(bool simple) const;
};
