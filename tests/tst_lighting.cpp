#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "lighting/LampLight.h"
#include "lighting/LightStage.h"
#include "support/TestHome.h"
#include "support/TextFit.h"
#include "support/VirtualMice.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFrame>
#include <QImage>
#include <QJsonDocument>
#include <QLabel>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QThread>
#include <QToolButton>

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>

namespace {

QByteArray bytesOf(const FlashDataMap &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), static_cast<int>(flashDataMapSize));
}

/** Runs something on a thread of its own, as the library does with a report, while this one serves events. */
void runOnThread(const std::function<void()> &work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->start();
    while (!thread->wait(1))
        QCoreApplication::processEvents();
}

int reportsSent() { return QJsonDocument::fromJson(VirtualMice::tell({"stats"})).object()["sent"].toInt(); }

const QStringList colourWidgets = {"label_6",  "label_7",  "label_8",  "labelPreView", "label_10", "label_11",
                                   "label_12", "label_13", "RSpinBox", "GSpinBox",     "BSpinBox", "AddR",
                                   "AddG",     "AddB",     "ReduceR",  "ReduceG",      "ReduceB"};

struct Preset
{
    char letter;
    std::uint8_t colour[3];
};

constexpr Preset presets[] = {
    {'A', {255, 0, 0}},     {'B', {0, 255, 255}},  {'C', {0, 255, 0}},    {'D', {255, 0, 255}},   {'E', {255, 255, 0}},
    {'F', {255, 80, 0}},    {'G', {0, 0, 255}},    {'H', {227, 0, 127}},  {'I', {46, 166, 223}},  {'J', {96, 25, 133}},
    {'K', {255, 255, 255}}, {'L', {139, 178, 36}}, {'M', {255, 155, 51}}, {'N', {208, 113, 173}},
};

} // namespace

/** The lighting page before a virtual mouse: the mouse's flash tells what a change did. */
class LightingTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void effect_data();
    void effect();
    void record_data();
    void record();
    void recordOfASleepingMouse();
    void control_data();
    void control();
    void asleep_data();
    void asleep();
    void effectInterruptedByARefill();
    void preset();
    void presetSendsOnlyWhatChanges();
    void changesWithoutWriting();
    void reset();
    void stripPicksWhatIsOnShow();
    void stripThatCannotBePicked();
    void pressLeavesTheNumbers();
    void language_data();
    void language();

private:
    template<typename Widget>
    Widget *find(const QString &name) const
    {
        auto *widget = page->findChild<Widget *>(name);
        if (!widget)
            qFatal("no %s", qPrintable(name));
        return widget;
    }
    int number(const char *name) const { return find<QSpinBox>(name)->value(); }
    QList<int> colour() const { return {number("RSpinBox"), number("GSpinBox"), number("BSpinBox")}; }
    void chooseEffect(int index);
    void click(const QString &name) { QTest::mouseClick(find<QWidget>(name), Qt::LeftButton); }
    void dragToEnd(const char *slider, bool upper);
    void type(const char *box, const char *digits);
    void pressOnStrip(int x, Qt::MouseButton button);
    /** Drives a control as a user does. */
    void operate(const QString &name);
    void showRecord(const FlashDataMap &shown);

    std::unique_ptr<LampLight> page;
};

void LightingTest::initTestCase()
{
    // As the program sets it up.
    QFont::insertSubstitution("微软雅黑", "Noto Sans CJK SC");
    QApplication::setFont(QFont("微软雅黑", 9));
}

void LightingTest::init()
{
    VirtualMice::restoreScene();
    const QByteArray path = VirtualMice::device(VirtualMice::receiverOf("q1"))["path"].toString().toUtf8();
    QVERIFY(!path.isEmpty());
    DevicePath().set(path);
    page = std::make_unique<LampLight>();
    page->show();
    LightUiLoaded = false;
    LinkUp = false;
    ReportLink::start(path, dispatchReport);
    UsbServer_ReadAllFlashData();
    QTRY_VERIFY(LightUiLoaded && LinkUp);
    DeviceWritesEnabled = true;
    // A known start that no test asks for: the red light of steady.
    FlashDataMap start = WorkingRecord::instance().copy();
    start.LightMode = 3;
    start.LightOn = 1;
    start.LightRed = 10;
    start.LightGreen = 20;
    start.LightBlue = 30;
    start.LightSpeed = 4;
    start.LightBrightness = 4;
    start.LightRippeControl = 0;
    start.StopCloseTime = 30;
    WorkingRecord::instance().updateAndSend([&](FlashDataMap &record) { record = start; });
    QTRY_COMPARE(bytesOf(VirtualMice::record("q1")), bytesOf(start));
    showRecord(start);
}

