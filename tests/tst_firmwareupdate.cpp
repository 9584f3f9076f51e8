#include "devicelink/DeviceSetters.h"
#include "devicelink/DeviceWatch.h"
#include "productdata/FirmwareImages.h"
#include "productdata/ModelData.h"
#include "support/Files.h"
#include "support/ProductCopy.h"
#include "support/Program.h"
#include "support/PromptDriver.h"
#include "support/Seed.h"
#include "support/TestHome.h"
#include "tools/FirmwareFile.h"

#include <cstdlib>
#include <memory>

namespace {

QByteArray imageFile(const FirmwareDescription &image)
{
    const std::vector<std::uint8_t> bytes = firmwareFile(image);
    return {reinterpret_cast<const char *>(bytes.data()), int(bytes.size())};
}

/** Puts an image into the folder that the program looks into. `what` is "q1", "q2", or the class of a receiver. */
void putImage(const QString &what, unsigned version, const QString &model = "q1")
{
    const bool isMouse = what.startsWith('q');
    const QString name = "HALVARION-" + (isMouse ? what.toUpper() : 'R' + what.left(1));
    const auto target = std::uint8_t(isMouse ? 210 : 211), id = std::uint8_t(model == "q2" ? 2 : 1);
    Files::put(QStringLiteral("%1/%2-%3.bin").arg(FirmwareImages::folder(), what).arg(version),
               imageFile({target, 18, id, name.toStdString(), version, 30000}));
}

QString firmwareOf(const QString &id) { return VirtualMice::device(id)["firmware"].toString(); }

/** Rows of texts with bars between: the name, and the columns. */
void addRows(const QStringList &rows)
{
    QTest::addColumn<QStringList>("columns");
    for (const QString &row : rows)
        QTest::newRow(qPrintable(row.section('|', 0, 0))) << QStringList(row.split('|').mid(1));
}

const auto englishText = Program::englishText;
QString repaired() { return englishText("AutoRepair", "UpdateSuccess"); }

/** Waits until a prompt may be answered, and presses its button. \return what it said. */
QString confirm(const char *promptClass, const char *button = "NewHong")
{
    const auto mayBeAnswered = [=] {
        const Prompt *const shown = Program::prompt(promptClass);
        return shown && PromptDriver::button(*shown, button)->isVisible();
    };
    if (!QTest::qWaitFor(mayBeAnswered, 20000))
        return "no end";
    const QString said = PromptDriver::labelText(*Program::prompt(promptClass));
    Program::clickIn(promptClass, button);
    return said;
}

} // namespace

/** The firmware update: which image a device gets, the run behind the buttons of the settings page, and the repair. */
class FirmwareUpdateTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { program.reset(); }
    void images_data();
    void images();
    void update_data();
    void update();
    void notBegun();
    void bothDevices();
    void repair_data();
    void repair();
    void mismatch_data();
    void mismatch();
    void killed();
    void killedProcess();

private:
    /** Starts the program. A repair is gone through when it shows, and what it says comes into `repairSaid`. */
    void start();
    /** Opens a mouse of the default scene on its settings page. */
    void open(const QString &mouse)
    {
        start();
        QVERIFY(program->connectMouse(mouse));
        program->click("FormSetting");
    }
    /** Presses the hidden update button. */
    void press(const char *button) { program->find<QPushButton>(button)->click(); }

    std::unique_ptr<Program> program;
    QStringList repairSaid;
};

void FirmwareUpdateTest::init()
{
    if (qEnvironmentVariableIsSet("HALVARION_TEST_HOME"))
        return; // with what the process before left in it
    VirtualMice::restoreScene();
    ModelData::storeUpdateFailInfo({});
    QDir(FirmwareImages::folder()).removeRecursively();
}

void FirmwareUpdateTest::start()
{
    repairSaid.clear();
    program = std::make_unique<Program>();
    program->whenShown("UpDateRepair", [this] {
        repairSaid << confirm("UpDateRepair");
        Prompt *const prompt = Program::prompt("UpDateRepair");
        if (!prompt)
            return;
        if (prompt->findChild<QWidget *>("spinBox")->isVisible()) {
            QTest::keyClick(prompt, Qt::Key_Escape); // there is no way out meanwhile
            QTest::keyClick(prompt, Qt::Key_Return);
            QVERIFY(Program::isPromptShown("UpDateRepair"));
        }
        repairSaid << confirm("UpDateRepair");
        Program::clickIn("UpDateRepair", "CloseButton"); // of one that has done nothing
    });
}

