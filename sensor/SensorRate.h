#pragma once

#include <QFrame>

#include <array>

class QButtonGroup;
class QLabel;
class QToolButton;

/**
 * The polling rate of the mouse: six exclusive buttons, of which those show that the receiver can carry.
 * Buttons are counted from 0, 125 Hz, to 5, 4000 Hz.
 */
class SensorRate : public QFrame
{
    Q_OBJECT
public:
    static constexpr int rateCount = 6;

    explicit SensorRate(QWidget *parent = nullptr);

    /** Index of the button for a rate code of the record, -1 for a code that means nothing. */
    static int indexOf(int code);
    /** True for 2000 and 4000 Hz. */
    static bool isHighRate(int code);

    /** Shows a rate without writing; another index changes nothing. */
    void select(int index);
    /** Shows the rates of a class: 0 up to 1000 Hz, 1 up to 4000 Hz, 2 up to 2000 Hz; another changes nothing. */
    void setRateClass(int rateClass);
    void setTitle(const QString &text);

private:
    void rateClicked(int index);

    QLabel *label;
    QButtonGroup *group;
    std::array<QToolButton *, rateCount> buttons{};
};
