#include "devicelink/SelectedDevice.h"
#include "sensor/Sensor.h"
#include "support/ProductCopy.h"
#include "support/SensorPageView.h"
#include "support/SomeRecord.h"
#include "support/TestHome.h"

#include <QFile>
#include <QSlider>

/** The sensor page with other product data, in copies of this program that read it. */
class SensorProductTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void damagedProduct_data();
    void damagedProduct();
    void probe();

private:
    static QString summary(const SensorPageView &view);
};

/** What is there, the levels, their list, the slider's range, the mode and where the indicator stands. */
QString SensorProductTest::summary(const SensorPageView &view)
{
    QStringList shown;
    for (const char *name :
         {"frameDpi", "frameRate", "TitleButton_4", "label_5", "label_11", "ModelChoose", "frameLOD", "Performance",
          "PerformanceOpen", "frame", "frame_4", "frame_3", "frameEffect", "TitleButton_3"}) {
        if (view.isShown(name))
            shown << name;
    }
    const auto *const slider = view.find<QSlider>("horizontalSliderC");
    return QStringLiteral("%1 | %2 | %3 items | %4 to %5 | %6 | %7")
        .arg(shown.join(' '), view.levels())
        .arg(view.find<QComboBox>("ChooseEvent")->count())
        .arg(slider->minimum())
        .arg(slider->maximum())
        .arg(view.mode())
        .arg(view.find<QWidget>("frameEffect")->y());
}

void SensorProductTest::damagedProduct_data()
{
    QTest::addColumn<QByteArrayList>("changes"); ///< "key=value" of the section of the first model
    QTest::addColumn<QByteArray>("sensorFile");
    QTest::addColumn<QString>("told");
    const QByteArray facts = "as it is";
    const QString all = "frameDpi frameRate TitleButton_4 label_5 label_11 ModelChoose frameLOD Performance "
                        "PerformanceOpen frame frame_4 frame_3";
    const QString noSwitches = "frameDpi frameRate TitleButton_4 label_5 label_11 ModelChoose frameLOD Performance "
                               "PerformanceOpen";
    const QString usual = "550 600* 650 700 | 8 items | 50 to 26000";
    QTest::newRow("as it is") << QByteArrayList() << facts << all + " | " + usual + " | HP | 456";
    QTest::newRow("simple layout") << QByteArrayList{"XIn1=2"} << facts
                                   << "frameDpi frameRate | " + usual + " | HP | 316";
    QTest::newRow("no sensor file") << QByteArrayList() << QByteArray()
                                    << noSwitches + " | " + usual + " | LP disabled | 456";
    QTest::newRow("no levels") << QByteArrayList{"DPIMaxGrade=0"} << facts
                               << all + " |  | 0 items | 50 to 26000 | HP | 456";
    QTest::newRow("twelve levels") << QByteArrayList{"DPIMaxGrade=12"} << facts << all + " | " + usual + " | HP | 456";
    QTest::newRow("a grade that is no number")
        << QByteArrayList{"DPIMaxGrade=many"} << facts << all + " |  | 0 items | 50 to 26000 | HP | 456";
    QTest::newRow("a step of 0") << QByteArrayList{"DPIRange=\"50,800,0,0x00\""} << facts
                                 << all + " | 550 600* 650 700 | 8 items | 50 to 10000 | HP | 456";
    QTest::newRow("one row") << QByteArrayList{"DPIRange=50,800,50,0x00"} << facts
                             << all + " | 550 600* 650 700 | 8 items | 50 to 800 | HP | 456";
}

void SensorProductTest::damagedProduct()
{
    QFETCH(QByteArrayList, changes);
    QFETCH(QByteArray, sensorFile);
    ProductCopy copy;
    QFile config(copy.path("usersetting/Config.ini"));
    QVERIFY(config.open(QIODevice::ReadOnly));
    QByteArrayList lines = config.readAll().split('\n');
    config.close();
    const int section = lines.indexOf("[Drive1]");
    QVERIFY(section >= 0);
    for (const QByteArray &change : changes) {
        const QByteArray key = change.left(change.indexOf('=') + 1);
        int line = section;
        while (line < lines.size() && !lines.at(line).startsWith(key))
            ++line;
        QVERIFY(line < lines.size());
        lines[line] = change;
    }
    copy.replace("usersetting/Config.ini", lines.join('\n'));
    if (sensorFile.isEmpty())
        copy.replace("driver_sensor.h", {});
    const ProductCopy::Result result = copy.run("probe");
    QCOMPARE(result.exitCode, 0);
    QTEST(result.told, "told");
}

void SensorProductTest::probe()
{
    if (!ProductCopy::isCopy())
        QSKIP("runs in copies only");
    DeviceAllInfo device;
    device.ReceiverClass = 1;
    SelectInfo().set(device);
    Sensor page;
    page.show();
    page.SlotUpDataSenSorUIB(someRecord());
    page.grab();
    ProductCopy::tell(summary(SensorPageView(page)));
}

HALVARION_TEST_MAIN(SensorProductTest)
#include "tst_sensorproduct.moc"
