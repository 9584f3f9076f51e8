#include "app/DialogMain.h"
#include "bench/BusyApplication.h"
#include "bench/Inside.h"
#include "buttons/ProfileActions.h"
#include "buttons/ProfileFile.h"
#include "devicelink/FlashDataMap.h"
#include "lighting/LampLight.h"
#include "sensor/Sensor.h"
#include "support/Program.h"
#include "support/VirtualMice.h"

#include <QComboBox>
#include <QEventLoop>
#include <QProcess>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Judged = Figure::Judged;

constexpr int records = 200;
constexpr int languageRounds = 6;
constexpr int pageTurns = 21;
constexpr int languages = 6;
constexpr int drags = 7;
/** Mouse moves of a drag, and the time between two of them in seconds, as of a mouse with 125 Hz. */
constexpr int dragMoves = 120;
constexpr char moveInterval[] = "0.008";

/** Other than the record in everything that the two pages show. */
FlashDataMap different(FlashDataMap record)
{
    record.ReportRate = record.ReportRate == 1 ? 2 : 1;
    record.DpiCurrentLevel = record.DpiCurrentLevel == 1 ? 2 : 1;
    record.DpiLevelCount = record.DpiLevelCount == 5 ? 6 : 5;
    for (DpiLevel &level : record.DpiLevels) {
        level.Red = static_cast<std::uint8_t>(255 - level.Red);
        level.CodeX = static_cast<std::uint8_t>(level.CodeX / 2 + 1);
        level.CodeY = level.CodeX;
    }
    record.Lod = record.Lod == 1 ? 2 : 1;
    for (std::uint8_t *flag : {&record.MotionSync, &record.StraightLine, &record.RippeControl, &record.Performance,
                               &record.LightRippeControl})
        *flag = *flag ? 0 : 1;
    record.LightOn = 1;
    record.LightMode = record.LightMode == 3 ? 2 : 3;
    record.LightRed = static_cast<std::uint8_t>(255 - record.LightRed);
    record.LightBrightness = record.LightBrightness == 4 ? 5 : 4;
    record.LightSpeed = record.LightSpeed == 4 ? 5 : 4;
    return record;
}

template<typename Page>
QVector<Figure> measureRecord(Program &program, const char *button, void (Page::*show)(FlashDataMap),
                              const QString &key, const QString &title)
{
    program.click(QLatin1String(button));
    QTest::qWait(200);
    auto *const page = program.window()->findChild<Page *>();
    const FlashDataMap one = VirtualMice::record(QStringLiteral("q1"));
    const FlashDataMap other = different(one);
    Figure applied{key, title, "ms", {}, {}, Judged::Median, 3};
    Figure painted{key + "Painted", title + ", and painted", "ms", {}, {}, Judged::Nothing, 0};
    for (int number = 0; number < records; ++number) {
        const double time = Inside::timeOf([&] { (page->*show)(number % 2 ? one : other); });
        applied.samples << time;
        painted.samples << time + Inside::timeOf(Inside::serveEvents);
    }
    (page->*show)(one);
    return {applied, painted};
}

/** From the click on its button until the page is painted; the first time loads its pictures. */
QVector<Figure> measureSettingsPage(Program &program)
{
    Figure first{
        "settingsFirst", "the settings page for the first time, and painted", "ms", {}, {}, Judged::Nothing, 0};
    Figure shown{"settings", "the settings page, and painted", "ms", {}, {}, Judged::Median, 5};
    for (int number = 0; number < pageTurns; ++number) {
        program.click(QStringLiteral("SensorButton"));
        Inside::serveEvents();
        const double time = Inside::timeOf([&] {
            program.click(QStringLiteral("FormSetting"));
            Inside::serveEvents();
        });
        (number == 0 ? first : shown).samples << time;
    }
    return {first, shown};
}

/** A profile file from the disk to the mouse's queue and all pages, without the waits round it. */
QVector<Figure> measureImport()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("profile.bin"));
    const FlashDataMap one = VirtualMice::record(QStringLiteral("q1"));
    const FlashDataMap other = different(one);
    Figure figure{"import", "a profile file, without its waits", "ms", {}, {}, Judged::Median, 20};
    for (int number = 0; number < pageTurns; ++number) {
        WriteProfile(path, number % 2 ? one : other);
        figure.samples << Inside::timeOf([&path] {
            FlashDataMap record{};
            if (ReadProfile(path, record) != ProfileAccepted)
                qFatal("the profile is not accepted");
            ProfileActions::takeOver(record);
            Inside::serveEvents();
        });
        QTest::qWait(200); // for the mouse
    }
    return {figure};
}

