#pragma once

#include "buttons/Buttoninterface.h"
#include "support/Child.h"
#include "support/ConnectedMouse.h"

#include <QScrollArea>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>

#include <memory>

/** The button page before a virtual mouse, used by real clicks. */
class ButtonBench
{
public:
    /** Shows the page with the record of one of the two mice. */
    explicit ButtonBench(int modelIndex) : mouse(modelIndex == 0 ? "q1" : "q2")
    {
        page = std::make_unique<Buttoninterface>();
        page->show();
        DeviceEntered = true;
        ButtonUiLoaded = false;
        ConnectedMouse::select(modelIndex);
        if (!ConnectedMouse::read(false) || !QTest::qWaitFor([] { return bool(ButtonUiLoaded); }))
            qFatal("no record came");
    }
    ~ButtonBench()
    {
        ConnectedMouse::forget();
        DeviceEntered = false;
    }

    QToolButton *button(const QString &name) const { return find<QToolButton>(name); }
    template<typename Widget>
    Widget *find(const QString &name) const
    {
        return childOf<Widget>(page.get(), name);
    }
    /** Clicks as a user can: ends the test when the button doesn't show or is out of sight. */
    void click(const QString &name) const
    {
        QToolButton *const target = button(name);
        for (QWidget *parent = target; parent; parent = parent->parentWidget()) {
            if (auto *const area = qobject_cast<QScrollArea *>(parent))
                area->ensureWidgetVisible(target);
        }
        if (!target->isVisible() || target->visibleRegion().isEmpty())
            qFatal("%s can't be clicked", qPrintable(name));
        QTest::mouseClick(target, Qt::LeftButton);
    }
    /** Does something in the dialog that opens next. */
    static void inDialog(const std::function<void(QWidget *dialog)> &act)
    {
        QTimer::singleShot(20, [act] {
            QWidget *const dialog = QApplication::activeModalWidget();
            QVERIFY(dialog && QTest::qWaitForWindowActive(dialog));
            act(dialog);
        });
    }
    /** Chooses a macro of the list, which needn't show. */
    void clickMacro(const QString &name) const
    {
        const QList<QToolButton *> all = find<QWidget>("MacroListWidget")->findChildren<QToolButton *>();
        for (QToolButton *each : all) {
            if (each->text() == name)
                each->click();
        }
    }
    /** "page_2 page_9": which lists show. */
    QString menu() const
    {
        return find<QStackedWidget>("stackedWidget")->currentWidget()->objectName() + ' ' +
               find<QStackedWidget>("stackedWidget_2")->currentWidget()->objectName();
    }
    /** Names of the checked entries, those that are out of sight included. */
    QStringList checkedEntries() const
    {
        QStringList names;
        for (const char *list : {"stackedWidget", "stackedWidget_2"}) {
            for (const QToolButton *each : find<QWidget>(list)->findChildren<QToolButton *>()) {
                if (each->isChecked())
                    names << (each->objectName().isEmpty() ? each->text() : each->objectName());
            }
        }
        return names;
    }
    /** What the mouse sends when the button of a slot is pressed: "type code" of each event that begins something. */
    QStringList pressed(int slot) const
    {
        held(); // an earlier change is over
        QStringList events;
        const QList<QJsonObject> all = VirtualMice::press(mouse, slot);
        for (const QJsonObject &event : all) {
            if (event["action"] == "press")
                events << event["type"].toString() + ' ' + QString::number(event["code"].toInt());
        }
        return events;
    }
    FlashDataMap held() const { return ConnectedMouse::settled(mouse); }
    /** Puts a record into the mouse and on the page. */
    void hold(const FlashDataMap &record) const
    {
        WorkingRecord::instance().updateAndSend([&](FlashDataMap &working) { working = record; });
        page->SlotUpDataButtonUIB(record);
    }

    const QString mouse;
    std::unique_ptr<Buttoninterface> page;
};
