#include "devicelink/DeviceSetters.h"
#include "devicelink/DeviceWatch.h"
#include "maintenance/Progress.h"
#include "maintenance/UpDateRepair.h"
#include "productdata/FirmwareImages.h"
#include "productdata/ModelData.h"
#include "support/Files.h"
#include "support/ProductCopy.h"
#include "support/Program.h"
#include "support/PromptDriver.h"
#include "support/Seed.h"
#include "support/TestHome.h"
#include "tools/FirmwareFile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

namespace {

QByteArray imageFile(const FirmwareDescription &image)
{
    const std::vector<std::uint8_t> bytes = firmwareFile(image);
    return {reinterpret_cast<const char *>(bytes.data()), int(bytes.size())};
}

/** Moments of an update at which it may be killed: so many a percent, of 20 us each, from its first picture on. */
constexpr int momentsPerStep = 1000;
/** Exit code of a process that ends in the middle of everything. */
constexpr int killedCode = 77;

/** Puts an image into the folder that the program looks into. `what` is "q1", "q2", or the class of a receiver. */
void putImage(const QString &what, unsigned version, const QString &model = "q1")
{
    FirmwareDescription image;
    image.modelId = model == "q2" || what == "q2" ? 2 : 1;
    image.target = what.startsWith('q') ? 210 : 211;
    image.name = (what.startsWith('q') ? "HALVARION-" + what.toUpper() : "HALVARION-R" + what.left(1)).toStdString();
    image.version = version;
    image.payload = 30000;
    Files::put(QStringLiteral("%1/%2-%3.bin").arg(FirmwareImages::folder(), what).arg(version), imageFile(image));
}

QString firmwareOf(const QString &id) { return VirtualMice::device(id)["firmware"].toString(); }

/** Rows of texts with bars between: the name, and the columns. */
void addRows(const QStringList &rows)
{
    QTest::addColumn<QStringList>("columns");
    for (const QString &row : rows)
        QTest::newRow(qPrintable(row.section('|', 0, 0))) << QStringList(row.split('|').mid(1));
}

template<std::size_t count>
std::array<QString, count> columnsOfRow()
{
    QFETCH(QStringList, columns);
    std::array<QString, count> texts;
    std::copy_n(columns.begin(), count, texts.begin());
    return texts;
}

const auto englishText = Program::englishText;

QString labelOf(const char *promptClass)
{
    const Prompt *const shown = Program::prompt(promptClass);
    return shown ? PromptDriver::labelText(*shown) : QString();
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
    void fitting();
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
    /** Opens a mouse of the default scene on its settings page. */
    void open(const QString &mouse)
    {
        program = std::make_unique<Program>();
        QVERIFY(program->connectMouse(mouse));
        program->click("FormSetting");
    }
    /** Presses the hidden update button. */
    void press(const char *button) { program->find<QPushButton>(button)->click(); }
    /** Waits for the end of a transfer and confirms it. \return what was said. */
    QString confirmProgress();
    /** Goes through the chooser's repair. \return what was said, one text after the other. */
    QStringList repairByClicks();

    std::unique_ptr<Program> program;
};

void FirmwareUpdateTest::init()
{
    const bool isNextStart =
        qEnvironmentVariableIsSet("HALVARION_TEST_HOME") && !qEnvironmentVariableIsSet("HALVARION_KILL_AT");
    if (isNextStart)
        return; // with what the killed one left
    VirtualMice::restoreScene();
    ModelData::storeUpdateFailInfo({});
    QDir(FirmwareImages::folder()).removeRecursively();
}

QString FirmwareUpdateTest::confirmProgress()
{
    const auto isOver = [] {
        const Prompt *const progress = Program::prompt("Progress");
        return progress && PromptDriver::button(*progress, "NewHong")->isVisible();
    };
    if (!QTest::qWaitFor(isOver, 20000))
        return "no end";
    const QString said = labelOf("Progress");
    Program::clickIn("Progress", "NewHong");
    return said;
}

QStringList FirmwareUpdateTest::repairByClicks()
{
    QStringList said;
    program->whenShown("UpDateRepair", [&said] {
        const char *const repair = "UpDateRepair";
        said << labelOf(repair);
        Program::clickIn(repair, "NewHong");
        Prompt *const prompt = Program::prompt(repair);
        if (!prompt)
            return;
        if (prompt->findChild<QWidget *>("spinBox")->isVisible()) {
            QTest::keyClick(prompt, Qt::Key_Escape); // there is no way out meanwhile
            QTest::keyClick(prompt, Qt::Key_Return);
            QVERIFY(Program::isPromptShown(repair));
            QTRY_VERIFY_WITH_TIMEOUT(prompt->findChild<QWidget *>("NewHong")->isVisible(), 20000);
        }
        said << labelOf(repair);
        Program::clickIn(repair, "CloseButton");
    });
    program->click("Repair");
    return said;
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

void FirmwareUpdateTest::images()
{
    const auto [device, images, selected] = columnsOfRow<3>();
    const QTemporaryDir folder;
    QList<QByteArray> files;
    const QStringList versions = images.split(' ', Qt::SkipEmptyParts);
    for (const QString &version : versions) {
        const QStringList numbers = version.mid(1).split('.');
        const unsigned word = numbers[0].toUInt() << 8 | numbers[1].toUInt(nullptr, 16);
        files << imageFile({210, 18, 1, "NAME", word, 50});
        QCOMPARE(FirmwareImages::versionText(word), version);
        Files::put(folder.filePath(QStringLiteral("%1.bin").arg(files.size())), files.last());
    }
    const FirmwareImages::Request request{210, QStringLiteral("NAME"), 18, 1};
    QList<QByteArray> found{"what was selected before"};
    const bool isAny = selected != "-1";
    QCOMPARE(FirmwareImages::FindImage(request, device, found, folder.path()), isAny);
    QCOMPARE(found, isAny ? QList<QByteArray>{files[selected.toInt()]} : QList<QByteArray>());
    QCOMPARE(FirmwareImages::CheckUpdate(request, device, folder.path()), isAny && !device.isEmpty());
}

/** Whatever lies beside it, only an image with all that is asked for is found. */
void FirmwareUpdateTest::fitting()
{
    const std::string name(64, 'N'); // fills its field, without a zero behind it
    const QTemporaryDir folder;
    const QByteArray good = imageFile({211, 18, 2, name, 1, 1});
    const QList<QByteArray> others = {imageFile({210, 18, 2, name, 1, 1}),
                                      imageFile({211, 19, 2, name, 1, 1}),
                                      imageFile({211, 18, 1, name, 1, 1}),
                                      imageFile({211, 18, 2, "NNNN", 1, 1}),
                                      good.left(727),
                                      QByteArray(),
                                      good + QByteArray(int(FirmwareImages::largestFile), '\0')};
    for (const QByteArray &other : others)
        Files::put(folder.filePath(QStringLiteral("%1.bin").arg(others.indexOf(other))), other);
    QVERIFY(QDir(folder.path()).mkdir("8.bin"));
    QList<QByteArray> found;
    FirmwareImages::Request request{211, QString::fromStdString(name), 18, 2};
    QVERIFY(!FirmwareImages::FindImage(request, {}, found, folder.path()));
    Files::put(folder.filePath("9.bin"), good);
    QVERIFY(FirmwareImages::FindImage(request, {}, found, folder.path()) && found.first() == good);
    request.modelName.clear();
    QVERIFY(!FirmwareImages::FindImage(request, {}, found, folder.path()) && found.isEmpty());
}

void FirmwareUpdateTest::update_data()
{
    // What is noted while it is written, and at how many percent the device loses its power.
    addRows({"mouse|q2|cable|210,0,18,2|", "1K|q2|1k|211,1,18,2|", "2K|q1|2k|211,2,18,1|", "4K|q1|4k|211,4,18,1|",
             "power lost at 1|q1|cable|210,0,18,1|1", "at 100|q1|cable|210,0,18,1|100",
             "receiver|q1|4k|211,4,18,1|50"});
}

/**
 * The device has the new firmware and all its settings, and the device window goes on. Where the power was lost, the
 * user is led back to the chooser, which offers the repair, and that brings the same.
 */
void FirmwareUpdateTest::update()
{
    const auto [mouse, link, noted, loss] = columnsOfRow<4>();
    const bool isMouse = link == "cable";
    const QString device = isMouse ? mouse : mouse + '-' + link;
    const auto setLod = [&mouse = mouse](int lod) { return SetLod(lod) && VirtualMice::record(mouse).Lod == lod; };
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
    QCOMPARE(ModelData::updateFailInfo(), noted);
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return})
        QTest::keyClick(Program::prompt("Progress"), key);
    QCOMPARE(confirmProgress(), englishText("Progress", loss.isEmpty() ? "UpDateSuccess" : "UpDateFail"));
    QTRY_VERIFY(!UpdateRunning && HotplugWatchEnabled);
    if (loss.isEmpty()) {
        QCOMPARE(program->find<QLabel>(isMouse ? "label_7" : "label_5")->text(), QString("v9.20"));
        QCOMPARE(ModelData::mouseVersion(mouse == "q1" ? 0 : 1) == "v9.20", isMouse);
        QCOMPARE(program->shownPrompts(), QStringList("Progress")); // none over it that tells of a silent mouse
    } else {
        QTRY_VERIFY(!program->isDeviceWindowShown());
        QCOMPARE(ModelData::updateFailInfo(), noted);
        VirtualMice::tell({"plug", device});
        QTRY_COMPARE(VirtualMice::device(device)["mode"].toString(), QString("boot"));
        QCOMPARE(repairByClicks().last(), englishText("AutoRepair", "UpdateSuccess"));
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
            QCOMPARE(confirmProgress(), englishText("Progress", "UpDateSuccess"));
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
    const auto [entry, hands, said, isOffered] = columnsOfRow<4>();
    const QStringList commands = hands.split(',', Qt::SkipEmptyParts);
    for (const QString &command : commands)
        VirtualMice::tell(command.split(' '));
    ModelData::storeUpdateFailInfo(entry);
    putImage("q1", 0x0920);
    putImage("4k", 0x0920);
    program = std::make_unique<Program>();
    QVERIFY(program->find("Repair")->isVisible());
    QStringList expected{englishText("AutoRepair", "ToolText")};
    if (!said.isEmpty())
        expected << englishText("AutoRepair", said);
    QCOMPARE(repairByClicks(), expected);
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
    const auto [images, version, prompts, clicked] = columnsOfRow<4>();
    VirtualMice::tell({"remove", "q2"});
    for (const QString &image : images.split(' ', Qt::SkipEmptyParts))
        putImage(image, 0x0920);
    ModelData::storeMouseVersion(0, version);
    program = std::make_unique<Program>();
    QTRY_COMPARE(program->entryCount(), 1);
    const auto answer = [this](const char *prompt, const char *with, const QString &said = {}) {
        program->whenShown(prompt, [=] {
            QVERIFY(said.isEmpty() || labelOf(prompt) == said);
            Program::clickIn(prompt, with);
        });
    };
    answer("RePair", "OK");
    answer("Match", "CloseButton");
    answer("UpDateWarning", "NewHong", englishText("FormSetting", "WiredMode"));
    answer("ContainReset", "OK", englishText("DialogChange", "MouseIsNewTips"));
    program->whenShown("UpDateRepair", [] {
        Program::clickIn("UpDateRepair", "NewHong");
        QTRY_COMPARE_WITH_TIMEOUT(labelOf("UpDateRepair"), englishText("AutoRepair", "UpdateSuccess"), 20000);
        Program::clickIn("UpDateRepair", "NewHong");
    });
    QTest::keyClick(program->window(), Qt::Key_Space);
    QCOMPARE(program->shownPrompts().join(' '), prompts);
    QCOMPARE(firmwareOf("q1-4k"), prompts.contains("UpDateRepair") ? QString("9.20") : QString("1.c"));

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
        const QByteArray moment = round == 0 ? "end" : QByteArray::number(random.bounded(102 * momentsPerStep));
        qputenv("HALVARION_TEST_HOME", QFile::encodeName(home.path()));
        qputenv("HALVARION_KILL_AT", moment);
        const int first = copy.run("killedProcess").exitCode;
        qunsetenv("HALVARION_KILL_AT");
        const int second = copy.run("killedProcess").exitCode;
        qunsetenv("HALVARION_TEST_HOME");
        QVERIFY2((first == killedCode || first == 0) && second == 0, moment.constData());
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
        bool isKilled = false;
        const int moment = qEnvironmentVariableIntValue("HALVARION_KILL_AT", &isKilled);
        const auto onProgress = [isDue = isKilled, moment](int percent, int code) mutable {
            const int step = code == 3 ? -1 : code == 0 ? percent : 100;
            if (step < moment / momentsPerStep - 1 || !std::exchange(isDue, false))
                return;
            std::thread([moment] {
                std::this_thread::sleep_for(std::chrono::microseconds(moment % momentsPerStep * 20));
                if (!ModelData::updateFailInfo().isEmpty())
                    std::_Exit(killedCode); // nothing is put in order, as when it is killed
            }).detach();
        };
        connect(postMsg(), &PostMsg::SigProgress, postMsg(), onProgress, Qt::DirectConnection);
        press("Mouse");
        if (isKilled)
            confirmProgress(); // if it wasn't killed before
        else
            QTRY_VERIFY(Program::prompt("Progress"));
        return;
    }
    putImage("q1", 0x0920);
    const bool isOffered = !ModelData::updateFailInfo().isEmpty();
    program = std::make_unique<Program>();
    QCOMPARE(program->find("Repair")->isVisible(), isOffered);
    const QStringList said = isOffered ? repairByClicks() : QStringList(englishText("AutoRepair", "UpdateSuccess"));
    const bool wasWritten = said.last() == englishText("AutoRepair", "UpdateSuccess");
    QVERIFY2(wasWritten || said.last() == englishText("AutoRepair", "DeviceWorks"), qPrintable(said.last()));
    QVERIFY(!program->find("Repair")->isVisible() && VirtualMice::device("q1")["mode"] == "normal");
    // What the bus had not yet put on the disk is lost with the process, and the mouse works as before.
    QCOMPARE(firmwareOf("q1"), QString(wasWritten ? "9.20" : "1.12"));
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
