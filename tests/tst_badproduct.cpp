#include "app/ChooserList.h"
#include "productdata/Theme.h"
#include "support/ProductCopy.h"
#include "support/Program.h"
#include "support/Rows.h"
#include "support/TestHome.h"

#include <QSlider>

/** The whole program over other data: a copy of it starts, connects what it can, and a setting reaches the mouse. */
class BadProductTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void damaged_data();
    void damaged();
    void probe();
};

namespace {

/** What the sensor page has of what depends on the data: its parts, the levels to choose from, the range, the modes. */
QString sensorPage(const Program &program)
{
    const QWidget *const page = program.window()->findChild<QWidget *>("SenSorPage");
    QStringList seen;
    for (const char *name : {"frameDpi", "frameRate", "label_5", "ModelChoose", "frameLOD", "Performance", "frame",
                             "frame_4", "frame_3"}) {
        if (page->findChild<QWidget *>(name)->isVisible())
            seen << name;
    }
    const auto *const slider = program.find<QSlider>("horizontalSliderC");
    return QStringLiteral("%1 | %2 levels, %3 to %4 | %5")
        .arg(seen.join(' '))
        .arg(program.find<QComboBox>("ChooseEvent")->count())
        .arg(slider->minimum())
        .arg(slider->maximum())
        .arg(program.find("ModelChoose")->isEnabled() ? "modes" : "no modes");
}

} // namespace

/** Tells how far a user gets: the pictures on the chooser, whether the Q1 connects, whether a click reaches its flash,
 * and what the sensor page then has. */
void BadProductTest::probe()
{
    if (!ProductCopy::isCopy())
        QSKIP("runs in the copies that damaged makes");
    VirtualMice::restoreScene();
    Program program;
    QTest::qWait(100);
    const int entries = program.entryCount();
    bool connected = false;
    for (int index = 0; index < entries && !connected; ++index) {
        const DeviceAllInfo device = ChooserDevices()[index];
        if (device.DeviceKind == 1 && device.Path.contains("q1"))
            connected = program.connectEntry(index);
    }
    QString told = QStringLiteral("%1 entries").arg(entries);
    if (connected) {
        program.click("SensorButton");
        program.click("Button250HZ");
        const bool written = QTest::qWaitFor([] { return VirtualMice::record("q1").ReportRate == 4; });
        told = (written ? "written | " : "connected | ") + sensorPage(program);
        if (program.find<QLabel>("label_5")->text().startsWith("broken"))
            told += " with half a text";
        if (Theme::rgb(Theme::Colour::LabelColor) != "176,184,192")
            told += " in another colour";
        // Every page is shown once, and every language read.
        for (const char *page : {"MacroButton", "LightsButton", "FormSetting", "ButtonMain"})
            program.click(page);
    }
    ProductCopy::tell(told);
}

void BadProductTest::damaged_data()
{
    // from: text in the file to replace; empty for the whole file
    const Rows<QString, QString, QByteArray, QString> row("file", "from", "to", "told");
    const QString config = "usersetting/Config.ini";
    const QString sensors = "driver_sensor.h";
    const QString english = "Language/0-English.xml";
    const QString range = "DPIRange=50,10000,50,10100,26000,100,0x00";
    const QString parts = "written | frameDpi frameRate label_5 ModelChoose frameLOD Performance";
    const QString all = parts + " frame frame_4 frame_3";
    const QString works = all + " | 8 levels, 50 to 26000 | modes";
    const QString ownRange = all + " | 8 levels, 50 to 10000 | modes";
    const QString noLevels = all + " | 0 levels, 50 to 26000 | modes";
    const QString noFacts = parts + " | 8 levels, 50 to 26000 | no modes";
    row("no product file", config, {}, "", "0 entries");
    row("models that are no number", config, "DeviceTotal=2", "DeviceTotal=many", "0 entries");
    row("far too many models", config, "DeviceTotal=2", "DeviceTotal=2000000000", works);
    row("no vendor", config, "VID=RjBBMQ==", "VID=%%%", "0 entries");
    row("a colour of two numbers", config, "\nLabelColor=", "\nLabelColor=1,2\nOther=", works);
    row("a colour out of range", config, "\nLabelColor=", "\nLabelColor=1,2,300\nOther=", works);
    row("simple layout", config, "XIn1=1", "XIn1=2", "written | frameDpi frameRate | 8 levels, 50 to 26000 | modes");
    row("a battery table of 3", config, "BatteryParam=3050,", "BatteryParam=1,2,3\nOther=", works);
    row("one DPI row", config, range, "DPIRange=50,800,50,0x00", all + " | 8 levels, 50 to 800 | modes");
    row("a DPI step of 0", config, range, "DPIRange=50,10000,0,0x00", ownRange);
    row("no DPIRange", config, range, "Nothing=1", ownRange);
    row("levels that are no number", config, "DPIMaxGrade=8", "DPIMaxGrade=many", noLevels);
    row("twelve levels", config, "DPIMaxGrade=8", "DPIMaxGrade=12", works);
    row("short defaults", config, "DPIGrade=400,800,1600", "DPIGrade=400,800\nOther=", works);
    row("no sensor table", sensors, {}, "", noFacts);
    row("a binary sensor table", sensors, {}, "#define\t\xff\x01\t\n#define A\n\n#define \t // x", noFacts);
    row("no English", english, {}, "", works);
    row("English cut in the middle", english, {}, "<Total><Sensor><label_5>broken", works);
    row("English in a wrong encoding", english, {},
        "<Total><Sensor><label_5>broken\xff\xfe\xe9</label_5></Sensor></Total>", works);
}

void BadProductTest::damaged()
{
    QFETCH(QString, file);
    QFETCH(QString, from);
    QFETCH(QByteArray, to);
    ProductCopy copy;
    copy.change(file, [&](QByteArray content) {
        const int place = content.indexOf(from.toUtf8());
        if (place < 0)
            qFatal("the product file doesn't hold what is to be damaged");
        return from.isEmpty() ? to : content.replace(place, from.toUtf8().size(), to); // of the Q1, which comes first
    });
    const ProductCopy::Result result = copy.run("probe");
    QCOMPARE(result.exitCode, 0);
    QTEST(result.told, "told");
}

HALVARION_TEST_MAIN(BadProductTest)
#include "tst_badproduct.moc"