void FirmwareUpdateTest::images_data()
{
    // What the device has; the images as a device would show them, in the order of their names; number of the selected.
    addRows({"nothing there|v1.1||-1", "newer|v1.1|v1.2|0", "a version without its v|1.1|v1.2|0",
             "the same version|v1.1|v1.1|-1", "the last name wins|v1.1|v1.3 v1.2 v1.1|1",
             "an older one ends the search|v1.1|v1.2 v1.0 v1.9|0", "1.10 is older than 1.9|v1.9|v1.10 v2.0|-1",
             "hexadecimal counts as nothing|v1.1|v1.a v1.9|-1", "hexadecimal in the device|v1.a|v1.1|0",
             "the same in hexadecimal|v1.a|v1.a|-1", "a device that can't say||v1.0 v0.9|1",
             "large numbers|v299.1|v300.0|0"});
}

/** Whatever lies beside it, only an image with all that is asked for is found. */
void FirmwareUpdateTest::images()
{
    QFETCH(QStringList, columns);
    const QString &device = columns[0], &images = columns[1], &selected = columns[2];
    const std::string name(64, 'N'); // fills its field, without a zero behind it
    const QTemporaryDir folder;
    QList<QByteArray> files;
    const QStringList versions = images.split(' ', Qt::SkipEmptyParts);
    for (const QString &version : versions) {
        const QStringList numbers = version.mid(1).split('.');
        const unsigned word = numbers[0].toUInt() << 8 | numbers[1].toUInt(nullptr, 16);
        files << imageFile({210, 18, 1, name, word, 50});
        QCOMPARE(FirmwareImages::versionText(word), version);
        Files::put(folder.filePath(QStringLiteral("%1.bin").arg(files.size())), files.last());
    }
    // By their version and the names of their files the others would be taken.
    const QByteArray good = imageFile({210, 18, 1, name, 200 << 8, 50});
    QList<QByteArray> others = {good.left(727), QByteArray(),
                                good + QByteArray(int(FirmwareImages::largestFile), '\0')};
    for (const int field : {20, 21, 22, 150}) // target, company, model, the last letter of the name
        others << QByteArray(good).replace(field, 1, "\2");
    for (const QByteArray &other : qAsConst(others))
        Files::put(folder.filePath(QStringLiteral("x%1.bin").arg(others.indexOf(other))), other);
    QVERIFY(QDir(folder.path()).mkdir("y.bin"));
    const FirmwareImages::Request request{210, QString::fromStdString(name), 18, 1};
    QList<QByteArray> found{"what was selected before"};
    const bool isAny = selected != "-1";
    QCOMPARE(FirmwareImages::FindImage(request, device, found, folder.path()), isAny);
    QCOMPARE(found, isAny ? QList<QByteArray>{files[selected.toInt()]} : QList<QByteArray>());
    QCOMPARE(FirmwareImages::CheckUpdate(request, device, folder.path()), isAny && !device.isEmpty());
}

void FirmwareUpdateTest::update_data()
{
    // The device, and at how many percent it loses its power.
    addRows({"mouse|q2|cable|", "1K|q2|1k|", "2K|q1|2k|", "4K|q1|4k|", "power lost at 1|q1|cable|1",
             "at 100|q1|cable|100", "other mouse|q2|cable|30", "4K at 50|q1|4k|50", "1K at 60|q2|1k|60",
             "2K at 70|q1|2k|70"});
}

/**
 * The device has the new firmware and all its settings, and the device window goes on. Where the power was lost, the
 * user is led back to the chooser, which offers the repair, and that brings the same.
 */
