#pragma once

#include "ui/SliderWithNumber.h"

#include <QVector>

#include <array>

class LightStage;
class MyConmboBox;
class QLabel;
class QSpinBox;
class QToolButton;
class QWidget;
class StopCloseTime;

/** The widgets of the lighting page, one member each. The page owns them all. */
class LightForm
{
public:
    /** Makes the widgets as children of the page, with their places, ranges and default texts. Call it once. */
    void build(QWidget *page);

    MyConmboBox *LightMod = nullptr;
    SliderWithNumber brightness; ///< `horizontalLight`, `LightSpinBox_2`, `line`
    SliderWithNumber speed;      ///< `horizontalSpeed`, `SpeedSpinBox_2`, `line_2`
    QToolButton *RippeControl = nullptr;
    StopCloseTime *frameClose = nullptr;

    QLabel *label = nullptr;
    QLabel *label_2 = nullptr;
    QLabel *label_3 = nullptr;
    QLabel *label_4 = nullptr;
    QLabel *label_5 = nullptr;
    QLabel *label_6 = nullptr;
    QLabel *label_7 = nullptr; ///< the colour strip
    QLabel *label_8 = nullptr;
    QLabel *label_9 = nullptr; ///< the mark of the page's heading
    QLabel *label_10 = nullptr;
    QLabel *label_11 = nullptr;
    QLabel *label_12 = nullptr;
    QLabel *label_13 = nullptr;
    QLabel *labelPreView = nullptr;

    QSpinBox *RSpinBox = nullptr;
    QSpinBox *GSpinBox = nullptr;
    QSpinBox *BSpinBox = nullptr;
    QToolButton *AddR = nullptr;
    QToolButton *AddG = nullptr;
    QToolButton *AddB = nullptr;
    QToolButton *ReduceR = nullptr;
    QToolButton *ReduceG = nullptr;
    QToolButton *ReduceB = nullptr;
    std::array<QToolButton *, 14> presets{}; ///< `toolButtonColorA` to `toolButtonColorN`

    LightStage *stage = nullptr;

    /** Shows what the effect at the index of the tables lets the user set, and hides the rest. */
    void showEffect(int effect);

private:
    void buildLabels(QWidget *page);
    void buildLevels(QWidget *page);
    void buildColour(QWidget *page);
    void buildPresets(QWidget *page);

    QVector<QWidget *> colourPanel;
};
