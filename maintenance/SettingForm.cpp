#include "maintenance/SettingForm.h"

#include "maintenance/Panel.h"
#include "ui/ComboStyle.h"
#include "ui/FormParts.h"
#include "ui/LanguageList.h"
#include "ui/MyButton.h"
#include "ui/MyConmboBox.h"
#include "ui/PageFont.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>

namespace {

// Places are pixels of the content, on a grid of 4. Two columns; the wide sections go over both.

constexpr QSize pageSize(883, 630);
constexpr int contentWidth = 880;
/** The page begins that far above the lower edge of the top bar, behind which nothing may scroll. */
constexpr int scrollTop = 8;
constexpr int panelLeft = 24;
constexpr int panelTop = 8;
constexpr int panelWidth = 834;

/** What differs between the page with and without the receiver's light. */
struct Extent
{
    int height;
    int panelHeight;
    QPoint companyPage;
    QPoint companyName;
};
constexpr Extent shortPage{630, 556, {710, 540}, {490, 560}};
constexpr Extent longPage{780, 716, {710, 700}, {490, 720}};

/** At the lower end of what the window shows of the page, whose last 20 px it cuts off. */
constexpr QRect versionPlace(panelLeft, 576, panelWidth, 22);

struct LabelPlace
{
    QLabel *SettingForm::*member = nullptr;
    const char *name = "";
    const char *text = "";
    QRect place;
};
constexpr LabelPlace labels[] = {
    {&SettingForm::label_2, "label_2", "语言", {64, 24, 340, 24}},
    {&SettingForm::label_3, "label_3", "设备信息", {480, 24, 360, 24}},
    {&SettingForm::label_4, "label_4", "接收器固件版本: ", {480, 60, 172, 24}},
    {&SettingForm::label_5, "label_5", "", {656, 60, 88, 24}},
    {&SettingForm::label_6, "label_6", "鼠标固件版本:", {480, 92, 172, 24}},
    {&SettingForm::label_7, "label_7", "", {656, 92, 88, 24}},
    {&SettingForm::label_8, "label_8", "配对工具", {64, 196, 340, 24}},
    {&SettingForm::label_9, "label_9", "其他", {480, 196, 360, 24}},
    {&SettingForm::label_10, "label_10", "开机自动启动", {504, 232, 336, 24}},
    {&SettingForm::label_11, "label_11", "高级设置", {64, 328, 776, 24}},
    {&SettingForm::label_12, "label_12", "TextLabel", {504, 124, 336, 20}},
    {&SettingForm::label_13, "label_13", "TextLabel", {504, 148, 336, 20}},
    {&SettingForm::label_14, "label_14", "选择接收器上的LED指示灯所传达的信息", {64, 444, 776, 24}},
};

struct TextPlace
{
    QTextEdit *SettingForm::*member = nullptr;
    const char *name = "";
    const char *text = "";
    QRect place;
};
constexpr TextPlace texts[] = {
    {&SettingForm::textEdit,
     "textEdit",
     "远距离模式（远距离模式下，距离会更远抗干扰能力更强，相应工作电流会加大，使用时间减少）",
     {92, 362, 744, 54}},
    {&SettingForm::textEdit_2, "textEdit_2", "", {92, 482, 744, 24}},
    {&SettingForm::textEdit_3, "textEdit_3", "", {92, 522, 744, 24}},
    {&SettingForm::textEdit_4, "textEdit_4", "", {92, 562, 744, 24}},
    {&SettingForm::NewLabel, "NewLabel", "", {490, 520, 212, 20}},
};

struct ButtonPlace
{
    QPushButton *SettingForm::*member = nullptr;
    const char *name = "";
    const char *text = "";
    QRect place;
};
constexpr ButtonPlace buttons[] = {
    {&SettingForm::Receive, "Receive", "up-to-date", {748, 60, 90, 24}},
    {&SettingForm::Mouse, "Mouse", "检查更新", {748, 92, 90, 24}},
    {&SettingForm::pushButton, "pushButton", "Windows鼠标属性", {512, 266, 200, 28}},
    {&SettingForm::pushButton_2, "pushButton_2", "配对", {64, 232, 152, 28}},
    {&SettingForm::pushButton_3, "pushButton_3", "", {710, 540, 146, 22}},
    {&SettingForm::pushButton_4, "pushButton_4", "", {490, 560, 212, 22}},
};

struct IconPlace
{
    QToolButton *SettingForm::*member = nullptr;
    const char *name = "";
    QRect place;
};
constexpr IconPlace icons[] = {
    {&SettingForm::toolButton, "toolButton", {480, 268, 24, 24}},
    {&SettingForm::toolButton_2, "toolButton_2", {480, 124, 20, 20}},
    {&SettingForm::toolButton_3, "toolButton_3", {480, 148, 20, 20}},
};

/** The marks of the headings. */
constexpr QPoint titlePlaces[] = {{40, 26}, {456, 26}, {40, 198}, {456, 198}, {40, 330}, {40, 446}};
constexpr QSize titleSize(20, 20);
constexpr int firstTitle = 2; ///< the number in the name of the first

constexpr QRect languagePlace(64, 58, 170, 30);
constexpr QRect startPlace(480, 236, 16, 16);
constexpr QRect longRangePlace(64, 365, 16, 16);
constexpr const char *lightNames[SettingForm::lightModeCount] = {"ReUntil", "ReUntil_2", "ReUntil_3"};
constexpr QRect firstLightPlace(64, 485, 16, 16);
constexpr int lightPitch = 40;

/** Hairlines between the sections. The last two belong to the sections below them. */
constexpr QRect rules[] = {{48, 180, 786, 1}, {48, 312, 786, 1}, {48, 424, 786, 1}};

/** Space pairs the mouse wherever it is pressed, so nothing that it would trigger takes the keyboard. */
template<typename Button>
Button *addButton(QWidget *parent, const char *name, const QRect &place)
{
    Button *const button = addPlaced<Button>(parent, name, place);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

void SettingForm::build(QWidget *page)
{
    page->setFixedSize(pageSize);
    page->setFont(PageFont::font());
    buildScrollArea(page);
    buildLabels();
    buildTexts();
    buildButtons();
    buildChoices();
    QVector<QFrame *> lines;
    for (const QRect &rule : rules)
        lines += addPlaced<QFrame>(content, "rule", rule);
    longRangeSection = {titles[4], label_11, checkBox_2, textEdit, lines[1]};
    lightSection = {titles[5], label_14, textEdit_2, textEdit_3, textEdit_4, lines[2]};
    for (QRadioButton *mode : lightModes)
        lightSection += mode;
    showLongRange(false);
    showLight(false);
    label->raise();
}

void SettingForm::buildScrollArea(QWidget *page)
{
    scrollArea = addPlaced<QScrollArea>(page, "scrollArea", {{0, scrollTop}, QSize(contentWidth, pageSize.height())});
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setFocusPolicy(Qt::NoFocus);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    content = new QFrame;
    content->setObjectName(QStringLiteral("SettingPage"));
    content->resize(contentWidth, shortPage.height);
    scrollArea->setWidget(content);
    // Both fill themselves otherwise, and the window's ground is to be seen through the page.
    scrollArea->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    background = addPlaced<Panel>(content, "background", {panelLeft, panelTop, panelWidth, shortPage.panelHeight});
}

void SettingForm::buildLabels()
{
    for (const LabelPlace &entry : labels) {
        auto *const made = addPlaced<QLabel>(content, entry.name, entry.place);
        made->setText(QString::fromUtf8(entry.text));
        this->*entry.member = made;
    }
    for (QLabel *message : {label_12, label_13})
        message->setWordWrap(true);
    label = addPlaced<QLabel>(content, "label", versionPlace);
    label->setText(QStringLiteral("驱动版本: v" HALVARION_VERSION));
    label->setIndent(24); // not as padding: FittedText sets margins of its own over one of the style sheet
    for (int index = 0; index < int(std::size(titlePlaces)); ++index) {
        const QByteArray name = "TitleButton_" + QByteArray::number(index + firstTitle);
        titles += addButton<QToolButton>(content, name.constData(), {titlePlaces[index], titleSize});
    }
}

void SettingForm::buildTexts()
{
    for (const TextPlace &entry : texts) {
        auto *const made = addPlaced<QTextEdit>(content, entry.name, entry.place);
        made->setFrameShape(QFrame::NoFrame);
        made->setReadOnly(true);
        made->setTextInteractionFlags(Qt::NoTextInteraction);
        made->setFocusPolicy(Qt::NoFocus);
        made->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        made->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        made->viewport()->setCursor(Qt::ArrowCursor);
        made->viewport()->setAutoFillBackground(false);
        made->document()->setDocumentMargin(0);
        made->setPlainText(QString::fromUtf8(entry.text));
        this->*entry.member = made;
    }
}

void SettingForm::buildButtons()
{
    for (const ButtonPlace &entry : buttons) {
        auto *const made = addButton<MyButton>(content, entry.name, entry.place);
        made->setText(QString::fromUtf8(entry.text));
        this->*entry.member = made;
    }
    for (const IconPlace &entry : icons)
        this->*entry.member = addButton<QToolButton>(content, entry.name, entry.place);
}

void SettingForm::buildChoices()
{
    comboBox = addPlaced<MyConmboBox>(content, "comboBox", languagePlace);
    comboBox->setFocusPolicy(Qt::NoFocus); // as the buttons
    styleCombo(comboBox, "FormSetting");
    fillLanguageList(*comboBox);
    checkBox = addButton<QCheckBox>(content, "checkBox", startPlace);
    checkBox_2 = addButton<QCheckBox>(content, "checkBox_2", longRangePlace);
    auto *const group = new QButtonGroup(content);
    for (int mode = 0; mode < lightModeCount; ++mode) {
        auto *const button =
            addButton<QRadioButton>(content, lightNames[mode], firstLightPlace.translated(0, mode * lightPitch));
        group->addButton(button);
        lightModes[std::size_t(mode)] = button;
    }
}

void SettingForm::showLongRange(bool shown)
{
    for (QWidget *widget : qAsConst(longRangeSection))
        widget->setVisible(shown);
}

void SettingForm::showLight(bool shown)
{
    for (QWidget *widget : qAsConst(lightSection))
        widget->setVisible(shown);
    const Extent &extent = shown ? longPage : shortPage;
    content->resize(contentWidth, extent.height);
    background->resize(panelWidth, extent.panelHeight);
    pushButton_3->move(extent.companyPage);
    pushButton_4->move(extent.companyName);
}

void SettingForm::followScroll(int scrolled) { label->move(versionPlace.topLeft() + QPoint(0, scrolled)); }
