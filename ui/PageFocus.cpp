#include "ui/PageFocus.h"

#include <QApplication>
#include <QStackedWidget>

void givePagesTheFocus(QStackedWidget &pages)
{
    // What rolls or fades open, as on Windows, is no popup before it stands there: it would come up over the next page.
    QApplication::setEffectEnabled(Qt::UI_General, false);
    // Sent after the stack has moved the keyboard. A stack that doesn't show has none to give.
    QObject::connect(&pages, &QStackedWidget::currentChanged, &pages, [&pages] {
        if (pages.isVisible() && pages.currentWidget())
            pages.currentWidget()->setFocus();
        // A list goes with its box. A menu of the page doesn't, and would do what it says out of sight.
        QWidget *const popup = QApplication::activePopupWidget();
        if (popup && popup->parentWidget() && popup->parentWidget()->window() == pages.window())
            popup->close();
    });
}
