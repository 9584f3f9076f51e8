#pragma once

#include "sensor/Sensor.h"
#include "support/ConnectedMouse.h"
#include "support/SensorPageView.h"

#include <QObject>

#include <memory>

/** The DPI editor on its page, connected to a virtual mouse. A test class of its own derives from it. */
class DpiBench : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

protected:
    template<typename Widget>
    Widget *find(const QString &name) const
    {
        return view->find<Widget>(name);
    }
    QToolButton *card(int level) const { return find<QToolButton>(SensorPageView::cards[level]); }
    QToolButton *bar(int level) const { return find<QToolButton>(card(level)->objectName() + QLatin1Char('A')); }
    void connectModel(int model);
    /** Levels in use with these values, the first active, in the mouse and on the page. */
    void setLevels(int count, int active);
    void click(QWidget *widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    void setSlider(int value);
    /** A change that goes to the mouse; choosing a level swallows the one behind it. */
    void arm();
    int shownDpi() const;
    int dpiOfTheMouse() const { return VirtualMice::device(id)["dpi"].toInt(); }
    /** Takes the marker at `from` and lets it go at `to`, in coordinates of the editor. */
    void dragMarker(QPoint from, QPoint to);
    QPoint marker() const { return find<QWidget>("label_8")->pos(); }
    FlashDataMap held() const { return VirtualMice::record(id); }

    static bool same(const FlashDataMap &one, const FlashDataMap &other)
    {
        return std::memcmp(&one, &other, sizeof one) == 0;
    }

    std::unique_ptr<Sensor> page;
    std::unique_ptr<SensorPageView> view;
    QString id;
};
