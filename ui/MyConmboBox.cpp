#include "ui/MyConmboBox.h"

#include <QAbstractItemView>
#include <QCursor>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QWindow>

#include <utility>

void MyConmboBox::mousePressEvent(QMouseEvent *event)
{
    PressIndex = currentIndex();
    QComboBox::mousePressEvent(event);
}

void MyConmboBox::showPopup()
{
    QComboBox::showPopup();
    view()->installEventFilter(this);
}

void MyConmboBox::hidePopup()
{
    QComboBox::hidePopup();
    // An open list has the mouse to itself, so Qt doesn't tell the box that it has gone from it meanwhile.
    setAttribute(Qt::WA_UnderMouse, rect().contains(mapFromGlobal(QCursor::pos())));
    update();
}

/**
 * A list closes before the press of the key that chose from it is on its way. Where it is no window of its own to the
 * keyboard (Wayland), the press then goes to the window below, which would take it for one of its own keys.
 */
bool MyConmboBox::eventFilter(QObject *watched, QEvent *event)
{
    const auto time = [event] { return static_cast<QKeyEvent *>(event)->timestamp(); };
    if (watched == view() && event->type() == QEvent::ShortcutOverride) {
        listKeyTime = time();
        window()->windowHandle()->installEventFilter(this);
    } else if (watched != view() && event->type() == QEvent::KeyPress && !view()->isVisible()) {
        if (std::exchange(listKeyTime, std::nullopt) == time())
            return true;
    }
    return QComboBox::eventFilter(watched, event);
}

void MyConmboBox::keyPressEvent(QKeyEvent *event)
{
    PressIndex = currentIndex();
    QComboBox::keyPressEvent(event);
}

void MyConmboBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        PressIndex = currentIndex();
    WheelWithKeyboard::wheelEvent(event);
}

void MyConmboBox::paintEvent(QPaintEvent *)
{
    QPainter boxPainter(this);
    boxPainter.setPen(palette().color(QPalette::Text));
    QStyleOptionComboBox box;
    initStyleOption(&box);
    style()->drawComplexControl(QStyle::CC_ComboBox, &box, &boxPainter, this);
    if (isEditable()) {
        style()->drawControl(QStyle::CE_ComboBoxLabel, &box, &boxPainter, this);
        return;
    }
    // A push button's label is centred in every style, a combo box's in none.
    QStyleOptionButton label;
    label.initFrom(this);
    label.rect = style()->subControlRect(QStyle::CC_ComboBox, &box, QStyle::SC_ComboBoxEditField, this);
    label.icon = box.currentIcon;
    label.iconSize = box.iconSize;
    const int textWidth = label.rect.width() - (label.icon.isNull() ? 0 : label.iconSize.width() + 4);
    label.text = fontMetrics().elidedText(box.currentText, Qt::ElideRight, textWidth);
    boxPainter.end();

    QPainter labelPainter(this);
    style()->drawControl(QStyle::CE_PushButtonLabel, &label, &labelPainter, this);
}
