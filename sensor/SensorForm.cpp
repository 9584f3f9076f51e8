#include "sensor/SensorForm.h"

#include "productdata/Theme.h"
#include "sensor/MotionSync.h"
#include "sensor/RippeControl.h"
#include "sensor/SensorDPI.h"
#include "sensor/SensorEffect.h"
#include "sensor/SensorLOD.h"
#include "sensor/SensorRate.h"
#include "sensor/StraightLine.h"
#include "sensor/TenSecondTimes.h"
#include "ui/ChangeSheet.h"
#include "ui/ComboStyle.h"
#include "ui/LateStyle.h"
#include "ui/MyConmboBox.h"
#include "ui/PageFont.h"

#include <QCheckBox>
#include <QLabel>
#include <QToolButton>

namespace {

constexpr QSize pageSize(883, 630);
constexpr QSize titleButtonSize(20, 20);

constexpr QPoint effectPlace(80, 456);
constexpr QPoint effectTitlePlace(40, 463);
constexpr QPoint simpleEffectPlace(80, 316);
constexpr QPoint simpleEffectTitlePlace(40, 323);

void place(QWidget *widget, const char *name, const QRect &geometry)
{
    widget->setObjectName(QLatin1String(name));
    widget->setGeometry(geometry);
}

} // namespace

SensorForm::SensorForm(QWidget *page)
    : SenSorPage(new QFrame(page)), frameDpi(new SensorDPI(SenSorPage)), frameRate(new SensorRate(SenSorPage)),
      frameLOD(new SensorLOD(SenSorPage)), frameEffect(new SensorEffect(SenSorPage)),
      frame(new RippeControl(SenSorPage)), frame_4(new StraightLine(SenSorPage)), frame_3(new MotionSync(SenSorPage)),
      label_5(new QLabel(SenSorPage)), label_11(new QLabel(SenSorPage)), ModelChoose(new MyConmboBox(SenSorPage)),
      modelList(nullptr), Performance(new QCheckBox(SenSorPage)), PerformanceOpen(new MyConmboBox(SenSorPage)),
      TitleButton(new QToolButton(SenSorPage)), TitleButton_2(new QToolButton(SenSorPage)),
      TitleButton_3(new QToolButton(SenSorPage)), TitleButton_4(new QToolButton(SenSorPage))
{
    page->setFixedSize(pageSize);
    place(SenSorPage, "SenSorPage", QRect(QPoint(0, 0), pageSize));
    new LateStyle(SenSorPage, backgroundStyle(false));
    makeFrames();
    makeModeControls();
    makePerformance();
    makeTitles();
}

void SensorForm::makeFrames()
{
    place(frameDpi, "frameDpi", {65, 26, 728, 194});
    place(frameRate, "frameRate", {80, 208, 587, 82});
    place(frameLOD, "frameLOD", {255, 360, 131, 61});
    place(frameEffect, "frameEffect", {effectPlace, QSize(439, 96)});
    place(frame, "frame", {640, 340, 204, 31});
    place(frame_4, "frame_4", {640, 370, 204, 31});
    place(frame_3, "frame_3", {640, 400, 204, 31});
}

void SensorForm::makeModeControls()
{
    place(label_5, "label_5", {80, 320, 300, 21});
    place(label_11, "label_11", {80, 360, 160, 21});
    label_5->setFont(PageFont::font());
    label_5->setStyleSheet(Theme::label());
    label_5->setText(QStringLiteral("Sensor设置"));
    label_11->setFont(PageFont::font());
    label_11->setStyleSheet(Theme::label());
    label_11->setText(QStringLiteral("模式选择"));

    place(ModelChoose, "ModelChoose", {80, 390, 130, 30});
    modelList = styleCombo(ModelChoose, "Sensor");
    ModelChoose->addItems({QStringLiteral("LP"), QStringLiteral("HP"), QStringLiteral("Corded")});
    ModelChoose->setToolTip(QStringLiteral("LP:普通模式; HP:高性能模式; corded:超性能模式"));
}

void SensorForm::makePerformance()
{
    place(Performance, "Performance", {431, 360, 200, 21});
    Performance->setFont(PageFont::font());
    Performance->setStyleSheet(Theme::checkBox(Theme::pictureFolder("Sensor")));
    Performance->setText(QStringLiteral("性能全开"));
    place(PerformanceOpen, "PerformanceOpen", {431, 390, 130, 30});
    styleCombo(PerformanceOpen, "Sensor");
    PerformanceOpen->addItems(TenSecondTimes::texts(TenSecondTimes::fullPerformance));
    PerformanceOpen->setEnabled(false);
}

void SensorForm::makeTitles()
{
    const QString style =
        QStringLiteral("QToolButton{border-image: url(%1Title.png);}").arg(Theme::pictureFolder("Sensor"));
    const auto title = [&style](QToolButton *button, const char *name, QPoint position) {
        place(button, name, QRect(position, titleButtonSize));
        new LateStyle(button, style);
        button->setFocusPolicy(Qt::NoFocus);
    };
    title(TitleButton, "TitleButton", {40, 27});
    title(TitleButton_2, "TitleButton_2", {40, 209});
    title(TitleButton_3, "TitleButton_3", effectTitlePlace);
    title(TitleButton_4, "TitleButton_4", {40, 321});
}

QString SensorForm::backgroundStyle(bool simple) const
{
    return Theme::frameBackground(Theme::pictureFolder("Sensor"), SenSorPage->objectName(),
                                  simple ? QStringLiteral("BackGroundSimple.png") : QStringLiteral("BackGround.png")) +
           Theme::toolTip();
}

void SensorForm::setSimple(bool simple)
{
    const std::initializer_list<QWidget *> settings = {TitleButton_4, label_5,     label_11,       ModelChoose,
                                                       frameLOD,      Performance, PerformanceOpen};
    for (QWidget *widget : settings)
        widget->setVisible(!simple);
    if (simple) {
        for (QWidget *widget : std::initializer_list<QWidget *>{frame, frame_4, frame_3})
            widget->hide();
    }
    frameEffect->move(simple ? simpleEffectPlace : effectPlace);
    TitleButton_3->move(simple ? simpleEffectTitlePlace : effectTitlePlace);
    changeSheet(SenSorPage, backgroundStyle(simple));
}
