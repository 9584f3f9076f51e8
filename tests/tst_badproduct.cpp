#include "app/ChooserList.h"
#include "devicelink/DeviceFlags.h"
#include "support/ProductCopy.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"

#include <QFile>

/** The whole program over damaged data: a copy of it starts, connects what it can, and a setting reaches the mouse. */
class BadProductTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void damaged_data();
    void damaged();
    void probe();
};

/** Tells how far a user gets: the pictures on the chooser, whether the Q1 connects, whether a click reaches its flash.
 */
void BadProductTest::probe()
{
    if (!ProductCopy::isCopy())
        QSKIP("runs in the copies that damaged makes");
    VirtualMice::restoreScene();
    Program program;
    QTest::qWait(100);
    const int entries = program.entryCount();
    bool connected = false;
    bool written = false;
    for (int index = 0; index < entries && !connected; ++index) {
        const DeviceAllInfo device = ChooserList::devices()[index];
        if (device.DeviceKind == 1 && device.Path.contains("q1"))
            connected = program.connectEntry(index);
    }
    if (connected) {
        program.click("SensorButton");
        program.click("Button250HZ");
        written = QTest::qWaitFor([] { return VirtualMice::record("q1").ReportRate == 4; });
        // Every page is shown once, and every language read.
        for (const char *page : {"MacroButton", "LightsButton", "FormSetting", "ButtonMain"})
            program.click(page);
    }
    ProductCopy::tell(QStringLiteral("%1 %2 %3")
                          .arg(entries)
                          .arg(connected ? "connected" : "alone")
                          .arg(written ? "written" : "unwritten"));
}

void BadProductTest::damaged_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("from"); ///< text in the file to replace; empty for the whole file
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QString>("told");
    const QString config = "usersetting/Config.ini";
    const QString works = "2 connected written";
    const QString range = "DPIRange=50,10000,50,10100,26000,100,0x00";
    const auto row = [](const char *name, const QString &file, const QString &from, const char *to,
                        const QString &told) { QTest::newRow(name) << file << from << QByteArray(to) << told; };
    row("whole", config, "Transition=0", "Transition=0", works);
    row("no product file", config, {}, "", "0 alone unwritten");
    row("empty product file", config, {}, "\n", "0 alone unwritten");
    row("no models", config, "DeviceTotal=2", "DeviceTotal=0", "0 alone unwritten");
    row("a battery table of 3", config, "BatteryParam=3050,", "BatteryParam=1,2,3\nOther=", works);
    row("a colour with two numbers", config, "LabelColor=176,184,192", "LabelColor=176,184", works);
    row("five DPI rows", config, range, "DPIRange=1,2,1,3,4,1,5,6,1,7,8,1,9,10,1,0x00", works);
    row("no DPI rows", config, range, "DPIRange=", works);
    row("a DPI step of 0", config, range, "DPIRange=50,10000,0,0x00", works);
    row("letters in DPI rows", config, range, "DPIRange=a,b,c,d", works);
    row("no DPIRange", config, range, "Nothing=1", works);
    row("no levels", config, "DPIMaxGrade=8", "DPIMaxGrade=0", works);
    row("twelve levels", config, "DPIMaxGrade=8", "DPIMaxGrade=12", works);
    row("short defaults", config, "DPIGrade=400,800,1600", "DPIGrade=400,800\nOther=", works);
    row("no sensor table", "driver_sensor.h", {}, "", works);
    row("a binary sensor table", "driver_sensor.h", {}, "#define\t\xff\x01\t\n#define A\n\n#define \t // x", works);
    row("no English", "Language/0-English.xml", {}, "", works);
    row("English of another kind", "Language/0-English.xml", {}, "<html><body/></html>", works);
    row("English cut in the middle", "Language/0-English.xml", {}, "<Total><Sensor><label_2>DPI", works);
}

void BadProductTest::damaged()
{
    QFETCH(QString, file);
    QFETCH(QString, from);
    QFETCH(QByteArray, to);
    ProductCopy copy;
    if (!from.isEmpty()) {
        QFile whole(copy.path(file));
        QVERIFY(whole.open(QIODevice::ReadOnly));
        QByteArray content = whole.readAll();
        QVERIFY2(content.contains(from.toUtf8()), "the product file doesn't hold what is to be damaged");
        content.replace(from.toUtf8(), to);
        to = content;
    }
    copy.replace(file, to);
    const ProductCopy::Result result = copy.run("probe");
    QCOMPARE(result.exitCode, 0);
    QTEST(result.told, "told");
}

HALVARION_TEST_MAIN(BadProductTest)
#include "tst_badproduct.moc"
