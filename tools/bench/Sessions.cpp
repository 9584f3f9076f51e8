#include "bench/Sessions.h"

#include "bench/Screen.h"
#include "bench/Subject.h"
#include "portwire/control/ControlClient.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

constexpr int starts = 11;
constexpr int sessions = 3;
/** Of each page in each session, in seconds; stands for the five minutes of the aim. */
constexpr double idleTime = 7;
/** What a page does when it comes up is no idle time, in seconds. */
constexpr double settling = 1.5;
/** Click to the end of the wait prompt, with room. */
constexpr double connectTime = 8;

constexpr QPoint firstMouse(645, 380); ///< 1K receivers come first, so the Q1 on its 4K receiver stands on the right
constexpr QPoint effectList(464, 150);
constexpr int steadyEffect = 3;
constexpr int movingEffect = 1;

struct Page
{
    const char *key = nullptr;
    const char *name = nullptr;
    QPoint button;
};
constexpr Page pages[] = {
    {"idleSensor", "sensor page", {338, 75}},
    {"idleMacro", "macro page", {418, 75}},
    {"idleSettings", "settings page", {572, 75}},
    {"idleButtons", "button page", {263, 75}},
};
constexpr QPoint lightButton(495, 75);

QString program(const QString &folder) { return folder + QStringLiteral("/halvarion"); }
QString reference(const QString &folder) { return folder + QStringLiteral("/reference"); }

/** Chooses a light effect in the list of the lighting page, and makes sure that the mouse has got it. */
void chooseEffect(const Subject &subject, int effect)
{
    subject.click(effectList);
    QStringList keys{"Home"};
    for (int row = 0; row < effect; ++row)
        keys << QStringLiteral("Down");
    subject.press(keys << QStringLiteral("Return"));
    const QByteArray devices = portwire::ControlClient().call({QStringLiteral("devices")}).output;
    const QJsonArray all = QJsonDocument::fromJson(devices).array();
    for (const QJsonValue &device : all) {
        const QJsonObject light = device["light"].toObject();
        if (device["id"] == QLatin1String("q1") && light["on"].toBool() && light["mode"].toInt() == effect)
            return;
    }
    qFatal("the mouse has not got the light effect %d: %s", effect, devices.constData());
}

Figure idleFigure(const char *key, const QString &where)
{
    Figure figure;
    figure.key = QLatin1String(key);
    figure.title = QStringLiteral("idle, ") + where;
    figure.unit = QStringLiteral("%");
    figure.judged = Figure::Judged::Median;
    figure.atMost = 0.5;
    return figure;
}

void measureIdle(Figure &figure, const Subject &subject)
{
    rest(settling);
    figure.samples << subject.processorUse(idleTime);
}

} // namespace

QVector<Figure> Sessions::measureStart(Screen &screen, const QString &folder)
{
    Figure figure{"start", "start to the chooser with two devices", "ms", {}, {}, Figure::Judged::Ratio, 2};
    // The first of each makes folders and fills the caches of the file system and the fonts.
    for (int number = 0; number <= starts; ++number) {
        const double base = Subject(screen, reference(folder)).startTime();
        const double whole = Subject(screen, program(folder)).startTime();
        if (number == 0)
            continue;
        figure.reference << base;
        figure.samples << whole;
    }
    return {figure};
}

QVector<Figure> Sessions::measureUse(Screen &screen, const QString &folder)
{
    Figure memory{"memory", "memory after all pages were shown", "MiB", {}, {}, Figure::Judged::Ratio, 1.6};
    QVector<Figure> idle;
    for (const Page &page : pages)
        idle << idleFigure(page.key, QLatin1String(page.name));
    Figure still = idleFigure("idleLight", QStringLiteral("lighting page, steady light"));
    Figure moving = idleFigure("idleMovingLight", QStringLiteral("lighting page, moving light"));
    moving.judged = Figure::Judged::Nothing; // its picture moves
    for (int number = 0; number < sessions; ++number) {
        {
            const Subject subject(screen, reference(folder));
            memory.reference << subject.residentMemory();
        }
        const Subject subject(screen, program(folder));
        subject.clickToChange(firstMouse);
        rest(connectTime);
        subject.clickToChange(lightButton);
        for (const Page &page : pages)
            subject.clickToChange(page.button);
        memory.samples << subject.residentMemory();
        for (int index = 0; index < idle.size(); ++index) {
            subject.click(pages[index].button);
            measureIdle(idle[index], subject);
        }
        subject.clickToChange(lightButton);
        chooseEffect(subject, steadyEffect);
        measureIdle(still, subject);
        chooseEffect(subject, movingEffect);
        measureIdle(moving, subject);
    }
    return QVector<Figure>{memory} + idle + QVector<Figure>{still, moving};
}
