#include "support/ProfileControls.h"

#include "buttons/ProfileFile.h"
#include "support/TestHome.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QScopeGuard>
#include <QToolButton>

ProfileHand::ProfileHand(const QString &file, const Look &look)
{
    callOnTimeout([file, look] {
        QWidget *const asked = QApplication::activeModalWidget();
        if (asked && look)
            look(asked);
        if (auto *const dialog = qobject_cast<QFileDialog *>(asked)) {
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText(file);
            QMetaObject::invokeMethod(dialog, file.isEmpty() ? "reject" : "accept");
        } else if (asked && asked->metaObject()->className() == QLatin1String("ContainReset")) {
            asked->findChild<QToolButton *>("OK")->click();
        }
    });
    start(10);
}

std::vector<Control> profileControls(const FlashDataMap &factory)
{
    const QString file = QDir::temp().filePath("profile.bin");
    return {{"ButtonMain", "import",
             [file](const QWidget *window, FlashDataMap held) {
                 held.Lod = held.Lod == 1 ? 2 : 1;
                 WriteProfile(file, held);
                 const ProfileHand hand(file);
                 Hand::press(window, "ButtonPage", "ImportData");
                 return held;
             }},
            {"ButtonMain", "reset", [file, factory](const QWidget *window, const FlashDataMap &) {
                 const ProfileHand hand(file);
                 // Each report that gets lost takes 50 ms, of what the cut waits leave for reading everything anew.
                 const auto cutAgain = qScopeGuard([] { Wait::setScale(shortWaits); });
                 Wait::setScale(0.1);
                 Hand::press(window, "ButtonPage", "Reset");
                 return factory;
             }}};
}
