#include "maintenance/CompanyPage.h"
#include "maintenance/FormSetting.h"
#include "productdata/LanguageFile.h"
#include "ui/FittedText.h"
#include "ui/PageFont.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

namespace {

constexpr qreal headingSize = 11;
constexpr qreal textSize = PageFont::points;

struct LabelKey
{
    const char *key; ///< element of the language file, and name of the label
    QLabel *SettingForm::*label;
    qreal points;
};
constexpr LabelKey labelKeys[] = {
    {"label_2", &SettingForm::label_2, headingSize},   {"label_3", &SettingForm::label_3, headingSize},
    {"label_4", &SettingForm::label_4, textSize},      {"label_6", &SettingForm::label_6, textSize},
    {"label_8", &SettingForm::label_8, headingSize},   {"label_9", &SettingForm::label_9, headingSize},
    {"label_10", &SettingForm::label_10, textSize},    {"label_11", &SettingForm::label_11, headingSize},
    {"label_14", &SettingForm::label_14, headingSize}, {"label", &SettingForm::label, PageFont::points - 1},
};

struct ButtonKey
{
    const char *key;
    QPushButton *SettingForm::*button;
};
constexpr ButtonKey buttonKeys[] = {
    {"pushButton", &SettingForm::pushButton},
    {"pushButton_2", &SettingForm::pushButton_2},
    {"Receive", &SettingForm::Receive},
    {"Mouse", &SettingForm::Mouse},
};

struct TextKey
{
    const char *key;
    QTextEdit *SettingForm::*text;
};
constexpr TextKey textKeys[] = {
    {"textEdit", &SettingForm::textEdit},     {"textEdit_2", &SettingForm::textEdit_2},
    {"textEdit_3", &SettingForm::textEdit_3}, {"textEdit_4", &SettingForm::textEdit_4},
    {"NewLabel", &SettingForm::NewLabel},
};

} // namespace

void FormSetting::SlotChangeLanguage(int index)
{
    LanguageFile::readSection(index, QStringLiteral("FormSetting"),
                              [this](const QString &element, const QString &text) { applyText(element, text); });
    for (const FirmwareRun::Device device : {FirmwareRun::Receiver, FirmwareRun::Mouse})
        showMessage(device);
    showCompanyPage(index);
}

void FormSetting::applyText(const QString &element, const QString &text)
{
    texts[element] = text;
    for (const LabelKey &entry : labelKeys) {
        if (element == QLatin1String(entry.key))
            FittedText::set(form.*entry.label, text, entry.points, 0);
    }
    for (const ButtonKey &entry : buttonKeys) {
        if (element == QLatin1String(entry.key))
            FittedText::set(form.*entry.button, text, textSize);
    }
    for (const TextKey &entry : textKeys) {
        if (element == QLatin1String(entry.key))
            (form.*entry.text)->setPlainText(text);
    }
    if (element == QLatin1String("label_10"))
        form.checkBox->setAccessibleName(text);
    else if (element == QLatin1String("textEdit"))
        form.checkBox_2->setAccessibleName(text);
}

void FormSetting::showCompanyPage(int language)
{
    const CompanyPage page = readCompanyPage(language);
    companyAddress = page.address;
    FittedText::set(form.pushButton_4, page.name, textSize);
    FittedText::set(form.pushButton_3, page.address, textSize);
    form.pushButton_3->setVisible(!page.address.isEmpty());
}
