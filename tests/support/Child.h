#pragma once

#include <QTest>
#include <QWidget>

/** The child of this name; ends the test without one. */
template<typename Widget = QWidget>
Widget *childOf(const QWidget *parent, const QString &name)
{
    auto *const widget = parent->findChild<Widget *>(name);
    if (!widget)
        qFatal("there is no %s", qPrintable(name));
    return widget;
}

inline void clickChild(const QWidget *parent, const QString &name)
{
    QTest::mouseClick(childOf(parent, name), Qt::LeftButton);
}
