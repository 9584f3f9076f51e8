#include "lighting/LightStage.h"
#include "lighting/ScreenColour.h"
#include "support/Controls.h"
#include "support/PageBench.h"
#include "support/Rows.h"
#include "support/Screen.h"
#include "support/TestHome.h"

#include <QMouseEvent>

/** The lighting page before a virtual mouse: the mouse's flash tells what a change did. */
class LightingTest : public PageBench
{
    Q_OBJECT
public:
    LightingTest() : PageBench(lightPage) {}

private Q_SLOTS:
    void effect();
    void recordsAreNotTrusted_data();
    void recordsAreNotTrusted();
    void slidersWaitForTheMouse();
    void colourSteps();
    void everyPreset();
    void stripPicksWhatIsOnShow();
    void stripThatCannotBePicked();
    void pressLeavesTheNumbers();

private:
    int number(const char *name) const { return find<QSpinBox>(name)->value(); }
    QList<int> colour() const { return {number("RSpinBox"), number("GSpinBox"), number("BSpinBox")}; }
    static QList<int> colourOf(const FlashDataMap &record)
    {
        return {record.LightRed, record.LightGreen, record.LightBlue};
    }
    /** Effect, speed, brightness, idle time: what shows. */
    QList<int> shown() const
    {
        return {find<QComboBox>("LightMod")->currentIndex(), number("SpeedSpinBox_2"), number("LightSpinBox_2"),
                find<QComboBox>("StopClose")->currentIndex()};
    }
    void pressOnStrip(int x, Qt::MouseButton button)
    {
        const QPoint at = find("label_7")->geometry().topLeft() + QPoint(x, 17);
        QCursor::setPos(light->mapToGlobal(at));
        QTest::mouseClick(light, button, {}, at);
    }
};

/** An effect, chosen with the keyboard: what can be set of it shows, and the mouse keeps what it has no use for. */
void LightingTest::effect()
{
    FlashDataMap expected = someRecord();
    expected.LightMode = 3;
    hold(expected);
    QTest::keyClick(find("LightMod"), Qt::Key_Home);
    const std::pair<const char *, QStringList> parts[] = {
        {"colour", {"label_6", "label_7", "labelPreView", "label_12", "RSpinBox", "AddR", "toolButtonColorN"}},
        {"brightness", {"horizontalLight", "LightSpinBox_2"}},
        {"speed", {"horizontalSpeed", "SpeedSpinBox_2"}},
        {"", {"label_2", "label_3", "label_4", "label_5", "RippeControl", "frameClose"}}}; // whatever the effect
    int index = 0;
    for (const QString offered : {"", "brightness speed", "brightness speed colour", "brightness colour",
                                  "brightness speed", "brightness speed"}) {
        expected.LightOn = index != 0;
        expected.LightMode = std::uint8_t(index == 0 ? 3 : index); // the light comes back as it was
        QTRY_COMPARE(held(), expected);
        const LightLook look = find<LightStage>("stage")->look();
        QVERIFY(look.effect == index && look.colour == QColor(10, 20, 30));
        for (const auto &[part, names] : parts) {
            for (const QString &name : names)
                QVERIFY2(isShown(name) == offered.contains(part), qPrintable(name));
        }
        QVERIFY(isShown("line") != offered.contains("brightness") && isShown("line_2") != offered.contains("speed"));
        QTest::keyClick(find("LightMod"), Qt::Key_Down);
        ++index;
    }
    QVERIFY(!find("frameClose")->findChild<QLabel *>("label")->isVisible()); // the page has a title of its own
}

void LightingTest::recordsAreNotTrusted_data()
{
    // bytes: the seven from LightMode to LightOn
    // expected: effect, speed, brightness, idle item; before: 3, 5, 5, 3
    const Rows<QString, int, QList<int>> row("bytes", "idle", "expected");
    row("any on", "020102030405ff", 3, {2, 5, 6, 1});
    row("idle time not in the list", "02010203040501", 2, {2, 5, 6, 3});
    row("levels out of range", "0201020363ff01", 180, {2, 10, 10, 8});
    row("first unknown effect", "06010203040501", 0, {3, 5, 6, 3});
    row("unknown effect that is off", "c8010203040500", 120, {0, 5, 6, 6});
}

