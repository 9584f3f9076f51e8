#pragma once

#include "buttons/ProfileFile.h"
#include "support/Controls.h"
#include "support/TestHome.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QScopeGuard>
#include <QToolButton>

/** A hand that answers, as long as it is there, which file is meant, and whether a reset is. */
class ProfileHand : public QTimer
{
public:
    /** \param file none to leave the dialog \param look called with each dialog or prompt before it is answered */
    explicit ProfileHand(const QString &file, const std::function<void(const QWidget *)> &look = {})
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
};

inline std::vector<Control> profileControls(const FlashDataMap &factory)
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
            {"ButtonMain", "reset", [factory](const QWidget *window, const FlashDataMap &) {
                 const ProfileHand hand({});
                 // Each report that gets lost takes 50 ms, of what the cut waits leave for reading everything anew.
                 const auto cutAgain = qScopeGuard([] { Wait::setScale(shortWaits); });
                 Wait::setScale(0.1);
                 Hand::press(window, "ButtonPage", "Reset");
                 return factory;
             }}};
}
