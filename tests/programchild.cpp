// The whole program with a hand at its windows, for tests of several processes. Starts at the moment that its argument
// names, in ms since 1970. Says "WINDOW" when the top window shows and closes it when standard input ends; says
// "REFUSED" when the prompt of a second copy shows and confirms it.

#include "app/DialogMain.h"
#include "app/Startup.h"
#include "ui/ExeIsRun.h"

#include <QApplication>
#include <QDateTime>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <QToolButton>

#include <cstdio>
#include <cstdlib>

namespace {

void say(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}

/** Looks at what shows until it is known which of the two this process is. */
class Hand : public QObject
{
public:
    Hand()
    {
        connect(&timer, &QTimer::timeout, this, &Hand::look);
        timer.start(5);
    }

private:
    void look()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (!window->isVisible())
                continue;
            if (auto *const prompt = qobject_cast<ExeIsRun *>(window)) {
                timer.stop();
                say("REFUSED");
                prompt->findChild<QToolButton *>(QStringLiteral("NewHong"))->click();
            } else if (auto *const top = qobject_cast<DialogMain *>(window)) {
                timer.stop();
                say("WINDOW");
                auto *const ended = new QSocketNotifier(0, QSocketNotifier::Read, this);
                connect(ended, &QSocketNotifier::activated, this, [ended, top] {
                    ended->setEnabled(false);
                    top->close();
                });
            } else {
                continue;
            }
            return;
        }
    }

    QTimer timer;
};

} // namespace

int main(int argc, char *argv[])
{
    const qint64 moment = argc > 1 ? std::atoll(argv[1]) : 0;
    while (QDateTime::currentMSecsSinceEpoch() < moment)
        QThread::usleep(100);
    // The program makes its own application object; the hand has to wait for that.
    qAddPreRoutine([] { (new Hand)->setParent(QCoreApplication::instance()); });
    return runProgram(argc, argv);
}
