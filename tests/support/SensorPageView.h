#pragma once

#include "sensor/Sensor.h"

#include <QComboBox>
#include <QToolButton>

/** The sensor page as a user reads it. */
class SensorPageView
{
public:
    static constexpr const char *rateButtons[] = {"Button125HZ",  "Button250HZ",  "Button500HZ",
                                                  "Button1000HZ", "Button2000HZ", "Button4000HZ"};
    static constexpr const char *cards[] = {"BlueButton",  "BrightRedButton", "RedButton",       "YellowButton",
                                            "GreenButton", "PurpleButton",    "LightBlueButton", "LightYellowButton"};

    explicit SensorPageView(const Sensor &shownPage) : page(shownPage) {}

    /** The widget of this name; ends the test without one. */
    template<typename Widget>
    Widget *find(const QString &name) const
    {
        auto *widget = page.findChild<Widget *>(name);
        if (!widget)
            qFatal("no %s", qPrintable(name));
        return widget;
    }
    bool isShown(const QString &name) const { return find<QWidget>(name)->isVisibleTo(&page); }

    /** Index of the chosen rate, -1 without one. */
    int rate() const
    {
        for (int index = 0; index < 6; ++index) {
            if (find<QToolButton>(rateButtons[index])->isChecked())
                return index;
        }
        return -1;
    }
    /** A digit for each rate: 1 if it is offered. */
    QString ratesShown() const
    {
        QString shown;
        for (const char *name : rateButtons)
            shown += isShown(name) ? '1' : '0';
        return shown;
    }
    /** "LP", "Corded disabled": the sensor mode, and whether it can be changed. */
    QString mode() const
    {
        const auto *const box = find<QComboBox>("ModelChoose");
        return box->currentText() + (box->isEnabled() ? "" : " disabled");
    }
    /** Texts of the levels that show; the active one has a star. */
    QString levels() const
    {
        QStringList texts;
        for (const char *name : cards) {
            if (isShown(name))
                texts << find<QToolButton>(name)->text() + (find<QToolButton>(name)->isChecked() ? "*" : "");
        }
        return texts.join(' ');
    }

private:
    const Sensor &page;
};
