#include "portwire/control/ControlClient.h"
#include "portwire/control/ControlServer.h"
#include "portwire/control/StateFolder.h"
#include "portwire/portwire.h"
#include "portwire/virtual/SceneKeeper.h"
#include "portwire/virtual/VirtualBus.h"
#include "support/TestHome.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocalSocket>
#include <QProcess>

using namespace portwire;

/** The folder in which the virtual bus is kept, and the socket through which a hand acts on it. */
class VirtualBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sceneOutlastsARestart();
    void damagedStateIsPutAside();
    void commandsOfTheSocket();
    void hostileClients();
    void controlProgram();
};

void VirtualBusTest::sceneOutlastsARestart()
{
    QTemporaryDir folder;
    const auto bus = VirtualBus::create();
    std::vector<std::uint8_t> before, after;
    {
        SceneKeeper keeper(bus, folder.path());
        std::string id;
        QCOMPARE(bus->add("q1", "cable", id), std::string());
        QCOMPARE(id, std::string("q1-2"));
        QCOMPARE(bus->remove("q2"), std::string());
        bus->setPlugged("q1-4k", false);
        bus->changeProfile("q1", 3);
        bus->changeLevel("q1", 4);
        bus->record("q1", before);
    }
    const auto again = VirtualBus::create();
    SceneKeeper keeper(again, folder.path());
    const auto devices = again->describe();
    QCOMPARE(devices.size(), std::size_t{3});
    QVERIFY(devices[0].id == "q1" && devices[0].profile == 3 && devices[0].dpi == 6400);
    QVERIFY(devices[1].isCorded && !devices[2].isPlugged);
    again->record("q1", after);
    QVERIFY(after == before);
}

void VirtualBusTest::damagedStateIsPutAside()
{
    QTemporaryDir folder;
    const auto load = [](const QString &path, const char *warning = nullptr) {
        if (warning)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
        const auto bus = VirtualBus::create();
        SceneKeeper keeper(bus, path);
        return bus->describe();
    };
    const auto write = [&](const char *name, int at, const QByteArray &content) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadWrite));
        if (at == 0)
            file.resize(0);
        QVERIFY(file.seek(at) && file.write(content) == content.size());
    };
    load(folder.path());
    write("flash-q1.bin", 20000, "\x55");
    QCOMPARE(load(folder.path(), "flash-q1.bin can't be used").at(0).dpi, 1600);
    QVERIFY(QFile::exists(folder.filePath("flash-q1.bin.damaged")));
    write("scene.json", 0, "{\"mice\": 7}");
    QCOMPARE(load(folder.path(), "scene.json can't be used").size(), std::size_t{4});
    // Nothing in a file leads out of the folder.
    write("scene.json", 0,
          R"({"mice": [{"id": "../../q1", "model": "q1"}, {"id": "ok", "model": "q1"}, 5], "receivers": []})");
    QCOMPARE(load(folder.path()).size(), std::size_t{1});
    QCOMPARE(load(folder.filePath("scene.json") + "/portwire", "can't write .*/portwire/").size(), std::size_t{4});
}

void VirtualBusTest::commandsOfTheSocket()
{
    int count = 0;
    UsbFinderC_FindHidDevicesByDefaultDeviceId("", "", &count); // the library opens its bus, and with it the socket
    const ControlClient control;
    QCOMPARE(control.call({"devices"}).json().array().size(), 4);
    const QString wrongOnes = "|nothing|record q9|dpi q1 8|dpi q1 x|rate q1 3|profile q1 4|battery q1 101|"
                              "battery q1 10 full|add q3 cable|add q1 8k|fault q1 rain|fault q1 drop -1|"
                              "fault q1 powerloss|fault q1 powerloss 101|boot q9|firmware q1 256.0|firmware q1 1|plug|"
                              "press q1 16|press q1 -1|play q1 2:10-5|play q1 2:0-50 2:40-60|latency q1 1001|"
                              "flash q1 AAAA";
    for (const QString &wrong : wrongOnes.split('|'))
        QVERIFY2(!control.call(wrong.split(' ', Qt::SkipEmptyParts)).error.isEmpty(), qPrintable(wrong));
}

void VirtualBusTest::hostileClients()
{
    // A client that sends without end is dropped, before it takes memory without end.
    QLocalSocket endless;
    endless.connectToServer(portwire::controlSocket());
    QVERIFY(endless.waitForConnected());
    endless.write(QByteArray(1 << 16, 'x'));
    QVERIFY(endless.state() == QLocalSocket::UnconnectedState || endless.waitForDisconnected());

    // Another process's socket is left alone, one that was left behind is replaced.
    const auto bus = VirtualBus::create();
    const auto channels = std::make_shared<Channels>(bus);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("another process serves"));
    {
        ControlServer second(bus, channels, portwire::controlSocket());
    }
    QVERIFY(ControlClient().call({"stats"}).isGood());
#ifndef Q_OS_WIN // a pipe is no file: there is nothing that could be left behind, and any name will do
    QFileInfo socket(portwire::controlSocket());
    QVERIFY(!(socket.permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther)));
    QTemporaryDir folder;
    const QString stale = folder.filePath("control.sock");
    QVERIFY(QFile(stale).open(QIODevice::WriteOnly));
    ControlServer third(bus, channels, stale);
    QLocalSocket probe;
    probe.connectToServer(stale);
    QVERIFY(probe.waitForConnected(1000));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("can't listen on"));
    ControlServer fourth(bus, channels, stale + "/none");
#endif
}

void VirtualBusTest::controlProgram()
{
    // Words and the status; how output and complaint begin, of which nothing must come where it is empty.
    const std::tuple<const char *, int, const char *, const char *> runs[] = {
        {"dpi q1 2", 0, "{", ""},
        {"dpi q1 8", 1, "", "portwirectl: "},
        {"play q1 0:60-90 1:0-50", 0, R"({"action":"press","at":0,"code":2,"ms":0,"type":"button"})", ""},
        {"flash q1 /dev/null", 1, "", "portwirectl: /dev/null doesn't have"},
        {"--help", 0, "usage: ", ""},
        {"", 1, "", "usage: "}};
    for (const auto &[words, status, output, errors] : runs) {
        QProcess program;
        program.start(QCoreApplication::applicationDirPath() + "/portwirectl",
                      QString(words).split(' ', Qt::SkipEmptyParts));
        QVERIFY2(program.waitForFinished(), words);
        QCOMPARE(program.exitCode(), status);
        const QByteArray told = program.readAllStandardOutput(), complaint = program.readAllStandardError();
        QVERIFY2(told.startsWith(output) && told.isEmpty() == (*output == 0), told.constData());
        QVERIFY2(complaint.startsWith(errors) && complaint.isEmpty() == (*errors == 0), complaint.constData());
    }
}

HALVARION_TEST_MAIN(VirtualBusTest)
#include "tst_virtualbus.moc"