void LightingTest::cleanup()
{
    ReportLink::end();
    DeviceWritesEnabled = false;
    QTRY_VERIFY(!isDispatching());
    page.reset();
}

void LightingTest::showRecord(const FlashDataMap &shown)
{
    runOnThread([&shown] { postMsg()->postBlocking(&PostMsg::SigUpDataLightLight, shown); });
}

void LightingTest::chooseEffect(int index)
{
    auto *box = find<QComboBox>("LightMod");
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home);
    for (int step = 0; step < index; ++step)
        QTest::keyClick(box, Qt::Key_Down);
}

void LightingTest::dragToEnd(const char *slider, bool upper)
{
    auto *dragged = find<QSlider>(slider);
    const int middle = dragged->height() / 2;
    const double part = double(dragged->value() - 1) / 9;
    const int handle = int(part * (dragged->width() - 5)) + 2;
    QTest::mousePress(dragged, Qt::LeftButton, {}, {handle, middle});
    QVERIFY(dragged->isSliderDown());
    const QPoint end(upper ? dragged->width() : 0, middle);
    // QTest moves without a button; a drag has one.
    QMouseEvent move(QEvent::MouseMove, end, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(dragged, &move);
    QTest::mouseRelease(dragged, Qt::LeftButton, {}, end);
}

void LightingTest::type(const char *name, const char *digits)
{
    auto *box = find<QSpinBox>(name);
    QTest::mouseClick(box, Qt::LeftButton);
    box->selectAll();
    QTest::keyClicks(box, digits);
}

void LightingTest::operate(const QString &name)
{
    if (name == "brightness down")
        dragToEnd("horizontalLight", false);
    else if (name == "speed up")
        dragToEnd("horizontalSpeed", true);
    else if (name == "green typed")
        type("GSpinBox", "7");
    else if (name == "effect")
        chooseEffect(0);
    else if (name == "idle time")
        QTest::keyClick(find<QComboBox>("StopClose"), Qt::Key_End);
    else
        click(name);
}

void LightingTest::effect_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("hasBrightness");
    QTest::addColumn<bool>("hasSpeed");
    QTest::addColumn<bool>("hasColour");
    QTest::newRow("off") << 0 << false << false << false;
    QTest::newRow("flow") << 1 << true << true << false;
    QTest::newRow("breathing") << 2 << true << true << true;
    QTest::newRow("steady") << 3 << true << false << true;
    QTest::newRow("neon") << 4 << true << true << false;
    QTest::newRow("mixed breathing") << 5 << true << true << false;
}

void LightingTest::effect()
{
    QFETCH(int, index);
    QFETCH(bool, hasBrightness);
    QFETCH(bool, hasSpeed);
    QFETCH(bool, hasColour);
    FlashDataMap expected = WorkingRecord::instance().copy();
    expected.LightOn = index != 0;
    expected.LightMode = static_cast<std::uint8_t>(index == 0 ? 3 : index);
    chooseEffect(index);
    if (index == 0) {
        // The record keeps the effect while the light is off, and the light comes back with it.
        QTRY_COMPARE(bytesOf(VirtualMice::record("q1")), bytesOf(expected));
        showRecord(expected);
    }
    QCOMPARE(find<QComboBox>("LightMod")->currentIndex(), index);
    QCOMPARE(find<LightStage>("stage")->look().effect, index);
    for (const char *name : {"horizontalLight", "LightSpinBox_2"})
        QVERIFY2(find<QWidget>(name)->isVisible() == hasBrightness, name);
    QCOMPARE(find<QFrame>("line")->isVisible(), !hasBrightness);
    for (const char *name : {"horizontalSpeed", "SpeedSpinBox_2"})
        QVERIFY2(find<QWidget>(name)->isVisible() == hasSpeed, name);
    QCOMPARE(find<QFrame>("line_2")->isVisible(), !hasSpeed);
    QStringList panel = colourWidgets;
    for (const Preset &preset : presets)
        panel << QString("toolButtonColor") + QChar(preset.letter);
    for (const QString &name : qAsConst(panel))
        QVERIFY2(find<QWidget>(name)->isVisible() == hasColour, qPrintable(name));
    for (const char *name : {"label", "label_2", "label_3", "label_4", "label_5", "RippeControl", "frameClose"})
        QVERIFY2(find<QWidget>(name)->isVisible(), name);
    // Only the effect was written: speed and colour stay for the effects that use them.
    QTRY_COMPARE(bytesOf(VirtualMice::record("q1")), bytesOf(expected));
}