void LightingTest::recordsAreNotTrusted()
{
    QFETCH(QString, bytes);
    QFETCH(int, idle);
    FlashDataMap record = someRecord();
    hold(record);
    const FlashDataMap before = working();
    const QByteArray seven = QByteArray::fromHex(bytes.toLatin1());
    std::memcpy(&record.LightMode, seven.constData(), std::size_t(seven.size()));
    record.StopCloseTime = std::uint8_t(idle);
    if (record.LightOn != 0 && record.LightMode > 5)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("unknown light effect"));
    show(record);
    QTEST(shown(), "expected");
    QCOMPARE(colour(), (QList<int>{1, 2, 3}));
    QCOMPARE(working(), before);
}

/** The settings of a mouse that isn't there yet: shown without a prompt, with sliders that can't be moved. */
void LightingTest::slidersWaitForTheMouse()
{
    VirtualMice::tell({"sleep", id});
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    LightUiLoaded = false;
    FlashDataMap record = someRecord();
    record.LightMode = 4;
    postMsg()->post(&PostMsg::SigUpDataLightUIA, record);
    QCOMPARE(shown(), (QList<int>{4, 5, 5, 3}));
    QVERIFY(!LightUiLoaded && !find("horizontalLight")->isEnabled() && !find("horizontalSpeed")->isEnabled());
    show(record);
    QVERIFY(LightUiLoaded && find("horizontalLight")->isEnabled() && find("horizontalSpeed")->isEnabled());
    QCOMPARE(prompts.count(), 0);
}

void LightingTest::colourSteps()
{
    hold(someRecord());
    QList<int> expected = {10, 20, 30};
    for (int part = 0; part < 3; ++part) {
        for (const char *button : {"Add", "Add", "Reduce"})
            click(QString(button) + "RGB"[part]);
        ++expected[part];
        QTRY_COMPARE(colourOf(held()), expected);
        QCOMPARE(screenDifferences(window.get(), held()), QStringList());
        QCOMPARE(find<LightStage>("stage")->look().colour, QColor(expected[0], expected[1], expected[2]));
    }
    const auto type = [this](const char *digit) {
        find<QSpinBox>("GSpinBox")->selectAll();
        QTest::keyClicks(find("GSpinBox"), digit);
    };
    type("7");
    expected[1] = 7;
    QTRY_COMPARE(colourOf(held()), expected);
    // A button stops before it changes anything that the mouse wouldn't take.
    VirtualMice::tell({"sleep", id});
    for (const char *name : {"AddR", "ReduceB", "toolButtonColorN"})
        click(name);
    QCOMPARE(colour(), expected);
    type("9");
    QCOMPARE(number("GSpinBox"), 9); // a number keeps what the user gave it
    QCOMPARE(colourOf(working()), expected);
}

/** A colour button sets the colour that it is painted in. */
void LightingTest::everyPreset()
{
    for (char letter = 'A'; letter <= 'N'; ++letter) {
        const QString name = QStringLiteral("toolButtonColor") + QLatin1Char(letter);
        const QColor painted = find(name)->grab().toImage().pixelColor(find(name)->rect().center());
        click(name);
        QVERIFY(isWritten());
        const FlashDataMap stored = held();
        const int distance = qAbs(stored.LightRed - painted.red()) + qAbs(stored.LightGreen - painted.green()) +
                             qAbs(stored.LightBlue - painted.blue());
        QVERIFY2(distance <= 12, qPrintable(name + ' ' + painted.name())); // the picture has some gloss
        QCOMPARE(screenDifferences(window.get(), stored), QStringList());
    }
}

