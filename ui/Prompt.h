#pragma once

#include <QDialog>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QString>

#include <cstdint>

class QFrame;
class QLabel;
class QToolButton;
class QWindow;

/** A button of a prompt. Its object name is also its element in the language files. */
struct PromptButton
{
    const char *objectName = nullptr;
    const char *text = nullptr; ///< UTF-8; shown until a language file says otherwise
    QRect geometry;
};

/** What tells one prompt from another. */
struct PromptDescription
{
    const char *frame = "";    ///< object name of the frame
    const char *section = "";  ///< of the language files
    const char *text = "";     ///< of `label`, UTF-8; shown until a language file says otherwise
    PromptButton buttons[2]{}; ///< the confirm button, then the one that refuses; none without an object name
    QRect label{0, 30, 301, 71};
    QSize size{300, 140};
    const char *background = "BackGround.png";
};

/** Usual places of the buttons: one alone, or two side by side. */
namespace PromptPlace {
constexpr QRect single{100, 110, 90, 24};
constexpr QRect left{45, 110, 90, 24};
constexpr QRect right{165, 110, 90, 24};
} // namespace PromptPlace

/**
 * A small frameless modal window that tells the user one thing: a picture frame, a text, a close button and at most two
 * buttons, placed and filled from a description.
 *
 * A caller makes it on the stack, places it with centreOn(), runs exec() and asks confirmed(). It has no Qt parent: its
 * window type would have it drawn inside one. No window manager cares for it, so it takes the keyboard itself
 * when it shows, and gives it back when it closes. Meanwhile the windows behind it are dim. Return confirms, Escape
 * refuses.
 */
class Prompt : public QDialog
{
    Q_OBJECT
public:
    ~Prompt() override;

    /**
     * Moves it to the middle of the caller, then by `offset`; to the middle of the screen without a caller. Under
     * Wayland it is only said to belong to the caller, and stands where the compositor puts it.
     */
    void centreOn(const QWidget *caller, QPoint offset = {});

    /** True if it was left by its confirm button. False until then, and after every other way out. */
    bool confirmed() const { return result() == Accepted; }

    void setVisible(bool visible) override;

public Q_SLOTS:
    /** Takes the texts of a language; see LanguageFile. What the file doesn't hold stays as it was. */
    void SlotChangeLanguage(int index);
    virtual void on_CloseButton_clicked();

protected:
    /** `element` is the language element that `label` shows, where a section holds several texts for it. */
    explicit Prompt(const PromptDescription &description, const char *element = "label");

    /** Shows the text of another language element in `label` from now on. */
    void showElement(const char *element);
    /** Shows a given text in `label` from now on, whatever the language becomes. */
    void showText(const QString &text);

    /**
     * Gives a text of the language file to the widget whose object name the element is. Called for each element; the
     * base knows labels and buttons. A subclass that adds widgets calls loadLanguage() when they stand.
     */
    virtual void applyText(const QString &element, const QString &text);
    /** Takes the texts of the user's language. */
    void loadLanguage();

    /** One of the described buttons; null if there is none of that name. */
    QToolButton *button(const char *objectName) const;
    /** Takes the close button away while it would do nothing, and brings it back. */
    void offerClosing(bool isOffered);
    QFrame *frame() const { return pictureFrame; }
    QLabel *label() const { return textLabel; }

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void addButtons(const PromptDescription &description);
    void setStyles(const PromptDescription &description);
    void leavePlaceToCompositor(const QWidget *caller);
    void takeKeyboard();
    void giveKeyboardBack();

    QString section;
    QString labelElement;
    QFrame *pictureFrame;
    QLabel *textLabel;
    QToolButton *closeButton = nullptr;
    QToolButton *confirmButton = nullptr;

    bool keyboardWanted = false;         ///< from showing until the window is on the screen
    std::uintptr_t formerKeyboard = 0;   ///< the system's window that had the keyboard before
    QPointer<QWindow> formerFocusWindow; ///< the same as a window of this program, if it is one
};
