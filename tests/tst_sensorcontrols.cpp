#include "app/hub/PostMsg.h"
#include "devicelink/DeviceSetters.h"
#include "sensor/DebounceTime.h"
#include "sensor/MotionSync.h"
#include "sensor/RippeControl.h"
#include "sensor/SensorEffect.h"
#include "sensor/SensorLOD.h"
#include "sensor/StopCloseTime.h"
#include "sensor/StraightLine.h"
#include "support/ConnectedMouse.h"
#include "support/TestHome.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

#include <functional>

namespace {

using Make = std::function<QWidget *(QWidget *)>;
using Act = std::function<void(QWidget *)>;
using Field = std::uint8_t FlashDataMap::*;

template<typename Control>
Make make()
{
    return [](QWidget *parent) { return new Control(parent); };
}

/** Moves the slider or the combo box of this name with the keyboard, up or down as many steps as it takes. */
Act moveTo(const char *name, int target)
{
    return [=](QWidget *control) {
        if (auto *const slider = control->findChild<QSlider *>(name)) {
            while (slider->value() != target)
                QTest::keyClick(slider, slider->value() < target ? Qt::Key_Right : Qt::Key_Left);
            return;
        }
        auto *const combo = control->findChild<QComboBox *>(name);
        while (combo->currentIndex() != target)
            QTest::keyClick(combo, combo->currentIndex() < target ? Qt::Key_Down : Qt::Key_Up);
    };
}

Act click(const char *name)
{
    return [=](QWidget *control) { QTest::mouseClick(control->findChild<QToolButton *>(name), Qt::LeftButton); };
}

/** Clicks a switch until it was changed to this state. */
Act switchTo(const char *name, bool on)
{
    return [=](QWidget *control) {
        auto *const button = control->findChild<QToolButton *>(name);
        if (button->isChecked() == on)
            QTest::mouseClick(button, Qt::LeftButton);
        QTest::mouseClick(button, Qt::LeftButton);
    };
}

Act chooseEffect(int mode)
{
    return [=](QWidget *control) { qobject_cast<SensorEffect *>(control)->setMode(mode); };
}

} // namespace

Q_DECLARE_METATYPE(Make)
Q_DECLARE_METATYPE(Act)
Q_DECLARE_METATYPE(Field)

/** The frames that edit one setting each, before a virtual mouse whose flash tells what a change did. */
class SensorControlsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void change_data();
    void change();
    void hostChangesSendNothing();
    void debounceWritesWhatItsHostSets();
    void offlinePromptsOnceAndKeepsTheLook();
    void effectShowsWhatItOffers_data();
    void effectShowsWhatItOffers();
    void switchedOffIndicatorKeepsItsEffect();
    void numbersFollowTheSliders();
    void valuesThatNoListHas();
    void roomForATitle();

private:
    QWidget window;
};

void SensorControlsTest::init()
{
    VirtualMice::restoreScene();
    ConnectedMouse::select(0);
    QVERIFY(ConnectedMouse::read(false));
    window.resize(500, 200);
    window.show();
}

