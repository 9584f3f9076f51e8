#include "platform/KeyboardHook.h"

#include "KeyState.h"
#include "VirtualKeys.h"

#include <QCoreApplication>
#include <QHash>
#include <QKeyEvent>
#include <QThread>
#include <QWidget>

#include <tuple>
#include <utility>

namespace platform {

/**
 * Watches the program's own key events; the display gives no others. Keys that trigger a shortcut never become key
 * events, so a window that is recorded from has none.
 */
class KeyboardHook::Installed : public QObject, public std::enable_shared_from_this<Installed>
{
public:
    Installed(Callback receiver, SystemKeys systemKeys) : callback(std::move(receiver)), state(systemKeys) {}

    bool eventFilter(QObject *target, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
            const auto *keyEvent = static_cast<QKeyEvent *>(event);
            if (!isPassedOn(target, *keyEvent))
                tell(*keyEvent);
        }
        return false;
    }

private:
    /** An event met on its way: from a window to its focus widget, and on to parents while it is ignored. */
    struct Sighting
    {
        const QKeyEvent *event; // to compare only
        QEvent::Type type;
        int key;
        ulong timestamp;
        const QObject *next; // the parent that may get it next, to compare only; null behind a window

        bool isSameEvent(const Sighting &other) const
        {
            return event == other.event && type == other.type && key == other.key && timestamp == other.timestamp;
        }
    };

    bool isPassedOn(const QObject *target, const QKeyEvent &event)
    {
        const auto *widget = qobject_cast<const QWidget *>(target);
        const Sighting previous = std::exchange(
            last, {&event, event.type(), event.key(), event.timestamp(), widget ? widget->parentWidget() : nullptr});
        const bool wasWindow = std::exchange(lastWasWindow, !widget);
        return widget && last.isSameEvent(previous) && (wasWindow || previous.next == target);
    }

    void tell(const QKeyEvent &event)
    {
        const bool press = event.type() == QEvent::KeyPress;
        if (!press && event.isAutoRepeat())
            return; // the display tells a held key as a row of releases and presses; only the presses are real
        const unsigned key = press ? pressed(event) : released(event);
        // The callback may remove this hook, destroy its owner, or run an event loop in which keys arrive.
        const auto alive = shared_from_this();
        const auto seen = std::make_pair(last, lastWasWindow);
        state.take(key, messageOf(event, key));
        callback(key, state.isDown(), state.isRepeat());
        std::tie(last, lastWasWindow) = seen; // this event still goes on to the focus widget
    }

    unsigned pressed(const QKeyEvent &event)
    {
        const unsigned key = virtualKey(event);
        if (event.nativeScanCode())
            held.insert(event.nativeScanCode(), key);
        return key;
    }

    /** A key goes up as what it went down, though Shift has changed its symbol meanwhile. */
    unsigned released(const QKeyEvent &event)
    {
        const unsigned key = held.take(event.nativeScanCode());
        return key ? key : virtualKey(event);
    }

    /** AltGr counts as Ctrl and Alt at once, and a key with Ctrl is an ordinary one. */
    static KeyMessage messageOf(const QKeyEvent &event, unsigned key)
    {
        const bool alt =
            key == leftAlt || (key == rightAlt && event.key() == Qt::Key_Alt) || event.modifiers() & Qt::AltModifier;
        const bool system = alt && !(event.modifiers() & Qt::ControlModifier);
        if (event.type() == QEvent::KeyPress)
            return system ? KeyMessage::SystemDown : KeyMessage::Down;
        return system ? KeyMessage::SystemUp : KeyMessage::Up;
    }

    static constexpr unsigned leftAlt = 164;
    static constexpr unsigned rightAlt = 165;

    Callback callback;
    KeyState state;
    Sighting last = {nullptr, QEvent::None, 0, 0, nullptr};
    bool lastWasWindow = false;
    QHash<quint32, unsigned> held; // virtual keys by scan code
};

KeyboardHook::KeyboardHook() = default;

KeyboardHook::~KeyboardHook() { remove(); }

bool KeyboardHook::install(Callback callback, SystemKeys systemKeys)
{
    remove();
    QCoreApplication *application = QCoreApplication::instance();
    if (!callback || !application || QThread::currentThread() != application->thread())
        return false;
    installed = std::make_shared<Installed>(std::move(callback), systemKeys);
    application->installEventFilter(installed.get());
    return true;
}

void KeyboardHook::remove()
{
    if (!installed)
        return;
    if (QCoreApplication *application = QCoreApplication::instance())
        application->removeEventFilter(installed.get());
    installed.reset();
}

} // namespace platform
