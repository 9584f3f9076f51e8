#include "maintenance/Match.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/ReportLink.h"
#include "maintenance/PairingState.h"
#include "portwire/portwire.h"
#include "productdata/ModelData.h"
#include "productdata/Theme.h"
#include "ui/FittedText.h"
#include "ui/LineBreaks.h"
#include "ui/MyButton.h"
#include "ui/PageFont.h"

#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QTextEdit>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr PromptDescription description{"MatchA",           "Match",    "无线模式下,才能进入配对",      {},
                                        {24, 48, 410, 124}, {458, 242}, "../Setting/BackSecondPage.png"};

constexpr QRect closePlace(430, 8, 20, 20);
constexpr QRect textPlace(32, 40, 394, 136);
constexpr int textMargin = 5; // a little more than what a text edit keeps free on each side
constexpr QRect buttonPlace(139, 188, 180, 36);
constexpr QRect ornamentPlaces[] = {{75, 182, 48, 48}, {335, 182, 48, 48}};

// In ms.
constexpr int usbInterval = 100;
constexpr int pairInterval = 1000;
constexpr int textInterval = 500;

/** The dots behind the text while a pairing runs; the last step shows nothing new. */
constexpr const char *dots[] = {"", ".", "..", "..."};
constexpr int stepCount = 5;

/** As many as a desk can hold. */
constexpr int mostReceivers = 5;

constexpr qreal buttonPoints = 11;

} // namespace

Match::Match(const DeviceAllInfo &receiver)
    : Prompt(description), PairPath(receiver.Path.toUtf8()), PairVid(receiver.Vid.toLatin1()),
      PairPid(receiver.Pid.toLatin1()), PairCorded(receiver.IsCorded), PairCid(ModelData::companyId().value_or(-1))
{
    PairingState::reset();
    buildForm();
    setStyles();
    connect(&UsbTimer, &QTimer::timeout, this, &Match::onUSBTimeupDestroy);
    connect(&PairTimer, &QTimer::timeout, this, &Match::onPairTimeupDestroy);
    connect(&TextTimer, &QTimer::timeout, this, &Match::onTextTimeupDestroy);
    connect(postMsg(), &PostMsg::SigTimerStop, this, &Match::SlotStopTimer);
    connect(postMsg(), &PostMsg::SigButtonEnable, this, &Match::SlotButtonenable);
    loadLanguage();
    onUSBTimeupDestroy();
    UsbTimer.start(Wait::scaled(usbInterval));
}

/** The end of the program closes no dialog, it only ends the event loop of this one. */
Match::~Match() { PairingState::reset(); }

void Match::buildForm()
{
    setAttribute(Qt::WA_TranslucentBackground);
    for (int number = 2; number < 2 + int(std::size(ornamentPlaces)); ++number) {
        auto *const ornament = new QToolButton(frame());
        ornament->setObjectName(QStringLiteral("toolButton_%1").arg(number));
        ornament->setGeometry(ornamentPlaces[number - 2]);
        ornament->setAttribute(Qt::WA_TransparentForMouseEvents);
        ornament->setFocusPolicy(Qt::NoFocus);
    }
    textEdit = new QTextEdit(frame());
    textEdit->setObjectName(QStringLiteral("textEdit"));
    textEdit->setGeometry(textPlace);
    textEdit->setFont(PageFont::font());
    textEdit->setTextInteractionFlags(Qt::NoTextInteraction);
    textEdit->setFocusPolicy(Qt::NoFocus);
    textEdit->viewport()->setCursor(Qt::ArrowCursor);
    textEdit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    textEdit->setPlainText(QStringLiteral("请让鼠标进入配对状态(同时按住左中右键3秒,直至对码指示灯快闪),并靠近接收器,"
                                          "点击\"开始配对\"或按键盘的空格键"));
    MatchButton = new MyButton(frame());
    MatchButton->setObjectName(QStringLiteral("MatchButton"));
    MatchButton->setGeometry(buttonPlace);
    MatchButton->setShortcut(Qt::Key_Space);
    MatchButton->setFocusPolicy(Qt::NoFocus);
    MatchButton->setAutoDefault(false);
    startText = QStringLiteral("开始配对");
    connect(MatchButton, &QPushButton::clicked, this, &Match::on_MatchButton_clicked);
    findChild<QToolButton *>(QStringLiteral("CloseButton"))->setGeometry(closePlace);
    label()->hide();
}

void Match::setStyles()
{
    const QString pictures = Theme::pictureFolder("Setting");
    auto *const close = findChild<QToolButton *>(QStringLiteral("CloseButton"));
    close->setStyleSheet(Theme::toolButton(pictures, QStringLiteral("CloseSecondPage.png"),
                                           QStringLiteral("CloseSecondPageHover.png"),
                                           QStringLiteral("CloseSecondPageClick.png")));
    // Return would press it, and Space must always start.
    close->setFocusPolicy(Qt::NoFocus);
    close->clearFocus();
    textEdit->setStyleSheet(QStringLiteral("QTextEdit{background: transparent;border: 0px;color: rgb(%1);}")
                                .arg(Theme::rgb(Theme::Colour::LabelColor)));
    for (const char *name : {"toolButton_2", "toolButton_3"})
        findChild<QToolButton *>(QLatin1String(name))
            ->setStyleSheet(QStringLiteral("QToolButton{border: 0px;background: url(%1Picture.png) no-repeat center;}")
                                .arg(pictures));
}