QVector<Figure> measureLanguage(Program &program)
{
    program.click(QStringLiteral("SensorButton"));
    QTest::qWait(200);
    auto *const list = program.find<QComboBox>(QStringLiteral("comboBox"));
    Figure first{"languageFirst", "a language for the first time", "ms", {}, {}, Judged::Nothing, 0};
    Figure change{"language", "a language in all windows", "ms", {}, {}, Judged::Median, 40};
    Figure painted{"languagePainted", "a language in all windows, and painted", "ms", {}, {}, Judged::Nothing, 0};
    for (int number = 1; number <= languages * languageRounds; ++number) {
        const int index = number % languages;
        const double time = Inside::timeOf([&] { Q_EMIT list->activated(index); });
        const double whole = time + Inside::timeOf(Inside::serveEvents);
        if (number < languages) {
            first.samples << whole; // its letters are looked for in the fonts
        } else {
            change.samples << time;
            painted.samples << whole;
        }
    }
    return {first, change, painted};
}

/** From end to end with a real pointer, by another process, so that this one's event loop sees what it always sees. */
double dragSlider(QSlider *slider)
{
    const auto at = [slider](int x) {
        const QPoint place = slider->mapToGlobal(QPoint(x, slider->height() / 2));
        return QStringList{"mousemove", QString::number(place.x()), QString::number(place.y())};
    };
    // The handle then stands at the left end, and is what the press hits.
    slider->setValue(slider->minimum());
    constexpr int handle = 2;
    const int length = slider->width() - 1 - handle;
    QStringList arguments = QStringList{"sleep", "0.3"} + at(handle) + QStringList{"sleep", "0.1", "mousedown", "1"};
    for (int move = 0; move <= dragMoves; ++move)
        arguments += QStringList{"sleep", moveInterval} + at(handle + length * move / dragMoves);
    arguments += QStringList{"sleep", "0.05", "mouseup", "1", "sleep", "0.3"};

    QProcess hand;
    QEventLoop loop;
    QObject::connect(&hand, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop, &QEventLoop::quit);
    hand.start(QStringLiteral("xdotool"), arguments);
    QTest::qWait(150);
    auto *const application = static_cast<BusyApplication *>(QCoreApplication::instance());
    application->restart();
    loop.exec();
    if (hand.exitCode() != 0 || slider->value() != slider->maximum() || application->stretchCount() < dragMoves / 2)
        qFatal("the slider was not dragged: it stands at %d", slider->value());
    return application->longest();
}

Figure measureDrag(Program &program, const char *button, const char *name, const QString &key, const QString &title)
{
    program.click(QLatin1String(button));
    QTest::qWait(200);
    auto *const slider = program.find<QSlider>(QLatin1String(name));
    Figure figure{key, title, "ms", {}, {}, Judged::Median, 16};
    for (int number = 0; number < drags; ++number)
        figure.samples << dragSlider(slider);
    return figure;
}

} // namespace

QVector<Figure> Inside::measurePages(Program &program)
{
    program.window()->move(0, 0);
    QVector<Figure> figures;
    figures += measureRecord(program, "SensorButton", &Sensor::SlotUpDataSenSorUISensor, QStringLiteral("recordSensor"),
                             QStringLiteral("a record on the sensor page"));
    figures += measureRecord(program, "LightsButton", &LampLight::SlotUpDataLightUILight, QStringLiteral("recordLight"),
                             QStringLiteral("a record on the lighting page"));
    figures += measureSettingsPage(program);
    figures += measureLanguage(program);
    figures += measureDrag(program, "SensorButton", "horizontalSliderC", QStringLiteral("dragDpi"),
                           QStringLiteral("DPI slider dragged: longest busy time"));
    figures += measureDrag(program, "LightsButton", "horizontalLight", QStringLiteral("dragBrightness"),
                           QStringLiteral("brightness dragged: longest busy time"));
    figures += measureImport(); // locks the sliders until the mouse was read again
    return figures;
}
