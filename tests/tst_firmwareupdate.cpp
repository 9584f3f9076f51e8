#include "productdata/FirmwareImages.h"
#include "support/TestHome.h"

#include <QTemporaryDir>

namespace {

/** The header alone; `version` as the images hold it. */
QByteArray imageHeader(int target, int cid, int mid, const char *name, unsigned version)
{
    QByteArray bytes(FirmwareImages::headerSize, 0);
    bytes[16] = char(version & 0xff);
    bytes[17] = char(version >> 8);
    bytes[18] = char(version >> 16);
    bytes[20] = char(target);
    bytes[21] = char(cid);
    bytes[22] = char(mid);
    return bytes.replace(87, 64, QByteArray(name).leftJustified(64, 0, true));
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
}

} // namespace

/** The firmware update: which image a device gets, the run behind the buttons of the settings page, and the repair. */
class FirmwareUpdateTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void images_data();
    void images();
    void fitting_data();
    void fitting();
};

void FirmwareUpdateTest::images_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QStringList>("files"); ///< their versions as a device shows them, in the order of their names
    QTest::addColumn<int>("selected");      ///< -1 for none

    const auto row = [](const char *name, const char *device, const char *files, int selected) {
        QTest::newRow(name) << device << QString(files).split(' ', Qt::SkipEmptyParts) << selected;
    };
    row("nothing there", "v1.1", "", -1);
    row("newer", "v1.1", "v1.2", 0);
    row("a version without its v", "1.1", "v1.2", 0);
    row("the same version", "v1.1", "v1.1", -1);
    row("the last name wins", "v1.1", "v1.3 v1.2 v1.1", 1);
    row("an older one ends the search", "v1.1", "v1.2 v1.0 v1.9", 0);
    row("1.10 is older than 1.9", "v1.9", "v1.10 v2.0", -1);
    row("hexadecimal counts as nothing", "v1.1", "v1.a v1.9", -1);
    row("hexadecimal in the device", "v1.a", "v1.1", 0);
    row("the same in hexadecimal", "v1.a", "v1.a", -1);
    row("a device that can't say", "", "v1.0 v0.9", 1);
    row("large numbers", "v299.1", "v300.0", 0);
}

void FirmwareUpdateTest::images()
{
    QFETCH(QString, device);
    QFETCH(QStringList, files);
    QFETCH(int, selected);
    const QTemporaryDir folder;
    QList<QByteArray> images;
    for (const QString &version : qAsConst(files)) {
        const QStringList numbers = version.mid(1).split('.');
        const unsigned word = numbers[0].toUInt() << 8 | numbers[1].toUInt(nullptr, 16);
        images << imageHeader(210, 18, 1, "NAME", word) + QByteArray(50, char('a' + images.size()));
        QCOMPARE(FirmwareImages::versionText(word), version);
        write(folder.filePath(QStringLiteral("%1.bin").arg(images.size())), images.last());
    }
    const FirmwareImages::Request request{210, QStringLiteral("NAME"), 18, 1};
    QList<QByteArray> found{"what was selected before"};
    QCOMPARE(FirmwareImages::FindImage(request, device, found, folder.path()), selected >= 0);
    QCOMPARE(found, selected < 0 ? QList<QByteArray>() : QList<QByteArray>{images[selected]});
    QCOMPARE(FirmwareImages::CheckUpdate(request, device, folder.path()), selected >= 0 && !device.isEmpty());
}

void FirmwareUpdateTest::fitting_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("fits");
    const QString longest(64, 'N'); // fills its field, without a zero behind it
    QTest::newRow("as asked for") << imageHeader(211, 18, 2, qPrintable(longest), 1) << true;
    QTest::newRow("target") << imageHeader(210, 18, 2, qPrintable(longest), 1) << false;
    QTest::newRow("company") << imageHeader(211, 19, 2, qPrintable(longest), 1) << false;
    QTest::newRow("model") << imageHeader(211, 18, 1, qPrintable(longest), 1) << false;
    QTest::newRow("the name's beginning") << imageHeader(211, 18, 2, "NNNN", 1) << false;
    QTest::newRow("too short") << imageHeader(211, 18, 2, qPrintable(longest), 1).left(727) << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void FirmwareUpdateTest::fitting()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, fits);
    const QTemporaryDir folder;
    write(folder.filePath("1.bin"), file);
    // None of these is an image, and none keeps the search from the one that is.
    QVERIFY(QDir(folder.path()).mkdir("2.bin"));
    QVERIFY(QFile::link(folder.filePath("gone"), folder.filePath("3.bin")));
    write(folder.filePath("4.bin"), imageHeader(211, 18, 2, qPrintable(QString(64, 'N')), 9));
    QVERIFY(QFile::resize(folder.filePath("4.bin"), FirmwareImages::largestFile + 1));
    QList<QByteArray> found;
    FirmwareImages::Request request{211, QString(64, 'N'), 18, 2};
    QCOMPARE(FirmwareImages::FindImage(request, {}, found, folder.path()), fits);
    QCOMPARE(FirmwareImages::CheckUpdate(request, "v0.0", folder.path()), fits);
    request.modelName.clear();
    QVERIFY(!FirmwareImages::FindImage(request, {}, found, folder.path()) && found.isEmpty());
}

HALVARION_TEST_MAIN(FirmwareUpdateTest)
#include "tst_firmwareupdate.moc"