/** What the button says and looks like, in the order of PairingState::State. */
struct Match::StateText
{
    const char *element; ///< of the language file
    QString Match::*text;
    const char *picture;
    const char *hover;
};

const Match::StateText Match::stateTexts[] = {
    {"MatchButton", &Match::startText, "Pair", "PairHover"},
    {"Matching", &Match::Matching, "Pair", "PairHover"},
    {"MatchSuccess", &Match::MatchSuccess, "PairSuccess", "PairSuccess"},
    {"MatchFail", &Match::MatchFail, "PairFail", "PairFail"},
};

void Match::applyText(const QString &element, const QString &text)
{
    if (element == QLatin1String("textEdit")) {
        if (textEdit)
            textEdit->setPlainText(
                LineBreaks::inWords(text, textEdit->fontMetrics(), textPlace.width() - 2 * textMargin));
        return;
    }
    for (const StateText &each : stateTexts) {
        if (element != QLatin1String(each.element))
            continue;
        this->*each.text = text;
        if (MatchButton)
            showState();
        return;
    }
    Prompt::applyText(element, text);
}

/** Text and picture of the button. */
void Match::showState()
{
    const StateText &now = stateTexts[PairingState::state()];
    const QString picture = QLatin1String(now.picture) + QStringLiteral(".png");
    const QString hover = QLatin1String(now.hover) + QStringLiteral(".png");
    const QString pictures = Theme::pictureFolder("Setting");
    // Black letters need a light face.
    MatchButton->setStyleSheet(Theme::pushButton(pictures, picture, hover, picture) +
                               QStringLiteral("QPushButton:disabled{color: black;border-image: none;border: 0px;"
                                              "border-radius: 4px;background: rgba(%1,150);}")
                                   .arg(Theme::rgb(Theme::Colour::LabelColor)));
    FittedText::set(MatchButton, this->*now.text, buttonPoints);
    // A text with an ampersand would take the shortcut away.
    MatchButton->setShortcut(Qt::Key_Space);
}

void Match::on_MatchButton_clicked()
{
    if (PairingState::state() == PairingState::Success || !PairAllowed || PairCid < 0)
        return;
    const bool isNew = PairingState::begin();
    PairTextStep = 0;
    TextTimer.start(Wait::scaled(textInterval));
    showState();
    if (isNew) {
        hasStarted = true;
        PairTimer.start(Wait::scaled(pairInterval));
        ReportLink::start(PairPath, PairingState::onReport);
        PairingState::listen();
    }
    UsbServer_EnterDonglePairOnlyCid(std::uint8_t(PairCid));
}

bool Match::event(QEvent *event)
{
    // The Space that opened the dialog may still be held down, and one that is held asks once.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *const key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Space && key->isAutoRepeat()) {
            event->accept();
            return true;
        }
    }
    return Prompt::event(event);
}

void Match::onUSBTimeupDestroy()
{
    if (PairingState::isRunning())
        return;
    PairAllowed = !PairCorded;
    label()->setVisible(PairCorded);
    textEdit->setHidden(PairCorded);
    MatchButton->setEnabled(PairAllowed);
}

void Match::onPairTimeupDestroy()
{
    UsbServer_ReadDonglePairStatus();
    int count = mostReceivers;
    const char *const *const paths =
        UsbFinderC_FindHidDevicesByDefaultDeviceId(PairVid.constData(), PairPid.constData(), &count);
    if (std::any_of(paths, paths + count, [this](const char *path) { return PairPath == path; }))
        return;
    if (PairingState::end(PairingState::Failed, true)) {
        SlotStopTimer();
        showState();
    }
}

void Match::onTextTimeupDestroy()
{
    if (PairTextStep < int(std::size(dots)))
        FittedText::set(MatchButton, Matching + QLatin1String(dots[PairTextStep]), buttonPoints);
    PairTextStep = (PairTextStep + 1) % stepCount;
}

void Match::SlotStopTimer()
{
    if (PairingState::isRunning())
        return; // the user has started the next one before this was told
    PairTimer.stop();
    TextTimer.stop();
}

void Match::SlotButtonenable(int index)
{
    showState();
    if (index == 1 && PairingState::state() == PairingState::Success)
        MatchButton->setEnabled(false);
}

void Match::on_CloseButton_clicked() { WindowClosedSet(); }

void Match::WindowClosedSet()
{
    if (!PairingState::isRunning())
        reject();
}

/** Every way out leads here, Escape in the middle of a pairing too. */
void Match::done(int result)
{
    for (QTimer *timer : {&UsbTimer, &PairTimer, &TextTimer})
        timer->stop();
    // The link leads on to the callback until the opener takes it back; what still arrives finds no pairing.
    PairingState::reset();
    Prompt::done(result);
}
