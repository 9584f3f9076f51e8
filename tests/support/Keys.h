#pragma once

#include <QTest>
#include <QWidget>
#ifdef Q_OS_WIN
#include <QEventLoop>
#include <QTimer>

#include <windows.h>
#endif

/**
 * A keyboard. The keyboard hook has to hear what is typed: elsewhere it watches the events of the program's windows, on
 * Windows it hears the system's keys alone, which go to the window in front.
 */
namespace Keys {

#ifdef Q_OS_WIN

/** The virtual key of a key of the US keyboard. */
inline WORD virtualKey(Qt::Key key)
{
    static const std::pair<Qt::Key, WORD> named[] = {
        {Qt::Key_Escape, VK_ESCAPE},      {Qt::Key_Tab, VK_TAB},      {Qt::Key_Return, VK_RETURN},
        {Qt::Key_Delete, VK_DELETE},      {Qt::Key_Shift, VK_LSHIFT}, {Qt::Key_Control, VK_LCONTROL},
        {Qt::Key_VolumeUp, VK_VOLUME_UP}, {Qt::Key_Exclam, '1'},
    };
    for (const auto &[each, code] : named) {
        if (each == key)
            return code;
    }
    return static_cast<WORD>(key >= Qt::Key_F1 && key <= Qt::Key_F12 ? VK_F1 + (key - Qt::Key_F1) : key);
}

/** An event loop until a key of the system has arrived. */
class Arrival : public QEventLoop
{
public:
    Arrival() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
            exit(1);
        return false;
    }
};

/** The key as the system tells it, until the program has got it. */
inline void send(Qt::Key key, DWORD flags)
{
    Arrival arrival;
    QTimer::singleShot(2000, &arrival, [&arrival] { arrival.exit(0); });
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey(key);
    input.ki.dwFlags = flags;
    if (SendInput(1, &input, sizeof input) != 1 || arrival.exec() == 0)
        QTest::qWarn("a key didn't arrive");
}

inline void press(QWidget *, Qt::Key key) { send(key, 0); }
inline void release(QWidget *, Qt::Key key) { send(key, KEYEVENTF_KEYUP); }

#else

inline void press(QWidget *target, Qt::Key key) { QTest::keyPress(target->window()->windowHandle(), key); }
inline void release(QWidget *target, Qt::Key key) { QTest::keyRelease(target->window()->windowHandle(), key); }

#endif

/** Presses and releases a key while the widget's window is in front. */
inline void click(QWidget *target, Qt::Key key)
{
    press(target, key);
    release(target, key);
}

} // namespace Keys
