#include "ui/PageFocus.h"

#include <QStackedWidget>

void givePagesTheFocus(QStackedWidget &pages)
{
    // Sent after the stack has moved the keyboard. A stack that doesn't show has none to give.
    QObject::connect(&pages, &QStackedWidget::currentChanged, &pages, [&pages] {
        if (pages.isVisible() && pages.currentWidget())
            pages.currentWidget()->setFocus();
    });
}
