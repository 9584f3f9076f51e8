#include "productdata/ConfigStore.h"
#include "productdata/LanguageFile.h"
#include "productdata/ModelData.h"
#include "productdata/Theme.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "support/ProductCopy.h"
#include "support/TestHome.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

/** The readers of the data beside the executable and of the user's settings. */
class ProductDataTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void codedKeysAreDecodedAndOthersAreNot();
    void languageSection();
    void settingsSurviveAnotherReader();
    void damagedProduct_data();
    void damagedProduct();
    void probe();
};

void ProductDataTest::codedKeysAreDecodedAndOthersAreNot()
{
    const ModelData::UsbIds ids = ModelData::usbIds();
    QCOMPARE(ids.vid, QStringLiteral("F0A1"));
    QCOMPARE(ids.usbPids, QStringList({"0101", "0102", "01FE"}));
    QCOMPARE(ids.wireless4Pids, QStringList{"0204"});
    QCOMPARE(ModelData::companyId(), std::optional<int>(18));
    QCOMPARE(ConfigStore::instance()->value("Drive1", "Sensor"), QStringLiteral("3395"));
    QCOMPARE(ConfigStore::instance()->value("Drive2", "MID"), QStringLiteral("2"));
    QCOMPARE(ConfigStore::instance()->numberList("Drive1", "BatteryParam").size(), 21);
    QCOMPARE(ConfigStore::instance()->valueList("Drive7", "Sensor"), QStringList());
    QCOMPARE(ModelData::modelIndexOf(2), 1);
    QCOMPARE(ModelData::modelIndexOf(99), ModelData::deviceTotal());
    const QSettings file(QCoreApplication::applicationDirPath() + "/usersetting/Config.ini", QSettings::IniFormat);
    QCOMPARE(file.value("Option/VID").toString(), QStringLiteral("RjBBMQ=="));
    QCOMPARE(file.value("Option/DeviceTotal").toString(), QStringLiteral("2"));
}

void ProductDataTest::languageSection()
{
    // The second file has a Chinese name; an index that the list doesn't have is English.
    const std::pair<int, const char *> words[] = {{0, "OK"}, {1, "确定"}, {7, "OK"}, {-1, "OK"}};
    for (const auto &[index, word] : words) {
        QHash<QString, QString> texts;
        QVERIFY(LanguageFile::readSection(
            index, "SameMacro", [&](const QString &element, const QString &text) { texts.insert(element, text); }));
        QCOMPARE(texts.value("NewHong"), QString(word));
        QCOMPARE(texts.size(), 2); // nothing of another section
    }
}

void ProductDataTest::settingsSurviveAnotherReader()
{
    UserFolders::prepare();
    UserSettings *const settings = UserSettings::instance();
    QCOMPARE(settings->language(), 0);
    settings->setLanguage(4);
    settings->write("AutoStart", "Enable", QStringLiteral("да, 是"));
    QSettings file(UserFolders::settingsFile(), QSettings::IniFormat);
    file.setIniCodec("UTF-8");
    QCOMPARE(file.value("Language/Language").toString(), QStringLiteral("4"));
    QCOMPARE(settings->read("AutoStart", "Enable"), QStringLiteral("да, 是"));
    settings->remove("Language", "Language");
    QCOMPARE(settings->language(), 0);
}

// Damaged data beside the executable: a copy of this program is run in a folder of its own ---------------------------

/** What the copy prints of what it could read. */
void ProductDataTest::probe()
{
    if (!ProductCopy::isCopy())
        QSKIP("runs in the copies that damagedProduct makes");
    int texts = 0;
    const bool read =
        LanguageFile::readSection(0, "SameMacro", [&texts](const QString &, const QString &) { ++texts; });
    ProductCopy::tell(QStringLiteral("models %1 vid '%2' label %3 texts %4 %5")
                          .arg(ModelData::deviceTotal())
                          .arg(ModelData::usbIds().vid, Theme::rgb(Theme::Colour::LabelColor))
                          .arg(texts)
                          .arg(read ? "whole" : "damaged"));
}

void ProductDataTest::damagedProduct_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("told");
    const QString config = "usersetting/Config.ini";
    const QString english = "Language/0-English.xml";
    const QString usual = "models 2 vid 'F0A1' label 176,184,192 ";
    const QString nothing = "models 0 vid '' label 176,184,192 texts 2 whole";
    const auto row = [](const char *name, const QString &file, const QByteArray &content, const QString &told) {
        QTest::newRow(name) << file << content << told;
    };
    row("empty product file", config, " ", nothing);
    row("binary product file", config, QByteArray::fromHex("00ff5b4f0a80feff3d2c0d0a5b"), nothing);
    row("a colour with two numbers, a count that is none", config,
        "[Option]\nDeviceTotal=many\nVID=RjBBMQ==\nLabelColor=1,2\n",
        "models 0 vid 'F0A1' label 176,184,192 texts 2 whole");
    row("a colour out of range, a count far too high", config,
        "[Option]\nDeviceTotal=2000000000\nVID=%%%\nLabelColor=1,2,300\n",
        "models 64 vid '' label 176,184,192 texts 2 whole");
    row("wrong root", english, "<Labels><SameMacro><label>a</label></SameMacro></Labels>", usual + "texts 0 damaged");
    row("cut in the middle", english, "<Total><SameMacro><label>a</label><NewHong>b</NewHong></SameMacro><X><y>",
        usual + "texts 2 damaged");
    row("cut inside a text", english, "<Total><SameMacro><label>a</label><NewHong>b", usual + "texts 1 damaged");
    row("wrong encoding", english, "<Total><SameMacro><label>\xff\xfe\xe9</label></SameMacro></Total>",
        usual + "texts 0 damaged");
    row("unknown elements at any depth", english,
        "<Total><A><B><SameMacro/></B></A><SameMacro><label>a<i>b</i></label><Z><label/></Z></SameMacro></Total>",
        usual + "texts 2 whole");
}

void ProductDataTest::damagedProduct()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    ProductCopy copy;
    copy.replace(file, content);
    const ProductCopy::Result result = copy.run("probe");
    QCOMPARE(result.exitCode, 0);
    QTEST(result.told, "told");
}

HALVARION_TEST_MAIN(ProductDataTest)
#include "tst_productdata.moc"
