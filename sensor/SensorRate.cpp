#include "sensor/SensorRate.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "productdata/Theme.h"
#include "ui/FittedText.h"
#include "ui/LateStyle.h"
#include "ui/PageFont.h"

#include <QButtonGroup>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

namespace {

struct Rate
{
    const char *objectName;
    const char *text;
    std::uint8_t code; ///< in the record
};

constexpr std::array<Rate, SensorRate::rateCount> rates = {{
    {"Button125HZ", "125Hz", 8},
    {"Button250HZ", "250Hz", 4},
    {"Button500HZ", "500Hz", 2},
    {"Button1000HZ", "1000Hz", 1},
    {"Button2000HZ", "2000Hz", 16},
    {"Button4000HZ", "4000Hz", 32},
}};
constexpr int index2000 = 4;
constexpr int index4000 = 5;

struct RateClass
{
    bool has2000;
    bool has4000;
};
constexpr std::array<RateClass, 3> rateClasses = {{{false, false}, {true, true}, {true, false}}};

constexpr QRect labelPlace(0, 0, 300, 21);
constexpr int buttonDistance = 100;
constexpr int buttonTop = 51;
constexpr QSize buttonSize(74, 26);

} // namespace

SensorRate::SensorRate(QWidget *parent) : QFrame(parent), label(new QLabel(this)), group(new QButtonGroup(this))
{
    resize(587, 82);
    label->setObjectName(QStringLiteral("label"));
    label->setGeometry(labelPlace);
    label->setStyleSheet(Theme::label());
    label->setFont(PageFont::font());
    setTitle(QStringLiteral("回报率"));

    const QString style = Theme::choiceButton(Theme::pictureFolder("Sensor"), QStringLiteral("Rate.png"),
                                              QStringLiteral("RateHover.png"), QStringLiteral("RateChecked.png"));
    for (int index = 0; index < rateCount; ++index) {
        const Rate &rate = rates[static_cast<std::size_t>(index)];
        auto *const button = new QToolButton(this);
        button->setObjectName(QLatin1String(rate.objectName));
        button->setText(QLatin1String(rate.text));
        button->setGeometry(QRect(QPoint(buttonDistance * index, buttonTop), buttonSize));
        button->setCheckable(true);
        new LateStyle(button, style);
        group->addButton(button, index);
        buttons[static_cast<std::size_t>(index)] = button;
        connect(button, &QToolButton::clicked, this, [this, index](bool checked) {
            if (checked)
                rateClicked(index);
        });
    }
}

int SensorRate::indexOf(int code)
{
    const auto found = std::find_if(rates.begin(), rates.end(), [=](const Rate &rate) { return rate.code == code; });
    return found == rates.end() ? -1 : int(found - rates.begin());
}

bool SensorRate::isHighRate(int code) { return indexOf(code) >= index2000; }

void SensorRate::select(int index)
{
    if (index >= 0 && index < rateCount)
        buttons[static_cast<std::size_t>(index)]->setChecked(true);
}

void SensorRate::setRateClass(int rateClass)
{
    if (rateClass < 0 || rateClass >= int(rateClasses.size()))
        return;
    const RateClass &offered = rateClasses[static_cast<std::size_t>(rateClass)];
    buttons[index2000]->setVisible(offered.has2000);
    buttons[index4000]->setVisible(offered.has4000);
}

void SensorRate::setTitle(const QString &text) { FittedText::set(label, text, PageFont::points, 0); }

void SensorRate::rateClicked(int index)
{
    if (!DeviceWritesEnabled)
        return;
    const Rate &rate = rates[static_cast<std::size_t>(index)];
    if (SetReportRate(rate.code))
        postMsg()->post(&PostMsg::SigHideModel, isHighRate(rate.code) ? 1 : 0);
}
