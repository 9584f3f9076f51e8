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
    QCOMPARE(LanguageFile::path(7) + LanguageFile::path(-1), LanguageFile::path(0) + LanguageFile::path(0));
    QCOMPARE(ModelData::modelIndexOf(99), ModelData::deviceTotal());
    const QSettings file(QCoreApplication::applicationDirPath() + "/usersetting/Config.ini", QSettings::IniFormat);
    QCOMPARE(file.value("Option/VID").toString(), QStringLiteral("RjBBMQ=="));
    QCOMPARE(file.value("Option/DeviceTotal").toString(), QStringLiteral("2"));
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
    row("a colour with two numbers, a count that is none", config,
        "[Option]\nDeviceTotal=many\nVID=RjBBMQ==\nLabelColor=1,2\n",
        "models 0 vid 'F0A1' label 176,184,192 texts 2 whole");
    row("a colour out of range, a count far too high", config,
        "[Option]\nDeviceTotal=2000000000\nVID=%%%\nLabelColor=1,2,300\n",
        "models 64 vid '' label 176,184,192 texts 2 whole");
    row("cut inside a text", english, "<Total><SameMacro><label>a</label><NewHong>b", usual + "texts 1 damaged");
    row("wrong encoding", english, "<Total><SameMacro><label>\xff\xfe\xe9</label></SameMacro></Total>",
        usual + "texts 0 damaged");
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
