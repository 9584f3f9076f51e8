#include "app/hub/PostMsg.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

PostMsg *postMsg()
{
    static auto *const instance = new PostMsg;
    return instance;
}

bool PostMsg::refusesHere()
{
    const QCoreApplication *const application = QCoreApplication::instance();
    const bool waitsForItself = application && QThread::currentThread() == application->thread();
    Q_ASSERT_X(!waitsForItself, "PostMsg", "a blocking signal on the GUI thread waits for itself");
    if (waitsForItself)
        qWarning("a blocking signal on the GUI thread would wait for itself and is not sent");
    return waitsForItself;
}
