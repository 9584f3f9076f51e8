#pragma once

#include "app/DialogMain.h"
#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/SelectedDevice.h"
#include "support/VirtualMice.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <functional>
#include <map>

class Prompt;

/**
 * The program's windows in the test's process, and an eye on its prompts: which ones were shown, and what to do the
 * moment one shows. A prompt runs an event loop of its own, so a test can only act on it from in there.
 */
class Program : public QObject
{
    Q_OBJECT
public:
    Program();
    /** Ends it the way the program ends; a program that is over already is left alone. */
    ~Program() override;

    DialogMain *window() const { return top; }
    /** The widget of this object name on the page that shows; ends the test when it isn't there. */
    QWidget *find(const QString &objectName) const;
    template<typename Widget>
    Widget *find(const QString &objectName) const
    {
        return qobject_cast<Widget *>(find(objectName));
    }
    /** Clicks in the middle of a widget with the left mouse button. */
    void click(const QString &objectName) const;
    /** Clicks in the middle of that widget once the event loop is idle; for clicks that open a prompt. */
    void clickSoon(const QString &objectName) const;

    /** Number of pictures on the chooser. */
    int entryCount() const;
    bool isDeviceWindowShown() const;
    bool isConnected() const;
    /** Opens the device of a picture and waits until all pages hold its record and the wait prompt has gone. */
    bool connectEntry(int index);
    /** Name of the picture of the first device of this mouse's model, "q1" or "q2"; empty if it doesn't come up. */
    QString pictureOf(const QString &mouse) const;
    /** connectEntry() for the picture of that mouse, once the chooser shows it. */
    bool connectMouse(const QString &mouse);
    /** Goes back to the chooser. \return false if that doesn't show within the usual time. */
    bool goBack() const;

    /** Class names of the prompts shown since forgetPrompts(), in order. */
    const QStringList &shownPrompts() const { return prompts; }
    void forgetPrompts() { prompts.clear(); }
    /** The prompt of this class that shows, any with an empty name; null if there is none. */
    static Prompt *prompt(const QString &className = QString());
    static bool isPromptShown(const QString &className = QString()) { return prompt(className) != nullptr; }
    /** Clicks a button of the prompt of this class, if it shows still. */
    static void clickIn(const QString &promptClass, const QString &button);
    /** Leaves the prompt of this class by Escape, if it shows still. */
    static void dismiss(const QString &promptClass);
    /** Does something each time a prompt of this class has come up, some milliseconds after it. */
    void whenShown(const QString &className, std::function<void()> action);

    /** What the English file says in an element of a section. */
    static QString englishText(const char *section, const QString &element);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    /** Process-wide state as at the start of the process; for the next Program of the same test. */
    static void forgetDevice();

    DialogMain *top = nullptr;
    QStringList prompts;
    std::map<QString, std::function<void()>> actions;
};