void FirmwareUpdateTest::update()
{
    QFETCH(QStringList, columns);
    const QString &mouse = columns[0], &link = columns[1], &loss = columns[2];
    const bool isMouse = link == "cable";
    const QString device = isMouse ? mouse : mouse + '-' + link;
    const auto setLod = [&mouse](int lod) { return SetLod(lod) && VirtualMice::record(mouse).Lod == lod; };
    VirtualMice::tell({"remove", mouse});
    QCOMPARE(VirtualMice::add(mouse, link), mouse);
    putImage(isMouse ? mouse : link, 0x0920, mouse);
    open(mouse);
    QTRY_VERIFY(setLod(2));
    const FlashDataMap before = VirtualMice::record(mouse);
    QTRY_VERIFY(isMouse ? MouseUpdateAvailable : DongleUpdateAvailable);
    program->forgetPrompts();
    if (!loss.isEmpty())
        VirtualMice::tell({"fault", device, "powerloss", loss});
    press(isMouse ? "Mouse" : "Receive");
    QTRY_VERIFY(Program::prompt("Progress"));
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return})
        QTest::keyClick(Program::prompt("Progress"), key);
    QCOMPARE(confirm("Progress"), englishText("Progress", loss.isEmpty() ? "UpDateSuccess" : "UpDateFail"));
    QTRY_VERIFY(!UpdateRunning && HotplugWatchEnabled);
    if (loss.isEmpty()) {
        QCOMPARE(program->find<QLabel>(isMouse ? "label_7" : "label_5")->text(), QString("v9.20"));
        QCOMPARE(ModelData::mouseVersion(mouse == "q1" ? 0 : 1) == "v9.20", isMouse);
        QCOMPARE(program->shownPrompts(), QStringList("Progress")); // none over it that tells of a silent mouse
    } else {
        QTRY_VERIFY(!program->isDeviceWindowShown());
        VirtualMice::tell({"plug", device});
        QTRY_COMPARE(VirtualMice::device(device)["mode"].toString(), QString("boot"));
        program->click("Repair");
        QCOMPARE(repairSaid.value(1), repaired());
        QVERIFY(program->connectMouse(mouse));
    }
    QCOMPARE(firmwareOf(device), QString("9.20"));
    QCOMPARE(ModelData::updateFailInfo(), QString());
    QVERIFY(VirtualMice::record(mouse) == before);
    QTRY_VERIFY(program->isConnected() && setLod(1));
}

/** Nobody acts on the bus from the press on; when the run is over, the window of a device that has gone is left. */
void FirmwareUpdateTest::notBegun()
{
    putImage("q1", 0x0920);
    open("q1");
    press("Receive"); // there is no image for it
    QVERIFY(UpdateRunning && !HotplugWatchEnabled);
    press("Mouse"); // does nothing meanwhile
    QTRY_VERIFY(!UpdateRunning);
    QCOMPARE(program->find<QPushButton>("Receive")->text(), englishText("FormSetting", "VerNew"));
    const auto *const message = program->find<QLabel>("label_13");
    QVERIFY(message->isHidden());
    press("Mouse"); // which is on no cable
    QTRY_VERIFY(!UpdateRunning);
    QCOMPARE(message->text(), englishText("FormSetting", "WiredMode"));
    QVERIFY(!message->isHidden() && HotplugWatchEnabled && program->isDeviceWindowShown());

    putImage("4k", 0x0920);
    HotplugWatchEnabled = false; // as from the press on
    VirtualMice::tell({"unplug", "q1-4k"});
    QTRY_VERIFY(watchedDevices().isEmpty());
    press("Receive");
    QTRY_VERIFY(!UpdateRunning && !program->isDeviceWindowShown());
    QVERIFY(HotplugWatchEnabled && !Program::prompt("Progress") && ModelData::updateFailInfo().isEmpty());
}

