#pragma once

#include "app/hub/PostMsg.h"
#include "lighting/LampLight.h"
#include "sensor/Sensor.h"
#include "support/Child.h"
#include "support/ConnectedMouse.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>

#include <memory>

/**
 * The sensor page and the lighting page in a window of their own, before a virtual mouse: linked and read as the
 * program does it, without the chooser. A test class of its own derives from it.
 */
class PageBench : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { ConnectedMouse::forget(); }

protected:
    static constexpr const char *sensorPage = "SenSorPage";
    static constexpr const char *lightPage = "LampLight";

    /** `pageName` is the page that lies on top and that find() searches. */
    explicit PageBench(const char *pageName = sensorPage) : page(QLatin1String(pageName)) {}

    /** The widget of this name on the page; ends the test without one. */
    template<typename Widget = QWidget>
    Widget *find(const QString &name) const
    {
        return childOf<Widget>(childOf(window.get(), page), name);
    }
    bool isShown(const QString &name) const { return find(name)->isVisible(); }
    void click(const QString &name) { QTest::mouseClick(find(name), Qt::LeftButton); }

    /** Selects and links the mouse of this model, and waits until both pages show its record. */
    void connectModel(int model);
    /** Puts a record into the mouse and on the pages, as a read does. */
    void hold(const FlashDataMap &record);
    void show(const FlashDataMap &record);
    /** What the mouse holds, with settings like none that a page starts with: the second of 550, 600, 650, 700 DPI. */
    FlashDataMap someRecord() const;
    FlashDataMap held() const { return VirtualMice::record(id); }
    QJsonObject mouse() const { return VirtualMice::device(id); }
    /** True once the mouse holds exactly what the program believes that it holds. */
    bool isWritten() const { return ConnectedMouse::isWritten(id); }
    static FlashDataMap working() { return WorkingRecord::instance().copy(); }

    const QString page;              ///< object name
    std::unique_ptr<QWidget> window; ///< one for all tests of a class, as the program keeps its pages for all devices
    Sensor *sensor = nullptr;
    LampLight *light = nullptr;
    QString id; ///< of the mouse
};
