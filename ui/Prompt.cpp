#include "ui/Prompt.h"

#include "app/hub/PostMsg.h"
#include "platform/KeyboardFocus.h"
#include "platform/WindowSystem.h"
#include "productdata/LanguageFile.h"
#include "productdata/Theme.h"
#include "productdata/UserSettings.h"
#include "ui/FittedText.h"
#include "ui/PromptShade.h"
#include "ui/WordLabel.h"

#include <QApplication>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QToolButton>
#include <QWindow>

#include <utility>

namespace {

constexpr auto promptFlags = Qt::SubWindow | Qt::BypassWindowManagerHint | Qt::FramelessWindowHint |
                             Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint;
constexpr QRect closePlace{275, 5, 20, 20};
constexpr qreal fontPoints = 11;
/** Pixels that the text keeps from the prompt's edges. */
constexpr int textMargin = 14;

QFont promptFont() { return QFont(QStringLiteral("微软雅黑"), int(fontPoints)); }

QToolButton *makeButton(const PromptButton &description, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1String(description.objectName));
    button->setGeometry(description.geometry);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setFont(promptFont());
    return button;
}

bool isReturn(const QKeyEvent *event) { return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter; }

} // namespace

Prompt::Prompt(const PromptDescription &description, const char *element)
    : section(QLatin1String(description.section)), labelElement(QLatin1String(element)), pictureFrame(new QFrame(this)),
      textLabel(new WordLabel(pictureFrame))
{
    setWindowFlags(promptFlags);
    // A compositor neither hands the keyboard to a window that bypasses it nor lets that take it.
    if (!platform::windowsRuleThemselves())
        setWindowFlag(Qt::BypassWindowManagerHint, false);
    // The last prompt to close while the main window is in the tray is no reason to end the program.
    setAttribute(Qt::WA_QuitOnClose, false);
    setFixedSize(description.size);
    pictureFrame->setObjectName(QLatin1String(description.frame));
    pictureFrame->setGeometry(QRect(QPoint(), description.size));

    textLabel->setObjectName(QStringLiteral("label"));
    textLabel->setGeometry(description.label);
    textLabel->setFont(promptFont());
    textLabel->setAlignment(Qt::AlignCenter);
    textLabel->setWordWrap(true);
    textLabel->setTextFormat(Qt::PlainText);

    addButtons(description);
    setStyles(description);
    FittedText::set(textLabel, QString::fromUtf8(description.text), fontPoints, textMargin);

    connect(postMsg(), &PostMsg::SigChangeLanguage, this, &Prompt::SlotChangeLanguage);
    loadLanguage();
}

Prompt::~Prompt()
{
    // The base class hides what still shows, but then it is too late to give the keyboard back.
    Prompt::setVisible(false);
}

void Prompt::addButtons(const PromptDescription &description)
{
    for (const PromptButton &each : description.buttons) {
        if (!each.objectName)
            continue;
        QToolButton *made = makeButton(each, pictureFrame);
        FittedText::set(made, QString::fromUtf8(each.text), fontPoints);
        if (!confirmButton)
            confirmButton = made;
    }
    closeButton = makeButton({"CloseButton", "", closePlace}, pictureFrame);
    closeButton->setAutoRaise(true);
    connect(closeButton, &QToolButton::clicked, this, &Prompt::on_CloseButton_clicked);
    (confirmButton ? confirmButton : closeButton)->setFocus();
}

void Prompt::setStyles(const PromptDescription &description)
{
    const QString folder = Theme::pictureFolder("WarningDialog");
    pictureFrame->setStyleSheet(
        Theme::frameBackground(folder, pictureFrame->objectName(), QLatin1String(description.background)));
    textLabel->setStyleSheet(Theme::label());
    closeButton->setStyleSheet(Theme::toolButton(folder, QStringLiteral("Close.png"), QStringLiteral("CloseHover.png"),
                                                 QStringLiteral("CloseClick.png")) +
                               Theme::toolButtonFocus(folder, QStringLiteral("CloseHover.png")));
    for (const PromptButton &each : description.buttons) {
        if (each.objectName)
            button(each.objectName)
                ->setStyleSheet(Theme::textButton(folder, QStringLiteral("Confirm.png"),
                                                  QStringLiteral("ConfirmHover.png"),
                                                  QStringLiteral("ConfirmClick.png")));
    }
}

QToolButton *Prompt::button(const char *objectName) const
{
    return pictureFrame->findChild<QToolButton *>(QLatin1String(objectName));
}

void Prompt::offerClosing(bool isOffered) { closeButton->setVisible(isOffered); }