void LightingTest::record_data()
{
    QTest::addColumn<QByteArray>("light"); ///< the seven bytes LightMode to LightOn
    QTest::addColumn<int>("idle");
    QTest::addColumn<int>("moving");
    QTest::addColumn<QList<int>>("shown"); ///< effect, red, green, blue, speed, brightness, idle item
    const auto row = [](const char *name, const char *light, int idle, int moving, const QList<int> &shown) {
        QTest::newRow(name) << QByteArray::fromHex(light) << idle << moving << shown;
    };
    row("all least", "01000000000001", 1, 0, {1, 0, 0, 0, 1, 1, 0});
    row("all most", "05ffffff090901", 240, 1, {5, 255, 255, 255, 10, 10, 10});
    row("off keeps the effect", "03010203040500", 6, 1, {0, 1, 2, 3, 5, 6, 2});
    row("any on", "020102030405ff", 3, 255, {2, 1, 2, 3, 5, 6, 1});
    row("idle time not in the list", "02010203040501", 2, 0, {2, 1, 2, 3, 5, 6, 3});
    row("levels out of range", "0201020363ff01", 180, 0, {2, 1, 2, 3, 10, 10, 8});
    row("unknown effect", "c801020304050101", 210, 0, {3, 1, 2, 3, 5, 6, 9});
    row("first unknown effect", "06010203040501", 0, 0, {3, 1, 2, 3, 5, 6, 3});
    row("unknown effect that is off", "c8010203040500", 120, 0, {0, 1, 2, 3, 5, 6, 6});
}

void LightingTest::record()
{
    QFETCH(QByteArray, light);
    QFETCH(int, idle);
    QFETCH(int, moving);
    QFETCH(QList<int>, shown);
    const FlashDataMap before = WorkingRecord::instance().copy();
    FlashDataMap given = before;
    std::memcpy(&given.LightMode, light.constData(), 7);
    given.StopCloseTime = static_cast<std::uint8_t>(idle);
    given.LightRippeControl = static_cast<std::uint8_t>(moving);
    const int sent = reportsSent();
    const auto check = [&] {
        QList<int> found{find<QComboBox>("LightMod")->currentIndex()};
        found << colour() << number("SpeedSpinBox_2") << number("LightSpinBox_2")
              << find<QComboBox>("StopClose")->currentIndex();
        QCOMPARE(found, shown);
        QCOMPARE(find<QSlider>("horizontalSpeed")->value(), shown[4]);
        QCOMPARE(find<QSlider>("horizontalLight")->value(), shown[5]);
        QCOMPARE(find<QToolButton>("RippeControl")->isChecked(), moving != 0);
        QCOMPARE(find<QLabel>("label_7")->isVisible(), shown[0] == 2 || shown[0] == 3);
        QVERIFY(find<QLabel>("labelPreView")
                    ->styleSheet()
                    .startsWith(QString("QLabel{background-color: rgb(%1,%2,%3);border: 2px solid  rgb(220,220,220);}")
                                    .arg(shown[1])
                                    .arg(shown[2])
                                    .arg(shown[3])));
        QVERIFY(!LightUiUpdating);
    };
    const auto expectWarning = [&] {
        if (given.LightOn != 0 && given.LightMode > 5)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("unknown light effect"));
    };
    LightUiLoaded = false;
    expectWarning();
    postMsg()->post(&PostMsg::SigUpDataLightUIA, given);
    check();
    QVERIFY(!LightUiLoaded);
    QVERIFY(!find<QSlider>("horizontalLight")->isEnabled());
    QVERIFY(!find<QSlider>("horizontalSpeed")->isEnabled());
    showRecord(before);
    QVERIFY(LightUiLoaded);
    LightUiLoaded = false;
    expectWarning();
    showRecord(given);
    check();
    QVERIFY(LightUiLoaded);
    QVERIFY(find<QSlider>("horizontalLight")->isEnabled());
    QVERIFY(find<QSlider>("horizontalSpeed")->isEnabled());
    // Showing a record is not a change: nothing went into the working record, and nothing to the mouse.
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), bytesOf(before));
    QCOMPARE(reportsSent(), sent);
}