void SensorControlsTest::cleanup()
{
    ConnectedMouse::forget();
    SensorUiUpdating = false;
    LightUiUpdating = false;
    qDeleteAll(window.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
}

void SensorControlsTest::change_data()
{
    QTest::addColumn<Make>("makeControl");
    QTest::addColumn<Act>("away"); ///< to another value first, so that the change is one
    QTest::addColumn<Act>("act");
    QTest::addColumn<Field>("field");
    QTest::addColumn<int>("value");
    const auto row = [](const QByteArray &name, Make makeControl, Act away, Act act, Field field, int value) {
        QTest::newRow(name.constData()) << makeControl << away << act << field << value;
    };
    row("lift-off 2 mm", make<SensorLOD>(), moveTo("LOD", 0), moveTo("LOD", 1), &FlashDataMap::Lod, 2);
    row("lift-off 1 mm", make<SensorLOD>(), moveTo("LOD", 1), moveTo("LOD", 0), &FlashDataMap::Lod, 1);
    const auto rowsOfSwitch = [&row](const QByteArray &name, Make makeControl, const char *button, Field field) {
        row(name + " on", makeControl, switchTo(button, false), click(button), field, 1);
        row(name + " off", makeControl, switchTo(button, true), click(button), field, 0);
    };
    rowsOfSwitch("ripple", make<RippeControl>(), "RippeControl_2", &FlashDataMap::RippeControl);
    rowsOfSwitch("straight line", make<StraightLine>(), "StraightLine_2", &FlashDataMap::StraightLine);
    rowsOfSwitch("motion sync", make<MotionSync>(), "MotionSync_2", &FlashDataMap::MotionSync);
    for (int index : {0, 1, 20})
        row("debounce " + QByteArray::number(index), make<DebounceTime>(), moveTo("Debunce", index == 1 ? 2 : 1),
            moveTo("Debunce", index), &FlashDataMap::DebounceTime, index);
    const int idleTimes[] = {1, 3, 6, 30, 60, 90, 120, 150, 180, 210, 240};
    for (int index = 0; index < 11; ++index)
        row("idle time " + QByteArray::number(index), make<StopCloseTime>(), moveTo("StopClose", (index + 1) % 11),
            moveTo("StopClose", index), &FlashDataMap::StopCloseTime, idleTimes[index]);
    const int brightness[] = {16, 30, 60, 90, 128, 150, 180, 210, 230, 255};
    for (int position = 1; position <= 10; ++position) {
        const Act away = [=](QWidget *control) {
            chooseEffect(1)(control);
            moveTo("LightH", position % 10 + 1)(control);
        };
        row("brightness " + QByteArray::number(position), make<SensorEffect>(), away, moveTo("LightH", position),
            &FlashDataMap::DpiLedBrightness, brightness[position - 1]);
    }
    for (int speed : {1, 5}) {
        const Act away = [](QWidget *control) {
            chooseEffect(2)(control);
            moveTo("SpeedH", 3)(control);
        };
        row("speed " + QByteArray::number(speed), make<SensorEffect>(), away, moveTo("SpeedH", speed),
            &FlashDataMap::DpiLedSpeed, speed);
    }
    row("effect", make<SensorEffect>(), moveTo("Model", 1), moveTo("Model", 2), &FlashDataMap::DpiLedMode, 2);
    const Act onAndOff = [](QWidget *control) {
        moveTo("Model", 1)(control);
        moveTo("Model", 0)(control);
    };
    row("effect on", make<SensorEffect>(), onAndOff, moveTo("Model", 1), &FlashDataMap::DpiLedOn, 1);
    row("effect off", make<SensorEffect>(), moveTo("Model", 1), moveTo("Model", 0), &FlashDataMap::DpiLedOn, 0);
}

/** The change reaches the flash; the same change with writes off does not. */
void SensorControlsTest::change()
{
    QFETCH(Make, makeControl);
    QFETCH(Act, away);
    QFETCH(Act, act);
    QFETCH(Field, field);
    QFETCH(int, value);
    QWidget *const control = makeControl(&window);
    control->show();
    away(control);
    QVERIFY(ConnectedMouse::isWritten("q1"));
    DeviceWritesEnabled = false;
    act(control);
    away(control);
    DeviceWritesEnabled = true;
    QVERIFY(WorkingRecord::instance().copy().*field != value);
    act(control);
    QTRY_COMPARE(int(VirtualMice::record("q1").*field), value);
    QVERIFY(ConnectedMouse::isWritten("q1"));
}

void SensorControlsTest::hostChangesSendNothing()
{
    SensorLOD lift(&window);
    RippeControl ripple(&window);
    SensorEffect effect(&window);
    DebounceTime debounce(&window);
    StopCloseTime idle(&window);
    const FlashDataMap before = WorkingRecord::instance().copy();
    ripple.setOn(!ripple.isOn());
    effect.setMode(2);
    effect.setSpeed(1);
    effect.setSpeed(4);
    effect.setBrightness(255);
    effect.setBrightness(16);
    debounce.setIndexSilently(7);
    idle.setIndexSilently(9);
    idle.setTimeSilently(30);
    idle.setIndex(5);
    {
        const FlagScope updating(SensorUiUpdating);
        lift.setIndex(1);
        lift.setIndex(0);
    }
    const FlashDataMap after = WorkingRecord::instance().copy();
    QVERIFY(std::memcmp(&before, &after, sizeof before) == 0);
    QCOMPARE(debounce.index(), 7);
    QCOMPARE(idle.index(), 5);
    QCOMPARE(effect.mode(), 2);
}

void SensorControlsTest::debounceWritesWhatItsHostSets()
{
    DebounceTime debounce(&window);
    debounce.setItemText(20, "20 ms");
    const int held = WorkingRecord::instance().copy().DebounceTime;
    debounce.setIndexSilently(held);
    const int next = (held + 3) % DebounceTime::itemCount;
    debounce.setIndex(next);
    QTRY_COMPARE(int(VirtualMice::record("q1").DebounceTime), next);
    QCOMPARE(debounce.findChild<QComboBox *>("Debunce")->itemText(20), QStringLiteral("20 ms"));
    debounce.setIndex(21);
    debounce.setIndex(-1);
    QCOMPARE(debounce.index(), next);
}

void SensorControlsTest::offlinePromptsOnceAndKeepsTheLook()
{
    SensorLOD lift(&window);
    RippeControl ripple(&window);
    SensorEffect effect(&window);
    StopCloseTime idle(&window);
    VirtualMice::tell({"sleep", "q1"});
    const FlashDataMap before = WorkingRecord::instance().copy();
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    const int lod = lift.index();
    moveTo("LOD", 1 - lod)(&lift);
    QCOMPARE(prompts.count(), 1);
    QCOMPARE(lift.index(), 1 - lod);
    click("RippeControl_2")(&ripple);
    QCOMPARE(prompts.count(), 2);
    QVERIFY(ripple.isOn());
    moveTo("Model", 1)(&effect);
    QCOMPARE(prompts.count(), 3);
    QVERIFY(effect.findChild<QSlider *>("LightH")->isVisibleTo(&effect));
    moveTo("StopClose", idle.index() + 1)(&idle);
    QCOMPARE(prompts.count(), 4);
    {
        const FlagScope updating(LightUiUpdating);
        moveTo("StopClose", idle.index() + 1)(&idle);
        click("RippeControl_2")(&ripple);
    }
    QCOMPARE(prompts.count(), 4);
    const FlashDataMap after = WorkingRecord::instance().copy();
    QVERIFY(std::memcmp(&before, &after, sizeof before) == 0);
}

void SensorControlsTest::effectShowsWhatItOffers_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("shown");
    QTest::newRow("off") << 0 << "line line_2";
    QTest::newRow("steady") << 1 << "LightH LightSpinBox line";
    QTest::newRow("breathing") << 2 << "SpeedH SpeedSpinBox line_2";
}