void Prompt::centreOn(const QWidget *caller, QPoint offset)
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    const QRect middle = primary ? primary->availableGeometry() : QRect();
    const QRect place = caller ? QRect(caller->mapToGlobal(QPoint()), caller->size()) : middle;
    QRect target(place.topLeft() + QPoint(place.width() - width(), place.height() - height()) / 2 + offset, size());
    // A caller that is minimised may lie outside every screen; there nobody could answer.
    if (primary && !primary->virtualGeometry().intersects(target))
        target.moveCenter(middle.center());
    move(target.topLeft());
    if (!platform::windowsRuleThemselves())
        leavePlaceToCompositor(caller);
}

/** It puts a window that belongs to another one over it, most of them in its middle, and gives it the keyboard. */
void Prompt::leavePlaceToCompositor(const QWidget *caller)
{
    static bool isSaid = false;
    if (!std::exchange(isSaid, true))
        qWarning("Wayland lets no window choose its place: the compositor places the prompts");
    create(); // there is no window before
    windowHandle()->setTransientParent(caller ? caller->window()->windowHandle() : nullptr);
}

void Prompt::SlotChangeLanguage(int index)
{
    LanguageFile::readSection(index, section,
                              [this](const QString &element, const QString &text) { applyText(element, text); });
}

void Prompt::loadLanguage() { SlotChangeLanguage(UserSettings::instance()->language()); }

void Prompt::applyText(const QString &element, const QString &text)
{
    if (element == labelElement) {
        FittedText::set(textLabel, text, fontPoints, textMargin);
    } else if (auto *named = findChild<QAbstractButton *>(element)) {
        FittedText::set(named, text, fontPoints);
    } else if (auto *other = findChild<QLabel *>(element); other && other != textLabel) {
        FittedText::set(other, text, fontPoints, 0);
    }
}

void Prompt::showElement(const char *element)
{
    labelElement = QLatin1String(element);
    loadLanguage();
}

void Prompt::showText(const QString &text)
{
    labelElement.clear();
    FittedText::set(textLabel, text, fontPoints, textMargin);
}

void Prompt::on_CloseButton_clicked() { reject(); }

bool Prompt::event(QEvent *event)
{
    // Return belongs to the button that has the keyboard, also where another one has it as its shortcut; and a Return
    // that is still held down from what opened the prompt answers nothing.
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (isReturn(key) && (key->isAutoRepeat() || qobject_cast<QToolButton *>(focusWidget()))) {
            event->accept();
            return true;
        }
    }
    return QDialog::event(event);
}

void Prompt::keyPressEvent(QKeyEvent *event)
{
    if (!isReturn(event)) {
        QDialog::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat())
        return;
    auto *chosen = qobject_cast<QToolButton *>(focusWidget());
    if (!chosen)
        chosen = confirmButton;
    if (chosen)
        chosen->click();
}

void Prompt::setVisible(bool visible)
{
    if (visible && !isVisible()) {
        formerFocusWindow = QGuiApplication::focusWindow();
        formerKeyboard = platform::keyboardFocus();
        keyboardWanted = true;
    } else if (!visible && isVisible()) {
        giveKeyboardBack();
    }
    QDialog::setVisible(visible);
    if (visible)
        PromptShade::raise(this);
    else
        PromptShade::lower(this);
}

void Prompt::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    // Only what is on the screen can have the keyboard, and it gets there after this event.
    windowHandle()->installEventFilter(this);
}

bool Prompt::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == windowHandle()) {
        const bool isShown = event->type() == QEvent::Expose && windowHandle()->isExposed();
        // The user clicks it after a turn to another program; no window manager makes that hand over the keyboard.
        const bool isClicked = event->type() == QEvent::MouseButtonPress && !isActiveWindow();
        if ((isShown && keyboardWanted) || isClicked) {
            keyboardWanted = false;
            takeKeyboard();
        }
    }
    return QDialog::eventFilter(watched, event);
}

void Prompt::takeKeyboard()
{
    if (!platform::windowsRuleThemselves())
        return; // the compositor gave it to the window when it put that on the screen
    activateWindow();
    platform::takeKeyboardFocus(winId());
}

void Prompt::giveKeyboardBack()
{
    keyboardWanted = false;
    // A prompt that opened over this one now answers to whom this one does.
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *each : windows) {
        auto *above = qobject_cast<Prompt *>(each);
        if (above && above != this && above->formerFocusWindow && above->formerFocusWindow == windowHandle()) {
            above->formerFocusWindow = formerFocusWindow;
            above->formerKeyboard = formerKeyboard;
        }
    }
    // Whoever took the keyboard since keeps it.
    if (!isActiveWindow() || !platform::windowsRuleThemselves())
        return;
    if (formerFocusWindow && formerFocusWindow->isVisible())
        formerFocusWindow->requestActivate();
    platform::takeKeyboardFocus(formerKeyboard);
}
