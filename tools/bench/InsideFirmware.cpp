#include "app/hub/PostMsg.h"
#include "bench/BusyApplication.h"
#include "bench/Inside.h"
#include "devicelink/DeviceFlags.h"
#include "productdata/FirmwareImages.h"
#include "support/Program.h"
#include "support/VirtualMice.h"
#include "tools/FirmwareFile.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>

namespace {

using Judged = Figure::Judged;

constexpr int images = 50;
constexpr int searches = 40;
constexpr int updates = 5;
constexpr std::uint32_t imageSize = 1024 * 1024; // bytes
constexpr std::uint32_t updateSize = 400 * 1024; // of what a mouse takes
constexpr std::uint16_t factoryVersion = 0x0112;
constexpr std::uint16_t newVersion = 0x0920;

void write(const QString &name, const FirmwareDescription &description)
{
    const std::vector<std::uint8_t> bytes = firmwareFile(description);
    QFile file(FirmwareImages::folder() + QLatin1Char('/') + name);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char *>(bytes.data()), qint64(bytes.size())) != qint64(bytes.size()))
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
}

/** One of many is meant for the mouse, as in a folder that serves all models of a maker. */
Figure measureSearch()
{
    FirmwareDescription description;
    description.payload = imageSize;
    for (int number = 0; number < images; ++number) {
        description.name = number == images / 2 ? "HALVARION-Q1" : "HALVARION-OTHER";
        write(QStringLiteral("%1.bin").arg(number), description);
    }
    Figure figure{"firmwareSearch", "the image among 50 files of 1 MiB", "ms", {}, {}, Judged::Median, 60};
    for (int number = 0; number < searches; ++number) {
        QList<QByteArray> found;
        figure.samples << Inside::timeOf(
            [&found] { FirmwareImages::FindImage(FirmwareImages::mouseRequest(0), QStringLiteral("v0.1"), found); });
        if (found.size() != 1)
            qFatal("the image was not found");
    }
    return figure;
}

} // namespace

QVector<Figure> Inside::measureFirmware(Program &program)
{
    QDir folder(FirmwareImages::folder());
    if (folder.exists() || !folder.mkpath(QStringLiteral(".")))
        qFatal("%s is in the way", qPrintable(folder.path()));
    const Figure search = measureSearch();
    folder.removeRecursively();
    folder.mkpath(QStringLiteral("."));

    FirmwareDescription description;
    description.payload = updateSize;
    description.version = newVersion;
    write(QStringLiteral("q1.bin"), description);
    Figure busy{"firmwareBusy", "while firmware is written: longest busy time", "ms", {}, {}, Judged::Median, 16};
    Figure step{"firmwareStep", "longest time between two steps of the progress", "ms", {}, {}, Judged::Median, 250};
    VirtualMice::tell({QStringLiteral("plug"), QStringLiteral("q1")});
    QTest::qWait(2000); // the device window follows the mouse to its cable
    auto *const application = static_cast<BusyApplication *>(QCoreApplication::instance());
    for (int number = 0; number < updates; ++number) {
        VirtualMice::tell({QStringLiteral("firmware"), QStringLiteral("q1"),
                           QStringLiteral("%1.%2").arg(factoryVersion >> 8).arg(factoryVersion & 0xff, 0, 16)});
        postMsg()->post(&PostMsg::SigSetver, 4);
        postMsg()->post(&PostMsg::SigLabelText, 1, FirmwareImages::versionText(factoryVersion));
        double longest = 0;
        QElapsedTimer since;
        int result = 0;
        QObject scope;
        QObject::connect(postMsg(), &PostMsg::SigProgress, &scope, [&](int, int code) {
            if (code == 3) {
                application->restart();
            } else if (since.isValid()) {
                longest = std::max(longest, double(since.nsecsElapsed()) * 1e-6);
            }
            since.start();
            if (code == 1 || code == 2)
                result = code;
        });
        program.find<QPushButton>(QStringLiteral("Mouse"))->click();
        if (!QTest::qWaitFor([&result] { return result != 0; }, 60000) || result != 2)
            qFatal("the firmware was not written");
        busy.samples << application->longest();
        step.samples << longest;
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (window->isVisible() && window->inherits("Progress"))
                QTest::keyClick(window, Qt::Key_Return);
        }
        if (!QTest::qWaitFor([] { return !UpdateRunning; }))
            qFatal("the update goes on");
    }
    folder.removeRecursively();
    return {search, busy, step};
}
