#include "support/Controls.h"
#include "support/PageBench.h"
#include "support/Screen.h"
#include "support/TestHome.h"

/** Every control of the two pages, before a virtual mouse whose flash tells what a change did. */
class ControlsTest : public PageBench
{
    Q_OBJECT
private Q_SLOTS:
    void change_data();
    void change();
    void everyRate();
    void indicator();
};

void ControlsTest::change_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t index = 0; index < controls().size(); ++index)
        QTest::newRow(controls()[index].name) << int(index);
}

/** A change reaches the flash and nothing else does; of a mouse that sleeps or is being read, nothing is changed. */
void ControlsTest::change()
{
    QFETCH(int, index);
    const Control &control = controls()[std::size_t(index)];
    const FlashDataMap start = someRecord();
    hold(start);
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    {
        const FlagScope silent(DeviceWritesEnabled, false);
        control.change(window.get(), start);
    }
    QCOMPARE(working(), start);
    QCOMPARE(prompts.count(), 0);

    show(start);
    VirtualMice::tell({"sleep", id});
    control.change(window.get(), start);
    QCOMPARE(prompts.count(), 1);
    QCOMPARE(prompts.first().first().toInt(), 0);
    QCOMPARE(working(), start);
    QCOMPARE(held(), start);

    VirtualMice::tell({"wake", id});
    show(start);
    for (const char *way : {"there", "and on"}) {
        const FlashDataMap wanted = control.change(window.get(), held());
        QVERIFY2(QTest::qWaitFor([&] { return held() == wanted; }), way);
        QCOMPARE(working(), wanted);
        QCOMPARE(screenDifferences(window.get(), wanted), QStringList());
    }
    QCOMPARE(prompts.count(), 1);
}

/** What the mouse then runs at. */
void ControlsTest::everyRate()
{
    for (const char *rate : {"4000", "500", "2000", "125", "250", "1000"}) {
        click(QStringLiteral("Button%1HZ").arg(rate));
        QTRY_COMPARE(mouse()["rate"].toInt(), QByteArray(rate).toInt());
    }
}

/** It is offered to nobody, and each choice is what the mouse then holds all the same. */
void ControlsTest::indicator()
{
    hold(someRecord());
    const auto isTaken = [this] { return isWritten() && screenDifferences(window.get(), held()).isEmpty(); };
    for (int mode : {0, 1, 2}) {
        Hand::choose(window.get(), sensorPage, "Model", mode);
        QVERIFY2(isTaken(), qPrintable(QString::number(mode)));
    }
    for (const char *slider : {"SpeedH", "LightH"}) {
        for (int value = find<QSlider>(slider)->maximum(); value > 0; --value) {
            Hand::slide(window.get(), sensorPage, slider, value);
            QVERIFY2(isTaken() && find<QSlider>(slider)->value() == value, slider);
        }
    }
}

HALVARION_TEST_MAIN(ControlsTest)
#include "tst_controls.moc"
