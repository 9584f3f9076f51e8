#include "ui/SliderWithNumber.h"

#include "productdata/Theme.h"
#include "ui/LateStyle.h"
#include "ui/NumberBox.h"

#include <QFrame>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

namespace {

constexpr int lineHeight = 2; // as the groove of the slider

/** A slider that can't be moved now has no accent. */
QString disabledLook()
{
    return QStringLiteral("QSlider:sub-page:horizontal:disabled{background-color: rgb(%1);}"
                          "QSlider:add-page:horizontal:disabled{background-color: rgb(%2);}")
        .arg(Theme::rgb(Theme::Tone::Faint), Theme::rgb(Theme::Tone::Edge));
}

} // namespace

SliderWithNumber::SliderWithNumber(QWidget *parent, const char *folder, const char *sliderName, const char *numberName,
                                   const char *lineName)
    : slider(new WheelWithKeyboard<QSlider>(parent)), number(new QSpinBox(parent)), line(new QFrame(parent))
{
    slider->setObjectName(QLatin1String(sliderName));
    slider->setOrientation(Qt::Horizontal);
    slider->setMinimum(1);
    slider->setPageStep(1);
    new LateStyle(slider, Theme::slider(Theme::pictureFolder(folder)) + disabledLook());
    number->setObjectName(QLatin1String(numberName));
    number->setMinimum(1);
    styleNumberDisplay(number);
    line->setObjectName(QLatin1String(lineName));
    line->setStyleSheet(QStringLiteral("border: 0px;background: rgb(%1);").arg(Theme::rgb(Theme::Tone::Hairline)));
    line->hide();
}

void SliderWithNumber::place(const QRect &sliderPlace, const QRect &numberPlace, int lineWidth) const
{
    slider->setGeometry(sliderPlace);
    number->setGeometry(numberPlace);
    line->setGeometry(sliderPlace.left(), sliderPlace.center().y(), lineWidth, lineHeight);
}

void SliderWithNumber::setMaximum(int maximum) const
{
    slider->setMaximum(maximum);
    number->setMaximum(maximum);
}

void SliderWithNumber::setOffered(bool offered) const
{
    slider->setVisible(offered);
    number->setVisible(offered);
    line->setVisible(!offered);
}

void SliderWithNumber::setValueSilently(int value) const
{
    const QSignalBlocker blocker(slider);
    slider->setValue(value);
    number->setValue(slider->value());
}