/** The receiver first, by its button; when that is confirmed the mouse follows by itself, or is asked for its cable. */
void FirmwareUpdateTest::bothDevices()
{
    for (const bool isOnCable : {true, false}) {
        init();
        VirtualMice::tell({isOnCable ? "plug" : "wake", "q1"});
        putImage("q1", 0x0920);
        putImage("4k", 0x0930);
        open("q1");
        QTRY_VERIFY(MouseUpdateAvailable && DongleUpdateAvailable);
        program->whenShown("UpDateWarning", [] { Program::clickIn("UpDateWarning", "NewHong"); });
        press("Receive");
        for (int device = 0; device < (isOnCable ? 2 : 1); ++device)
            QCOMPARE(confirm("Progress"), englishText("Progress", "UpDateSuccess"));
        QTRY_VERIFY(!UpdateRunning);
        QTest::qWait(200);
        QVERIFY(!UpdateRunning && !Program::prompt("Progress")); // and not in a circle
        QCOMPARE(firmwareOf("q1-4k") + ' ' + firmwareOf("q1"), QString(isOnCable ? "9.30 9.20" : "9.30 1.12"));
        QCOMPARE(program->shownPrompts().contains("UpDateWarning"), !isOnCable);
        QVERIFY(program->find("label_13")->isHidden()); // the prompt has said it
        program.reset();
    }
}

void FirmwareUpdateTest::repair_data()
{
    // What is noted; what happens to the devices; what is said, and that it is offered still.
    addRows({"mouse|210,4,18,1|boot q1,plug q1|UpdateSuccess|", "receiver|211,4,18,1|boot q1-4k|UpdateSuccess|",
             "loses its power again|211,4,18,1|boot q1-4k,fault q1-4k powerloss 60|UpdateFail|still",
             "mouse works|210,4,18,1||DeviceWorks|", "receiver works|211,4,18,1||DeviceWorks|",
             "receiver gone|211,4,18,1|unplug q1-4k|NoDevice|still", "mouse gone|210,4,18,1|sleep q1|NoDevice|still",
             "two|210,4,18,1|add q1 cable,plug q1,boot q1,boot q1-2|SameDevice|still",
             "no image for it|210,1,18,2|boot q2|ToolText|still", "of no class|211,3,18,1|boot q1-4k|ToolText|still",
             "of no model|210,4,18,7||ToolText|still", "of another maker|210,4,19,1|boot q1|ToolText|still",
             "of three parts|210,4,18|boot q1||", "of five parts|210,4,18,1,|boot q1||"});
}

void FirmwareUpdateTest::repair()
{
    QFETCH(QStringList, columns);
    const QString &entry = columns[0], &said = columns[2], &isOffered = columns[3];
    const QStringList commands = columns[1].split(',', Qt::SkipEmptyParts);
    for (const QString &command : commands)
        VirtualMice::tell(command.split(' '));
    ModelData::storeUpdateFailInfo(entry);
    putImage("q1", 0x0920);
    putImage("4k", 0x0920);
    start();
    QVERIFY(program->find("Repair")->isVisible());
    QStringList expected{englishText("AutoRepair", "ToolText")};
    if (!said.isEmpty())
        expected << englishText("AutoRepair", said);
    program->click("Repair");
    QCOMPARE(repairSaid, expected);
    QCOMPARE(program->find("Repair")->isVisible(), !isOffered.isEmpty());
    QCOMPARE(ModelData::updateFailInfo(), isOffered.isEmpty() ? QString() : entry);
    QVERIFY(HotplugWatchEnabled && !FirmwareUnderWay);
    if (said == "UpdateSuccess")
        QCOMPARE(firmwareOf(commands[0].mid(5)), QString("9.20"));
}

void FirmwareUpdateTest::mismatch_data()
{
    // Images that are there; version of the mouse, as it was seen last; what is offered for one receiver, and for a
    // clicked 2K one, of which there is no image.
    addRows({"never seen|q1 4k||Match|Match", "no images||v1.12|RePair Match|RePair Match",
             "mouse is older|q1|v1.12|UpDateWarning|UpDateWarning",
             "receiver is older|4k|v1.12|ContainReset UpDateRepair|RePair Match",
             "both are|q1 4k|v1.12|RePair Match|UpDateWarning"});
}