void LightingTest::recordOfASleepingMouse()
{
    VirtualMice::tell({"sleep", "q1"});
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    FlashDataMap given = WorkingRecord::instance().copy();
    given.LightMode = 4;
    given.LightRed = 200;
    given.StopCloseTime = 240;
    postMsg()->post(&PostMsg::SigUpDataLightUIA, given);
    showRecord(given);
    QCOMPARE(find<QComboBox>("LightMod")->currentIndex(), 4);
    QCOMPARE(prompts.count(), 0);
}

void LightingTest::control_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const QString &name, std::size_t offset, const QByteArray &bytes) {
        QTest::newRow(qPrintable(name)) << name << int(offset) << bytes;
    };
    constexpr std::size_t colour = offsetof(FlashDataMap, LightRed);
    row("effect", offsetof(FlashDataMap, LightOn), QByteArray(1, 0));
    row("brightness down", offsetof(FlashDataMap, LightBrightness), QByteArray(1, 0));
    row("speed up", offsetof(FlashDataMap, LightSpeed), QByteArray(1, 9));
    row("RippeControl", offsetof(FlashDataMap, LightRippeControl), QByteArray(1, 1));
    row("idle time", offsetof(FlashDataMap, StopCloseTime), QByteArray(1, char(240)));
    row("green typed", colour, QByteArray::fromHex("0a071e"));
    row("AddR", colour, QByteArray::fromHex("0b141e"));
    row("AddG", colour, QByteArray::fromHex("0a151e"));
    row("AddB", colour, QByteArray::fromHex("0a141f"));
    row("ReduceR", colour, QByteArray::fromHex("09141e"));
    row("ReduceG", colour, QByteArray::fromHex("0a131e"));
    row("ReduceB", colour, QByteArray::fromHex("0a141d"));
    row("toolButtonColorN", colour, QByteArray::fromHex("d071ad"));
}

void LightingTest::control()
{
    QFETCH(QString, name);
    QFETCH(int, offset);
    QFETCH(QByteArray, bytes);
    if (name == "speed up")
        chooseEffect(2);
    QByteArray expected = bytesOf(WorkingRecord::instance().copy());
    QTRY_COMPARE(bytesOf(VirtualMice::record("q1")), expected);
    expected.replace(offset, bytes.size(), bytes);
    operate(name);
    QTRY_COMPARE(bytesOf(VirtualMice::record("q1")), expected);
    QCOMPARE(number("LightSpinBox_2"), find<QSlider>("horizontalLight")->value());
    QCOMPARE(number("SpeedSpinBox_2"), find<QSlider>("horizontalSpeed")->value());
    const QList<int> shown = colour();
    QVERIFY(find<QLabel>("labelPreView")
                ->styleSheet()
                .contains(QString("rgb(%1,%2,%3)").arg(shown[0]).arg(shown[1]).arg(shown[2])));
    QCOMPARE(find<LightStage>("stage")->look().colour, QColor(shown[0], shown[1], shown[2]));
}

void LightingTest::asleep_data() { control_data(); }

void LightingTest::asleep()
{
    QFETCH(QString, name);
    if (name == "speed up")
        chooseEffect(2);
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    QTRY_COMPARE(bytesOf(VirtualMice::record("q1")), before);
    const QList<int> colourBefore = colour();
    VirtualMice::tell({"sleep", "q1"});
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    operate(name);
    QCOMPARE(prompts.count(), 1);
    QCOMPARE(prompts.first().first().toInt(), 0);
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), before);
    QCOMPARE(bytesOf(VirtualMice::record("q1")), before);
    // A button stops before it changes anything; another control keeps what the user gave it.
    if (name == "green typed")
        QCOMPARE(colour()[1], 7);
    else
        QCOMPARE(colour(), colourBefore);
    if (name == "brightness down")
        QCOMPARE(find<QSlider>("horizontalLight")->value(), 1);
    if (name == "RippeControl")
        QVERIFY(find<QToolButton>("RippeControl")->isChecked());
}

/** While the prompt shows, the mouse comes back and the page is filled anew: what it offers is of the new record. */
void LightingTest::effectInterruptedByARefill()
{
    const FlashDataMap steady = VirtualMice::record("q1");
    VirtualMice::tell({"sleep", "q1"});
    const auto connection = connect(postMsg(), &PostMsg::SigMouseOffLineo, page.get(), [&] { showRecord(steady); });
    QTest::keyClick(find<QComboBox>("LightMod"), Qt::Key_Down); // to an effect without a colour
    disconnect(connection);
    QCOMPARE(find<QComboBox>("LightMod")->currentIndex(), 3);
    QVERIFY(find<QLabel>("label_7")->isVisible() && !find<QSlider>("horizontalSpeed")->isVisible());
}

