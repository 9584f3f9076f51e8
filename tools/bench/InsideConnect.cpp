#include "app/ChooserList.h"
#include "app/hub/PostMsg.h"
#include "bench/Inside.h"
#include "devicelink/DeviceFlags.h"
#include "support/Program.h"

#include <QTest>

namespace {

constexpr int connects = 7;
/** The click stands still this long on purpose, in ms, before the connect thread starts. */
constexpr int deliberateWait = 150;
/** Longer than the wait prompt shows, in ms. */
constexpr int connectTime = 15000;

QString picture() { return QStringLiteral("btn%1").arg(ChooserDevices().at(0).DeviceKind == 1 ? 0 : 1); }

/** Takes the time when all three pages have told that they hold the record. Made after the pages, so told after them.
 */
class FillWatch : public QObject
{
public:
    FillWatch()
    {
        const auto look = [this] {
            if (filled == 0 && allPagesLoaded())
                filled = double(timer.nsecsElapsed()) * 1e-6;
        };
        const auto blocking = Qt::BlockingQueuedConnection;
        connect(postMsg(), &PostMsg::SigUpDataLightUIButton, this, look, blocking);
        connect(postMsg(), &PostMsg::SigUpDataLightLight, this, look, blocking);
        connect(postMsg(), &PostMsg::SigUpDataLightSensor, this, look, blocking);
        timer.start();
    }

    QElapsedTimer timer;
    double filled = 0; ///< ms from the making of this; 0 until then
};

} // namespace

QVector<Figure> Inside::measureConnect(Program &program)
{
    Figure figure{"connect", "click to three filled pages, less the wait", "ms", {}, {}, Figure::Judged::Median, 60};
    for (int number = 0; number < connects; ++number) {
        if (!QTest::qWaitFor([&] { return !program.isDeviceWindowShown() && program.entryCount() == 2; }, connectTime))
            qFatal("the chooser does not show its two devices");
        QTest::qWait(500);
        clearPagesLoaded();
        const FillWatch watch;
        program.click(picture());
        if (!QTest::qWaitFor([&] { return program.isConnected() && watch.filled > 0; }, connectTime))
            qFatal("the pages are not filled");
        figure.samples << watch.filled - deliberateWait;
        if (number < connects - 1)
            program.click(QStringLiteral("UpArrow"));
    }
    if (!QTest::qWaitFor([&] { return program.isConnected(); }, connectTime))
        qFatal("the device is not connected");
    return {figure};
}