void SensorControlsTest::effectShowsWhatItOffers()
{
    QFETCH(int, mode);
    const auto shown = [](const SensorEffect &effect) {
        QStringList names;
        for (const char *name : {"LightH", "LightSpinBox", "SpeedH", "SpeedSpinBox", "line", "line_2"}) {
            if (effect.findChild<QWidget *>(name)->isVisibleTo(&effect))
                names << name;
        }
        return names.join(' ');
    };
    SensorEffect byHost(&window);
    byHost.setMode(mode);
    QTEST(shown(byHost), "shown");
    byHost.setMode(3);
    byHost.setMode(-1);
    QTEST(shown(byHost), "shown");
    SensorEffect byUser(&window);
    moveTo("Model", (mode + 1) % 3)(&byUser);
    moveTo("Model", mode)(&byUser);
    QTEST(shown(byUser), "shown");
}

void SensorControlsTest::switchedOffIndicatorKeepsItsEffect()
{
    SensorEffect effect(&window);
    moveTo("Model", 2)(&effect);
    {
        const FlagScope silent(DeviceWritesEnabled, false);
        moveTo("Model", 1)(&effect); // as if a record said so
    }
    moveTo("Model", 0)(&effect);
    QTRY_COMPARE(int(VirtualMice::record("q1").DpiLedOn), 0);
    QVERIFY(ConnectedMouse::isWritten("q1"));
    QCOMPARE(int(VirtualMice::record("q1").DpiLedMode), 2);
}

void SensorControlsTest::numbersFollowTheSliders()
{
    DeviceWritesEnabled = false;
    SensorEffect effect(&window);
    effect.setMode(1);
    moveTo("LightH", 7)(&effect);
    QCOMPARE(effect.findChild<QSpinBox *>("LightSpinBox")->value(), 7);
    effect.setBrightness(90);
    QCOMPARE(effect.findChild<QSlider *>("LightH")->value(), 4);
    QCOMPARE(effect.findChild<QSpinBox *>("LightSpinBox")->value(), 4);
    effect.setMode(2);
    Q_EMIT effect.findChild<QSlider *>("SpeedH")->sliderMoved(5);
    QCOMPARE(effect.findChild<QSpinBox *>("SpeedSpinBox")->value(), 5);
    moveTo("SpeedH", 2)(&effect);
    QCOMPARE(effect.findChild<QSpinBox *>("SpeedSpinBox")->value(), 2);
}

void SensorControlsTest::valuesThatNoListHas()
{
    SensorEffect effect(&window);
    effect.setBrightness(6);
    QCOMPARE(effect.findChild<QSlider *>("LightH")->value(), 6); // a value outside the table is its own position
    effect.setBrightness(77);
    QCOMPARE(effect.findChild<QSlider *>("LightH")->value(), 10);
    effect.setSpeed(200);
    QCOMPARE(effect.findChild<QSlider *>("SpeedH")->value(), 5);
    StopCloseTime idle(&window);
    idle.setTimeSilently(240);
    idle.setTimeSilently(2);
    idle.setIndexSilently(11);
    QCOMPARE(idle.index(), 10);
    SensorLOD lift(&window);
    const FlagScope updating(SensorUiUpdating);
    lift.setIndex(1);
    lift.setIndex(-1);
    lift.setIndex(254);
    QCOMPARE(lift.index(), 1);
}

void SensorControlsTest::roomForATitle()
{
    SensorLOD titled(&window);
    titled.setGeometry(0, 0, 131, 61);
    titled.setTitle("Высота отрыва сенсора");
    titled.show();
    const auto *const label = titled.findChild<QLabel *>("label");
    QVERIFY(label->isVisible());
    QVERIFY(label->fontMetrics().horizontalAdvance(label->text()) <= label->width());
    QVERIFY(!label->geometry().intersects(titled.findChild<QComboBox *>("LOD")->geometry()));
    titled.setGeometry(0, 0, 130, 30);
    QVERIFY(!label->isVisible());
    QCOMPARE(titled.findChild<QComboBox *>("LOD")->geometry(), titled.rect());
}

HALVARION_TEST_MAIN(SensorControlsTest)
#include "tst_sensorcontrols.moc"