void LightingTest::preset()
{
    for (const Preset &preset : presets) {
        click(QString("toolButtonColor") + QChar(preset.letter));
        QCOMPARE(colour(), (QList<int>{preset.colour[0], preset.colour[1], preset.colour[2]}));
        const auto isStored = [&preset] {
            const FlashDataMap held = VirtualMice::record("q1");
            return std::memcmp(&held.LightRed, preset.colour, 3) == 0;
        };
        QTRY_VERIFY2(isStored(), qPrintable(QString(QChar(preset.letter))));
    }
}

void LightingTest::presetSendsOnlyWhatChanges()
{
    const auto changes = [this](const QString &name) {
        QSignalSpy red(find<QSpinBox>("RSpinBox"), QOverload<int>::of(&QSpinBox::valueChanged));
        QSignalSpy green(find<QSpinBox>("GSpinBox"), QOverload<int>::of(&QSpinBox::valueChanged));
        QSignalSpy blue(find<QSpinBox>("BSpinBox"), QOverload<int>::of(&QSpinBox::valueChanged));
        click(name);
        return QList<int>{red.count(), green.count(), blue.count()};
    };
    QCOMPARE(changes("toolButtonColorE"), (QList<int>{1, 1, 1}));
    QCOMPARE(changes("toolButtonColorK"), (QList<int>{0, 0, 1}));
    QCOMPARE(changes("AddR"), (QList<int>{0, 0, 0}));
    QCOMPARE(changes("toolButtonColorC"), (QList<int>{1, 0, 1}));
    QCOMPARE(changes("ReduceR"), (QList<int>{0, 0, 0}));
    QTRY_COMPARE(VirtualMice::record("q1").LightBlue, std::uint8_t{0});
}

void LightingTest::changesWithoutWriting()
{
    DeviceWritesEnabled = false;
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    const int sent = reportsSent();
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    for (const char *name :
         {"toolButtonColorI", "AddR", "green typed", "RippeControl", "idle time", "brightness down", "effect"})
        operate(name);
    QCOMPARE(colour(), (QList<int>{47, 7, 223}));
    QCOMPARE(number("LightSpinBox_2"), 1);
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), before);
    QCOMPARE(reportsSent(), sent);
    QCOMPARE(prompts.count(), 0);
}

void LightingTest::reset()
{
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    runOnThread([] { postMsg()->postBlocking(&PostMsg::SigFormReset); });
    QCOMPARE(find<QComboBox>("LightMod")->currentIndex(), 1);
    QCOMPARE(find<QSlider>("horizontalLight")->value(), 10);
    QCOMPARE(number("LightSpinBox_2"), 10);
    QCOMPARE(find<QSlider>("horizontalSpeed")->value(), 8);
    QCOMPARE(number("SpeedSpinBox_2"), 8);
    QVERIFY(find<QToolButton>("RippeControl")->isChecked());
    QCOMPARE(find<QComboBox>("StopClose")->currentIndex(), 2);
    QCOMPARE(colour(), (QList<int>{10, 20, 30}));
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), before);
    QVERIFY(!LightUiUpdating);
}

void LightingTest::pressOnStrip(int x, Qt::MouseButton button)
{
    const QPoint at = find<QLabel>("label_7")->geometry().topLeft() + QPoint(x, 17);
    QCursor::setPos(page->mapToGlobal(at));
    QTest::mouseClick(page.get(), button, {}, at);
}

void LightingTest::stripPicksWhatIsOnShow()
{
    QVERIFY(QTest::qWaitForWindowExposed(page.get()));
    auto *strip = find<QLabel>("label_7");
    const QImage picture = strip->pixmap(Qt::ReturnByValue).toImage();
    QCOMPARE(picture.size(), QSize(308, 34));
    for (const int x : {0, 77, 150, 231, 306}) {
        const QColor there = picture.pixelColor(x, 17);
        const QList<int> expected{there.red(), there.green(), there.blue()};
        // The first picture of the window may take a moment to reach the screen.
        QTRY_VERIFY2((pressOnStrip(x, Qt::LeftButton), colour() == expected), qPrintable(there.name()));
        QTRY_COMPARE(int{VirtualMice::record("q1").LightGreen}, expected[1]);
    }
    // What lies over the strip is what is picked, with any mouse button.
    QLabel overlay(page.get());
    overlay.setStyleSheet("background: rgb(18,52,86);");
    overlay.setGeometry(strip->geometry());
    overlay.show();
    QTRY_VERIFY((pressOnStrip(150, Qt::RightButton), colour() == QList<int>{18, 52, 86}));
    QTRY_COMPARE(int{VirtualMice::record("q1").LightBlue}, 86);
}

