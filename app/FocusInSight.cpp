#include "app/FocusInSight.h"

#include <QApplication>
#include <QStackedWidget>

void keepFocusInSight(QWidget *window)
{
    const auto look = [window] {
        const QWidget *const holder = window->focusWidget();
        if (holder && holder != window && !holder->isVisibleTo(window))
            window->setFocus();
    };
    const QList<QStackedWidget *> stacks = window->findChildren<QStackedWidget *>();
    for (QStackedWidget *stack : stacks)
        QObject::connect(stack, &QStackedWidget::currentChanged, window, look);
    QObject::connect(qApp, &QApplication::focusChanged, window, look);
}
