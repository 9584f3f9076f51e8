#include "ui/MyLineEdit.h"

MyLineEdit::MyLineEdit(QWidget *parent) : QLineEdit(parent)
{
    // The ways round the keyboard: paste and delete of the menu, dropped text, input methods.
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
    setAttribute(Qt::WA_InputMethodEnabled, false);
}

void MyLineEdit::keyPressEvent(QKeyEvent *) {}

void MyLineEdit::keyReleaseEvent(QKeyEvent *) {}