/** One receiver that doesn't hear its mouse: what the space bar offers, and a click when another one hears it. */
void FirmwareUpdateTest::mismatch()
{
    QFETCH(QStringList, columns);
    const QString &images = columns[0], &version = columns[1], &prompts = columns[2], &clicked = columns[3];
    VirtualMice::tell({"remove", "q2"});
    for (const QString &image : images.split(' ', Qt::SkipEmptyParts))
        putImage(image, 0x0920);
    ModelData::storeMouseVersion(0, version);
    start();
    QTRY_COMPARE(program->entryCount(), 1);
    program->whenShown("RePair", [] { Program::clickIn("RePair", "OK"); });
    program->whenShown("Match", [] { Program::clickIn("Match", "CloseButton"); });
    program->whenShown("UpDateWarning",
                       [] { QCOMPARE(confirm("UpDateWarning"), englishText("FormSetting", "WiredMode")); });
    program->whenShown("ContainReset",
                       [] { QCOMPARE(confirm("ContainReset", "OK"), englishText("DialogChange", "MouseIsNewTips")); });
    QTest::keyClick(program->window(), Qt::Key_Space);
    QCOMPARE(program->shownPrompts().join(' '), prompts);
    QCOMPARE(firmwareOf("q1-4k"), QString(prompts.contains("UpDateRepair") ? "9.20" : "1.c"));

    VirtualMice::tell({"firmware", "q1-4k", "1.c"});
    VirtualMice::tell({"add", "receiver", "2k", "q1"});
    QTRY_COMPARE(program->entryCount(), 2);
    program->forgetPrompts();
    program->click("btn0");
    QCOMPARE(program->shownPrompts().join(' '), clicked);
    QVERIFY(!program->isDeviceWindowShown());
}

/** Killed or ended in the middle of an update: the next start, in the same home, offers the repair, and that works. */
void FirmwareUpdateTest::killed()
{
    QRandomGenerator random(testSeed());
    ProductCopy copy;
    for (int round = 0; round < testRounds(3) && !QTest::currentTestFailed(); ++round) {
        const QTemporaryDir home;
        const QByteArray moment = QByteArray::number(round == 0 ? -1 : random.bounded(60)); // ms
        qputenv("HALVARION_TEST_HOME", QFile::encodeName(home.path()));
        qputenv("HALVARION_KILL_AT", moment);
        const int first = copy.run("killedProcess").exitCode;
        qunsetenv("HALVARION_KILL_AT");
        const int second = copy.run("killedProcess").exitCode;
        qunsetenv("HALVARION_TEST_HOME");
        QVERIFY2(first == 0 && second == 0, moment.constData());
    }
}

void FirmwareUpdateTest::killedProcess()
{
    if (!qEnvironmentVariableIsSet("HALVARION_TEST_HOME"))
        QSKIP("runs in the processes that killed makes");
    if (qEnvironmentVariableIsSet("HALVARION_KILL_AT")) {
        VirtualMice::tell({"plug", "q1"});
        putImage("q1", 0x0920);
        open("q1");
        press("Mouse");
        QVERIFY(QTest::qWaitFor([] { return Program::isPromptShown("Progress"); }));
        const int moment = qEnvironmentVariableIntValue("HALVARION_KILL_AT");
        if (moment < 0)
            return; // it ends as it is used to
        QTimer::singleShot(moment, [] {
            if (!ModelData::updateFailInfo().isEmpty())
                std::_Exit(0); // nothing is put in order, as when it is killed
        });
        confirm("Progress"); // if it isn't killed before
        return;
    }
    putImage("q1", 0x0920);
    const bool isOffered = !ModelData::updateFailInfo().isEmpty();
    start();
    QCOMPARE(program->find("Repair")->isVisible(), isOffered);
    if (isOffered)
        program->click("Repair");
    // What the bus had not yet put on the disk is lost with the process, and the mouse works as before.
    const bool mayBeOld = repairSaid.value(1) == englishText("AutoRepair", "DeviceWorks");
    QVERIFY(firmwareOf("q1") == "9.20" || (mayBeOld && firmwareOf("q1") == "1.12"));
    QVERIFY(!program->find("Repair")->isVisible() && VirtualMice::device("q1")["mode"] == "normal");
    QVERIFY(program->connectMouse("q1"));
}

/** In a copy of this program: the images lie beside the executable, where all other tests would find them. */
int main(int argc, char *argv[])
{
    const TestHome home;
    QApplication application(argc, argv);
    if (!ProductCopy::isCopy())
        return ProductCopy().runInstead();
    Wait::setScale(0.1); // a device that was silent for a second has failed, and even a busy machine answers by then
    FirmwareUpdateTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_firmwareupdate.moc"
