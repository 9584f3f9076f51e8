#include "support/Program.h"

#include "app/ChooserList.h"
#include "app/Ending.h"
#include "app/Selection.h"
#include "app/TextSetup.h"
#include "app/hub/Wait.h"
#include "devicelink/Worker.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserFolders.h"
#include "ui/Prompt.h"

#include <QEvent>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QStackedWidget>

#include <algorithm>
#include <utility>

Program::Program()
{
    QApplication::setQuitOnLastWindowClosed(false);
    setUpFonts();
    setUpSelection();
    UserFolders::prepare();
    qApp->installEventFilter(this);
    top = new DialogMain;
    top->show();
    QCoreApplication::processEvents();
}

Program::~Program()
{
    actions.clear();
    if (top)
        Ending::finish(top);
    qApp->removeEventFilter(this);
    Wait::setEnding(false);
    forgetDevice();
}

void Program::forgetDevice()
{
    for (std::atomic<bool> *flag :
         {&DeviceWindowOpen, &DeviceEntered, &WindowAway, &DeviceOnline, &PreviousOnline, &LinkUp, &OfflineWaiting,
          &ReconnectRequested, &RereadPending, &BulkUpdateActive, &DeviceWritesEnabled, &MacroRecording,
          &SensorUiUpdating, &LightUiUpdating, &ButtonUiUpdating, &UpdateRunning, &FirmwareUnderWay,
          &MouseUpdateAvailable, &DongleUpdateAvailable})
        *flag = false;
    HotplugWatchEnabled = true;
    clearPagesLoaded();
    SelectInfo().set({});
    DevicePath().set("a");
    LoadFileName().set({});
    SaveFileName().set({});
}

QWidget *Program::find(const QString &objectName) const
{
    // Names recur (label_2, CloseButton); the one that the user can see is meant.
    QWidget *hidden = nullptr;
    const QList<QWidget *> all = top->findChildren<QWidget *>(objectName);
    for (QWidget *widget : all) {
        if (widget->isVisible())
            return widget;
        hidden = widget;
    }
    if (!hidden)
        qFatal("there is no widget %s", qPrintable(objectName));
    return hidden;
}

void Program::click(const QString &objectName) const
{
    QWidget *const widget = find(objectName);
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, widget->rect().center());
}

void Program::clickSoon(const QString &objectName) const
{
    QTimer::singleShot(0, top, [this, objectName] { click(objectName); });
}

int Program::entryCount() const
{
    // Pages of the scan before may still wait for their deletion; they are in the stack no more.
    const QList<QToolButton *> buttons = top->findChildren<QToolButton *>(QRegularExpression("^btn\\d+$"));
    return static_cast<int>(std::count_if(buttons.begin(), buttons.end(), [](const QToolButton *button) {
        QWidget *const page = button->parentWidget();
        const auto *const stack = qobject_cast<QStackedWidget *>(page->parentWidget());
        return stack && stack->indexOf(page) >= 0;
    }));
}

bool Program::isDeviceWindowShown() const
{
    return top->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"))->currentIndex() == 1;
}

bool Program::isConnected() const
{
    // On a busy machine the record may be late, and behind the prompt that tells so the next connect begins.
    const bool isUnderWay = OfflineWaiting || ReconnectRequested || isConnecting();
    return isDeviceWindowShown() && LinkUp && !isPromptShown() && !isUnderWay;
}

bool Program::connectEntry(int index)
{
    // The first connect of a process loads what all later ones find there; where a busy machine runs it under
    // sanitizers, cut waits would be over before.
    static bool isFirst = true;
    const double cut = Wait::scaled(1000) / 1000.0;
    const auto cutAgain = qScopeGuard([cut] { Wait::setScale(cut); });
    if (std::exchange(isFirst, false))
        Wait::setScale(std::max(cut, 0.1));
    prompts.clear();
    click(QStringLiteral("btn%1").arg(index));
    const auto isDone = [this] { return isConnected() && prompts.contains("UpDataParam"); };
    const auto isDoneForGood = [&isDone] {
        if (isDone())
            QCoreApplication::processEvents(); // the wait for another connect may be next
        return isDone();
    };
    return QTest::qWaitFor(isDoneForGood, 10000);
}

QString Program::pictureOf(const QString &mouse) const
{
    const int kind = mouse == QLatin1String("q1") ? 1 : 2;
    int found = 0;
    const bool isFound = QTest::qWaitFor([&] {
        const QList<DeviceAllInfo> &devices = ChooserDevices();
        for (found = 0; found < devices.size() && devices[found].DeviceKind != kind;)
            ++found;
        return found < devices.size() && entryCount() == devices.size();
    });
    return isFound ? QStringLiteral("btn%1").arg(found) : QString();
}

bool Program::connectMouse(const QString &mouse)
{
    const QString picture = pictureOf(mouse);
    return !picture.isEmpty() && connectEntry(picture.mid(3).toInt());
}

bool Program::goBack() const
{
    click("UpArrow");
    return QTest::qWaitFor([this] { return !isDeviceWindowShown(); });
}

Prompt *Program::prompt(const QString &className)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        auto *const shown = qobject_cast<Prompt *>(window);
        if (shown && shown->isVisible() && (className.isEmpty() || className == shown->metaObject()->className()))
            return shown;
    }
    return nullptr;
}

void Program::clickIn(const QString &promptClass, const QString &button)
{
    if (Prompt *const shown = prompt(promptClass))
        QTest::mouseClick(shown->findChild<QToolButton *>(button), Qt::LeftButton);
}

void Program::dismiss(const QString &promptClass)
{
    if (Prompt *const shown = prompt(promptClass))
        QTest::keyClick(shown, Qt::Key_Escape);
}

QString Program::englishText(const char *section, const QString &element)
{
    QString found;
    LanguageFile::readSection(0, section, [&](const QString &each, const QString &text) {
        if (each == element)
            found = text;
    });
    return found;
}

void Program::whenShown(const QString &className, std::function<void()> action)
{
    actions[className] = std::move(action);
}

bool Program::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Show && qobject_cast<Prompt *>(object)) {
        const QString name = QString::fromLatin1(object->metaObject()->className());
        prompts << name;
        const auto action = actions.find(name);
        if (action != actions.end())
            QTimer::singleShot(10, this, action->second);
    }
    return false;
}
