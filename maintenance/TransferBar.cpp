#include "maintenance/TransferBar.h"

#include "productdata/Theme.h"
#include "ui/FormParts.h"

#include <QFrame>
#include <QProgressBar>

namespace {
const char *const style = "QProgressBar{border: 0px;border-radius: 4px;background: rgb(%1);}"
                          "QProgressBar::chunk{border-radius: 4px;background: rgb(%2);}";
} // namespace

QProgressBar *addTransferBar(QFrame *frame, const QRect &place)
{
    auto *bar = addPlaced<QProgressBar>(frame, "progressBar", place);
    bar->setRange(0, 100);
    bar->setTextVisible(false);
    bar->setStyleSheet(
        QString::fromLatin1(style).arg(Theme::rgb(Theme::Tone::Hairline), Theme::rgb(Theme::Colour::SliderColor)));
    return bar;
}
