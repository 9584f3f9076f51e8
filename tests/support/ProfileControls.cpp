#include "support/ProfileControls.h"

#include "buttons/ProfileFile.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>

namespace {

/** Presses a button and answers what is asked then: which file, and whether that is meant. */
void pressAnswering(const QWidget *window, const QString &button, const QString &file)
{
    QTimer hand;
    QObject::connect(&hand, &QTimer::timeout, [&file] {
        QWidget *const asked = QApplication::activeModalWidget();
        if (auto *const dialog = qobject_cast<QFileDialog *>(asked)) {
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText(file);
            QMetaObject::invokeMethod(dialog, "accept");
        } else if (asked && asked->metaObject()->className() == QLatin1String("ContainReset")) {
            asked->findChild<QToolButton *>("OK")->click();
        }
    });
    hand.start(10);
    Hand::press(window, "ButtonPage", button);
}

} // namespace

std::vector<Control> profileControls(const FlashDataMap &factory)
{
    const QString file = QDir::temp().filePath("profile.bin");
    return {{"ButtonMain", "import",
             [file](const QWidget *window, FlashDataMap held) {
                 held.Lod = held.Lod == 1 ? 2 : 1;
                 WriteProfile(file, held);
                 pressAnswering(window, "ImportData", file);
                 return held;
             }},
            {"ButtonMain", "reset", [file, factory](const QWidget *window, const FlashDataMap &) {
                 pressAnswering(window, "Reset", file);
                 return factory;
             }}};
}
