#include "support/DpiBench.h"

#include <QMouseEvent>
#include <QSlider>
#include <QSpinBox>

void DpiBench::init()
{
    VirtualMice::restoreScene();
    page = std::make_unique<Sensor>();
    view = std::make_unique<SensorPageView>(*page);
    page->show();
    connectModel(0);
}

void DpiBench::cleanup()
{
    ConnectedMouse::forget();
    page.reset();
}

void DpiBench::connectModel(int model)
{
    id = model == 0 ? "q1" : "q2";
    ConnectedMouse::select(model);
    QVERIFY(ConnectedMouse::read(true));
}

void DpiBench::setLevels(int count, int active)
{
    WorkingRecord::instance().updateAndSend([=](FlashDataMap &record) {
        record.DpiLevelCount = std::uint8_t(count);
        record.DpiCurrentLevel = std::uint8_t(active);
        for (int level = 0; level < 8; ++level)
            record.DpiLevels[level] = {std::uint8_t(20 + level), std::uint8_t(20 + level), 0,
                                       std::uint8_t(level),      std::uint8_t(2 * level),  std::uint8_t(3 * level)};
    });
    QVERIFY(ConnectedMouse::isWritten(id));
    page->SlotUpDataSenSorUIB(WorkingRecord::instance().copy());
}

void DpiBench::arm()
{
    auto *const slider = find<QSlider>("horizontalSliderC");
    const int value = slider->value();
    setSlider(value == slider->maximum() ? slider->minimum() : slider->maximum());
    setSlider(value);
}

void DpiBench::dragMarker(QPoint from, QPoint to)
{
    auto *const editor = find<QWidget>("frameDpi");
    const auto send = [editor](QEvent::Type type, QPoint point, Qt::MouseButton button, Qt::MouseButtons held) {
        // What the window system sees is the child under the pointer; where the event ends is the program's affair.
        QWidget *const under = type == QEvent::MouseMove ? nullptr : editor->childAt(point);
        QWidget *const receiver = under ? under : editor;
        QMouseEvent event(type, receiver->mapFrom(editor, point), editor->mapToGlobal(point), button, held,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(receiver, &event);
    };
    send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    for (int part = 1; part <= 20; ++part)
        send(QEvent::MouseMove, from + (to - from) * part / 20, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

int DpiBench::shownDpi() const { return find<QSpinBox>("spinBoxA")->value(); }

void DpiBench::setSlider(int value) { find<QSlider>("horizontalSliderC")->setValue(value); }
