#include "productdata/ConfigStore.h"
#include "productdata/LanguageFile.h"
#include "productdata/ModelData.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
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

HALVARION_TEST_MAIN(ProductDataTest)
#include "tst_productdata.moc"