void LightingTest::stripPicksWhatIsOnShow()
{
    hold(someRecord());
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    auto *const strip = find<QLabel>("label_7");
    const QImage picture = strip->pixmap(Qt::ReturnByValue).toImage();
    QCOMPARE(picture.size(), QSize(308, 34));
    for (const int x : {0, 77, 150, 231, 306}) {
        const QColor there = picture.pixelColor(x, 17);
        const QList<int> expected{there.red(), there.green(), there.blue()};
        // The first picture of the window may take a moment to reach the screen.
        QTRY_VERIFY2((pressOnStrip(x, Qt::LeftButton), colour() == expected), qPrintable(there.name()));
        QTRY_COMPARE(colourOf(held()), expected);
    }
    // What lies over the strip is what is picked, with any mouse button.
    QLabel overlay(light);
    overlay.setStyleSheet("background: rgb(18,52,86);");
    overlay.setGeometry(strip->geometry());
    overlay.show();
    QTRY_VERIFY((pressOnStrip(150, Qt::RightButton), colour() == QList<int>{18, 52, 86}));
    overlay.hide();

    // What Wayland gives instead of the screen: nothing, and to a program of X11 a black picture.
    const QColor there = picture.pixelColor(231, 17);
    QImage black(2, 2, QImage::Format_RGB32);
    black.fill(Qt::black);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("what the window draws"));
    QCOMPARE(colourOnShow(black, strip, {231, 17}), there);
    if (QGuiApplication::platformName() == "offscreen") {
        // The cursor has left the screen since the press, which no real cursor can: there is nothing to capture.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("what the window draws"));
        QCursor::setPos(-5000, -5000);
        QTest::mouseClick(light, Qt::LeftButton, {}, strip->geometry().topLeft() + QPoint(231, 17));
        QCOMPARE(colour(), (QList<int>{there.red(), there.green(), there.blue()}));
    }
}

void LightingTest::stripThatCannotBePicked()
{
    const FlashDataMap record = someRecord();
    hold(record);
    VirtualMice::tell({"sleep", id});
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    pressOnStrip(100, Qt::LeftButton);
    QCOMPARE(prompts.count(), 1);
    // While a prompt shows, the mouse comes back and the page is filled anew: what it offers is of the new record.
    const auto connection = connect(postMsg(), &PostMsg::SigMouseOffLineo, this, [&] { show(record); });
    QTest::keyClick(find("LightMod"), Qt::Key_Down); // to an effect without a colour
    disconnect(connection);
    QCOMPARE(find<QComboBox>("LightMod")->currentIndex(), 3);
    QVERIFY(isShown("label_7") && !isShown("horizontalSpeed"));
    // An effect without a colour has no strip to press on, and nobody is asked to wake the mouse.
    Hand::choose(window.get(), page, "LightMod", 1);
    prompts.clear();
    pressOnStrip(100, Qt::LeftButton);
    QCOMPARE(prompts.count(), 0);
    QCOMPARE(colour(), colourOf(record));
    QCOMPARE(working(), record);
}

void LightingTest::pressLeavesTheNumbers()
{
    hold(someRecord());
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    for (const char *name : {"RSpinBox", "GSpinBox", "BSpinBox", "LightSpinBox_2"}) {
        click(name);
        QVERIFY2(QApplication::focusWidget() && find(name)->isAncestorOf(QApplication::focusWidget()), name);
        QTest::mouseClick(light, Qt::LeftButton, {}, QPoint(60, 600));
        QCOMPARE(QApplication::focusWidget(), light);
    }
    // What is empty leaves the press to the window, which is dragged by it; the strip takes its own.
    for (const QPoint &at : {QPoint(60, 600), find("label_7")->geometry().center()}) {
        QMouseEvent press(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(light, &press);
        QCOMPARE(press.isAccepted(), at != QPoint(60, 600));
    }
    // Numbers that only show can't be typed over.
    find<QSpinBox>("LightSpinBox_2")->selectAll();
    QTest::keyClicks(find("LightSpinBox_2"), "9");
    QCOMPARE(number("LightSpinBox_2"), 5);
}

HALVARION_TEST_MAIN(LightingTest)
#include "tst_lighting.moc"
