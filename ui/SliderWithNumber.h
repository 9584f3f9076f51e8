#pragma once

class QFrame;
class QRect;
class QSlider;
class QSpinBox;
class QWidget;

/**
 * A horizontal slider, the number that tells what it is at, and the plain line that stands in its place where there is
 * nothing to set. The three are children of the widget that they are made for. Values count from 1.
 */
struct SliderWithNumber
{
    SliderWithNumber() = default;
    /** Makes the three with these object names; `folder` is the name of the picture folder, such as "Light". */
    SliderWithNumber(QWidget *parent, const char *folder, const char *sliderName, const char *numberName,
                     const char *lineName);

    /** Places in pixels of the parent. The line lies where the slider has its groove, and is `lineWidth` long. */
    void place(const QRect &sliderPlace, const QRect &numberPlace, int lineWidth) const;
    /** Slider and number end here. */
    void setMaximum(int maximum) const;
    /** Shows slider and number, or else the line. */
    void setOffered(bool offered) const;
    /** Shows a value as a record tells it, without a signal of the slider; outside the range the nearest end. */
    void setValueSilently(int value) const;

    QSlider *slider = nullptr;
    QSpinBox *number = nullptr;
    QFrame *line = nullptr;
};