void LightingTest::stripThatCannotBePicked()
{
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    if (QGuiApplication::platformName() == "offscreen") {
        // The cursor has left the screen since the press, which no real cursor can: there is nothing to capture.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("could not be captured"));
        QCursor::setPos(-5000, -5000);
        QTest::mouseClick(page.get(), Qt::LeftButton, {}, find<QLabel>("label_7")->geometry().center());
        QCOMPARE(bytesOf(WorkingRecord::instance().copy()), before);
    }
    VirtualMice::tell({"sleep", "q1"});
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    pressOnStrip(100, Qt::LeftButton);
    QCOMPARE(prompts.count(), 1);
    QCOMPARE(colour(), (QList<int>{10, 20, 30}));
    // An effect without a colour has no strip to press on, and nobody is asked to wake the mouse.
    chooseEffect(1);
    prompts.clear();
    pressOnStrip(100, Qt::LeftButton);
    QCOMPARE(prompts.count(), 0);
    QCOMPARE(colour(), (QList<int>{10, 20, 30}));
}

void LightingTest::pressLeavesTheNumbers()
{
    page->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(page.get()));
    for (const char *name : {"RSpinBox", "GSpinBox", "BSpinBox", "LightSpinBox_2"}) {
        auto *box = find<QSpinBox>(name);
        QTest::mouseClick(box, Qt::LeftButton);
        QVERIFY2(QApplication::focusWidget() && box->isAncestorOf(QApplication::focusWidget()), name);
        QTest::mouseClick(page.get(), Qt::LeftButton, {}, QPoint(60, 600));
        QCOMPARE(QApplication::focusWidget(), page.get());
    }
    // What is empty leaves the press to the window, which is dragged by it; the strip takes its own.
    for (const QPoint &at : {QPoint(60, 600), find<QLabel>("label_7")->geometry().center()}) {
        QMouseEvent press(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(page.get(), &press);
        QCOMPARE(press.isAccepted(), at != QPoint(60, 600));
    }
    // Numbers that only show can't be typed over.
    type("LightSpinBox_2", "9");
    QCOMPARE(number("LightSpinBox_2"), 5);
}

void LightingTest::language_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("brightness");
    QTest::addColumn<QString>("green");
    QTest::newRow("English") << 0 << "Brightness"
                             << "G:";
    QTest::newRow("simplified Chinese") << 1 << "亮度"
                                        << "G:";
    QTest::newRow("traditional Chinese") << 2 << "亮度"
                                         << "G:";
    QTest::newRow("Korean") << 3 << "밝기"
                            << "G:";
    QTest::newRow("Russian") << 4 << "Яркость"
                             << "G:";
    QTest::newRow("Japanese") << 5 << "明るさ"
                              << "G:";
    QTest::newRow("no such language") << 7 << "Brightness"
                                      << "G:";
}

void LightingTest::language()
{
    QFETCH(int, index);
    postMsg()->post(&PostMsg::SigChangeLanguage, (index + 1) % 6);
    postMsg()->post(&PostMsg::SigChangeLanguage, index);
    QTEST(find<QLabel>("label_2")->text(), "brightness");
    QTEST(find<QLabel>("label_10")->text(), "green");
    // The list of effects and the one of times were told apart.
    auto *const effects = find<QComboBox>("LightMod");
    const auto *times = find<QComboBox>("StopClose");
    QCOMPARE(effects->count(), 6);
    QCOMPARE(times->count(), 11);
    QVERIFY(times->itemText(0).contains("10"));
    QVERIFY(times->itemText(10).contains("40"));
    QCOMPARE(effects->currentIndex(), 3);
    effects->showPopup();
    const QAbstractItemView *const list = effects->view();
    QCOMPARE(list->indexAt({4, list->viewport()->height() - 4}).row(), 4);
    effects->hidePopup();
    const QStringList cut = textsThatDoNotFit(page.get());
    QVERIFY2(cut.isEmpty(), qPrintable(cut.join('\n')));
}

HALVARION_TEST_MAIN(LightingTest)
#include "tst_lighting.moc"
